#include "path/subpath_joining.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>

#include "path/tracing.h"

namespace drav::path {
namespace {

TEST(PointsAreAdjacent, HoldsForAPointAndItsEightNeighbours) {
  for (int dx = -3; dx <= 3; ++dx) {
    for (int dy = -3; dy <= 3; ++dy) {
      const CGPoint p{10, 20};
      const CGPoint q{static_cast<float>(10 + dx), static_cast<float>(20 + dy)};
      EXPECT_EQ(std::abs(dx) <= 1 && std::abs(dy) <= 1, PointsAreAdjacent(p, q)) << dx << " " << dy;
    }
  }
}

TEST(PointsAreAdjacent, TruncatesDifferencesTowardsZero) {
  EXPECT_TRUE(PointsAreAdjacent({1.875F, 0}, {0, 0}));
  EXPECT_TRUE(PointsAreAdjacent({0, 0}, {0, 1.875F}));
  EXPECT_FALSE(PointsAreAdjacent({2, 0}, {0, 0}));
}

TEST(PointsAreAdjacent, DoesNotHoldForWhatIsNotANumberOrOutOfRange) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  EXPECT_FALSE(PointsAreAdjacent({nan, 0}, {nan, 0}));
  EXPECT_FALSE(PointsAreAdjacent({3e38F, 0}, {-3e38F, 0}));
}

bool closes(const std::string &before, const std::string &after) {
  Subpath subpath = subpathOf(before);
  const bool closed = IsClosedPath(subpath);
  EXPECT_EQ(after, written(subpath));
  return closed;
}

TEST(IsClosedPath, ReplacesTheLastElementWhereTheEndsTouch) {
  EXPECT_TRUE(closes("M0,0 L5,0 L5,5 L1,1", "M0,0 L5,0 L5,5 Z"));
}

TEST(IsClosedPath, LeavesASubpathWhoseEndsAreApart) {
  EXPECT_FALSE(closes("M0,0 L5,0 L2,0", "M0,0 L5,0 L2,0"));
}

TEST(IsClosedPath, MakesTwoNeighboursAMoveToAndAClose) { EXPECT_TRUE(closes("M3,3 L4,4", "M3,3 Z")); }

TEST(IsClosedPath, LeavesASingleElementAndNone) {
  EXPECT_FALSE(closes("M3,3", "M3,3"));
  EXPECT_FALSE(closes("", ""));
}

std::string reversed(const std::string &before) {
  Subpath subpath = subpathOf(before);
  ReversePath(subpath);
  return written(subpath);
}

TEST(ReversePath, TurnsAPolylineAround) { EXPECT_EQ("M2,2 L1,1 L0,0", reversed("M0,0 L1,1 L2,2")); }

TEST(ReversePath, LeavesASingleElementAndNone) {
  EXPECT_EQ("M3,4", reversed("M3,4"));
  EXPECT_EQ("", reversed(""));
}

std::string combined(const std::string &first, const std::string &second, bool prepend, bool reverse) {
  Subpath a = subpathOf(first);
  Subpath b = subpathOf(second);
  CombinePaths(a, b, prepend, reverse);
  return written(a);
}

TEST(CombinePaths, AppendsTheSecondAfterTheFirst) {
  EXPECT_EQ("M0,0 L5,0 L6,1 L9,4", combined("M0,0 L5,0", "M6,1 L9,4", false, false));
}

TEST(CombinePaths, AppendsTheSecondReversed) {
  EXPECT_EQ("M0,0 L5,0 L6,1 L9,4", combined("M0,0 L5,0", "M9,4 L6,1", false, true));
}

TEST(CombinePaths, PrependsTheSecondBeforeTheFirst) {
  EXPECT_EQ("M9,4 L6,1 L5,0 L0,0", combined("M5,0 L0,0", "M9,4 L6,1", true, false));
}

TEST(CombinePaths, PrependsTheSecondReversedAndMakesTheFirstMoveToALine) {
  EXPECT_EQ("M9,4 L6,1 L5,0 L0,0", combined("M5,0 L0,0", "M6,1 L9,4", true, true));
}

TEST(CombinePathsDeathTest, AssertsThatTheFirstBeginsWithAMoveToWhenPrepending) {
  EXPECT_DEATH(combined("L5,0 L0,0", "M6,1", true, false),
               assertionLine("subpath_joining.cpp", "kCGPathElementMoveToPoint == type"));
}

TEST(CombinePathsDeathTest, AssertsThatTheSecondBeginsWithAMoveToWhenAppending) {
  EXPECT_DEATH(combined("M5,0 L0,0", "L6,1", false, false),
               assertionLine("subpath_joining.cpp", "kCGPathElementMoveToPoint == type"));
}

TEST(TransferClosedPath, MovesASubpathThatEndsInACloseAndStepsToTheNext) {
  SubpathList open = listOf({"M0,0 L9,9 Z", "M5,5"});
  SubpathList closed = listOf({"M1,1 Z"});
  auto position = open.begin();
  EXPECT_TRUE(TransferClosedPath(position, closed));
  EXPECT_EQ(Lines({"M1,1 Z", "M0,0 L9,9 Z"}), written(closed));
  EXPECT_EQ("M5,5", written(*position));
  EXPECT_TRUE(open.front().empty());
}

TEST(TransferClosedPath, LeavesAnOpenSubpath) {
  SubpathList open = listOf({"M0,0 L9,9"});
  SubpathList closed;
  auto position = open.begin();
  EXPECT_FALSE(TransferClosedPath(position, closed));
  EXPECT_EQ(open.begin(), position);
  EXPECT_EQ(Lines({"M0,0 L9,9"}), written(open));
  EXPECT_TRUE(closed.empty());
}

TEST(TransferClosedPath, LeavesASingleElement) {
  SubpathList open = listOf({"M0,0"});
  SubpathList closed;
  auto position = open.begin();
  EXPECT_FALSE(TransferClosedPath(position, closed));
}

TEST(TransferClosedPath, FailsOnAnEmptySubpathAtTheBoundsCheck) {
  SubpathList open(1);
  SubpathList closed;
  auto position = open.begin();
  EXPECT_THROW(TransferClosedPath(position, closed), std::out_of_range);
}

TEST(TransferClosedPathDeathTest, AssertsThatTheSubpathBeginsWithAMoveTo) {
  SubpathList open = listOf({"L0,0 Z"});
  SubpathList closed;
  auto position = open.begin();
  EXPECT_DEATH(TransferClosedPath(position, closed),
               assertionLine("subpath_joining.cpp", "kCGPathElementMoveToPoint == subpath->at(0).type"));
}

std::string shut(const std::string &before) {
  Subpath subpath = subpathOf(before);
  CloseIncompletePath(subpath);
  return written(subpath);
}

TEST(CloseIncompletePath, WalksBackOverItsOwnVertices) {
  EXPECT_EQ("M0,0 L1,0 L2,2 L3,3 L2,2 L1,0 Z", shut("M0,0 L1,0 L2,2 L3,3"));
}

TEST(CloseIncompletePath, OnlyClosesASingleLine) { EXPECT_EQ("M0,0 L4,0 Z", shut("M0,0 L4,0")); }

TEST(CloseIncompletePath, GivesASinglePointALineToItself) { EXPECT_EQ("M3,4 L3,4 Z", shut("M3,4")); }

TEST(CloseIncompletePathDeathTest, AssertsThatThereIsAnElement) {
  EXPECT_DEATH(shut(""), assertionLine("subpath_joining.cpp", "0 != elements.size()"));
}

}  // namespace
}  // namespace drav::path
