#include "media/world_rows.h"

#include <algorithm>
#include <cstring>

namespace media {
namespace {

using codecs::PixelLayout;
using RowFunction = void (*)(const uint8_t *from, uint8_t *to, size_t pixels) noexcept;

// value * alpha / 255, rounded to nearest; exact for all bytes.
uint8_t times(unsigned value, unsigned alpha) noexcept {
  const unsigned product = value * alpha + 128;
  return static_cast<uint8_t>((product + (product >> 8)) >> 8);
}

void copyGrey(const uint8_t *from, uint8_t *to, size_t pixels) noexcept { std::memcpy(to, from, pixels); }
void copyColour(const uint8_t *from, uint8_t *to, size_t pixels) noexcept {
  std::memcpy(to, from, 4 * pixels);
}

void repeatGrey(const uint8_t *from, uint8_t *to, size_t pixels) noexcept {
  for (size_t i = 0; i < pixels; ++i, to += 4) {
    to[0] = 255;
    to[1] = to[2] = to[3] = from[i];
  }
}

void weighColour(const uint8_t *from, uint8_t *to, size_t pixels) noexcept {
  for (size_t i = 0; i < pixels; ++i, from += 4) {
    to[i] = static_cast<uint8_t>((30u * from[1] + 59u * from[2] + 11u * from[3] + 50u) / 100u);
  }
}

void premultiply(const uint8_t *from, uint8_t *to, size_t pixels) noexcept {
  for (size_t i = 0; i < 4 * pixels; i += 4) {
    const unsigned alpha = from[i];
    to[i] = from[i];
    for (size_t channel = 1; channel < 4; ++channel) to[i + channel] = times(from[i + channel], alpha);
  }
}

void dropAlpha(const uint8_t *from, uint8_t *to, size_t pixels) noexcept {
  copyColour(from, to, pixels);
  for (size_t i = 0; i < pixels; ++i) to[4 * i] = 255;
}

RowFunction rowFunction(uint32_t worldFormat, PixelLayout layout, AlphaStyle style) noexcept {
  const bool grey = layout == PixelLayout::grey8;
  if (worldFormat == k8IndexedGrayPixelFormat) return grey ? copyGrey : weighColour;
  if (grey) return repeatGrey;
  if (layout == PixelLayout::xrgb32 || style == AlphaStyle::straight) return copyColour;
  return style == AlphaStyle::skipped ? dropAlpha : premultiply;
}

}  // namespace

void drawInto(const OffscreenWorld &world, const codecs::DecodedImage &image, AlphaStyle style) noexcept {
  const RowFunction drawRow = rowFunction(world.pixelFormat, image.layout, style);
  const auto width = static_cast<uint32_t>(world.bounds.right - world.bounds.left);
  const auto height = static_cast<uint32_t>(world.bounds.bottom - world.bounds.top);
  const size_t pixels = std::min(width, image.width);
  for (uint32_t y = 0; y < std::min(height, image.height); ++y) {
    drawRow(image.row(y), world.pixels + y * world.rowBytes, pixels);
  }
}

}  // namespace media
