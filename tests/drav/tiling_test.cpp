#include "tiling.h"

#include <gtest/gtest.h>

#include "failure.h"

namespace {

constexpr Corner kCorners[] = {Corner::bottomLeft, Corner::bottomRight, Corner::topLeft, Corner::topRight};

bool isRight(Corner corner) { return corner == Corner::bottomRight || corner == Corner::topRight; }
bool isBottom(Corner corner) { return corner == Corner::bottomRight || corner == Corner::bottomLeft; }

TEST(Tiling, TilesStandInTheCornerAndReachBeyondTheOtherOne) {
  const Area area{0, 0, 25, 10};
  EXPECT_EQ(tiledArea(area, area, 10, 10, Corner::topLeft), (Area{0, 0, 30, 10}));
  EXPECT_EQ(tiledArea(area, area, 10, 10, Corner::topRight), (Area{-5, 0, 30, 10}));
  EXPECT_EQ(tiledArea(area, area, 10, 6, Corner::bottomLeft), (Area{0, -2, 30, 12}));
}

TEST(Tiling, EveryAreaHoldsWholeTilesAroundWhatIsVisibleAndNoneTooMany) {
  for (const Corner corner : kCorners) {
    for (long tile = 1; tile < 9; ++tile) {
      for (long x = -11; x < 12; ++x) {
        for (long length = 1; length < 14; ++length) {
          const Area area{x, 2 * x, length, length + 3};
          const Area visible = intersection(area, {0, -5, 7, 12});
          if (visible.empty()) continue;
          const Area whole = tiledArea(area, visible, tile, tile + 1, corner);
          EXPECT_EQ(whole.width % tile, 0);
          EXPECT_EQ(whole.height % (tile + 1), 0);
          EXPECT_EQ(intersection(whole, visible), visible);
          EXPECT_LT(whole.width, visible.width + 2 * tile);
          EXPECT_LT(whole.height, visible.height + 2 * (tile + 1));
          const long cornerX = isRight(corner) ? area.x + area.width : area.x;
          const long cornerY = isBottom(corner) ? area.y + area.height : area.y;
          EXPECT_EQ((cornerX - whole.x) % tile, 0);
          EXPECT_EQ((cornerY - whole.y) % (tile + 1), 0);
        }
      }
    }
  }
}

TEST(Tiling, CornersHaveTheLibrarysNumbers) {
  EXPECT_EQ(static_cast<unsigned>(parseCorner("bottom-left")), 0U);
  EXPECT_EQ(static_cast<unsigned>(parseCorner("bottom-right")), 1U);
  EXPECT_EQ(static_cast<unsigned>(parseCorner("top-left")), 2U);
  EXPECT_EQ(static_cast<unsigned>(parseCorner("top-right")), 3U);
  EXPECT_THROW(parseCorner("left"), UsageError);
}

}  // namespace
