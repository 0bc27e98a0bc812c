// The kinds of row readers, by what a pixel is made of.
#pragma once

#include <memory>

#include "graphics/color_convert.h"
#include "graphics/image_rows.h"
#include "graphics/row_samples.h"

namespace cg {

constexpr bool isColorForm(RowForm form) noexcept { return bytesPerPixel(form) == 4; }
constexpr bool wantsPremultiplied(RowForm form) noexcept {
  return form == RowForm::grayAlphaPremultiplied || form == RowForm::argbPremultiplied;
}
constexpr PixelOrder orderOf(RowForm form) noexcept {
  return form == RowForm::rgbaStraight ? PixelOrder::rgba : PixelOrder::argb;
}

// What every reader knows.
struct RowTask {
  cf::Ref<CGImageRef> image;
  SampleLayout layout;
  ColorConverter converter;
  RowForm form;
};

// Each gives NULL if memory runs out.
std::unique_ptr<RowReader> makeTableReader(RowTask task) noexcept;        // grey, indices, or alpha alone
std::unique_ptr<RowReader> makeColorReader(RowTask task) noexcept;        // RGB and CMYK to colour forms
std::unique_ptr<RowReader> makeColorToGrayReader(RowTask task) noexcept;  // RGB and CMYK to grey forms

}  // namespace cg
