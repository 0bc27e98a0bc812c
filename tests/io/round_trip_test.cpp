// What is written reads back: every layout of an image through every format that keeps it.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>

#include "files.h"
#include "media/codecs/registry.h"

namespace {

using namespace test;

constexpr size_t kWidth = 64;
constexpr size_t kHeight = 40;
constexpr uint8_t kStep = 37;

struct Argb {
  uint8_t alpha, red, green, blue;
};

// Every alpha with colours that are as bright as they can be, dark, and in between.
Argb sourcePixel(size_t i) {
  const auto scramble = [&](size_t salt) { return static_cast<uint8_t>((i + salt) * kStep + (i >> 8) * 11); };
  return {static_cast<uint8_t>(i), scramble(1), scramble(90),
          static_cast<uint8_t>(i % 3 ? scramble(200) : 255)};
}

uint8_t multiplied(unsigned colour, unsigned alpha) {
  return static_cast<uint8_t>((colour * alpha + 127) / 255);
}

// The bytes of an image in the layout of that alpha info; premultiplied where it says so.
Bytes sourceBytes(CGImageAlphaInfo info) {
  Bytes bytes;
  for (size_t i = 0; i < kWidth * kHeight; ++i) {
    Argb pixel = sourcePixel(i);
    if (info == kCGImageAlphaPremultipliedFirst || info == kCGImageAlphaPremultipliedLast) {
      for (uint8_t *colour : {&pixel.red, &pixel.green, &pixel.blue})
        *colour = multiplied(*colour, pixel.alpha);
    }
    const bool first = info == kCGImageAlphaFirst || info == kCGImageAlphaPremultipliedFirst ||
                       info == kCGImageAlphaNoneSkipFirst;
    if (info == kCGImageAlphaOnly || first) bytes.push_back(pixel.alpha);
    if (info == kCGImageAlphaOnly) continue;
    bytes.insert(bytes.end(), {pixel.red, pixel.green, pixel.blue});
    if (!first && info != kCGImageAlphaNone) bytes.push_back(pixel.alpha);
  }
  return bytes;
}

cf::Ref<CGImageRef> sourceImage(CGImageAlphaInfo info) {
  const Bytes bytes = sourceBytes(info);
  const size_t pixelBytes = bytes.size() / (kWidth * kHeight);
  const cf::Ref space = info == kCGImageAlphaOnly ? cf::Ref<CGColorSpaceRef>() : displaySpace();
  return makeCGImage({kWidth, kHeight, 8, 8 * pixelBytes, kWidth * pixelBytes, space.get(), info}, bytes);
}

cf::Ref<CGImageRef> greyImage() {
  Bytes bytes;
  for (size_t i = 0; i < kWidth * kHeight; ++i) bytes.push_back(static_cast<uint8_t>(i * kStep));
  const cf::Ref space = graySpace();
  return makeCGImage({kWidth, kHeight, 8, 8, kWidth, space.get(), kCGImageAlphaNone}, bytes);
}

bool hasAlpha(CGImageAlphaInfo info) {
  return info >= kCGImageAlphaPremultipliedLast && info <= kCGImageAlphaFirst;
}

bool isPremultiplied(CGImageAlphaInfo info) {
  return info == kCGImageAlphaPremultipliedFirst || info == kCGImageAlphaPremultipliedLast;
}

codecs::DecodedImage decoded(const Bytes &file) {
  auto result = codecs::decodeAny(file, CGImageGetDefaultDecodeLimits());
  EXPECT_EQ(result.fault, codecs::Fault::none);
  return std::move(result.value);
}

// A straight colour that gives these bytes when it is multiplied again; any will do where alpha is 0.
void expectComesBackPremultiplied(const uint8_t *found, const Argb &source) {
  const uint8_t colours[] = {source.red, source.green, source.blue};
  for (int c = 0; c < 3; ++c)
    ASSERT_EQ(multiplied(found[c + 1], source.alpha), multiplied(colours[c], source.alpha));
}

// The pixels of a file against those that were written, nothing lost.
void expectNothingIsLost(const Bytes &file, CGImageAlphaInfo info) {
  SCOPED_TRACE(testing::Message() << "alpha info " << info);
  const codecs::DecodedImage image = decoded(file);
  ASSERT_EQ(image.width, kWidth);
  ASSERT_EQ(image.height, kHeight);
  ASSERT_EQ(image.layout, hasAlpha(info) ? codecs::PixelLayout::argb32 : codecs::PixelLayout::xrgb32);
  for (size_t i = 0; i < kWidth * kHeight; ++i) {
    const uint8_t *const found = image.pixels.data() + 4 * i;
    const Argb source = sourcePixel(i);
    ASSERT_EQ(found[0], hasAlpha(info) ? source.alpha : 255) << i;
    if (isPremultiplied(info)) {
      expectComesBackPremultiplied(found, source);
    } else {
      ASSERT_TRUE(found[1] == source.red && found[2] == source.green && found[3] == source.blue) << i;
    }
  }
}

constexpr CGImageAlphaInfo kColours[] = {
    kCGImageAlphaNone,  kCGImageAlphaPremultipliedLast, kCGImageAlphaPremultipliedFirst, kCGImageAlphaLast,
    kCGImageAlphaFirst, kCGImageAlphaNoneSkipLast,      kCGImageAlphaNoneSkipFirst};

TEST(RoundTrip, ThroughPNGNoLayoutOfColoursLosesAnything) {
  for (const CGImageAlphaInfo info : kColours)
    expectNothingIsLost(encoded(DRAVCFImageExporterCreatePNG, sourceImage(info).get()), info);
}

TEST(RoundTrip, ThroughTIFFNoLayoutOfColoursLosesAnything) {
  for (const CGImageAlphaInfo info : kColours)
    expectNothingIsLost(encoded(DRAVCFImageExporterCreateTIFF, sourceImage(info).get()), info);
}

TEST(RoundTrip, GreyComesBackAsGreyThroughPNGAndTIFF) {
  for (const auto make : {DRAVCFImageExporterCreatePNG, DRAVCFImageExporterCreateTIFF}) {
    const codecs::DecodedImage image = decoded(encoded(make, greyImage().get()));
    ASSERT_EQ(image.layout, codecs::PixelLayout::grey8);
    EXPECT_EQ(Bytes(image.pixels.data(), image.pixels.data() + image.pixels.size()),
              pixelsOf(greyImage().get()));
  }
}

TEST(RoundTrip, AlphaAloneComesBackAsTheAlphaOfBlackThroughPNGAndTIFF) {
  for (const auto make : {DRAVCFImageExporterCreatePNG, DRAVCFImageExporterCreateTIFF}) {
    const codecs::DecodedImage image = decoded(encoded(make, sourceImage(kCGImageAlphaOnly).get()));
    ASSERT_EQ(image.layout, codecs::PixelLayout::argb32);
    for (size_t i = 0; i < kWidth * kHeight; ++i) {
      const uint8_t *const found = image.pixels.data() + 4 * i;
      ASSERT_EQ(Bytes(found, found + 4), (Bytes{sourcePixel(i).alpha, 0, 0, 0})) << i;
    }
  }
}

// Through the loader, which hands out premultiplied pixels, the same bytes come back as went in.
TEST(RoundTrip, PremultipliedPixelsComeBackByteForByteThroughTIFFAndTheLoader) {
  const Bytes file =
      encoded(DRAVCFImageExporterCreateTIFF, sourceImage(kCGImageAlphaPremultipliedFirst).get());
  const cf::Ref loaded = cf::adopt(DRAVCFImageCreateWithData(nullptr, dataOf(file).get()));
  ASSERT_TRUE(loaded);
  ASSERT_EQ(DRAVCFImageGetAlphaInfo(loaded.get()), kCGImageAlphaPremultipliedFirst);
  EXPECT_EQ(pixelsOf(loaded->cgImage), sourceBytes(kCGImageAlphaPremultipliedFirst));
}

cf::Ref<DRAVCFImageRef> reloaded(const Bytes &picture, DRAVCFImageFormat format) {
  return cf::adopt(DRAVCFImageCreateWithFormattedData(nullptr, dataOf(picture).get(), format));
}

TEST(RoundTrip, ThroughPICTNothingWithoutAlphaIsLost) {
  for (const CGImageAlphaInfo info :
       {kCGImageAlphaNone, kCGImageAlphaNoneSkipLast, kCGImageAlphaNoneSkipFirst}) {
    const cf::Ref loaded =
        reloaded(encoded(DRAVCFImageExporterCreatePICT, sourceImage(info).get()), kDRAVCFImageFormatPICT);
    ASSERT_TRUE(loaded) << info;
    EXPECT_EQ(DRAVCFImageGetAlphaInfo(loaded.get()), kCGImageAlphaNoneSkipFirst);
    const Bytes pixels = pixelsOf(loaded->cgImage);
    ASSERT_EQ(pixels.size(), 4 * kWidth * kHeight);
    for (size_t i = 0; i < kWidth * kHeight; ++i) {
      const Argb source = sourcePixel(i);
      const Bytes found(pixels.begin() + static_cast<long>(4 * i) + 1,
                        pixels.begin() + static_cast<long>(4 * i) + 4);
      ASSERT_EQ(found, (Bytes{source.red, source.green, source.blue})) << info << " at " << i;
    }
  }
}

TEST(RoundTrip, ThroughPICTGreyBecomesColoursOfTheSameValues) {
  const cf::Ref loaded =
      reloaded(encoded(DRAVCFImageExporterCreatePICT, greyImage().get()), kDRAVCFImageFormatPICT);
  ASSERT_TRUE(loaded);
  const Bytes pixels = pixelsOf(loaded->cgImage), greys = pixelsOf(greyImage().get());
  ASSERT_EQ(pixels.size(), 4 * greys.size());
  for (size_t i = 0; i < greys.size(); ++i) {
    for (size_t c = 1; c < 4; ++c) ASSERT_EQ(pixels[4 * i + c], greys[i]) << i;
  }
}

TEST(RoundTrip, ThroughPCTAlphaComesBackBesideTheDividedPixels) {
  for (const CGImageAlphaInfo info : kColours) {
    if (!hasAlpha(info)) continue;
    const cf::Ref source = sourceImage(info);
    const cf::Ref promoted = cf::adopt(DRAVCFImageCreateWithImage(nullptr, source.get()));
    ASSERT_NE(DRAVCFImageGetImageBuffer(promoted.get()), nullptr);
    Bytes divided = bufferOf(promoted.get());
    DRAVCFUnpremultiplyARGBBuffer(divided.data(), divided.size());
    const cf::Ref loaded =
        reloaded(encoded(DRAVCFImageExporterCreatePCT, source.get()), kDRAVCFImageFormatPCT);
    ASSERT_TRUE(loaded) << info;
    EXPECT_EQ(DRAVCFImageGetAlphaInfo(loaded.get()), kCGImageAlphaFirst);
    EXPECT_EQ(pixelsOf(loaded->cgImage), divided) << info;
  }
}

}  // namespace
