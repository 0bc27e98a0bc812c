// The few fields of an ICC profile's header that decide whether it is worth keeping.
#pragma once

#include "media/codecs/codec.h"

namespace codecs {

enum class ProfileColours : uint8_t { grey, rgb, cmyk, other };

// Whether these bytes claim to be a profile of that colour model: length, signature, colour space.
// What lies behind the header is for the colour engine to judge.
bool isProfileFor(Bytes profile, ProfileColours colours, const CGImageDecodeLimits &limits) noexcept;

}  // namespace codecs
