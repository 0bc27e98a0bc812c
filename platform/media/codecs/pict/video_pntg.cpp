// Painted pages: one bit a pixel, all rows packed in one go.

#include "media/codecs/pict/packbits.h"
#include "media/codecs/pict/video_codecs.h"
#include "media/codecs/pict/video_pixels.h"

namespace codecs::pict {

Fault decodePntg(const ImageDescription &, Bytes data, DecodedImage &image) {
  const size_t rowBytes = (size_t{image.width} + 7) / 8;
  std::vector<uint8_t> rows(rowBytes * image.height);
  if (unpackedBytes(data, rows.size()) < rows.size()) return Fault::damaged;
  unpackBytes(data, rows);
  Palette palette;
  palette.fill(kBlack);
  palette[0] = kWhite;
  for (uint32_t y = 0; y < image.height; ++y)
    expandPixels(rows.data() + y * rowBytes, 1, palette, pixelRow(image, y), image.width);
  return Fault::none;
}

}  // namespace codecs::pict
