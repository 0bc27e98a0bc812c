#include "media/codecs/masked_pixels.h"

#include <algorithm>

namespace codecs {
namespace {

constexpr PixelMasks kUsual{{{16, 8}, {8, 8}, {0, 8}, {24, 8}}};

uint32_t mostOf(const ChannelMask &mask) noexcept {
  return static_cast<uint32_t>((uint64_t{1} << mask.bits) - 1);
}

// A value out of `most` as a byte, rounded to nearest.
uint8_t toByte(uint64_t value, uint64_t most) noexcept {
  return static_cast<uint8_t>((value * 255 + most / 2) / most);
}

uint32_t load(const uint8_t *bytes, uint16_t) noexcept {
  return static_cast<uint32_t>(bytes[0] | bytes[1] << 8);
}
uint32_t load(const uint8_t *bytes, uint32_t) noexcept {
  return load(bytes, uint16_t{}) | load(bytes + 2, uint16_t{}) << 16;
}

void putUsual(const uint8_t *pixels, size_t count, uint8_t opaque, uint8_t *out) noexcept {
  for (size_t i = 0; i < count; ++i, pixels += 4, out += 4) {
    out[0] = pixels[3] | opaque;
    out[1] = pixels[2];
    out[2] = pixels[1];
    out[3] = pixels[0];
  }
}

}  // namespace

MaskedPixels::MaskedPixels(unsigned pixelBits, const PixelMasks &masks) noexcept
    : pixelBits_(pixelBits), masks_(masks) {
  isUsual_ = pixelBits == 32 && std::equal(masks.begin(), masks.begin() + 3, kUsual.begin()) &&
             (!hasAlpha() || masks[3] == kUsual[3]);
  bytes_[3][0] = 255;
  for (size_t c = 0; c < masks.size(); ++c) {
    if (masks[c].bits == 0 || masks[c].bits > 8) continue;
    const uint32_t most = mostOf(masks[c]);
    for (uint32_t value = 0; value <= most; ++value) bytes_[c][value] = toByte(value, most);
  }
}

uint8_t MaskedPixels::channel(size_t number, uint32_t pixel) const noexcept {
  const ChannelMask &mask = masks_[number];
  const uint32_t value = pixel >> mask.shift & mostOf(mask);
  return mask.bits <= 8 ? bytes_[number][value] : toByte(value, mostOf(mask));
}

template <class Pixel>
void MaskedPixels::putEach(const uint8_t *pixels, size_t count, uint8_t *out) const noexcept {
  for (size_t i = 0; i < count; ++i, pixels += sizeof(Pixel), out += 4) {
    const uint32_t pixel = load(pixels, Pixel{});
    out[0] = channel(3, pixel);
    out[1] = channel(0, pixel);
    out[2] = channel(1, pixel);
    out[3] = channel(2, pixel);
  }
}

void MaskedPixels::put(const uint8_t *pixels, size_t count, uint8_t *out) const noexcept {
  if (isUsual_) return putUsual(pixels, count, hasAlpha() ? uint8_t{0} : uint8_t{255}, out);
  if (pixelBits_ == 16) return putEach<uint16_t>(pixels, count, out);
  putEach<uint32_t>(pixels, count, out);
}

void putBlueGreenRed(const uint8_t *pixels, size_t count, uint8_t *out) noexcept {
  for (size_t i = 0; i < count; ++i, pixels += 3, out += 4) {
    out[0] = 255;
    out[1] = pixels[2];
    out[2] = pixels[1];
    out[3] = pixels[0];
  }
}

}  // namespace codecs
