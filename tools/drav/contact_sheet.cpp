#include "contact_sheet.h"

#include <algorithm>
#include <cmath>

#include "blend_modes.h"
#include "blending.h"
#include "drawing.h"
#include "font.h"

namespace {

constexpr long kColumns = 6;
constexpr std::string_view kSource = "Source", kDestination = "Destination";
constexpr Ink kPaper{0x1b, 0x1e, 0x27}, kTitle{0xff, 0xff, 0xff}, kLabel{0xd4, 0xd9, 0xe4},
    kQuiet{0x8b, 0x93, 0xa7};
constexpr Ink kLightCheck{0xff, 0xff, 0xff}, kDarkCheck{0xe2, 0xe5, 0xec};

// The measures of a sheet. Letters grow with the pictures, and no cell is narrower than its label.
struct Layout {
  long cellWidth, cellHeight;
  long pictureWidth;
  long scale;  // of the letters
  long gap, check;

  long labelHeight() const noexcept { return kLineHeight * scale + gap / 2; }
  long rowHeight() const noexcept { return cellHeight + gap + labelHeight(); }

  Area sheet() const noexcept {
    const long rows = (static_cast<long>(blendModeNames().size()) + kColumns - 1) / kColumns;
    return {0, 0, kColumns * (cellWidth + gap) + gap, (rows + 1) * rowHeight() + 2 * gap};
  }
  // Row 0 is the heading, set off a little.
  Area cell(long column, long row) const noexcept {
    return {gap + column * (cellWidth + gap), gap + row * rowHeight() + (row > 0 ? gap : 0), cellWidth,
            cellHeight};
  }
};

long widestLabel(long scale) {
  long widest = textWidth(kDestination, scale);
  for (const std::string_view name : blendModeNames()) widest = std::max(widest, textWidth(name, scale));
  return widest;
}

Layout layoutFor(const Area &picture, long side) {
  const long scale = std::max(1L, side / 64);
  return {std::max(picture.width, widestLabel(scale)),
          picture.height,
          picture.width,
          scale,
          std::max(4L, side / 12),
          std::max(2L, side / 16)};
}

// The image's size with its longer side cut down to `side`, or as it is where it is smaller.
Area fitted(DRAVCFImageRef image, long width, long height) noexcept {
  const Area own = boundsOf(image);
  const double factor = std::min({1.0, static_cast<double>(width) / static_cast<double>(own.width),
                                  static_cast<double>(height) / static_cast<double>(own.height)});
  const auto scaled = [factor](long side) {
    return std::max(1L, std::lround(static_cast<double>(side) * factor));
  };
  return {0, 0, scaled(own.width), scaled(own.height)};
}

// The source at the destination's size. One of another shape stands in the middle of transparency.
Image centred(Image source, const Area &frame) {
  const Area size = fitted(source.get(), frame.width, frame.height);
  Image small = resized(std::move(source), size.width, size.height);
  if (size == frame) return small;
  Image framed = blankImage(frame, true);
  blendAt(small.get(), framed.get(), {(frame.width - size.width) / 2, (frame.height - size.height) / 2},
          kDRAVCFBlendModeCopySrc);
  return framed;
}

class Sheet {
 public:
  explicit Sheet(const Layout &layout) : layout_(layout), image_(blankImage(layout.sheet(), true)) {
    fill(pixels(), layout.sheet(), kPaper);
  }

  void showPicture(DRAVCFImageRef picture, const Area &cell, std::string_view label) {
    Area place = cell;
    place.width = layout_.pictureWidth;
    place.x += (cell.width - place.width) / 2;
    fillChecks(pixels(), place, layout_.check, kLightCheck, kDarkCheck);
    blendAt(picture, image_.get(), {place.x, place.y}, kDRAVCFBlendModeSrcOver);
    const long left = cell.x + (cell.width - textWidth(label, layout_.scale)) / 2;
    write({left, cell.y + cell.height + layout_.gap / 2}, label, kLabel, layout_.scale);
  }

  void write(const Place &at, std::string_view text, Ink ink, long scale) {
    drawText(pixels(), at, text, ink, scale);
  }

  Image finish() {
    DRAVCFImageInvalidateImage(image_.get());
    return relabelled(image_.get(), kCGImageAlphaNoneSkipFirst);
  }

 private:
  Pixels pixels() { return pixelsOf(image_.get()); }

  Layout layout_;
  Image image_;
};

Image blended(DRAVCFImageRef source, DRAVCFImageRef destination, DRAVCFBlendMode mode) {
  Image copy = cf::adopt(DRAVCFImageCreateCopy(nullptr, destination));
  if (copy) blendAt(source, copy.get(), {}, mode);
  return copy;
}

void writeHeading(Sheet &sheet, const Layout &layout, const SheetText &text) {
  const Area cell = layout.cell(2, 0);
  const long line = (kLineHeight + 3) * layout.scale;
  Place at{cell.x + layout.gap / 2, cell.y + cell.height / 2 - 2 * line};
  sheet.write(at, "24 blend modes", kTitle, 2 * layout.scale);
  at.y += 2 * line + line / 2;
  sheet.write(at, "source  " + text.source, kQuiet, layout.scale);
  at.y += line;
  sheet.write(at, "over  " + text.destination, kQuiet, layout.scale);
}

}  // namespace

Image makeContactSheet(Image source, Image destination, const SheetText &text, long cellSide) {
  const Area frame = fitted(destination.get(), cellSide, cellSide);
  const Image under = resized(forBlending(std::move(destination)), frame.width, frame.height);
  const Image over = centred(forBlending(std::move(source)), frame);
  const Layout layout = layoutFor(frame, cellSide);
  Sheet sheet(layout);
  sheet.showPicture(over.get(), layout.cell(0, 0), kSource);
  sheet.showPicture(under.get(), layout.cell(1, 0), kDestination);
  writeHeading(sheet, layout, text);
  for (DRAVCFBlendMode mode = 0; mode < blendModeNames().size(); ++mode) {
    const Image result = blended(over.get(), under.get(), mode);
    sheet.showPicture(result.get(), layout.cell(mode % kColumns, mode / kColumns + 1),
                      blendModeNames()[mode]);
  }
  return sheet.finish();
}
