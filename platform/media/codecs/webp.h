// WebP.
#pragma once

#include "media/codecs/codec.h"

namespace codecs {

int scoreWebp(Bytes head) noexcept;

// Lossy and lossless, with and without alpha; of an animation the first frame at its place on the canvas.
Result<DecodedImage> decodeWebp(Bytes file, const CGImageDecodeLimits &limits) noexcept;

}  // namespace codecs
