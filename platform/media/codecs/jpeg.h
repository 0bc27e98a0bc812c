// The two halves of the JPEG codec.
#pragma once

#include "media/codecs/codec.h"

namespace codecs {

int scoreJpeg(Bytes head) noexcept;

// Baseline, extended and progressive files of 8 bits a sample. Grey stays grey, YCbCr and RGB become
// colour; CMYK and YCCK become sRGB colour, through the embedded profile where there is one. The
// orientation that a camera notes in its own data is not applied: pixels come in the file's order.
// A file that ends early, or whose pixel data does not decode, fails; stray bytes between markers
// and odd headers do not.
Result<DecodedImage> decodeJpeg(Bytes file, const CGImageDecodeLimits &limits) noexcept;

// Quality 90 with halved chroma and Huffman tables made for the image. Alpha is not written.
Fault encodeJpeg(const EncodeSource &source, std::vector<uint8_t> &file) noexcept;

}  // namespace codecs
