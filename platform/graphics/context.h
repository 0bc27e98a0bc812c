// The drawing context: a surface and a stack of graphics states.
#pragma once

#include <CoreGraphics/CoreGraphics.h>

#include <memory>
#include <string>
#include <vector>

#include "foundation/object.h"
#include "graphics/matrix.h"
#include "graphics/pixel_rect.h"
#include "graphics/surface.h"

namespace cg {

struct FillColor {
  float r = 0, g = 0, b = 0, a = 1;  // straight
};

struct GraphicsState {
  Matrix matrix;   // from user space to device space, both with y up
  PixelRect clip;  // within the surface
  CGInterpolationQuality quality = kCGInterpolationDefault;
  FillColor fill;
};

}  // namespace cg

struct CGContext : cf::ObjectOf<CGContext> {
  static constexpr const char *kName = "CGContext";
  [[nodiscard]] std::string describe() const;

  [[nodiscard]] cg::GraphicsState &state() noexcept { return states.back(); }

  cg::Surface surface{};
  CGBitmapInfo bitmapInfo = 0;
  cf::Ref<CGColorSpaceRef> space;         // what surface.space borrows
  std::unique_ptr<uint8_t[]> ownPixels;   // where the caller gave none
  std::vector<cg::GraphicsState> states;  // never empty once made
};
