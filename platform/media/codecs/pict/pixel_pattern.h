// Pixel patterns as files hold them.
#pragma once

#include "media/codecs/pict/budget.h"
#include "media/codecs/pict/pattern.h"

namespace codecs::pict {

// A record's size.
Result<size_t> pixelPatternBytes(Bytes bytes) noexcept;

// tooLarge when the tile costs more than the budget has left: a few bytes can claim many pixels.
Fault parsePixelPattern(Bytes record, Budget &budget, Pattern &pattern);

}  // namespace codecs::pict
