#include "core/context.h"

#include <gtest/gtest.h>

#include "failing_allocator.h"
#include "images.h"
#include "text.h"

namespace {

using namespace test;

cf::Ref<DRAVCFContextRef> makeContext(size_t width, size_t height, uint8_t *buffer, size_t row,
                                      CGColorSpaceRef space, CGImageAlphaInfo alpha) {
  return cf::adopt(DRAVCFContextCreate(nullptr, width, height, buffer, 8, row, space, alpha));
}

TEST(Context, RowsAreFourBytesAPixelForRGBAndOneForGrey) {
  const cf::Ref rgb = makeContext(10, 2, nullptr, 0, displaySpace().get(), kCGImageAlphaPremultipliedFirst);
  EXPECT_EQ(CGBitmapContextGetBytesPerRow(DRAVCFContextGetCGContext(rgb.get())), 40u);
  const cf::Ref gray = makeContext(10, 2, nullptr, 0, graySpace().get(), kCGImageAlphaNone);
  EXPECT_EQ(CGBitmapContextGetBytesPerRow(DRAVCFContextGetCGContext(gray.get())), 10u);
}

TEST(Context, WithoutABufferItsOwnStartsAllZero) {
  const cf::Ref context = makeContext(5, 3, nullptr, 0, nullptr, kCGImageAlphaPremultipliedFirst);
  ASSERT_TRUE(context);
  EXPECT_EQ(context->ownsBuffer, 1u);
  const uint8_t *bytes = DRAVCFContextGetBuffer(context.get());
  EXPECT_EQ(Bytes(bytes, bytes + 60), Bytes(60, 0));
}

TEST(Context, OverACallersBufferItDrawsThereAndNeverFreesIt) {
  uint8_t pixels[8] = {1, 2, 3, 4, 5, 6, 7, 8};
  {
    const cf::Ref context = makeContext(2, 1, pixels, 8, nullptr, kCGImageAlphaPremultipliedFirst);
    ASSERT_TRUE(context);
    EXPECT_EQ(context->ownsBuffer, 0u);
    EXPECT_EQ(DRAVCFContextGetBuffer(context.get()), pixels);
  }
  EXPECT_EQ(pixels[7], 8);
}

TEST(Context, WithoutAColourSpaceItIsInTheMainDisplays) {
  const cf::Ref context = makeContext(1, 1, nullptr, 0, nullptr, kCGImageAlphaPremultipliedFirst);
  EXPECT_TRUE(
      CFEqual(CGBitmapContextGetColorSpace(DRAVCFContextGetCGContext(context.get())), displaySpace().get()));
}

TEST(Context, ALayoutThatCannotBeDrawnIntoGivesNone) {
  EXPECT_FALSE(makeContext(2, 2, nullptr, 0, displaySpace().get(), kCGImageAlphaNone));
  EXPECT_FALSE(makeContext(2, 2, nullptr, 1, displaySpace().get(), kCGImageAlphaPremultipliedFirst));
  EXPECT_FALSE(makeContext(0, 2, nullptr, 0, displaySpace().get(), kCGImageAlphaPremultipliedFirst));
  EXPECT_FALSE(makeContext(SIZE_MAX / 2, 2, nullptr, 0, nullptr, kCGImageAlphaPremultipliedFirst));
  EXPECT_FALSE(makeContext(2, SIZE_MAX / 2, nullptr, 0, nullptr, kCGImageAlphaPremultipliedFirst));
}

TEST(Context, ForAnImageHasItsSizeAndLayoutAndNoneOfItsPixels) {
  const cf::Ref image = makeARGBImage(3, 2, Bytes(24, 255));
  const cf::Ref context = cf::adopt(DRAVCFContextCreateForImage(nullptr, image.get(), nullptr));
  ASSERT_TRUE(context);
  CGContextRef drawing = DRAVCFContextGetCGContext(context.get());
  EXPECT_EQ(CGBitmapContextGetWidth(drawing), 3u);
  EXPECT_EQ(CGBitmapContextGetHeight(drawing), 2u);
  EXPECT_EQ(CGBitmapContextGetBytesPerRow(drawing), 12u);
  EXPECT_EQ(CGBitmapContextGetAlphaInfo(drawing), kCGImageAlphaPremultipliedFirst);
  const uint8_t *bytes = DRAVCFContextGetBuffer(context.get());
  EXPECT_EQ(Bytes(bytes, bytes + 24), Bytes(24, 0));
}

TEST(Context, ForNoImageOrOneThatHoldsNothingIsNone) {
  EXPECT_EQ(DRAVCFContextCreateForImage(nullptr, nullptr, nullptr), nullptr);
  const cf::Ref empty = cf::adopt(DRAVCFImageCreate(nullptr));
  EXPECT_EQ(DRAVCFContextCreateForImage(nullptr, empty.get(), nullptr), nullptr);
}

TEST(Context, ItsTypeIdentifierIsThatOfItsInstances) {
  const cf::Ref context = makeContext(1, 1, nullptr, 0, nullptr, kCGImageAlphaPremultipliedFirst);
  EXPECT_EQ(CFGetTypeID(context.get()), DRAVCFContextGetTypeID());
  EXPECT_NE(DRAVCFContextGetTypeID(), 0u);
}

TEST(ContextClass, ACopySharesTheBitmapContextAndHasMemoryOfItsOwn) {
  const cf::Ref context = makeContext(2, 2, nullptr, 0, nullptr, kCGImageAlphaPremultipliedFirst);
  const cf::Ref copy =
      cf::adopt(static_cast<DRAVCFContextRef>(const_cast<void *>(DRAVCFContextCopy(nullptr, context.get()))));
  ASSERT_TRUE(copy);
  EXPECT_EQ(copy->cgContext, context->cgContext);
  EXPECT_EQ(copy->ownsBuffer, 1u);
  ASSERT_NE(copy->buffer, nullptr);
  EXPECT_NE(copy->buffer, context->buffer);
  EXPECT_EQ(CGBitmapContextGetData(copy->cgContext), context->buffer);
  EXPECT_TRUE(CFEqual(context.get(), copy.get()));
  EXPECT_EQ(CFHash(context.get()), CFHash(copy.get()));
  EXPECT_EQ(CFHash(context.get()), CFHash(context->cgContext));
}

TEST(ContextClass, ACopyDrawsStillWhenItsSourceIsGone) {
  cf::Ref context = makeContext(1, 1, nullptr, 0, nullptr, kCGImageAlphaPremultipliedFirst);
  const cf::Ref copy =
      cf::adopt(static_cast<DRAVCFContextRef>(const_cast<void *>(DRAVCFContextCopy(nullptr, context.get()))));
  context.reset();
  const cf::Ref space = displaySpace();
  const cf::Ref red = makeCGImage({1, 1, 8, 32, 4, space.get(), kCGImageAlphaNoneSkipFirst}, {0, 255, 0, 0});
  CGContextDrawImage(copy->cgContext, CGRectMake(0, 0, 1, 1), red.get());
  const auto *drawn = static_cast<const uint8_t *>(CGBitmapContextGetData(copy->cgContext));
  EXPECT_EQ(Bytes(drawn, drawn + 4), (Bytes{255, 255, 0, 0}));
}

TEST(ContextClass, ACopyOfNothingIsNothing) { EXPECT_EQ(DRAVCFContextCopy(nullptr, nullptr), nullptr); }

TEST(ContextClass, AContextWithoutABitmapContextEqualsOnlyItself) {
  const cf::Ref a = cf::adopt(DRAVCFContextCreatePrivate(nullptr));
  const cf::Ref b = cf::adopt(DRAVCFContextCreatePrivate(nullptr));
  EXPECT_TRUE(CFEqual(a.get(), a.get()));
  EXPECT_FALSE(CFEqual(a.get(), b.get()));
  EXPECT_EQ(CFHash(a.get()), 0u);
}

TEST(ContextClass, TwoContextsDiffer) {
  const cf::Ref a = makeContext(1, 1, nullptr, 0, nullptr, kCGImageAlphaPremultipliedFirst);
  const cf::Ref b = makeContext(1, 1, nullptr, 0, nullptr, kCGImageAlphaPremultipliedFirst);
  EXPECT_FALSE(CFEqual(a.get(), b.get()));
}

TEST(ContextClass, TheDescriptionIsTheBitmapContexts) {
  const cf::Ref context = makeContext(3, 2, nullptr, 0, nullptr, kCGImageAlphaPremultipliedFirst);
  const cf::Ref expected = cf::adopt(CFCopyDescription(context->cgContext));
  EXPECT_EQ(text(cf::adopt(CFCopyDescription(context.get())).get()), text(expected.get()));
}

TEST(ContextClass, WithoutABitmapContextTheDescriptionSaysSo) {
  const cf::Ref context = cf::adopt(DRAVCFContextCreatePrivate(nullptr));
  EXPECT_EQ(text(cf::adopt(CFCopyDescription(context.get())).get()), "(NULL)");
}

TEST(SharedContext, LivesUntilTheLastReleaseWhichDropsThePlatformImage) {
  const cf::Ref image = makeARGBImage(2, 1, {255, 1, 2, 3, 255, 4, 5, 6});
  CGContextRef first = DRAVCFImageRetainContext(image.get());
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(DRAVCFImageRetainContext(image.get()), first);
  ASSERT_NE(DRAVCFImageGetCGImage(image.get()), nullptr);
  DRAVCFImageReleaseContext(image.get());
  EXPECT_NE(image->context, nullptr);
  EXPECT_NE(image->cgImage, nullptr);
  DRAVCFImageReleaseContext(image.get());
  EXPECT_EQ(image->context, nullptr);
  EXPECT_EQ(image->cgImage, nullptr);
}

TEST(SharedContext, DrawsIntoTheImagesOwnBuffer) {
  const cf::Ref image = makeARGBImage(2, 1, Bytes(8, 0));
  CGContextRef drawing = DRAVCFImageRetainContext(image.get());
  ASSERT_NE(drawing, nullptr);
  EXPECT_EQ(CGBitmapContextGetData(drawing), image->buffer);
  const cf::Ref space = displaySpace();
  const cf::Ref red = makeCGImage({1, 1, 8, 32, 4, space.get(), kCGImageAlphaNoneSkipFirst}, {0, 255, 0, 0});
  CGContextDrawImage(drawing, CGRectMake(1, 0, 1, 1), red.get());
  DRAVCFImageReleaseContext(image.get());
  EXPECT_EQ(bufferOf(image.get()), (Bytes{0, 0, 0, 0, 255, 255, 0, 0}));
}

TEST(SharedContext, OfAPlatformImageWithPaddedRowsUsesTheBuffersRows) {
  const cf::Ref space = displaySpace();
  const cf::Ref padded =
      makeCGImage({1, 2, 8, 32, 64, space.get(), kCGImageAlphaPremultipliedFirst}, Bytes(128, 0));
  const cf::Ref image = cf::adopt(DRAVCFImageCreateWithImage(nullptr, padded.get()));
  CGContextRef drawing = DRAVCFImageRetainContext(image.get());
  ASSERT_NE(drawing, nullptr);
  EXPECT_NE(image->cgImage, nullptr) << "this promotion changes nothing, so that both forms are there";
  EXPECT_EQ(CGBitmapContextGetBytesPerRow(drawing), 4u);
  DRAVCFImageReleaseContext(image.get());
}

TEST(SharedContext, EndsWithItsImageWhoeverStillRetainsIt) {
  testing_support::FailingAllocator allocator;
  {
    const cf::Ref image = makeARGBImage(2, 1, Bytes(8, 0), allocator.get());
    for (int i = 0; i < 3; ++i) EXPECT_NE(DRAVCFImageRetainContext(image.get()), nullptr);
  }
  EXPECT_EQ(allocator.liveBlocks(), 0);
}

TEST(SharedContext, OfAnImageThatHoldsNothingIsNone) {
  const cf::Ref image = cf::adopt(DRAVCFImageCreate(nullptr));
  EXPECT_EQ(DRAVCFImageRetainContext(image.get()), nullptr);
  EXPECT_EQ(image->context, nullptr);
  DRAVCFImageReleaseContext(image.get());
}

TEST(SharedContext, OfALayoutThatCannotBeDrawnIntoIsNone) {
  const cf::Ref image = makeBufferImage(1, 1, 24, deviceRGBSpace().get(), kCGImageAlphaNone, {1, 2, 3});
  EXPECT_EQ(DRAVCFImageRetainContext(image.get()), nullptr);
  EXPECT_EQ(image->context, nullptr);
}

}  // namespace
