// TIFF.
#pragma once

#include "media/codecs/codec.h"

namespace codecs {

int scoreTiff(Bytes head) noexcept;

// The first page: strips and tiles of 1 to 16 bits a sample in either byte order, samples together or in
// planes; grey, RGB, palettes, CMYK and YCbCr; uncompressed, CCITT, LZW, deflate, PackBits,
// JPEG and Zstandard. The orientation is applied; premultiplied colours become straight.
Result<DecodedImage> decodeTiff(Bytes file, const CGImageDecodeLimits &limits) noexcept;

// 8 bits a sample in strips, deflate with horizontal prediction; the bytes as they come, their alpha
// tagged associated or unassociated to match.
Fault encodeTiff(const EncodeSource &source, std::vector<uint8_t> &file) noexcept;

}  // namespace codecs
