#include <gtest/gtest.h>

#include "core/images.h"

namespace {

using namespace test;

TEST(Invert, WithAlphaComplementsTheColoursAndFillsTheAlpha) {
  const cf::Ref image = makeARGBImage(1, 1, {0x80, 0x10, 0x20, 0x30});
  DRAVCFImageInvert(image.get());
  EXPECT_EQ(bufferOf(image.get()), (Bytes{0xFF, 0xEF, 0xDF, 0xCF}));
  DRAVCFImageInvert(image.get());
  EXPECT_EQ(bufferOf(image.get()), (Bytes{0xFF, 0x10, 0x20, 0x30}));
}

TEST(Invert, WithoutAlphaTwiceRestoresEveryByteTheLastOnesIncluded) {
  for (size_t width = 1; width <= 9; ++width) {
    Bytes bytes;
    for (size_t i = 0; i < width; ++i) bytes.push_back(static_cast<uint8_t>(29 * i));
    const cf::Ref image = makeGrayImage(width, 1, bytes);
    DRAVCFImageInvert(image.get());
    for (size_t i = 0; i < width; ++i) EXPECT_EQ(image->buffer[i], 255 - bytes[i]);
    DRAVCFImageInvert(image.get());
    EXPECT_EQ(bufferOf(image.get()), bytes);
  }
}

TEST(Invert, OfRGBComplementsTheIgnoredByteToo) {
  const cf::Ref image =
      makeBufferImage(1, 1, 32, displaySpace().get(), kCGImageAlphaNoneSkipFirst, {1, 2, 3, 4});
  DRAVCFImageInvert(image.get());
  EXPECT_EQ(bufferOf(image.get()), (Bytes{254, 253, 252, 251}));
}

TEST(Invert, WithAlphaComplementsBytesAfterTheLastWholeWord) {
  const cf::Ref image = makeBufferImage(6, 1, 8, graySpace().get(), kCGImageAlphaOnly, {1, 2, 3, 4, 5, 6});
  DRAVCFImageInvert(image.get());
  EXPECT_EQ(bufferOf(image.get()), (Bytes{255, 253, 252, 251, 250, 249}));
}

TEST(Clear, WithAlphaIsTransparentBlackElseWhite) {
  const cf::Ref argb = makeARGBImage(1, 2, Bytes(8, 77));
  DRAVCFImageClear(argb.get());
  EXPECT_EQ(bufferOf(argb.get()), Bytes(8, 0));
  const cf::Ref gray = makeGrayImage(5, 1, Bytes(5, 77));
  DRAVCFImageClear(gray.get());
  EXPECT_EQ(bufferOf(gray.get()), Bytes(5, 255));
}

TEST(WholeBuffer, OperationsDropThePlatformImage) {
  const cf::Ref image = makeGrayImage(1, 1, {1});
  ASSERT_NE(DRAVCFImageGetCGImage(image.get()), nullptr);
  DRAVCFImageInvert(image.get());
  EXPECT_EQ(image->cgImage, nullptr);
  ASSERT_NE(DRAVCFImageGetCGImage(image.get()), nullptr);
  DRAVCFImageClear(image.get());
  EXPECT_EQ(image->cgImage, nullptr);
}

TEST(WholeBuffer, OperationsOnAnImageThatHoldsNothingDoNothing) {
  const cf::Ref image = cf::adopt(DRAVCFImageCreate(nullptr));
  DRAVCFImageInvert(image.get());
  DRAVCFImageClear(image.get());
  EXPECT_EQ(image->buffer, nullptr);
}

TEST(WholeBuffer, OperationsGoByTheAlphaOfEveryLayout) {
  for (uint32_t info = 0; info <= 7; ++info) {
    const bool hasAlpha = info != 0 && info != 5 && info != 6;
    const auto make = [&] {
      return makeBufferImage(1, 2, 32, displaySpace().get(), info, {1, 2, 3, 4, 5, 6, 7, 8});
    };
    const cf::Ref inverted = make(), cleared = make();
    DRAVCFImageInvert(inverted.get());
    EXPECT_EQ(bufferOf(inverted.get()), hasAlpha ? (Bytes{255, 253, 252, 251, 255, 249, 248, 247})
                                                 : (Bytes{254, 253, 252, 251, 250, 249, 248, 247}))
        << info;
    DRAVCFImageClear(cleared.get());
    EXPECT_EQ(bufferOf(cleared.get()), Bytes(8, hasAlpha ? 0 : 255)) << info;
  }
}

TEST(WholeBuffer, OperationsReachThePaddingOfRows) {
  const Bytes rows(24, 7);
  const auto make = [&] {
    return cf::adopt(DRAVCFImageCreateWithBuffer(nullptr, rows.data(), 1, 2, 8, 32, 12, displaySpace().get(),
                                                 kCGImageAlphaNoneSkipFirst));
  };
  const cf::Ref inverted = make(), cleared = make();
  DRAVCFImageInvert(inverted.get());
  EXPECT_EQ(bufferOf(inverted.get()), Bytes(24, 248));
  DRAVCFImageClear(cleared.get());
  EXPECT_EQ(bufferOf(cleared.get()), Bytes(24, 255));
}

TEST(Clear, WithAlphaReachesBytesAfterTheLastWholeWord) {
  const cf::Ref image = makeBufferImage(7, 1, 8, graySpace().get(), kCGImageAlphaOnly, Bytes(7, 9));
  DRAVCFImageClear(image.get());
  EXPECT_EQ(bufferOf(image.get()), Bytes(7, 0));
}

TEST(WholeBuffer, OperationsOnAPlatformImageMakeItsBuffer) {
  const cf::Ref cgImage =
      makeCGImage({1, 1, 8, 32, 4, displaySpace().get(), kCGImageAlphaPremultipliedFirst}, {128, 1, 2, 3});
  const cf::Ref inverted = cf::adopt(DRAVCFImageCreateWithImage(nullptr, cgImage.get())),
                cleared = cf::adopt(DRAVCFImageCreateWithImage(nullptr, cgImage.get()));
  DRAVCFImageInvert(inverted.get());
  EXPECT_EQ(bufferOf(inverted.get()), (Bytes{255, 254, 253, 252}));
  EXPECT_EQ(inverted->cgImage, nullptr);
  DRAVCFImageClear(cleared.get());
  EXPECT_EQ(bufferOf(cleared.get()), Bytes(4, 0));
  EXPECT_EQ(cleared->cgImage, nullptr);
}

}  // namespace
