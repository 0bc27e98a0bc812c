// Images from a platform image, from a caller's pixels, of a size, and as a copy.
#include <cstring>

#include "core/block.h"
#include "core/image.h"
#include "core/whole_pixels.h"
#include "foundation/ref.h"

namespace {

cf::Size bufferBytes(size_t width, size_t height, size_t bytesPerRow) {
  if (!cf::sidePixels(width) || !cf::sidePixels(height)) return std::nullopt;
  return cf::bitmapBytes(bytesPerRow, height);
}

// Takes the memory for the size that the record states. False if there is none.
bool allocateBuffer(DRAVCFImageRef image) {
  const cf::Size size = bufferBytes(image->width, image->height, image->bytesPerRow);
  image->buffer = drav::allocateBytes(CFGetAllocator(image), size);
  if (image->buffer) image->bufferSize = *size;
  return image->buffer != nullptr;
}

}  // namespace

DRAVCFImageRef DRAVCFImageCreateWithImage(CFAllocatorRef allocator, CGImageRef cgImage) {
  cf::Ref image = cf::adopt(DRAVCFImageCreate(allocator));
  if (image) image->cgImage = cf::share(cgImage).give();
  return image.give();
}

DRAVCFImageRef DRAVCFImageCreateWithBuffer(CFAllocatorRef allocator, const uint8_t *source, size_t width,
                                           size_t height, size_t bitsPerComponent, size_t bitsPerPixel,
                                           size_t bytesPerRow, CGColorSpaceRef colorSpace,
                                           CGImageAlphaInfo alphaInfo) {
  cf::Ref image = cf::adopt(DRAVCFImageCreate(allocator));
  if (!image) return nullptr;
  image->width = width;
  image->height = height;
  image->bitsPerComponent = bitsPerComponent;
  image->alphaInfo = alphaInfo;
  image->colorSpace = colorSpace ? cf::share(colorSpace).give() : DRAVCGColorSpaceCreateMainDisplay();

  cf::Size pixel = bitsPerPixel;
  if (bitsPerPixel == 0) pixel = cf::product(bitsPerComponent, drav::componentsInMemory(image->colorSpace));
  if (!pixel) return nullptr;
  image->bitsPerPixel = *pixel;
  cf::Size row = bytesPerRow;
  if (bytesPerRow == 0) row = cf::rowBytes(width, image->bitsPerPixel);
  if (!row) return nullptr;
  image->bytesPerRow = *row;

  if (!allocateBuffer(image.get())) return nullptr;
  if (image->bufferSize == 0) return image.give();
  if (!source) return nullptr;
  std::memcpy(image->buffer, source, image->bufferSize);
  return image.give();
}

DRAVCFImageRef DRAVCFImageCreateWithSize(CFAllocatorRef allocator, CGSize size, Boolean isColor) {
  const cf::Size width = drav::wholePixels(size.width);
  const cf::Size height = drav::wholePixels(size.height);
  if (!width || !height) return nullptr;
  cf::Ref image = cf::adopt(DRAVCFImageCreate(allocator));
  if (!image) return nullptr;
  image->width = *width;
  image->height = *height;
  image->bitsPerComponent = 8;
  image->bitsPerPixel = isColor ? 32 : 8;
  image->alphaInfo = isColor ? kCGImageAlphaPremultipliedFirst : kCGImageAlphaNone;
  image->colorSpace = isColor ? DRAVCGColorSpaceCreateMainDisplay() : CGColorSpaceCreateDeviceGray();
  const cf::Size row = cf::rowBytes(*width, image->bitsPerPixel);
  if (!row) return nullptr;
  image->bytesPerRow = *row;
  if (!allocateBuffer(image.get())) return nullptr;
  drav::clearBuffer(image.get());
  return image.give();
}

DRAVCFImageRef DRAVCFImageCreateCopy(CFAllocatorRef allocator, DRAVCFImageRef source) {
  return DRAVCFImageCopy(allocator, source);
}
