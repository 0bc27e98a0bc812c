#include "graphics/image_rows.h"

#include "graphics/color_space.h"
#include "graphics/row_readers.h"

namespace cg {
namespace {

bool fits(CGColorSpaceRef space, RowForm form) noexcept {
  return space && space->model == (isColorForm(form) ? ColorModel::rgb : ColorModel::gray);
}

// Alpha alone comes without a space; what colour it has is none, in any grey.
cf::Ref<CGColorSpaceRef> sourceSpace(CGImageRef image) noexcept {
  const CGColorSpaceRef own = image->layout.alphaInfo() == kCGImageAlphaOnly ? nullptr : image->space.get();
  return own ? cf::share(colorsSpace(own)) : cf::adopt(CGColorSpaceCreateDeviceGray());
}

cf::Ref<CGColorSpaceRef> targetSpace(CGColorSpaceRef own, CGColorSpaceRef asked, RowForm form) noexcept {
  if (asked) return cf::share(asked);
  if (fits(own, form)) return cf::share(own);
  return cf::adopt(isColorForm(form) ? CGColorSpaceCreateDeviceRGB() : CGColorSpaceCreateDeviceGray());
}

}  // namespace

bool imageHasAlpha(CGImageRef image) noexcept { return image && SampleLayout::hasAlpha(image->layout); }

std::unique_ptr<RowReader> RowReader::make(CGImageRef image, CGColorSpaceRef space, RowForm form) noexcept {
  if (!image) return nullptr;
  const auto source = sourceSpace(image);
  const auto target = source ? targetSpace(source.get(), space, form) : nullptr;
  if (!target || target->base || !fits(target.get(), form)) return nullptr;
  auto converter = ColorConverter::make(source.get(), target.get(), orderOf(form), image->intent);
  if (!converter) return nullptr;
  RowTask task{cf::share(image), SampleLayout(*image), std::move(*converter), form};
  if (task.layout.colors() <= 1) return makeTableReader(std::move(task));
  return isColorForm(form) ? makeColorReader(std::move(task)) : makeColorToGrayReader(std::move(task));
}

}  // namespace cg
