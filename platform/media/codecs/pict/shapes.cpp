#include "media/codecs/pict/shapes.h"

#include <cmath>
#include <cstdlib>

#include "media/codecs/pict/oval_rows.h"

namespace codecs::pict {
namespace {

using Combine = void (*)(Edges, Edges, std::vector<int32_t> &);

// Row by row, where either has some.
Region combine(const Region &a, const Region &b, Combine combineEdges) {
  Region made;
  std::vector<int32_t> edges;
  size_t i = 0, j = 0;
  int32_t v = std::min(a.isEmpty() ? kFarthest : a.bounds().top, b.isEmpty() ? kFarthest : b.bounds().top);
  while (i < a.bands().size() || j < b.bands().size()) {
    const Region::Band *const first = i < a.bands().size() ? &a.bands()[i] : nullptr;
    const Region::Band *const second = j < b.bands().size() ? &b.bands()[j] : nullptr;
    const bool inFirst = first && first->top <= v, inSecond = second && second->top <= v;
    int32_t end = 2 * kFarthest;
    for (const Region::Band *band : {first, second}) {
      if (band) end = std::min(end, band->top <= v ? band->bottom : band->top);
    }
    combineEdges(inFirst ? a.edgesOf(*first) : Edges{}, inSecond ? b.edgesOf(*second) : Edges{}, edges);
    made.addRows(v, end, edges);
    v = end;
    if (first && first->bottom <= v) ++i;
    if (second && second->bottom <= v) ++j;
  }
  return made;
}

// a / b, rounded up; b is positive.
int64_t divideUp(int64_t a, int64_t b) noexcept { return a >= 0 ? (a + b - 1) / b : -(-a / b); }

int32_t clampToInt(double value) noexcept {
  return static_cast<int32_t>(std::clamp(value, double{-kFarthest}, double{kFarthest}));
}

struct Direction {
  double h;
  double v;
};

// Quarter turns are exact, so that the edges of a box's quarters are.
Direction directionOf(int angle) noexcept {
  static constexpr Direction kQuarters[] = {{0, -1}, {1, 0}, {0, 1}, {-1, 0}};
  if (angle % 90 == 0) return kQuarters[angle / 90];
  constexpr double kDegree = 3.14159265358979323846 / 180;
  return {std::sin(angle * kDegree), -std::cos(angle * kDegree)};
}

// A wedge of less than a full turn. Each ray bounds a half plane; up to half a turn the wedge is what both
// share, beyond that everything but what is between the rays the other way round.
class Wedge {
 public:
  Wedge(const Box &box, int start, int extent) noexcept
      : box_(box),
        isWide_(extent > 180),
        first_(directionOf(start)),
        last_(directionOf((start + extent) % 360)) {
    if (isWide_) std::swap(first_, last_);
  }

  // Overwrites `edges`; `between` is scratch.
  void row(int32_t v, std::vector<int32_t> &edges, std::vector<int32_t> &between) const {
    const double down = (v + 0.5 - (box_.top + box_.bottom) / 2.0) / box_.height();
    double from = -1, to = 1;  // across, the box's width being 1; beyond its edges
    limit(-first_.v, first_.h * down, true, from, to);
    limit(last_.v, -last_.h * down, false, from, to);
    edges.clear();
    if (from < to) edges.assign({column(from), column(to)});
    if (!isWide_) return;
    const int32_t sides[] = {box_.left, box_.right};
    toggleEdges(edges, sides, between);
    std::swap(edges, between);
  }

 private:
  // What is left of [from, to) where slope * across + offset is not below zero. Along a ray it is zero
  // throughout; the ray belongs to the wedge that it starts.
  static void limit(double slope, double offset, bool withRay, double &from, double &to) noexcept {
    if (slope > 0) {
      from = std::max(from, -offset / slope);
    } else if (slope < 0) {
      to = std::min(to, offset / -slope);
    } else if (offset < 0 || (offset == 0 && !withRay)) {
      to = from;
    }
  }

  // The first pixel whose middle is not left of there.
  int32_t column(double across) const noexcept {
    const double h = across * box_.width() + (box_.left + box_.right) / 2.0;
    return std::clamp(clampToInt(std::ceil(h - 0.5 - 1e-9)), box_.left, box_.right);
  }

  Box box_;
  bool isWide_;
  Direction first_;
  Direction last_;
};

// An edge of a polygon, going down.
struct Side {
  Point from;
  Point to;

