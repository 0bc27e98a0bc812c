#include "composite/clipping.h"

#include <climits>

#include "foundation/sizes.h"

namespace drav {

CGRect clippedToImage(CGRect rect, size_t width, size_t height) noexcept {
  rect = CGRectIntegral(CGRectStandardize(rect));
  const auto imageWidth = static_cast<CGFloat>(width);
  const auto imageHeight = static_cast<CGFloat>(height);
  if (rect.origin.x < 0) rect.origin.x = 0;
  if (CGRectGetMaxX(rect) > imageWidth) rect.size.width = imageWidth - rect.origin.x;
  if (rect.origin.y < 0) rect.origin.y = 0;
  if (CGRectGetMaxY(rect) > imageHeight) rect.size.height = imageHeight - rect.origin.y;
  return rect;
}

bool pixelArea(const CGRect &rect, PixelArea &area) noexcept {
  const auto x = cf::sidePixels(CGRectGetMinX(rect));
  const auto y = cf::sidePixels(CGRectGetMinY(rect));
  const auto width = cf::sidePixels(CGRectGetWidth(rect));
  const auto height = cf::sidePixels(CGRectGetHeight(rect));
  if (!x || !y || !width || !height) return false;
  area = {*x, *y, *width, *height};
  return true;
}

bool walkFits(const PixelArea &area, size_t bytesPerPixel, size_t bytesPerRow, size_t bufferSize) noexcept {
  if (area.width == 0 || area.height == 0) return true;
  const cf::Size right = cf::sum(area.x, area.width), bottom = cf::sum(area.y, area.height - 1);
  const cf::Size rowEnd = right ? cf::product(*right, bytesPerPixel) : std::nullopt;
  if (!rowEnd || !bottom) return false;
  const cf::Size lastRow = cf::product(*bottom, bytesPerRow);
  const cf::Size end = lastRow ? cf::sum(*lastRow, *rowEnd) : std::nullopt;
  return end && *end <= bufferSize;
}

bool makeWalk(const WalkBuffers &buffers, const CGRect &from, const CGRect &to, Walk &walk) noexcept {
  PixelArea read{}, written{};
  if (!hasPixels(from) || !hasPixels(to) || !pixelArea(from, read) || !pixelArea(to, written)) return false;
  // The destination's size sets the walk in both. A source that was cropped or scaled before may no longer
  // reach that far.
  read.width = written.width;
  read.height = written.height;
  const cf::Size destinationSize = cf::product(buffers.destinationBytesPerRow, buffers.destinationHeight);
  if (!destinationSize ||
      !walkFits(read, buffers.bytesPerPixel, buffers.sourceBytesPerRow, buffers.sourceSize) ||
      !walkFits(written, buffers.bytesPerPixel, buffers.destinationBytesPerRow, *destinationSize)) {
    return false;
  }
  walk = {
      buffers.source + read.y * buffers.sourceBytesPerRow + read.x * buffers.bytesPerPixel,
      buffers.sourceBytesPerRow,
      buffers.destination + written.y * buffers.destinationBytesPerRow + written.x * buffers.bytesPerPixel,
      buffers.destinationBytesPerRow, written};
  return true;
}

}  // namespace drav
