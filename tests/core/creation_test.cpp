#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "images.h"

namespace {

using namespace test;

TEST(ImageCreation, ASizeIsRoundedToTheNearestPixelHalvesAwayFromZero) {
  const cf::Ref image = cf::adopt(DRAVCFImageCreateWithSize(nullptr, CGSizeMake(2.5f, 1.4f), 1));
  ASSERT_TRUE(image);
  EXPECT_EQ(DRAVCFImageGetWidth(image.get()), 3u);
  EXPECT_EQ(DRAVCFImageGetHeight(image.get()), 1u);
}

TEST(ImageCreation, AColourImageOfASizeIsTransparentBlackARGB) {
  const cf::Ref image = cf::adopt(DRAVCFImageCreateWithSize(nullptr, CGSizeMake(3, 2), 1));
  ASSERT_TRUE(image);
  EXPECT_EQ(bufferOf(image.get()), Bytes(24, 0));
  EXPECT_EQ(image->bytesPerRow, 12u);
  EXPECT_EQ(image->bitsPerPixel, 32u);
  EXPECT_EQ(image->bitsPerComponent, 8u);
  EXPECT_EQ(image->alphaInfo, kCGImageAlphaPremultipliedFirst);
  EXPECT_TRUE(CFEqual(image->colorSpace, displaySpace().get()));
  EXPECT_EQ(image->cgImage, nullptr);
}

TEST(ImageCreation, AGreyImageOfASizeIsWhite) {
  const cf::Ref image = cf::adopt(DRAVCFImageCreateWithSize(nullptr, CGSizeMake(3, 2), 0));
  ASSERT_TRUE(image);
  EXPECT_EQ(bufferOf(image.get()), Bytes(6, 255));
  EXPECT_EQ(image->bytesPerRow, 3u);
  EXPECT_EQ(image->bitsPerPixel, 8u);
  EXPECT_EQ(image->alphaInfo, kCGImageAlphaNone);
  EXPECT_TRUE(CFEqual(image->colorSpace, graySpace().get()));
}

TEST(ImageCreation, ASizeThatNoImageCanHaveGivesNothing) {
  const float infinity = std::numeric_limits<float>::infinity();
  for (float side : {-1.0f, -0.5f, infinity, -infinity, std::nanf(""), 2147483648.0f, 3e38f}) {
    EXPECT_EQ(DRAVCFImageCreateWithSize(nullptr, CGSizeMake(side, 1), 1), nullptr) << side;
    EXPECT_EQ(DRAVCFImageCreateWithSize(nullptr, CGSizeMake(1, side), 0), nullptr) << side;
  }
}

TEST(ImageCreation, ASizeWhoseBytesOverflowGivesNothing) {
  EXPECT_EQ(DRAVCFImageCreateWithSize(nullptr, CGSizeMake(2147483520.0f, 2147483520.0f), 1), nullptr);
}

TEST(ImageCreation, ASizeOfZeroGivesAnImageWithoutPixels) {
  const cf::Ref image = cf::adopt(DRAVCFImageCreateWithSize(nullptr, CGSizeMake(0, 5), 1));
  ASSERT_TRUE(image);
  EXPECT_EQ(image->bufferSize, 0u);
  EXPECT_EQ(DRAVCFImageGetCGImage(image.get()), nullptr);
}

TEST(ImageCreation, ABufferIsCopied) {
  Bytes source{1, 2, 3, 4, 5, 6, 7, 8};
  const cf::Ref image = makeARGBImage(2, 1, source);
  ASSERT_TRUE(image);
  source[0] = 99;
  EXPECT_EQ(bufferOf(image.get()), (Bytes{1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST(ImageCreation, BitsPerPixelZeroAreFourComponentsForRGBAndOneForGrey) {
  const Bytes source(64, 7);
  const cf::Ref rgb = makeBufferImage(2, 2, 0, deviceRGBSpace().get(), kCGImageAlphaNoneSkipFirst, source);
  EXPECT_EQ(rgb->bitsPerPixel, 32u);
  EXPECT_EQ(rgb->bytesPerRow, 8u);
  EXPECT_EQ(rgb->bufferSize, 16u);
  const cf::Ref gray = makeBufferImage(3, 2, 0, graySpace().get(), kCGImageAlphaNone, source);
  EXPECT_EQ(gray->bitsPerPixel, 8u);
  EXPECT_EQ(gray->bytesPerRow, 3u);
  const cf::Ref cmykSpace = cf::adopt(CGColorSpaceCreateDeviceCMYK());
  const cf::Ref cmyk = makeBufferImage(2, 2, 0, cmykSpace.get(), kCGImageAlphaNone, source);
  EXPECT_EQ(cmyk->bitsPerPixel, 32u);
}

TEST(ImageCreation, BytesPerRowAreKeptAsGiven) {
  const Bytes source(2 * 50, 7);
  const cf::Ref image = cf::adopt(DRAVCFImageCreateWithBuffer(
      nullptr, source.data(), 3, 2, 8, 32, 50, displaySpace().get(), kCGImageAlphaNoneSkipFirst));
  EXPECT_EQ(image->bytesPerRow, 50u);
  EXPECT_EQ(image->bufferSize, 100u);
}

TEST(ImageCreation, ABufferWithoutAColourSpaceIsInTheMainDisplays) {
  const cf::Ref image = makeBufferImage(1, 1, 32, nullptr, kCGImageAlphaNoneSkipFirst, {0, 1, 2, 3});
  EXPECT_TRUE(CFEqual(image->colorSpace, displaySpace().get()));
}

TEST(ImageCreation, ABufferOutsideTheWorkingLayoutsIsStoredAsGiven) {
  const Bytes source(6, 9);
  const cf::Ref image = makeBufferImage(2, 1, 24, deviceRGBSpace().get(), kCGImageAlphaNone, source);
  EXPECT_EQ(image->bitsPerPixel, 24u);
  EXPECT_EQ(DRAVCFImageGetImageBuffer(image.get()), image->buffer);
  EXPECT_EQ(image->bitsPerPixel, 24u);
}

TEST(ImageCreation, ABufferWhoseSizeOverflowsGivesNothing) {
  const uint8_t pixel[4] = {};
  const cf::Ref space = displaySpace();
  const auto create = [&](size_t width, size_t height, size_t bits, size_t row) {
    return DRAVCFImageCreateWithBuffer(nullptr, pixel, width, height, 8, bits, row, space.get(),
                                       kCGImageAlphaNoneSkipFirst);
  };
  EXPECT_EQ(create(1, SIZE_MAX, 32, 4), nullptr);
  EXPECT_EQ(create(1, 1u << 20, 32, SIZE_MAX / 2), nullptr);
  EXPECT_EQ(create(SIZE_MAX, 1, 32, 0), nullptr);
  EXPECT_EQ(create(size_t{1} << 31, 1, 32, 4), nullptr);
  EXPECT_EQ(create(1, 2, SIZE_MAX, 0), nullptr);
}

TEST(ImageCreation, ABufferImageWithoutSourceBytesGivesNothing) {
  EXPECT_EQ(DRAVCFImageCreateWithBuffer(nullptr, nullptr, 1, 1, 8, 32, 4, displaySpace().get(),
                                        kCGImageAlphaNoneSkipFirst),
            nullptr);
}

TEST(ImageCreation, AnImageOfAPlatformImageRetainsItAndHoldsNoBuffer) {
  const cf::Ref space = displaySpace();
  cf::Ref cgImage = makeCGImage({1, 1, 8, 32, 4, space.get(), kCGImageAlphaNoneSkipFirst}, {9, 1, 2, 3});
  const CFIndex before = CFGetRetainCount(cgImage.get());
  cf::Ref image = cf::adopt(DRAVCFImageCreateWithImage(nullptr, cgImage.get()));
  ASSERT_TRUE(image);
  EXPECT_EQ(CFGetRetainCount(cgImage.get()), before + 1);
  EXPECT_EQ(image->buffer, nullptr);
  EXPECT_EQ(DRAVCFImageGetCGImage(image.get()), cgImage.get());
  image.reset();
  EXPECT_EQ(CFGetRetainCount(cgImage.get()), before);
}

TEST(ImageCreation, AnImageOfNoPlatformImageHoldsNothing) {
  const cf::Ref image = cf::adopt(DRAVCFImageCreateWithImage(nullptr, nullptr));
  ASSERT_TRUE(image);
  EXPECT_EQ(DRAVCFImageGetCGImage(image.get()), nullptr);
  EXPECT_EQ(DRAVCFImageGetImageBuffer(image.get()), nullptr);
  EXPECT_EQ(DRAVCFImageGetWidth(image.get()), 0u);
  EXPECT_EQ(DRAVCFImageGetAlphaInfo(image.get()), kCGImageAlphaPremultipliedFirst);
}

}  // namespace
