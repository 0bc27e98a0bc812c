#include "path/path_elements.h"

namespace drav::path {
namespace {

// Most traces of real outlines and of noise alike have a handful of vertices; one allocation holds them.
constexpr std::size_t kUsualElements = 4;

CGPoint pointAt(int x, int y) noexcept { return CGPoint{static_cast<float>(x), static_cast<float>(y)}; }

}  // namespace

PathElement MoveTo(CGPoint point) noexcept { return {kCGPathElementMoveToPoint, point}; }
PathElement LineTo(CGPoint point) noexcept { return {kCGPathElementAddLineToPoint, point}; }
PathElement Close() noexcept { return {kCGPathElementCloseSubpath, CGPoint{0.0F, 0.0F}}; }

void CreateNewSubpath(SubpathList *list, int x, int y) {
  Subpath &subpath = list->emplace_back();
  subpath.reserve(kUsualElements);
  subpath.push_back(MoveTo(pointAt(x, y)));
}

void AddLineToCurrentSubpath(SubpathList *list, int x, int y) {
  list->back().push_back(LineTo(pointAt(x, y)));
}

void CloseCurrentSubpath(SubpathList *list) { list->back().push_back(Close()); }

TextOutput &operator<<(TextOutput &output, const PathElement &element) {
  switch (element.type) {
    case kCGPathElementMoveToPoint:
      return output << "\tMoveToPoint:  (" << element.point.x << ", " << element.point.y << ")\n";
    case kCGPathElementAddLineToPoint:
      return output << "\tAddLineToPoint:  (" << element.point.x << ", " << element.point.y << ")\n";
    case kCGPathElementCloseSubpath:
      return output << "\tCloseSubpath\n";
    default:
      return output << "UNRECOGNIZED TYPE\n";
  }
}

TextOutput &operator<<(TextOutput &output, const Subpath &subpath) {
  for (const PathElement &element : subpath) output << element;
  return output;
}

TextOutput &operator<<(TextOutput &output, const SubpathList &list) {
  std::size_t count = 0;
  for (const Subpath &subpath : list) output << "Path " << count++ << "\n" << subpath;
  return output;
}

}  // namespace drav::path
