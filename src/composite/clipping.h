// Which pixels a pair of rectangles means.
#pragma once

#include <CoreGraphics/CGGeometry.h>

#include <cstddef>

namespace drav {

// Whole-numbered, and cut to an image of that size. An origin left of or above the image moves to 0 and
// takes the rectangle's size with it.
CGRect clippedToImage(CGRect rect, size_t width, size_t height) noexcept;

// Whether a clipped rectangle has pixels at all; NaN has none. Beyond the image its size is negative, which
// CGRectGetWidth would turn round.
inline bool hasPixels(const CGRect &rect) noexcept { return rect.size.width > 0 && rect.size.height > 0; }

// Where a walk begins and how far it goes. Only for rectangles whose numbers are pixels of some image.
struct PixelArea {
  size_t x, y, width, height;
};
bool pixelArea(const CGRect &rect, PixelArea &area) noexcept;

// Whether a walk over width x height pixels from (x, y) stays within a buffer, and its rows within theirs.
bool walkFits(const PixelArea &area, size_t bytesPerPixel, size_t bytesPerRow, size_t bufferSize) noexcept;

}  // namespace drav
