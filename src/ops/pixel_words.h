// Loops over pixels of four bytes, each one pass.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace drav {

inline constexpr size_t kPixelBytes = 4;

// In blocks without a branch inside, so that they are compared many at a time.
inline bool firstBytesAre255(const uint8_t *pixels, size_t count) noexcept {
  constexpr size_t kBlock = 64;
  while (count > 0) {
    const size_t block = count < kBlock ? count : kBlock;
    uint8_t all = 255;
    for (size_t i = 0; i < block; ++i) all &= pixels[kPixelBytes * i];
    if (all != 255) return false;
    pixels += kPixelBytes * block;
    count -= block;
  }
  return true;
}

inline void setFirstBytes(uint8_t *pixels, size_t count, uint8_t value) noexcept {
  for (size_t i = 0; i < count; ++i) pixels[kPixelBytes * i] = value;
}

inline void copyFirstBytes(const uint8_t *pixels, uint8_t *bytes, size_t count) noexcept {
  for (size_t i = 0; i < count; ++i) bytes[i] = pixels[kPixelBytes * i];
}

}  // namespace drav
