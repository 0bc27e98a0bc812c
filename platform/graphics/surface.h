// The pixel memory of a bitmap context, and how its pixels are laid out.
#pragma once

#include <CoreGraphics/CGColorSpace.h>
#include <CoreGraphics/CGImage.h>

#include <cstddef>
#include <cstdint>

#include "graphics/image_rows.h"

namespace cg {

enum class SurfaceLayout : uint8_t {
  gray,
  rgbaPremultiplied,
  argbPremultiplied,
  rgba,
  argb,
  rgbx,
  xrgb,
  alpha
};

struct Surface {
  uint8_t *pixels;
  size_t width, height, bytesPerRow;
  SurfaceLayout layout;
  CGColorSpaceRef space;  // borrowed; NULL for alpha alone

  [[nodiscard]] size_t bytesPerPixel() const noexcept {
    return layout == SurfaceLayout::gray || layout == SurfaceLayout::alpha ? 1 : 4;
  }
  [[nodiscard]] uint8_t *at(int64_t x, int64_t y) const noexcept {
    return pixels + static_cast<size_t>(y) * bytesPerRow + static_cast<size_t>(x) * bytesPerPixel();
  }
};

// The form in which source rows are brought to a surface. Straight surfaces take straight sources, so that
// nothing is lost where nothing lies beneath; what is filtered is premultiplied in any case.
RowForm sourceForm(SurfaceLayout layout, bool filtered) noexcept;

// Composes a row of pixels over what is there.
using ComposeRow = void (*)(const uint8_t *source, uint8_t *destination, size_t pixels);
ComposeRow composeRowFor(SurfaceLayout layout, RowForm form) noexcept;

// Whether an opaque row of that form is, byte for byte, what composing it would leave on the surface.
bool opaqueRowsAreFinal(SurfaceLayout layout, RowForm form) noexcept;

}  // namespace cg
