// Drawing contexts: creation, access, and the one that an image lends out.
#include "core/context.h"

#include <cstring>

#include "core/block.h"
#include "core/image.h"
#include "foundation/ref.h"

namespace {

// Bytes of a packed row: the filler byte of colour pixels counts as a component.
cf::Size packedRowBytes(size_t width, size_t bitsPerComponent, CGColorSpaceRef space) {
  const cf::Size bits = cf::product(bitsPerComponent, drav::componentsInMemory(space));
  return bits ? cf::rowBytes(width, *bits) : std::nullopt;
}

// Gives the context zeroed memory of its own. False if there is none.
bool allocateBuffer(DRAVCFContextRef context, cf::Size size) {
  const cf::Ref memory = drav::allocateMemory(kCFAllocatorDefault, size);
  if (!memory) return false;
  context->buffer = drav::bytesOf(memory.get());
  context->ownsBuffer = 1;
  context->ownMemory = cf::share(memory.get()).give();
  context->drawnMemory = cf::share(memory.get()).give();
  std::memset(context->buffer, 0, *size);
  return true;
}

}  // namespace

cf::Ref<CFDataRef> drav::allocateMemory(CFAllocatorRef allocator, cf::Size size) noexcept {
  Block block(allocator, size);
  if (!block) return nullptr;
  cf::Ref memory =
      cf::adopt(CFDataCreateWithBytesNoCopy(allocator, block.get(), static_cast<CFIndex>(*size), allocator));
  if (memory) static_cast<void>(block.give());  // the data object frees it
  return memory;
}

DRAVCFContextRef DRAVCFContextCreate(CFAllocatorRef allocator, size_t width, size_t height, uint8_t *buffer,
                                     size_t bitsPerComponent, size_t bytesPerRow, CGColorSpaceRef colorSpace,
                                     CGImageAlphaInfo alphaInfo) {
  cf::Ref context = cf::adopt(DRAVCFContextCreatePrivate(allocator));
  if (!context) return nullptr;
  const cf::Ref space = colorSpace ? cf::share(colorSpace) : cf::adopt(DRAVCGColorSpaceCreateMainDisplay());
  if (!space) return nullptr;
  cf::Size row = bytesPerRow;
  if (bytesPerRow == 0) row = packedRowBytes(width, bitsPerComponent, space.get());
  if (!row) return nullptr;

  context->buffer = buffer;
  if (!buffer && !allocateBuffer(context.get(), cf::bitmapBytes(*row, height))) return nullptr;
  context->cgContext = CGBitmapContextCreate(context->buffer, width, height, bitsPerComponent, *row,
                                             space.get(), static_cast<CGBitmapInfo>(alphaInfo));
  return context->cgContext ? context.give() : nullptr;
}

DRAVCFContextRef DRAVCFContextCreateForImage(CFAllocatorRef allocator, DRAVCFImageRef image,
                                             uint8_t *buffer) {
  CGImageRef cgImage = image ? DRAVCFImageGetCGImage(image) : nullptr;
  if (!cgImage) return nullptr;
  return DRAVCFContextCreate(allocator, CGImageGetWidth(cgImage), CGImageGetHeight(cgImage), buffer,
                             CGImageGetBitsPerComponent(cgImage), CGImageGetBytesPerRow(cgImage),
                             CGImageGetColorSpace(cgImage), CGImageGetAlphaInfo(cgImage));
}

CGContextRef DRAVCFContextGetCGContext(DRAVCFContextRef context) { return context->cgContext; }

uint8_t *DRAVCFContextGetBuffer(DRAVCFContextRef context) { return context->buffer; }

CGContextRef DRAVCFImageRetainContext(DRAVCFImageRef image) {
  if (image->context) {
    CFRetain(image->context);
    return DRAVCFContextGetCGContext(image->context);
  }
  const size_t width = DRAVCFImageGetWidth(image);
  const size_t height = DRAVCFImageGetHeight(image);
  if (!DRAVCFImageGetImageBuffer(image) || !drav::bufferIsWhole(image)) return nullptr;
  // The record, not the getters: a cached platform image may have wider rows than the buffer.
  image->context =
      DRAVCFContextCreate(CFGetAllocator(image), width, height, image->buffer, image->bitsPerComponent,
                          image->bytesPerRow, image->colorSpace, image->alphaInfo);
  return image->context ? DRAVCFContextGetCGContext(image->context) : nullptr;
}

void DRAVCFImageReleaseContext(DRAVCFImageRef image) {
  if (!image->context) return;
  const CFIndex count = CFGetRetainCount(image->context);
  CFRelease(image->context);
  if (count != 1) return;
  image->context = nullptr;
  DRAVCFImageInvalidateImage(image);
}
