#include "path/subpath_assembly.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <utility>

#include "path/end_index.h"
#include "path/subpath_joining.h"

namespace drav::path {
namespace {

using Number = EndIndex::Number;

void dropEmptyPlaces(SubpathList &list) {
  std::erase_if(list, [](const Subpath &subpath) { return subpath.empty(); });
}

void sortOutClosed(SubpathList &open, SubpathList &closed) {
  for (auto position = open.begin(); position != open.end();) {
    if (!TransferClosedPath(position, closed)) ++position;
  }
  dropEmptyPlaces(open);
}

struct Join {
  bool prepend, reverse;
};

// How to join b to the subpath that began at first and ended at last; false if they do not touch.
bool findJoin(const CGPoint &first, const CGPoint &last, const Subpath &b, Join &join) noexcept {
  const CGPoint &otherFirst = b.front().point;
  const CGPoint &otherLast = b.back().point;
  if (PointsAreAdjacent(first, otherFirst)) return join = {true, true}, true;
  if (PointsAreAdjacent(first, otherLast)) return join = {true, false}, true;
  if (PointsAreAdjacent(last, otherFirst)) return join = {false, false}, true;
  if (PointsAreAdjacent(last, otherLast)) return join = {false, true}, true;
  return false;
}

// Joins what touches among the open subpaths. A subpath that was absorbed or moved out leaves an empty place,
// so that numbers keep their meaning.
class Merging {
 public:
  Merging(SubpathList &open, SubpathList &closed) : open_(open), closed_(closed), index_(open) {}

  void run() {
    std::vector<Number> pass(open_.size());
    std::iota(pass.begin(), pass.end(), Number{0});
    while (!pass.empty()) runPass(pass);
  }

 private:
  // Leaves in pass the subpaths that the next one has to look at: only those that joined something and are
  // still open. All others have no later subpath near their ends, and never will: ends do not move, and the
  // number of an end's owner only ever falls.
  void runPass(std::vector<Number> &pass) {
    std::size_t kept = 0;
    for (const Number a : pass) {
      if (!open_[a].empty() && absorbNeighbours(a)) pass[kept++] = a;
    }
    pass.resize(kept);
  }

  // One subpath's turn. Returns whether it joined something and is still open.
  //
  // The walks visit a pixel once, so an end has at most eight others around it: that bounds how often a
  // long subpath is moved to put another one before it.
  bool absorbNeighbours(Number a) {
    index_.collectLaterNeighbours(a, neighbours_);
    const CGPoint first = open_[a].front().point;
    const CGPoint last = open_[a].back().point;
    for (const Number b : neighbours_) {
      Join join{};
      if (!findJoin(first, last, open_[b], join)) continue;
      absorb(a, b, join);
      if (IsClosedPath(open_[a])) {
        moveOut(a);
        return false;
      }
    }
    return !neighbours_.empty();
  }

  void absorb(Number a, Number b, const Join &join) {
    CombinePaths(open_[a], open_[b], join.prepend, join.reverse);
    index_.join(a, b, join.prepend, join.reverse);
    Subpath().swap(open_[b]);
  }

  void moveOut(Number a) {
    index_.remove(a);
    auto position = open_.begin() + a;
    TransferClosedPath(position, closed_);
  }

  SubpathList &open_;
  SubpathList &closed_;
  EndIndex index_;
  std::vector<Number> neighbours_;  // kept from turn to turn for its memory
};

void putInFront(SubpathList &closed, SubpathList &open) {
  closed.reserve(closed.size() + open.size());
  std::move(open.begin(), open.end(), std::back_inserter(closed));
  open.swap(closed);
}

}  // namespace

void ConcatenateSubpaths(SubpathList &list, TextOutput &output) {
  SubpathList closed;
  sortOutClosed(list, closed);
  output << "\nClosed Paths:\n" << closed << "\nOpen Paths:\n" << list;
  Merging(list, closed).run();
  dropEmptyPlaces(list);
  for (Subpath &subpath : list) CloseIncompletePath(subpath);
  putInFront(closed, list);
}

}  // namespace drav::path
