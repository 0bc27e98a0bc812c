// The colour space that decoded pixels are in.
#pragma once

#include <CoreGraphics/CoreGraphics.h>

#include "foundation/ref.h"
#include "media/codecs/codec.h"

namespace media {

// The space of the embedded profile where there is one that can be used. Without: device grey for
// grey, the display's space for colour, which is the space that images are promoted to, so that
// nothing is left to convert. Empty when memory runs out.
cf::Ref<CGColorSpaceRef> spaceOf(const codecs::DecodedImage &image) noexcept;

// The display's space: one object for everybody. Empty when memory runs out.
cf::Ref<CGColorSpaceRef> displaySpace() noexcept;

}  // namespace media
