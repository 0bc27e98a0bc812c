#include "geometry.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <string_view>
#include <vector>

#include "failure.h"

namespace {

// Far above any image, and exact in the single precision of the library's rectangles.
constexpr long kFarthest = 1L << 24;

template <class Number>
std::optional<Number> numberIn(std::string_view text) noexcept {
  Number number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

std::optional<long> pixelsIn(std::string_view text) noexcept {
  const std::optional<long> pixels = numberIn<long>(text);
  return pixels && std::abs(*pixels) <= kFarthest ? pixels : std::nullopt;
}

// As many numbers as there are pieces between separators; nothing if one of them is no number.
std::optional<std::vector<long>> pixelsBetween(std::string_view text, char separator) {
  std::vector<long> numbers;
  for (size_t start = 0; start <= text.size();) {
    const size_t end = std::min(text.find(separator, start), text.size());
    const std::optional<long> number = pixelsIn(text.substr(start, end - start));
    if (!number) return std::nullopt;
    numbers.push_back(*number);
    start = end + 1;
  }
  return numbers;
}

std::optional<double> factorIn(std::string_view text) noexcept {
  if (!text.ends_with('%')) return std::nullopt;
  const std::optional<double> percent = numberIn<double>(text.substr(0, text.size() - 1));
  // Not a number is not above 0 either.
  return percent && *percent > 0 && std::isfinite(*percent) ? std::optional(*percent / 100) : std::nullopt;
}

CGRect rect(double x, double y, double width, double height) noexcept {
  return CGRectMake(static_cast<CGFloat>(x), static_cast<CGFloat>(y), static_cast<CGFloat>(width),
                    static_cast<CGFloat>(height));
}

double scaledSide(size_t side, double factor) noexcept {
  return std::max(1.0, std::round(static_cast<double>(side) * factor));
}

}  // namespace

Place parsePlace(const std::string &text) {
  const auto numbers = pixelsBetween(text, ',');
  if (!numbers || numbers->size() != 2) throw UsageError(text + ": not a place x,y in pixels");
  return {(*numbers)[0], (*numbers)[1]};
}

Area parseArea(const std::string &text) {
  const auto numbers = pixelsBetween(text, ',');
  if (!numbers || numbers->size() != 4) throw UsageError(text + ": not a rectangle x,y,w,h in pixels");
  const Area area{(*numbers)[0], (*numbers)[1], (*numbers)[2], (*numbers)[3]};
  if (area.empty()) throw UsageError(text + ": a rectangle is at least one pixel wide and high");
  return area;
}

Area intersection(const Area &a, const Area &b) noexcept {
  const long left = std::max(a.x, b.x), top = std::max(a.y, b.y);
  const long right = std::min(a.x + a.width, b.x + b.width);
  const long bottom = std::min(a.y + a.height, b.y + b.height);
  return {left, top, std::max(0L, right - left), std::max(0L, bottom - top)};
}

CGRect fromTop(const Area &area) noexcept {
  return rect(static_cast<double>(area.x), static_cast<double>(area.y), static_cast<double>(area.width),
              static_cast<double>(area.height));
}

CGRect fromBottom(const Area &area, size_t height) noexcept {
  Area turned = area;
  turned.y = static_cast<long>(height) - area.y - area.height;
  return fromTop(turned);
}

TargetSize::TargetSize(const std::string &text) {
  if (const auto factor = factorIn(text)) {
    factor_ = *factor;
    return;
  }
  const auto sides = pixelsBetween(text, 'x');
  if (!sides || sides->size() != 2 || (*sides)[0] < 1 || (*sides)[1] < 1)
    throw UsageError(text + ": not a size such as 640x480 or 50%");
  width_ = (*sides)[0];
  height_ = (*sides)[1];
}

CGSize TargetSize::of(size_t width, size_t height) const noexcept {
  const CGRect sized = factor_ > 0 ? rect(0, 0, scaledSide(width, factor_), scaledSide(height, factor_))
                                   : rect(0, 0, static_cast<double>(width_), static_cast<double>(height_));
  return sized.size;
}
