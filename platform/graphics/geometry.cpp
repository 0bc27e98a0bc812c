// Points, sizes and rectangles.
#include <CoreGraphics/CGGeometry.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <limits>

namespace {

constexpr CGFloat kInfinity = std::numeric_limits<CGFloat>::infinity();

struct Span {
  CGFloat least, greatest;
};

Span horizontal(CGRect rect) noexcept { return {CGRectGetMinX(rect), CGRectGetMaxX(rect)}; }
Span vertical(CGRect rect) noexcept { return {CGRectGetMinY(rect), CGRectGetMaxY(rect)}; }

CGRect rectOf(Span x, Span y) noexcept {
  return CGRectMake(x.least, y.least, x.greatest - x.least, y.greatest - y.least);
}

Span both(Span a, Span b) noexcept { return {std::min(a.least, b.least), std::max(a.greatest, b.greatest)}; }
Span shared(Span a, Span b) noexcept {
  return {std::max(a.least, b.least), std::min(a.greatest, b.greatest)};
}
bool contains(Span outer, Span inner) noexcept {
  return outer.least <= inner.least && inner.greatest <= outer.greatest;
}

}  // namespace

const CGPoint CGPointZero = {0, 0};
const CGSize CGSizeZero = {0, 0};
const CGRect CGRectZero = {{0, 0}, {0, 0}};
const CGRect CGRectNull = {{kInfinity, kInfinity}, {0, 0}};
const CGRect CGRectInfinite = {{-FLT_MAX / 2, -FLT_MAX / 2}, {FLT_MAX, FLT_MAX}};

CGFloat CGRectGetMinX(CGRect rect) {
  return rect.size.width < 0 ? rect.origin.x + rect.size.width : rect.origin.x;
}
CGFloat CGRectGetMaxX(CGRect rect) {
  return rect.size.width < 0 ? rect.origin.x : rect.origin.x + rect.size.width;
}
CGFloat CGRectGetMinY(CGRect rect) {
  return rect.size.height < 0 ? rect.origin.y + rect.size.height : rect.origin.y;
}
CGFloat CGRectGetMaxY(CGRect rect) {
  return rect.size.height < 0 ? rect.origin.y : rect.origin.y + rect.size.height;
}
CGFloat CGRectGetMidX(CGRect rect) { return CGRectGetMinX(rect) + CGRectGetWidth(rect) / 2; }
CGFloat CGRectGetMidY(CGRect rect) { return CGRectGetMinY(rect) + CGRectGetHeight(rect) / 2; }
CGFloat CGRectGetWidth(CGRect rect) { return std::fabs(rect.size.width); }
CGFloat CGRectGetHeight(CGRect rect) { return std::fabs(rect.size.height); }

bool CGPointEqualToPoint(CGPoint a, CGPoint b) { return a.x == b.x && a.y == b.y; }
bool CGSizeEqualToSize(CGSize a, CGSize b) { return a.width == b.width && a.height == b.height; }
bool CGRectEqualToRect(CGRect a, CGRect b) {
  const CGRect first = CGRectStandardize(a), second = CGRectStandardize(b);
  return CGPointEqualToPoint(first.origin, second.origin) && CGSizeEqualToSize(first.size, second.size);
}

CGRect CGRectStandardize(CGRect rect) {
  return CGRectMake(CGRectGetMinX(rect), CGRectGetMinY(rect), CGRectGetWidth(rect), CGRectGetHeight(rect));
}

CGRect CGRectIntegral(CGRect rect) {
  if (CGRectIsNull(rect)) return rect;
  const Span x = horizontal(rect), y = vertical(rect);
  return rectOf({std::floor(x.least), std::ceil(x.greatest)}, {std::floor(y.least), std::ceil(y.greatest)});
}

CGRect CGRectInset(CGRect rect, CGFloat dx, CGFloat dy) {
  if (CGRectIsNull(rect)) return rect;
  const CGRect area = CGRectStandardize(rect);
  const CGSize left = CGSizeMake(area.size.width - 2 * dx, area.size.height - 2 * dy);
  if (!(left.width >= 0 && left.height >= 0)) return CGRectNull;
  return CGRectMake(area.origin.x + dx, area.origin.y + dy, left.width, left.height);
}

CGRect CGRectOffset(CGRect rect, CGFloat dx, CGFloat dy) {
  if (CGRectIsNull(rect)) return rect;
  const CGRect area = CGRectStandardize(rect);
  return CGRectMake(area.origin.x + dx, area.origin.y + dy, area.size.width, area.size.height);
}

// Where one contains the other, the result is that one itself, not rounded by taking its edges apart.
CGRect CGRectUnion(CGRect a, CGRect b) {
  if (CGRectIsNull(a)) return CGRectStandardize(b);
  if (CGRectIsNull(b) || CGRectContainsRect(a, b)) return CGRectStandardize(a);
  if (CGRectContainsRect(b, a)) return CGRectStandardize(b);
  return rectOf(both(horizontal(a), horizontal(b)), both(vertical(a), vertical(b)));
}

CGRect CGRectIntersection(CGRect a, CGRect b) {
  if (CGRectIsNull(a) || CGRectIsNull(b)) return CGRectNull;
  if (CGRectContainsRect(a, b)) return CGRectStandardize(b);
  if (CGRectContainsRect(b, a)) return CGRectStandardize(a);
  const Span x = shared(horizontal(a), horizontal(b)), y = shared(vertical(a), vertical(b));
  return x.least <= x.greatest && y.least <= y.greatest ? rectOf(x, y) : CGRectNull;
}

bool CGRectIsEmpty(CGRect rect) {
  return CGRectIsNull(rect) || rect.size.width == 0 || rect.size.height == 0;
}
bool CGRectIsNull(CGRect rect) { return rect.origin.x == kInfinity || rect.origin.y == kInfinity; }
bool CGRectIsInfinite(CGRect rect) { return CGRectEqualToRect(rect, CGRectInfinite); }

bool CGRectContainsPoint(CGRect rect, CGPoint point) {
  const Span x = horizontal(rect), y = vertical(rect);
  return x.least <= point.x && point.x < x.greatest && y.least <= point.y && point.y < y.greatest;
}

bool CGRectContainsRect(CGRect outer, CGRect inner) {
  if (CGRectIsNull(outer) || CGRectIsNull(inner)) return CGRectIsNull(inner);
  return contains(horizontal(outer), horizontal(inner)) && contains(vertical(outer), vertical(inner));
}

bool CGRectIntersectsRect(CGRect a, CGRect b) { return !CGRectIsNull(CGRectIntersection(a, b)); }
