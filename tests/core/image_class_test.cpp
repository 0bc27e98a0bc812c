#include <gtest/gtest.h>

#include "images.h"
#include "text.h"

namespace {

using namespace test;

TEST(ImageClass, HasNoTypeIdentifierBeforeTheFirstImage) {
  // In a process of its own, run anew: any image made earlier would have registered the class.
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        const bool none = DRAVCFImageGetTypeID() == 0 && kDRAVCFImageID == 0;
        const cf::Ref made = cf::adopt(DRAVCFImageCreate(nullptr));
        const bool some = DRAVCFImageGetTypeID() != 0 && kDRAVCFImageID == DRAVCFImageGetTypeID();
        std::_Exit(none && some ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

TEST(ImageClass, ANewImageHoldsNothing) {
  const cf::Ref image = cf::adopt(DRAVCFImageCreate(nullptr));
  ASSERT_TRUE(image);
  EXPECT_EQ(image->cgImage, nullptr);
  EXPECT_EQ(image->buffer, nullptr);
  EXPECT_EQ(image->bufferSize, 0u);
  EXPECT_EQ(image->width, 0u);
  EXPECT_EQ(image->height, 0u);
  EXPECT_EQ(image->bitsPerComponent, 0u);
  EXPECT_EQ(image->bitsPerPixel, 0u);
  EXPECT_EQ(image->bytesPerRow, 0u);
  EXPECT_EQ(image->colorSpace, nullptr);
  EXPECT_EQ(image->alphaInfo, kCGImageAlphaPremultipliedFirst);
  EXPECT_EQ(image->context, nullptr);
  EXPECT_EQ(CFGetTypeID(image.get()), DRAVCFImageGetTypeID());
}

TEST(ImageClass, TheClassRecordHoldsAllSevenCallbacks) {
  const cf::Ref made = cf::adopt(DRAVCFImageCreate(nullptr));
  const CFRuntimeClass *record = _CFRuntimeGetClassWithTypeID(kDRAVCFImageID);
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(record->version, 0);
  EXPECT_STREQ(record->className, "DRAVCFImage");
  EXPECT_TRUE(record->init && record->copy && record->finalize && record->equal && record->hash &&
              record->copyFormattingDesc && record->copyDebugDesc);
}

TEST(ImageClass, AnImageDescribesItsSizeAndLayout) {
  const cf::Ref image = makeARGBImage(10, 4, Bytes(160, 0));
  EXPECT_EQ(text(cf::adopt(CFCopyDescription(image.get())).get()),
            "<DRAVCFImage: 10x4 bpc=8 bpp=32 rowBytes=40 kCGImageAlphaPremultipliedFirst>");
  EXPECT_EQ(text(cf::adopt(DRAVCFImageCopyFormattingDesc(image.get(), nullptr)).get()),
            "<DRAVCFImage: 10x4 bpc=8 bpp=32 rowBytes=40 kCGImageAlphaPremultipliedFirst>");
}

TEST(ImageClass, EachAlphaInfoPrintsItsNameAndAnyOtherNothing) {
  const char *const names[] = {"kCGImageAlphaNone",
                               "kCGImageAlphaPremultipliedLast",
                               "kCGImageAlphaPremultipliedFirst",
                               "kCGImageAlphaLast",
                               "kCGImageAlphaFirst",
                               "kCGImageAlphaNoneSkipLast",
                               "kCGImageAlphaNoneSkipFirst",
                               "kCGImageAlphaOnly",
                               ""};
  for (uint32_t info = 0; info <= 8; ++info) {
    const cf::Ref image =
        makeBufferImage(1, 1, 32, displaySpace().get(), static_cast<CGImageAlphaInfo>(info), {1, 2, 3, 4});
    EXPECT_EQ(text(cf::adopt(DRAVCFImageCopyDebugDesc(image.get())).get()),
              std::string("<DRAVCFImage: 1x1 bpc=8 bpp=32 rowBytes=4 ") + names[info] + ">");
  }
}

TEST(ImageClass, TwoImagesOfOnePlatformImageAreEqual) {
  const cf::Ref space = displaySpace();
  const cf::Ref cgImage =
      makeCGImage({1, 1, 8, 32, 4, space.get(), kCGImageAlphaNoneSkipFirst}, {9, 1, 2, 3});
  const cf::Ref a = cf::adopt(DRAVCFImageCreateWithImage(nullptr, cgImage.get()));
  const cf::Ref b = cf::adopt(DRAVCFImageCreateWithImage(nullptr, cgImage.get()));
  EXPECT_TRUE(CFEqual(a.get(), b.get()));
}

TEST(ImageClass, TwoImagesThatHoldOnlyBuffersAreNeverEqual) {
  const cf::Ref a = makeARGBImage(1, 1, {1, 1, 1, 1});
  const cf::Ref b = makeARGBImage(1, 1, {1, 1, 1, 1});
  EXPECT_FALSE(CFEqual(a.get(), b.get()));
  EXPECT_TRUE(CFEqual(a.get(), a.get()));
}

TEST(ImageClass, TheHashIsTheAddress) {
  const cf::Ref image = makeARGBImage(1, 1, {1, 1, 1, 1});
  EXPECT_EQ(CFHash(image.get()), reinterpret_cast<CFHashCode>(image.get()));
}

TEST(ImageClass, ACopyOfABufferSharesNoPixels) {
  const cf::Ref image = makeARGBImage(2, 1, {255, 1, 2, 3, 255, 4, 5, 6});
  const cf::Ref copy = cf::adopt(DRAVCFImageCreateCopy(nullptr, image.get()));
  ASSERT_TRUE(copy);
  EXPECT_EQ(bufferOf(copy.get()), bufferOf(image.get()));
  EXPECT_NE(copy->buffer, image->buffer);
  EXPECT_EQ(copy->width, 2u);
  EXPECT_EQ(copy->alphaInfo, kCGImageAlphaPremultipliedFirst);
  EXPECT_TRUE(CFEqual(copy->colorSpace, image->colorSpace));
}

TEST(ImageClass, ACopyOfAPlatformImageHoldsABufferOnly) {
  const cf::Ref space = displaySpace();
  const cf::Ref cgImage = makeCGImage({2, 1, 8, 32, 8, space.get(), kCGImageAlphaNoneSkipFirst},
                                      {255, 10, 20, 30, 255, 40, 50, 60});
  const cf::Ref image = cf::adopt(DRAVCFImageCreateWithImage(nullptr, cgImage.get()));
  const cf::Ref copy = cf::adopt(DRAVCFImageCreateCopy(nullptr, image.get()));
  ASSERT_TRUE(copy);
  EXPECT_EQ(copy->cgImage, nullptr);
  EXPECT_EQ(bufferOf(copy.get()), (Bytes{255, 10, 20, 30, 255, 40, 50, 60}));
  EXPECT_EQ(image->buffer, nullptr);
}

TEST(ImageClass, ACopyOfBothFormsKeepsTheBufferAsItIs) {
  const cf::Ref image = makeGrayImage(2, 1, {10, 20});
  ASSERT_NE(DRAVCFImageGetCGImage(image.get()), nullptr);
  const cf::Ref copy = cf::adopt(DRAVCFImageCreateCopy(nullptr, image.get()));
  EXPECT_EQ(copy->cgImage, nullptr);
  EXPECT_EQ(bufferOf(copy.get()), (Bytes{10, 20}));
  EXPECT_EQ(copy->bitsPerPixel, 8u);
}

TEST(ImageClass, ACopyOfAnImageThatHoldsNothingHoldsNothing) {
  const cf::Ref image = cf::adopt(DRAVCFImageCreate(nullptr));
  const cf::Ref copy = cf::adopt(DRAVCFImageCreateCopy(nullptr, image.get()));
  ASSERT_TRUE(copy);
  EXPECT_EQ(copy->buffer, nullptr);
  EXPECT_EQ(copy->cgImage, nullptr);
}

TEST(ImageClass, ACopyHasNoContext) {
  const cf::Ref image = makeARGBImage(1, 1, {255, 1, 2, 3});
  ASSERT_NE(DRAVCFImageRetainContext(image.get()), nullptr);
  const cf::Ref copy = cf::adopt(DRAVCFImageCreateCopy(nullptr, image.get()));
  EXPECT_EQ(copy->context, nullptr);
  DRAVCFImageReleaseContext(image.get());
}

}  // namespace
