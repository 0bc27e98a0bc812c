// Platform paths written as text, the way written() writes subpaths.
#pragma once

#include <CoreGraphics/CoreGraphics.h>

#include "path/tracing.h"

namespace drav::path {

inline Lines written(CGPathRef path) {
  SubpathList list;
  CGPathApply(path, &list, [](void *info, const CGPathElement *element) {
    auto &subpaths = *static_cast<SubpathList *>(info);
    if (element->type == kCGPathElementMoveToPoint) subpaths.emplace_back();
    const bool isClose = element->type == kCGPathElementCloseSubpath;
    subpaths.back().push_back(isClose ? Close() : PathElement{element->type, element->points[0]});
  });
  return written(list);
}

}  // namespace drav::path
