#include "graphics/route.h"

namespace cg {

Route routeFor(const Surface &surface, CGImageRef image, bool filtered) noexcept {
  if (!imageHasAlpha(image)) {
    for (RowForm form : {RowForm::argbPremultiplied, RowForm::rgbaStraight, RowForm::gray}) {
      if (opaqueRowsAreFinal(surface.layout, form)) return {form, true};
    }
  }
  return {sourceForm(surface.layout, filtered), false};
}

}  // namespace cg
