#pragma once
// Pixels between bytes and normalised single-precision floats (value = byte / 255).
//
// A pixel is one byte of grey (S), four bytes ignored-red-green-blue (XRGB) or four bytes
// alpha-red-green-blue with the colour multiplied by alpha (ARGB). Float pixels hold grey; red, green, blue;
// or alpha, red, green, blue.

#include <array>
#include <climits>
#include <cstddef>
#include <cstdint>

namespace drav {

// A true division: multiplying by a rounded reciprocal gives another float for some bytes.
inline float unitFromByte(uint8_t byte) noexcept { return static_cast<float>(byte) / 255.0F; }

// The component times 255 as a whole number, halves away from zero: what lroundf gives, written out so that
// it inlines (the fraction is exact). What no long can hold has no portable result from lroundf; here NaN is
// 0, and anything else the nearest long.
inline long roundedComponent(float component) noexcept {
  const float scaled = component * 255.0F;
  if (scaled >= static_cast<float>(LONG_MAX)) return LONG_MAX;
  if (scaled <= static_cast<float>(LONG_MIN)) return LONG_MIN;
  if (scaled != scaled) return 0;
  const auto whole = static_cast<long>(scaled);
  const float fraction = scaled - static_cast<float>(whole);
  return whole + (fraction >= 0.5F ? 1 : 0) - (fraction <= -0.5F ? 1 : 0);
}

// A rounded component as a byte; only the low 16 bits are looked at before the clamp.
inline uint8_t clampedByte(long rounded) noexcept {
  const auto low = static_cast<uint16_t>(rounded & 0xFFFF);
  return low > 255 ? uint8_t{255} : static_cast<uint8_t>(low);
}

// Stores `count` components as clamped bytes. Negative components become 0.0 in the caller's array.
inline void storeClamped(float *components, uint8_t *bytes, size_t count) noexcept {
  for (size_t i = 0; i < count; ++i)
    if (components[i] < 0.0F) components[i] = 0.0F;
  for (size_t i = 0; i < count; ++i) bytes[i] = clampedByte(roundedComponent(components[i]));
}

inline void IntSToFloatS(const uint8_t *pixel, float *components) noexcept {
  components[0] = unitFromByte(pixel[0]);
}

inline void IntXRGBToFloatRGB(const uint8_t *pixel, float *components) noexcept {
  for (size_t i = 0; i < 3; ++i) components[i] = unitFromByte(pixel[i + 1]);
}

inline void IntARGBToFloatARGB(const uint8_t *pixel, float *components) noexcept {
  for (size_t i = 0; i < 4; ++i) components[i] = unitFromByte(pixel[i]);
}

inline void FloatSToIntS_Clamp(float *components, uint8_t *pixel) noexcept {
  storeClamped(components, pixel, 1);
}

// Byte 0 of the pixel stays as it is.
inline void FloatRGBToIntXRGB_Clamp(float *components, uint8_t *pixel) noexcept {
  storeClamped(components, pixel + 1, 3);
}

inline void FloatARGBToIntARGB_Clamp(float *components, uint8_t *pixel) noexcept {
  storeClamped(components, pixel, 4);
}

// Results outside 0 ... 1 wrap modulo 256.
inline void FloatARGBToIntARGB(const float *components, uint8_t *pixel) noexcept {
  for (size_t i = 0; i < 4; ++i) pixel[i] = static_cast<uint8_t>(roundedComponent(components[i]) & 0xFF);
}

}  // namespace drav
