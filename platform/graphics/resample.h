// Resampling an image along both axes, row by row, in a working form.
#pragma once

#include <cstddef>
#include <cstdint>

#include "graphics/axis_filter.h"
#include "graphics/image_rows.h"

namespace cg {

// Takes the rows as they are made. Not every row comes after the one above it.
class RowSink {
 public:
  virtual ~RowSink() = default;
  // Where to put output row i: outputs * components bytes.
  virtual uint8_t *rowFor(size_t i) noexcept = 0;
  // It is there.
  virtual void finish(size_t i) noexcept = 0;
};

struct Resampling {
  AxisFilter across, down;
  size_t components;  // bytes of a pixel
  // Holds colour within the alpha before it: needed where filters overshoot. The form is premultiplied.
  bool boundByAlpha;
};

// Throws std::bad_alloc before the first row is handed over, or not at all.
void resample(RowReader &source, const Resampling &plan, RowSink &sink);

}  // namespace cg
