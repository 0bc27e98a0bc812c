#include "path/end_index.h"

#include <algorithm>
#include <cmath>
#include <new>

#include "path/subpath_joining.h"

namespace drav::path {
namespace {

constexpr std::int32_t kFarthestBand = 1 << 30;
constexpr std::int32_t kSentinelBand = std::numeric_limits<std::int32_t>::max();

// Clamping keeps the order of the bands and only makes the outermost two crowded.
std::int32_t bandOf(float y) noexcept {
  constexpr float farthest = kFarthestBand;
  return static_cast<std::int32_t>(std::clamp(std::floor(y / 2.0F), -farthest, farthest));
}

}  // namespace

EndIndex::EndIndex(const SubpathList &subpaths) {
  if (subpaths.size() >= kNobody / 2) throw std::bad_alloc();
  ends_.reserve(2 * subpaths.size() + 1);
  for (Number number = 0; number < subpaths.size(); ++number) {
    addEnd(subpaths[number].front().point, number, false);
    addEnd(subpaths[number].back().point, number, true);
  }
  sortEnds();
  ends_.push_back({CGPoint{0.0F, 0.0F}, kSentinelBand, kNobody, false, {0, 0, 0}});
  endsOf_.assign(subpaths.size(),
                 Ends{static_cast<Place>(ends_.size() - 1), static_cast<Place>(ends_.size() - 1)});
  assignPlaces();
  findSurroundings();
}

// What is not finite is adjacent to nothing, itself included.
void EndIndex::addEnd(const CGPoint &point, Number owner, bool isLast) {
  if (!std::isfinite(point.x) || !std::isfinite(point.y)) return;
  ends_.push_back({point, bandOf(point.y), owner, isLast, {0, 0, 0}});
}

void EndIndex::sortEnds() {
  std::sort(ends_.begin(), ends_.end(), [](const End &a, const End &b) {
    return a.band != b.band ? a.band < b.band : a.point.x < b.point.x;
  });
}

void EndIndex::assignPlaces() {
  for (Place place = 0; place + 1 < ends_.size(); ++place) {
    const End &end = ends_[place];
    (end.isLast ? endsOf_[end.owner].last : endsOf_[end.owner].first) = place;
  }
}

EndIndex::Place EndIndex::endOfBand(Place begin) const noexcept {
  Place end = begin;
  while (ends_[end].band == ends_[begin].band && ends_[end].band != kSentinelBand) ++end;
  return end;
}

void EndIndex::findSurroundings() {
  const Place sentinel = static_cast<Place>(ends_.size() - 1);
  Place belowBegin = 0;
  Place belowEnd = 0;
  for (Place begin = 0; begin < sentinel;) {
    const Place end = endOfBand(begin);
    findSurroundings(begin, end, belowBegin, belowEnd, 0);
    findSurroundings(begin, end, begin, end, 1);
    findSurroundings(begin, end, end, endOfBand(end), 2);
    belowBegin = begin;
    belowEnd = end;
    begin = end;
  }
}

// Both bands are sorted by x, so the beginnings only move on. A cursor that runs out of its band is harmless:
// a query looks at the band of each end it comes to.
void EndIndex::findSurroundings(Place begin, Place end, Place otherBegin, Place otherEnd,
                                int which) noexcept {
  Place other = otherBegin;
  for (Place place = begin; place < end; ++place) {
    while (other < otherEnd && ends_[other].point.x - ends_[place].point.x <= -2.0F) ++other;
    ends_[place].surroundings[which] = other;
  }
}

void EndIndex::collectAround(Place place, Number after, std::vector<Number> &found) const {
  const End &centre = ends_[place];
  if (centre.band == kSentinelBand) return;
  for (int which = 0; which < 3; ++which) {
    const std::int32_t band = centre.band + which - 1;
    for (Place at = centre.surroundings[which]; ends_[at].band == band; ++at) {
      const End &end = ends_[at];
      if (end.point.x - centre.point.x >= 2.0F) break;
      if (end.owner == kNobody || end.owner <= after) continue;
      if (PointsAreAdjacent(centre.point, end.point)) found.push_back(end.owner);
    }
  }
}

void EndIndex::collectLaterNeighbours(Number subpath, std::vector<Number> &found) const {
  found.clear();
  collectAround(endsOf_[subpath].first, subpath, found);
  collectAround(endsOf_[subpath].last, subpath, found);
  if (found.size() < 2) return;
  std::sort(found.begin(), found.end());
  found.erase(std::unique(found.begin(), found.end()), found.end());
}

void EndIndex::join(Number subpath, Number absorbed, bool prepend, bool reverse) noexcept {
  Ends &own = endsOf_[subpath];
  const Ends &other = endsOf_[absorbed];
  Place &joined = prepend ? own.first : own.last;
  const bool keepsFirst = prepend != reverse;
  const Place used = keepsFirst ? other.last : other.first;
  const Place kept = keepsFirst ? other.first : other.last;
  ends_[joined].owner = kNobody;
  ends_[used].owner = kNobody;
  ends_[kept].owner = subpath;
  joined = kept;
}

void EndIndex::remove(Number subpath) noexcept {
  ends_[endsOf_[subpath].first].owner = kNobody;
  ends_[endsOf_[subpath].last].owner = kNobody;
}

}  // namespace drav::path
