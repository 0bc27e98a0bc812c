#include "media/codecs/pict/pixel_pattern.h"

#include "media/codecs/pict/pixel_rows.h"

namespace codecs::pict {
namespace {

constexpr uint16_t kOneColour = 2;
constexpr size_t kBitsBytes = 8;

// Larger tiles than any screen had are refused rather than kept.
constexpr uint64_t kMostTilePixels = uint64_t{1} << 22;

Fault readTile(ByteReader &reader, Budget &budget, Pattern &pattern) {
  PixelRecord record;
  if (const Fault fault = readPatternPixels(reader, record); fault != Fault::none) return fault;
  const uint64_t pixels = uint64_t{record.map.columns()} * record.map.rows();
  if (pixels == 0) return Fault::none;
  if (pixels > kMostTilePixels || !budget.work(pixels)) return Fault::tooLarge;
  pattern.tileWidth = record.map.columns();
  pattern.tileHeight = record.map.rows();
  pattern.tile.resize(static_cast<size_t>(pixels));
  PixelRows rows(record, {kBlack, kWhite});
  for (uint32_t y = 0; y < pattern.tileHeight; ++y)
    rows.read(pattern.tile.data() + size_t{y} * pattern.tileWidth);
  return Fault::none;
}

}  // namespace

Result<size_t> pixelPatternBytes(Bytes bytes) noexcept {
  ByteReader reader(bytes);
  const uint16_t type = reader.u16();
  reader.skip(kBitsBytes);
  if (type == kOneColour) {
    reader.skip(6);
  } else if (!reader.failed()) {
    PixelRecord record;
    if (const Fault fault = readPatternPixels(reader, record); fault != Fault::none) return fault;
  }
  if (reader.failed()) return Fault::truncated;
  return reader.at();
}

Fault parsePixelPattern(Bytes record, Budget &budget, Pattern &pattern) {
  ByteReader reader(record);
  const uint16_t type = reader.u16();
  pattern = Pattern::ofBits(reader.take(kBitsBytes));
  if (type != kOneColour) return readTile(reader, budget, pattern);
  pattern.tileWidth = pattern.tileHeight = 1;
  pattern.tile.assign(1, readColour(reader));
  return Fault::none;
}

}  // namespace codecs::pict
