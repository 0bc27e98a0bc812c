// What one colour byte becomes, in the plain arithmetic that defines it. The vector loops give the same
// bytes; machines without vectors use this itself.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace drav::pixel {

inline float unitFromByte(uint8_t byte) noexcept { return static_cast<float>(byte) / 255.0F; }

inline uint8_t byteFromUnit(float unit) noexcept {
  const float scaled = unit * 255.0F;
  return static_cast<uint8_t>(static_cast<int>(std::floor(static_cast<double>(scaled) + 0.5)));
}

inline uint8_t premultiplied(uint8_t colour, uint8_t alpha) noexcept {
  return byteFromUnit(unitFromByte(colour) * unitFromByte(alpha));
}

inline uint8_t unpremultiplied(uint8_t colour, uint8_t alpha) noexcept {
  if (alpha == 0) return 0;
  const auto inverse = static_cast<float>(1.0 / static_cast<double>(unitFromByte(alpha)));
  return byteFromUnit(std::min(unitFromByte(colour) * inverse, 1.0F));
}

}  // namespace drav::pixel
