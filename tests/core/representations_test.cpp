#include <gtest/gtest.h>

#include "failing_allocator.h"
#include "images.h"

namespace {

using namespace test;

TEST(Representations, ThePlatformImageIsBuiltFromACopyOfTheBuffer) {
  const cf::Ref image = makeARGBImage(1, 1, {255, 1, 2, 3});
  CGImageRef built = DRAVCFImageGetCGImage(image.get());
  ASSERT_NE(built, nullptr);
  EXPECT_EQ(DRAVCFImageGetCGImage(image.get()), built);
  image->buffer[1] = 99;
  const cf::Ref data = cf::adopt(CGDataProviderCopyData(CGImageGetDataProvider(built)));
  ASSERT_EQ(CFDataGetLength(data.get()), 4);
  EXPECT_EQ(CFDataGetBytePtr(data.get())[1], 1);
  EXPECT_TRUE(CGImageGetShouldInterpolate(built));
  EXPECT_EQ(CGImageGetRenderingIntent(built), kCGRenderingIntentDefault);
}

TEST(Representations, ThePlatformImageMayOutliveTheImageAndItsAllocator) {
  cf::Ref<CGImageRef> kept;
  {
    testing_support::FailingAllocator *allocator = new testing_support::FailingAllocator;
    {
      const cf::Ref image = makeARGBImage(1, 1, {255, 1, 2, 3}, allocator->get());
      kept = cf::share(DRAVCFImageGetCGImage(image.get()));
    }
    EXPECT_EQ(CFGetRetainCount(allocator->get()), 2) << "the pixels keep their allocator";
    const cf::Ref data = cf::adopt(CGDataProviderCopyData(CGImageGetDataProvider(kept.get())));
    EXPECT_EQ(CFDataGetBytePtr(data.get())[1], 1);
    kept.reset();
    delete allocator;
  }
}

TEST(Representations, AfterAWriteTheInvalidatedImageIsRebuilt) {
  const cf::Ref image = makeARGBImage(1, 1, {255, 1, 2, 3});
  ASSERT_NE(DRAVCFImageGetCGImage(image.get()), nullptr);
  image->buffer[1] = 99;
  DRAVCFImageInvalidateImage(image.get());
  EXPECT_EQ(image->cgImage, nullptr);
  const cf::Ref data =
      cf::adopt(CGDataProviderCopyData(CGImageGetDataProvider(DRAVCFImageGetCGImage(image.get()))));
  EXPECT_EQ(CFDataGetBytePtr(data.get())[1], 99);
}

TEST(Representations, InvalidatingTheBufferResetsItsDescriptionAndKeepsThePlatformImage) {
  const cf::Ref image = makeGrayImage(2, 1, {1, 2});
  CGImageRef built = DRAVCFImageGetCGImage(image.get());
  DRAVCFImageInvalidateBuffer(image.get());
  EXPECT_EQ(image->buffer, nullptr);
  EXPECT_EQ(image->bufferSize, 0u);
  EXPECT_EQ(image->width, 0u);
  EXPECT_EQ(image->height, 0u);
  EXPECT_EQ(image->bitsPerComponent, 0u);
  EXPECT_EQ(image->bitsPerPixel, 0u);
  EXPECT_EQ(image->bytesPerRow, 0u);
  EXPECT_EQ(image->colorSpace, nullptr);
  EXPECT_EQ(image->alphaInfo, kCGImageAlphaPremultipliedFirst);
  EXPECT_EQ(image->cgImage, built);
  EXPECT_EQ(DRAVCFImageGetWidth(image.get()), 2u);
}

TEST(Representations, AnImageThatLostBothFormsAnswersZero) {
  const cf::Ref image = makeGrayImage(2, 1, {1, 2});
  DRAVCFImageInvalidateBuffer(image.get());
  EXPECT_EQ(DRAVCFImageGetWidth(image.get()), 0u);
  EXPECT_EQ(DRAVCFImageGetHeight(image.get()), 0u);
  EXPECT_EQ(DRAVCFImageGetBitsPerComponent(image.get()), 0u);
  EXPECT_EQ(DRAVCFImageGetBitsPerPixel(image.get()), 0u);
  EXPECT_EQ(DRAVCFImageGetBytesPerRow(image.get()), 0u);
  EXPECT_EQ(DRAVCFImageGetColorSpace(image.get()), nullptr);
  EXPECT_EQ(DRAVCFImageGetAlphaInfo(image.get()), kCGImageAlphaPremultipliedFirst);
  EXPECT_EQ(DRAVCFImageGetCGImage(image.get()), nullptr);
}

TEST(Representations, TheBufferSizeIsAskedAfterTheBufferIsMade) {
  const cf::Ref space = displaySpace();
  const cf::Ref cgImage =
      makeCGImage({2, 3, 8, 32, 8, space.get(), kCGImageAlphaNoneSkipFirst}, Bytes(24, 5));
  const cf::Ref image = cf::adopt(DRAVCFImageCreateWithImage(nullptr, cgImage.get()));
  EXPECT_EQ(DRAVCFImageGetImageBufferSize(image.get()), 24u);
  EXPECT_NE(image->buffer, nullptr);
}

TEST(Representations, TheBufferOfAGreyPlatformImageIsColour) {
  const cf::Ref space = graySpace();
  const cf::Ref cgImage = makeCGImage({2, 1, 8, 8, 2, space.get(), kCGImageAlphaNone}, {7, 8});
  const cf::Ref image = cf::adopt(DRAVCFImageCreateWithImage(nullptr, cgImage.get()));
  EXPECT_NE(DRAVCFImageGetImageBuffer(image.get()), nullptr);
  EXPECT_EQ(bufferOf(image.get()), (Bytes{255, 7, 7, 7, 255, 8, 8, 8}));
}

TEST(Representations, TheGettersPreferThePlatformImage) {
  const cf::Ref image = makeGrayImage(2, 1, {1, 2});
  const cf::Ref space = displaySpace();
  image->cgImage =
      makeCGImage({5, 4, 8, 32, 32, space.get(), kCGImageAlphaNoneSkipLast}, Bytes(128, 0)).give();
  EXPECT_EQ(DRAVCFImageGetWidth(image.get()), 5u);
  EXPECT_EQ(DRAVCFImageGetHeight(image.get()), 4u);
  EXPECT_EQ(DRAVCFImageGetBitsPerComponent(image.get()), 8u);
  EXPECT_EQ(DRAVCFImageGetBitsPerPixel(image.get()), 32u);
  EXPECT_EQ(DRAVCFImageGetBytesPerRow(image.get()), 32u);
  EXPECT_TRUE(CFEqual(DRAVCFImageGetColorSpace(image.get()), space.get()));
  EXPECT_EQ(DRAVCFImageGetAlphaInfo(image.get()), kCGImageAlphaNoneSkipLast);
  EXPECT_EQ(image->width, 2u);
}

TEST(Representations, ReleasingNoBufferDoesNothing) { DRAVCFReleaseImageBuffer(nullptr, nullptr, 10); }

TEST(DisplayColorSpace, IsOneSharedObjectOfThreeComponents) {
  const cf::Ref a = displaySpace();
  const cf::Ref b = displaySpace();
  ASSERT_TRUE(a);
  EXPECT_EQ(a.get(), b.get());
  EXPECT_EQ(CGColorSpaceGetNumberOfComponents(a.get()), 3u);
  EXPECT_EQ(CGColorSpaceGetType(a.get()), 6);
}

}  // namespace
