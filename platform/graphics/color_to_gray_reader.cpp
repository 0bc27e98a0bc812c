// RGB and CMYK images as grey pixels.
#include <algorithm>
#include <new>

#include "graphics/alpha_math.h"
#include "graphics/row_readers.h"

namespace cg {
namespace {

constexpr std::size_t kChunk = 512;

class ColorToGrayReader final : public RowReader {
 public:
  explicit ColorToGrayReader(RowTask task) noexcept : task_(std::move(task)) {
    // The weights are for values as they are stored, premultiplied or not; a profile needs them straight.
    // Without alpha in the result there is nothing to be multiplied by.
    const bool isPremultiplied = task_.layout.isPremultiplied();
    const bool weighsStored = task_.converter.isLinear() && task_.form != RowForm::gray;
    unpackStep_ = isPremultiplied && !weighsStored ? AlphaStep::divide : AlphaStep::keep;
    lastStep_ = alphaStep(isPremultiplied && weighsStored, wantsPremultiplied(task_.form));
  }

  const uint8_t *rowInPlace(std::size_t) const noexcept override { return nullptr; }

  void read(std::size_t row, std::size_t first, std::size_t count, uint8_t *out) noexcept override {
    const uint8_t *bytes = imageRow(task_.image.get(), row);
    for (std::size_t done = 0; done < count;) {
      const std::size_t part = std::min(kChunk, count - done);
      readChunk(bytes, first + done, part, out);
      done += part;
      out += part * bytesPerPixel(task_.form);
    }
  }

 private:
  void readChunk(const uint8_t *row, std::size_t first, std::size_t count, uint8_t *out) const noexcept {
    uint8_t pixels[kChunk * 4], grays[kChunk], alpha[kChunk];
    const std::size_t firstColor = task_.layout.colors() == 3 ? 1 : 0;
    task_.layout.read(row, first, count, unpackStep_, pixels + firstColor, 4, alpha, 1);
    if (task_.form == RowForm::gray) {
      task_.converter.convert(pixels, out, count);
      return;
    }
    task_.converter.convert(pixels, grays, count);
    stepPlane(lastStep_, grays, alpha, count);
    for (std::size_t i = 0; i < count; ++i) {
      out[2 * i] = alpha[i];
      out[2 * i + 1] = grays[i];
    }
  }

  RowTask task_;
  AlphaStep unpackStep_ = AlphaStep::keep, lastStep_ = AlphaStep::keep;
};

}  // namespace

std::unique_ptr<RowReader> makeColorToGrayReader(RowTask task) noexcept {
  return std::unique_ptr<RowReader>(new (std::nothrow) ColorToGrayReader(std::move(task)));
}

}  // namespace cg
