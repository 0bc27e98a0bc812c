#include <CoreGraphics/CGAffineTransform.h>
#include <gtest/gtest.h>

#include <limits>

namespace {

void expectPoint(CGPoint actual, CGFloat x, CGFloat y) {
  EXPECT_NEAR(actual.x, x, 1e-5);
  EXPECT_NEAR(actual.y, y, 1e-5);
}

TEST(AffineTransform, TheIdentityMovesNothing) {
  EXPECT_TRUE(CGAffineTransformIsIdentity(CGAffineTransformIdentity));
  EXPECT_FALSE(CGAffineTransformIsIdentity(CGAffineTransformMakeTranslation(0, 1)));
  expectPoint(CGPointApplyAffineTransform(CGPointMake(3, 4), CGAffineTransformIdentity), 3, 4);
}

TEST(AffineTransform, EachStepComesBeforeTheTransformItIsAddedTo) {
  const CGAffineTransform scaled = CGAffineTransformMakeScale(2, 3);
  expectPoint(CGPointApplyAffineTransform(CGPointMake(1, 1), CGAffineTransformTranslate(scaled, 10, 20)), 22,
              63);
  const CGAffineTransform moved = CGAffineTransformMakeTranslation(10, 20);
  expectPoint(CGPointApplyAffineTransform(CGPointMake(1, 1), CGAffineTransformScale(moved, 2, 3)), 12, 23);
  const CGFloat quarter = 1.57079632679F;
  expectPoint(CGPointApplyAffineTransform(CGPointMake(1, 0), CGAffineTransformRotate(moved, quarter)), 10,
              21);
}

TEST(AffineTransform, ConcatAppliesTheFirstBeforeTheSecond) {
  const CGAffineTransform both = CGAffineTransformConcat(CGAffineTransformMake(1, 2, 3, 4, 5, 6),
                                                         CGAffineTransformMake(7, 8, 9, 10, 11, 12));
  const CGAffineTransform expected = CGAffineTransformMake(25, 28, 57, 64, 100, 112);
  EXPECT_TRUE(CGAffineTransformEqualToTransform(both, expected));
}

TEST(AffineTransform, TheInverseLeadsBack) {
  const CGAffineTransform t = CGAffineTransformMake(2, 1, -1, 3, 10, -4);
  const CGPoint there = CGPointApplyAffineTransform(CGPointMake(7, 9), t);
  expectPoint(CGPointApplyAffineTransform(there, CGAffineTransformInvert(t)), 7, 9);
}

TEST(AffineTransform, OneWithoutAnInverseIsGivenUnchanged) {
  const CGAffineTransform flat = CGAffineTransformMake(1, 2, 2, 4, 5, 6);
  EXPECT_TRUE(CGAffineTransformEqualToTransform(CGAffineTransformInvert(flat), flat));
  const CGFloat infinity = std::numeric_limits<CGFloat>::infinity();
  EXPECT_EQ(CGAffineTransformInvert(CGAffineTransformMakeScale(infinity, 1)).a, infinity);
}

TEST(AffineTransform, SizesAreNotMoved) {
  const CGSize size = CGSizeApplyAffineTransform(CGSizeMake(2, 3), CGAffineTransformMake(2, 0, 0, 3, 50, 60));
  EXPECT_EQ(size.width, 4);
  EXPECT_EQ(size.height, 9);
}

TEST(AffineTransform, ARectangleBecomesTheBoundsOfItsCorners) {
  const CGRect turned =
      CGRectApplyAffineTransform(CGRectMake(1, 2, 3, 4), CGAffineTransformMake(0, 1, -1, 0, 0, 0));
  EXPECT_TRUE(CGRectEqualToRect(turned, CGRectMake(-6, 1, 4, 3)));
  EXPECT_TRUE(CGRectIsNull(CGRectApplyAffineTransform(CGRectNull, CGAffineTransformIdentity)));
}

}  // namespace
