// Which pixels a walk may step on, found for the whole image at once.
#pragma once

#include "path/pixel_grid.h"

namespace drav::path {

// Sets the flag of every pixel that is not a boundary pixel and clears the others. A boundary pixel belongs
// to the region and is not floating. To a walk, a pixel that it has been at and one that it may not step on
// are the same, so one flag serves for both.
//
// visited   width * height flags.
// Throws std::bad_alloc.
void MarkAllButBoundary(const ImageInfo &info, bool *visited);

}  // namespace drav::path
