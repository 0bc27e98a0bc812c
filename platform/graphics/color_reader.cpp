// RGB and CMYK images as colour pixels.
#include <cstring>
#include <new>

#include "graphics/pixel_unpacker.h"
#include "graphics/row_readers.h"

namespace cg {
namespace {

class ColorReader final : public RowReader {
 public:
  explicit ColorReader(RowTask task) noexcept
      : task_(std::move(task)),
        converts_(!task_.converter.changesNothing()),
        unpacker_(task_.layout, task_.image->layout, isAlphaFirst(),
                  alphaStep(task_.layout.isPremultiplied(), keepsForm())) {
    if (task_.layout.hasAlpha() && wantsPremultiplied(task_.form) && !keepsForm())
      lastStep_ = AlphaStep::multiply;
  }

  const uint8_t *rowInPlace(std::size_t row) const noexcept override {
    return unpacker_.changesNothing() && !converts_ ? imageRow(task_.image.get(), row) : nullptr;
  }

  void read(std::size_t row, std::size_t first, std::size_t count, uint8_t *out) noexcept override {
    unpacker_.unpack(imageRow(task_.image.get(), row), first, count, out);
    if (converts_) task_.converter.convert(out, out, count);
    (isAlphaFirst() ? stepARGB : stepRGBA)(lastStep_, out, count);
  }

 private:
  [[nodiscard]] bool isAlphaFirst() const noexcept { return orderOf(task_.form) == PixelOrder::argb; }
  // Whether colours are in the form's own state before they are converted, or have to be straight for it.
  [[nodiscard]] bool keepsForm() const noexcept {
    return wantsPremultiplied(task_.form) && task_.converter.isLinear();
  }

  RowTask task_;
  bool converts_;
  PixelUnpacker unpacker_;
  AlphaStep lastStep_ = AlphaStep::keep;
};

}  // namespace

std::unique_ptr<RowReader> makeColorReader(RowTask task) noexcept {
  return std::unique_ptr<RowReader>(new (std::nothrow) ColorReader(std::move(task)));
}

}  // namespace cg
