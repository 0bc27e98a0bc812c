// Drawing through any map: each surface pixel looks up where it came from.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "graphics/draw.h"

namespace cg {

void drawMapped(const Surface &surface, CGImageRef image, const Matrix &map, const PixelRect &clip,
                CGInterpolationQuality quality) {
  static_cast<void>(quality);
  const auto back = inverse(map);
  if (!back) return;
  const auto width = static_cast<double>(CGImageGetWidth(image));
  const auto height = static_cast<double>(CGImageGetHeight(image));
  const double xs[] = {map.x(0, 0), map.x(width, 0), map.x(0, height), map.x(width, height)};
  const double ys[] = {map.y(0, 0), map.y(width, 0), map.y(0, height), map.y(width, height)};
  const auto [x0, x1] = std::minmax_element(std::begin(xs), std::end(xs));
  const auto [y0, y1] = std::minmax_element(std::begin(ys), std::end(ys));
  const PixelRect target = intersection(pixelsBetween(*x0, *y0, *x1, *y1), clip);
  if (target.isEmpty()) return;
  const RowForm form = sourceForm(surface.layout, true);
  const auto reader = RowReader::make(image, surface.space, form);
  if (!reader) return;
  const ComposeRow compose = composeRowFor(surface.layout, form);
  const size_t n = bytesPerPixel(form);
  const auto columns = static_cast<size_t>(width), rows = static_cast<size_t>(height);
  std::vector<uint8_t> all(columns * rows * n);
  for (size_t row = 0; row < rows; ++row) reader->read(row, 0, columns, all.data() + row * columns * n);
  std::vector<uint8_t> out(static_cast<size_t>(target.width()) * n);
  for (int64_t y = target.top; y < target.bottom; ++y) {
    for (int64_t x = target.left; x < target.right; ++x) {
      const double cx = static_cast<double>(x) + 0.5, cy = static_cast<double>(y) + 0.5;
      const double u = std::floor(back->x(cx, cy)), v = std::floor(back->y(cx, cy));
      uint8_t *at = out.data() + static_cast<size_t>(x - target.left) * n;
      if (u >= 0 && v >= 0 && u < width && v < height) {
        std::memcpy(at, all.data() + (static_cast<size_t>(v) * columns + static_cast<size_t>(u)) * n, n);
      } else {
        std::memset(at, 0, n);
      }
    }
    compose(out.data(), surface.at(target.left, y), static_cast<size_t>(target.width()));
  }
}

}  // namespace cg
