#include "graphics/route.h"

#include <new>

namespace cg {

Route routeFor(const Surface &surface, CGImageRef image, bool filtered) noexcept {
  if (!imageHasAlpha(image)) {
    for (RowForm form : {RowForm::argbPremultiplied, RowForm::rgbaStraight, RowForm::gray}) {
      if (opaqueRowsAreFinal(surface.layout, form)) return {form, true};
    }
  }
  return {sourceForm(surface.layout, filtered), false};
}

std::unique_ptr<RowReader> openRows(const Surface &surface, CGImageRef image, RowForm form) {
  auto reader = RowReader::make(image, surface.space, form);
  if (!reader) throw std::bad_alloc();
  return reader;
}

}  // namespace cg
