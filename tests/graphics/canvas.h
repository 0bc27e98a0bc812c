// Images and contexts over bytes that a test can see.
#pragma once

#include <CoreGraphics/CoreGraphics.h>

#include <cstdint>
#include <vector>

#include "buffer_reader.h"
#include "foundation/ref.h"

namespace cg::test {

using SpaceRef = cf::Ref<CGColorSpaceRef>;
using ImageRef = cf::Ref<CGImageRef>;

inline SpaceRef gray() { return cf::adopt(CGColorSpaceCreateDeviceGray()); }
inline SpaceRef rgb() { return cf::adopt(CGColorSpaceCreateDeviceRGB()); }

inline bool isColor(CGBitmapInfo info) { return info != kCGImageAlphaNone && info != kCGImageAlphaOnly; }
inline size_t componentsOf(CGBitmapInfo info) { return isColor(info) ? 4 : 1; }
inline SpaceRef spaceOf(CGBitmapInfo info) { return isColor(info) ? rgb() : gray(); }

// An image of 8-bit grey (kCGImageAlphaNone), alpha alone, or 32-bit colour.
inline ImageRef makeImage(const Bytes &bytes, size_t width, size_t height, CGBitmapInfo info,
                          bool shouldInterpolate = true) {
  const size_t components = componentsOf(info);
  const auto data =
      cf::adopt(CFDataCreate(kCFAllocatorDefault, bytes.data(), static_cast<CFIndex>(bytes.size())));
  const auto provider = cf::adopt(CGDataProviderCreateWithCFData(data.get()));
  return cf::adopt(CGImageCreate(width, height, 8, 8 * components, width * components, spaceOf(info).get(),
                                 info, provider.get(), nullptr, shouldInterpolate,
                                 kCGRenderingIntentDefault));
}

// A context over bytes of its own, with a few bytes after each row that drawing must leave alone.
class Canvas {
 public:
  static constexpr size_t kGap = 5;
  static constexpr uint8_t kGapByte = 0xA7;

  Canvas(size_t width, size_t height, CGBitmapInfo info, uint8_t value = 0)
      : Canvas(width, height, info, Bytes(width * height * componentsOf(info), value)) {}

  Canvas(size_t width, size_t height, CGBitmapInfo info, const Bytes &pixels)
      : width_(width * componentsOf(info)), height_(height), bytes_(height * stride(), kGapByte) {
    for (size_t y = 0; y < height; ++y)
      std::copy_n(pixels.data() + y * width_, width_, bytes_.data() + y * stride());
    context_ = cf::adopt(
        CGBitmapContextCreate(bytes_.data(), width, height, 8, stride(), spaceOf(info).get(), info));
  }

  [[nodiscard]] CGContextRef context() const { return context_.get(); }

  // The pixels without the gaps.
  [[nodiscard]] Bytes pixels() const {
    Bytes result;
    for (size_t y = 0; y < height_; ++y)
      result.insert(result.end(), bytes_.data() + y * stride(), bytes_.data() + y * stride() + width_);
    return result;
  }

  [[nodiscard]] bool gapsAreWhole() const {
    for (size_t i = 0; i < bytes_.size(); ++i)
      if (i % stride() >= width_ && bytes_[i] != kGapByte) return false;
    return true;
  }

 private:
  [[nodiscard]] size_t stride() const { return width_ + kGap; }

  size_t width_, height_;
  Bytes bytes_;
  cf::Ref<CGContextRef> context_;
};

inline CGRect rect(double x, double y, double width, double height) {
  return CGRectMake(static_cast<CGFloat>(x), static_cast<CGFloat>(y), static_cast<CGFloat>(width),
                    static_cast<CGFloat>(height));
}

}  // namespace cg::test
