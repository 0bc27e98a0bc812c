// Which pixels a pair of rectangles means.
#pragma once

#include <CoreGraphics/CGGeometry.h>

#include <cstddef>
#include <cstdint>

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

// A walk over a source and a destination of the same size: where both begin, and their strides.
struct Walk {
  const uint8_t *source;
  size_t sourceBytesPerRow;
  uint8_t *destination;
  size_t destinationBytesPerRow;
  PixelArea written;
};

// The walk between two clipped rectangles; its size is the destination's. False where there is nothing to
// walk over, or it would leave a buffer.
struct WalkBuffers {
  const uint8_t *source;
  size_t sourceSize, sourceBytesPerRow;
  uint8_t *destination;
  size_t destinationBytesPerRow, destinationHeight, bytesPerPixel;
};
bool makeWalk(const WalkBuffers &buffers, const CGRect &from, const CGRect &to, Walk &walk) noexcept;

// Whether a walk over width x height pixels from (x, y) stays within a buffer. Its rows may lie closer
// together than they are long: with a stride of 0 they are one row again and again.
bool walkFits(const PixelArea &area, size_t bytesPerPixel, size_t bytesPerRow, size_t bufferSize) noexcept;

}  // namespace drav
