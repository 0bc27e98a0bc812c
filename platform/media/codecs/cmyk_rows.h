// CMYK rows as files store them, brought to sRGB.
#pragma once

#include "media/codecs/colour_engine.h"

namespace codecs {

class CmykRows {
 public:
  // `inverted`: 255 stands for no ink. The profile is used when it is one for CMYK.
  CmykRows(Bytes profile, bool inverted, const CGImageDecodeLimits &limits) noexcept;

  // Writes `count` pixels as 255, red, green, blue.
  void convert(const uint8_t *cmyk, uint8_t *xrgb, size_t count) const noexcept;

 private:
  ToSrgb engine_;
  uint8_t flip_;  // XORed on each value, so that 255 is no ink
};

}  // namespace codecs
