// Drawing an image: which way fits the map.
#include "graphics/context.h"
#include "graphics/draw.h"

#include "foundation/guard.h"

namespace {

cg::Sampling samplingFor(CGInterpolationQuality quality, CGImageRef image) {
  if (quality == kCGInterpolationNone || !CGImageGetShouldInterpolate(image)) return cg::Sampling::nearest;
  return quality == kCGInterpolationHigh ? cg::Sampling::sharp : cg::Sampling::smooth;
}

}  // namespace

bool CGContextTryDrawImage(CGContextRef context, CGRect rect, CGImageRef image) {
  if (!context || !image) return false;
  const cg::Surface &surface = context->surface;
  const cg::GraphicsState &state = context->state();
  const size_t width = CGImageGetWidth(image);
  const size_t height = CGImageGetHeight(image);
  const auto map = cg::placement(width, height, rect, state.matrix, surface.height);
  if (!map || state.clip.isEmpty()) return true;
  return cf::guarded([&] {
    if (const auto exact = cg::exactPlacement(*map, width, height)) {
      (exact->xx != 0 ? cg::drawUpright : cg::drawTurned)(surface, image, *exact, state.clip);
    } else {
      const auto draw = map->isAxisAligned() ? cg::drawScaled : cg::drawMapped;
      draw(surface, image, *map, state.clip, samplingFor(state.quality, image));
    }
    return true;
  });
}

void CGContextDrawImage(CGContextRef context, CGRect rect, CGImageRef image) {
  static_cast<void>(CGContextTryDrawImage(context, rect, image));
}
