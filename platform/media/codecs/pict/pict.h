// The two halves of the PICT codec.
#pragma once

#include "media/codecs/codec.h"

namespace codecs {

// As far as coordinates reach, in pixels.
inline constexpr uint32_t kMostPictSide = 32767;

int scorePict(Bytes head) noexcept;

// Versions 1 and 2, with or without the 512 bytes that files have in front. The canvas has one pixel for
// each unit of the drawing rectangle and starts white. A picture that is damaged or cut off anywhere
// before its end fails; only the end mark may be missing.
Result<DecodedImage> decodePict(Bytes file, const CGImageDecodeLimits &limits) noexcept;

// The same, drawn at that size in pixels: lines, shapes and letters are as fine there as they can be.
Result<DecodedImage> decodePictAtSize(Bytes file, uint32_t width, uint32_t height,
                                      const CGImageDecodeLimits &limits) noexcept;

// A version 2 picture of one image in direct pixels, three components or, with alpha, four, behind 512
// blank bytes. unsupported above kMostPictSide.
Fault encodePict(const EncodeSource &source, std::vector<uint8_t> &file) noexcept;

}  // namespace codecs
