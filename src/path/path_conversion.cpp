#include "path/path_conversion.h"

#include "path/assertion.h"

namespace drav::path {
namespace {

void appendElement(CGMutablePathRef path, const PathElement &element, TextOutput &output) {
  switch (element.type) {
    case kCGPathElementMoveToPoint:
      CGPathMoveToPoint(path, nullptr, element.point.x, element.point.y);
      break;
    case kCGPathElementAddLineToPoint:
      CGPathAddLineToPoint(path, nullptr, element.point.x, element.point.y);
      break;
    case kCGPathElementCloseSubpath:
      CGPathCloseSubpath(path);
      break;
    default:
      (output << "unsupported type ").hexadecimal(static_cast<std::uint32_t>(element.type)) << "\n";
      DRAV_PATH_ASSERT(false, "false");
  }
}

std::size_t elementsOf(const SubpathList &list) noexcept {
  std::size_t count = 0;
  for (const Subpath &subpath : list) count += subpath.size();
  return count;
}

std::size_t elementsOf(CGPathRef path) noexcept {
  std::size_t count = 0;
  CGPathApply(path, &count, [](void *info, const CGPathElement *) { ++*static_cast<std::size_t *>(info); });
  return count;
}

}  // namespace

bool ConvertSubpathsToPath(const SubpathList &list, CGMutablePathRef &path, TextOutput &output) {
  DRAV_PATH_ASSERT(path == nullptr, "path == NULL");
  path = CGPathCreateMutable();
  if (path == nullptr) return false;
  for (const Subpath &subpath : list) {
    for (const PathElement &element : subpath) appendElement(path, element, output);
  }
  // The platform's calls have no result: a path that could not grow is only found out by what it lacks.
  return elementsOf(path) == elementsOf(list);
}

}  // namespace drav::path
