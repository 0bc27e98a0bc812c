// What a picture looks like, as a grid of letters.
#pragma once

#include <gtest/gtest.h>

#include <map>

#include "media/codecs/pict/pict.h"
#include "media/codecs/pict/pixel.h"
#include "picture_maker.h"

namespace codecs::pict {

inline const CGImageDecodeLimits kPictureLimits = CGImageGetDefaultDecodeLimits();

inline Result<DecodedImage> decodeBytes(const std::vector<uint8_t> &file) {
  return decodePict(file, kPictureLimits);
}

inline Pixel pixelAt(const DecodedImage &image, uint32_t x, uint32_t y) {
  const uint8_t *at = image.row(y) + 4 * x;
  return pixelOf(at[0], at[1], at[2], at[3]);
}

using Letters = std::map<Pixel, char>;

inline const Letters kPlainLetters{{kWhite, '.'},
                                   {kBlack, '#'},
                                   {opaque(255, 0, 0), 'R'},
                                   {opaque(0, 255, 0), 'G'},
                                   {opaque(0, 0, 255), 'B'},
                                   {opaque(255, 255, 0), 'Y'},
                                   {opaque(0, 255, 255), 'C'},
                                   {opaque(255, 0, 255), 'M'}};

using Grid = std::vector<std::string>;

inline Grid gridOf(const DecodedImage &image, const Letters &letters = kPlainLetters) {
  Grid grid(image.height);
  for (uint32_t y = 0; y < image.height; ++y) {
    for (uint32_t x = 0; x < image.width; ++x) {
      const auto found = letters.find(pixelAt(image, x, y));
      grid[y] += found == letters.end() ? '?' : found->second;
    }
  }
  return grid;
}

// What a picture looks like; no rows when it cannot be read.
inline Grid drawn(const std::vector<uint8_t> &file, const Letters &letters = kPlainLetters) {
  const auto decoded = decodeBytes(file);
  EXPECT_EQ(decoded.fault, Fault::none) << describe(decoded.fault);
  return decoded ? gridOf(decoded.value, letters) : Grid{};
}

}  // namespace codecs::pict
