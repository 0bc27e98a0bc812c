#include "graphics/draw.h"

namespace cg {
void drawScaled(const Surface &surface, CGImageRef image, const Matrix &map, const PixelRect &clip,
                CGInterpolationQuality quality) {
  drawMapped(surface, image, map, clip, quality);
}
}  // namespace cg
