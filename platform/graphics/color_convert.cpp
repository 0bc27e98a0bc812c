#include "graphics/color_convert.h"

#include <cstring>

#include "graphics/alpha_math.h"
#include "graphics/color_space.h"
#include "graphics/pixel_words.h"

namespace cg {
namespace {

constexpr std::size_t firstColor(PixelOrder order) noexcept { return order == PixelOrder::argb ? 1 : 0; }
constexpr std::size_t alphaByte(PixelOrder order) noexcept { return order == PixelOrder::argb ? 0 : 3; }

void fillAlpha(uint8_t *pixels, std::size_t count, PixelOrder order) noexcept {
  uint8_t *alpha = pixels + alphaByte(order);
  for (std::size_t i = 0; i < count; ++i) alpha[4 * i] = 255;
}

void repeatGray(const uint8_t *grays, uint8_t *out, std::size_t count, PixelOrder order) noexcept {
  for (std::size_t i = 0; i < count; ++i) std::memset(out + 4 * i, grays[i], 4);
  fillAlpha(out, count, order);
}

// Opaque, because inks have no alpha.
void mixInks(uint8_t *pixels, std::size_t count, PixelOrder order) noexcept {
  for (uint8_t *pixel = pixels; pixel != pixels + 4 * count; pixel += 4) {
    uint8_t light[3];
    for (std::size_t c = 0; c < 3; ++c)
      light[c] = multiply(static_cast<uint8_t>(255 - pixel[c]), static_cast<uint8_t>(255 - pixel[3]));
    std::memcpy(pixel + firstColor(order), light, 3);
    pixel[alphaByte(order)] = 255;
  }
}

void weighColors(const uint8_t *pixels, uint8_t *out, std::size_t count, PixelOrder order) noexcept {
  const std::size_t first = firstColor(order);
  const int red = shiftOfByte(first), green = shiftOfByte(first + 1), blue = shiftOfByte(first + 2);
  for (std::size_t i = 0; i < count; ++i) {
    const uint32_t pixel = loadWord(pixels + 4 * i);
    out[i] = grayOf(static_cast<uint8_t>(pixel >> red), static_cast<uint8_t>(pixel >> green),
                    static_cast<uint8_t>(pixel >> blue));
  }
}

}  // namespace

std::optional<ColorConverter> ColorConverter::make(CGColorSpaceRef from, CGColorSpaceRef to, PixelOrder order,
                                                   CGColorRenderingIntent intent) noexcept {
  if (!from || !to || from->base || to->base) return std::nullopt;
  ColorConverter made;
  made.from_ = from->model;
  made.to_ = to->model;
  made.order_ = order;
  const bool found = to->model == ColorModel::rgb    ? made.planToRGB(from, to, intent)
                     : to->model == ColorModel::gray ? made.planToGray(from, to, intent)
                                                     : false;
  return found ? std::optional(std::move(made)) : std::nullopt;
}

bool ColorConverter::findTransform(CFDataRef from, PixelOrder fromOrder, CFDataRef to, PixelOrder toOrder,
                                   CGColorRenderingIntent intent) noexcept {
  if (!from || !to) return false;
  transform_ = colorTransform({from, fromOrder}, {to, toOrder}, intent);
  return transform_ != nullptr;
}

bool ColorConverter::planToRGB(CGColorSpaceRef from, CGColorSpaceRef to,
                               CGColorRenderingIntent intent) noexcept {
  CFDataRef source = from->profile.get(), target = to->profile.get();
  switch (from->model) {
    case ColorModel::gray:
      return !source || findTransform(source, PixelOrder::gray, target, order_, intent);
    case ColorModel::rgb:
      return sameColors(from, to) || findTransform(source, order_, target, order_, intent);
    default:
      if (source) return findTransform(source, PixelOrder::cmyk, target, order_, intent);
      mixesInks_ = true;
      source = sharedSRGBProfile();
      return source && (CFEqual(source, target) || findTransform(source, order_, target, order_, intent));
  }
}

bool ColorConverter::planToGray(CGColorSpaceRef from, CGColorSpaceRef to,
                                CGColorRenderingIntent intent) noexcept {
  CFDataRef source = from->profile.get(), target = to->profile.get();
  if (from->model == ColorModel::gray) {
    if (!source || !target || sameColors(from, to)) return true;
    return findTransform(source, PixelOrder::gray, target, PixelOrder::gray, intent);
  }
  const bool areInks = from->model == ColorModel::cmyk;
  mixesInks_ = areInks && !source;
  weighsColors_ = !target;
  if (target) {
    const PixelOrder order = areInks && source ? PixelOrder::cmyk : order_;
    return findTransform(source ? source : sharedSRGBProfile(), order, target, PixelOrder::gray, intent);
  }
  // The weights are for values as they are stored; only inks with a profile have to become RGB before.
  return !areInks || !source || findTransform(source, PixelOrder::cmyk, sharedSRGBProfile(), order_, intent);
}

bool ColorConverter::changesNothing() const noexcept {
  return from_ == to_ && !transform_ && !mixesInks_ && !weighsColors_;
}

void ColorConverter::convert(uint8_t *pixels, uint8_t *out, std::size_t count) const noexcept {
  const std::size_t outBytes = (to_ == ColorModel::gray ? 1 : 4) * count;
  if (mixesInks_) mixInks(pixels, count, order_);
  if (weighsColors_) {
    if (transform_) transform_->convert(pixels, pixels, count);
    weighColors(pixels, out, count, order_);
  } else if (transform_) {
    transform_->convert(pixels, out, count);
    const bool hadAlpha = from_ == ColorModel::rgb || mixesInks_;
    if (to_ != ColorModel::rgb) return;
    if (!hadAlpha)
      fillAlpha(out, count, order_);
    else if (out != pixels)
      for (std::size_t i = alphaByte(order_); i < outBytes; i += 4) out[i] = pixels[i];
  } else if (from_ == ColorModel::gray && to_ == ColorModel::rgb) {
    repeatGray(pixels, out, count, order_);
  } else if (out != pixels) {
    std::memcpy(out, pixels, outBytes);
  }
}

}  // namespace cg
