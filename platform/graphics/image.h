// What an image is made of, for the parts of the platform that read and make them.
#pragma once

#include <CoreGraphics/CGImage.h>

#include <array>
#include <cstddef>
#include <cstdint>

#include "foundation/object.h"

namespace cg {

struct Resolution {
  double x = 0, y = 0;  // dots per inch; 0: not known
};

struct ImageLayout {
  std::size_t width = 0, height = 0;
  std::size_t bitsPerComponent = 0, bitsPerPixel = 0, bytesPerRow = 0;
  CGBitmapInfo bitmapInfo = 0;

  [[nodiscard]] CGImageAlphaInfo alphaInfo() const noexcept { return bitmapInfo & kCGBitmapAlphaInfoMask; }
  [[nodiscard]] CGBitmapInfo byteOrder() const noexcept { return bitmapInfo & kCGBitmapByteOrderMask; }
};

}  // namespace cg

struct CGImage : cf::ObjectOf<CGImage> {
  static constexpr const char *kName = "CGImage";
  std::string describe() const;

  cg::ImageLayout layout;
  cf::Ref<CGColorSpaceRef> space;
  cf::Ref<CGDataProviderRef> provider;
  std::size_t offset = 0;  // of the first pixel in the provider's bytes
  bool hasDecode = false, shouldInterpolate = false;
  std::array<CGFloat, 8> decode{};
  CGColorRenderingIntent intent = kCGRenderingIntentDefault;
  cg::Resolution resolution;
};

namespace cg {

// The first byte of a row, top row first.
const uint8_t *imageRow(CGImageRef image, std::size_t row) noexcept;

// Kept beside the pixels for whoever writes them to a file. Set by who made the image, before anybody else
// has it.
Resolution imageResolution(CGImageRef image) noexcept;
void setImageResolution(CGImageRef image, Resolution resolution) noexcept;

}  // namespace cg
