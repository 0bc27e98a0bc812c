// Pixel patterns as files hold them.
#pragma once

#include "media/codecs/pict/pattern.h"

namespace codecs::pict {

// A record's size.
Result<size_t> pixelPatternBytes(Bytes bytes) noexcept;

Fault parsePixelPattern(Bytes record, Pattern &pattern);

}  // namespace codecs::pict
