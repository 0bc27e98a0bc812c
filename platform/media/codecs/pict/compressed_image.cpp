#include "media/codecs/pict/compressed_image.h"

#include <array>
#include <cmath>

#include "media/codecs/pict/region_data.h"
#include "media/codecs/pict/standard_palettes.h"
#include "media/codecs/pict/video_codecs.h"
#include "media/codecs/registry.h"

namespace codecs::pict {
namespace {

constexpr size_t kDescriptionBytes = 86;
constexpr int kOwnTable = 0;

// Formats that are whole files, by the code of the importer that reads such files.
struct FileFormat {
  uint32_t codec;
  uint32_t importer;
};
constexpr std::array kFileFormats = std::to_array<FileFormat>({
    {fourCharacterCode("jpeg"), fourCharacterCode("JPEG")},
    {fourCharacterCode("png "), fourCharacterCode("PNGf")},
    {fourCharacterCode("tiff"), fourCharacterCode("TIFF")},
    {fourCharacterCode("gif "), fourCharacterCode("GIFf")},
    {fourCharacterCode("tga "), fourCharacterCode("TPIC")},
});

// None where that format is not read.
const CodecRecord *fileCodec(uint32_t code) noexcept {
  const auto *found = std::ranges::find(kFileFormats, code, &FileFormat::codec);
  return found == kFileFormats.end() ? nullptr : forImporter(found->importer);
}

double fixedToDouble(int32_t fixed) noexcept { return fixed / 65536.0; }

Point mapped(const std::array<int32_t, 9> &matrix, Point point) noexcept {
  const auto place = [&](size_t h, size_t v, size_t shift) {
    const double at = fixedToDouble(matrix[h]) * point.h + fixedToDouble(matrix[v]) * point.v +
                      fixedToDouble(matrix[shift]);
    return keepNear(static_cast<int64_t>(std::llround(std::clamp(at, -1e9, 1e9))));
  };
  return {place(0, 3, 6), place(1, 4, 7)};
}

void readMatrix(ByteReader &reader, std::array<int32_t, 9> &matrix) noexcept {
  for (int32_t &number : matrix) number = reader.i32();
}

}  // namespace

Fault readImageDescription(ByteReader &reader, ImageDescription &description) noexcept {
  const size_t size = reader.rest().size() < 4 ? 0 : readBig32(reader.rest(), 0);
  if (size < kDescriptionBytes) return Fault::damaged;
  ByteReader fields(reader.take(size));
  if (reader.failed()) return Fault::truncated;
  fields.skip(4);
  description.codec = fields.u32();
  fields.skip(24);
  description.width = fields.u16();
  description.height = fields.u16();
  fields.skip(46);
  description.depth = fields.u16();
  description.paletteId = fields.i16();
  if (description.paletteId != kOwnTable) return Fault::none;
  const auto table = colourTableBytes(fields.rest());
  if (!table) return Fault::damaged;
  description.colourTable = fields.take(table.value);
  return Fault::none;
}

Palette paletteOf(const ImageDescription &description) noexcept {
  if (!description.colourTable.empty()) return parseColourTable(description.colourTable, description.bits());
  return standardPalette(description.paletteId > 0 ? description.paletteId : description.depth);
}

bool isReadCodec(uint32_t codec) noexcept { return fileCodec(codec) || isVideoCodec(codec); }

Result<DecodedImage> decodeCompressed(const ImageDescription &description, Bytes data,
                                      const CGImageDecodeLimits &limits) noexcept {
  if (const CodecRecord *codec = fileCodec(description.codec)) return codec->decode(data, limits);
  return decodeVideoFrame(description, data, limits);
}

Fault readCompressedRecord(Bytes operands, CompressedRecord &record) noexcept {
  ByteReader reader(operands);
  reader.skip(4 + 2);
  readMatrix(reader, record.matrix);
  const uint32_t matteBytes = reader.u32();
  reader.skip(8);
  record.mode = reader.u16();
  record.source = readBox(reader);
  reader.skip(4);
  const uint32_t maskBytes = reader.u32();
  record.matte = reader.take(matteBytes);
  record.mask = reader.take(maskBytes);
  if (reader.failed()) return Fault::damaged;
  if (!record.mask.empty()) {
    const auto size = regionBytes(record.mask);
    if (!size) return Fault::damaged;
    record.mask = record.mask.first(size.value);
  }
  const Fault fault = readImageDescription(reader, record.description);
  record.data = reader.rest();
  return fault == Fault::none ? fault : Fault::damaged;
}

Box CompressedRecord::destination() const noexcept {
  const Point start = mapped(matrix, {source.left, source.top});
  const Point end = mapped(matrix, {source.right, source.bottom});
  return {std::min(start.h, end.h), std::min(start.v, end.v), std::max(start.h, end.h),
          std::max(start.v, end.v)};
}

Fault readMatteRecord(Bytes operands, MatteRecord &record) noexcept {
  ByteReader reader(operands);
  reader.skip(4 + 2 + 36);
  const uint32_t matteBytes = reader.u32();
  record.destination = readBox(reader);
  record.matte = reader.take(matteBytes);
  return reader.failed() ? Fault::damaged : Fault::none;
}

}  // namespace codecs::pict
