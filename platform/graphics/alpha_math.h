// Multiplying and dividing colour by alpha, both in steps of 1/255, rounded to nearest.
#pragma once

#include <algorithm>
#include <cstdint>

namespace cg {

// c * a / 255. As 255 is odd there is never a tie. Adding the high byte of the biased product to it divides
// by 255 instead of 256, exactly for every pair of bytes.
constexpr uint8_t multiply(uint8_t c, uint8_t a) noexcept {
  const unsigned biased = unsigned{c} * a + 128;
  return static_cast<uint8_t>((biased + (biased >> 8)) >> 8);
}

// c * 255 / a, half rounded up. Colour beyond its alpha gives 255, and no alpha no colour.
constexpr uint8_t divide(uint8_t c, uint8_t a) noexcept {
  if (a == 0) return 0;
  return static_cast<uint8_t>(std::min((unsigned{c} * 255 + a / 2) / a, 255u));
}

}  // namespace cg
