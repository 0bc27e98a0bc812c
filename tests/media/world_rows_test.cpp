#include "media/world_rows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "media/codecs/frame.h"

namespace {

using codecs::PixelLayout;
using media::AlphaStyle;

codecs::DecodedImage imageOf(PixelLayout layout, uint32_t width, uint32_t height) {
  codecs::DecodedImage image;
  EXPECT_EQ(codecs::makeFrame(image, width, height, layout, CGImageGetDefaultDecodeLimits()),
            codecs::Fault::none);
  return image;
}

std::vector<uint8_t> draw(const codecs::DecodedImage &image, uint32_t format, AlphaStyle style, int16_t width,
                          int16_t height) {
  const size_t rowBytes = static_cast<size_t>(width) * (format == 32 ? 4 : 1);
  std::vector<uint8_t> pixels(rowBytes * static_cast<size_t>(height), 0xEE);
  const OffscreenWorld world{format, {0, 0, height, width}, pixels.data(), rowBytes};
  media::drawInto(world, image, style);
  return pixels;
}

TEST(WorldRows, PremultipliesEveryPairToTheNearestByte) {
  codecs::DecodedImage image = imageOf(PixelLayout::argb32, 256, 256);
  for (unsigned alpha = 0; alpha < 256; ++alpha) {
    for (unsigned colour = 0; colour < 256; ++colour) {
      uint8_t *pixel = image.row(alpha) + 4 * colour;
      pixel[0] = static_cast<uint8_t>(alpha);
      pixel[1] = pixel[2] = pixel[3] = static_cast<uint8_t>(colour);
    }
  }
  const auto drawn = draw(image, 32, AlphaStyle::premultiplied, 256, 256);
  for (unsigned alpha = 0; alpha < 256; ++alpha) {
    for (unsigned colour = 0; colour < 256; ++colour) {
      const uint8_t *pixel = &drawn[4 * (256 * alpha + colour)];
      const auto expected = static_cast<uint8_t>(std::lround(colour * alpha / 255.0));
      ASSERT_EQ(pixel[0], alpha);
      ASSERT_EQ(pixel[1], expected);
      ASSERT_EQ(pixel[2], expected);
      ASSERT_EQ(pixel[3], expected);
    }
  }
}

TEST(WorldRows, AlphaIsKeptStraightOrDroppedAsAsked) {
  codecs::DecodedImage image = imageOf(PixelLayout::argb32, 1, 1);
  std::copy_n(std::initializer_list<uint8_t>{100, 10, 20, 30}.begin(), 4, image.row(0));
  EXPECT_EQ(draw(image, 32, AlphaStyle::straight, 1, 1), (std::vector<uint8_t>{100, 10, 20, 30}));
  EXPECT_EQ(draw(image, 32, AlphaStyle::skipped, 1, 1), (std::vector<uint8_t>{255, 10, 20, 30}));
}

TEST(WorldRows, GreyRepeatsIntoColourAndColourIsWeighedIntoGrey) {
  codecs::DecodedImage grey = imageOf(PixelLayout::grey8, 1, 1);
  grey.row(0)[0] = 77;
  EXPECT_EQ(draw(grey, 32, AlphaStyle::premultiplied, 1, 1), (std::vector<uint8_t>{255, 77, 77, 77}));
  EXPECT_EQ(draw(grey, 40, AlphaStyle::premultiplied, 1, 1), (std::vector<uint8_t>{77}));
  codecs::DecodedImage colour = imageOf(PixelLayout::xrgb32, 1, 1);
  std::copy_n(std::initializer_list<uint8_t>{255, 10, 200, 30}.begin(), 4, colour.row(0));
  EXPECT_EQ(draw(colour, 40, AlphaStyle::premultiplied, 1, 1), (std::vector<uint8_t>{124}));  // 3 + 118 + 3.3
}

TEST(WorldRows, WhatDoesNotFitIsCutOffAndTheRestStays) {
  codecs::DecodedImage image = imageOf(PixelLayout::grey8, 2, 3);
  const auto drawn = draw(image, 40, AlphaStyle::premultiplied, 3, 2);
  EXPECT_EQ(drawn, (std::vector<uint8_t>{0, 0, 0xEE, 0, 0, 0xEE}));
}

TEST(WorldRows, AHalfOfAGreyIsRoundedUp) {
  codecs::DecodedImage image = imageOf(PixelLayout::xrgb32, 1, 1);
  std::copy_n(std::initializer_list<uint8_t>{255, 5, 0, 0}.begin(), 4, image.row(0));  // 1.50
  EXPECT_EQ(draw(image, 40, AlphaStyle::straight, 1, 1), (std::vector<uint8_t>{2}));
}

TEST(WorldRows, RowsBelowTheImageStay) {
  codecs::DecodedImage image = imageOf(PixelLayout::grey8, 2, 1);
  image.row(0)[0] = image.row(0)[1] = 9;
  EXPECT_EQ(draw(image, 40, AlphaStyle::straight, 2, 3),
            (std::vector<uint8_t>{9, 9, 0xEE, 0xEE, 0xEE, 0xEE}));
}

}  // namespace
