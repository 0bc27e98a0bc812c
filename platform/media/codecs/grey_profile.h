// Grey pixels that became colour with alpha cannot keep a grey profile.
#pragma once

#include "media/codecs/codec.h"

namespace codecs {

// Brings straight pixels with equal red, green and blue from a grey profile to sRGB; nothing happens
// when the profile cannot be used.
void bringGreyToSrgb(DecodedImage &argb, Bytes profile, const CGImageDecodeLimits &limits) noexcept;

}  // namespace codecs
