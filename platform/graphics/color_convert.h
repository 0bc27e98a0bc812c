// Taking colours from one space into another, many pixels at a time.
#pragma once

#include <CoreGraphics/CGColorSpace.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

#include "graphics/color_engine.h"

namespace cg {

// Straight colours go in and out: grey as one byte, RGB as four bytes in one of two orders, CMYK as four.
//
// Values that no profile describes have rules of their own. Grey repeats as RGB; RGB becomes device grey by
// weight; device CMYK becomes RGB as (1 - c)(1 - k). Between device grey and any grey nothing changes. Device
// RGB is sRGB.
class ColorConverter {
 public:
  // from   any space but an indexed one.
  // to     RGB or grey.
  // order  of the RGB pixels on either side: PixelOrder::argb or rgba.
  // Gives  nothing if there is no way, or memory runs out.
  static std::optional<ColorConverter> make(CGColorSpaceRef from, CGColorSpaceRef to, PixelOrder order,
                                            CGColorRenderingIntent intent) noexcept;

  [[nodiscard]] bool changesNothing() const noexcept;
  // Whether values scaled by alpha give results scaled by alpha, so that premultiplied colour may pass.
  [[nodiscard]] bool isLinear() const noexcept { return !transform_ && from_ != ColorModel::cmyk; }

  // pixels may be overwritten; out may be pixels where both have the same size. RGB keeps the alpha bytes it
  // came with; from grey and CMYK they become 255.
  void convert(uint8_t *pixels, uint8_t *out, std::size_t count) const noexcept;

 private:
  ColorConverter() noexcept = default;
  [[nodiscard]] bool findTransform(CFDataRef from, PixelOrder fromOrder, CFDataRef to, PixelOrder toOrder,
                                   CGColorRenderingIntent intent) noexcept;
  [[nodiscard]] bool planToRGB(CGColorSpaceRef from, CGColorSpaceRef to,
                               CGColorRenderingIntent intent) noexcept;
  [[nodiscard]] bool planToGray(CGColorSpaceRef from, CGColorSpaceRef to,
                                CGColorRenderingIntent intent) noexcept;

  ColorModel from_ = ColorModel::gray, to_ = ColorModel::gray;
  PixelOrder order_ = PixelOrder::argb;
  bool mixesInks_ = false;     // first: CMYK to RGB without a profile
  bool weighsColors_ = false;  // last: RGB to grey
  std::shared_ptr<const ColorTransform> transform_;
};

// round(0.30 r + 0.59 g + 0.11 b). The product and shift are a division by 100 for every sum that occurs, and
// stay within 32 bits where the compiler's own division would not.
constexpr uint8_t grayOf(uint8_t r, uint8_t g, uint8_t b) noexcept {
  return static_cast<uint8_t>((30U * r + 59U * g + 11U * b + 50U) * 5243U >> 19);
}

}  // namespace cg
