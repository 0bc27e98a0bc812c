// Samples of any width, brought to numbers that fill whole bytes.
#pragma once

#include <cstddef>
#include <cstdint>

namespace codecs {

// Spreads `count` samples of 1 to 15 bits, packed from each byte's top bit on, over 16-bit numbers that
// lie `step` apart. REQUIRES: (count * bits + 7) / 8 readable bytes.
void unpackSamples(const uint8_t *packed, unsigned bits, size_t count, uint16_t *out, size_t step) noexcept;

}  // namespace codecs
