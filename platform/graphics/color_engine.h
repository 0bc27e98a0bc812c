// The colour engine: the only place that knows the library behind colour conversion.
#pragma once

#include <CoreGraphics/CGColorSpace.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

#include "foundation/ref.h"

namespace cg {

enum class ColorModel : uint8_t { gray, rgb, cmyk };

constexpr std::size_t componentsOf(ColorModel model) noexcept {
  switch (model) {
    case ColorModel::gray:
      return 1;
    case ColorModel::rgb:
      return 3;
    default:
      return 4;
  }
}

// The model of a profile's colours; nothing if the bytes are no profile that colours can be converted from.
std::optional<ColorModel> profileModel(CFDataRef profile) noexcept;

// The bytes of an sRGB profile, the same in every process and shared by all; NULL if memory runs out.
CFDataRef sharedSRGBProfile() noexcept;

// Profiles made from numbers; empty for numbers that make none. The white point is CIE XYZ.
cf::Ref<CFDataRef> makeGrayProfile(const CGFloat whitePoint[3], CGFloat gamma) noexcept;
cf::Ref<CFDataRef> makeRGBProfile(const CGFloat whitePoint[3], const CGFloat gamma[3],
                                  const CGFloat matrix[9]) noexcept;

// How pixels lie in memory before or after a conversion.
enum class PixelOrder : uint8_t {
  gray,  // one byte
  rgb,   // three bytes
  argb,  // four, the first of which is neither read nor written
  rgba,  // four, likewise the last
  cmyk,  // four
};

// A conversion between two profiles. One object may serve several threads at once.
class ColorTransform {
 public:
  virtual ~ColorTransform() = default;
  // Straight colour. in and out may be the same address where their pixels have the same size.
  virtual void convert(const uint8_t *in, uint8_t *out, std::size_t pixels) const noexcept = 0;
};

struct ColorEnd {
  CFDataRef profile;
  PixelOrder order;
};

// A transform, from a small cache if it was asked for lately; empty if there is none or memory runs out.
std::shared_ptr<const ColorTransform> colorTransform(ColorEnd from, ColorEnd to,
                                                     CGColorRenderingIntent intent) noexcept;

}  // namespace cg
