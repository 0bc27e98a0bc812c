#include "graphics/row_shuffle.h"

#include <bit>
#include <cstring>

namespace cg {
namespace {

// How far the byte of a pixel in memory is shifted within the word that it is loaded as.
constexpr uint32_t shiftOf(std::size_t byte) noexcept {
  return static_cast<uint32_t>(std::endian::native == std::endian::little ? 8 * byte : 24 - 8 * byte);
}

}  // namespace

// In words, with the same shifts for every pixel: that is what the compiler makes vectors of.
void shufflePixels(const uint8_t *in, uint8_t *out, std::size_t count,
                   const std::array<uint8_t, 4> &from) noexcept {
  uint32_t shift[4], mask[4], opaque = 0;
  for (std::size_t b = 0; b < 4; ++b) {
    const bool isOpaque = from[b] == kOpaque;
    shift[b] = isOpaque ? 0 : shiftOf(from[b]);
    mask[b] = isOpaque ? 0 : 0xFFU;
    if (isOpaque) opaque |= 0xFFU << shiftOf(b);
  }
  const uint32_t s0 = shift[0], s1 = shift[1], s2 = shift[2], s3 = shift[3];
  const uint32_t m0 = mask[0], m1 = mask[1], m2 = mask[2], m3 = mask[3];
  for (std::size_t i = 0; i < count; ++i) {
    uint32_t pixel;
    std::memcpy(&pixel, in + 4 * i, 4);
    pixel = (pixel >> s0 & m0) << shiftOf(0) | (pixel >> s1 & m1) << shiftOf(1) |
            (pixel >> s2 & m2) << shiftOf(2) | (pixel >> s3 & m3) << shiftOf(3) | opaque;
    std::memcpy(out + 4 * i, &pixel, 4);
  }
}

void widenToARGB(const uint8_t *in, uint8_t *out, std::size_t count) noexcept {
  for (std::size_t i = 0; i < count; ++i, in += 3, out += 4) {
    out[0] = 255;
    out[1] = in[0];
    out[2] = in[1];
    out[3] = in[2];
  }
}

void widenToRGBA(const uint8_t *in, uint8_t *out, std::size_t count) noexcept {
  for (std::size_t i = 0; i < count; ++i, in += 3, out += 4) {
    out[0] = in[0];
    out[1] = in[1];
    out[2] = in[2];
    out[3] = 255;
  }
}

}  // namespace cg
