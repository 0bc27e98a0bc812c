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

}  // namespace

bool ConvertSubpathsToPath(const SubpathList &list, CGMutablePathRef &path, TextOutput &output) {
  DRAV_PATH_ASSERT(path == nullptr, "path == NULL");
  path = CGPathCreateMutable();
  if (path == nullptr) return false;
  for (const Subpath &subpath : list) {
    for (const PathElement &element : subpath) appendElement(path, element, output);
  }
  return true;
}

}  // namespace drav::path
