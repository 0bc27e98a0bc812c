// Contour following: walks along the boundary of the region, recorded as subpaths.
#pragma once

#include "path/path_elements.h"
#include "path/pixel_grid.h"

namespace drav::path {

// Asserts that the pixel just stepped to lies on that side of the current run's first pixel which the
// direction of the step implies.
void DirectionSanityCheck(int identifier, const Pixel &segmentStart, const Pixel &lastValid);

// One walk along a boundary from segmentStart, extending the current subpath by a vertex wherever the walk
// changes its direction, until it comes back next to startIndex or is stuck.
//
// visited      set for pixels not to be stepped on: those of earlier walks and all but boundary pixels.
// direction    of the run so far; none at the start.
// identifier   the first neighbour to probe; the sweep goes on clockwise from there.
void FollowSubpath(SubpathList *list, const ImageInfo &info, bool *visited, PixelIndex startIndex,
                   PixelIndex segmentStart, ProcessingDirection direction, int identifier,
                   TextOutput &output);

// Walks from every boundary pixel that no earlier walk came to, in row order.
void FindSubpaths(SubpathList *list, const ImageInfo &info, bool *visited, TextOutput &output);

// The whole trace: the final subpaths, with the commentary.
//
// visited   width * height flags, of any content.
// Throws std::bad_alloc.
SubpathList TraceSubpaths(const ImageInfo &info, bool *visited, TextOutput &output);

}  // namespace drav::path
