#include "media/codecs/pict/video_pixels.h"

namespace codecs::pict {
namespace {

void expandIndices(const uint8_t *from, int bits, const Palette &palette, Pixel *out, size_t count) noexcept {
  const auto step = static_cast<size_t>(bits);
  const unsigned mask = (1u << step) - 1;
  for (size_t i = 0, at = 0; i < count; ++i, at += step) {
    out[i] = palette[from[at / 8] >> (8 - step - at % 8) & mask];
  }
}

}  // namespace

void expandPixels(const uint8_t *from, int bits, const Palette &palette, Pixel *out, size_t count) noexcept {
  switch (bits) {
    case 16:
      for (size_t i = 0; i < count; ++i, from += 2)
        out[i] = pixelOf555(static_cast<unsigned>(from[0] << 8 | from[1]));
      return;
    case 24:
      for (size_t i = 0; i < count; ++i, from += 3) out[i] = opaque(from[0], from[1], from[2]);
      return;
    case 32:
      for (size_t i = 0; i < count; ++i, from += 4) out[i] = opaque(from[1], from[2], from[3]);
      return;
    default:
      expandIndices(from, bits, palette, out, count);
  }
}

}  // namespace codecs::pict
