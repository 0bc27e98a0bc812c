// Images inside a picture that are compressed in a format of their own, with the description that goes
// before their data.
#pragma once

#include "media/codecs/pict/geometry.h"
#include "media/codecs/pict/pixel_record.h"

namespace codecs::pict {

struct ImageDescription {
  uint32_t codec = 0;  // a four-character code
  uint32_t width = 0;
  uint32_t height = 0;
  int depth = 0;  // 33 to 40: grey of depth - 32 bits, 0 white
  int paletteId = -1;
  Bytes colourTable;  // empty without

  bool isGrey() const noexcept { return depth > 32 && depth <= 40; }
  int bits() const noexcept { return isGrey() ? depth - 32 : depth; }
};

// Reads a description and moves the reader behind it, extensions included.
Fault readImageDescription(ByteReader &reader, ImageDescription &description) noexcept;

// The colours of indexed pixels: the table that comes along, a standard one, or greys.
Palette paletteOf(const ImageDescription &description) noexcept;

// Whether images of that format are read at all.
bool isReadCodec(uint32_t codec) noexcept;

// unsupported: a format, or a variant of one, that is not read.
Result<DecodedImage> decodeCompressed(const ImageDescription &description, Bytes data,
                                      const CGImageDecodeLimits &limits) noexcept;

// The operands of the compressed image opcode.
struct CompressedRecord {
  std::array<int32_t, 9> matrix{};
  Box source;
  int mode = 0;
  Bytes matte;  // an image description and its data; empty without
  Bytes mask;   // a region record; empty without
  ImageDescription description;
  Bytes data;

  // Where the source goes, in picture coordinates.
  Box destination() const noexcept;
};
Fault readCompressedRecord(Bytes operands, CompressedRecord &record) noexcept;

// The operands of the opcode that gives the next bitmap its alpha.
struct MatteRecord {
  Box destination;
  Bytes matte;
};
Fault readMatteRecord(Bytes operands, MatteRecord &record) noexcept;

}  // namespace codecs::pict
