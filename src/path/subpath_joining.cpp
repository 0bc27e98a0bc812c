#include "path/subpath_joining.h"

#include <algorithm>
#include <utility>

#include "path/assertion.h"

namespace drav::path {
namespace {

// The move-to of a subpath that no longer begins anything becomes a line.
void continueWithLine(Subpath &subpath) {
  std::int32_t &type = subpath.at(0).type;
  DRAV_PATH_CHECK(kCGPathElementMoveToPoint == type);
  type = kCGPathElementAddLineToPoint;
}

}  // namespace

bool IsClosedPath(Subpath &subpath) noexcept {
  if (subpath.size() < 2) return false;
  if (!PointsAreAdjacent(subpath.front().point, subpath.back().point)) return false;
  subpath.back() = Close();
  return true;
}

void ReversePath(Subpath &subpath) noexcept {
  if (subpath.empty()) return;
  std::reverse(subpath.begin(), subpath.end());
  std::swap(subpath.front().type, subpath.back().type);
}

void CombinePaths(Subpath &a, Subpath &b, bool prepend, bool reverse) {
  if (reverse) ReversePath(b);
  continueWithLine(prepend ? a : b);
  a.insert(prepend ? a.begin() : a.end(), b.begin(), b.end());
}

bool TransferClosedPath(SubpathList::iterator &position, SubpathList &closed) {
  const Subpath &subpath = *position;
  DRAV_PATH_ASSERT(kCGPathElementMoveToPoint == subpath.at(0).type,
                   "kCGPathElementMoveToPoint == subpath->at(0).type");
  DRAV_PATH_ASSERT(!subpath.empty(), "size >= 1");
  if (subpath.size() == 1 || subpath.back().type != kCGPathElementCloseSubpath) return false;
  closed.push_back(std::exchange(*position, {}));
  ++position;
  return true;
}

void CloseIncompletePath(Subpath &subpath) {
  const std::size_t count = subpath.size();
  DRAV_PATH_ASSERT(count != 0, "0 != elements.size()");
  if (count == 1) {
    subpath.push_back(LineTo(subpath.front().point));
    subpath.push_back(Close());
    return;
  }
  subpath.reserve(2 * count - 1);
  for (std::size_t i = count - 2; i > 0; --i) subpath.push_back(subpath[i]);
  subpath.push_back(Close());
}

}  // namespace drav::path
