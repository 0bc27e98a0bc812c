// Shapes as sets of pixels, by exact rules and without smoothing. Only rows that can be seen are made.
#pragma once

#include "media/codecs/pict/region.h"

namespace codecs::pict {

// The rows [top, bottom) that are wanted.
struct Rows {
  int32_t top;
  int32_t bottom;
};

// The ellipse inscribed in a box.
Region ovalRegion(const Box &box, Rows rows);

// A box whose corners are quarters of an ellipse `oval.h` wide and `oval.v` high.
Region roundRectRegion(const Box &box, Point oval, Rows rows);

// The part of the plane between two rays from the box's middle, within the box. Degrees, 0 up and growing
// clockwise, relative to the box: 45 goes through its upper right corner.
Region wedgeRegion(const Box &box, int startAngle, int arcAngle, Rows rows);

// What lies inside a closed polygon by the even-odd rule: pixels whose middle does.
Region polygonRegion(std::span<const Point> points, Rows rows);

// What that costs, in pixel visits.
uint64_t polygonEffort(std::span<const Point> points, Rows rows) noexcept;

// The pixels that a pen, a box below and to the right of its point, covers on its way.
Region lineRegion(Point from, Point to, Point pen, Rows rows);

// What is left when a region shrinks by the pen on every side, and how many edges that looks at.
Region insetRegion(const Region &region, Point pen, Rows rows);
uint64_t insetEffort(const Region &region, Point pen, Rows rows) noexcept;

// Pixels of both, or of exactly one of two regions.
Region intersectRegions(const Region &a, const Region &b);
Region toggleRegions(const Region &a, const Region &b);

}  // namespace codecs::pict
