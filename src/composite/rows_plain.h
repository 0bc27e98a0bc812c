#pragma once
// The rows that are nothing but the kernel, pixel after pixel.

#include "composite/rows.h"

namespace drav {

extern const RowTable kPlainRows;

// One pixel through its kernel: what a row form does with a pixel it cannot vouch for.
void blendOnePixel(PixelFormat format, DRAVCFBlendMode mode, const uint8_t *source,
                   uint8_t *destination) noexcept;

}  // namespace drav
