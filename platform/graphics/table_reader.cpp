// Images with one value for each pixel: grey, or an index. There are at most 256 colours, which are converted
// once.
#include <algorithm>
#include <cstring>
#include <new>

#include "graphics/alpha_math.h"
#include "graphics/color_space.h"
#include "graphics/row_readers.h"

namespace cg {
namespace {

constexpr std::size_t kChunk = 512;

// The colours of an indexed space as pixels that a converter takes.
void spreadTable(const CGColorSpace &space, PixelOrder order, uint8_t *pixels) noexcept {
  const std::size_t components = componentsOf(space.model);
  const std::size_t bytes = components == 1 ? 1 : 4;
  const std::size_t shift = components == 3 && order == PixelOrder::argb ? 1 : 0;
  std::memset(pixels, 255, bytes * space.colors);
  for (std::size_t i = 0; i < space.colors; ++i)
    std::memcpy(pixels + bytes * i + shift, space.table.data() + components * i, components);
}

class TableReader final : public RowReader {
 public:
  explicit TableReader(RowTask task) noexcept : task_(std::move(task)) {
    const bool keepsForm = wantsPremultiplied(task_.form) && task_.converter.isLinear();
    step_ = alphaStep(task_.layout.isPremultiplied(), keepsForm);
    multipliesAfter_ = task_.layout.hasAlpha() && wantsPremultiplied(task_.form) && !keepsForm;
    fillTable();
    const bool isIndexed = task_.image->space && task_.image->space->base;
    takesBytes_ = task_.layout.isPlainBytes() && task_.layout.colors() == 1 && !task_.layout.hasAlpha() &&
                  task_.layout.bytesPerPixel() == 1 && task_.image->layout.bitsPerPixel == 8;
    isInPlace_ = takesBytes_ && task_.form == RowForm::gray && !isIndexed && task_.converter.changesNothing();
  }

  const uint8_t *rowInPlace(std::size_t row) const noexcept override {
    return isInPlace_ ? imageRow(task_.image.get(), row) : nullptr;
  }

  void read(std::size_t row, std::size_t first, std::size_t count, uint8_t *out) noexcept override {
    const uint8_t *bytes = imageRow(task_.image.get(), row);
    if (isInPlace_) {
      std::memcpy(out, bytes + first, count);
      return;
    }
    uint8_t values[kChunk], alpha[kChunk];
    std::memset(values, 0, sizeof values);  // what alpha alone has for colour
    for (std::size_t done = 0; done < count;) {
      const std::size_t part = std::min(kChunk, count - done);
      if (takesBytes_) {
        write(bytes + first + done, nullptr, part, out);
      } else if (task_.layout.readPackedValues(bytes, first + done, part, values)) {
        write(values, nullptr, part, out);
      } else {
        task_.layout.read(bytes, first + done, part, step_, values, 1, alpha, 1);
        write(values, task_.layout.hasAlpha() ? alpha : nullptr, part, out);
      }
      done += part;
      out += part * bytesPerPixel(task_.form);
    }
  }

 private:
  void fillTable() noexcept {
    const bool isIndexed = task_.layout.colors() == 1 && task_.image->space->base;
    uint8_t pixels[256 * 4] = {};
    std::size_t count = 256;
    if (isIndexed) {
      count = task_.image->space->colors;
      spreadTable(*task_.image->space, orderOf(task_.form), pixels);
    } else {
      for (std::size_t value = 0; value < 256; ++value) pixels[value] = static_cast<uint8_t>(value);
    }
    task_.converter.convert(pixels, table_, count);
  }

  // alpha is NULL for opaque pixels.
  void write(const uint8_t *values, const uint8_t *alpha, std::size_t count, uint8_t *out) const noexcept {
    switch (task_.form) {
      case RowForm::gray:
        for (std::size_t i = 0; i < count; ++i) out[i] = table_[values[i]];
        break;
      case RowForm::grayAlphaStraight:
      case RowForm::grayAlphaPremultiplied:
        writeGrayAlpha(values, alpha, count, out);
        break;
      default:
        writeColors(values, alpha, count, out);
        break;
    }
  }

  void writeGrayAlpha(const uint8_t *values, const uint8_t *alpha, std::size_t count,
                      uint8_t *out) const noexcept {
    for (std::size_t i = 0; i < count; ++i) {
      const uint8_t a = alpha ? alpha[i] : uint8_t{255};
      out[2 * i] = a;
      out[2 * i + 1] = multipliesAfter_ ? multiply(table_[values[i]], a) : table_[values[i]];
    }
  }

  void writeColors(const uint8_t *values, const uint8_t *alpha, std::size_t count,
                   uint8_t *out) const noexcept {
    for (std::size_t i = 0; i < count; ++i) std::memcpy(out + 4 * i, table_ + 4 * values[i], 4);
    if (!alpha) return;
    const bool isLast = orderOf(task_.form) == PixelOrder::rgba;
    for (std::size_t i = 0; i < count; ++i) out[4 * i + (isLast ? 3 : 0)] = alpha[i];
    if (multipliesAfter_) stepARGB(AlphaStep::multiply, out, count);
  }

  RowTask task_;
  AlphaStep step_ = AlphaStep::keep;
  bool multipliesAfter_ = false, takesBytes_ = false, isInPlace_ = false;
  alignas(4) uint8_t table_[256 * 4] = {};
};

}  // namespace

std::unique_ptr<RowReader> makeTableReader(RowTask task) noexcept {
  return std::unique_ptr<RowReader>(new (std::nothrow) TableReader(std::move(task)));
}

}  // namespace cg
