// What a colour space is made of, for the parts of the platform that convert colours.
#pragma once

#include <CoreGraphics/CGColorSpace.h>

#include <array>
#include <cstddef>
#include <cstdint>

#include "foundation/object.h"
#include "graphics/color_engine.h"

struct CGColorSpace : cf::ObjectOf<CGColorSpace> {
  static constexpr const char *kName = "CGColorSpace";
  bool operator==(const CGColorSpace &other) const noexcept;
  CFHashCode hash() const noexcept;
  std::string describe() const;

  int type = kCGColorSpaceTypeDeviceGray;
  cg::ColorModel model = cg::ColorModel::gray;  // of an indexed space, its base's
  bool isFromProfile = false;
  cf::Ref<CFDataRef> profile;  // what the engine converts by; empty for device grey, device CMYK, indexed
  std::array<CGFloat, 15> parameters{};  // calibrated spaces: white point, gammas, matrix
  cf::Ref<CGColorSpaceRef> base;         // indexed spaces
  std::size_t colors = 0;
  std::array<uint8_t, 256 * 4> table{};
};

namespace cg {

// The space that the colours are of: an indexed space's base, else the space itself.
CGColorSpaceRef colorsSpace(CGColorSpaceRef space) noexcept;

// Whether values mean the same colours in both, so that nothing has to be converted.
bool sameColors(CGColorSpaceRef a, CGColorSpaceRef b) noexcept;

}  // namespace cg
