// Bringing the bytes of plain 8-bit pixels into the order of a working form.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace cg {

// Four bytes to four: byte b of each result is byte from[b] of the pixel, or 255 where from[b] is kOpaque.
inline constexpr uint8_t kOpaque = 4;
void shufflePixels(const uint8_t *in, uint8_t *out, std::size_t count,
                   const std::array<uint8_t, 4> &from) noexcept;

// Red, green, blue to four bytes with alpha 255, first or last.
void widenPixels(const uint8_t *in, uint8_t *out, std::size_t count, bool alphaFirst) noexcept;

}  // namespace cg
