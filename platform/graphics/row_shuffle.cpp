#include "graphics/row_shuffle.h"

#include "graphics/pixel_words.h"

namespace cg {

// In words, with the same shifts for every pixel: that is what the compiler makes vectors of.
void shufflePixels(const uint8_t *in, uint8_t *out, std::size_t count,
                   const std::array<uint8_t, 4> &from) noexcept {
  int shift[4];
  uint32_t mask[4], opaque = 0;
  for (std::size_t b = 0; b < 4; ++b) {
    const bool isOpaque = from[b] == kOpaque;
    shift[b] = isOpaque ? 0 : shiftOfByte(from[b]);
    mask[b] = isOpaque ? 0 : 0xFFU;
    if (isOpaque) opaque |= 0xFFU << shiftOfByte(b);
  }
  const int s0 = shift[0], s1 = shift[1], s2 = shift[2], s3 = shift[3];
  const uint32_t m0 = mask[0], m1 = mask[1], m2 = mask[2], m3 = mask[3];
  for (std::size_t i = 0; i < count; ++i) {
    const uint32_t pixel = loadWord(in + 4 * i);
    storeWord(out + 4 * i, (pixel >> s0 & m0) << shiftOfByte(0) | (pixel >> s1 & m1) << shiftOfByte(1) |
                               (pixel >> s2 & m2) << shiftOfByte(2) | (pixel >> s3 & m3) << shiftOfByte(3) |
                               opaque);
  }
}

void widenPixels(const uint8_t *in, uint8_t *out, std::size_t count, bool alphaFirst) noexcept {
  if (count == 0) return;
  const int toPlace = alphaFirst ? 8 : 0;
  const uint32_t opaque = 0xFFU << shiftOfByte(alphaFirst ? 0 : 3);
  // A word is one byte more than a pixel has, which the last one must not read.
  for (std::size_t i = 0; i + 1 < count; ++i) {
    const uint32_t pixel = loadWord(in + 3 * i);
    const bool isLittle = std::endian::native == std::endian::little;
    storeWord(out + 4 * i, (isLittle ? pixel << toPlace : pixel >> toPlace) | opaque);
  }
  uint8_t *last = out + 4 * (count - 1);
  storeWord(last, opaque);
  std::memcpy(last + (alphaFirst ? 1 : 0), in + 3 * (count - 1), 3);
}

}  // namespace cg
