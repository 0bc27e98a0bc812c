// Brightness for each pixel, colour for every two.

#include <cmath>

#include "media/codecs/pict/video_codecs.h"

namespace codecs::pict {
namespace {

Pixel colourOf(int y, int u, int v) noexcept {
  const auto byte = [](double value) {
    return static_cast<uint8_t>(std::clamp(std::lround(value), 0l, 255l));
  };
  return opaque(byte(y + 1.402 * v), byte(y - 0.344136 * u - 0.714136 * v), byte(y + 1.772 * u));
}

}  // namespace

Fault decodeYuv2(const ImageDescription &, Bytes data, DecodedImage &image) {
  const size_t rowBytes = size_t{4} * ((image.width + 1) / 2);
  if (data.size() < rowBytes * image.height) return Fault::damaged;
  for (uint32_t y = 0; y < image.height; ++y) {
    const uint8_t *const from = data.data() + y * rowBytes;
    Pixel *const row = pixelRow(image, y);
    for (uint32_t x = 0; x < image.width; ++x) {
      const uint8_t *const pair = from + x / 2 * 4;
      row[x] = colourOf(pair[x % 2 * 2], static_cast<int8_t>(pair[1]), static_cast<int8_t>(pair[3]));
    }
  }
  return Fault::none;
}

}  // namespace codecs::pict
