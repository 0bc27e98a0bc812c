// Shapes in every verb.

#include "media/codecs/pict/port.h"
#include "media/codecs/pict/shapes.h"

namespace codecs::pict {
namespace {

// What a shape of that size costs to make, its pixels apart.
uint64_t effort(const Box &box) noexcept {
  return box.isEmpty() ? 0 : static_cast<uint64_t>(box.width()) + static_cast<uint64_t>(box.height());
}

Rows visibleRows(const Region &clip) noexcept { return {clip.bounds().top, clip.bounds().bottom}; }

// What is left of a shape without the one inside it.
Region ring(const Region &outer, const Region &inner) {
  return toggleRegions(outer, intersectRegions(outer, inner));
}

bool canSee(const Region &clip, const Box &box) noexcept { return !clip.bounds().intersected(box).isEmpty(); }

}  // namespace

bool Port::draw(Verb verb, const Region &shape) {
  static const Pattern solid = Pattern::solid();
  switch (verb) {
    case Verb::frame:
    case Verb::paint:
      return paintWith(shape, pen.pattern, pen.mode);
    case Verb::erase:
      return paintWith(shape, backPattern, Transfer::copy);
    case Verb::invert:
      return paintWith(shape, solid, Transfer::paintXor);
    case Verb::fill:
      return paintWith(shape, fillPattern, Transfer::copy);
  }
  return true;
}

// A highlight that was announced takes the next exclusive or's place.
bool Port::paintWith(const Region &shape, const Pattern &pattern, Transfer mode) {
  if (mode == Transfer::paintXor && hiliteNext) {
    hiliteNext = false;
    mode = Transfer::hilite;
  }
  return paint(shape, pattern, mode);
}

bool Port::hasPen() const noexcept { return pen.size.h > 0 && pen.size.v > 0; }

bool Port::line(Point from, Point to) {
  const Box reach{std::min(from.h, to.h), std::min(from.v, to.v), std::max(from.h, to.h) + pen.size.h,
                  std::max(from.v, to.v) + pen.size.v};
  if (!hasPen() || !canSee(clip_, reach)) return true;
  return paintWith(lineRegion(from, to, pen.size, visibleRows(clip_)), pen.pattern, pen.mode);
}

bool Port::rect(Verb verb, const Box &box) {
  if (!canSee(clip_, box)) return true;
  if (verb != Verb::frame) return draw(verb, Region(box));
  const Box inner = box.inset(pen.size.h, pen.size.v);
  return !hasPen() || draw(verb, inner.isEmpty() ? Region(box) : toggleRegions(Region(box), Region(inner)));
}

bool Port::roundRect(Verb verb, const Box &box, Point oval) {
  if (!canSee(clip_, box)) return true;
  if (!budget_.work(effort(box))) return false;
  const Rows rows = visibleRows(clip_);
  const Region outer = roundRectRegion(box, oval, rows);
  if (verb != Verb::frame) return draw(verb, outer);
  if (!hasPen()) return true;
  const Point innerOval{oval.h - 2 * pen.size.h, oval.v - 2 * pen.size.v};
  const Box inner = box.inset(pen.size.h, pen.size.v);
  return draw(verb, inner.isEmpty() ? outer : ring(outer, roundRectRegion(inner, innerOval, rows)));
}

Region Port::ovalFor(Verb verb, const Box &box) const {
  const Rows rows = visibleRows(clip_);
  const Box inner = box.inset(pen.size.h, pen.size.v);
  if (verb != Verb::frame || inner.isEmpty()) return ovalRegion(box, rows);
  return ring(ovalRegion(box, rows), ovalRegion(inner, rows));
}

bool Port::oval(Verb verb, const Box &box) {
  if (!canSee(clip_, box) || (verb == Verb::frame && !hasPen())) return true;
  return budget_.work(effort(box)) && draw(verb, ovalFor(verb, box));
}

bool Port::arc(Verb verb, const Box &box, int startAngle, int arcAngle) {
  if (!canSee(clip_, box) || (verb == Verb::frame && !hasPen())) return true;
  if (!budget_.work(2 * effort(box))) return false;
  return draw(
      verb, intersectRegions(ovalFor(verb, box), wedgeRegion(box, startAngle, arcAngle, visibleRows(clip_))));
}

bool Port::polygon(Verb verb, std::span<const Point> points) {
  if (points.size() < 2) return true;
  if (verb == Verb::frame) {
    for (size_t i = 1; i < points.size(); ++i) {
      if (!line(points[i - 1], points[i])) return false;
    }
    return true;
  }
  const Rows rows = visibleRows(clip_);
  return budget_.work(polygonEffort(points, rows)) && draw(verb, polygonRegion(points, rows));
}

bool Port::region(Verb verb, const Region &region) {
  if (!canSee(clip_, region.bounds())) return true;
  if (verb != Verb::frame) return draw(verb, region);
  if (!hasPen()) return true;
  const Rows rows = visibleRows(clip_);
  return budget_.work(insetEffort(region, pen.size, rows)) &&
         draw(verb, ring(region, insetRegion(region, pen.size, rows)));
}

}  // namespace codecs::pict
