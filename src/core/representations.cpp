// The two forms of an image: the platform image and the buffer, made from each other and dropped.
#include <cstring>
#include <utility>

#include "core/block.h"
#include "core/image.h"
#include "foundation/ref.h"

void DRAVCFReleaseImageBuffer(void *info, const void *data, size_t) {
  if (data) CFAllocatorDeallocate(static_cast<CFAllocatorRef>(info), const_cast<void *>(data));
}

void DRAVCFImageInvalidateImage(DRAVCFImageRef image) {
  CGImageRelease(image->cgImage);
  image->cgImage = nullptr;
}

void DRAVCFImageInvalidateBuffer(DRAVCFImageRef image) {
  if (image->buffer) CFAllocatorDeallocate(CFGetAllocator(image), image->buffer);
  image->buffer = nullptr;
  CGColorSpaceRelease(image->colorSpace);
  image->colorSpace = nullptr;
  image->bufferSize = 0;
  image->width = 0;
  image->height = 0;
  image->bitsPerComponent = 0;
  image->bitsPerPixel = 0;
  image->bytesPerRow = 0;
  image->alphaInfo = kCGImageAlphaPremultipliedFirst;
}

CGImageRef DRAVCFImageGetCGImage(DRAVCFImageRef image) {
  if (image->cgImage || !image->buffer) return image->cgImage;
  CFAllocatorRef allocator = CFGetAllocator(image);
  drav::Block copy(allocator, image->bufferSize);
  if (!copy) return nullptr;
  std::memcpy(copy.get(), image->buffer, image->bufferSize);
  const cf::Ref provider = drav::providerOf(allocator, std::move(copy), image->bufferSize);
  if (!provider) return nullptr;
  image->cgImage =
      CGImageCreate(image->width, image->height, image->bitsPerComponent, image->bitsPerPixel,
                    image->bytesPerRow, image->colorSpace, static_cast<CGBitmapInfo>(image->alphaInfo),
                    provider.get(), nullptr, true, kCGRenderingIntentDefault);
  return image->cgImage;
}

uint8_t *DRAVCFImageGetImageBuffer(DRAVCFImageRef image) {
  DRAVCFImagePromoteImage(image, 0, 0);
  return image->buffer;
}

size_t DRAVCFImageGetImageBufferSize(DRAVCFImageRef image) {
  DRAVCFImageGetImageBuffer(image);
  return image->bufferSize;
}
