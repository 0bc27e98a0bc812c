// Alpha: added, removed, and taken apart from the colours.
#include <algorithm>
#include <cstdio>

#include "core/block.h"
#include "core/image.h"
#include "foundation/ref.h"
#include "ops/pixel_words.h"
#include "pixel/alpha_kernels.h"

namespace {

// Divides by alpha and marks the alpha byte, in pieces that stay in the cache between the two steps. Gives
// whether some colour was above its alpha.
bool divideAndMark(uint8_t *pixels, size_t count) {
  constexpr size_t kPiece = 4096;
  constexpr uint8_t kRemovedAlpha = 1;  // one, not 255
  bool invalid = false;
  while (count > 0) {
    const size_t piece = std::min(count, kPiece);
    invalid |= drav::pixel::unpremultiplyPixels(pixels, piece, drav::pixel::AlphaByte::first);
    drav::setFirstBytes(pixels, piece, kRemovedAlpha);
    pixels += piece * drav::kPixelBytes;
    count -= piece;
  }
  return invalid;
}

// Removes alpha. False if the buffer for it could not be made.
bool removeAlpha(DRAVCFImageRef image) {
  if (!DRAVCFImageHasAlpha(image)) return true;
  DRAVCFImagePromoteImage(image, 0, 1);
  if (!image->buffer) return false;
  if (divideAndMark(image->buffer, image->bufferSize / drav::kPixelBytes)) {
    std::fprintf(stderr, "DRAVCFImageRemoveAlphaChannel - invalid unpremultiplication\n");
  }
  DRAVCFImageInvalidateImage(image);
  return true;
}

// Gives a new image a grey buffer of a size. False if memory runs out.
bool giveGrayBuffer(DRAVCFImageRef image, size_t width, size_t height) {
  const cf::Size row = cf::rowBytes(width, 8);
  const cf::Size size = row ? cf::bitmapBytes(*row, height) : std::nullopt;
  drav::Block buffer(CFGetAllocator(image), size);
  cf::Ref gray = cf::adopt(CGColorSpaceCreateDeviceGray());
  if (!size || !buffer || !gray) return false;
  drav::installBuffer(image,
                      {buffer.give(), *size, width, height, 8, 8, *row, gray.give(), kCGImageAlphaNone});
  return true;
}

// The image itself where it has alpha, else a copy that was given some.
cf::Ref<DRAVCFImageRef> withAlpha(CFAllocatorRef allocator, DRAVCFImageRef image) {
  if (DRAVCFImageHasAlpha(image)) return cf::share(image);
  cf::Ref copy = cf::adopt(DRAVCFImageCreateCopy(allocator, image));
  if (copy) DRAVCFImageAddAlphaChannel(copy.get());
  return copy;
}

}  // namespace

void DRAVCFImageAddAlphaChannel(DRAVCFImageRef image) {
  if (!DRAVCFImageHasAlpha(image)) DRAVCFImagePromoteImage(image, 0, 1);
}

void DRAVCFImageRemoveAlphaChannel(DRAVCFImageRef image) { removeAlpha(image); }

DRAVCFImageRef DRAVCFImageCopyOpaqueImage(CFAllocatorRef allocator, DRAVCFImageRef image) {
  cf::Ref copy = cf::adopt(DRAVCFImageCreateCopy(allocator, image));
  return copy && removeAlpha(copy.get()) ? copy.give() : nullptr;
}

DRAVCFImageRef DRAVCFImageCopyPremultipliedOpaqueImage(CFAllocatorRef allocator, DRAVCFImageRef image) {
  cf::Ref copy = cf::adopt(DRAVCFImageCreateCopy(allocator, image));
  if (!copy || !DRAVCFImageHasAlpha(copy.get())) return copy.give();
  if (!copy->buffer || copy->bitsPerPixel != 32) return nullptr;
  drav::setFirstBytes(copy->buffer, copy->bufferSize / drav::kPixelBytes, 255);
  // It is the source whose platform image goes, but never with the only pixels that it holds.
  if (DRAVCFImageGetImageBuffer(image)) DRAVCFImageInvalidateImage(image);
  return copy.give();
}

DRAVCFImageRef DRAVCFImageCopyAlphaChannel(CFAllocatorRef allocator, DRAVCFImageRef image) {
  cf::Ref alpha = cf::adopt(DRAVCFImageCreate(allocator));
  const cf::Ref source = alpha ? withAlpha(allocator, image) : nullptr;
  if (!source || !DRAVCFImageGetImageBuffer(source.get())) return nullptr;
  if (!drav::bufferHas32BitPixels(source.get())) return nullptr;
  if (!giveGrayBuffer(alpha.get(), source->width, source->height)) return nullptr;
  for (size_t row = 0; row < source->height; ++row) {
    drav::copyFirstBytes(source->buffer + row * source->bytesPerRow, alpha->buffer + row * alpha->bytesPerRow,
                         source->width);
  }
  return alpha.give();
}
