// GIF.
#pragma once

#include "media/codecs/codec.h"

namespace codecs {

int scoreGif(Bytes head) noexcept;

// The first frame at its place on the canvas, interlaced or not. What the frame leaves free is transparent.
Result<DecodedImage> decodeGif(Bytes file, const CGImageDecodeLimits &limits) noexcept;

}  // namespace codecs
