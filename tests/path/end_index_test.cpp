#include "path/end_index.h"

#include <gtest/gtest.h>

#include <limits>

#include "path/subpath_joining.h"
#include "path/tracing.h"

namespace drav::path {
namespace {

using Numbers = std::vector<EndIndex::Number>;

Numbers neighbours(const EndIndex &index, EndIndex::Number subpath) {
  Numbers found;
  index.collectLaterNeighbours(subpath, found);
  return found;
}

// The same by comparing with every later subpath.
Numbers neighboursByComparing(const SubpathList &list, EndIndex::Number subpath) {
  Numbers found;
  for (EndIndex::Number other = subpath + 1; other < list.size(); ++other) {
    bool touches = false;
    for (const PathElement *own : {&list[subpath].front(), &list[subpath].back()}) {
      for (const PathElement *theirs : {&list[other].front(), &list[other].back()}) {
        touches = touches || PointsAreAdjacent(own->point, theirs->point);
      }
    }
    if (touches) found.push_back(other);
  }
  return found;
}

TEST(EndIndex, FindsLaterSubpathsInOrderAndEachOnce) {
  const EndIndex index(listOf({"M5,5 L9,9", "M8,8 L6,6", "M50,50", "M10,10", "M4,5 L5,4"}));
  EXPECT_EQ(Numbers({1, 3, 4}), neighbours(index, 0));
  EXPECT_EQ(Numbers({}), neighbours(index, 2));
  EXPECT_EQ(Numbers({}), neighbours(index, 4));
}

TEST(EndIndex, AJoinedSubpathHasTheOtherEndOfTheOneItAbsorbed) {
  const Lines lines = {"M20,20 L30,30", "M31,31 L40,40", "M41,41", "M21,19"};
  EndIndex index(listOf(lines));
  index.join(0, 1, false, false);
  EXPECT_EQ(Numbers({2, 3}), neighbours(index, 0));
  index.join(0, 3, true, false);
  EXPECT_EQ(Numbers({2}), neighbours(index, 0));
}

TEST(EndIndex, AnAbsorbedSubpathIsNotFoundByItsUsedEnd) {
  EndIndex index(listOf({"M0,0 L11,11", "M9,9", "M10,10 L30,30", "M31,31"}));
  EXPECT_EQ(Numbers({2}), neighbours(index, 0));
  index.join(1, 2, true, true);
  EXPECT_EQ(Numbers({}), neighbours(index, 0));
  EXPECT_EQ(Numbers({3}), neighbours(index, 1));
}

TEST(EndIndex, ARemovedSubpathIsNotFound) {
  EndIndex index(listOf({"M0,0", "M1,1", "M0,1"}));
  index.remove(1);
  EXPECT_EQ(Numbers({2}), neighbours(index, 0));
}

TEST(EndIndex, WhatIsNotFiniteIsNearNothing) {
  SubpathList list = listOf({"M0,0", "M0,0", "M0,1"});
  list[1].front().point.x = std::numeric_limits<float>::quiet_NaN();
  EndIndex index(list);
  EXPECT_EQ(Numbers({2}), neighbours(index, 0));
  EXPECT_EQ(Numbers({}), neighbours(index, 1));
  index.remove(1);
  EXPECT_EQ(Numbers({2}), neighbours(index, 0));
}

TEST(EndIndex, AnEmptyListHasAnIndex) { EndIndex index{SubpathList()}; }

TEST(EndIndex, FindsWhatComparingAllPairsFinds) {
  RandomNumbers numbers(11);
  for (int round = 0; round < 300; ++round) {
    // Whole, fractional, negative, and so large that points fall together.
    const float scales[] = {1.0F, 0.25F, 1.0F, 1.0e6F, 4.0e7F, 1.0e30F};
    const float scale = scales[round % 6];
    const float offset = round % 6 == 2 ? -20.0F : round % 6 == 3 ? 1.6e7F : 0.0F;
    const float step = round % 6 == 3 ? 1.0F : scale;
    SubpathList list;
    const unsigned side = 1 + numbers() % 40;
    const auto coordinate = [&] { return static_cast<float>(numbers() % side) * step + offset; };
    const auto point = [&] {
      const float x = coordinate();
      return CGPoint{x, coordinate()};
    };
    for (unsigned i = 0; i < 60; ++i) {
      list.push_back({MoveTo(point())});
      if (numbers() % 4 != 0) list.back().push_back(LineTo(point()));
    }
    const EndIndex index(list);
    for (EndIndex::Number number = 0; number < list.size(); ++number) {
      ASSERT_EQ(neighboursByComparing(list, number), neighbours(index, number)) << round;
    }
  }
}

}  // namespace
}  // namespace drav::path
