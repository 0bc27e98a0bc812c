// Resampling with weights in floating point, for filters so wide that fixed point is too coarse for them.
#pragma once

#include "graphics/resample.h"

namespace cg {

void resampleWide(RowReader &source, const Resampling &plan, RowSink &sink);

// Lowers colours to the alpha that leads their pixel, of two or four bytes.
void boundByAlpha(uint8_t *row, size_t pixels, size_t components) noexcept;

}  // namespace cg
