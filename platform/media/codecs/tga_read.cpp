// Reading TGA: rows of the file, brought to the layout of a decoded image and then to the right corner.

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>
#include <vector>

#include "media/codecs/frame.h"
#include "media/codecs/masked_pixels.h"
#include "media/codecs/orientation.h"
#include "media/codecs/straight_alpha.h"
#include "media/codecs/tga.h"
#include "media/codecs/tga_header.h"
#include "media/codecs/tga_rows.h"

namespace codecs {
namespace {

constexpr uint64_t kMostRun = 128;

// 15, 16 and 32 bits; those of 24 have no masks.
PixelMasks masksFor(unsigned bits, bool alpha) noexcept {
  const ChannelMask none{0, 0};
  if (bits == 32) return {{{16, 8}, {8, 8}, {0, 8}, alpha ? ChannelMask{24, 8} : none}};
  return {{{10, 5}, {5, 5}, {0, 5}, alpha && bits == 16 ? ChannelMask{15, 1} : none}};
}

// Colours of any depth, as pixels or as entries of a palette.
class Colours {
 public:
  Colours(unsigned bits, bool alpha) noexcept
      : triples_(bits == 24), masked_(bits == 32 ? 32 : 16, masksFor(bits, alpha)) {}

  void put(const uint8_t *colours, size_t count, uint8_t *out) const noexcept {
    if (triples_) return putBlueGreenRed(colours, count, out);
    masked_.put(colours, count, out);
  }

 private:
  bool triples_;
  MaskedPixels masked_;
};

struct Reading {
  Bytes file;
  const CGImageDecodeLimits &limits;
  TgaHeader header;
  TgaAlpha alpha;
  std::vector<uint32_t> palette;  // pixels as they go into memory, by index
  DecodedImage image;

