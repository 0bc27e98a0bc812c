#include <gtest/gtest.h>

#include <cmath>

#include "composite/conversions.h"
#include "core/images.h"
#include "failing_allocator.h"
#include "failing_new.h"

namespace {

using namespace test;

TEST(IsColor, IsNoForGreySpacesOnly) {
  EXPECT_EQ(DRAVCFImageIsColor(makeGrayImage(1, 1, {1}).get()), 0);
  EXPECT_EQ(DRAVCFImageIsColor(makeARGBImage(1, 1, {1, 1, 1, 1}).get()), 1);
  const cf::Ref cmyk = cf::adopt(CGColorSpaceCreateDeviceCMYK());
  EXPECT_EQ(DRAVCFImageIsColor(makeBufferImage(1, 1, 32, cmyk.get(), kCGImageAlphaNone, {1, 2, 3, 4}).get()),
            1);
  const CGFloat white[3] = {0.95f, 1, 1.09f}, black[3] = {0, 0, 0};
  const cf::Ref calibrated = cf::adopt(CGColorSpaceCreateCalibratedGray(white, black, 1.8f));
  EXPECT_EQ(DRAVCFImageIsColor(makeBufferImage(1, 1, 8, calibrated.get(), kCGImageAlphaNone, {1}).get()), 0);
}

TEST(ConvertToColor, OfGreyRepeatsIt) {
  const cf::Ref image = makeGrayImage(2, 1, {0, 200});
  DRAVCFImageConvertToColor(image.get());
  EXPECT_EQ(bufferOf(image.get()), (Bytes{255, 0, 0, 0, 255, 200, 200, 200}));
  EXPECT_EQ(image->alphaInfo, kCGImageAlphaNoneSkipFirst);
  const uint8_t *before = image->buffer;
  DRAVCFImageConvertToColor(image.get());
  EXPECT_EQ(image->buffer, before);
}

TEST(ConvertToGrayscale, WeighsTheColours) {
  const cf::Ref image = makeBufferImage(4, 1, 32, displaySpace().get(), kCGImageAlphaNoneSkipFirst,
                                        {0, 255, 0, 0, 0, 0, 255, 0, 0, 0, 0, 255, 9, 10, 20, 30});
  DRAVCFImageConvertToGrayscale(image.get());
  // 0.30, 0.59, 0.11 of 255 are 76.5, 150.45 and 28.05; 3 + 11.8 + 3.3 is 18.1.
  EXPECT_EQ(bufferOf(image.get()), (Bytes{77, 150, 28, 18}));
  EXPECT_EQ(image->bitsPerPixel, 8u);
  EXPECT_EQ(image->bytesPerRow, 4u);
  EXPECT_EQ(image->alphaInfo, kCGImageAlphaNone);
  EXPECT_TRUE(CFEqual(image->colorSpace, graySpace().get()));
  EXPECT_EQ(image->cgImage, nullptr);
}

TEST(ConvertToGrayscale, LeavesGreyAlone) {
  const cf::Ref image = makeGrayImage(1, 1, {9});
  const uint8_t *before = image->buffer;
  DRAVCFImageConvertToGrayscale(image.get());
  EXPECT_EQ(image->buffer, before);
}

TEST(ConvertToGrayscale, DropsAlphaOverBlack) {
  const cf::Ref image = makeARGBImage(2, 1, {0, 0, 0, 0, 128, 100, 100, 100});
  DRAVCFImageConvertToGrayscale(image.get());
  EXPECT_EQ(bufferOf(image.get()), (Bytes{0, 100}));
}

TEST(ConvertToGrayscale, FailingAnywhereLeavesTheImage) {
  testing_support::forEachFailedAllocation([](CFAllocatorRef allocator, long n) {
    const cf::Ref image = makeARGBImage(1, 1, {255, 255, 255, 255}, allocator);
    if (!image) return;
    DRAVCFImageConvertToGrayscale(image.get());
    EXPECT_EQ(bufferOf(image.get()), image->bitsPerPixel == 8 ? Bytes{255} : Bytes(4, 255)) << n;
  });
}

TEST(MakeGrayscale, TakesTheMeanAndKeepsAlphaAndLayout) {
  const cf::Ref image = makeARGBImage(2, 1, {255, 255, 0, 0, 200, 10, 20, 31});
  DRAVCFImageMakeGrayscale(image.get());
  EXPECT_EQ(bufferOf(image.get()), (Bytes{255, 85, 85, 85, 200, 20, 20, 20}));
  EXPECT_EQ(image->alphaInfo, kCGImageAlphaPremultipliedFirst);
}

TEST(MakeGrayscale, LeavesGreyAndPixelsOfOtherSizesAlone) {
  const cf::Ref gray = makeGrayImage(4, 1, {1, 2, 3, 4});
  DRAVCFImageMakeGrayscale(gray.get());
  EXPECT_EQ(bufferOf(gray.get()), (Bytes{1, 2, 3, 4}));
  const Bytes colours{1, 50, 99, 3, 200, 7, 8, 9, 90, 11, 12, 255};
  const cf::Ref packed = makeBufferImage(4, 1, 24, deviceRGBSpace().get(), kCGImageAlphaNone, colours);
  DRAVCFImageMakeGrayscale(packed.get());
  EXPECT_EQ(bufferOf(packed.get()), colours);
  const cf::Ref wide = makeBufferImage(1, 1, 32, graySpace().get(), kCGImageAlphaNone, {1, 2, 30, 4});
  DRAVCFImageMakeGrayscale(wide.get());
  EXPECT_EQ(bufferOf(wide.get()), (Bytes{1, 2, 30, 4})) << "grey, of whatever depth";
}

// The arithmetic that defines the mean: single precision throughout.
uint8_t plainMean(uint8_t red, uint8_t green, uint8_t blue) {
  const uint8_t pixel[4] = {255, red, green, blue};
  float colour[4];
  drav::IntARGBToFloatARGB(pixel, colour);
  const float gray = (colour[1] + colour[2] + colour[3]) / 3.0f;
  const float grays[4] = {colour[0], gray, gray, gray};
  uint8_t stored[4];
  drav::FloatARGBToIntARGB(grays, stored);
  return stored[1];
}

TEST(MakeGrayscale, GivesTheDefinedMeanForAll16777216Colours) {
  constexpr size_t kPlane = 65536;
  for (int red = 0; red < 256; ++red) {
    Bytes pixels(4 * kPlane);
    for (size_t i = 0; i < kPlane; ++i) {
      pixels[4 * i] = static_cast<uint8_t>(i);
      pixels[4 * i + 1] = static_cast<uint8_t>(red);
      pixels[4 * i + 2] = static_cast<uint8_t>(i >> 8);
      pixels[4 * i + 3] = static_cast<uint8_t>(i);
    }
    const cf::Ref image = makeARGBImage(256, 256, pixels);
    DRAVCFImageMakeGrayscale(image.get());
    for (size_t i = 0; i < kPlane; ++i) {
      const uint8_t expected =
          plainMean(static_cast<uint8_t>(red), static_cast<uint8_t>(i >> 8), static_cast<uint8_t>(i));
      if (image->buffer[4 * i + 1] != expected || image->buffer[4 * i + 3] != expected ||
          image->buffer[4 * i] != static_cast<uint8_t>(i)) {
        FAIL() << red << " " << (i >> 8) << " " << (i & 255);
      }
    }
  }
}

TEST(IsColor, OfAPlatformImageIsWhatItsSpaceSays) {
  const cf::Ref gray = makeCGImage({1, 1, 8, 8, 1, graySpace().get(), kCGImageAlphaNone}, {1});
  EXPECT_EQ(DRAVCFImageIsColor(cf::adopt(DRAVCFImageCreateWithImage(nullptr, gray.get())).get()), 0);
}

TEST(ConvertToColor, LeavesColourAlone) {
  // Promotion would fill the ignored byte.
  const cf::Ref image =
      makeBufferImage(1, 1, 32, displaySpace().get(), kCGImageAlphaNoneSkipFirst, {7, 1, 2, 3});
  DRAVCFImageConvertToColor(image.get());
  EXPECT_EQ(bufferOf(image.get()), (Bytes{7, 1, 2, 3}));
}

TEST(ConvertToGrayscale, OfPaddedRowsGivesPackedOnes) {
  Bytes rows(2 * 16, 99);
  for (size_t y = 0; y < 2; ++y)
    for (size_t i = 0; i < 12; ++i) rows[16 * y + i] = static_cast<uint8_t>(10 * y + i / 4);
  const cf::Ref image = cf::adopt(DRAVCFImageCreateWithBuffer(
      nullptr, rows.data(), 3, 2, 8, 32, 16, displaySpace().get(), kCGImageAlphaNoneSkipFirst));
  DRAVCFImageConvertToGrayscale(image.get());
  EXPECT_EQ(bufferOf(image.get()), (Bytes{0, 1, 2, 10, 11, 12}));
  EXPECT_EQ(image->bytesPerRow, 3u);
}

TEST(ConvertToGrayscale, OfGreysKeepsEachOfThem) {
  Bytes pixels, grays;
  for (int gray = 0; gray < 256; ++gray) {
    for (int byte : {0, gray, gray, gray}) pixels.push_back(static_cast<uint8_t>(byte));
    grays.push_back(static_cast<uint8_t>(gray));
  }
  const cf::Ref image = makeBufferImage(256, 1, 32, displaySpace().get(), kCGImageAlphaNoneSkipFirst, pixels);
  DRAVCFImageConvertToGrayscale(image.get());
  EXPECT_EQ(bufferOf(image.get()), grays);
}

TEST(ConvertToGrayscale, OfAnImageThatHoldsNoPixelsDoesNothing) {
  const cf::Ref empty = cf::adopt(DRAVCFImageCreate(nullptr));
  DRAVCFImageConvertToGrayscale(empty.get());
  EXPECT_EQ(empty->buffer, nullptr);
  const cf::Ref none = cf::adopt(DRAVCFImageCreateWithSize(nullptr, CGSizeMake(0, 0), 1));
  DRAVCFImageConvertToGrayscale(none.get());
  EXPECT_EQ(none->bitsPerPixel, 32u);
}

TEST(MakeGrayscale, DropsThePlatformImage) {
  const cf::Ref image = makeARGBImage(1, 1, {255, 30, 60, 90});
  ASSERT_NE(DRAVCFImageGetCGImage(image.get()), nullptr);
  DRAVCFImageMakeGrayscale(image.get());
  EXPECT_EQ(image->cgImage, nullptr);
  EXPECT_EQ(bufferOf(image.get()), (Bytes{255, 60, 60, 60}));
}

TEST(ConvertToGrayscale, FailingAnywhereKeepsThePlatformImage) {
  const cf::Ref cgImage =
      makeCGImage({1, 1, 8, 32, 4, displaySpace().get(), kCGImageAlphaPremultipliedFirst}, Bytes(4, 255));
  testing_support::forEachFailedAllocation([&](CFAllocatorRef allocator, long n) {
    const cf::Ref image = cf::adopt(DRAVCFImageCreateWithImage(allocator, cgImage.get()));
    if (!image) return;
    DRAVCFImageConvertToGrayscale(image.get());
    if (image->cgImage != cgImage.get()) {
      EXPECT_EQ(bufferOf(image.get()), Bytes{255}) << n;
    }
  });
}

TEST(ConvertToGrayscale, WithoutMemoryToDrawWithLeavesTheImage) {
  bool failed = true;
  for (long n = 1; failed; ++n) {
    const cf::Ref image = makeARGBImage(3, 1, {255, 9, 9, 9, 255, 8, 8, 8, 255, 7, 7, 7});
    const Bytes before = bufferOf(image.get());
    ASSERT_NE(DRAVCFImageGetCGImage(image.get()), nullptr);
    {
      const testing_support::FailingNew failing(n);
      DRAVCFImageConvertToGrayscale(image.get());
      failed = failing.failed();
    }
    EXPECT_EQ(bufferOf(image.get()), failed ? before : (Bytes{9, 8, 7})) << n;
  }
}

}  // namespace
