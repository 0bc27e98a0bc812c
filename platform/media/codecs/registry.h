// The table of file formats.
#pragma once

#include "media/codecs/codec.h"

namespace codecs {

extern const CodecRecord kPngCodec;
extern const CodecRecord kJpegCodec;
extern const CodecRecord kPictCodec;
extern const CodecRecord kTiffCodec;
extern const CodecRecord kGifCodec;
extern const CodecRecord kBmpCodec;
extern const CodecRecord kTgaCodec;
extern const CodecRecord kWebpCodec;

// Every codec, in the order in which equal scores are decided.
std::span<const CodecRecord *const> all() noexcept;

// The codec whose score for this file is highest; null when none claims it.
const CodecRecord *recognise(Bytes file) noexcept;

// The codec that an importer (exporter) of that four-character code stands for; null for none.
const CodecRecord *forImporter(uint32_t code) noexcept;
const CodecRecord *forExporter(uint32_t code) noexcept;

// Recognises and decodes.
Result<DecodedImage> decodeAny(Bytes file, const CGImageDecodeLimits &limits) noexcept;

}  // namespace codecs
