// Multiplying colour by alpha and dividing it out again, in 8 bits, each rounded once to the nearest. The
// integer forms equal the fractions for every pair of bytes; the tests go through all of them.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

namespace cg {

// c * a / 255. No tie can occur, 255 being odd.
constexpr uint8_t multiply(uint8_t c, uint8_t a) noexcept {
  const uint32_t product = static_cast<uint32_t>(c) * a + 128;
  return static_cast<uint8_t>((product + (product >> 8)) >> 8);
}

// 255 * 2^24 / a, rounded up: c times it is off by less than 2^-16 of a result, where the distance to the
// next rounding edge is at least 1 / 510.
constexpr std::array<uint32_t, 256> kAlphaReciprocals = [] {
  std::array<uint32_t, 256> reciprocals{};
  for (uint64_t a = 1; a < 256; ++a)
    reciprocals[a] = static_cast<uint32_t>(((uint64_t{255} << 24) + a - 1) / a);
  return reciprocals;
}();

// c * 255 / a, a tie upwards, at most 255; 0 where alpha is 0. Colour beyond alpha is cut off first, so that
// the product fits 32 bits.
constexpr uint8_t divide(uint8_t c, uint8_t a) noexcept {
  const uint32_t within = std::min(c, a);
  return static_cast<uint8_t>((within * kAlphaReciprocals[a] + (1U << 23)) >> 24);
}

}  // namespace cg
