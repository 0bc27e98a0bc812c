#include "graphics/image.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "failing_allocator.h"
#include "graphics/spaces.h"

namespace {

using testing_support::Space;
using Image = cf::Ref<CGImageRef>;

// Arguments that fit together; a test changes the one it is about.
struct Arguments {
  size_t width = 4, height = 3, bitsPerComponent = 8, bitsPerPixel = 32, bytesPerRow = 16, bytes = 48;
  CGColorSpaceRef space = nullptr;
  CGBitmapInfo info = kCGImageAlphaNoneSkipFirst;
  const CGFloat *decode = nullptr;
  CGColorRenderingIntent intent = kCGRenderingIntentDefault;
};

class ImageCreation : public testing::Test {
 protected:
  Image make(const Arguments &a) {
    const auto provider = cf::adopt(CGDataProviderCreateWithData(nullptr, pixels_.data(), a.bytes, nullptr));
    return Image::adopt(CGImageCreate(a.width, a.height, a.bitsPerComponent, a.bitsPerPixel, a.bytesPerRow,
                                      a.space, a.info, provider.get(), a.decode, true, a.intent));
  }
  [[nodiscard]] Arguments rgb() const { return with(rgb_); }
  [[nodiscard]] Arguments gray() const {
    Arguments a = with(gray_);
    a.bitsPerPixel = 8;
    a.info = kCGImageAlphaNone;
    return a;
  }
  [[nodiscard]] Arguments cmyk() const {
    Arguments a = with(cmyk_);
    a.info = kCGImageAlphaNone;
    return a;
  }
  [[nodiscard]] Arguments indexed() const {
    Arguments a = gray();
    a.space = indexed_.get();
    return a;
  }
  static Arguments with(const Space &space) {
    Arguments a;
    a.space = space.get();
    return a;
  }

