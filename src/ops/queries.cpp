// What an image says about its colour and alpha.
#include <algorithm>

#include "core/image.h"
#include "ops/pixel_words.h"

int DRAVCFImageIsColor(DRAVCFImageRef image) {
  const int type = CGColorSpaceGetType(DRAVCFImageGetColorSpace(image));
  return type != kCGColorSpaceTypeDeviceGray && type != kCGColorSpaceTypeCalibratedGray;
}

int DRAVCFImageHasAlpha(DRAVCFImageRef image) { return drav::hasAlpha(DRAVCFImageGetAlphaInfo(image)); }

// The first byte of every pixel counts, wherever the layout has its alpha. Where a row claims more pixels
// than the buffer has bytes left, what is there decides.
int DRAVCFImageIsOpaque(DRAVCFImageRef image) {
  if (!DRAVCFImageHasAlpha(image)) return 1;
  const uint8_t *buffer = DRAVCFImageGetImageBuffer(image);
  if (!buffer) return 1;
  for (size_t row = 0; row < image->height; ++row) {
    const size_t start = row * image->bytesPerRow;
    if (start >= image->bufferSize) break;
    const size_t reachable = (image->bufferSize - start + drav::kPixelBytes - 1) / drav::kPixelBytes;
    if (!drav::firstBytesAre255(buffer + start, std::min(image->width, reachable))) return 0;
  }
  return 1;
}
