#include "path/pixel_grid.h"

namespace drav::path {

bool IsPixelFloating(const ImageInfo &info, PixelIndex index) noexcept {
  const Pixel pixel = PixelForIndex(info, index);
  for (int identifier = 0; identifier < kDirections; ++identifier) {
    Pixel neighbour{};
    if (!IsValidPixel(info, pixel, identifier, &neighbour)) return false;
    if (IsPixelOpaque(info, neighbour.index)) return false;
  }
  return true;
}

ProcessingDirection DirectionForIdentifier(int identifier) noexcept {
  switch (identifier % kDirections) {
    case 0:
    case 4:
      return ProcessingDirectionHorizontal;
    case 1:
    case 5:
      return ProcessingDirectionFalling;
    case 2:
    case 6:
      return ProcessingDirectionVertical;
    case 3:
    case 7:
      return ProcessingDirectionRising;
    default:
      return ProcessingDirectionNone;
  }
}

}  // namespace drav::path
