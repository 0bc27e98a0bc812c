// Planes of packed rows, behind the lengths of all of them.

#include "media/codecs/pict/packbits.h"
#include "media/codecs/pict/video_codecs.h"

namespace codecs::pict {
namespace {

// Adds one component to a row; the planes come red, green, blue. A fourth is alpha, which means nothing.
void mixPlane(const std::vector<uint8_t> &values, size_t plane, Pixel *row) noexcept {
  for (size_t x = 0; x < values.size(); ++x) {
    auto bytes = bytesOf(row[x]);
    bytes[plane + 1] = values[x];
    row[x] = std::bit_cast<Pixel>(bytes);
  }
}

}  // namespace

Fault decode8bps(const ImageDescription &description, Bytes data, DecodedImage &image) {
  const int bits = description.bits();
  if (bits != 8 && bits != 24 && bits != 32) return Fault::unsupported;
  const auto planes = static_cast<size_t>(bits / 8);
  ByteReader lengths(data);
  ByteReader rows(data);
  rows.skip(2 * planes * image.height);
  const Palette palette = paletteOf(description);
  std::vector<uint8_t> values(image.width);
  for (size_t plane = 0; plane < planes; ++plane) {
    for (uint32_t y = 0; y < image.height; ++y) {
      const Bytes packed = rows.take(lengths.u16());
      if (rows.failed() || lengths.failed()) return Fault::damaged;
      if (plane > 2) continue;
      unpackBytes(packed, values);
      Pixel *const row = pixelRow(image, y);
      if (planes > 1) {
        mixPlane(values, plane, row);
      } else {
        for (size_t x = 0; x < values.size(); ++x) row[x] = palette[values[x]];
      }
    }
  }
  return Fault::none;
}

}  // namespace codecs::pict
