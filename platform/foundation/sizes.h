// The one place where sizes are multiplied and added. A computation that leaves size_t, or what an allocator
// can be asked for, has no value, which callers treat like an allocation that failed.
#pragma once

#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace cf {

using Size = std::optional<std::size_t>;

// The greatest size of one block: allocators take a signed count, and add room of their own.
inline constexpr std::size_t kMaxBlockBytes = static_cast<std::size_t>(LONG_MAX) - 4096;

constexpr Size product(std::size_t a, std::size_t b) noexcept {
  std::size_t result = 0;
  if (__builtin_mul_overflow(a, b, &result)) return std::nullopt;
  return result;
}

constexpr Size sum(std::size_t a, std::size_t b) noexcept {
  std::size_t result = 0;
  if (__builtin_add_overflow(a, b, &result)) return std::nullopt;
  return result;
}

// Bytes of count items of itemBytes each, if one block can hold them.
constexpr Size blockBytes(std::size_t count, std::size_t itemBytes) noexcept {
  const Size bytes = product(count, itemBytes);
  return bytes && *bytes <= kMaxBlockBytes ? bytes : std::nullopt;
}

// Bytes of a row of pixels without padding: (width * bitsPerPixel + 7) / 8.
constexpr Size rowBytes(std::size_t width, std::size_t bitsPerPixel) noexcept {
  const Size bits = product(width, bitsPerPixel);
  const Size rounded = bits ? sum(*bits, 7) : std::nullopt;
  return rounded ? Size(*rounded / 8) : std::nullopt;
}

// Bytes of a whole bitmap, if one block can hold them.
constexpr Size bitmapBytes(std::size_t bytesPerRow, std::size_t height) noexcept {
  return blockBytes(bytesPerRow, height);
}

// Pixels along one side, from a length in float: the fraction is cut off. No value for a negative length,
// NaN, or more than INT32_MAX.
inline std::optional<std::uint32_t> sidePixels(float length) noexcept {
  if (!(length >= 0.0f) || static_cast<double>(length) > INT32_MAX) return std::nullopt;
  return static_cast<std::uint32_t>(length);
}

// The same for a side that is already a count.
constexpr std::optional<std::uint32_t> sidePixels(std::size_t length) noexcept {
  if (length > INT32_MAX) return std::nullopt;
  return static_cast<std::uint32_t>(length);
}

}  // namespace cf
