// Source over destination, for every pair of working form and surface layout, pixel by pixel.
//
// Each component is s + d * (255 - sa) / 255, rounded once: s is exact, and since 255 is odd there is no tie.
#include <algorithm>
#include <array>

#include "graphics/alpha_math.h"
#include "graphics/compose.h"
#include "graphics/surface.h"

namespace cg {
namespace {

// A pixel on its way: components in the order of the working forms.
struct Pixel {
  uint8_t a, r, g, b;
};

// Where the components of a surface's pixel lie. Without alpha its byte is written 255, and reads as 255.
template <int kA, int kR, int kG, int kB, bool kHasAlpha>
struct Order {
  static Pixel load(const uint8_t *at) noexcept {
    return {kHasAlpha ? at[kA] : uint8_t{255}, at[kR], at[kG], at[kB]};
  }
  static void store(uint8_t *at, Pixel pixel) noexcept {
    at[kA] = kHasAlpha ? pixel.a : uint8_t{255};
    at[kR] = pixel.r;
    at[kG] = pixel.g;
    at[kB] = pixel.b;
  }
};
using ARGB = Order<0, 1, 2, 3, true>;
using RGBA = Order<3, 0, 1, 2, true>;
using XRGB = Order<0, 1, 2, 3, false>;
using RGBX = Order<3, 0, 1, 2, false>;

// The sum leaves a byte only where an image claims more colour than alpha.
constexpr uint8_t over(uint8_t source, uint8_t destination, uint8_t uncovered) noexcept {
  return static_cast<uint8_t>(std::min(source + multiply(destination, uncovered), 255));
}

constexpr Pixel over(Pixel s, Pixel d) noexcept {
  const auto uncovered = static_cast<uint8_t>(255 - s.a);
  return {over(s.a, d.a, uncovered), over(s.r, d.r, uncovered), over(s.g, d.g, uncovered),
          over(s.b, d.b, uncovered)};
}

constexpr Pixel premultiplied(Pixel p) noexcept {
  return {p.a, multiply(p.r, p.a), multiply(p.g, p.a), multiply(p.b, p.a)};
}

constexpr Pixel straight(Pixel p) noexcept {
  return {p.a, divide(p.r, p.a), divide(p.g, p.a), divide(p.b, p.a)};
}

// Surfaces that hold premultiplied pixels, or opaque ones.
template <class Destination>
void composePremultiplied(const uint8_t *source, uint8_t *destination, size_t pixels) {
  for (size_t i = 0; i < pixels; ++i, source += 4, destination += 4) {
    Destination::store(destination, over(ARGB::load(source), Destination::load(destination)));
  }
}

// Surfaces that hold straight pixels. Where the source decides alone its own bytes are kept.
template <class Destination, bool kSourceIsStraight>
void composeStraight(const uint8_t *source, uint8_t *destination, size_t pixels) {
  for (size_t i = 0; i < pixels; ++i, source += 4, destination += 4) {
    const Pixel s = ARGB::load(source);
    const Pixel d = Destination::load(destination);
    if (s.a == 255 || d.a == 0) {
      Destination::store(destination, kSourceIsStraight ? s : straight(s));
    } else if (s.a != 0) {
      Destination::store(destination,
                         straight(over(kSourceIsStraight ? premultiplied(s) : s, premultiplied(d))));
    }
  }
}

void composeGray(const uint8_t *source, uint8_t *destination, size_t pixels) {
  for (size_t i = 0; i < pixels; ++i, source += 2) {
    destination[i] = over(source[1], destination[i], static_cast<uint8_t>(255 - source[0]));
  }
}

void composeAlpha(const uint8_t *source, uint8_t *destination, size_t pixels) {
  for (size_t i = 0; i < pixels; ++i, source += 4) {
    destination[i] = over(source[0], destination[i], static_cast<uint8_t>(255 - source[0]));
  }
}

void copyGray(const uint8_t *source, uint8_t *destination, size_t pixels) {
  std::copy_n(source, pixels, destination);
}

}  // namespace

ComposeRow plainComposeRow(SurfaceLayout layout, RowForm form) noexcept {
  const bool isStraight = form == RowForm::argbStraight;
  switch (layout) {
    case SurfaceLayout::gray:
      return form == RowForm::gray ? copyGray : composeGray;
    case SurfaceLayout::rgbaPremultiplied:
      return composePremultiplied<RGBA>;
    case SurfaceLayout::argbPremultiplied:
      return composePremultiplied<ARGB>;
    case SurfaceLayout::rgba:
      return isStraight ? composeStraight<RGBA, true> : composeStraight<RGBA, false>;
    case SurfaceLayout::argb:
      return isStraight ? composeStraight<ARGB, true> : composeStraight<ARGB, false>;
    case SurfaceLayout::rgbx:
      return composePremultiplied<RGBX>;
    case SurfaceLayout::xrgb:
      return composePremultiplied<XRGB>;
    case SurfaceLayout::alpha:
      return composeAlpha;
  }
  return nullptr;
}

}  // namespace cg
