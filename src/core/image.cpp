#include "core/image.h"

#include <cstring>

#include "foundation/sizes.h"

namespace drav {
namespace {

void releaseBlockAndAllocator(void *info, const void *data, size_t size) {
  const cf::Ref<CFAllocatorRef> allocator = cf::adopt(static_cast<CFAllocatorRef>(info));
  DRAVCFReleaseImageBuffer(info, data, size);
}

}  // namespace

cf::Ref<CGDataProviderRef> providerOf(CFAllocatorRef allocator, Block block, size_t size) noexcept {
  cf::Ref kept = cf::share(allocator);
  auto *info = const_cast<void *>(static_cast<const void *>(allocator));
  cf::Ref provider =
      cf::adopt(CGDataProviderCreateWithData(info, block.get(), size, releaseBlockAndAllocator));
  if (!provider) return nullptr;
  static_cast<void>(block.give());  // both are the provider's now
  static_cast<void>(kept.give());
  return provider;
}

size_t componentsInMemory(CGColorSpaceRef space) noexcept {
  const size_t components = CGColorSpaceGetNumberOfComponents(space);
  return components == 3 ? 4 : components;
}

bool bufferIsWhole(DRAVCFImageRef image) noexcept {
  if (!image->buffer) return false;
  const cf::Size row = cf::rowBytes(image->width, image->bitsPerPixel);
  const cf::Size whole = cf::bitmapBytes(image->bytesPerRow, image->height);
  return row && whole && *row <= image->bytesPerRow && *whole <= image->bufferSize;
}

bool bufferHas32BitPixels(DRAVCFImageRef image) noexcept {
  return image->bitsPerPixel == 32 && bufferIsWhole(image);
}

void clearBuffer(DRAVCFImageRef image) noexcept {
  if (image->buffer) std::memset(image->buffer, hasAlpha(image->alphaInfo) ? 0 : 255, image->bufferSize);
}

void installBuffer(DRAVCFImageRef image, const PixelStore &store) noexcept {
  DRAVCFImageInvalidateImage(image);
  DRAVCFImageInvalidateBuffer(image);
  image->buffer = store.buffer;
  image->bufferSize = store.bufferSize;
  image->width = store.width;
  image->height = store.height;
  image->bitsPerComponent = store.bitsPerComponent;
  image->bitsPerPixel = store.bitsPerPixel;
  image->bytesPerRow = store.bytesPerRow;
  image->colorSpace = store.colorSpace;
  image->alphaInfo = store.alphaInfo;
}

}  // namespace drav
