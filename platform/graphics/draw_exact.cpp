// Drawing where pixels fall on pixels: nothing is filtered, every byte is the source's or one composition.
#include <algorithm>
#include <cstring>
#include <vector>

#include "graphics/draw.h"
#include "graphics/route.h"

namespace cg {
namespace {

// The surface pixels that the image covers, cut to the clip.
PixelRect covered(const ExactPlacement &place, CGImageRef image, const PixelRect &clip) {
  const auto width = static_cast<int64_t>(CGImageGetWidth(image));
  const auto height = static_cast<int64_t>(CGImageGetHeight(image));
  const int64_t x = place.x + place.xx * width + place.xy * height;
  const int64_t y = place.y + place.yx * width + place.yy * height;
  return intersection(
      {std::min(place.x, x), std::min(place.y, y), std::max(place.x, x), std::max(place.y, y)}, clip);
}

// The image's column or row on which the first covered pixel falls, along an axis with step +1 or -1.
int64_t sourceIndex(int step, int64_t origin, int64_t surfaceIndex) {
  return step > 0 ? surfaceIndex - origin : origin - 1 - surfaceIndex;
}

void reversePixels(uint8_t *row, size_t pixels, size_t pixelBytes) {
  for (size_t i = 0, j = pixels; i + 1 < j; ++i) {
    --j;
    std::swap_ranges(row + i * pixelBytes, row + (i + 1) * pixelBytes, row + j * pixelBytes);
  }
}

}  // namespace

void drawUpright(const Surface &surface, CGImageRef image, const ExactPlacement &place,
                 const PixelRect &clip) {
  const PixelRect target = covered(place, image, clip);
  if (target.isEmpty()) return;
  const Route route = routeFor(surface, image, false);
  const auto reader = openRows(surface, image, route.form);
  const ComposeRow compose = composeRowFor(surface.layout, route.form);
  const auto count = static_cast<size_t>(target.width());
  const size_t pixelBytes = bytesPerPixel(route.form);
  const bool mirrored = place.xx < 0;
  const auto firstColumn =
      static_cast<size_t>(sourceIndex(place.xx, place.x, mirrored ? target.right - 1 : target.left));
  std::vector<uint8_t> row(route.isFinal ? 0 : count * pixelBytes);

  for (int64_t y = target.top; y < target.bottom; ++y) {
    const auto sourceRow = static_cast<size_t>(sourceIndex(place.yy, place.y, y));
    uint8_t *destination = surface.at(target.left, y);
    if (route.isFinal) {
      reader->read(sourceRow, firstColumn, count, destination);
      if (mirrored) reversePixels(destination, count, pixelBytes);
      continue;
    }
    const uint8_t *source = mirrored ? nullptr : reader->rowInPlace(sourceRow);
    if (source) {
      source += firstColumn * pixelBytes;
    } else {
      reader->read(sourceRow, firstColumn, count, row.data());
      if (mirrored) reversePixels(row.data(), count, pixelBytes);
      source = row.data();
    }
    compose(source, destination, count);
  }
}

void drawTurned(const Surface &surface, CGImageRef image, const ExactPlacement &place,
                const PixelRect &clip) {
  const PixelRect target = covered(place, image, clip);
  if (target.isEmpty()) return;
  const RowForm form = sourceForm(surface.layout, false);
  const auto reader = openRows(surface, image, form);
  const ComposeRow compose = composeRowFor(surface.layout, form);
  const size_t pixelBytes = bytesPerPixel(form);
  // Surface rows are image columns. Strips of image rows keep the scattered reads within a few pages.
  constexpr int64_t kStrip = 64;
  const auto count = static_cast<size_t>(target.height());
  const bool columnsReversed = place.yx < 0;
  const auto firstColumn =
      static_cast<size_t>(sourceIndex(place.yx, place.y, columnsReversed ? target.bottom - 1 : target.top));
  std::vector<uint8_t> strip(kStrip * count * pixelBytes);
  std::vector<uint8_t> across(kStrip * pixelBytes);

  for (int64_t x = target.left; x < target.right; x += kStrip) {
    const int64_t wide = std::min(kStrip, target.right - x);
    for (int64_t i = 0; i < wide; ++i) {
      const auto sourceRow = static_cast<size_t>(sourceIndex(place.xy, place.x, x + i));
      reader->read(sourceRow, firstColumn, count, strip.data() + static_cast<size_t>(i) * count * pixelBytes);
    }
    for (size_t j = 0; j < count; ++j) {
      const size_t column = columnsReversed ? count - 1 - j : j;
      for (size_t i = 0; i < static_cast<size_t>(wide); ++i) {
        std::memcpy(across.data() + i * pixelBytes, strip.data() + (i * count + column) * pixelBytes,
                    pixelBytes);
      }
      compose(across.data(), surface.at(x, target.top + static_cast<int64_t>(j)), static_cast<size_t>(wide));
    }
  }
}

}  // namespace cg
