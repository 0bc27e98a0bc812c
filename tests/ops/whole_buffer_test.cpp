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

}  // namespace
