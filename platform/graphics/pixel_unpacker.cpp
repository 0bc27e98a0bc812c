#include "graphics/pixel_unpacker.h"

#include <cstring>

#include "graphics/row_shuffle.h"

namespace cg {

PixelUnpacker::PixelUnpacker(const SampleLayout &layout, const ImageLayout &image, bool alphaFirst,
                             AlphaStep step) noexcept
    : layout_(layout),
      alphaFirst_(alphaFirst),
      step_(layout.hasAlpha() ? step : AlphaStep::keep),
      route_(chooseRoute(image.bitsPerPixel)) {}

PixelUnpacker::Route PixelUnpacker::chooseRoute(std::size_t bitsPerPixel) noexcept {
  if (layout_.colors() == 4) return Route::inks;
  if (!layout_.isPlainBytes() || bitsPerPixel > 32) return Route::samples;
  if (bitsPerPixel == 24) return Route::widen;
  const std::size_t firstColor = alphaFirst_ ? 1 : 0;
  for (std::size_t c = 0; c < 3; ++c) from_[firstColor + c] = static_cast<uint8_t>(layout_.colorByte(c));
  from_[alphaFirst_ ? 0 : 3] = layout_.hasAlpha() ? static_cast<uint8_t>(layout_.alphaByte()) : kOpaque;
  const bool isSame = from_ == std::array<uint8_t, 4>{0, 1, 2, 3} && step_ == AlphaStep::keep;
  return isSame ? Route::none : Route::shuffle;
}

void PixelUnpacker::unpack(const uint8_t *row, std::size_t first, std::size_t count,
                           uint8_t *out) const noexcept {
  switch (route_) {
    case Route::none:
      std::memcpy(out, row + 4 * first, 4 * count);
      break;
    case Route::shuffle:
      shufflePixels(row + 4 * first, out, count, from_);
      (alphaFirst_ ? stepARGB : stepRGBA)(step_, out, count);
      break;
    case Route::widen:
      widenPixels(row + 3 * first, out, count, alphaFirst_);
      break;
    case Route::samples:
      layout_.read(row, first, count, step_, out + (alphaFirst_ ? 1 : 0), 4, out + (alphaFirst_ ? 0 : 3), 4);
      break;
    case Route::inks: {
      uint8_t noAlpha = 0;
      layout_.read(row, first, count, AlphaStep::keep, out, 4, &noAlpha, 0);
      break;
    }
  }
}

}  // namespace cg
