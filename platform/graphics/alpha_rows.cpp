#include "graphics/alpha_rows.h"

#include "graphics/alpha_math.h"

namespace cg {
namespace {

template <std::size_t kAlpha, std::size_t kColor, class Change>
void changeColors(uint8_t *pixels, std::size_t count, Change change) noexcept {
  for (std::size_t i = 0; i < count; ++i) {
    uint8_t *pixel = pixels + 4 * i;
    const uint8_t alpha = pixel[kAlpha];
    if (alpha == 255) continue;  // most pixels of most pictures
    for (std::size_t c = kColor; c < kColor + 3; ++c) pixel[c] = change(pixel[c], alpha);
  }
}

template <std::size_t kAlpha, std::size_t kColor>
void stepPixels(AlphaStep step, uint8_t *pixels, std::size_t count) noexcept {
  if (step == AlphaStep::multiply) changeColors<kAlpha, kColor>(pixels, count, multiply);
  if (step == AlphaStep::divide) changeColors<kAlpha, kColor>(pixels, count, divide);
}

}  // namespace

void stepARGB(AlphaStep step, uint8_t *pixels, std::size_t count) noexcept {
  stepPixels<0, 1>(step, pixels, count);
}

void stepRGBA(AlphaStep step, uint8_t *pixels, std::size_t count) noexcept {
  stepPixels<3, 0>(step, pixels, count);
}

void stepPlane(AlphaStep step, uint8_t *values, const uint8_t *alpha, std::size_t count) noexcept {
  if (step == AlphaStep::multiply)
    for (std::size_t i = 0; i < count; ++i) values[i] = multiply(values[i], alpha[i]);
  if (step == AlphaStep::divide)
    for (std::size_t i = 0; i < count; ++i) values[i] = divide(values[i], alpha[i]);
}

}  // namespace cg