  bool hasAlpha() const noexcept { return alpha != TgaAlpha::none; }
  Bytes pixels() const noexcept { return file.subspan(header.pixelsAt); }
};

// Indices without an entry are black. May throw std::bad_alloc.
void readPalette(Reading &reading) {
  const TgaHeader &header = reading.header;
  constexpr uint8_t kBlack[4] = {255, 0, 0, 0};
  uint32_t black;
  std::memcpy(&black, kBlack, sizeof black);
  const size_t indices = size_t{1} << header.bits;
  reading.palette.assign(indices, black);
  const size_t first = header.firstEntry;
  if (first >= indices) return;
  const size_t count = std::min<size_t>(header.entries, indices - first);
  const Colours colours(header.entryBits, reading.hasAlpha());
  colours.put(reading.file.data() + header.paletteAt, count,
              reinterpret_cast<uint8_t *>(reading.palette.data() + first));
}

void putIndexed(const Reading &reading, const uint8_t *row, uint8_t *out) noexcept {
  const uint32_t *const palette = reading.palette.data();
  const uint32_t width = reading.header.width;
  if (reading.header.bits == 8) {
    for (uint32_t x = 0; x < width; ++x) std::memcpy(out + 4 * size_t{x}, &palette[row[x]], 4);
    return;
  }
  for (uint32_t x = 0; x < width; ++x) {
    const size_t index = row[2 * size_t{x}] | size_t{row[2 * size_t{x} + 1]} << 8;
    std::memcpy(out + 4 * size_t{x}, &palette[index], 4);
  }
}

// A byte of grey, or one and a byte of alpha.
void putGrey(const Reading &reading, const uint8_t *row, uint8_t *out) noexcept {
  const size_t width = reading.header.width, step = reading.header.pixelBytes();
  if (step == 1) return void(std::memcpy(out, row, width));
  for (size_t x = 0; x < width; ++x, row += 2) {
    if (!reading.hasAlpha()) {
      out[x] = row[0];
      continue;
    }
    out[4 * x] = row[1];
    out[4 * x + 1] = out[4 * x + 2] = out[4 * x + 3] = row[0];
  }
}

// put(row of the file, where it goes). May throw std::bad_alloc.
template <class Put>
Fault putRows(Reading &reading, Put &&put) {
  const TgaHeader &header = reading.header;
  TgaRows rows(reading.pixels(), header.runs, header.width, header.pixelBytes());
  for (uint32_t y = 0; y < header.height; ++y) {
    const uint8_t *const row = rows.next();
    if (!row) return Fault::truncated;
    put(row, reading.image.row(header.topDown ? y : header.height - 1 - y));
  }
  return Fault::none;
}

// May throw std::bad_alloc.
Fault readPixels(Reading &reading) {
  switch (reading.header.kind) {
    case TgaKind::indexed:
      readPalette(reading);
      return putRows(reading, [&](const uint8_t *row, uint8_t *out) { putIndexed(reading, row, out); });
    case TgaKind::grey:
      return putRows(reading, [&](const uint8_t *row, uint8_t *out) { putGrey(reading, row, out); });
    case TgaKind::colour:
      break;
  }
  const Colours colours(reading.header.bits, reading.hasAlpha());
  const uint32_t width = reading.header.width;
  return putRows(reading, [&](const uint8_t *row, uint8_t *out) { colours.put(row, width, out); });
}

void makeStraight(DecodedImage &image) noexcept {
  uint8_t *const end = image.pixels.data() + image.pixels.size();
  for (uint8_t *pixel = image.pixels.data(); pixel != end; pixel += 4) {
    for (int c = 1; c < 4; ++c) pixel[c] = straightByte(pixel[c], pixel[0]);
  }
}

PixelLayout layoutOf(const Reading &reading) noexcept {
  if (reading.hasAlpha()) return PixelLayout::argb32;
  return reading.header.kind == TgaKind::grey ? PixelLayout::grey8 : PixelLayout::xrgb32;
}

Fault checkLength(const Reading &reading) noexcept {
  const TgaHeader &header = reading.header;
  if (header.pixelsAt > reading.file.size()) return Fault::truncated;
  const uint64_t pixels = uint64_t{header.width} * header.height, pixelBytes = header.pixelBytes();
  const uint64_t least =
      header.runs ? (pixels + kMostRun - 1) / kMostRun * (1 + pixelBytes) : pixels * pixelBytes;
  return least <= reading.pixels().size() ? Fault::none : Fault::truncated;
}

// May throw std::bad_alloc.
Fault read(Reading &reading) {
  const TgaHeader &header = reading.header;
  const PixelLayout layout = layoutOf(reading);
  Fault fault = checkFrame(header.width, header.height, bytesPerPixel(layout), reading.limits);
  if (fault != Fault::none) return fault;
  fault = checkLength(reading);
  if (fault != Fault::none) return fault;
  fault = makeFrame(reading.image, header.width, header.height, layout, reading.limits);
  if (fault != Fault::none) return fault;
  reading.image.depth = layout == PixelLayout::grey8 ? 8 : layout == PixelLayout::xrgb32 ? 24 : 32;
  fault = readPixels(reading);
  if (fault != Fault::none) return fault;
  if (reading.alpha == TgaAlpha::premultiplied) makeStraight(reading.image);
  constexpr unsigned kFromTheRight = 2;
  return header.rightToLeft ? applyOrientation(reading.image, kFromTheRight, reading.limits) : Fault::none;
}

}  // namespace

Result<DecodedImage> decodeTga(Bytes file, const CGImageDecodeLimits &limits) noexcept {
  const auto header = readTgaHeader(file);
  if (!header) return header.fault;
  Reading reading{file, limits, header.value, tgaAlpha(header.value, file), {}, {}};
  try {
    if (const Fault fault = read(reading); fault != Fault::none) return fault;
  } catch (const std::bad_alloc &) {
    return Fault::noMemory;
  }
  return std::move(reading.image);
}

}  // namespace codecs
