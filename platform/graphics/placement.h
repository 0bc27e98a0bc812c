// Where an image falls on a surface.
#pragma once

#include <CoreGraphics/CGGeometry.h>

#include <cstddef>
#include <optional>

#include "graphics/matrix.h"
#include "graphics/surface.h"

namespace cg {

// From image space (pixels, y down from the top row) to surface space (likewise), with the image filling a
// rectangle of user space. No value where that is no map at all.
std::optional<Matrix> placement(size_t imageWidth, size_t imageHeight, CGRect rect,
                                const Matrix &userToDevice, size_t surfaceHeight) noexcept;

// A map that puts each pixel onto just one pixel: whole steps, maybe turned or flipped.
struct ExactPlacement {
  int xx, xy, yx, yy;  // surface x = xx * u + xy * v + x, surface y = yx * u + yy * v + y
  int64_t x, y;
};
std::optional<ExactPlacement> exactPlacement(const Matrix &map, size_t imageWidth,
                                             size_t imageHeight) noexcept;

}  // namespace cg
