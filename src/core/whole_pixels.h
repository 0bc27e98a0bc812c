// Lengths in float as whole pixels.
#pragma once

#include <CoreGraphics/CGBase.h>

#include <climits>
#include <cmath>

#include "foundation/sizes.h"

namespace drav {

// The nearest whole number, halves away from zero; no value for a negative one, NaN, or more than an image
// can have along a side.
inline cf::Size wholePixels(CGFloat length) noexcept {
  if (!(std::fabs(length) <= static_cast<CGFloat>(INT32_MAX))) return std::nullopt;
  const long rounded = std::lround(length);
  if (rounded < 0 || rounded > INT32_MAX) return std::nullopt;
  return static_cast<size_t>(rounded);
}

}  // namespace drav
