#include "media/codecs/pict/shapes.h"

#include <gtest/gtest.h>

#include <cmath>

#include "media/codecs/pict/oval_rows.h"
#include "picture_grid.h"
#include "picture_maker.h"

namespace codecs::pict {
namespace {

constexpr Rows kAllRows{-1000, 1000};

Grid gridOfRegion(const Region &region, int width, int height) {
  Grid grid;
  for (int v = 0; v < height; ++v) {
    grid.emplace_back();
    for (int h = 0; h < width; ++h) grid.back() += region.contains({h, v}) ? '#' : '.';
  }
  return grid;
}

TEST(PictShapes, SmallOvals) {
  EXPECT_EQ(gridOfRegion(ovalRegion({0, 0, 4, 4}, kAllRows), 4, 4), (Grid{".##.", "####", "####", ".##."}));
  EXPECT_EQ(gridOfRegion(ovalRegion({0, 0, 7, 7}, kAllRows), 7, 7),
            (Grid{"..###..", ".#####.", "#######", "#######", "#######", ".#####.", "..###.."}));
  EXPECT_EQ(gridOfRegion(ovalRegion({1, 1, 2, 4}, kAllRows), 3, 5),
            (Grid{"...", ".#.", ".#.", ".#.", "..."}));
}

TEST(PictShapes, AnOvalOfSixteen) {
  const Grid half{".....######.....", "...##########...", "..############..", ".##############.",
                  ".##############.", "################", "################", "################"};
  const Grid whole = gridOfRegion(ovalRegion({0, 0, 16, 16}, kAllRows), 16, 16);
  for (size_t v = 0; v < 8; ++v) {
    EXPECT_EQ(whole[v], half[v]);
    EXPECT_EQ(whole[15 - v], half[v]);
  }
}

// Very flat ones apart, where the original's own rounding shows.
TEST(PictShapes, SteppedOvalsAreWithinAPixelOfTheEllipse) {
  for (int width = 2; width < 60; ++width) {
    for (int height = width / 8 + 1; height < 60; ++height) {
      OvalRows rows(0, width, height);
      for (int v = 0; v < height; ++v) {
        const auto run = rows.next();
        const double down = (2 * v + 1.0) / height - 1, half = width / 2.0 * std::sqrt(1 - down * down);
        EXPECT_NEAR(run.left, width / 2.0 - half, 1.5) << width << "x" << height << " row " << v;
        EXPECT_EQ(run.right, width - run.left) << width << "x" << height << " row " << v;
      }
    }
  }
}

TEST(PictShapes, OvalsBeyondWhatFilesSayStillEnd) {
  const Region huge = ovalRegion({-4000000, -10, 4000000, 10}, {-1, 1});
  EXPECT_LT(huge.bounds().left, -3900000);
  const Region tall = ovalRegion({0, -40000, 1, 40000}, {-1, 1});
  EXPECT_EQ(tall.bounds(), (Box{0, -1, 1, 1}));
}

TEST(PictShapes, RoundRectanglesHaveCornersOfTheirOval) {
  EXPECT_EQ(gridOfRegion(roundRectRegion({0, 0, 8, 6}, {4, 4}, kAllRows), 8, 6),
            (Grid{".######.", "########", "########", "########", "########", ".######."}));
  EXPECT_EQ(gridOfRegion(roundRectRegion({0, 0, 4, 2}, {0, 0}, kAllRows), 4, 2), (Grid{"####", "####"}));
  EXPECT_TRUE(roundRectRegion({0, 0, 7, 7}, {99, 99}, kAllRows) == ovalRegion({0, 0, 7, 7}, kAllRows));
}

TEST(PictShapes, QuarterWedgesAreQuarterBoxes) {
  const Box box{0, 0, 4, 4};
  EXPECT_EQ(gridOfRegion(wedgeRegion(box, 0, 90, kAllRows), 4, 4), (Grid{"..##", "..##", "....", "...."}));
  EXPECT_EQ(gridOfRegion(wedgeRegion(box, 90, 90, kAllRows), 4, 4), (Grid{"....", "....", "..##", "..##"}));
  EXPECT_EQ(gridOfRegion(wedgeRegion(box, 0, -90, kAllRows), 4, 4), (Grid{"##..", "##..", "....", "...."}));
  EXPECT_EQ(gridOfRegion(wedgeRegion(box, 450, 180, kAllRows), 4, 4), (Grid{"....", "....", "####", "####"}));
  EXPECT_EQ(gridOfRegion(wedgeRegion(box, 90, 270, kAllRows), 4, 4), (Grid{"##..", "##..", "####", "####"}));
  EXPECT_EQ(gridOfRegion(wedgeRegion(box, 7, 360, kAllRows), 4, 4), (Grid{"####", "####", "####", "####"}));
  EXPECT_TRUE(wedgeRegion(box, 7, 0, kAllRows).isEmpty());
}

TEST(PictShapes, AnglesAreRelativeToTheBox) {
  EXPECT_EQ(gridOfRegion(wedgeRegion({0, 0, 8, 4}, 45, 90, kAllRows), 8, 4),
            (Grid{".......#", ".....###", ".....###", ".......#"}));
}

TEST(PictShapes, WedgesSideBySideShareNoPixel) {
  for (const Box &box : {Box{0, 0, 30, 30}, Box{0, 0, 31, 17}}) {
    std::vector<int> covered(31 * 31, 0);
    for (int start = -110; start < 250; start += 40) {
      const Region wedge = wedgeRegion(box, start, 40, kAllRows);
      for (int v = 0; v < box.bottom; ++v) {
        for (int h = 0; h < box.right; ++h)
          covered[static_cast<size_t>(v * 31 + h)] += wedge.contains({h, v});
      }
    }
    for (int v = 0; v < box.bottom; ++v) {
      for (int h = 0; h < box.right; ++h) {
        const bool isMiddle = 2 * h + 1 == box.right && 2 * v + 1 == box.bottom;
        EXPECT_TRUE(isMiddle || covered[static_cast<size_t>(v * 31 + h)] == 1) << h << ", " << v;
      }
    }
  }
}

TEST(PictShapes, PolygonsAreFilledByTheEvenOddRule) {
  const Point square[] = {{1, 1}, {4, 1}, {4, 3}, {1, 3}};
  EXPECT_EQ(gridOfRegion(polygonRegion(square, kAllRows), 5, 4), (Grid{".....", ".###.", ".###.", "....."}));
  const Point twice[] = {{0, 0}, {5, 0}, {5, 5}, {0, 5}, {0, 0}, {1, 1}, {4, 1}, {4, 4}, {1, 4}, {1, 1}};
  EXPECT_EQ(gridOfRegion(polygonRegion(twice, kAllRows), 5, 5),
            (Grid{"#####", "#...#", "#...#", "#...#", "#####"}));
  const Point triangle[] = {{0, 0}, {6, 0}, {0, 6}};
  EXPECT_EQ(gridOfRegion(polygonRegion(triangle, kAllRows), 6, 6),
            (Grid{"#####.", "####..", "###...", "##....", "#.....", "......"}));
}

TEST(PictShapes, PolygonsWithoutAnInsideAreEmpty) {
  const Point line[] = {{0, 0}, {5, 5}}, flat[] = {{0, 2}, {9, 2}, {4, 2}};
  EXPECT_TRUE(polygonRegion(line, kAllRows).isEmpty());
  EXPECT_TRUE(polygonRegion(flat, kAllRows).isEmpty());
  EXPECT_TRUE(polygonRegion({}, kAllRows).isEmpty());
}

TEST(PictShapes, LinesPaintBothEnds) {
  EXPECT_EQ(gridOfRegion(lineRegion({2, 0}, {5, 0}, {1, 1}, kAllRows), 8, 2), (Grid{"..####..", "........"}));
  EXPECT_EQ(gridOfRegion(lineRegion({1, 2}, {1, 0}, {1, 1}, kAllRows), 3, 4),
            (Grid{".#.", ".#.", ".#.", "..."}));
  EXPECT_EQ(gridOfRegion(lineRegion({0, 0}, {3, 3}, {1, 1}, kAllRows), 4, 4),
            (Grid{"#...", ".#..", "..#.", "...#"}));
  EXPECT_EQ(gridOfRegion(lineRegion({3, 0}, {0, 3}, {1, 1}, kAllRows), 4, 4),
            (Grid{"...#", "..#.", ".#..", "#..."}));
}

TEST(PictShapes, FlatLinesHaveARunInEveryRow) {
  EXPECT_EQ(gridOfRegion(lineRegion({0, 0}, {7, 1}, {1, 1}, kAllRows), 8, 2), (Grid{"####....", "....####"}));
  EXPECT_EQ(gridOfRegion(lineRegion({0, 0}, {1, 5}, {1, 1}, kAllRows), 2, 6),
            (Grid{"#.", "#.", "#.", ".#", ".#", ".#"}));
}

TEST(PictShapes, ALinesDirectionDoesNotMatter) {
  for (int h = -9; h <= 9; ++h) {
    for (int v = -9; v <= 9; ++v) {
      EXPECT_TRUE(lineRegion({0, 0}, {h, v}, {2, 3}, kAllRows) ==
                  lineRegion({h, v}, {0, 0}, {2, 3}, kAllRows));
    }
  }
}

TEST(PictShapes, APenSweepsAHexagon) {
  EXPECT_EQ(gridOfRegion(lineRegion({0, 0}, {3, 3}, {2, 2}, kAllRows), 5, 5),
            (Grid{"##...", "###..", ".###.", "..###", "...##"}));
}

TEST(PictShapes, PensAndSlopesBeyondSixteenBitsStayInBounds) {
  const Region line = lineRegion({-98304, 0}, {98301, 1}, {98301, 98301}, {0, 3});
  EXPECT_EQ(line.bounds(), (Box{-98304, 0, 196602, 3}));
}

TEST(PictShapes, APenWithoutSizeDrawsNothing) {
  EXPECT_TRUE(lineRegion({0, 0}, {5, 5}, {0, 1}, kAllRows).isEmpty());
  EXPECT_TRUE(lineRegion({0, 0}, {5, 0}, {1, -1}, kAllRows).isEmpty());
}

TEST(PictShapes, OnlyTheRowsThatCanBeSeenAreMade) {
  const Region line = lineRegion({-30000, -30000}, {30000, 30000}, {1, 1}, {0, 3});
  EXPECT_EQ(line.bounds(), (Box{0, 0, 3, 3}));
  EXPECT_EQ(ovalRegion({0, 0, 100, 100}, {50, 52}).bounds(), (Box{0, 50, 100, 52}));
}

TEST(PictShapes, InsetsShrinkFromEverySide) {
  Region region;
  const int32_t wide[] = {0, 7}, narrow[] = {0, 3};
  region.addRows(0, 3, wide);
  region.addRows(3, 6, narrow);
  EXPECT_EQ(gridOfRegion(insetRegion(region, {1, 1}, kAllRows), 7, 6),
            (Grid{".......", ".#####.", ".#.....", ".#.....", ".#.....", "......."}));
  EXPECT_TRUE(insetRegion(Region(Box{0, 0, 4, 4}), {2, 2}, kAllRows).isEmpty());
  EXPECT_TRUE(insetRegion(Region(Box{0, 0, 5, 5}), {2, 2}, kAllRows) == Region(Box{2, 2, 3, 3}));
}

TEST(PictShapes, InsetsNeedEveryRowInReach) {
  Region region;
  const int32_t sides[] = {0, 9};
  region.addRows(0, 3, sides);
  region.addRows(4, 7, sides);
  EXPECT_EQ(
      gridOfRegion(insetRegion(region, {1, 1}, kAllRows), 9, 7),
      (Grid{".........", ".#######.", ".........", ".........", ".........", ".#######.", "........."}));
}

TEST(PictShapes, RegionsCombine) {
  const Region a(Box{0, 0, 4, 2}), b(Box{2, 1, 6, 3});
  EXPECT_EQ(gridOfRegion(intersectRegions(a, b), 6, 3), (Grid{"......", "..##..", "......"}));
  EXPECT_EQ(gridOfRegion(toggleRegions(a, b), 6, 3), (Grid{"####..", "##..##", "..####"}));
  EXPECT_TRUE(toggleRegions(a, a).isEmpty());
  EXPECT_TRUE(toggleRegions(a, {}) == a);
  EXPECT_TRUE(intersectRegions(a, {}).isEmpty());
  const Region apart(Box{0, 9, 1, 10});
  EXPECT_EQ(toggleRegions(a, apart).bands().size(), 2u);
}

}  // namespace
}  // namespace codecs::pict
