#include "graphics/pixel_rect.h"

#include <gtest/gtest.h>

namespace cg {
namespace {

TEST(PixelRect, APixelIsInsideWithItsCentre) {
  EXPECT_EQ(firstCentreFrom(2.0), 2);
  EXPECT_EQ(firstCentreFrom(2.4), 2);
  EXPECT_EQ(firstCentreFrom(2.5), 2);
  EXPECT_EQ(firstCentreFrom(2.6), 3);
  EXPECT_EQ(firstCentreFrom(-0.6), -1);
}

TEST(PixelRect, AHairBeyondACentreCountsAsOnIt) { EXPECT_EQ(firstCentreFrom(2.50001), 2); }

TEST(PixelRect, NeighboursShareNoPixelAndMissNone) {
  for (double edge : {0.0, 0.3, 0.5, 0.50001, 0.7, 1.0}) {
    const PixelRect left = pixelsBetween(-5, 0, edge, 1), right = pixelsBetween(edge, 0, 5, 1);
    EXPECT_EQ(left.right, right.left);
  }
}

TEST(PixelRect, FarEdgesAreHeld) {
  const PixelRect everything = pixelsBetween(-1e300, -1e300, 1e300, 1e300);
  const PixelRect some{3, 4, 50, 60};
  const PixelRect both = intersection(everything, some);
  EXPECT_EQ(both.left, 3);
  EXPECT_EQ(both.bottom, 60);
}

TEST(PixelRect, RectanglesApartHaveAnEmptyIntersection) {
  EXPECT_TRUE(intersection({0, 0, 5, 5}, {5, 0, 9, 5}).isEmpty());
  EXPECT_FALSE(intersection({0, 0, 5, 5}, {4, 4, 9, 5}).isEmpty());
}

}  // namespace
}  // namespace cg
