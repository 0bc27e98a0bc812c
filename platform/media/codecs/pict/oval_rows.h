// The rows of an ellipse, one after the other.
#pragma once

#include "media/codecs/pict/geometry.h"

namespace codecs::pict {

// Integer stepping, as the original's, so that old drawings come out as they were: the ellipse's edge is
// followed from row to row by half pixels.
class OvalRows {
 public:
  struct Run {
    int32_t left;
    int32_t right;
  };

  // REQUIRES: width and height at least 1.
  OvalRows(int32_t left, int32_t width, int32_t height) noexcept;

  Run next() noexcept;

 private:
  Run step() noexcept;
  Run calculate() noexcept;

  static constexpr int64_t kHalf = 0x8000;  // of a pixel in 16.16

  const int32_t start_;
  const int32_t width_;
  const int32_t height_;
  int32_t row_ = 0;
  bool canStep_;
  int64_t left_;  // 16.16
  int64_t right_;
  uint64_t square_ = 0;  // the next half pixel's share of the ellipse's equation
  uint64_t squareStep_ = 0;
  uint64_t sum_ = 0;
  int64_t odd_;
  int64_t goal_;
};

}  // namespace codecs::pict
