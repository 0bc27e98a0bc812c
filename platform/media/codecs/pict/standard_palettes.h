// The colour tables that go by a number.
#pragma once

#include "media/codecs/pict/pixel_record.h"

namespace codecs::pict {

// 1, 2, 4 and 8 are the tables of those depths, 33 to 40 greys of that number less 32 bits, white first.
// Anything else is black.
Palette standardPalette(int id) noexcept;

}  // namespace codecs::pict
