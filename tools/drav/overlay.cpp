#include "overlay.h"

#include <algorithm>
#include <cmath>

#include "blending.h"
#include "pixels.h"

namespace {

// How much a line of that width covers of a pixel whose centre is `distance` from its middle.
double coverage(double distance, double width) noexcept {
  return std::clamp(width / 2 + 0.5 - distance, 0.0, 1.0);
}

double distanceToLine(double x, double y, const Place &from, const Place &to) noexcept {
  const double dx = static_cast<double>(to.x - from.x), dy = static_cast<double>(to.y - from.y);
  const double px = x - static_cast<double>(from.x), py = y - static_cast<double>(from.y);
  const double length2 = dx * dx + dy * dy;
  const double along = length2 > 0 ? std::clamp((px * dx + py * dy) / length2, 0.0, 1.0) : 0.0;
  return std::hypot(px - along * dx, py - along * dy);
}

// Draws into transparent pixels. Where lines meet, the one that covers more counts, so that a corner is as
// dark as its lines.
class Pen {
 public:
  Pen(const Pixels &pixels, Ink ink, double width) noexcept : pixels_(pixels), ink_(ink), width_(width) {}

  void draw(const Loop &loop) const noexcept {
    for (size_t i = 0; i < loop.size(); ++i) drawLine(loop[i], loop[(i + 1) % loop.size()]);
  }

 private:
  // The lines of an outline are level, upright or at 45 degrees: in each row only a short piece is near one.
  void drawLine(const Place &from, const Place &to) const noexcept {
    const long reach = std::lround(std::ceil(width_ / 2 + 0.5));
    const long top = std::max(0L, std::min(from.y, to.y) - reach);
    const long bottom = std::min(static_cast<long>(pixels_.height) - 1, std::max(from.y, to.y) + reach);
    for (long y = top; y <= bottom; ++y) drawRow(from, to, y, reach);
  }

  void drawRow(const Place &from, const Place &to, long y, long reach) const noexcept {
    const auto [least, most] = piece(from, to, y, 2 * reach);
    const long left = std::max(0L, least - 2 * reach);
    const long right = std::min(static_cast<long>(pixels_.width) - 1, most + 2 * reach);
    for (long x = left; x <= right; ++x) {
      const double distance = distanceToLine(static_cast<double>(x), static_cast<double>(y), from, to);
      put(pixels_.row(static_cast<size_t>(y)) + 4 * x, coverage(distance, width_));
    }
  }

  // The least and the greatest x of the line within `reach` rows of y.
  static std::pair<long, long> piece(const Place &from, const Place &to, long y, long reach) noexcept {
    if (from.y == to.y) return std::minmax(from.x, to.x);
    const double slope = static_cast<double>(to.x - from.x) / static_cast<double>(to.y - from.y);
    const long top = std::min(from.y, to.y), bottom = std::max(from.y, to.y);
    const auto xAt = [&](long row) {
      return from.x + std::lround(slope * static_cast<double>(std::clamp(row, top, bottom) - from.y));
    };
    return std::minmax(xAt(y - reach), xAt(y + reach));
  }

  void put(uint8_t *pixel, double part) const noexcept {
    const auto alpha = static_cast<uint8_t>(std::lround(part * 255));
    if (alpha <= pixel[0]) return;
    const auto times = [part](uint8_t value) { return static_cast<uint8_t>(std::lround(value * part)); };
    pixel[0] = alpha;
    pixel[1] = times(ink_.red);
    pixel[2] = times(ink_.green);
    pixel[3] = times(ink_.blue);
  }

  Pixels pixels_;
  Ink ink_;
  double width_;
};

}  // namespace

Image withOutline(Image picture, const Outline &outline, Ink ink, double width) {
  const Image layer = blankImage({0, 0, outline.width, outline.height}, true);
  const Pen pen(pixelsOf(layer.get()), ink, width);
  for (const Loop &loop : outline.loops) pen.draw(loop);
  DRAVCFImageInvalidateImage(layer.get());
  Image drawn = forBlending(std::move(picture));
  blendAt(layer.get(), drawn.get(), {}, kDRAVCFBlendModeSrcOver);
  return drawn;
}