  // The first pixel of row v whose middle is not left of the edge.
  int32_t crossing(int32_t v) const noexcept {
    const int64_t height = to.v - from.v, width = to.h - from.h;
    return static_cast<int32_t>(
        divideUp(2 * from.h * height + (2 * int64_t{v - from.v} + 1) * width - height, 2 * height));
  }
};

std::vector<Side> sidesOf(std::span<const Point> points, Rows rows) {
  std::vector<Side> sides;
  for (size_t i = 0; i < points.size(); ++i) {
    Side side{points[i], points[(i + 1) % points.size()]};
    if (side.from.v > side.to.v) std::swap(side.from, side.to);
    if (side.from.v < side.to.v && side.to.v > rows.top && side.from.v < rows.bottom) sides.push_back(side);
  }
  std::ranges::sort(sides, {}, [](const Side &side) { return side.from.v; });
  return sides;
}

Region slantedLine(Point from, Point to, Point pen, Rows rows) {
  if (from.v > to.v) std::swap(from, to);
  const int64_t slope = (int64_t{to.h - from.h} * 0x10000) / (to.v - from.v);
  int64_t left = int64_t{from.h} * 0x10000 + 0x8000 + (slope >> 1);
  int64_t right = left + int64_t{pen.h} * 0x10000;
  if (slope >= 0) {
    left -= pen.v * slope;
    slope < 0x10000 ? left += slope : right -= 0x10000;
  } else {
    right -= pen.v * slope;
    slope < -0x10000 ? left += 0x10000 : right += slope;
  }
  const int64_t least = std::min(from.h, to.h), most = std::max(from.h, to.h) + pen.h;
  const int32_t top = std::max(from.v, rows.top), bottom = std::min(to.v + pen.v, rows.bottom);
  left += (top - from.v) * slope;
  right += (top - from.v) * slope;
  Region region;
  for (int32_t v = top; v < bottom; ++v, left += slope, right += slope) {
    const int32_t edges[] = {static_cast<int32_t>(std::clamp(left >> 16, least, most)),
                             static_cast<int32_t>(std::clamp(right >> 16, least, most))};
    if (edges[0] < edges[1]) region.addRows(v, v + 1, edges);
  }
  return region;
}

}  // namespace

// Against a pixel that is filled, what an edge costs in each row: a division, and its part in the sorting.
constexpr uint64_t kEdgeEffort = 8;

uint64_t polygonEffort(std::span<const Point> points, Rows rows) noexcept {
  uint64_t effort = points.size();
  for (size_t i = 0; i < points.size(); ++i) {
    const Point from = points[i], to = points[(i + 1) % points.size()];
    const int32_t top = std::max(std::min(from.v, to.v), rows.top),
                  bottom = std::min(std::max(from.v, to.v), rows.bottom);
    if (top < bottom) effort += kEdgeEffort * static_cast<uint64_t>(bottom - top);
  }
  return effort;
}

uint64_t insetEffort(const Region &region, Point pen, Rows rows) noexcept {
  if (region.isEmpty() || region.isBox()) return 0;
  size_t longest = 0;
  for (const Region::Band &band : region.bands()) longest = std::max(longest, band.count);
  const Box &bounds = region.bounds();
  const int32_t height = std::min(bounds.bottom, rows.bottom) - std::max(bounds.top, rows.top);
  const uint64_t reach = 2 * static_cast<uint64_t>(std::max(pen.v, 0)) + 1;
  return static_cast<uint64_t>(std::max(height, 0)) * std::min<uint64_t>(region.edgeCount(), reach * longest);
}

Region intersectRegions(const Region &a, const Region &b) { return combine(a, b, intersectEdges); }
Region toggleRegions(const Region &a, const Region &b) { return combine(a, b, toggleEdges); }

Region ovalRegion(const Box &box, Rows rows) {
  Region region;
  if (box.isEmpty()) return region;
  OvalRows oval(box.left, box.width(), box.height());
  for (int32_t v = box.top; v < std::min(box.bottom, rows.bottom); ++v) {
    const auto run = oval.next();
    const int32_t edges[] = {run.left, run.right};
    if (v >= rows.top && run.left < run.right) region.addRows(v, v + 1, edges);
  }
  return region;
}

// Between the corners the rows are as wide as the box.
Region roundRectRegion(const Box &box, Point oval, Rows rows) {
  const int32_t width = std::min(oval.h, box.width()), height = std::min(oval.v, box.height());
  if (box.isEmpty() || width <= 0 || height <= 0) return Region(box);
  const int32_t straightFrom = box.top + height / 2, straightTo = straightFrom + box.height() - height;
  OvalRows corners(box.left, width, height);
  Region region;
  for (int32_t v = box.top; v < std::min(box.bottom, rows.bottom); ++v) {
    int32_t edges[] = {box.left, box.right};
    if (v < straightFrom || v >= straightTo) {
      const auto run = corners.next();
      edges[0] = run.left;
      edges[1] = run.right + box.width() - width;
    }
    if (v >= rows.top && edges[0] < edges[1]) region.addRows(v, v + 1, edges);
  }
  return region;
}

Region wedgeRegion(const Box &box, int startAngle, int arcAngle, Rows rows) {
  if (box.isEmpty() || arcAngle == 0) return {};
  if (std::abs(arcAngle) >= 360) return Region(box);
  const int start = ((arcAngle < 0 ? startAngle + arcAngle : startAngle) % 360 + 360) % 360;
  const Wedge wedge(box, start, std::abs(arcAngle));
  Region region;
  std::vector<int32_t> edges, between;
  for (int32_t v = std::max(box.top, rows.top); v < std::min(box.bottom, rows.bottom); ++v) {
    wedge.row(v, edges, between);
    region.addRows(v, v + 1, edges);
  }
  return region;
}

Region polygonRegion(std::span<const Point> points, Rows rows) {
  const std::vector<Side> sides = sidesOf(points, rows);
  Region region;
  if (sides.empty()) return region;
  std::vector<const Side *> active;
  std::vector<int32_t> edges;
  size_t next = 0;
  for (int32_t v = std::max(sides.front().from.v, rows.top); v < rows.bottom; ++v) {
    std::erase_if(active, [&](const Side *side) { return side->to.v <= v; });
    for (; next < sides.size() && sides[next].from.v <= v; ++next) {
      if (sides[next].to.v > v) active.push_back(&sides[next]);
    }
    if (active.empty() && next == sides.size()) break;
    edges.clear();
    for (const Side *side : active) edges.push_back(side->crossing(v));
    std::ranges::sort(edges);
    region.addRows(v, v + 1, edges);
  }
  return region;
}

Region lineRegion(Point from, Point to, Point pen, Rows rows) {
  if (pen.h <= 0 || pen.v <= 0) return {};
  if (from.h != to.h && from.v != to.v) return slantedLine(from, to, pen, rows);
  return Region(Box{std::min(from.h, to.h), std::min(from.v, to.v), std::max(from.h, to.h) + pen.h,
                    std::max(from.v, to.v) + pen.v});
}

// A pixel stays when all pixels within the pen's reach, either way, are inside.
Region insetRegion(const Region &region, Point pen, Rows rows) {
  if (region.isEmpty()) return {};
  if (region.isBox()) {
    const Box inner = region.bounds().inset(pen.h, pen.v);
    return inner.isEmpty() ? Region() : Region(inner);
  }
  Region narrow;
  std::vector<int32_t> edges;
  for (const Region::Band &band : region.bands()) {
    const Edges sides = region.edgesOf(band);
    edges.clear();
    for (size_t i = 0; i < sides.size(); i += 2) {
      if (sides[i] + pen.h < sides[i + 1] - pen.h)
        edges.insert(edges.end(), {sides[i] + pen.h, sides[i + 1] - pen.h});
    }
    narrow.addRows(band.top, band.bottom, edges);
  }
  Region inner;
  std::vector<int32_t> shared, merged;
  for (int32_t v = std::max(rows.top, region.bounds().top + pen.v);
       v < std::min(rows.bottom, region.bounds().bottom - pen.v); ++v) {
    const auto first = narrow.edgesAt(v - pen.v);
    shared.assign(first.begin(), first.end());
    int32_t reached = v - pen.v;
    for (size_t i = narrow.bandAt(reached); i < narrow.bands().size() && !shared.empty(); ++i) {
      const Region::Band &band = narrow.bands()[i];
      if (band.top > reached) shared.clear();  // rows in between have nothing
      if (shared.empty()) break;
      intersectEdges(shared, narrow.edgesOf(band), merged);
      std::swap(shared, merged);
      reached = band.bottom;
      if (reached > v + pen.v) break;
    }
    if (reached > v + pen.v) inner.addRows(v, v + 1, shared);
  }
  return inner;
}

}  // namespace codecs::pict
