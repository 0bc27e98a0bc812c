// The header of a TGA, and what newer files say of themselves at their end.
#pragma once

#include "media/codecs/codec.h"

namespace codecs {

enum class TgaKind : uint8_t { indexed = 1, colour = 2, grey = 3 };
enum class TgaAlpha : uint8_t { none, straight, premultiplied };

struct TgaHeader {
  TgaKind kind = TgaKind::colour;
  bool runs = false;
  uint32_t width = 0;
  uint32_t height = 0;
  unsigned bits = 0;       // of a pixel: 8, 15, 16, 24 or 32
  unsigned alphaBits = 0;  // of a pixel, or of an entry of the palette, as the header counts them
  bool rightToLeft = false;
  bool topDown = false;
  unsigned firstEntry = 0;  // the number of the palette's first entry
  unsigned entries = 0;
  unsigned entryBits = 0;  // 0 without a palette
  size_t paletteAt = 0;    // in the file
  size_t pixelsAt = 0;

  size_t pixelBytes() const noexcept { return (bits + 7) / 8; }
  size_t entryBytes() const noexcept { return (entryBits + 7) / 8; }
};

// The first 18 bytes. `unsupported` where a field holds something that there is not.
Result<TgaHeader> readTgaHeader(Bytes file) noexcept;

// Whether also the fields that readers have no use for are as they should be.
bool isStrictTgaHeader(Bytes file) noexcept;

// The mark of newer files, in the last 26 bytes.
bool hasTgaFooter(Bytes file) noexcept;

// What alpha is for: what the extension says if there is one, else straight where bits are counted for it.
TgaAlpha tgaAlpha(const TgaHeader &header, Bytes file) noexcept;

}  // namespace codecs
