// Pixels whose channels are bits of one number, lowest byte first.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace codecs {

// Where a channel lies in the bits of a pixel; no bits: it is not there.
struct ChannelMask {
  unsigned shift = 0;
  unsigned bits = 0;

  bool operator==(const ChannelMask &) const = default;
};
using PixelMasks = std::array<ChannelMask, 4>;  // red, green, blue, alpha

class MaskedPixels {
 public:
  // REQUIRES: 16 or 32 bits a pixel, and every channel inside them.
  MaskedPixels(unsigned pixelBits, const PixelMasks &masks) noexcept;

  // Writes `count` pixels as alpha, red, green, blue, each rounded to the nearest byte. A colour that is not
  // there is 0, alpha 255.
  void put(const uint8_t *pixels, size_t count, uint8_t *out) const noexcept;

  bool hasAlpha() const noexcept { return masks_[3].bits != 0; }

 private:
  uint8_t channel(size_t number, uint32_t pixel) const noexcept;
  template <class Pixel>
  void putEach(const uint8_t *pixels, size_t count, uint8_t *out) const noexcept;

  unsigned pixelBits_;
  PixelMasks masks_;
  bool isUsual_;                                     // blue, green, red and perhaps alpha in four bytes
  std::array<std::array<uint8_t, 256>, 4> bytes_{};  // each value of channels of up to 8 bits
};

// Pixels of three bytes with blue first, as 255, red, green, blue.
void putBlueGreenRed(const uint8_t *pixels, size_t count, uint8_t *out) noexcept;

}  // namespace codecs
