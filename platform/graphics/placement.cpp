#include "graphics/placement.h"

#include <algorithm>
#include <cmath>

namespace cg {
namespace {

// Sums and products of floats leave edges a hair off whole pixels. Across a whole image that hair must stay
// far below what a filter could show.
constexpr double kHair = 1.0 / 1024;

bool isWhole(double value, double tolerance) noexcept {
  return std::fabs(value - std::round(value)) <= tolerance;
}

}  // namespace

std::optional<Matrix> placement(size_t imageWidth, size_t imageHeight, CGRect rect,
                                const Matrix &userToDevice, size_t surfaceHeight) noexcept {
  const CGRect r = CGRectStandardize(rect);
  const double width = r.size.width, height = r.size.height;
  const double left = r.origin.x, bottom = r.origin.y;
  if (!(width > 0) || !(height > 0)) return std::nullopt;
  // The image's top row lies at the rectangle's greatest y.
  const Matrix imageToUser{width / static_cast<double>(imageWidth),    0,    0,
                           -height / static_cast<double>(imageHeight), left, bottom + height};
  const Matrix deviceToSurface{1, 0, 0, -1, 0, static_cast<double>(surfaceHeight)};
  const Matrix map = then(then(imageToUser, userToDevice), deviceToSurface);
  if (!map.isFinite()) return std::nullopt;
  return map;
}

std::optional<ExactPlacement> exactPlacement(const Matrix &map, size_t imageWidth,
                                             size_t imageHeight) noexcept {
  constexpr double kFar = 4e9;
  if (std::fabs(map.tx) > kFar || std::fabs(map.ty) > kFar) return std::nullopt;
  const double perPixel = kHair / static_cast<double>(std::max(imageWidth, imageHeight));
  for (double step : {map.a, map.b, map.c, map.d}) {
    if (std::fabs(step) > 1.5 || !isWhole(step, perPixel)) return std::nullopt;
  }
  if (!isWhole(map.tx, kHair) || !isWhole(map.ty, kHair)) return std::nullopt;
  const ExactPlacement exact{static_cast<int>(std::lround(map.a)),
                             static_cast<int>(std::lround(map.c)),
                             static_cast<int>(std::lround(map.b)),
                             static_cast<int>(std::lround(map.d)),
                             std::llround(map.tx),
                             std::llround(map.ty)};
  const bool upright = std::abs(exact.xx) == 1 && exact.xy == 0 && exact.yx == 0 && std::abs(exact.yy) == 1;
  const bool turned = exact.xx == 0 && std::abs(exact.xy) == 1 && std::abs(exact.yx) == 1 && exact.yy == 0;
  if (!upright && !turned) return std::nullopt;
  return exact;
}

}  // namespace cg
