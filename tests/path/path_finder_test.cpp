#include "path/path_finder.h"

#include <gtest/gtest.h>

#include <new>

#include "failing_new.h"
#include "path/tracing.h"

// The expected paths and texts below were worked out by hand on squared paper, from the sweep alone: from a
// start the neighbours north-west to west are tried clockwise (identifiers 1 to 8); after a step with
// identifier k, k - 3 to k + 3; below zero nothing is found; the first unvisited boundary pixel is taken.

namespace drav::path {
namespace {

Lines tracedLines(const std::vector<std::string> &rows, float threshold = 0.0F) {
  return written(traced(Picture::of(rows), threshold).list);
}

// East along the top, and a vertex wherever the direction changes; the last side leads back to the start.
constexpr const char *kSquareText =
    "starting subpath (0, 0)\n"
    "adding line (2, 0)\n"
    "adding line (2, 2)\n"
    "adding line (0, 2)\n"
    "closing subpath\n"
    "Path 0\n"
    "\tMoveToPoint:  (0, 2)\n"
    "\tAddLineToPoint:  (2, 2)\n"
    "\tAddLineToPoint:  (2, 0)\n"
    "\tAddLineToPoint:  (0, 0)\n"
    "\tCloseSubpath\n"
    "\n"
    "Closed Paths:\n"
    "Path 0\n"
    "\tMoveToPoint:  (0, 2)\n"
    "\tAddLineToPoint:  (2, 2)\n"
    "\tAddLineToPoint:  (2, 0)\n"
    "\tAddLineToPoint:  (0, 0)\n"
    "\tCloseSubpath\n"
    "\n"
    "Open Paths:\n"
    "\n"
    "\n"
    "Path 0\n"
    "\tMoveToPoint:  (0, 2)\n"
    "\tAddLineToPoint:  (2, 2)\n"
    "\tAddLineToPoint:  (2, 0)\n"
    "\tAddLineToPoint:  (0, 0)\n"
    "\tCloseSubpath\n";

TEST(TraceSubpaths, FollowsARingClockwiseAndClosesIt) {
  const Traced result = traced(Picture::of({"XXX", "X.X", "XXX"}));
  EXPECT_EQ(Lines({"M0,2 L2,2 L2,0 L0,0 Z"}), written(result.list));
  EXPECT_EQ(kSquareText, result.text);
}

TEST(TraceSubpaths, AFullImageTracesOnlyItsBorder) {
  EXPECT_EQ(kSquareText, traced(Picture::of({"XXX", "XXX", "XXX"})).text);
}

// South; at (0, 1) the south-east neighbour (1, 2) comes before the south one, so the corner (0, 2) is cut;
// then east to (2, 2), where the walk is stuck. The corner is left to a walk of its own, which finds nothing.
// It touches neither end of the first subpath.
TEST(TraceSubpaths, FollowsAnLCuttingItsCorner) {
  const Traced result = traced(Picture::of({"X..", "X..", "XXX"}));
  EXPECT_EQ(Lines({"M0,2 L0,1 L1,0 L2,0 L1,0 L0,1 Z", "M0,0 L0,0 Z"}), written(result.list));
  EXPECT_EQ(
      "starting subpath (0, 0)\n"
      "adding line (0, 1)\n"
      "adding line (1, 2)\n"
      "adding line (2, 2)\n"
      "starting subpath (0, 2)\n"
      "Path 0\n"
      "\tMoveToPoint:  (0, 2)\n"
      "\tAddLineToPoint:  (0, 1)\n"
      "\tAddLineToPoint:  (1, 0)\n"
      "\tAddLineToPoint:  (2, 0)\n"
      "Path 1\n"
      "\tMoveToPoint:  (0, 0)\n"
      "\n"
      "Closed Paths:\n"
      "\n"
      "Open Paths:\n"
      "Path 0\n"
      "\tMoveToPoint:  (0, 2)\n"
      "\tAddLineToPoint:  (0, 1)\n"
      "\tAddLineToPoint:  (1, 0)\n"
      "\tAddLineToPoint:  (2, 0)\n"
      "Path 1\n"
      "\tMoveToPoint:  (0, 0)\n"
      "\n"
      "\n"
      "Path 0\n"
      "\tMoveToPoint:  (0, 2)\n"
      "\tAddLineToPoint:  (0, 1)\n"
      "\tAddLineToPoint:  (1, 0)\n"
      "\tAddLineToPoint:  (2, 0)\n"
      "\tAddLineToPoint:  (1, 0)\n"
      "\tAddLineToPoint:  (0, 1)\n"
      "\tCloseSubpath\n"
      "Path 1\n"
      "\tMoveToPoint:  (0, 0)\n"
      "\tAddLineToPoint:  (0, 0)\n"
      "\tCloseSubpath\n",
      result.text);
}

TEST(TraceSubpaths, ADiagonalLineIsOneRun) {
  const Traced result = traced(Picture::of({"X..", ".X.", "..X"}));
  EXPECT_EQ(Lines({"M0,2 L2,0 Z"}), written(result.list));
  EXPECT_EQ(
      "starting subpath (0, 0)\n"
      "adding line (2, 2)\n"
      "Path 0\n"
      "\tMoveToPoint:  (0, 2)\n"
      "\tAddLineToPoint:  (2, 0)\n"
      "\n"
      "Closed Paths:\n"
      "\n"
      "Open Paths:\n"
      "Path 0\n"
      "\tMoveToPoint:  (0, 2)\n"
      "\tAddLineToPoint:  (2, 0)\n"
      "\n"
      "\n"
      "Path 0\n"
      "\tMoveToPoint:  (0, 2)\n"
      "\tAddLineToPoint:  (2, 0)\n"
      "\tCloseSubpath\n",
      result.text);
}

// The walk goes (0, 0), (1, 0), (1, 1) and there prefers south-east (2, 2) to west (0, 1); it rounds the
// second square and is stuck at (2, 3), whose neighbours are visited and not the start. (0, 1) is left; it
// touches the first point and is put in front.
TEST(TraceSubpaths, TwoTouchingSquaresAreOneOpenTrace) {
  const Traced result = traced(Picture::of({"XX..", "XX..", "..XX", "..XX"}));
  EXPECT_EQ(Lines({"M0,2 L0,3 L1,3 L1,2 L2,1 L3,1 L3,0 L2,0 L3,0 L3,1 L2,1 L1,2 L1,3 L0,3 Z"}),
            written(result.list));
  const std::string start =
      "starting subpath (0, 0)\n"
      "adding line (1, 0)\n"
      "adding line (1, 1)\n"
      "adding line (2, 2)\n"
      "adding line (3, 2)\n"
      "adding line (3, 3)\n"
      "adding line (2, 3)\n"
      "starting subpath (0, 1)\n"
      "Path 0\n";
  EXPECT_EQ(start, result.text.substr(0, start.size()));
}

// The row scan meets the branch (2, 0) first; its walk goes south-east and east, and is stuck at (4, 1). The
// rest of the line is traced from (0, 1) to (2, 1), which touches the first subpath's first point.
TEST(TraceSubpaths, AOnePixelLineWithABranchIsJoinedFromTwoTraces) {
  const Traced result = traced(Picture::of({"..X..", "XXXXX", "....."}));
  EXPECT_EQ(Lines({"M0,1 L2,1 L2,2 L3,1 L4,1 L3,1 L2,2 L2,1 Z"}), written(result.list));
  const std::string start =
      "starting subpath (2, 0)\n"
      "adding line (3, 1)\n"
      "adding line (4, 1)\n"
      "starting subpath (0, 1)\n"
      "adding line (2, 1)\n"
      "Path 0\n"
      "\tMoveToPoint:  (2, 2)\n"
      "\tAddLineToPoint:  (3, 1)\n"
      "\tAddLineToPoint:  (4, 1)\n"
      "Path 1\n"
      "\tMoveToPoint:  (0, 1)\n"
      "\tAddLineToPoint:  (2, 1)\n";
  EXPECT_EQ(start, result.text.substr(0, start.size()));
}

// Down, along the bottom and up the right side the identifier falls to 2, then to 1 at (3, 1). From there
// the south-west neighbour (2, 2) would be identifier -1: it is lost, the walk takes west (2, 1) and is
// stuck.
TEST(FollowSubpath, LosesTheProbesAtNegativeIdentifiers) {
  EXPECT_EQ(Lines({"M0,4 L0,1 L1,0 L3,0 L4,1 L4,2 L3,3 L2,3 L2,2 L2,3 L3,3 L4,2 L4,1 L3,0 L1,0 L0,1 Z",
                   "M4,3 L4,3 Z", "M0,0 L0,0 Z", "M4,0 L4,0 Z"}),
            tracedLines({"X....", "X.XXX", "X.X.X", "X...X", "XXXXX"}));
}

// The first walk goes down the left bar, along the bottom, up the inside of the right bar and is stuck at (5,
// 2), where south is identifier -2. The second goes round the outside, the third down the inside of the hook.
// Merging puts the second before the first by (0, 1) and (1, 0), appends the third reversed by (5, 2) and (5,
// 3), and the last point (3, 1) then touches the first one (3, 0): closed, with two corners left over.
TEST(TraceSubpaths, AHookClosesByBeingMerged) {
  const std::vector<std::string> hook = {".X.XXXXX.", "XX.XXXXX.", "XX.XXXXX.", "XX.XXX.XX", "XX.XXX.XX",
                                         "XX.XXX.XX", "XX.....XX", ".XXXXXX.X", "..XXXXXX."};
  EXPECT_EQ(Lines({"M3,8 L7,8 L7,6 L8,5 L8,1 L7,0 L2,0 L0,2 L0,7 L1,8 L1,2 L2,1 L6,1 L7,2 L7,5 L6,6 L5,6 "
                   "L5,5 L5,4 L4,3 L3,4 Z",
                   "M3,3 L3,3 Z", "M5,3 L5,3 Z"}),
            tracedLines(hook));
}

TEST(TraceSubpaths, ATransparentImageYieldsNoSubpaths) {
  const Traced result = traced(Picture(4, 3));
  EXPECT_TRUE(result.list.empty());
  EXPECT_EQ("\nClosed Paths:\n\nOpen Paths:\n\n\n", result.text);
}

TEST(TraceSubpaths, ASinglePixelYieldsALineToItself) {
  const Traced result = traced(Picture::of({".....", "...X.", "....."}));
  EXPECT_EQ(Lines({"M3,1 L3,1 Z"}), written(result.list));
}

TEST(TraceSubpaths, DebugLinesPrintTheRowAndPointsItsFlip) {
  const Traced result = traced(Picture::of({"X", ".", ".", "."}));
  EXPECT_EQ(Lines({"M0,3 L0,3 Z"}), written(result.list));
  EXPECT_EQ(0U, result.text.find("starting subpath (0, 0)\nPath 0\n\tMoveToPoint:  (0, 3)\n"));
}

TEST(TraceSubpaths, AnAlphaAtTheThresholdIsBackground) {
  Picture picture(1, 1);
  picture.alpha(0, 0) = 51;
  EXPECT_TRUE(traced(picture, 51.0F / 255.0F).list.empty());
  picture.alpha(0, 0) = 52;
  EXPECT_EQ(1U, traced(picture, 51.0F / 255.0F).list.size());
}

TEST(TraceSubpaths, NothingExceedsAThresholdOfOne) {
  EXPECT_TRUE(traced(Picture::of({"XXX", "XXX"}), 1.0F).list.empty());
}

TEST(TraceSubpaths, AnImageWithoutPixelsYieldsNoSubpaths) {
  for (const ImageInfo info : {ImageInfo{nullptr, 0, 5, 0.0F}, ImageInfo{nullptr, 5, 0, 0.0F}}) {
    bool flag = false;
    textOf([&](TextOutput &output) { EXPECT_TRUE(TraceSubpaths(info, &flag, output).empty()); });
  }
}

TEST(TraceSubpaths, AWideImageHasTheRoundedColumnsOfFloats) {
  Picture picture(1000003, 1);
  picture.fill(1000000, 0, 1000002, 1);
  const Traced result = traced(picture);
  EXPECT_EQ(Lines({"M1000000,0 L1000001,0 Z"}), written(result.list));
  EXPECT_EQ(0U, result.text.find("starting subpath (1000000, 0)\nadding line (1000001, 0)\nPath 0\n"
                                 "\tMoveToPoint:  (1e+06, 0)\n\tAddLineToPoint:  (1e+06, 0)\n"));
}

// Whatever was recorded so far is given back, and what was said so far is said.
TEST(TraceSubpaths, ThrowsAndLosesNothingWhereverMemoryRunsOut) {
  const Picture picture = Picture::of({"X..X.X", "X.XX..", "XXX.XX", "X.X..X", ".X.XX."});
  const Traced whole = traced(picture);
  const auto visited = picture.flags();
  for (long failAt = 1;; ++failAt) {
    ASSERT_LT(failAt, 1000);
    bool threw = false;
    const std::string text = textOf([&](TextOutput &output) {
      const testing_support::FailingNew failing(failAt);
      try {
        TraceSubpaths(picture.info(), visited.get(), output);
      } catch (const std::bad_alloc &) {
        threw = true;
      }
      EXPECT_EQ(threw, failing.failed());
    });
    EXPECT_EQ(whole.text.substr(0, text.size()), text);
    if (!threw) break;
    EXPECT_LT(text.size(), whole.text.size());
  }
}

// A walk that is told to go on in a direction, as the row scan never asks for.
struct Continued {
  Lines lines;
  std::string text;
};
Continued follow(const Picture &picture, PixelIndex start, PixelIndex segmentStart,
                 ProcessingDirection direction, int identifier) {
  SubpathList list = listOf({"M0,0"});
  const auto visited = picture.flags();
  const std::string text = textOf([&](TextOutput &output) {
    FollowSubpath(&list, picture.info(), visited.get(), start, segmentStart, direction, identifier, output);
  });
  return {written(list), text};
}

TEST(FollowSubpath, ReturnsSilentlyNextToItsStartWhenItHasNotStepped) {
  const Continued result = follow(Picture::of({"XX"}), 0, 1, ProcessingDirectionHorizontal, 8);
  EXPECT_EQ(Lines({"M0,0"}), result.lines);
  EXPECT_EQ("", result.text);
}

TEST(FollowSubpath, DoesNotCloseBeforeItHasADirection) {
  const Continued result = follow(Picture::of({"XX"}), 0, 1, ProcessingDirectionNone, 8);
  EXPECT_EQ(Lines({"M0,0 L0,0"}), result.lines);
  EXPECT_EQ("adding line (0, 0)\n", result.text);
}

TEST(FollowSubpathDeathTest, AssertsThatATurnHasARunBehindIt) {
  EXPECT_DEATH(follow(Picture::of({"XXX"}), 0, 1, ProcessingDirectionVertical, 4),
               assertionLine("path_finder.cpp", "(size_t)-1 != lastValidIndex"));
}

TEST(FollowSubpath, MarksEveryPixelItTakes) {
  const Picture picture = Picture::of({"XX.", "..X"});
  SubpathList list = listOf({"M0,1"});
  auto visited = picture.flags();
  visited[2] = visited[3] = visited[4] = true;
  textOf([&](TextOutput &output) {
    FollowSubpath(&list, picture.info(), visited.get(), 0, 0, ProcessingDirectionNone, 1, output);
  });
  EXPECT_TRUE(visited[1]);
  EXPECT_TRUE(visited[5]);
  EXPECT_EQ(Lines({"M0,1 L1,1 L2,0"}), written(list));
}

struct DirectionCase {
  int identifier;
  const char *text;
  bool (*holds)(int rows, int columns);
};
const DirectionCase kDirectionCases[] = {
    {0, "row == startRow && column <= startColumn", [](int r, int c) { return r == 0 && c <= 0; }},
    {1, "row <= startRow && column <= startColumn", [](int r, int c) { return r <= 0 && c <= 0; }},
    {2, "row <= startRow && column == startColumn", [](int r, int c) { return r <= 0 && c == 0; }},
    {3, "row <= startRow && column >= startColumn", [](int r, int c) { return r <= 0 && c >= 0; }},
    {4, "row == startRow && column >= startColumn", [](int r, int c) { return r == 0 && c >= 0; }},
    {5, "row >= startRow && column >= startColumn", [](int r, int c) { return r >= 0 && c >= 0; }},
    {6, "row >= startRow && column == startColumn", [](int r, int c) { return r >= 0 && c == 0; }},
    {7, "row >= startRow && column <= startColumn", [](int r, int c) { return r >= 0 && c <= 0; }},
};
constexpr Pixel kMiddle{12, 2, 2};  // of five by five
constexpr Pixel kCorner{0, 0, 0};

Pixel beside(int rows, int columns) {
  return {static_cast<PixelIndex>(12 + 5 * rows + columns), 2 + rows, 2 + columns};
}

TEST(DirectionSanityCheck, PassesOnTheSideThatTheDirectionImplies) {
  for (const DirectionCase &direction : kDirectionCases) {
    for (int rows = -1; rows <= 1; ++rows) {
      for (int columns = -1; columns <= 1; ++columns) {
        if (!direction.holds(rows, columns)) continue;
        DirectionSanityCheck(direction.identifier, kMiddle, beside(rows, columns));
        DirectionSanityCheck(direction.identifier + 16, kMiddle, beside(rows, columns));
      }
    }
  }
}

TEST(DirectionSanityCheck, ChecksNothingForANegativeRemainder) {
  for (int identifier = -7; identifier < 0; ++identifier) DirectionSanityCheck(identifier, kMiddle, kCorner);
}

TEST(DirectionSanityCheckDeathTest, NamesTheConditionThatFailed) {
  for (const DirectionCase &direction : kDirectionCases) {
    const Step back = kSteps[(direction.identifier + 4) % 8];
    EXPECT_DEATH(DirectionSanityCheck(direction.identifier, kMiddle, beside(back.rows, back.columns)),
                 assertionLine("path_finder.cpp", direction.text));
  }
}

TEST(DirectionSanityCheckDeathTest, AssertsThatThereIsAPixel) {
  EXPECT_DEATH(DirectionSanityCheck(0, kMiddle, {kNoPixel, 0, 0}),
               assertionLine("path_finder.cpp", "(size_t)-1 != lastValidIndex"));
}

}  // namespace
}  // namespace drav::path
