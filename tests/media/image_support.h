// Platform images for tests, made and looked at through the public calls.
#pragma once

#include <CoreGraphics/CoreGraphics.h>

#include <vector>

#include "foundation/ref.h"

inline cf::Ref<CFDataRef> dataOf(const std::vector<uint8_t> &bytes) {
  return cf::adopt(CFDataCreate(kCFAllocatorDefault, bytes.data(), static_cast<CFIndex>(bytes.size())));
}

inline std::vector<uint8_t> bytesOf(CFDataRef data) {
  if (!data) return {};
  return {CFDataGetBytePtr(data), CFDataGetBytePtr(data) + CFDataGetLength(data)};
}

inline cf::Ref<CGDataProviderRef> providerOf(const std::vector<uint8_t> &bytes) {
  return cf::adopt(CGDataProviderCreateWithCFData(dataOf(bytes).get()));
}

// Rows without padding; 8 bits a component.
inline cf::Ref<CGImageRef> imageOf(size_t width, size_t height, size_t pixelBytes, CGColorSpaceRef space,
                                   CGBitmapInfo info, const std::vector<uint8_t> &pixels) {
  return cf::adopt(CGImageCreate(width, height, 8, 8 * pixelBytes, width * pixelBytes, space, info,
                                 providerOf(pixels).get(), nullptr, true, kCGRenderingIntentDefault));
}

inline std::vector<uint8_t> pixelsOf(CGImageRef image) {
  return bytesOf(cf::adopt(CGDataProviderCopyData(CGImageGetDataProvider(image))).get());
}
