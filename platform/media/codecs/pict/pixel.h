// A canvas pixel: four bytes in memory order (alpha, red, green, blue), handled as one word so that whole
// rows can be filled, compared and combined bit by bit.
#pragma once

#include <array>
#include <bit>
#include <cstdint>

namespace codecs::pict {

using Pixel = uint32_t;

constexpr Pixel pixelOf(uint8_t alpha, uint8_t red, uint8_t green, uint8_t blue) noexcept {
  return std::bit_cast<Pixel>(std::array<uint8_t, 4>{alpha, red, green, blue});
}
constexpr Pixel opaque(uint8_t red, uint8_t green, uint8_t blue) noexcept {
  return pixelOf(255, red, green, blue);
}

inline constexpr Pixel kAlphaBits = pixelOf(255, 0, 0, 0);
inline constexpr Pixel kColourBits = ~kAlphaBits;
inline constexpr Pixel kBlack = kAlphaBits;
inline constexpr Pixel kWhite = ~Pixel{0};
inline constexpr Pixel kClear = kColourBits;  // white that lets everything through: paper nobody painted on

constexpr std::array<uint8_t, 4> bytesOf(Pixel pixel) noexcept {
  return std::bit_cast<std::array<uint8_t, 4>>(pixel);
}

constexpr bool isGrey(Pixel pixel) noexcept {
  const auto bytes = bytesOf(pixel);
  return bytes[1] == bytes[2] && bytes[2] == bytes[3];
}

}  // namespace codecs::pict
