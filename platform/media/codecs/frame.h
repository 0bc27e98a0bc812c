// The first thing every decoder does with the size that a header claims.
#pragma once

#include "media/codecs/codec.h"

namespace codecs {

// Sets up `image` for width x height pixels of that layout with a zeroed buffer, once the size has
// passed the limits. REQUIRES: the caller has checked that the file is long enough to hold it.
Fault makeFrame(DecodedImage &image, uint64_t width, uint64_t height, PixelLayout layout,
                const CGImageDecodeLimits &limits) noexcept;

// Whether a frame of that size is within the limits; `bytes` is what its pixels take.
Fault checkFrame(uint64_t width, uint64_t height, size_t pixelBytes,
                 const CGImageDecodeLimits &limits) noexcept;

// Formats in which pixels may be left blank say little by their length. Small images are believed; one that
// is large has to come from as many bytes as it takes at least to fill it.
Fault checkPromise(uint64_t pixels, uint64_t fileBytes, uint64_t mostPixelsPerByte) noexcept;

}  // namespace codecs
