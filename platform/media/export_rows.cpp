#include "media/export_rows.h"

#include <algorithm>
#include <limits>

#include "graphics/image.h"
#include "media/decoded_spaces.h"

namespace media {
namespace {

using cg::RowForm;
using codecs::AlphaSupport;
using codecs::RowLayout;

bool isGrey(CGColorSpaceRef space) noexcept {
  const int type = space ? CGColorSpaceGetType(space) : -1;
  return type == kCGColorSpaceTypeDeviceGray || type == kCGColorSpaceTypeCalibratedGray;
}

bool isRgb(CGColorSpaceRef space) noexcept {
  const int type = space ? CGColorSpaceGetType(space) : -1;
  return type == kCGColorSpaceTypeDeviceRGB ||
         (type == kCGColorSpaceTypeICCBased && CGColorSpaceGetNumberOfComponents(space) == 3);
}

bool isDevice(CGColorSpaceRef space) noexcept {
  const int type = CGColorSpaceGetType(space);
  return type == kCGColorSpaceTypeDeviceGray || type == kCGColorSpaceTypeDeviceRGB;
}

// What the file will be in: a space that it can name by a profile, or the device's.
cf::Ref<CGColorSpaceRef> fileSpace(CGColorSpaceRef own, bool grey) noexcept {
  if (grey ? isGrey(own) : isRgb(own)) {
    const auto profile = cf::adopt(CGColorSpaceCopyICCProfile(own));
    if (profile || isDevice(own)) return cf::share(own);
  }
  return grey ? cf::adopt(CGColorSpaceCreateDeviceGray()) : displaySpace();
}

// Grey with alpha is written as colour with alpha where alpha is written at all.
bool isWrittenGrey(CGImageRef image, AlphaSupport support) noexcept {
  return isGrey(CGImageGetColorSpace(image)) && (support == AlphaSupport::none || !cg::imageHasAlpha(image));
}

bool isPremultiplied(CGImageRef image) noexcept {
  const CGImageAlphaInfo info = CGImageGetAlphaInfo(image);
  return info == kCGImageAlphaPremultipliedFirst || info == kCGImageAlphaPremultipliedLast;
}

RowForm formOf(bool grey, bool overWhite, bool premultiplied) noexcept {
  if (premultiplied) return RowForm::argbPremultiplied;
  if (overWhite) return grey ? RowForm::grayAlphaPremultiplied : RowForm::argbPremultiplied;
  return grey ? RowForm::gray : RowForm::rgbaStraight;
}

RowLayout layoutOf(bool grey, bool alpha) noexcept {
  if (grey) return RowLayout::grey;
  return alpha ? RowLayout::rgba : RowLayout::rgbx;
}

// What white paper adds to a premultiplied colour.
uint8_t overWhite(unsigned colour, unsigned alpha) noexcept {
  return static_cast<uint8_t>(std::min(colour + 255u - alpha, 255u));
}

void composeGrey(const uint8_t *alphaGrey, uint8_t *grey, size_t pixels) noexcept {
  for (size_t i = 0; i < pixels; ++i) grey[i] = overWhite(alphaGrey[2 * i + 1], alphaGrey[2 * i]);
}

void composeColour(const uint8_t *argb, uint8_t *rgbx, size_t pixels) noexcept {
  for (size_t i = 0; i < pixels; ++i, argb += 4, rgbx += 4) {
    rgbx[0] = overWhite(argb[1], argb[0]);
    rgbx[1] = overWhite(argb[2], argb[0]);
    rgbx[2] = overWhite(argb[3], argb[0]);
    rgbx[3] = 255;
  }
}

void putAlphaLast(const uint8_t *argb, uint8_t *rgba, size_t pixels) noexcept {
  for (size_t i = 0; i < pixels; ++i, argb += 4, rgba += 4) {
    rgba[0] = argb[1];
    rgba[1] = argb[2];
    rgba[2] = argb[3];
    rgba[3] = argb[0];
  }
}

}  // namespace

std::unique_ptr<ExportRows> ExportRows::make(CGImageRef image, AlphaSupport support) {
  const size_t width = CGImageGetWidth(image), height = CGImageGetHeight(image);
  constexpr size_t kMost = std::numeric_limits<uint32_t>::max();
  if (!width || !height || width > kMost || height > kMost) return nullptr;
  const bool grey = isWrittenGrey(image, support);
  const bool alpha = cg::imageHasAlpha(image);
  const bool onWhite = alpha && support == AlphaSupport::none;
  const bool keptPremultiplied = alpha && support == AlphaSupport::asStored && isPremultiplied(image);
  const auto space = fileSpace(CGImageGetColorSpace(image), grey);
  if (!space) return nullptr;

  auto rows = std::make_unique<ExportRows>();
  rows->width_ = static_cast<uint32_t>(width);
  rows->height_ = static_cast<uint32_t>(height);
  rows->layout_ = layoutOf(grey, alpha && !onWhite);
  rows->form_ = formOf(grey, onWhite, keptPremultiplied);
  rows->profile_ = cf::adopt(CGColorSpaceCopyICCProfile(space.get()));
  const cg::Resolution resolution = cg::imageResolution(image);
  rows->resolution_ = {resolution.x, resolution.y};
  rows->reader_ = cg::RowReader::make(image, space.get(), rows->form_);
  rows->onWhite_ = onWhite;
  if (onWhite || keptPremultiplied)
    rows->premultiplied_ = std::make_unique<uint8_t[]>(width * bytesPerPixel(rows->form_));
  if (!rows->reader_) return nullptr;
  return rows;
}

codecs::EncodeSource ExportRows::source() noexcept {
  codecs::EncodeSource source;
  source.width = width_;
  source.height = height_;
  source.layout = layout_;
  source.premultiplied = premultiplied_ && !onWhite_;
  source.resolution = resolution_;
  if (profile_) {
    source.profile = {CFDataGetBytePtr(profile_.get()), static_cast<size_t>(CFDataGetLength(profile_.get()))};
  }
  source.context = this;
  source.copyRow = [](void *self, uint32_t y, uint8_t *out) noexcept {
    return static_cast<ExportRows *>(self)->copyRow(y, out);
  };
  return source;
}

bool ExportRows::copyRow(uint32_t y, uint8_t *out) noexcept {
  if (!premultiplied_) {
    reader_->read(y, 0, width_, out);
    return true;
  }
  reader_->read(y, 0, width_, premultiplied_.get());
  if (!onWhite_) {
    putAlphaLast(premultiplied_.get(), out, width_);
  } else if (form_ == RowForm::argbPremultiplied) {
    composeColour(premultiplied_.get(), out, width_);
  } else {
    composeGrey(premultiplied_.get(), out, width_);
  }
  return true;
}

}  // namespace media
