// Rectangles of whole pixels: row 0 is the top row.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace cg {

struct PixelRect {
  int64_t left = 0, top = 0, right = 0, bottom = 0;  // right and bottom lie one past the last pixel

  [[nodiscard]] bool isEmpty() const noexcept { return left >= right || top >= bottom; }
  [[nodiscard]] int64_t width() const noexcept { return right - left; }
  [[nodiscard]] int64_t height() const noexcept { return bottom - top; }
};

inline PixelRect intersection(const PixelRect &a, const PixelRect &b) noexcept {
  return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
          std::min(a.bottom, b.bottom)};
}

// The first pixel whose centre lies at or after an edge. Edges a hair off a centre, as sums of floats leave
// them, count as on it.
inline int64_t firstCentreFrom(double edge) noexcept {
  constexpr double kHair = 1e-4;
  constexpr double kFar = 4e9;  // beyond every bitmap, and still exact in a double
  return static_cast<int64_t>(std::ceil(std::clamp(edge, -kFar, kFar) - 0.5 - kHair));
}

// The pixels whose centres lie between the edges.
inline PixelRect pixelsBetween(double left, double top, double right, double bottom) noexcept {
  return {firstCentreFrom(left), firstCentreFrom(top), firstCentreFrom(right), firstCentreFrom(bottom)};
}

}  // namespace cg
