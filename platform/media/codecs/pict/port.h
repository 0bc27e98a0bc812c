// What pictures are drawn into: pixels with a clip region and the colours, patterns and pen in force. It
// knows how drawing works, and nothing of how a picture is written down. Coordinates are the canvas's own,
// from its upper left corner.
#pragma once

#include "media/codecs/pict/brush.h"
#include "media/codecs/pict/budget.h"
#include "media/codecs/pict/region.h"

namespace codecs::pict {

struct Canvas {
  Pixel *pixels = nullptr;
  uint32_t width = 0;
  uint32_t height = 0;

  Pixel *row(int32_t v) const noexcept { return pixels + static_cast<size_t>(v) * width; }
  Box bounds() const noexcept { return {0, 0, static_cast<int32_t>(width), static_cast<int32_t>(height)}; }
};

class Port {
 public:
  // Borrows both.
  Port(const Canvas &canvas, Budget &budget);

  Ink ink;

  const Canvas &canvas() const noexcept { return canvas_; }
  Budget &budget() noexcept { return budget_; }

  // Replaces the clip; what lies outside the canvas never counts.
  void setClip(const Region &clip);
  const Region &clip() const noexcept { return clip_; }

  // Paints the pixels of a region that the clip lets through. False when the budget is spent.
  bool paint(const Region &shape, const Pattern &pattern, Transfer mode);

 private:
  const Canvas canvas_;
  Budget &budget_;
  Region clip_;
  std::vector<int32_t> runs_;
  std::vector<Pixel> scratch_;
};

}  // namespace codecs::pict
