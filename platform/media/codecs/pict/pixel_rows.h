// The rows of a pixel record, one after the other, as canvas pixels.
#pragma once

#include <vector>

#include "media/codecs/pict/pixel_record.h"

namespace codecs::pict {

// What the bits of a bitmap become.
struct BitColours {
  Pixel on;
  Pixel off;
};

class PixelRows {
 public:
  // Borrows the record's rows. A row narrower than the map's bounds is filled up with black.
  PixelRows(const PixelRecord &record, BitColours bits);

  // Writes the next row, map.columns() pixels; pixels are opaque but for four planes.
  void read(Pixel *out) noexcept;
  void skip() noexcept;

 private:
  using Expand = void (*)(const PixelRows &, const uint8_t *from, Pixel *out, size_t count) noexcept;

  template <int bits>
  static void expandIndexed(const PixelRows &rows, const uint8_t *from, Pixel *out, size_t count) noexcept;
  static void expand16(const PixelRows &rows, const uint8_t *from, Pixel *out, size_t count) noexcept;
  static void expand32(const PixelRows &rows, const uint8_t *from, Pixel *out, size_t count) noexcept;
  static void expandTriples(const PixelRows &rows, const uint8_t *from, Pixel *out, size_t count) noexcept;
  static void expandPlanes(const PixelRows &rows, const uint8_t *from, Pixel *out, size_t count) noexcept;

  Expand expandFunction() const noexcept;
  size_t unpackedRowBytes() const noexcept;
  size_t columnsThere() const noexcept;
  Bytes nextRow() noexcept;

  const PixelMap map_;
  const RowCoding coding_;
  ByteReader rows_;
  Palette palette_;
  std::vector<uint8_t> unpacked_;
  size_t columns_;  // that the rows hold
  Expand expand_;
};

// Red, green and blue of 16 bits each.
inline Pixel readColour(ByteReader &reader) noexcept {
  const uint16_t red = reader.u16(), green = reader.u16(), blue = reader.u16();
  return opaque(static_cast<uint8_t>(red >> 8), static_cast<uint8_t>(green >> 8),
                static_cast<uint8_t>(blue >> 8));
}

}  // namespace codecs::pict
