#include "graphics/pixel_unpacker.h"

#include <gtest/gtest.h>

#include <vector>

#include "graphics/spaces.h"

namespace {

using cg::AlphaStep;
using testing_support::Space;
using Bytes = std::vector<uint8_t>;

// One pixel of the given layout, unpacked.
struct Unpacked {
  Bytes pixel = Bytes(4);
  bool changesNothing = false;
};

Unpacked unpack(const Bytes &bytes, size_t depth, size_t bits, CGBitmapInfo info, bool alphaFirst,
                AlphaStep step = AlphaStep::keep, bool inks = false) {
  const Space space(inks ? CGColorSpaceCreateDeviceCMYK() : CGColorSpaceCreateDeviceRGB());
  const auto provider = cf::adopt(CGDataProviderCreateWithData(nullptr, bytes.data(), bytes.size(), nullptr));
  const auto image = cf::adopt(
      CGImageCreate(1, 1, depth, bits, bytes.size(), space.get(), info, provider.get(), nullptr, false, 0));
  const cg::PixelUnpacker unpacker(cg::SampleLayout(*image), image->layout, alphaFirst, step);
  Unpacked result;
  result.changesNothing = unpacker.changesNothing();
  unpacker.unpack(bytes.data(), 0, 1, result.pixel.data());
  return result;
}

TEST(PixelUnpacker, PlainPixelsAreShuffledIntoOrder) {
  EXPECT_EQ(unpack({9, 1, 2, 3}, 8, 32, kCGImageAlphaFirst, false).pixel, (Bytes{1, 2, 3, 9}));
  EXPECT_EQ(unpack({1, 2, 3, 9}, 8, 32, kCGImageAlphaLast, true).pixel, (Bytes{9, 1, 2, 3}));
  EXPECT_EQ(unpack({3, 2, 1, 9}, 8, 32, kCGImageAlphaFirst | kCGBitmapByteOrder32Little, true).pixel,
            (Bytes{9, 1, 2, 3}));
  EXPECT_EQ(unpack({9, 1, 2, 3}, 8, 32, kCGImageAlphaNoneSkipFirst, true).pixel, (Bytes{255, 1, 2, 3}));
  EXPECT_EQ(unpack({1, 2, 3, 9}, 8, 32, kCGImageAlphaNone, true).pixel, (Bytes{255, 1, 2, 3}));
}

TEST(PixelUnpacker, ThreeBytesAndSixteenBitsAreBroughtToFour) {
  EXPECT_EQ(unpack({1, 2, 3}, 8, 24, kCGImageAlphaNone, true).pixel, (Bytes{255, 1, 2, 3}));
  EXPECT_EQ(unpack({1, 2, 3}, 8, 24, kCGImageAlphaNone, false).pixel, (Bytes{1, 2, 3, 255}));
  EXPECT_EQ(unpack({1, 1, 2, 130, 2, 131, 255, 255}, 16, 64, kCGImageAlphaLast, true).pixel,
            (Bytes{255, 1, 2, 3}));
}

TEST(PixelUnpacker, SixteenBitsAreRoundedOnceAfterTheDivision) {
  // 1100 is 4 in 8 bits and 3000 is 12: rounded before, red would be 85 like green.
  EXPECT_EQ(
      unpack({1100 >> 8, 1100 & 255, 1000 >> 8, 1000 & 255, 3000 >> 8, 3000 & 255, 3000 >> 8, 3000 & 255}, 16,
             64, kCGImageAlphaPremultipliedLast, false, AlphaStep::divide)
          .pixel,
      (Bytes{94, 85, 255, 12}));
}

TEST(PixelUnpacker, InksStayAsTheyAre) {
  EXPECT_EQ(unpack({1, 2, 3, 4}, 8, 32, kCGImageAlphaNone, true, AlphaStep::keep, true).pixel,
            (Bytes{1, 2, 3, 4}));
}

TEST(PixelUnpacker, TheStepIsTakenOnlyWhereThereIsAlpha) {
  EXPECT_EQ(unpack({128, 255, 100, 0}, 8, 32, kCGImageAlphaFirst, true, AlphaStep::multiply).pixel,
            (Bytes{128, 128, 50, 0}));
  EXPECT_EQ(unpack({128, 128, 50, 0}, 8, 32, kCGImageAlphaPremultipliedFirst, true, AlphaStep::divide).pixel,
            (Bytes{128, 255, 100, 0}));
  EXPECT_EQ(unpack({128, 255, 100, 0}, 8, 32, kCGImageAlphaNoneSkipFirst, true, AlphaStep::multiply).pixel,
            (Bytes{255, 255, 100, 0}));
}

TEST(PixelUnpacker, KnowsWhereNothingChanges) {
  EXPECT_TRUE(unpack({9, 1, 2, 3}, 8, 32, kCGImageAlphaFirst, true).changesNothing);
  EXPECT_TRUE(unpack({1, 2, 3, 9}, 8, 32, kCGImageAlphaLast, false).changesNothing);
  EXPECT_FALSE(unpack({9, 1, 2, 3}, 8, 32, kCGImageAlphaFirst, false).changesNothing);
  EXPECT_FALSE(unpack({9, 1, 2, 3}, 8, 32, kCGImageAlphaNoneSkipFirst, true).changesNothing);
  EXPECT_FALSE(unpack({9, 1, 2, 3}, 8, 32, kCGImageAlphaFirst, true, AlphaStep::multiply).changesNothing);
}

}  // namespace
