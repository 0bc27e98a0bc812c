#include <CoreGraphics/CoreGraphics.h>
#include <gtest/gtest.h>

#include "canvas.h"

namespace cg {
namespace {

using test::Bytes;
using test::Canvas;

using Context = cf::Ref<CGContextRef>;

Context make(void *data, size_t width, size_t height, size_t bits, size_t rowBytes, CGColorSpaceRef space,
             CGBitmapInfo info) {
  return cf::adopt(CGBitmapContextCreate(data, width, height, bits, rowBytes, space, info));
}

TEST(BitmapContext, TellsWhatItWasMadeOf) {
  const auto space = test::rgb();
  Bytes bytes(3 * 20);
  const Context context = make(bytes.data(), 4, 3, 8, 20, space.get(), kCGImageAlphaPremultipliedFirst);
  ASSERT_TRUE(context);
  EXPECT_EQ(CGBitmapContextGetData(context.get()), bytes.data());
  EXPECT_EQ(CGBitmapContextGetWidth(context.get()), 4u);
  EXPECT_EQ(CGBitmapContextGetHeight(context.get()), 3u);
  EXPECT_EQ(CGBitmapContextGetBitsPerComponent(context.get()), 8u);
  EXPECT_EQ(CGBitmapContextGetBitsPerPixel(context.get()), 32u);
  EXPECT_EQ(CGBitmapContextGetBytesPerRow(context.get()), 20u);
  EXPECT_EQ(CGBitmapContextGetColorSpace(context.get()), space.get());
  EXPECT_EQ(CGBitmapContextGetAlphaInfo(context.get()), CGImageAlphaInfo{kCGImageAlphaPremultipliedFirst});
  EXPECT_EQ(CGBitmapContextGetBitmapInfo(context.get()), CGBitmapInfo{kCGImageAlphaPremultipliedFirst});
}

TEST(BitmapContext, ColorTakesEveryAlphaInfoButNoneAndOnly) {
  for (CGBitmapInfo info = 0; info < 8; ++info) {
    const bool expected = info >= 1 && info <= 6;
    if (info == kCGImageAlphaOnly) continue;
    EXPECT_EQ(static_cast<bool>(make(nullptr, 2, 2, 8, 0, test::rgb().get(), info)), expected) << info;
  }
}

TEST(BitmapContext, GrayTakesNoAlpha) {
  for (CGBitmapInfo info = 0; info < 7; ++info)
    EXPECT_EQ(static_cast<bool>(make(nullptr, 2, 2, 8, 0, test::gray().get(), info)), info == 0) << info;
}

TEST(BitmapContext, AlphaAloneTakesAnySpaceOrNone) {
  EXPECT_TRUE(make(nullptr, 2, 2, 8, 0, nullptr, kCGImageAlphaOnly));
  EXPECT_TRUE(make(nullptr, 2, 2, 8, 0, test::rgb().get(), kCGImageAlphaOnly));
}

TEST(BitmapContext, OtherCombinationsGiveNull) {
  const auto space = test::rgb();
  const auto cmyk = cf::adopt(CGColorSpaceCreateDeviceCMYK());
  const unsigned char table[] = {1, 2, 3};
  const auto indexed = cf::adopt(CGColorSpaceCreateIndexed(space.get(), 0, table));
  const auto info = CGBitmapInfo{kCGImageAlphaPremultipliedFirst};
  Bytes bytes(64);
  EXPECT_FALSE(make(nullptr, 2, 2, 16, 0, space.get(), info));
  EXPECT_FALSE(make(nullptr, 2, 2, 5, 0, space.get(), info));
  EXPECT_FALSE(make(nullptr, 0, 2, 8, 0, space.get(), info));
  EXPECT_FALSE(make(nullptr, 2, 0, 8, 0, space.get(), info));
  EXPECT_FALSE(make(nullptr, 2, 2, 8, 0, nullptr, info));
  EXPECT_FALSE(make(nullptr, 2, 2, 8, 0, cmyk.get(), info));
  EXPECT_FALSE(make(nullptr, 2, 2, 8, 0, indexed.get(), info));
  EXPECT_FALSE(make(nullptr, 2, 2, 8, 0, indexed.get(), kCGImageAlphaNone));
  EXPECT_FALSE(make(bytes.data(), 2, 2, 8, 7, space.get(), info));
  EXPECT_FALSE(make(bytes.data(), 2, 2, 8, 0, space.get(), info));
  EXPECT_FALSE(make(nullptr, 2, 2, 8, 7, space.get(), info));
  EXPECT_FALSE(make(nullptr, 2, 2, 8, 0, space.get(), info | kCGBitmapByteOrder32Little));
  EXPECT_TRUE(make(nullptr, 2, 2, 8, 0, space.get(), info | kCGBitmapByteOrder32Big));
}

TEST(BitmapContext, SizesBeyondMemoryGiveNull) {
  const auto space = test::rgb();
  EXPECT_FALSE(make(nullptr, size_t{1} << 31, 1, 8, 0, space.get(), kCGImageAlphaPremultipliedFirst));
  EXPECT_FALSE(make(nullptr, SIZE_MAX, 2, 8, 0, space.get(), kCGImageAlphaPremultipliedFirst));
  EXPECT_FALSE(make(nullptr, 2, 1000, 8, SIZE_MAX / 100, space.get(), kCGImageAlphaPremultipliedFirst));
}

TEST(BitmapContext, MemoryOfItsOwnIsZeroed) {
  const Context context = make(nullptr, 30, 40, 8, 0, test::rgb().get(), kCGImageAlphaPremultipliedFirst);
  ASSERT_TRUE(context);
  EXPECT_EQ(CGBitmapContextGetBytesPerRow(context.get()), 120u);
  const auto *bytes = static_cast<const uint8_t *>(CGBitmapContextGetData(context.get()));
  EXPECT_EQ(Bytes(bytes, bytes + 4800), Bytes(4800));
}

TEST(BitmapContext, AnImageOfItKeepsThePixelsAsTheyWere) {
  const Canvas canvas(2, 2, kCGImageAlphaPremultipliedFirst,
                      {255, 1, 2, 3, 255, 4, 5, 6, 9, 9, 9, 9, 0, 0, 0, 0});
  const auto image = cf::adopt(CGBitmapContextCreateImage(canvas.context()));
  CGContextClearRect(canvas.context(), CGRectMake(0, 0, 2, 2));
  ASSERT_TRUE(image);
  EXPECT_EQ(CGImageGetAlphaInfo(image.get()), CGImageAlphaInfo{kCGImageAlphaPremultipliedFirst});
  const Canvas other(2, 2, kCGImageAlphaPremultipliedFirst);
  CGContextDrawImage(other.context(), CGRectMake(0, 0, 2, 2), image.get());
  EXPECT_EQ(other.pixels(), (Bytes{255, 1, 2, 3, 255, 4, 5, 6, 9, 9, 9, 9, 0, 0, 0, 0}));
}

TEST(BitmapContext, AlphaAloneGivesAnImageToo) {
  const Canvas canvas(2, 1, kCGImageAlphaOnly, {7, 200});
  const auto image = cf::adopt(CGBitmapContextCreateImage(canvas.context()));
  ASSERT_TRUE(image);
  EXPECT_EQ(CGImageGetAlphaInfo(image.get()), CGImageAlphaInfo{kCGImageAlphaOnly});
}

TEST(BitmapContext, WithoutAContextEveryAnswerIsNone) {
  EXPECT_EQ(CGBitmapContextGetData(nullptr), nullptr);
  EXPECT_EQ(CGBitmapContextGetWidth(nullptr), 0u);
  EXPECT_EQ(CGBitmapContextGetColorSpace(nullptr), nullptr);
  EXPECT_EQ(CGBitmapContextCreateImage(nullptr), nullptr);
}

}  // namespace
}  // namespace cg
