// What drawing one picture may cost, counted rather than timed, so that a picture fails on every machine or
// on none.
#pragma once

#include <algorithm>

#include "media/codecs/codec.h"

namespace codecs::pict {

class Budget {
 public:
  // Pictures with a small frame may paint it as often as they like, up to the visits that every file has
  // free. However large they are, they may keep nobody waiting.
  Budget(uint64_t framePixels, size_t fileBytes, const CGImageDecodeLimits &limits) noexcept
      : paintLeft_(std::max(limits.paintedFrames * framePixels, limits.workFree)),
        workLeft_(std::min(limits.workFree + limits.workPerByte * (fileBytes + 4 * framePixels),
                           limits.pictWork)) {}

  // Each is false once more has been asked for than there was. Painting is a store a pixel, several of which
  // fit into the time of one visit; modes that calculate count a pixel as so many more.
  bool paint(uint64_t pixels, uint64_t weight = 1) noexcept { return take(paintLeft_, pixels * weight); }
  bool work(uint64_t visits) noexcept { return take(workLeft_, visits); }
  bool spent() const noexcept { return spent_; }

 private:
  bool take(uint64_t &left, uint64_t count) noexcept {
    if (count > left) spent_ = true;
    left -= std::min(left, count);
    return !spent_;
  }

  uint64_t paintLeft_;
  uint64_t workLeft_;
  bool spent_ = false;
};

}  // namespace codecs::pict
