#include "graphics/path.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <span>

namespace cg {
namespace {

constexpr std::array<std::size_t, 5> kPointsOf = {1, 1, 2, 3, 0};

CGPoint placed(const CGAffineTransform *m, CGFloat x, CGFloat y) noexcept {
  const CGPoint point = CGPointMake(x, y);
  return m ? CGPointApplyAffineTransform(point, *m) : point;
}

// Both buffers grow, or neither does.
bool append(CGPath &path, CGPathElementType type, std::span<const CGPoint> points) noexcept {
  if (!path.types.append(static_cast<uint8_t>(type))) return false;
  if (path.points.append(points.data(), points.size())) return true;
  path.types.truncate(path.types.size() - 1);
  return false;
}

void moveTo(CGMutablePathRef path, CGPoint point) noexcept {
  if (path && append(*path, kCGPathElementMoveToPoint, {&point, 1})) path->start = path->current = point;
}

void drawTo(CGMutablePathRef path, CGPathElementType type, std::span<const CGPoint> points) noexcept {
  if (!path || CGPathIsEmpty(path)) return;
  if (append(*path, type, points)) path->current = points.back();
}

std::span<const CGPoint> pointsOf(const CGPath &path) noexcept {
  return {path.points.data(), path.points.size()};
}

cf::Ref<CGPath> newPath() noexcept {
  auto path = cf::make<CGPath>(nullptr);
  if (!path) return nullptr;
  path->types = cf::Buffer<uint8_t>(path->allocator());
  path->points = cf::Buffer<CGPoint>(path->allocator());
  return path;
}

cf::Ref<CGPath> copyOf(const CGPath &path) noexcept {
  auto copy = newPath();
  if (!copy || !copy->types.append(path.types.data(), path.types.size()) ||
      !copy->points.append(path.points.data(), path.points.size()))
    return nullptr;
  copy->start = path.start;
  copy->current = path.current;
  return copy;
}

}  // namespace
}  // namespace cg

using namespace cg;

bool CGPath::operator==(const CGPath &other) const noexcept {
  const std::span mine(types.data(), types.size()), others(other.types.data(), other.types.size());
  return std::ranges::equal(mine, others) &&
         std::ranges::equal(pointsOf(*this), pointsOf(other), CGPointEqualToPoint);
}

// By the elements alone: equal numbers such as 0 and -0 differ in their bytes.
CFHashCode CGPath::hash() const noexcept {
  CFHashCode hash = types.size();
  for (std::size_t i = 0; i < types.size(); ++i) hash = hash * 31 + types.data()[i];
  return hash;
}

std::string CGPath::describe() const {
  char text[64];
  std::snprintf(text, sizeof text, "<CGPath %p>{%zu elements}", static_cast<const void *>(this),
                types.size());
  return text;
}

CFTypeID CGPathGetTypeID(void) { return CGPath::typeID(); }

CGMutablePathRef CGPathCreateMutable(void) { return newPath().give(); }
CGPathRef CGPathCreateCopy(CGPathRef path) { return CGPathCreateMutableCopy(path); }
CGMutablePathRef CGPathCreateMutableCopy(CGPathRef path) { return path ? copyOf(*path).give() : nullptr; }

CGPathRef CGPathRetain(CGPathRef path) {
  if (path) CFRetain(path);
  return path;
}

void CGPathRelease(CGPathRef path) {
  if (path) CFRelease(path);
}

void CGPathMoveToPoint(CGMutablePathRef path, const CGAffineTransform *m, CGFloat x, CGFloat y) {
  moveTo(path, placed(m, x, y));
}

void CGPathAddLineToPoint(CGMutablePathRef path, const CGAffineTransform *m, CGFloat x, CGFloat y) {
  const CGPoint end = placed(m, x, y);
  drawTo(path, kCGPathElementAddLineToPoint, {&end, 1});
}

void CGPathAddQuadCurveToPoint(CGMutablePathRef path, const CGAffineTransform *m, CGFloat cpx, CGFloat cpy,
                               CGFloat x, CGFloat y) {
  const CGPoint points[] = {placed(m, cpx, cpy), placed(m, x, y)};
  drawTo(path, kCGPathElementAddQuadCurveToPoint, points);
}

void CGPathAddCurveToPoint(CGMutablePathRef path, const CGAffineTransform *m, CGFloat cp1x, CGFloat cp1y,
                           CGFloat cp2x, CGFloat cp2y, CGFloat x, CGFloat y) {
  const CGPoint points[] = {placed(m, cp1x, cp1y), placed(m, cp2x, cp2y), placed(m, x, y)};
  drawTo(path, kCGPathElementAddCurveToPoint, points);
}

void CGPathCloseSubpath(CGMutablePathRef path) {
  if (!path || CGPathIsEmpty(path)) return;
  if (append(*path, kCGPathElementCloseSubpath, {})) path->current = path->start;
}

void CGPathAddRect(CGMutablePathRef path, const CGAffineTransform *m, CGRect rect) {
  if (!path || CGRectIsNull(rect)) return;
  const CGFloat left = CGRectGetMinX(rect), right = CGRectGetMaxX(rect);
  const CGFloat bottom = CGRectGetMinY(rect), top = CGRectGetMaxY(rect);
  CGPathMoveToPoint(path, m, left, bottom);
  CGPathAddLineToPoint(path, m, right, bottom);
  CGPathAddLineToPoint(path, m, right, top);
  CGPathAddLineToPoint(path, m, left, top);
  CGPathCloseSubpath(path);
}

bool CGPathIsEmpty(CGPathRef path) { return !path || path->types.size() == 0; }

bool CGPathEqualToPath(CGPathRef a, CGPathRef b) { return a == b || (a && b && *a == *b); }

CGPoint CGPathGetCurrentPoint(CGPathRef path) { return path ? path->current : CGPointZero; }

CGRect CGPathGetBoundingBox(CGPathRef path) {
  if (CGPathIsEmpty(path)) return CGRectNull;
  const auto x = std::ranges::minmax(pointsOf(*path), {}, &CGPoint::x);
  const auto y = std::ranges::minmax(pointsOf(*path), {}, &CGPoint::y);
  return CGRectMake(x.min.x, y.min.y, x.max.x - x.min.x, y.max.y - y.min.y);
}

// The function gets a copy of the points: it may write to them, and may add to the path meanwhile.
void CGPathApply(CGPathRef path, void *info, CGPathApplierFunction function) {
  if (!path || !function) return;
  const std::size_t count = path->types.size();
  std::size_t at = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const uint8_t type = path->types.data()[i];
    std::array<CGPoint, 3> points{};
    std::copy_n(path->points.data() + at, kPointsOf[type], points.begin());
    const CGPathElement element = {type, points.data()};
    function(info, &element);
    at += kPointsOf[type];
  }
}
