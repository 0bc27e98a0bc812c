// Images for the tests of the core: made from plain bytes, compared as plain bytes.
#pragma once

#include <DravKit/DravKit.h>

#include <cstdint>
#include <vector>

#include "core/image.h"
#include "foundation/ref.h"

namespace test {

using Bytes = std::vector<uint8_t>;

inline cf::Ref<CGColorSpaceRef> displaySpace() { return cf::adopt(DRAVCGColorSpaceCreateMainDisplay()); }
inline cf::Ref<CGColorSpaceRef> graySpace() { return cf::adopt(CGColorSpaceCreateDeviceGray()); }
inline cf::Ref<CGColorSpaceRef> deviceRGBSpace() { return cf::adopt(CGColorSpaceCreateDeviceRGB()); }

struct Layout {
  size_t width, height, bitsPerComponent, bitsPerPixel, bytesPerRow;
  CGColorSpaceRef space;
  CGImageAlphaInfo alpha;
};

// A platform image over a copy of the bytes.
inline cf::Ref<CGImageRef> makeCGImage(const Layout &layout, const Bytes &bytes) {
  cf::Ref data = cf::adopt(CFDataCreate(nullptr, bytes.data(), static_cast<CFIndex>(bytes.size())));
  cf::Ref provider = cf::adopt(CGDataProviderCreateWithCFData(data.get()));
  return cf::adopt(CGImageCreate(layout.width, layout.height, layout.bitsPerComponent, layout.bitsPerPixel,
                                 layout.bytesPerRow, layout.space, static_cast<CGBitmapInfo>(layout.alpha),
                                 provider.get(), nullptr, true, kCGRenderingIntentDefault));
}

// An image of packed 8-bit pixels that holds a buffer.
inline cf::Ref<DRAVCFImageRef> makeBufferImage(size_t width, size_t height, size_t bitsPerPixel,
                                               CGColorSpaceRef space, CGImageAlphaInfo alpha,
                                               const Bytes &bytes, CFAllocatorRef allocator = nullptr) {
  return cf::adopt(
      DRAVCFImageCreateWithBuffer(allocator, bytes.data(), width, height, 8, bitsPerPixel, 0, space, alpha));
}

inline cf::Ref<DRAVCFImageRef> makeARGBImage(size_t width, size_t height, const Bytes &bytes,
                                             CFAllocatorRef allocator = nullptr) {
  return makeBufferImage(width, height, 32, displaySpace().get(), kCGImageAlphaPremultipliedFirst, bytes,
                         allocator);
}

inline cf::Ref<DRAVCFImageRef> makeGrayImage(size_t width, size_t height, const Bytes &bytes,
                                             CFAllocatorRef allocator = nullptr) {
  return makeBufferImage(width, height, 8, graySpace().get(), kCGImageAlphaNone, bytes, allocator);
}

// The buffer as it stands, without making one.
inline Bytes bufferOf(DRAVCFImageRef image) {
  return image->buffer ? Bytes(image->buffer, image->buffer + image->bufferSize) : Bytes{};
}

}  // namespace test
