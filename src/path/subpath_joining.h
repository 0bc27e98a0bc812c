// The single steps of assembly: testing ends, reversing, joining and closing subpaths.
#pragma once

#include "path/path_elements.h"

namespace drav::path {

// Both differences, truncated towards zero, lie within -1 to 1: on the pixel grid, the same or a neighbour.
inline bool PointsAreAdjacent(const CGPoint &p, const CGPoint &q) noexcept {
  const float dx = p.x - q.x;
  const float dy = p.y - q.y;
  return dx > -2.0F && dx < 2.0F && dy > -2.0F && dy < 2.0F;
}

// If the ends of a subpath of two or more elements touch, closes it and returns true. The last element is
// replaced, not followed: its point lies within a pixel of the start, and closing draws that line anyway.
bool IsClosedPath(Subpath &subpath) noexcept;

// [move p0, line p1, ..., line pn] becomes [move pn, line pn-1, ..., line p0].
void ReversePath(Subpath &subpath) noexcept;

// Joins b, reversed first if so asked, before or after the elements of a. b is left for the caller to drop.
void CombinePaths(Subpath &a, Subpath &b, bool prepend, bool reverse);

// If the subpath at position ends in a close, moves it to the end of closed, steps to the next and returns
// true. An empty subpath stays in its place: dropping the empty places of a list once, afterwards, keeps
// the sorting of many subpaths linear. Throws std::out_of_range for an empty subpath.
bool TransferClosedPath(SubpathList::iterator &position, SubpathList &closed);

// Shuts an open trace by walking back over its own vertices, so that it encloses no area but is not lost.
void CloseIncompletePath(Subpath &subpath);

}  // namespace drav::path
