// Playing the opcodes that bring pixels along.

#include <utility>

#include "media/codecs/pict/bitmap_opcode.h"
#include "media/codecs/pict/image_draw.h"
#include "media/codecs/pict/pixel_rows.h"
#include "media/codecs/pict/player.h"
#include "media/codecs/pict/region_data.h"

namespace codecs::pict {
namespace {

// What a pen height of this many pixels means behind a compressed image: the pen's width is the number of
// bytes of drawing that stands in for it.
constexpr int16_t kStandInMark = 174;

// What decoding a pixel costs, against visiting it.
constexpr uint64_t kDecodingEffort = 4;

int depthOf(const PixelMap &map) noexcept {
  if (map.isIndexed()) return 8;
  return map.pixelSize == 16 ? 24 : 32;
}

// Greys and colours of a decoded image, a row at a time.
class DecodedRows {
 public:
  explicit DecodedRows(const DecodedImage &image) : image_(image) {
    if (image.layout == PixelLayout::grey8) row_.resize(image.width);
  }

  const Pixel *operator()(uint32_t y) noexcept {
    if (image_.layout != PixelLayout::grey8) return reinterpret_cast<const Pixel *>(image_.row(y));
    const uint8_t *const greys = image_.row(y);
    for (size_t x = 0; x < row_.size(); ++x) row_[x] = opaque(greys[x], greys[x], greys[x]);
    return row_.data();
  }

