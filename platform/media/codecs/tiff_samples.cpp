#include "media/codecs/tiff_samples.h"

namespace codecs {
namespace {

// Widths that divide a byte.
template <unsigned bits>
void unpackParts(const uint8_t *packed, size_t count, uint16_t *out, size_t step) noexcept {
  constexpr unsigned kPerByte = 8 / bits, kMask = (1u << bits) - 1;
  for (size_t i = 0; i < count; ++i, out += step) {
    const unsigned shift = 8 - bits - static_cast<unsigned>(i % kPerByte) * bits;
    *out = static_cast<uint16_t>(packed[i / kPerByte] >> shift & kMask);
  }
}

void unpackStream(const uint8_t *packed, unsigned bits, size_t count, uint16_t *out, size_t step) noexcept {
  uint32_t held = 0;
  unsigned heldBits = 0;
  const uint32_t mask = (1u << bits) - 1;
  for (size_t i = 0; i < count; ++i, out += step) {
    while (heldBits < bits) {
      held = held << 8 | *packed++;
      heldBits += 8;
    }
    heldBits -= bits;
    *out = static_cast<uint16_t>(held >> heldBits & mask);
  }
}

}  // namespace

void unpackSamples(const uint8_t *packed, unsigned bits, size_t count, uint16_t *out, size_t step) noexcept {
  switch (bits) {
    case 1:
      return unpackParts<1>(packed, count, out, step);
    case 2:
      return unpackParts<2>(packed, count, out, step);
    case 4:
      return unpackParts<4>(packed, count, out, step);
    case 8:
      return unpackParts<8>(packed, count, out, step);
    default:
      return unpackStream(packed, bits, count, out, step);
  }
}

}  // namespace codecs
