// The operands of the six bitmap opcodes, and of pixel patterns: which pixels, where they go, how the rows
// are stored.
#pragma once

#include <array>

#include "media/codecs/pict/geometry.h"
#include "media/codecs/pict/pixel.h"

namespace codecs::pict {

struct PixelMap {
  bool isBitmap = true;  // one bit a pixel, without colours
  uint32_t rowBytes = 0;
  Box bounds;
  int packType = 0;
  int pixelSize = 1;  // 1, 2, 4, 8 are indexed, 16 and 32 direct
  int planes = 1;     // 3, or 4 with alpha first
  double hRes = 0;
  double vRes = 0;

  bool isIndexed() const noexcept { return pixelSize <= 8; }
  uint32_t rows() const noexcept { return static_cast<uint32_t>(std::max(bounds.height(), 0)); }
  uint32_t columns() const noexcept { return static_cast<uint32_t>(std::max(bounds.width(), 0)); }
};

using Palette = std::array<Pixel, 256>;

// Entries for pixel values below 2^pixelSize; values without an entry are black.
Palette parseColourTable(Bytes table, int pixelSize) noexcept;

// A colour table's size with its header.
Result<size_t> colourTableBytes(Bytes bytes) noexcept;

enum class RowCoding : uint8_t {
  raw,
  rawTriples,   // red, green, blue without the unused byte
  packedBytes,  // pixels as in raw rows
  packedWords,
  packedPlanes,  // each component's bytes together
};

struct PixelRecord {
  PixelMap map;
  Bytes colourTable;  // empty without
  Box source;
  Box destination;
  int mode = 0;
  Bytes mask;  // a region record; empty without
  RowCoding coding = RowCoding::raw;
  Bytes rows;
};

// Which of the operands an opcode has.
struct PixelOperands {
  bool hasBaseAddress = false;
  bool hasMask = false;
  bool isPublishedRaw = false;  // but possibly packed
};

// Reads a record and moves the reader behind it. `wordOpcodes` tells how the next opcode would look, where
// that decides how the rows must be read.
Fault readPixelRecord(ByteReader &reader, const PixelOperands &operands, bool wordOpcodes,
                      PixelRecord &record) noexcept;

// The part that pixel patterns have: map, colours, rows.
Fault readPatternPixels(ByteReader &reader, PixelRecord &record) noexcept;

}  // namespace codecs::pict
