// The loops behind the four buffer functions, compiled for every vector width and picked at run time.
#pragma once

#include <cstddef>
#include <cstdint>

namespace drav::pixel {

enum class AlphaByte { first, last };  // ARGB and RGBA

// Multiplies the three colour bytes of each 4-byte pixel by its alpha, in place.
void premultiplyPixels(uint8_t *pixels, size_t pixelCount, AlphaByte alpha) noexcept;

// Divides them by it, in place. Gives whether some colour byte was above its alpha; it is then 255, or 0
// where the alpha is 0.
bool unpremultiplyPixels(uint8_t *pixels, size_t pixelCount, AlphaByte alpha) noexcept;

}  // namespace drav::pixel
