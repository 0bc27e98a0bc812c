// Four-byte pixels as words of 32 bits.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace cg {

// How far the byte of a pixel in memory is shifted within the word that it is loaded as.
constexpr int shiftOfByte(std::size_t byte) noexcept {
  const int bits = 8 * static_cast<int>(byte);
  return std::endian::native == std::endian::little ? bits : 24 - bits;
}

inline uint32_t loadWord(const uint8_t *pixel) noexcept {
  uint32_t word;
  std::memcpy(&word, pixel, sizeof word);
  return word;
}

inline void storeWord(uint8_t *pixel, uint32_t word) noexcept { std::memcpy(pixel, &word, sizeof word); }

}  // namespace cg
