#include "media/codecs/pict/oval_rows.h"

#include <cmath>

namespace codecs::pict {
namespace {

// Beyond what files can say (in a scaled drawing) the squares would overflow, as they would for a
// single column.
constexpr int32_t kMostSide = 65535;

}  // namespace

OvalRows::OvalRows(int32_t left, int32_t width, int32_t height) noexcept
    : start_(left),
      width_(width),
      height_(height),
      canStep_(width > 1 && width <= kMostSide && height <= kMostSide),
      left_(int64_t{left} * 0x10000 + width * kHalf),
      right_(int64_t{left + width} * 0x10000 - width * kHalf + kHalf),
      odd_(1 - int64_t{height}),
      goal_(2 * int64_t{height} - 1) {
  const uint64_t ratio = (static_cast<uint64_t>(height) << 16) / static_cast<uint64_t>(width);
  if (!canStep_) return;
  square_ = ratio * ratio;
  squareStep_ = 2 * square_;
}

OvalRows::Run OvalRows::next() noexcept { return canStep_ ? step() : calculate(); }

OvalRows::Run OvalRows::step() noexcept {
  const int64_t row = odd_;
  odd_ += 2;
  while (static_cast<int64_t>(sum_ >> 32) < goal_) {
    right_ += kHalf;
    left_ -= kHalf;
    sum_ += square_;
    square_ += squareStep_;
  }
  while (static_cast<int64_t>(sum_ >> 32) > goal_) {
    right_ -= kHalf;
    left_ += kHalf;
    square_ -= squareStep_;
    sum_ -= square_;
  }
  goal_ -= 4 * (row + 1);
  return {std::max(static_cast<int32_t>(left_ >> 16), start_),
          std::min(static_cast<int32_t>(right_ >> 16), start_ + width_)};
}

// Pixels whose middle is inside.
OvalRows::Run OvalRows::calculate() noexcept {
  const double down = (2 * row_++ + 1.0) / height_ - 1;
  const double half = width_ / 2.0 * std::sqrt(std::max(0.0, 1 - down * down)), middle = width_ / 2.0;
  return {start_ + static_cast<int32_t>(std::ceil(middle - half - 0.5)),
          start_ + static_cast<int32_t>(std::floor(middle + half + 0.5))};
}

}  // namespace codecs::pict
