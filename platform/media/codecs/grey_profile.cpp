#include "media/codecs/grey_profile.h"

#include <array>
#include <cstring>

#include "media/codecs/colour_engine.h"
#include "media/codecs/icc.h"

namespace codecs {

void bringGreyToSrgb(DecodedImage &argb, Bytes profile, const CGImageDecodeLimits &limits) noexcept {
  if (!isProfileFor(profile, ProfileColours::grey, limits)) return;
  const ToSrgb engine = ToSrgb::make(profile, ProfileInput::grey);
  if (!engine) return;
  std::array<uint8_t, 256> greys;
  for (size_t i = 0; i < greys.size(); ++i) greys[i] = static_cast<uint8_t>(i);
  std::array<uint8_t, 4 * 256> colours{};
  engine.convert(greys.data(), colours.data(), greys.size());

  uint8_t *const end = argb.pixels.data() + argb.pixels.size();
  for (uint8_t *pixel = argb.pixels.data(); pixel != end; pixel += 4) {
    std::memcpy(pixel + 1, &colours[4 * size_t{pixel[1]} + 1], 3);
  }
}

}  // namespace codecs
