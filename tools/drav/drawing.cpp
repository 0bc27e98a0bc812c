#include "drawing.h"

namespace {

void put(uint8_t *pixel, Ink ink) noexcept {
  pixel[0] = 255;
  pixel[1] = ink.red;
  pixel[2] = ink.green;
  pixel[3] = ink.blue;
}

Area within(const Pixels &pixels, const Area &area) noexcept {
  return intersection(area, {0, 0, static_cast<long>(pixels.width), static_cast<long>(pixels.height)});
}

// Calls `ink` with the place of each pixel of an area, for its colour there.
template <class InkAt>
void fillWith(const Pixels &pixels, const Area &area, const InkAt &inkAt) noexcept {
  const Area inside = within(pixels, area);
  for (long y = inside.y; y < inside.y + inside.height; ++y) {
    uint8_t *pixel = pixels.row(static_cast<size_t>(y)) + 4 * inside.x;
    for (long x = inside.x; x < inside.x + inside.width; ++x, pixel += 4) put(pixel, inkAt(x, y));
  }
}

}  // namespace

void fill(const Pixels &pixels, const Area &area, Ink ink) noexcept {
  fillWith(pixels, area, [ink](long, long) { return ink; });
}

void fillChecks(const Pixels &pixels, const Area &area, long side, Ink first, Ink second) noexcept {
  fillWith(pixels, area, [&](long x, long y) {
    return ((x - area.x) / side + (y - area.y) / side) % 2 == 0 ? first : second;
  });
}
