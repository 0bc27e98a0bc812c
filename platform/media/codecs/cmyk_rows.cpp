#include "media/codecs/cmyk_rows.h"

#include "media/codecs/icc.h"

namespace codecs {
namespace {

// value * paper / 255, rounded to nearest.
uint8_t scaled(unsigned value, unsigned paper) noexcept {
  return static_cast<uint8_t>((value * paper + 127) / 255);
}

}  // namespace

CmykRows::CmykRows(Bytes profile, bool inverted, const CGImageDecodeLimits &limits) noexcept
    : flip_(inverted ? 0 : 255) {
  if (!isProfileFor(profile, ProfileColours::cmyk, limits)) return;
  engine_ = ToSrgb::make(profile, inverted ? ProfileInput::cmykInverted : ProfileInput::cmyk);
}

void CmykRows::convert(const uint8_t *cmyk, uint8_t *xrgb, size_t count) const noexcept {
  if (engine_) return engine_.convert(cmyk, xrgb, count);
  for (size_t i = 0; i < count; ++i, cmyk += 4, xrgb += 4) {
    const unsigned paper = cmyk[3] ^ flip_;
    xrgb[0] = 255;
    xrgb[1] = scaled(cmyk[0] ^ flip_, paper);
    xrgb[2] = scaled(cmyk[1] ^ flip_, paper);
    xrgb[3] = scaled(cmyk[2] ^ flip_, paper);
  }
}

}  // namespace codecs
