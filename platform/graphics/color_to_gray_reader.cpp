// RGB and CMYK images as grey pixels.
#include <algorithm>
#include <new>

#include "graphics/pixel_unpacker.h"
#include "graphics/row_readers.h"

namespace cg {
namespace {

constexpr std::size_t kChunk = 512;

class ColorToGrayReader final : public RowReader {
 public:
  // The weights are for values as they are stored, premultiplied or not; a profile needs them straight, and
  // so does a result that has no alpha.
  explicit ColorToGrayReader(RowTask task) noexcept
      : task_(std::move(task)),
        unpacker_(task_.layout, task_.image->layout, true,
                  alphaStep(task_.layout.isPremultiplied(), staysPremultiplied())),
        lastStep_(task_.layout.hasAlpha() ? alphaStep(staysPremultiplied(), wantsPremultiplied(task_.form))
                                          : AlphaStep::keep) {}

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
  [[nodiscard]] bool staysPremultiplied() const noexcept {
    return task_.layout.isPremultiplied() && task_.converter.isLinear() && task_.form != RowForm::gray;
  }

  void readChunk(const uint8_t *row, std::size_t first, std::size_t count, uint8_t *out) const noexcept {
    uint8_t pixels[kChunk * 4];
    unpacker_.unpack(row, first, count, pixels);
    if (task_.form == RowForm::gray)
      task_.converter.convert(pixels, out, count);
    else
      writeGrayAlpha(pixels, count, out);
  }

  void writeGrayAlpha(uint8_t *pixels, std::size_t count, uint8_t *out) const noexcept {
    uint8_t grays[kChunk], alpha[kChunk];
    const bool areInks = task_.layout.colors() == 4;
    for (std::size_t i = 0; i < count; ++i) alpha[i] = areInks ? uint8_t{255} : pixels[4 * i];
    task_.converter.convert(pixels, grays, count);
    stepPlane(lastStep_, grays, alpha, count);
    for (std::size_t i = 0; i < count; ++i) {
      out[2 * i] = alpha[i];
      out[2 * i + 1] = grays[i];
    }
  }

  RowTask task_;
  PixelUnpacker unpacker_;
  AlphaStep lastStep_;
};

}  // namespace

std::unique_ptr<RowReader> makeColorToGrayReader(RowTask task) noexcept {
  return std::unique_ptr<RowReader>(new (std::nothrow) ColorToGrayReader(std::move(task)));
}

}  // namespace cg
