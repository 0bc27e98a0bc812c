// The colour profile that a JPEG carries in pieces.
#pragma once

#include <vector>

#include "media/codecs/codec.h"
#include "media/codecs/jpeg_library.h"

namespace codecs {

// Puts the pieces among the saved markers together in the order of their numbers. A piece that comes
// twice counts once; empty when a piece is missing, there is none, or the sum is above the limit.
// May throw std::bad_alloc.
std::vector<uint8_t> joinProfile(jpeg_saved_marker_ptr markers, const CGImageDecodeLimits &limits);

inline constexpr int kProfileMarker = JPEG_APP0 + 2;

}  // namespace codecs
