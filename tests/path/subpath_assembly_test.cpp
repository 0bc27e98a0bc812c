#include "path/subpath_assembly.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "path/tracing.h"

namespace drav::path {
namespace {

Traced assembled(SubpathList list) {
  Traced result{std::move(list), ""};
  result.text = textOf([&](TextOutput &output) { ConcatenateSubpaths(result.list, output); });
  return result;
}
Lines assembledLines(const Lines &lines) { return written(assembled(listOf(lines)).list); }

TEST(ConcatenateSubpaths, PutsClosedSubpathsBeforeThoseShut) {
  EXPECT_EQ(Lines({"M20,20 L25,20 L25,25 Z", "M40,40 L45,40 L45,45 Z", "M0,0 L5,0 Z", "M60,60 L60,60 Z"}),
            assembledLines({"M0,0 L5,0", "M20,20 L25,20 L25,25 Z", "M60,60", "M40,40 L45,40 L45,45 Z"}));
}

TEST(ConcatenateSubpaths, DumpsClosedThenOpenSubpathsAsTheyWereBeforeJoining) {
  EXPECT_EQ(
      "\n"
      "Closed Paths:\n"
      "Path 0\n"
      "\tMoveToPoint:  (20, 20)\n"
      "\tAddLineToPoint:  (25, 20)\n"
      "\tCloseSubpath\n"
      "\n"
      "Open Paths:\n"
      "Path 0\n"
      "\tMoveToPoint:  (0, 0)\n"
      "Path 1\n"
      "\tMoveToPoint:  (0, 1)\n",
      assembled(listOf({"M0,0", "M20,20 L25,20 Z", "M0,1"})).text);
}

TEST(ConcatenateSubpaths, AnEmptyListStaysEmptyAndPrintsTheHeadings) {
  const Traced result = assembled({});
  EXPECT_TRUE(result.list.empty());
  EXPECT_EQ("\nClosed Paths:\n\nOpen Paths:\n", result.text);
}

TEST(ConcatenateSubpaths, ASinglePointMergesWhereANeighbourTouchesIt) {
  EXPECT_EQ(Lines({"M0,0 L5,0 L6,1 L5,0 Z"}), assembledLines({"M0,0 L5,0", "M6,1"}));
}

TEST(ConcatenateSubpaths, TwoTouchingPointsCloseByBeingMerged) {
  // The first takes the second before it, reversed: M1,1 L0,0. The ends touch, so the last element is
  // replaced.
  EXPECT_EQ(Lines({"M1,1 Z"}), assembledLines({"M0,0", "M1,1"}));
}

TEST(ConcatenateSubpaths, TestsTheFirstPointBeforeTheLast) {
  // 1,1 touches both ends of the first subpath.
  EXPECT_EQ(Lines({"M20,1 L1,1 L0,0 L2,0 L0,0 L1,1 Z"}), assembledLines({"M0,0 L2,0", "M1,1 L20,1"}));
}

TEST(ConcatenateSubpaths, TestsTheOthersFirstPointBeforeItsLast) {
  // Both ends of the second touch 0,0. By its first point it goes in front reversed.
  EXPECT_EQ(Lines({"M0,1 L5,5 L1,1 L0,0 L9,0 L0,0 L1,1 L5,5 Z"}),
            assembledLines({"M0,0 L9,0", "M1,1 L5,5 L0,1"}));
}

TEST(ConcatenateSubpaths, ComparesWithTheEndsThatASubpathHadWhenItsTurnCame) {
  // The second goes after the first. The third touches the first's old last point, which is now inside, and
  // goes after all the same; the fourth touches the new last point and has to wait for the next pass.
  EXPECT_EQ(
      Lines({"M0,0 L10,0 L11,0 L30,0 L10,1 L30,30 L31,30 L50,50 L31,30 L30,30 L10,1 L30,0 L11,0 L10,0 Z"}),
      assembledLines({"M0,0 L10,0", "M11,0 L30,0", "M10,1 L30,30", "M31,30 L50,50"}));
}

TEST(ConcatenateSubpaths, AStaleEndDecidesWhatIsJoinedInAPass) {
  // In the first pass the first takes the second. The third touches only the second's far end, which is not
  // compared in this pass, and so takes the fourth on its own turn. The second pass joins both.
  EXPECT_EQ(Lines({"M0,0 L10,0 L11,0 L30,0 L31,0 L50,0 L51,0 L70,0 L51,0 L50,0 L31,0 L30,0 L11,0 L10,0 Z"}),
            assembledLines({"M0,0 L10,0", "M11,0 L30,0", "M31,0 L50,0", "M51,0 L70,0"}));
}

TEST(ConcatenateSubpaths, ASubpathThatClosesEndsItsTurnAndIsMovedBehindTheEarlierClosedOnes) {
  // The second goes in front by 0,1, and 11,1 touches 10,0, which becomes the close. The third touches the
  // first's old last point, but the turn is over.
  EXPECT_EQ(Lines({"M80,80 L90,80 L90,90 Z", "M11,1 L20,20 L0,1 L0,0 Z", "M10,1 L30,30 Z"}),
            assembledLines({"M0,0 L10,0", "M80,80 L90,80 L90,90 Z", "M11,1 L20,20 L0,1", "M10,1 L30,30"}));
}

TEST(ConcatenateSubpaths, AnEmptySubpathFailsAtTheBoundsCheck) {
  EXPECT_THROW(assembled(SubpathList(1)), std::out_of_range);
}

TEST(ConcatenateSubpathsDeathTest, AssertsThatSubpathsBeginWithAMoveTo) {
  EXPECT_DEATH(assembled({{LineTo({0, 0})}}),
               assertionLine("subpath_joining.cpp", "kCGPathElementMoveToPoint == subpath->at(0).type"));
}

// Short random subpaths, crowded so that many ends touch: more merging, and more closing, than images give.
SubpathList randomList(RandomNumbers &numbers) {
  SubpathList list;
  const unsigned side = 2 + numbers() % 40;
  const unsigned count = numbers() % 40;
  const auto point = [&] {
    const auto x = static_cast<float>(numbers() % side);
    return CGPoint{x, static_cast<float>(numbers() % side)};
  };
  for (unsigned i = 0; i < count; ++i) {
    list.push_back({MoveTo(point())});
    for (unsigned lines = numbers() % 4; lines > 0; --lines) list.back().push_back(LineTo(point()));
    if (numbers() % 10 == 0) list.back().push_back(Close());
  }
  return list;
}

TEST(ConcatenateSubpaths, EqualsThePlainFormOnFiftyThousandRandomLists) {
  RandomNumbers numbers(3);
  int closedByMerging = 0;
  for (int round = 0; round < 50000; ++round) {
    const SubpathList list = randomList(numbers);
    const plain::Trace expected = plain::assemble(plainly(list));
    const Traced result = assembled(list);
    ASSERT_EQ(expected.paths, plainly(result.list)) << round;
    ASSERT_EQ(expected.text, result.text) << round;
    closedByMerging += expected.closedByMerging;
  }
  EXPECT_GT(closedByMerging, 40000);
}

}  // namespace
}  // namespace drav::path
