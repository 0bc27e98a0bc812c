// The geometry and layout of an image: the platform image's own where there is one.
#include "core/image.h"

size_t DRAVCFImageGetWidth(DRAVCFImageRef image) {
  return image->cgImage ? CGImageGetWidth(image->cgImage) : image->width;
}

size_t DRAVCFImageGetHeight(DRAVCFImageRef image) {
  return image->cgImage ? CGImageGetHeight(image->cgImage) : image->height;
}

size_t DRAVCFImageGetBitsPerComponent(DRAVCFImageRef image) {
  return image->cgImage ? CGImageGetBitsPerComponent(image->cgImage) : image->bitsPerComponent;
}

size_t DRAVCFImageGetBitsPerPixel(DRAVCFImageRef image) {
  return image->cgImage ? CGImageGetBitsPerPixel(image->cgImage) : image->bitsPerPixel;
}

size_t DRAVCFImageGetBytesPerRow(DRAVCFImageRef image) {
  return image->cgImage ? CGImageGetBytesPerRow(image->cgImage) : image->bytesPerRow;
}

CGColorSpaceRef DRAVCFImageGetColorSpace(DRAVCFImageRef image) {
  return image->cgImage ? CGImageGetColorSpace(image->cgImage) : image->colorSpace;
}

CGImageAlphaInfo DRAVCFImageGetAlphaInfo(DRAVCFImageRef image) {
  return image->cgImage ? CGImageGetAlphaInfo(image->cgImage) : image->alphaInfo;
}
