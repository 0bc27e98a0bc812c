// The ways in which an image is drawn. Each takes the map from image to surface and the pixels that may
// change, and throws std::bad_alloc with the surface as it was if memory runs out.
#pragma once

#include <CoreGraphics/CoreGraphics.h>

#include "graphics/pixel_rect.h"
#include "graphics/placement.h"
#include "graphics/surface.h"

namespace cg {

// Where pixels do not fall on pixels.
enum class Sampling : uint8_t {
  nearest,  // the pixel that the centre falls into
  smooth,   // bilinear, widened when reducing
  sharp,    // Lanczos-3 where rows stay rows, elsewhere as smooth
};

// Pixel onto pixel, upright or flipped.
void drawUpright(const Surface &surface, CGImageRef image, const ExactPlacement &place,
                 const PixelRect &clip);

// Pixel onto pixel, with rows falling on columns.
void drawTurned(const Surface &surface, CGImageRef image, const ExactPlacement &place, const PixelRect &clip);

// At another size. The map is axis-aligned.
void drawScaled(const Surface &surface, CGImageRef image, const Matrix &map, const PixelRect &clip,
                Sampling sampling);

// Through any map that can be inverted.
void drawMapped(const Surface &surface, CGImageRef image, const Matrix &map, const PixelRect &clip,
                Sampling sampling);

}  // namespace cg
