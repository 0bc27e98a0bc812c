// Finds which open subpaths have an end near a given one.
#pragma once

#include <cstdint>
#include <limits>
#include <vector>

#include "path/path_elements.h"

namespace drav::path {

// Joining two subpaths makes no new end points: it uses up one end of each and hands the others to the joined
// subpath. So the points are sorted once, into horizontal bands two units high and by x within a band, and
// only who owns an end changes later. Ends within less than two units of each other, as adjacency asks, lie
// in the same band or in neighbouring ones. Each end remembers where in those three bands its surroundings
// begin, so that a query touches little but the answer.
//
// Subpaths are named by their number in the list that the index was built from.
class EndIndex {
 public:
  using Number = std::uint32_t;
  static constexpr Number kNobody = std::numeric_limits<Number>::max();

  // Throws std::bad_alloc also when there are more subpaths than numbers. No subpath is empty.
  explicit EndIndex(const SubpathList &subpaths);

  // The subpaths after the given one that have an end adjacent to one of its two ends, in order, each once.
  void collectLaterNeighbours(Number subpath, std::vector<Number> &found) const;

  // Records that absorbed was put before or after the elements of subpath, reversed or not.
  void join(Number subpath, Number absorbed, bool prepend, bool reverse) noexcept;

  // Forgets both ends of a subpath.
  void remove(Number subpath) noexcept;

 private:
  using Place = std::uint32_t;

  struct End {
    CGPoint point;
    std::int32_t band;
    Number owner;
    bool isLast;
    Place surroundings[3];  // first place in the bands below, here and above that may be adjacent
  };
  struct Ends {
    Place first, last;
  };

  void addEnd(const CGPoint &point, Number owner, bool isLast);
  void sortEnds();
  void assignPlaces();
  void findSurroundings();
  void findSurroundings(Place begin, Place end, Place otherBegin, Place otherEnd, int which) noexcept;
  Place endOfBand(Place begin) const noexcept;
  void collectAround(Place place, Number after, std::vector<Number> &found) const;

  std::vector<End> ends_;     // sorted; the last one is a sentinel, in a band of its own
  std::vector<Ends> endsOf_;  // of each subpath; the sentinel's place for an end that is not indexed
};

}  // namespace drav::path
