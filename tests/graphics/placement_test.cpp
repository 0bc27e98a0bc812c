#include "graphics/placement.h"

#include <gtest/gtest.h>

#include <limits>

namespace cg {
namespace {

std::optional<ExactPlacement> exactAt(CGRect rect, const Matrix &matrix, size_t width, size_t height,
                                      size_t surfaceHeight) {
  const auto map = placement(width, height, rect, matrix, surfaceHeight);
  return map ? exactPlacement(*map, width, height) : std::nullopt;
}

TEST(Placement, TheTopRowLiesAtTheGreatestY) {
  const auto place = exactAt(CGRectMake(3, 2, 10, 5), {}, 10, 5, 20);
  ASSERT_TRUE(place);
  EXPECT_EQ(place->xx, 1);
  EXPECT_EQ(place->yy, 1);
  EXPECT_EQ(place->x, 3);
  EXPECT_EQ(place->y, 20 - 7);
}

TEST(Placement, AFlipIsExact) {
  const auto place = exactAt(CGRectMake(0, 0, 10, 5), {1, 0, 0, -1, 0, 5}, 10, 5, 5);
  ASSERT_TRUE(place);
  EXPECT_EQ(place->yy, -1);
  EXPECT_EQ(place->y, 5);
}

TEST(Placement, LargeImagesAtWholeOffsetsAreExact) {
  for (size_t side : {4001u, 16383u, 65535u}) {
    const auto length = static_cast<CGFloat>(side);
    EXPECT_TRUE(exactAt(CGRectMake(-777, 12345, length, length), {}, side, side, side));
    EXPECT_TRUE(exactAt(CGRectMake(0, 0, length, length), {1, 0, 0, -1, 0, length}, side, side, side));
  }
}

TEST(Placement, OneRowMoreIsNotExact) {
  EXPECT_FALSE(exactAt(CGRectMake(0, 0, 65535, 65534), {}, 65535, 65535, 65535));
  EXPECT_FALSE(exactAt(CGRectMake(0, 0, 100, 101), {}, 100, 100, 100));
}

TEST(Placement, AFractionIsNotExact) {
  EXPECT_FALSE(exactAt(CGRectMake(0.25f, 0, 10, 10), {}, 10, 10, 10));
  EXPECT_FALSE(exactAt(CGRectMake(0, 0.01f, 10, 10), {}, 10, 10, 10));
}

TEST(Placement, AHairFromFloatSumsIsExact) {
  EXPECT_TRUE(exactAt(CGRectMake(0.1f + 0.2f - 0.3f, 1e-5f, 10, 10), {}, 10, 10, 10));
}

TEST(Placement, OffsetsOfFarAwayAreNotExact) {
  EXPECT_FALSE(exactAt(CGRectMake(1e12f, 0, 10, 10), {}, 10, 10, 10));
}

TEST(Placement, EmptyAndUnboundedRectanglesHaveNone) {
  const float infinity = std::numeric_limits<float>::infinity();
  const float nan = std::numeric_limits<float>::quiet_NaN();
  for (const CGRect &rect :
       {CGRectMake(0, 0, 0, 5), CGRectMake(0, 0, 5, 0), CGRectMake(0, 0, nan, 5),
        CGRectMake(0, 0, infinity, 5), CGRectMake(nan, 0, 5, 5), CGRectMake(0, -infinity, 5, 5)})
    EXPECT_FALSE(placement(10, 10, rect, {}, 10));
}

TEST(Placement, ANegativeSizeSpansTheSameRectangle) {
  const auto place = exactAt(CGRectMake(10, 5, -10, -5), {}, 10, 5, 5);
  ASSERT_TRUE(place);
  EXPECT_EQ(place->xx, 1);
  EXPECT_EQ(place->x, 0);
}

}  // namespace
}  // namespace cg
