// Points and boxes. Coordinates lie between pixels: h grows to the right, v grows down, and the pixel (h, v)
// is the unit square to the lower right of the point. Files hold 16 bits; sums of such numbers are kept far
// below the ends of 32 bits, so that differences cannot overflow.
#pragma once

#include <algorithm>
#include <cstdint>

#include "media/codecs/pict/byte_reader.h"

namespace codecs::pict {

inline constexpr int32_t kFarthest = 1 << 22;

constexpr int32_t keepNear(int64_t coordinate) noexcept {
  return static_cast<int32_t>(std::clamp<int64_t>(coordinate, -kFarthest, kFarthest));
}

struct Point {
  int32_t h = 0;
  int32_t v = 0;

  friend constexpr bool operator==(Point, Point) noexcept = default;
};

constexpr Point operator+(Point a, Point b) noexcept {
  return {keepNear(int64_t{a.h} + b.h), keepNear(int64_t{a.v} + b.v)};
}
constexpr Point operator-(Point a, Point b) noexcept {
  return {keepNear(int64_t{a.h} - b.h), keepNear(int64_t{a.v} - b.v)};
}

// Right and bottom are not part of it.
struct Box {
  int32_t left = 0;
  int32_t top = 0;
  int32_t right = 0;
  int32_t bottom = 0;

  friend constexpr bool operator==(const Box &, const Box &) noexcept = default;

  constexpr int32_t width() const noexcept { return right - left; }
  constexpr int32_t height() const noexcept { return bottom - top; }
  constexpr bool isEmpty() const noexcept { return right <= left || bottom <= top; }
  constexpr bool contains(const Box &other) const noexcept {
    return left <= other.left && top <= other.top && right >= other.right && bottom >= other.bottom;
  }
  constexpr Box intersected(const Box &other) const noexcept {
    return {std::max(left, other.left), std::max(top, other.top), std::min(right, other.right),
            std::min(bottom, other.bottom)};
  }
  constexpr Box inset(int32_t dh, int32_t dv) const noexcept {
    return {keepNear(int64_t{left} + dh), keepNear(int64_t{top} + dv), keepNear(int64_t{right} - dh),
            keepNear(int64_t{bottom} - dv)};
  }
};

constexpr Box operator+(const Box &box, Point by) noexcept {
  const Point start = Point{box.left, box.top} + by, end = Point{box.right, box.bottom} + by;
  return {start.h, start.v, end.h, end.v};
}
constexpr Box operator-(const Box &box, Point by) noexcept { return box + Point{-by.h, -by.v}; }

// Files put the vertical coordinate first.
inline Point readPoint(ByteReader &reader) noexcept {
  const int16_t v = reader.i16();
  return {reader.i16(), v};
}

inline Box readBox(ByteReader &reader) noexcept {
  const Point start = readPoint(reader), end = readPoint(reader);
  return {start.h, start.v, end.h, end.v};
}

}  // namespace codecs::pict
