// What pictures are drawn into: pixels with a clip region and the colours, patterns and pen in force. It
// knows how drawing works, and nothing of how a picture is written down. Coordinates are the canvas's own,
// from its upper left corner.
#pragma once

#include "media/codecs/pict/brush.h"
#include "media/codecs/pict/budget.h"
#include "media/codecs/pict/coverage.h"
#include "media/codecs/pict/region.h"

namespace codecs::pict {

struct Canvas {
  Pixel *pixels = nullptr;
  uint32_t width = 0;
  uint32_t height = 0;

  Pixel *row(int32_t v) const noexcept { return pixels + static_cast<size_t>(v) * width; }
  Box bounds() const noexcept { return {0, 0, static_cast<int32_t>(width), static_cast<int32_t>(height)}; }
};

enum class Verb : uint8_t { frame, paint, erase, invert, fill };

// Hangs below and to the right of its point.
struct Pen {
  Point size{1, 1};
  Transfer mode = Transfer::copy;
  Pattern pattern = Pattern::solid();
};

class Port {
 public:
  // Borrows both.
  Port(const Canvas &canvas, Budget &budget);

  Ink ink;
  Pen pen;
  Pattern fillPattern = Pattern::solid();
  Pattern backPattern;
  bool hiliteNext = false;  // the next exclusive or is a highlight instead

  const Canvas &canvas() const noexcept { return canvas_; }
  Budget &budget() noexcept { return budget_; }

  // What an exclusive or becomes where a highlight was announced for it; others stay as they are.
  Transfer takeHighlight(Transfer mode) noexcept;

  // Replaces the clip; what lies outside the canvas never counts.
  void setClip(const Region &clip);
  const Region &clip() const noexcept { return clip_; }

  // Paints the pixels of a region that the clip lets through. False when the budget is spent.
  bool paint(const Region &shape, const Pattern &pattern, Transfer mode);

  // Shapes; each is false when the budget is spent. Outlines are made by the pen, inside the shape but for
  // lines and polygons, which are not closed.
  bool line(Point from, Point to);
  bool rect(Verb verb, const Box &box);
  bool roundRect(Verb verb, const Box &box, Point oval);
  bool oval(Verb verb, const Box &box);
  bool arc(Verb verb, const Box &box, int startAngle, int arcAngle);
  bool polygon(Verb verb, std::span<const Point> points);
  bool region(Verb verb, const Region &region);

  // Letters in the foreground colour, or as the mode has it, and what the mode makes of their ground: the
  // box that they stand in.
  bool text(const Coverage &letters, const Box &ground, Transfer mode);

 private:
  // What a verb paints with.
  struct Stroke {
    const Pattern *pattern;
    Transfer mode;
  };

  Stroke strokeFor(Verb verb) noexcept;
  bool draw(const Stroke &stroke, const Region &shape);
  bool drawLine(const Stroke &stroke, Point from, Point to);
  bool drawCurved(const Stroke &stroke, const Region &shape);
  bool cover(const Coverage &letters, Pixel colour);
  bool canFrame() const noexcept;
  Region ovalFor(Verb verb, const Box &box) const;

  const Canvas canvas_;
  Budget &budget_;
  Region clip_;
  std::vector<int32_t> runs_;
  std::vector<Pixel> scratch_;
};

}  // namespace codecs::pict
