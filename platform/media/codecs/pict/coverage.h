// How much of each pixel a text covers.
#pragma once

#include <vector>

#include "media/codecs/pict/region.h"

namespace codecs::pict {

struct Coverage {
  Box box;                      // of the canvas
  std::vector<uint8_t> values;  // row after row; 255 wholly covered

  const uint8_t *row(int32_t v) const noexcept {
    return values.data() + static_cast<size_t>(v - box.top) * static_cast<size_t>(box.width());
  }
  uint8_t *row(int32_t v) noexcept { return const_cast<uint8_t *>(std::as_const(*this).row(v)); }
};

// What is left when letters are hollowed out: a line of one pixel around them, and where there is a
// shadow as many more below and to the right as it is deep.
Coverage hollowed(const Coverage &letters, int shadow);

}  // namespace codecs::pict
