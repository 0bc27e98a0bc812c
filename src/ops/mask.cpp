// An image and a mask as one image.
#include <cstring>

#include "core/image.h"
#include "foundation/ref.h"
#include "ops/pixel_words.h"
#include "pixel/alpha_kernels.h"

namespace {

// A copy whose pixels are four bytes, alpha removed. A grey buffer becomes colour first: its pixels would be
// walked as something they are not.
cf::Ref<DRAVCFImageRef> opaqueCopy(CFAllocatorRef allocator, DRAVCFImageRef image) {
  cf::Ref copy = cf::adopt(DRAVCFImageCopyOpaqueImage(allocator, image));
  if (copy) DRAVCFImageConvertToColor(copy.get());
  if (!copy || !drav::bufferHas32BitPixels(copy.get())) return nullptr;
  return copy;
}

// A copy of one byte a pixel.
cf::Ref<DRAVCFImageRef> grayCopy(CFAllocatorRef allocator, DRAVCFImageRef mask) {
  cf::Ref copy = cf::adopt(DRAVCFImageCreateCopy(allocator, mask));
  if (copy) DRAVCFImageConvertToGrayscale(copy.get());
  if (!copy || copy->bitsPerPixel != 8 || !drav::bufferIsWhole(copy.get())) return nullptr;
  return copy;
}

// The colours of one row with the mask's greys as their alpha.
void joinRow(const uint8_t *colours, const uint8_t *grays, uint8_t *pixels, size_t width,
             bool isPremultiplied) {
  std::memcpy(pixels, colours, width * drav::kPixelBytes);
  for (size_t i = 0; i < width; ++i) pixels[drav::kPixelBytes * i] = grays[i];
  if (!isPremultiplied) drav::pixel::premultiplyPixels(pixels, width, drav::pixel::AlphaByte::first);
}

}  // namespace

DRAVCFImageRef DRAVCFImageCreateWithImageAndMask(CFAllocatorRef allocator, DRAVCFImageRef image,
                                                 DRAVCFImageRef mask, Boolean isPremultiplied) {
  const size_t width = DRAVCFImageGetWidth(image);
  const size_t height = DRAVCFImageGetHeight(image);
  if (DRAVCFImageGetWidth(mask) != width || DRAVCFImageGetHeight(mask) != height) return nullptr;
  const cf::Ref opaque = opaqueCopy(allocator, image);
  const cf::Ref gray = opaque ? grayCopy(allocator, mask) : nullptr;
  if (!gray) return nullptr;
  const CGSize size = CGSizeMake(static_cast<CGFloat>(width), static_cast<CGFloat>(height));
  cf::Ref result = cf::adopt(DRAVCFImageCreateWithSize(allocator, size, 1));
  // A side beyond the whole numbers of float comes back as another.
  if (!result || result->width != width || result->height != height) return nullptr;
  for (size_t row = 0; row < height; ++row) {
    joinRow(opaque->buffer + row * opaque->bytesPerRow, gray->buffer + row * gray->bytesPerRow,
            result->buffer + row * result->bytesPerRow, width, isPremultiplied);
  }
  return result.give();
}
