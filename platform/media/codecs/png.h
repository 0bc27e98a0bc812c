// The two halves of the PNG codec.
#pragma once

#include "media/codecs/codec.h"

namespace codecs {

int scorePng(Bytes head) noexcept;

// 1 to 16 bits a sample in every colour type, interlaced or not; 16 bits are rounded to 8; grey
// with alpha becomes colour with alpha. Gamma chunks are ignored.
Result<DecodedImage> decodePng(Bytes file, const CGImageDecodeLimits &limits) noexcept;

// 8 bits a sample, not interlaced.
Fault encodePng(const EncodeSource &source, std::vector<uint8_t> &file) noexcept;

}  // namespace codecs
