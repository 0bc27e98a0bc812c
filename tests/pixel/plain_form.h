// The arithmetic that the buffer functions must agree with, one step after the other and one pixel at a time.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>

namespace plain {

enum class Layout { argb, rgba };

inline int alphaIndex(Layout layout) { return layout == Layout::argb ? 0 : 3; }
inline int colourIndex(Layout layout, int channel) { return layout == Layout::argb ? channel + 1 : channel; }

inline uint8_t byteOf(float x) {
  const float y = x * 255.0F;
  const double rounded = std::floor(static_cast<double>(y) + 0.5);
  return static_cast<uint8_t>(static_cast<int>(rounded) & 0xFF);
}

inline void premultiply(uint8_t *buffer, size_t size, Layout layout) {
  for (size_t i = 0; i < size >> 2; ++i) {
    uint8_t *pixel = buffer + 4 * i;
    const float a = static_cast<float>(pixel[alphaIndex(layout)]) / 255.0F;
    for (int channel = 0; channel < 3; ++channel) {
      uint8_t &byte = pixel[colourIndex(layout, channel)];
      const float colour = static_cast<float>(byte) / 255.0F;
      byte = byteOf(colour * a);
    }
  }
}

// Gives whether the message is due.
inline bool unpremultiply(uint8_t *buffer, size_t size, Layout layout) {
  bool invalid = false;
  for (size_t i = 0; i < size >> 2; ++i) {
    uint8_t *pixel = buffer + 4 * i;
    const float a = static_cast<float>(pixel[alphaIndex(layout)]) / 255.0F;
    const float inverse = a != 0.0F ? static_cast<float>(1.0 / static_cast<double>(a)) : 0.0F;
    for (int channel = 0; channel < 3; ++channel) {
      uint8_t &byte = pixel[colourIndex(layout, channel)];
      float colour = static_cast<float>(byte) / 255.0F;
      if (colour > a) invalid = true;
      colour = colour * inverse;
      if (colour > 1.0F) colour = 1.0F;
      byte = byteOf(colour);
    }
  }
  return invalid;
}

}  // namespace plain
