// RGB and CMYK images as colour pixels.
#include <cstring>
#include <new>

#include "graphics/color_space.h"
#include "graphics/row_readers.h"
#include "graphics/row_shuffle.h"

namespace cg {
namespace {

// How the bytes of a row get into the order of the form.
enum class Route : uint8_t { inPlace, shuffle, widen, samples, inks };

class ColorReader final : public RowReader {
 public:
  explicit ColorReader(RowTask task) noexcept : task_(std::move(task)) {
    alphaByte_ = orderOf(task_.form) == PixelOrder::argb ? 0 : 3;
    firstColor_ = alphaByte_ == 0 ? 1 : 0;
    const bool keepsForm = wantsPremultiplied(task_.form) && task_.converter.isLinear();
    const bool hasAlpha = task_.layout.hasAlpha();
    step_ = hasAlpha ? alphaStep(task_.layout.isPremultiplied(), keepsForm) : AlphaStep::keep;
    lastStep_ = alphaStep(keepsForm, hasAlpha && wantsPremultiplied(task_.form));
    if (!hasAlpha) lastStep_ = AlphaStep::keep;
    route_ = chooseRoute();
  }

  const uint8_t *rowInPlace(std::size_t row) const noexcept override {
    return route_ == Route::inPlace ? imageRow(task_.image.get(), row) : nullptr;
  }

  void read(std::size_t row, std::size_t first, std::size_t count, uint8_t *out) noexcept override {
    unpack(imageRow(task_.image.get(), row), first, count, out);
    if (!task_.converter.changesNothing()) task_.converter.convert(out, out, count);
    step(lastStep_, out, count);
  }

 private:
  Route chooseRoute() noexcept {
    const SampleLayout &layout = task_.layout;
    if (layout.colors() == 4) return Route::inks;
    if (!layout.isPlainBytes() || task_.image->layout.bitsPerPixel > 32) return Route::samples;
    if (task_.image->layout.bitsPerPixel == 24) return Route::widen;
    for (std::size_t c = 0; c < 3; ++c) from_[firstColor_ + c] = static_cast<uint8_t>(layout.colorByte(c));
    from_[alphaByte_] = layout.hasAlpha() ? static_cast<uint8_t>(layout.alphaByte()) : kOpaque;
    const bool isSame = from_ == std::array<uint8_t, 4>{0, 1, 2, 3} && step_ == AlphaStep::keep &&
                        task_.converter.changesNothing();
    return isSame ? Route::inPlace : Route::shuffle;
  }

  void step(AlphaStep step, uint8_t *pixels, std::size_t count) const noexcept {
    if (step != AlphaStep::keep) (alphaByte_ == 0 ? stepARGB : stepRGBA)(step, pixels, count);
  }

  void unpack(const uint8_t *row, std::size_t first, std::size_t count, uint8_t *out) const noexcept {
    switch (route_) {
      case Route::inPlace:
        std::memcpy(out, row + 4 * first, 4 * count);
        break;
      case Route::shuffle:
        shufflePixels(row + 4 * first, out, count, from_);
        step(step_, out, count);
        break;
      case Route::widen:
        (alphaByte_ == 0 ? widenToARGB : widenToRGBA)(row + 3 * first, out, count);
        break;
      case Route::samples:
        task_.layout.read(row, first, count, step_, out + firstColor_, 4, out + alphaByte_, 4);
        break;
      case Route::inks: {
        uint8_t noAlpha = 0;
        task_.layout.read(row, first, count, AlphaStep::keep, out, 4, &noAlpha, 0);
        break;
      }
    }
  }

  RowTask task_;
  std::size_t alphaByte_ = 0, firstColor_ = 1;
  AlphaStep step_ = AlphaStep::keep, lastStep_ = AlphaStep::keep;
  Route route_ = Route::samples;
  std::array<uint8_t, 4> from_{};
};

}  // namespace

std::unique_ptr<RowReader> makeColorReader(RowTask task) noexcept {
  return std::unique_ptr<RowReader>(new (std::nothrow) ColorReader(std::move(task)));
}

}  // namespace cg
