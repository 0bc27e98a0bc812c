// What a path is made of.
#pragma once

#include <CoreGraphics/CGPath.h>

#include <cstddef>

#include "foundation/buffer.h"
#include "foundation/object.h"

// Elements in order, and the points of all of them in one run.
struct CGPath : cf::ObjectOf<CGPath> {
  static constexpr const char *kName = "CGPath";
  bool operator==(const CGPath &other) const noexcept;
  CFHashCode hash() const noexcept;
  std::string describe() const;

  cf::Buffer<uint8_t> types;
  cf::Buffer<CGPoint> points;
  CGPoint start = {0, 0};    // of the subpath that a close goes back to
  CGPoint current = {0, 0};  // where the next element begins
};
