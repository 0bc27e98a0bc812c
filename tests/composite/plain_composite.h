// Compositing and tiling step by step and pixel by pixel, as they are defined: what the library's short cuts
// must give the very bytes of.
#pragma once

#include <DravKit/DravKit.h>

#include <cmath>

#include "core/image.h"
#include "foundation/ref.h"

namespace test {

inline CGRect plainClip(CGRect rect, size_t width, size_t height) {
  rect = CGRectIntegral(CGRectStandardize(rect));
  if (rect.origin.x < 0) rect.origin.x = 0;
  if (CGRectGetMaxX(rect) > static_cast<float>(width))
    rect.size.width = static_cast<float>(width) - rect.origin.x;
  if (rect.origin.y < 0) rect.origin.y = 0;
  if (CGRectGetMaxY(rect) > static_cast<float>(height))
    rect.size.height = static_cast<float>(height) - rect.origin.y;
  return rect;
}

struct PlainSizes {
  size_t sourceWidth, sourceHeight, sourceRow, width, height, row, pixel;
};

inline void plainCompositeRect(DRAVCFImageRef work, CGRect from, CGRect to, PlainSizes sizes,
                               uint8_t *destination, DRAVCFCompositeFunction compositor) {
  from = plainClip(from, sizes.sourceWidth, sizes.sourceHeight);
  to = plainClip(to, sizes.width, sizes.height);
  if (!(from.size.width > 0 && from.size.height > 0 && to.size.width > 0 && to.size.height > 0)) return;
  if (!CGSizeEqualToSize(from.size, to.size)) {
    DRAVCFImageCropToRect(work, from);
    DRAVCFImageScaleToSize(work, to.size);
    sizes.sourceRow = DRAVCFImageGetBytesPerRow(work);
    from = CGRectMake(0, 0, to.size.width, to.size.height);
  }
  const uint8_t *source = DRAVCFImageGetImageBuffer(work);
  const auto sx = static_cast<size_t>(from.origin.x), sy = static_cast<size_t>(from.origin.y);
  const auto dx = static_cast<size_t>(to.origin.x), dy = static_cast<size_t>(to.origin.y);
  const auto width = static_cast<size_t>(to.size.width), height = static_cast<size_t>(to.size.height);
  // What an earlier rectangle has cropped may no longer reach.
  if ((sy + height - 1) * sizes.sourceRow + (sx + width) * sizes.pixel > work->bufferSize) return;
  for (size_t i = 0; i < height; ++i)
    for (size_t j = 0; j < width; ++j)
      compositor(source + (sy + i) * sizes.sourceRow + (sx + j) * sizes.pixel,
                 destination + (dy + i) * sizes.row + (dx + j) * sizes.pixel);
}

inline void plainComposite(DRAVCFImageRef source, DRAVCFImageRef destination, const CGRect *sourceRects,
                           const CGRect *destinationRects, uint32_t count, uint32_t mode) {
  const cf::Ref work = cf::adopt(DRAVCFImageCopy(CFGetAllocator(source), source));
  if (!work) return;
  DRAVCFImageUnifyImageFormats(work.get(), destination);
  CGColorSpaceRef space = DRAVCFImageGetColorSpace(work.get());
  if (!space) return;
  const DRAVCFCompositeFunction compositor =
      DRAVCFImageCompositorForParameters(static_cast<uint32_t>(CGColorSpaceGetNumberOfComponents(space)),
                                         DRAVCFImageGetAlphaInfo(work.get()), mode);
  if (!compositor) return;
  uint8_t *buffer = DRAVCFImageGetImageBuffer(destination);
  const PlainSizes sizes{work->width,           work->height,        work->bytesPerRow,
                         destination->width,    destination->height, destination->bytesPerRow,
                         work->bitsPerPixel / 8};
  if (count == 0) count = 1;
  for (uint32_t i = 0; i < count; ++i) {
    const CGRect from = sourceRects ? sourceRects[i]
                                    : CGRectMake(0, 0, static_cast<float>(sizes.sourceWidth),
                                                 static_cast<float>(sizes.sourceHeight));
    const CGRect to = destinationRects ? destinationRects[i]
                                       : CGRectMake(0, 0, static_cast<float>(sizes.width),
                                                    static_cast<float>(sizes.height));
    plainCompositeRect(work.get(), from, to, sizes, buffer, compositor);
  }
}

inline void plainTile(DRAVCFImageRef source, DRAVCFImageRef destination, CGRect sourceRect,
                      CGRect destinationRect, uint32_t mode, uint32_t corner) {
  const auto tileWidth = static_cast<uint32_t>(CGRectGetWidth(sourceRect));
  const auto tileHeight = static_cast<uint32_t>(CGRectGetHeight(sourceRect));
  const auto areaWidth = static_cast<uint32_t>(CGRectGetWidth(destinationRect));
  const auto areaHeight = static_cast<uint32_t>(CGRectGetHeight(destinationRect));
  if (!tileWidth || !tileHeight || !areaWidth || !areaHeight || corner > 3) return;
  const auto columns = static_cast<uint32_t>(
      std::ceil(static_cast<double>(static_cast<float>(areaWidth) / static_cast<float>(tileWidth))));
  const auto rows = static_cast<uint32_t>(
      std::ceil(static_cast<double>(static_cast<float>(areaHeight) / static_cast<float>(tileHeight))));
  const bool right = corner == 1 || corner == 3, top = corner == 0 || corner == 1;
  const float x =
      right ? CGRectGetMaxX(destinationRect) - static_cast<float>(tileWidth) : CGRectGetMinX(destinationRect);
  const float y =
      top ? CGRectGetMaxY(destinationRect) - static_cast<float>(tileHeight) : CGRectGetMinY(destinationRect);
  const float stepX = right ? -CGRectGetWidth(sourceRect) : CGRectGetWidth(sourceRect);
  const float stepY = top ? -CGRectGetHeight(sourceRect) : CGRectGetHeight(sourceRect);
  for (uint32_t r = 0; r < rows; ++r)
    for (uint32_t c = 0; c < columns; ++c) {
      const CGRect tile{{x + static_cast<float>(c) * stepX, y + static_cast<float>(r) * stepY},
                        sourceRect.size};
      plainComposite(source, destination, &sourceRect, &tile, 1, mode);
    }
}

}  // namespace test
