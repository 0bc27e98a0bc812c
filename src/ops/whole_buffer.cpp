// Operations on every byte of the buffer.
#include "core/image.h"
#include "ops/pixel_words.h"

namespace {

void complement(uint8_t *bytes, size_t count) {
  for (size_t i = 0; i < count; ++i) bytes[i] = static_cast<uint8_t>(~bytes[i]);
}

// Complementing the colours of a pixel fills its alpha.
void complementColours(uint8_t *bytes, size_t count) {
  const size_t pixels = count / drav::kPixelBytes;
  complement(bytes, count);
  drav::setFirstBytes(bytes, pixels, 255);
}

}  // namespace

void DRAVCFImageInvert(DRAVCFImageRef image) {
  if (!DRAVCFImageGetImageBuffer(image)) return;
  (drav::hasAlpha(image->alphaInfo) ? complementColours : complement)(image->buffer, image->bufferSize);
  DRAVCFImageInvalidateImage(image);
}

void DRAVCFImageClear(DRAVCFImageRef image) {
  if (!DRAVCFImageGetImageBuffer(image)) return;
  drav::clearBuffer(image);
  DRAVCFImageInvalidateImage(image);
}
