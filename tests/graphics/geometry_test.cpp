#include <CoreGraphics/CGGeometry.h>
#include <gtest/gtest.h>

#include <cfloat>

namespace {

void expectRect(CGRect actual, CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
  EXPECT_EQ(actual.origin.x, x);
  EXPECT_EQ(actual.origin.y, y);
  EXPECT_EQ(actual.size.width, width);
  EXPECT_EQ(actual.size.height, height);
}

TEST(Geometry, GettersWorkOnTheStandardisedRectangle) {
  const CGRect rect = CGRectMake(10, 20, -4, -6);
  EXPECT_EQ(CGRectGetMinX(rect), 6);
  EXPECT_EQ(CGRectGetMidX(rect), 8);
  EXPECT_EQ(CGRectGetMaxX(rect), 10);
  EXPECT_EQ(CGRectGetMinY(rect), 14);
  EXPECT_EQ(CGRectGetMidY(rect), 17);
  EXPECT_EQ(CGRectGetMaxY(rect), 20);
  EXPECT_EQ(CGRectGetWidth(rect), 4);
  EXPECT_EQ(CGRectGetHeight(rect), 6);
  expectRect(CGRectStandardize(rect), 6, 14, 4, 6);
}

TEST(Geometry, EqualAreasAreEqualHoweverTheyAreWritten) {
  EXPECT_TRUE(CGRectEqualToRect(CGRectMake(10, 20, -4, -6), CGRectMake(6, 14, 4, 6)));
  EXPECT_FALSE(CGRectEqualToRect(CGRectMake(10, 20, 4, 6), CGRectMake(6, 14, 4, 6)));
  EXPECT_TRUE(CGPointEqualToPoint(CGPointZero, CGPointMake(0, 0)));
  EXPECT_FALSE(CGPointEqualToPoint(CGPointZero, CGPointMake(0, 1)));
  EXPECT_TRUE(CGSizeEqualToSize(CGSizeZero, CGSizeMake(0, 0)));
  EXPECT_FALSE(CGSizeEqualToSize(CGSizeZero, CGSizeMake(1, 0)));
}

TEST(Geometry, IntegralRoundsOutward) {
  expectRect(CGRectIntegral(CGRectMake(0.5F, -0.5F, 2, 2)), 0, -1, 3, 3);
  expectRect(CGRectIntegral(CGRectMake(3.25F, 3.75F, -1, -1)), 2, 2, 2, 2);
  EXPECT_TRUE(CGRectIsNull(CGRectIntegral(CGRectNull)));
}

TEST(Geometry, InsetMovesTheEdgesInwardAndLeavesNullWhenNothingRemains) {
  expectRect(CGRectInset(CGRectMake(0, 0, 10, 8), 2, 3), 2, 3, 6, 2);
  expectRect(CGRectInset(CGRectMake(0, 0, 10, 8), -1, -2), -1, -2, 12, 12);
  expectRect(CGRectInset(CGRectMake(0, 0, 10, 8), 5, 4), 5, 4, 0, 0);
  EXPECT_TRUE(CGRectIsNull(CGRectInset(CGRectMake(0, 0, 10, 8), 6, 0)));
  EXPECT_TRUE(CGRectIsNull(CGRectInset(CGRectNull, -1, -1)));
}

TEST(Geometry, OffsetMovesTheStandardisedRectangle) {
  expectRect(CGRectOffset(CGRectMake(4, 4, -2, 3), 1, 2), 3, 6, 2, 3);
  EXPECT_TRUE(CGRectIsNull(CGRectOffset(CGRectNull, 1, 1)));
}

TEST(Geometry, UnionContainsBothAndNullAddsNothing) {
  expectRect(CGRectUnion(CGRectMake(0, 0, 2, 2), CGRectMake(5, 6, -1, 1)), 0, 0, 5, 7);
  expectRect(CGRectUnion(CGRectNull, CGRectMake(1, 2, 3, 4)), 1, 2, 3, 4);
  expectRect(CGRectUnion(CGRectMake(1, 2, 3, 4), CGRectNull), 1, 2, 3, 4);
  EXPECT_TRUE(CGRectIsNull(CGRectUnion(CGRectNull, CGRectNull)));
}

TEST(Geometry, IntersectionIsWhatBothShare) {
  expectRect(CGRectIntersection(CGRectMake(0, 0, 4, 4), CGRectMake(2, 6, 5, -3)), 2, 3, 2, 1);
  EXPECT_TRUE(CGRectIsNull(CGRectIntersection(CGRectMake(0, 0, 1, 1), CGRectMake(2, 0, 1, 1))));
  EXPECT_TRUE(CGRectIsNull(CGRectIntersection(CGRectNull, CGRectInfinite)));
}

TEST(Geometry, RectanglesThatTouchShareAnEmptyRectangle) {
  const CGRect edge = CGRectIntersection(CGRectMake(0, 0, 2, 2), CGRectMake(2, 0, 2, 2));
  expectRect(edge, 2, 0, 0, 2);
  EXPECT_FALSE(CGRectIsNull(edge));
  EXPECT_TRUE(CGRectIsEmpty(edge));
}

TEST(Geometry, TheInfiniteRectangleLeavesOthersAsTheyAre) {
  const CGRect odd = CGRectMake(0.1F, 0.2F, 0.3F, 0.7F);
  EXPECT_TRUE(CGRectEqualToRect(CGRectIntersection(CGRectInfinite, odd), odd));
  EXPECT_TRUE(CGRectEqualToRect(CGRectIntersection(odd, CGRectInfinite), odd));
  EXPECT_TRUE(CGRectIsInfinite(CGRectUnion(odd, CGRectInfinite)));
  EXPECT_FALSE(CGRectIsInfinite(odd));
}

TEST(Geometry, EmptyMeansNullOrWithoutASide) {
  EXPECT_TRUE(CGRectIsEmpty(CGRectNull));
  EXPECT_TRUE(CGRectIsEmpty(CGRectZero));
  EXPECT_TRUE(CGRectIsEmpty(CGRectMake(1, 1, 0, 5)));
  EXPECT_FALSE(CGRectIsEmpty(CGRectMake(1, 1, -2, 5)));
  EXPECT_FALSE(CGRectIsNull(CGRectZero));
}

TEST(Geometry, ContainsTheEdgesOfLeastXAndYOnly) {
  const CGRect rect = CGRectMake(4, 4, -2, -2);
  EXPECT_TRUE(CGRectContainsPoint(rect, CGPointMake(2, 2)));
  EXPECT_FALSE(CGRectContainsPoint(rect, CGPointMake(4, 2)));
  EXPECT_FALSE(CGRectContainsPoint(rect, CGPointMake(2, 4)));
  EXPECT_FALSE(CGRectContainsPoint(CGRectNull, CGPointMake(0, 0)));
}

TEST(Geometry, ContainsAndIntersectsRectangles) {
  const CGRect outer = CGRectMake(0, 0, 4, 4);
  EXPECT_TRUE(CGRectContainsRect(outer, CGRectMake(4, 4, -4, -4)));
  EXPECT_FALSE(CGRectContainsRect(outer, CGRectMake(1, 1, 4, 1)));
  EXPECT_TRUE(CGRectContainsRect(outer, CGRectNull));
  EXPECT_FALSE(CGRectContainsRect(CGRectNull, outer));
  EXPECT_TRUE(CGRectIntersectsRect(outer, CGRectMake(3, 3, 4, 4)));
  EXPECT_FALSE(CGRectIntersectsRect(outer, CGRectMake(5, 3, 4, 4)));
}

}  // namespace
