// Rows as they are.

#include "media/codecs/pict/video_codecs.h"
#include "media/codecs/pict/video_pixels.h"

namespace codecs::pict {
namespace {

bool isDepth(int bits) noexcept {
  return bits == 1 || bits == 2 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
}

// Rows can be padded; how far, only the data's length tells.
size_t rowBytesOf(size_t data, size_t height, size_t least) noexcept {
  const size_t even = least + least % 2, there = data / height;
  if (there >= least && there <= even + 64) return there;
  return even;
}

}  // namespace

Fault decodeRaw(const ImageDescription &description, Bytes data, DecodedImage &image) {
  const int bits = description.bits();
  if (!isDepth(bits)) return Fault::unsupported;
  const size_t least = (size_t{image.width} * static_cast<size_t>(bits) + 7) / 8;
  const size_t rowBytes = rowBytesOf(data.size(), image.height, least);
  if (data.size() < rowBytes * (image.height - 1) + least) return Fault::damaged;
  const Palette palette = paletteOf(description);
  for (uint32_t y = 0; y < image.height; ++y) {
    expandPixels(data.data() + y * rowBytes, bits, palette, pixelRow(image, y), image.width);
  }
  return Fault::none;
}

}  // namespace codecs::pict
