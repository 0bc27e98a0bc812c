// BMP.
#pragma once

#include "media/codecs/codec.h"

namespace codecs {

int scoreBmp(Bytes head) noexcept;

// 1, 2, 4, 8, 16, 24 and 32 bits a pixel with the header of any version, of OS/2 too; masks; runs of 4, 8
// and 24 bits; either way up. Alpha is read where a mask says which bits it has, and nowhere else.
Result<DecodedImage> decodeBmp(Bytes file, const CGImageDecodeLimits &limits) noexcept;

}  // namespace codecs
