// The pixels of a decoded image, one by one, whatever its layout.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>

#include "media/codecs/codec.h"

namespace decoded_pixels {

struct Pixel {
  uint8_t a, r, g, b;
  bool operator==(const Pixel &) const = default;
};

inline std::ostream &operator<<(std::ostream &out, const Pixel &pixel) {
  return out << "{a " << int{pixel.a} << ", r " << int{pixel.r} << ", g " << int{pixel.g} << ", b "
             << int{pixel.b} << "}";
}

inline Pixel pixelAt(const codecs::DecodedImage &image, uint32_t x, uint32_t y) {
  const uint8_t *at = image.row(y) + x * bytesPerPixel(image.layout);
  if (image.layout == codecs::PixelLayout::grey8) return {255, at[0], at[0], at[0]};
  return {at[0], at[1], at[2], at[3]};
}

// `expected(x, y)` says what every pixel is to be.
template <class Expected>
void expectPixels(const codecs::DecodedImage &image, uint32_t width, uint32_t height,
                  codecs::PixelLayout layout, Expected expected) {
  ASSERT_EQ(image.width, width);
  ASSERT_EQ(image.height, height);
  ASSERT_EQ(image.layout, layout);
  EXPECT_EQ(image.depth, layout == codecs::PixelLayout::grey8    ? 8
                         : layout == codecs::PixelLayout::xrgb32 ? 24
                                                                 : 32);
  for (uint32_t y = 0; y < height; ++y) {
    for (uint32_t x = 0; x < width; ++x) {
      ASSERT_EQ(pixelAt(image, x, y), expected(x, y)) << "at " << x << ", " << y;
    }
  }
}

}  // namespace decoded_pixels
