#include "outline.h"

#include <cmath>
#include <new>

#include "failure.h"
#include "hush.h"
#include "pixels.h"

namespace {

class Collector {
 public:
  Collector(std::vector<Loop> &loops, long height) noexcept : loops_(loops), height_(height) {}

  // For CGPathApply; no exception may pass through it.
  static void take(void *info, const CGPathElement *element) noexcept {
    auto *self = static_cast<Collector *>(info);
    try {
      self->add(*element);
    } catch (const std::bad_alloc &) {
      self->failed_ = true;
    }
  }

  bool failed() const noexcept { return failed_; }

 private:
  void add(const CGPathElement &element) {
    if (element.type == kCGPathElementMoveToPoint) loops_.emplace_back();
    const bool hasPoint =
        element.type == kCGPathElementMoveToPoint || element.type == kCGPathElementAddLineToPoint;
    if (hasPoint && !loops_.empty()) loops_.back().push_back(fromTopLeft(element.points[0]));
  }

  // The path's y grows upward from the bottom row.
  Place fromTopLeft(CGPoint point) const noexcept {
    return {std::lround(point.x), height_ - 1 - std::lround(point.y)};
  }

  std::vector<Loop> &loops_;
  long height_;
  bool failed_ = false;
};

cf::Ref<CGMutablePathRef> pathAround(DRAVCFImageRef image, float threshold) {
  const Hush hush;  // every step is narrated
  return cf::adopt(DRAVCFImageCopyAlphaPath(image, threshold));
}

}  // namespace

Outline traceOutline(DRAVCFImageRef image, float threshold) {
  if (!DRAVCFImageHasAlpha(image)) throw Failure("has no alpha to trace");
  const cf::Ref<CGMutablePathRef> path = pathAround(image, threshold);
  if (!path) throw Failure("out of memory");
  const Area bounds = boundsOf(image);
  Outline outline{bounds.width, bounds.height, {}};
  Collector collector(outline.loops, bounds.height);
  CGPathApply(path.get(), &collector, Collector::take);
  if (collector.failed()) throw Failure("out of memory");
  return outline;
}
