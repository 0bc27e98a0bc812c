#include "media/codecs/pict/pixel_record.h"

#include "media/codecs/pict/opcode.h"
#include "media/codecs/pict/packbits.h"
#include "media/codecs/pict/region_data.h"

namespace codecs::pict {
namespace {

constexpr uint16_t kPixMapBit = 0x8000;
constexpr uint16_t kRowBytesBits = 0x3FFF;
constexpr uint32_t kShortRow = 8;            // shorter rows are never packed
constexpr uint32_t kLongestByteCount = 250;  // longer rows have counts of two bytes
constexpr uint16_t kEntriesInOrder = 0x8000;

double fixedToDouble(int32_t fixed) noexcept { return fixed / 65536.0; }

bool isPixelSize(int size) noexcept {
  return size == 1 || size == 2 || size == 4 || size == 8 || size == 16 || size == 32;
}

Fault readPixelMap(ByteReader &reader, bool alwaysPixMap, PixelMap &map) noexcept {
  const uint16_t rowBytes = reader.u16();
  map.isBitmap = !alwaysPixMap && !(rowBytes & kPixMapBit);
  map.rowBytes = rowBytes & kRowBytesBits;
  map.bounds = readBox(reader);
  if (map.isBitmap) return reader.failed() ? Fault::truncated : Fault::none;
  reader.skip(2);
  map.packType = reader.u16();
  reader.skip(4);
  map.hRes = fixedToDouble(reader.i32());
  map.vRes = fixedToDouble(reader.i32());
  reader.skip(2);
  map.pixelSize = reader.u16();
  map.planes = map.pixelSize <= 8 ? 1 : reader.u16() == 4 ? 4 : 3;
  reader.skip(map.pixelSize <= 8 ? 16 : 14);
  if (reader.failed()) return Fault::truncated;
  return isPixelSize(map.pixelSize) ? Fault::none : Fault::damaged;
}

Fault readColourTable(ByteReader &reader, Bytes &table) noexcept {
  const auto size = colourTableBytes(reader.rest());
  if (!size) return size.fault;
  table = reader.take(size.value);
  return Fault::none;
}

RowCoding codingOf(const PixelMap &map) noexcept {
  if (map.rowBytes < kShortRow) return RowCoding::raw;
  if (map.isIndexed()) return RowCoding::packedBytes;
  if (map.packType == 1) return RowCoding::raw;
  if (map.packType == 2) return map.pixelSize == 32 ? RowCoding::rawTriples : RowCoding::raw;
  if (map.pixelSize == 16) return RowCoding::packedWords;
  return map.packType == 3 ? RowCoding::packedBytes : RowCoding::packedPlanes;
}

uint64_t rawRowBytes(const PixelMap &map, RowCoding coding) noexcept {
  return coding == RowCoding::rawTriples ? uint64_t{3} * map.columns() : map.rowBytes;
}

bool isPacked(RowCoding coding) noexcept {
  return coding != RowCoding::raw && coding != RowCoding::rawTriples;
}

bool skipPackedRows(ByteReader &reader, const PixelMap &map) noexcept {
  const bool wide = map.rowBytes > kLongestByteCount;
  for (uint32_t y = 0; y < map.rows() && !reader.failed(); ++y)
    reader.skip(wide ? reader.u16() : reader.u8());
  return !reader.failed();
}

// Whether every row unpacks to exactly three or four planes, as rows do that are packed indeed.
bool looksPacked(ByteReader reader, const PixelMap &map) noexcept {
  const size_t plane = map.rowBytes / 4;
  if (map.columns() == 0) return false;
  for (uint32_t y = 0; y < map.rows(); ++y) {
    const Bytes row = reader.take(map.rowBytes > kLongestByteCount ? reader.u16() : reader.u8());
    if (reader.failed()) return false;
    const size_t size = unpackedBytes(row, 4 * plane);
    if (size != 3 * plane && size != 4 * plane) return false;
  }
  return true;
}

bool startsKnownOpcode(ByteReader reader, size_t recordStart, bool wordOpcodes) noexcept {
  if (!wordOpcodes) return reader.left() == 0 || isKnownOpcode(reader.u8());
  if ((reader.at() - recordStart) % 2) reader.skip(1);
  return reader.left() < 2 || isKnownOpcode(reader.u16());
}

// The opcodes that are published as raw; some systems are said to read them packed when rows are long.
RowCoding guessBitsCoding(const ByteReader &reader, size_t recordStart, const PixelMap &map,
                          bool wordOpcodes) noexcept {
  if (map.rowBytes < kShortRow) return RowCoding::raw;
  const auto leadsOn = [&](ByteReader after, bool there) {
    return there && startsKnownOpcode(after, recordStart, wordOpcodes);
  };
  ByteReader raw = reader, packed = reader;
  raw.skip(uint64_t{map.rowBytes} * map.rows());
  if (leadsOn(raw, !raw.failed())) return RowCoding::raw;
  const bool packedFits = skipPackedRows(packed, map);
  if (leadsOn(packed, packedFits)) return codingOf(map);
  return raw.failed() && packedFits ? codingOf(map) : RowCoding::raw;
}

Fault readRows(ByteReader &reader, PixelRecord &record) noexcept {
  ByteReader walk = reader;
  if (isPacked(record.coding)) {
    skipPackedRows(walk, record.map);
  } else {
    walk.skip(rawRowBytes(record.map, record.coding) * record.map.rows());
  }
  if (walk.failed()) return Fault::truncated;
  record.rows = reader.take(walk.at() - reader.at());
  return Fault::none;
}

void settleDirectCoding(const ByteReader &reader, PixelRecord &record) noexcept {
  const PixelMap &map = record.map;
  record.coding = codingOf(map);
  if (map.pixelSize == 32 && map.packType == 0 && isPacked(record.coding) && !looksPacked(reader, map)) {
    record.coding = RowCoding::rawTriples;
  }
}

Fault readMask(ByteReader &reader, Bytes &mask) noexcept {
  const auto size = regionBytes(reader.rest());
  if (!size) return size.fault;
  mask = reader.take(size.value);
  return Fault::none;
}

}  // namespace

Result<size_t> colourTableBytes(Bytes bytes) noexcept {
  if (bytes.size() < 8) return Fault::truncated;
  const size_t entries = (readBig16(bytes, 6) + size_t{1}) & 0xFFFF;  // FFFF stands for none
  size_t size = 8 + 8 * entries;
  if (size > bytes.size()) return Fault::truncated;
  return size;
}

Palette parseColourTable(Bytes table, int pixelSize) noexcept {
  Palette palette;
  palette.fill(kBlack);
  ByteReader reader(table);
  reader.skip(4);
  const bool inOrder = (reader.u16() & kEntriesInOrder) != 0;
  reader.skip(2);
  const size_t values = size_t{1} << pixelSize;
  for (size_t i = 0; reader.left() >= 8; ++i) {
    const size_t value = inOrder ? i : reader.u16();
    if (inOrder) reader.skip(2);
    const uint16_t red = reader.u16(), green = reader.u16(), blue = reader.u16();
    if (value >= values || i >= values) continue;
    palette[value] = opaque(static_cast<uint8_t>(red >> 8), static_cast<uint8_t>(green >> 8),
                            static_cast<uint8_t>(blue >> 8));
  }
  return palette;
}

Fault readPixelRecord(ByteReader &reader, const PixelOperands &operands, bool wordOpcodes,
                      PixelRecord &record) noexcept {
  const size_t start = reader.at();
  if (operands.hasBaseAddress) reader.skip(4);
  Fault fault = readPixelMap(reader, operands.hasBaseAddress, record.map);
  if (fault != Fault::none) return fault;
  if (operands.hasBaseAddress ? record.map.isIndexed() : !record.map.isBitmap && !record.map.isIndexed())
    return Fault::damaged;
  if (!record.map.isBitmap && !operands.hasBaseAddress) fault = readColourTable(reader, record.colourTable);
  if (fault != Fault::none) return fault;
  record.source = readBox(reader);
  record.destination = readBox(reader);
  record.mode = reader.u16();
  if (reader.failed()) return Fault::truncated;
  if (operands.hasMask) fault = readMask(reader, record.mask);
  if (fault != Fault::none) return fault;
  if (operands.isPublishedRaw) {
    record.coding = guessBitsCoding(reader, start, record.map, wordOpcodes);
  } else {
    settleDirectCoding(reader, record);
  }
  return readRows(reader, record);
}

Fault readPatternPixels(ByteReader &reader, PixelRecord &record) noexcept {
  Fault fault = readPixelMap(reader, true, record.map);
  if (fault == Fault::none && record.map.isIndexed()) fault = readColourTable(reader, record.colourTable);
  if (fault != Fault::none) return fault;
  settleDirectCoding(reader, record);
  return readRows(reader, record);
}

}  // namespace codecs::pict