  std::vector<uint8_t> pixels_ = std::vector<uint8_t>(4096);
  uint8_t table_[6] = {1, 2, 3, 4, 5, 6};
  Space rgb_{CGColorSpaceCreateDeviceRGB()}, gray_{CGColorSpaceCreateDeviceGray()},
      cmyk_{CGColorSpaceCreateDeviceCMYK()}, indexed_{CGColorSpaceCreateIndexed(rgb_.get(), 1, table_)};
};

TEST_F(ImageCreation, TheGettersTellWhatTheImageWasMadeOf) {
  Arguments a = rgb();
  a.info = kCGImageAlphaPremultipliedFirst | kCGBitmapByteOrder32Little;
  a.intent = kCGRenderingIntentSaturation;
  const Image image = make(a);
  ASSERT_TRUE(image);
  EXPECT_EQ(CGImageGetWidth(image.get()), 4U);
  EXPECT_EQ(CGImageGetHeight(image.get()), 3U);
  EXPECT_EQ(CGImageGetBitsPerComponent(image.get()), 8U);
  EXPECT_EQ(CGImageGetBitsPerPixel(image.get()), 32U);
  EXPECT_EQ(CGImageGetBytesPerRow(image.get()), 16U);
  EXPECT_EQ(CGImageGetColorSpace(image.get()), rgb_.get());
  EXPECT_EQ(CGImageGetAlphaInfo(image.get()), static_cast<CGImageAlphaInfo>(kCGImageAlphaPremultipliedFirst));
  EXPECT_EQ(CGImageGetBitmapInfo(image.get()), a.info);
  EXPECT_EQ(CGImageGetDecode(image.get()), nullptr);
  EXPECT_TRUE(CGImageGetShouldInterpolate(image.get()));
  EXPECT_EQ(CGImageGetRenderingIntent(image.get()), kCGRenderingIntentSaturation);
  EXPECT_NE(CGImageGetDataProvider(image.get()), nullptr);
}

TEST_F(ImageCreation, TheDecodeArrayIsCopied) {
  Arguments a = rgb();
  CGFloat decode[] = {1, 0, 0.25F, 0.5F, 0, 2};
  a.decode = decode;
  const Image image = make(a);
  ASSERT_TRUE(image);
  decode[0] = 9;
  EXPECT_EQ(CGImageGetDecode(image.get())[0], 1);
  EXPECT_EQ(CGImageGetDecode(image.get())[5], 2);
  decode[3] = std::numeric_limits<CGFloat>::infinity();
  EXPECT_FALSE(make(a));
}

TEST_F(ImageCreation, SidesOfNothingOrTooMuchAreRefused) {
  for (const size_t side : {size_t{0}, size_t{1} << 31, size_t{1} << 40, SIZE_MAX}) {
    Arguments a = gray();
    a.width = side;
    a.bytesPerRow = SIZE_MAX;
    EXPECT_FALSE(make(a)) << side;
    a = gray();
    a.height = side;
    a.bytesPerRow = 4;
    EXPECT_FALSE(make(a)) << side;
  }
}

TEST_F(ImageCreation, RowsShorterThanTheirPixelsAreRefused) {
  Arguments a = rgb();
  a.bytesPerRow = 15;
  EXPECT_FALSE(make(a));
  a = gray();
  a.width = 9;
  a.bitsPerComponent = a.bitsPerPixel = 1;
  a.bytesPerRow = 1;
  EXPECT_FALSE(make(a));
  a.bytesPerRow = 2;
  EXPECT_TRUE(make(a));
}

TEST_F(ImageCreation, TheLastRowNeedsNoPadding) {
  Arguments a = rgb();
  a.bytesPerRow = 20;
  a.bytes = 2 * 20 + 16;
  EXPECT_TRUE(make(a));
  --a.bytes;
  EXPECT_FALSE(make(a));
}

TEST_F(ImageCreation, RowsThatOverflowAreRefused) {
  Arguments a = gray();
  a.bytesPerRow = SIZE_MAX / 2;
  EXPECT_FALSE(make(a));
}

TEST_F(ImageCreation, OnlyDepthsOfOneToSixteenBitsInPowersOfTwo) {
  for (const size_t depth : {0, 3, 5, 7, 9, 10, 12, 15, 32, 64}) {
    Arguments a = gray();
    a.bitsPerComponent = depth;
    a.bitsPerPixel = 64;
    a.bytesPerRow = 64;
    a.bytes = 4096;
    EXPECT_FALSE(make(a)) << depth;
  }
  for (const size_t depth : {1, 2, 4, 8, 16}) {
    Arguments a = gray();
    a.bitsPerComponent = a.bitsPerPixel = depth;
    EXPECT_TRUE(make(a)) << depth;
  }
}

TEST_F(ImageCreation, PixelsMustHoldTheirComponents) {
  Arguments a = rgb();
  a.bitsPerPixel = 24;
  EXPECT_FALSE(make(a)) << "the skipped byte has no room";
  a.info = kCGImageAlphaNone;
  EXPECT_TRUE(make(a));
  a.bitsPerPixel = 16;
  EXPECT_FALSE(make(a));
  a.bitsPerPixel = 28;
  EXPECT_FALSE(make(a)) << "no whole bytes";
  a.bytesPerRow = 64;
  a.bytes = 4096;
  a.bitsPerPixel = 72;
  EXPECT_FALSE(make(a));
  a.bitsPerPixel = 64;
  EXPECT_TRUE(make(a));
}

TEST_F(ImageCreation, AlphaGoesWithGrayAndRGBOnly) {
  for (CGImageAlphaInfo info = 0; info < 32; ++info) {
    Arguments a = rgb();
    a.info = info;
    EXPECT_EQ(static_cast<bool>(make(a)), info <= kCGImageAlphaOnly) << info;
    a = gray();
    a.bitsPerPixel = 16;
    a.info = info;
    EXPECT_EQ(static_cast<bool>(make(a)), info <= kCGImageAlphaOnly) << info;
    a = cmyk();
    a.bitsPerPixel = 40;
    a.bytesPerRow = 20;
    a.bytes = 60;
    a.info = info;
    EXPECT_EQ(static_cast<bool>(make(a)), info == kCGImageAlphaNone || info == kCGImageAlphaOnly) << info;
    a = indexed();
    a.bitsPerPixel = 16;
    a.info = info;
    EXPECT_EQ(static_cast<bool>(make(a)), info == kCGImageAlphaNone || info == kCGImageAlphaOnly) << info;
  }
}

TEST_F(ImageCreation, OnlyAlphaAloneNeedsNoSpace) {
  Arguments a = gray();
  a.space = nullptr;
  EXPECT_FALSE(make(a));
  a.info = kCGImageAlphaOnly;
  EXPECT_TRUE(make(a));
}

TEST_F(ImageCreation, UnknownBitsAndOrdersAreRefused) {
  Arguments a = rgb();
  for (const CGBitmapInfo bit : {1U << 5, 1U << 8, 1U << 15, 1U << 31, 5U << 12, 6U << 12, 7U << 12}) {
    a.info = kCGImageAlphaNoneSkipFirst | bit;
    EXPECT_FALSE(make(a)) << bit;
  }
  a.info = kCGImageAlphaNone | kCGBitmapByteOrder32Little;
  a.bitsPerPixel = 24;
  EXPECT_FALSE(make(a));
}

TEST_F(ImageCreation, IndicesHaveAtMostEightBits) {
  Arguments a = indexed();
  a.bitsPerComponent = a.bitsPerPixel = 16;
  EXPECT_FALSE(make(a));
}

TEST_F(ImageCreation, UnknownIntentsAndMissingProvidersAreRefused) {
  Arguments a = rgb();
  a.intent = 5;
  EXPECT_FALSE(make(a));
  a.intent = -1;
  EXPECT_FALSE(make(a));
  EXPECT_EQ(CGImageCreate(1, 1, 8, 32, 4, rgb_.get(), 6, nullptr, nullptr, false, 0), nullptr);
}

TEST_F(ImageCreation, ACopyIsAnotherImageOverTheSameBytes) {
  const Image image = make(rgb());
  cg::setImageResolution(image.get(), {300, 150});
  const Image copy = Image::adopt(CGImageCreateCopy(image.get()));
  EXPECT_FALSE(CFEqual(image.get(), copy.get()));
  EXPECT_TRUE(CFEqual(image.get(), image.get()));
  EXPECT_EQ(cg::imageRow(copy.get(), 2), cg::imageRow(image.get(), 2));
  EXPECT_EQ(cg::imageResolution(copy.get()).x, 300);
  EXPECT_EQ(cg::imageResolution(copy.get()).y, 150);
}

TEST_F(ImageCreation, APartStartsAtItsTopLeftPixel) {
  const Image image = make(rgb());
  const Image part = Image::adopt(CGImageCreateWithImageInRect(image.get(), CGRectMake(1.5F, 1, 1.2F, 9)));
  ASSERT_TRUE(part);
  EXPECT_EQ(CGImageGetWidth(part.get()), 2U);
  EXPECT_EQ(CGImageGetHeight(part.get()), 2U);
  EXPECT_EQ(cg::imageRow(part.get(), 0), pixels_.data() + 16 + 4);
  const Image inner = Image::adopt(CGImageCreateWithImageInRect(part.get(), CGRectMake(2, 2, -1, -1)));
  ASSERT_TRUE(inner);
  EXPECT_EQ(cg::imageRow(inner.get(), 0), pixels_.data() + 32 + 8);
}

TEST_F(ImageCreation, PartsOutsideOrOfNoSizeAreRefused) {
  const Image image = make(rgb());
  const CGFloat nan = std::numeric_limits<CGFloat>::quiet_NaN();
  for (const CGRect rect : {CGRectMake(4, 0, 1, 1), CGRectMake(0, -2, 4, 2), CGRectMake(1, 1, 0, 1),
                            CGRectMake(nan, 0, 2, 2), CGRectMake(0, 0, nan, 2), CGRectNull})
    EXPECT_EQ(CGImageCreateWithImageInRect(image.get(), rect), nullptr);
  EXPECT_TRUE(Image::adopt(CGImageCreateWithImageInRect(image.get(), CGRectInfinite)));
}

TEST_F(ImageCreation, APartThatBeginsWithinAByteIsRefused) {
  Arguments a = gray();
  a.width = 16;
  a.bitsPerComponent = a.bitsPerPixel = 1;
  const Image image = make(a);
  EXPECT_EQ(CGImageCreateWithImageInRect(image.get(), CGRectMake(3, 0, 2, 2)), nullptr);
  EXPECT_TRUE(Image::adopt(CGImageCreateWithImageInRect(image.get(), CGRectMake(8, 0, 2, 2))));
}

TEST(Image, NullIsTakenEverywhere) {
  EXPECT_EQ(CGImageGetWidth(nullptr), 0U);
  EXPECT_EQ(CGImageGetColorSpace(nullptr), nullptr);
  EXPECT_EQ(CGImageGetDecode(nullptr), nullptr);
  EXPECT_EQ(CGImageCreateCopy(nullptr), nullptr);
  EXPECT_EQ(CGImageCreateWithImageInRect(nullptr, CGRectInfinite), nullptr);
  EXPECT_EQ(CGImageRetain(nullptr), nullptr);
  CGImageRelease(nullptr);
  EXPECT_EQ(cg::imageResolution(nullptr).x, 0);
}

TEST_F(ImageCreation, SurvivesEveryFailedAllocation) {
  testing_support::forEachFailedAllocation([&](CFAllocatorRef allocator, long) {
    CFAllocatorSetDefault(allocator);
    {
      const Image image = make(rgb());
      const Image copy = Image::adopt(CGImageCreateCopy(image.get()));
      const Image part = Image::adopt(CGImageCreateWithImageInRect(image.get(), CGRectMake(1, 1, 2, 2)));
      EXPECT_TRUE(image || (!copy && !part));
    }
    CFAllocatorSetDefault(nullptr);
  });
}

}  // namespace
