// Which pixels a loader asks an importer for.
#pragma once

#include <CoreGraphics/CoreGraphics.h>

#include <cstddef>
#include <cstdint>
#include <optional>

#include "media/types.h"

namespace drav {

inline constexpr OSType kPICTSubtype = MEDIA_CODE('P', 'I', 'C', 'T');
inline constexpr OSType kPCTSubtype = MEDIA_CODE('P', 'C', 'T', ' ');
inline constexpr uint32_t kARGBWorld = 32;
inline constexpr uint32_t kGrayWorld = 40;

struct Layout {
  size_t bitsPerPixel;
  CGImageAlphaInfo alphaInfo;
  uint32_t pixelFormat;
};

// From the depth that the importer reports and its subtype; no value for a depth that nobody draws at.
// A depth of 40, though grey, is drawn as colour; only a depth of 8 gives grey pixels, and not for pictures:
// theirs is a palette, and counts as 24.
constexpr std::optional<Layout> layoutFor(int depth, OSType subtype) noexcept {
  constexpr Layout opaque{32, kCGImageAlphaNoneSkipFirst, kARGBWorld};
  switch (depth) {
    case 40:
    case 24:
      return opaque;
    case 8:
      return subtype == kPICTSubtype ? opaque : Layout{8, kCGImageAlphaNone, kGrayWorld};
    case 32:
      if (subtype == kPICTSubtype) return opaque;
      return Layout{32, subtype == kPCTSubtype ? kCGImageAlphaFirst : kCGImageAlphaPremultipliedFirst,
                    kARGBWorld};
    default:
      return std::nullopt;
  }
}

}  // namespace drav