 private:
  const DecodedImage &image_;
  std::vector<Pixel> row_;
};

// Reads a mask, where there is one, in canvas coordinates.
Fault readMask(Bytes record, const Mapping &mapping, Budget &budget, Region &mask) {
  if (record.empty()) return Fault::none;
  const Fault fault = parseRegion(record, budget, mask);
  if (fault != Fault::none) return fault;
  if (!budget.work(mask.edgeCount())) return Fault::tooLarge;
  mask = mapping(mask);
  return Fault::none;
}

}  // namespace

void Player::noteDrawn(int depth) noexcept {
  findings_.drewAnything = true;
  findings_.depth = std::max(findings_.depth, depth);
}

void Player::noteAlpha(const Pixel *row, size_t count) noexcept {
  Pixel seen = 0, shared = ~Pixel{0};
  for (size_t i = 0; i < count; ++i) {
    seen |= row[i];
    shared &= row[i];
  }
  alphasSeen_ |= seen & kAlphaBits;
  alphasShared_ &= shared;
}

// Decoders inside a picture get what the canvas leaves of the memory, and each of what may be many images
// a share of the patience with scans that add nothing.
CGImageDecodeLimits Player::limitsInside() const noexcept {
  CGImageDecodeLimits limits = limits_;
  limits.jpegScans = std::min(limits.jpegScans, limits.pictJpegScans);
  const uint64_t canvas = uint64_t{4} * port_.canvas().width * port_.canvas().height;
  limits.memoryBytes -= std::min(limits.memoryBytes, canvas);
  return limits;
}

// A picture made for systems that can decode the image goes on with a drawing for those that cannot:
// either as many bytes as a strange pen size says, or one bitmap in the image's place.
bool Player::isStandIn(const Opcode &opcode) {
  const Box place = std::exchange(standIn_, Box{});
  ByteReader reader(opcode.operands);
  if (opcode.code == op::penSize) {
    if (penMark_ == PenMark::isSize || reader.i16() != kStandInMark) return false;
    if (std::exchange(penMark_, PenMark::isSize) == PenMark::skips) walker_.skip(reader.u16());
    return true;
  }
  if (opcode.code >= op::line && opcode.code <= op::directBitsRegion) penMark_ = PenMark::isSize;
  if (!isBitmapOpcode(opcode.code) || place.isEmpty()) return false;
  PixelRecord record;
  return readBitmapOpcode(opcode.code, reader, opcode.wordOpcodes, record) == Fault::none &&
         record.destination == place;
}

Fault Player::drawBitmap(const Opcode &opcode) {
  ByteReader reader(opcode.operands);
  PixelRecord record;
  const Fault fault = readBitmapOpcode(opcode.code, reader, opcode.wordOpcodes, record);
  return fault == Fault::none ? drawRecord(record) : fault;
}

Fault Player::drawRecord(const PixelRecord &record) {
  const PixelMap &map = record.map;
  const Matte matte = std::move(matte_);
  matte_ = {};
  Region mask;
  if (const Fault fault = readMask(record.mask, mapping_, port_.budget(), mask); fault != Fault::none)
    return fault;

  // Bits that are copied are coloured at once; other modes want to know which they are.
  Transfer mode = port_.takeHighlight(transferOf(record.mode));
  if (mode == Transfer::dimmedOr) mode = Transfer::paintOr;  // only letters are dimmed
  BitColours bits{kBlack, kWhite};
  Ink ink = port_.ink;
  if (map.isBitmap && (mode == Transfer::copy || !isBoolean(mode))) bits = {ink.fore, ink.back};
  if (map.isBitmap && mode == Transfer::copy) {
    ink.fore = kBlack;
    ink.back = kWhite;
  }
  ImageDraw draw(
      port_,
      {map.bounds, record.source, mapping_(record.destination), mode, record.mask.empty() ? nullptr : &mask},
      ink);
  noteDrawn(matte.isThere() ? 32 : depthOf(map));
  if (!port_.budget().work(map.columns())) return Fault::tooLarge;
  PixelRows rows(record, bits);
  std::vector<Pixel> row(map.columns());
  for (int32_t y = map.bounds.top; y < draw.endRow() && y < map.bounds.bottom; ++y) {
    if (y < draw.firstRow()) {
      if (!port_.budget().work(1)) return Fault::tooLarge;
      rows.skip();
      continue;
    }
    if (!port_.budget().work(row.size())) return Fault::tooLarge;
    rows.read(row.data());
    if (matte.isThere()) applyMatte(matte, record.source, y, map.bounds.left, row.data(), row.size());
    if (matte.isThere() || map.planes == 4) noteAlpha(row.data(), row.size());
    if (!draw.row(y, row.data())) return Fault::tooLarge;
  }
  return Fault::none;
}

// The matte covers the source rectangle, and is usually as large.
void Player::applyMatte(const Matte &matte, const Box &source, int32_t y, int32_t left, Pixel *row,
                        size_t count) noexcept {
  if (y < source.top || y >= source.bottom) return;
  const auto my = static_cast<uint32_t>(int64_t{y - source.top} * matte.height / source.height());
  for (size_t i = 0; i < count; ++i) {
    const int64_t x = left + static_cast<int64_t>(i) - source.left;
    if (x < 0 || x >= source.width()) continue;
    const auto mx = static_cast<uint32_t>(x * matte.width / source.width());
    row[i] = (row[i] & kColourBits) | pixelOf(matte.at(mx, my), 0, 0, 0);
  }
}

// Its cost is counted before, as far as it is known then.
Result<DecodedImage> Player::decodeInside(const ImageDescription &description, Bytes data) {
  if (!isReadCodec(description.codec)) return Fault::unsupported;
  const uint64_t described = uint64_t{description.width} * description.height;
  if (!port_.budget().work(kDecodingEffort * described)) return Fault::tooLarge;
  auto decoded = decodeCompressed(description, data, limitsInside());
  const uint64_t pixels = uint64_t{decoded.value.width} * decoded.value.height;
  if (pixels > described && !port_.budget().work(kDecodingEffort * (pixels - described)))
    return Fault::tooLarge;
  return decoded;
}

// Black is opaque in a matte.
Fault Player::decodeMatte(Bytes bytes, Matte &matte) {
  ByteReader reader(bytes);
  ImageDescription description;
  if (const Fault fault = readImageDescription(reader, description); fault != Fault::none) return fault;
  const auto decoded = decodeInside(description, reader.rest());
  if (!decoded) return decoded.fault;
  const DecodedImage &image = decoded.value;
  matte.width = image.width;
  matte.height = image.height;
  matte.alpha.reserve(size_t{image.width} * image.height);
  DecodedRows rows(image);
  for (uint32_t y = 0; y < image.height; ++y) {
    const Pixel *const row = rows(y);
    for (uint32_t x = 0; x < image.width; ++x)
      matte.alpha.push_back(static_cast<uint8_t>(255 - bytesOf(row[x])[2]));
  }
  return Fault::none;
}

// A matte in a format that is not read leaves its bitmap opaque. Some say that the bitmap's opcode is
// among the operands; no file is known to do so, but it costs little to believe one that does.
Fault Player::takeMatte(const Opcode &opcode) {
  MatteRecord record;
  if (const Fault fault = readMatteRecord(opcode.operands, record); fault != Fault::none) return fault;
  matte_ = {};
  if (!record.matte.empty()) {
    const Fault fault = decodeMatte(record.matte, matte_);
    if (fault == Fault::unsupported) matte_ = {};
    if (fault != Fault::none && fault != Fault::unsupported) return fault;
  }
  const auto matteEnd =
      static_cast<size_t>(record.matte.data() + record.matte.size() - opcode.operands.data());
  ByteReader reader(
      opcode.operands.subspan(record.matte.empty() ? opcode.operands.size() : matteEnd + matteEnd % 2));
  const uint16_t inside = reader.u16();
  if (reader.failed() || !isBitmapOpcode(inside)) return Fault::none;
  PixelRecord bitmap;
  const Fault fault = readBitmapOpcode(inside, reader, true, bitmap);
  return fault == Fault::none ? drawRecord(bitmap) : Fault::damaged;
}

Fault Player::drawCompressed(Bytes operands) {
  CompressedRecord record;
  if (const Fault fault = readCompressedRecord(operands, record); fault != Fault::none) return fault;
  penMark_ = PenMark::isMark;
  const auto decoded = decodeInside(record.description, record.data);
  if (decoded.fault == Fault::unsupported || decoded.fault == Fault::unknownFormat) {
    findings_.leftOutImage = true;  // the stand-in is drawn
    return Fault::none;
  }
  if (!decoded) return decoded.fault;
  penMark_ = PenMark::skips;
  standIn_ = record.destination();
  Matte matte;
  if (!record.matte.empty()) {
    const Fault fault = decodeMatte(record.matte, matte);
    if (fault != Fault::none && fault != Fault::unsupported) return fault;
  }
  return drawDecoded(record, decoded.value, matte);
}

Fault Player::drawDecoded(const CompressedRecord &record, const DecodedImage &image, const Matte &matte) {
  Region mask;
  if (const Fault fault = readMask(record.mask, mapping_, port_.budget(), mask); fault != Fault::none)
    return fault;
  Transfer mode = port_.takeHighlight(transferOfCompressed(record.mode));
  if (mode == Transfer::copy && image.layout == PixelLayout::argb32 && !matte.isThere())
    mode = Transfer::over;
  Ink ink = port_.ink;
  if (isBoolean(mode)) {  // which would tint the image
    ink.fore = kBlack;
    ink.back = kWhite;
  }
  const Box bounds{0, 0, static_cast<int32_t>(image.width), static_cast<int32_t>(image.height)};
  ImageDraw draw(
      port_,
      {bounds, record.source, mapping_(record.destination()), mode, record.mask.empty() ? nullptr : &mask},
      ink);
  noteDrawn(matte.isThere()                                                        ? 32
            : image.layout == PixelLayout::grey8 || record.description.bits() <= 8 ? 8
                                                                                   : 24);
  DecodedRows rows(image);
  std::vector<Pixel> merged(matte.isThere() ? image.width : 0);
  for (int32_t y = draw.firstRow(); y < draw.endRow(); ++y) {
    if (!port_.budget().work(image.width)) return Fault::tooLarge;
    const Pixel *row = rows(static_cast<uint32_t>(y));
    if (matte.isThere()) {
      std::copy_n(row, image.width, merged.data());
      applyMatte(matte, record.source, y, 0, merged.data(), merged.size());
      noteAlpha(merged.data(), merged.size());
      row = merged.data();
    }
    if (!draw.row(y, row)) return Fault::tooLarge;
  }
  return Fault::none;
}

}  // namespace codecs::pict
