#include "graphics/compose.h"

namespace cg {

RowForm sourceForm(SurfaceLayout layout, bool filtered) noexcept {
  switch (layout) {
    case SurfaceLayout::gray:
      return RowForm::grayAlphaPremultiplied;
    case SurfaceLayout::rgba:
    case SurfaceLayout::argb:
      return filtered ? RowForm::argbPremultiplied : RowForm::argbStraight;
    default:
      return RowForm::argbPremultiplied;
  }
}

bool opaqueRowsAreFinal(SurfaceLayout layout, RowForm form) noexcept {
  switch (form) {
    case RowForm::gray:
      return layout == SurfaceLayout::gray;
    case RowForm::argbPremultiplied:
      return layout == SurfaceLayout::argbPremultiplied || layout == SurfaceLayout::argb ||
             layout == SurfaceLayout::xrgb;
    case RowForm::rgbaStraight:
      return layout == SurfaceLayout::rgbaPremultiplied || layout == SurfaceLayout::rgba ||
             layout == SurfaceLayout::rgbx;
    default:
      return false;
  }
}

ComposeRow composeRowFor(SurfaceLayout layout, RowForm form) noexcept {
  const ComposeRow inVectors = vectorComposeRows().rowFor(layout, form);
  return inVectors ? inVectors : plainComposeRow(layout, form);
}

}  // namespace cg
