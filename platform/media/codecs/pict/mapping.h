// From a picture's coordinates to the canvas's.
#pragma once

#include "media/codecs/pict/region.h"

namespace codecs::pict {

class Mapping {
 public:
  // The drawing rectangle fills a canvas of that size.
  Mapping(const Box &drawing, uint32_t width, uint32_t height) noexcept
      : start_{drawing.left, drawing.top},
        from_{drawing.width(), drawing.height()},
        to_{static_cast<int32_t>(width), static_cast<int32_t>(height)} {}

  // Moves the coordinate system, as origin opcodes do; they add up.
  void moveOrigin(Point by) noexcept { origin_ = origin_ + by; }

  bool isScaled() const noexcept { return from_ != to_; }
  double acrossScale() const noexcept { return static_cast<double>(to_.h) / from_.h; }
  double downScale() const noexcept { return static_cast<double>(to_.v) / from_.v; }

  Point operator()(Point point) const noexcept {
    const Point at = point - origin_ - start_;
    return {scaled(at.h, to_.h, from_.h), scaled(at.v, to_.v, from_.v)};
  }
  Box operator()(const Box &box) const noexcept {
    const Point start = (*this)(Point{box.left, box.top}), end = (*this)(Point{box.right, box.bottom});
    return {start.h, start.v, end.h, end.v};
  }
  Region operator()(const Region &region) const;

  // A size with h across and v down: what is there stays there.
  Point size(Point size) const noexcept {
    return {scaledSize(size.h, to_.h, from_.h), scaledSize(size.v, to_.v, from_.v)};
  }

 private:
  // Rounded to nearest, halves away from zero.
  static int32_t scaled(int32_t value, int32_t to, int32_t from) noexcept {
    if (to == from) return value;
    const int64_t half = value < 0 ? -int64_t{from / 2} : int64_t{from / 2};
    return keepNear((int64_t{value} * to + half) / from);
  }
  static int32_t scaledSize(int32_t value, int32_t to, int32_t from) noexcept {
    return value <= 0 ? value : std::max(scaled(value, to, from), 1);
  }

  Point start_;
  Point from_;
  Point to_;
  Point origin_;
};

}  // namespace codecs::pict
