// What an image says about its colour and alpha.
#include "core/image.h"
#include "ops/pixel_words.h"

int DRAVCFImageIsColor(DRAVCFImageRef image) {
  const int type = CGColorSpaceGetType(DRAVCFImageGetColorSpace(image));
  return type != kCGColorSpaceTypeDeviceGray && type != kCGColorSpaceTypeCalibratedGray;
}

int DRAVCFImageHasAlpha(DRAVCFImageRef image) { return drav::hasAlpha(DRAVCFImageGetAlphaInfo(image)); }

// Reads the first byte of every pixel, wherever the layout has its alpha.
int DRAVCFImageIsOpaque(DRAVCFImageRef image) {
  if (!DRAVCFImageHasAlpha(image)) return 1;
  if (!DRAVCFImageGetImageBuffer(image) || !drav::bufferHas32BitPixels(image)) return 1;
  for (size_t row = 0; row < image->height; ++row) {
    if (!drav::firstBytesAre255(image->buffer + row * image->bytesPerRow, image->width)) return 0;
  }
  return 1;
}
