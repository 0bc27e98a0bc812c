// The image record, and what the library's parts know of an image beyond the public header.
#pragma once

#include <CoreFoundation/CFRuntime.h>
#include <DravKit/DravKit.h>

#include "core/block.h"
#include "foundation/ref.h"

// cgImage and buffer show the same pixels when both are there; one alone is the truth. Whoever writes into
// buffer drops cgImage. Fields bufferSize to alphaInfo describe buffer, and nothing else may be used to walk
// it: the getters describe cgImage when that is there, whose rows may be padded and whose depth may differ.
struct __DRAVCFImage {
  CFRuntimeBase base;
  CGImageRef cgImage;  // owned
  uint8_t *buffer;     // owned, from the image's allocator
  size_t bufferSize;   // bytesPerRow * height
  size_t width;
  size_t height;
  size_t bitsPerComponent;
  size_t bitsPerPixel;
  size_t bytesPerRow;
  CGColorSpaceRef colorSpace;  // owned
  CGImageAlphaInfo alphaInfo;
  DRAVCFContextRef context;  // the shared context, while someone retains it
};

// The main display's colour space: that of every colour buffer that promotion makes. Made when the class is
// registered, never released; NULL where there is none.
extern CGColorSpaceRef gDRAVCFNativeColorSpace;

namespace drav {

// 0, 5 and 6 are the alpha infos without alpha.
constexpr bool hasAlpha(CGImageAlphaInfo info) noexcept {
  return info != kCGImageAlphaNone && info != kCGImageAlphaNoneSkipLast && info != kCGImageAlphaNoneSkipFirst;
}

// How many components a pixel of this space takes in memory: three share 32 bits with alpha or a filler.
size_t componentsInMemory(CGColorSpaceRef space) noexcept;

// Whether the buffer is there and as long as its rows claim, with rows as long as their pixels.
bool bufferIsWhole(DRAVCFImageRef image) noexcept;

// Whether the buffer can be walked in steps of four bytes a pixel.
bool bufferHas32BitPixels(DRAVCFImageRef image) noexcept;

// A data provider that takes over a block of the allocator's, and keeps the allocator for giving it back: a
// platform image may outlive the image that made it. Empty, with the block freed, if memory runs out.
cf::Ref<CGDataProviderRef> providerOf(CFAllocatorRef allocator, Block block, size_t size) noexcept;

// Sets every byte of the buffer: transparent black where the image has alpha, else white.
void clearBuffer(DRAVCFImageRef image) noexcept;

// Puts a new buffer in place of whatever the image holds; the image takes over buffer and space.
struct PixelStore {
  uint8_t *buffer;
  size_t bufferSize, width, height, bitsPerComponent, bitsPerPixel, bytesPerRow;
  CGColorSpaceRef colorSpace;
  CGImageAlphaInfo alphaInfo;
};
void installBuffer(DRAVCFImageRef image, const PixelStore &store) noexcept;

}  // namespace drav
