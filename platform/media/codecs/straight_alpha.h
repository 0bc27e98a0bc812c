// Colours that were multiplied by their alpha, divided by it again.
#pragma once

#include <algorithm>
#include <cstdint>

namespace codecs {

// colour / alpha as a byte, rounded to nearest. Both have the same width, so that it cancels out.
inline uint8_t straightByte(uint32_t colour, uint32_t alpha) noexcept {
  if (alpha == 0) return 0;
  return static_cast<uint8_t>(std::min((colour * 255 + alpha / 2) / alpha, 255u));
}

}  // namespace codecs
