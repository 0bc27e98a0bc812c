// TGA.
#pragma once

#include "media/codecs/codec.h"

namespace codecs {

// The format has no mark at its start: a header has to make sense in every field, or the mark that newer
// files end with has to be there.
int scoreTga(Bytes file) noexcept;

// Palettes, colours of 15, 16, 24 and 32 bits, grey, with and without runs, from any of the four corners.
// Alpha is read where the header counts bits for it, or where the extension says what it is for.
Result<DecodedImage> decodeTga(Bytes file, const CGImageDecodeLimits &limits) noexcept;

}  // namespace codecs
