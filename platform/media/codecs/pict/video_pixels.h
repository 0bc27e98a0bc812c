// Stored pixels of the depths that video codecs share, as canvas pixels.
#pragma once

#include "media/codecs/pict/compressed_image.h"

namespace codecs::pict {

// x555: what 16 bits hold. The top bit means nothing.
constexpr Pixel pixelOf555(unsigned value) noexcept {
  const auto widen = [](unsigned five) { return static_cast<uint8_t>(five << 3 | five >> 2); };
  return opaque(widen(value >> 10 & 31), widen(value >> 5 & 31), widen(value & 31));
}

// Writes `count` pixels of `bits` bits each, packed from the top bit down. REQUIRES: `from` holds them;
// bits is 1, 2, 4, 8, 16, 24 or 32.
void expandPixels(const uint8_t *from, int bits, const Palette &palette, Pixel *out, size_t count) noexcept;

}  // namespace codecs::pict
