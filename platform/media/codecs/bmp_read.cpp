// Reading BMP: rows as they lie in the file, brought to the layout of a decoded image.

#include <cstring>
#include <new>
#include <vector>

#include "media/codecs/bmp.h"
#include "media/codecs/bmp_header.h"
#include "media/codecs/bmp_runs.h"
#include "media/codecs/frame.h"
#include "media/codecs/icc.h"
#include "media/codecs/masked_pixels.h"

namespace codecs {
namespace {

// Of one colour from the two bytes of a run.
constexpr uint64_t kMostPixelsPerByte = 128;

template <unsigned bits>
void putIndexedBits(const uint8_t *row, size_t count, const uint32_t *colours, uint8_t *out) noexcept {
  constexpr unsigned perByte = 8 / bits, mask = (1u << bits) - 1;
  for (size_t i = 0; i < count; ++i) {
    const unsigned shift = 8 - bits - bits * static_cast<unsigned>(i % perByte);
    std::memcpy(out + 4 * i, &colours[row[i / perByte] >> shift & mask], 4);
  }
}

void putIndexed(const BmpHeader &header, const uint8_t *row, uint8_t *out) noexcept {
  const uint32_t *const colours = header.colours.data();
  switch (header.bits) {
    case 1:
      return putIndexedBits<1>(row, header.width, colours, out);
    case 2:
      return putIndexedBits<2>(row, header.width, colours, out);
    case 4:
      return putIndexedBits<4>(row, header.width, colours, out);
    default:
      return putIndexedBits<8>(row, header.width, colours, out);
  }
}

uint8_t *rowOf(const BmpHeader &header, DecodedImage &image, uint32_t fileRow) noexcept {
  return image.row(header.topDown ? fileRow : image.height - 1 - fileRow);
}

// put(row of the file, where it goes)
template <class Put>
void putRows(const BmpHeader &header, DecodedImage &image, Put &&put) noexcept {
  for (uint32_t y = 0; y < header.height; ++y)
    put(header.pixels.data() + y * header.rowBytes(), rowOf(header, image, y));
}

void readRows(const BmpHeader &header, DecodedImage &image) noexcept {
  if (header.packing == BmpPacking::masked) {
    const MaskedPixels pixels(header.bits, header.masks);
    return putRows(header, image,
                   [&](const uint8_t *row, uint8_t *out) { pixels.put(row, header.width, out); });
  }
  if (header.bits == 24) {
    return putRows(header, image,
                   [&](const uint8_t *row, uint8_t *out) { putBlueGreenRed(row, header.width, out); });
  }
  putRows(header, image, [&](const uint8_t *row, uint8_t *out) { putIndexed(header, row, out); });
}

// May throw std::bad_alloc.
Fault readRuns(const BmpHeader &header, DecodedImage &image) {
  const bool direct = header.bits == 24;
  BmpRuns runs(header.pixels, header.bits, header.width, header.height);
  std::vector<uint8_t> row(runs.rowBytes());
  for (uint32_t y = 0; y < header.height; ++y) {
    if (const Fault fault = runs.nextRow(row.data()); fault != Fault::none) return fault;
    uint8_t *const out = rowOf(header, image, y);
    if (direct) {
      putBlueGreenRed(row.data(), header.width, out);
    } else {
      putIndexedBits<8>(row.data(), header.width, header.colours.data(), out);
    }
  }
  return Fault::none;
}

// The last row needs no padding behind it.
Fault checkLength(const BmpHeader &header) noexcept {
  if (header.packing == BmpPacking::runs) {
    return checkPromise(uint64_t{header.width} * header.height, header.pixels.size(), kMostPixelsPerByte);
  }
  const uint64_t lastRow = (uint64_t{header.width} * header.bits + 7) / 8;
  const uint64_t bytes = header.rowBytes() * (header.height - 1) + lastRow;
  return bytes <= header.pixels.size() ? Fault::none : Fault::truncated;
}

// May throw std::bad_alloc.
Fault read(const BmpHeader &header, DecodedImage &image, const CGImageDecodeLimits &limits) {
  if (const Fault fault = checkLength(header); fault != Fault::none) return fault;
  const bool alpha = header.masks[3].bits != 0;
  const PixelLayout layout = alpha ? PixelLayout::argb32 : PixelLayout::xrgb32;
  const Fault fault = makeFrame(image, header.width, header.height, layout, limits);
  if (fault != Fault::none) return fault;
  image.depth = alpha ? 32 : 24;
  image.resolution = header.resolution;
  if (isProfileFor(header.profile, ProfileColours::rgb, limits))
    image.profile.assign(header.profile.begin(), header.profile.end());
  if (header.packing == BmpPacking::runs) return readRuns(header, image);
  readRows(header, image);
  return Fault::none;
}

}  // namespace

Result<DecodedImage> decodeBmp(Bytes file, const CGImageDecodeLimits &limits) noexcept {
  if (scoreBmp(file) == 0) return Fault::unknownFormat;
  const auto header = readBmpHeader(file, limits);
  if (!header) return header.fault;
  DecodedImage image;
  try {
    if (const Fault fault = read(header.value, image, limits); fault != Fault::none) return fault;
  } catch (const std::bad_alloc &) {
    return Fault::noMemory;
  }
  return image;
}

}  // namespace codecs
