#include "media/codecs/pict/pixel_rows.h"

#include "media/codecs/pict/packbits.h"

namespace codecs::pict {
namespace {

constexpr uint32_t kLongestByteCount = 250;

// Five bits to eight: white stays white.
constexpr uint8_t widen(unsigned fiveBits) noexcept {
  return static_cast<uint8_t>(fiveBits << 3 | fiveBits >> 2);
}

}  // namespace

PixelRows::PixelRows(const PixelRecord &record, BitColours bits)
    : map_(record.map), coding_(record.coding), rows_(record.rows) {
  if (map_.isBitmap) {
    palette_.fill(kBlack);
    palette_[0] = bits.off;
    palette_[1] = bits.on;
  } else if (map_.isIndexed()) {
    palette_ = parseColourTable(record.colourTable, map_.pixelSize);
  }
  columns_ = columnsThere();
  unpacked_.resize(unpackedRowBytes());
  expand_ = expandFunction();
}

// Rows can be shorter than the bounds claim.
size_t PixelRows::columnsThere() const noexcept {
  size_t held = size_t{map_.rowBytes} * 8 / static_cast<size_t>(map_.pixelSize);
  if (coding_ == RowCoding::rawTriples) held = map_.columns();
  if (coding_ == RowCoding::packedPlanes) held = map_.rowBytes / 4;
  return std::min<size_t>(held, map_.columns());
}

size_t PixelRows::unpackedRowBytes() const noexcept {
  switch (coding_) {
    case RowCoding::raw:
    case RowCoding::rawTriples:
      return 0;
    case RowCoding::packedBytes:
    case RowCoding::packedWords:
      return map_.rowBytes;
    case RowCoding::packedPlanes:
      return static_cast<size_t>(map_.planes) * (map_.rowBytes / 4);
  }
  return 0;
}

PixelRows::Expand PixelRows::expandFunction() const noexcept {
  if (coding_ == RowCoding::rawTriples) return expandTriples;
  if (coding_ == RowCoding::packedPlanes) return expandPlanes;
  switch (map_.pixelSize) {
    case 1:
      return expandIndexed<1>;
    case 2:
      return expandIndexed<2>;
    case 4:
      return expandIndexed<4>;
    case 8:
      return expandIndexed<8>;
    case 16:
      return expand16;
    default:
      return expand32;
  }
}

Bytes PixelRows::nextRow() noexcept {
  if (coding_ == RowCoding::raw) return rows_.take(map_.rowBytes);
  if (coding_ == RowCoding::rawTriples) return rows_.take(uint64_t{3} * map_.columns());
  return rows_.take(map_.rowBytes > kLongestByteCount ? rows_.u16() : rows_.u8());
}

void PixelRows::skip() noexcept { nextRow(); }

// Lengths were checked when the record was read; a row that is missing all the same stays black.
void PixelRows::read(Pixel *out) noexcept {
  Bytes row = nextRow();
  size_t count = rows_.failed() ? 0 : columns_;
  if (!unpacked_.empty()) {
    (coding_ == RowCoding::packedWords ? unpackWords : unpackBytes)(row, unpacked_);
    row = unpacked_;
  }
  if (count) expand_(*this, row.data(), out, count);
  std::fill(out + count, out + map_.columns(), kBlack);
}

template <int bits>
void PixelRows::expandIndexed(const PixelRows &rows, const uint8_t *from, Pixel *out, size_t count) noexcept {
  constexpr size_t perByte = 8 / bits;
  constexpr unsigned mask = (1u << bits) - 1;
  const Pixel *const palette = rows.palette_.data();
  size_t i = 0;
  for (; i + perByte <= count; i += perByte, ++from) {
    for (size_t k = 0; k < perByte; ++k) out[i + k] = palette[*from >> (8 - bits * (k + 1)) & mask];
  }
  for (size_t k = 0; i < count; ++i, ++k) out[i] = palette[*from >> (8 - bits * (k + 1)) & mask];
}

void PixelRows::expand16(const PixelRows &, const uint8_t *from, Pixel *out, size_t count) noexcept {
  for (size_t i = 0; i < count; ++i, from += 2) {
    const unsigned value = static_cast<unsigned>(from[0] << 8 | from[1]);
    out[i] = opaque(widen(value >> 10 & 31), widen(value >> 5 & 31), widen(value & 31));
  }
}

void PixelRows::expand32(const PixelRows &rows, const uint8_t *from, Pixel *out, size_t count) noexcept {
  const Pixel filled = rows.map_.planes == 4 ? 0 : kAlphaBits;
  for (size_t i = 0; i < count; ++i, from += 4) {
    out[i] = pixelOf(from[0], from[1], from[2], from[3]) | filled;
  }
}

void PixelRows::expandTriples(const PixelRows &, const uint8_t *from, Pixel *out, size_t count) noexcept {
  for (size_t i = 0; i < count; ++i, from += 3) out[i] = opaque(from[0], from[1], from[2]);
}

void PixelRows::expandPlanes(const PixelRows &rows, const uint8_t *from, Pixel *out, size_t count) noexcept {
  const size_t plane = rows.map_.rowBytes / 4;
  if (rows.map_.planes == 4) {
    const uint8_t *const alpha = from, *const red = alpha + plane, *const green = red + plane,
                         *const blue = green + plane;
    for (size_t i = 0; i < count; ++i) out[i] = pixelOf(alpha[i], red[i], green[i], blue[i]);
    return;
  }
  const uint8_t *const red = from, *const green = red + plane, *const blue = green + plane;
  for (size_t i = 0; i < count; ++i) out[i] = opaque(red[i], green[i], blue[i]);
}

}  // namespace codecs::pict
