// Shapes in every verb.

#include "media/codecs/pict/port.h"
#include "media/codecs/pict/shapes.h"

namespace codecs::pict {
namespace {

constexpr uint64_t kRowEffort = 16;  // of making a row of a shape, in pixel visits

// What a shape with curves costs to make, its pixels apart: it is followed from its top, by half pixels.
uint64_t effort(const Box &box) noexcept {
  if (box.isEmpty()) return 0;
  return static_cast<uint64_t>(box.width()) + kRowEffort * static_cast<uint64_t>(box.height());
}

uint64_t visibleHeight(const Box &box, Rows rows) noexcept {
  return static_cast<uint64_t>(std::max(std::min(box.bottom, rows.bottom) - std::max(box.top, rows.top), 0));
}

Rows visibleRows(const Region &clip) noexcept { return {clip.bounds().top, clip.bounds().bottom}; }

// What is left of a shape without the one inside it.
Region ring(const Region &outer, const Region &inner) {
  return toggleRegions(outer, intersectRegions(outer, inner));
}

bool canSee(const Region &clip, const Box &box) noexcept { return !clip.bounds().intersected(box).isEmpty(); }

}  // namespace

// Consumed by the operation even if nothing of it can be seen.
Transfer Port::takeHighlight(Transfer mode) noexcept {
  if (mode != Transfer::paintXor || !hiliteNext) return mode;
  hiliteNext = false;
  return Transfer::hilite;
}

Port::Stroke Port::strokeFor(Verb verb) noexcept {
  static const Pattern solid = Pattern::solid();
  switch (verb) {
    case Verb::erase:
      return {&backPattern, Transfer::copy};
    case Verb::invert:
      return {&solid, takeHighlight(Transfer::paintXor)};
    case Verb::fill:
      return {&fillPattern, Transfer::copy};
    default:
      return {&pen.pattern, takeHighlight(pen.mode)};
  }
}

bool Port::draw(const Stroke &stroke, const Region &shape) {
  return paint(shape, *stroke.pattern, stroke.mode);
}

// The dimming of text, which rectangles and lines take for an or, is nothing that curves can be drawn with.
bool Port::drawCurved(const Stroke &stroke, const Region &shape) {
  return stroke.mode == Transfer::dimmedOr || draw(stroke, shape);
}

bool Port::canFrame() const noexcept { return pen.size.h > 0 && pen.size.v > 0; }

bool Port::drawLine(const Stroke &stroke, Point from, Point to) {
  const Box reach{std::min(from.h, to.h), std::min(from.v, to.v), std::max(from.h, to.h) + pen.size.h,
                  std::max(from.v, to.v) + pen.size.v};
  const Rows rows = visibleRows(clip_);
  if (!canSee(clip_, reach)) return true;
  return budget_.work(kRowEffort * visibleHeight(reach, rows)) &&
         draw(stroke, lineRegion(from, to, pen.size, rows));
}

bool Port::line(Point from, Point to) {
  const Stroke stroke = strokeFor(Verb::frame);
  return !canFrame() || drawLine(stroke, from, to);
}

bool Port::rect(Verb verb, const Box &box) {
  const Stroke stroke = strokeFor(verb);
  if (!canSee(clip_, box)) return true;
  if (verb != Verb::frame) return draw(stroke, Region(box));
  const Box inner = box.inset(pen.size.h, pen.size.v);
  return !canFrame() ||
         draw(stroke, inner.isEmpty() ? Region(box) : toggleRegions(Region(box), Region(inner)));
}

bool Port::roundRect(Verb verb, const Box &box, Point oval) {
  const Stroke stroke = strokeFor(verb);
  if (!canSee(clip_, box)) return true;
  if (!budget_.work(effort(box))) return false;
  const Rows rows = visibleRows(clip_);
  const Region outer = roundRectRegion(box, oval, rows);
  if (verb != Verb::frame) return drawCurved(stroke, outer);
  if (!canFrame()) return true;
  const Point innerOval{oval.h - 2 * pen.size.h, oval.v - 2 * pen.size.v};
  const Box inner = box.inset(pen.size.h, pen.size.v);
  return drawCurved(stroke, inner.isEmpty() ? outer : ring(outer, roundRectRegion(inner, innerOval, rows)));
}

Region Port::ovalFor(Verb verb, const Box &box) const {
  const Rows rows = visibleRows(clip_);
  const Box inner = box.inset(pen.size.h, pen.size.v);
  if (verb != Verb::frame || inner.isEmpty()) return ovalRegion(box, rows);
  return ring(ovalRegion(box, rows), ovalRegion(inner, rows));
}

bool Port::oval(Verb verb, const Box &box) {
  const Stroke stroke = strokeFor(verb);
  if (!canSee(clip_, box) || (verb == Verb::frame && !canFrame())) return true;
  return budget_.work(effort(box)) && drawCurved(stroke, ovalFor(verb, box));
}

bool Port::arc(Verb verb, const Box &box, int startAngle, int arcAngle) {
  const Stroke stroke = strokeFor(verb);
  if (!canSee(clip_, box) || (verb == Verb::frame && !canFrame())) return true;
  if (!budget_.work(2 * effort(box))) return false;
  return drawCurved(stroke, intersectRegions(ovalFor(verb, box),
                                             wedgeRegion(box, startAngle, arcAngle, visibleRows(clip_))));
}

bool Port::polygon(Verb verb, std::span<const Point> points) {
  const Stroke stroke = strokeFor(verb);
  if (points.size() < 2) return true;
  if (!budget_.work(points.size())) return false;
  if (verb == Verb::frame) {
    for (size_t i = 1; i < points.size() && canFrame(); ++i) {
      if (!drawLine(stroke, points[i - 1], points[i])) return false;
    }
    return true;
  }
  const Rows rows = visibleRows(clip_);
  return budget_.work(polygonEffort(points, rows)) && draw(stroke, polygonRegion(points, rows));
}

bool Port::region(Verb verb, const Region &region) {
  const Stroke stroke = strokeFor(verb);
  if (!canSee(clip_, region.bounds())) return true;
  if (verb != Verb::frame) return draw(stroke, region);
  if (!canFrame()) return true;
  const Rows rows = visibleRows(clip_);
  return budget_.work(region.edgeCount() + insetEffort(region, pen.size, rows)) &&
         draw(stroke, ring(region, insetRegion(region, pen.size, rows)));
}

}  // namespace codecs::pict
