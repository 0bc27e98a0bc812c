// Turning the colours of an embedded profile into sRGB while decoding, for the layouts that cannot
// keep the profile: CMYK, and grey that becomes colour because it has alpha.
#pragma once

#include <memory>

#include "media/codecs/codec.h"

namespace codecs {

enum class ProfileInput : uint8_t {
  grey,          // one byte, 0 black
  cmyk,          // four bytes, 0 no ink
  cmykInverted,  // four bytes, 255 no ink
};

// A prepared conversion to sRGB. Empty when the profile cannot be used.
class ToSrgb {
 public:
  static ToSrgb make(Bytes profile, ProfileInput input) noexcept;

  ToSrgb() noexcept;
  ToSrgb(ToSrgb &&) noexcept;
  ToSrgb &operator=(ToSrgb &&) noexcept;
  ~ToSrgb();

  explicit operator bool() const noexcept { return state_ != nullptr; }

  // Writes `count` pixels as 255, red, green, blue. REQUIRES: not empty; the rows do not overlap.
  void convert(const uint8_t *from, uint8_t *xrgb, size_t count) const noexcept;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace codecs
