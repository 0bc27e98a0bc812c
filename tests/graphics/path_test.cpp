#include <CoreGraphics/CGPath.h>
#include <gtest/gtest.h>

#include <vector>

#include "failing_allocator.h"
#include "foundation/ref.h"

namespace {

using Path = cf::Ref<CGMutablePathRef>;

Path newPath() { return Path::adopt(CGPathCreateMutable()); }

struct Element {
  CGPathElementType type;
  std::vector<CGPoint> points;
};

std::vector<Element> elementsOf(CGPathRef path) {
  std::vector<Element> elements;
  CGPathApply(path, &elements, [](void *info, const CGPathElement *element) {
    constexpr size_t kPoints[] = {1, 1, 2, 3, 0};
    static_cast<std::vector<Element> *>(info)->push_back(
        {element->type, {element->points, element->points + kPoints[element->type]}});
  });
  return elements;
}

void expectPoint(CGPoint actual, CGFloat x, CGFloat y) {
  EXPECT_EQ(actual.x, x);
  EXPECT_EQ(actual.y, y);
}

TEST(Path, ElementsComeBackInOrderWithTheirPoints) {
  const Path path = newPath();
  CGPathMoveToPoint(path.get(), nullptr, 1, 2);
  CGPathAddLineToPoint(path.get(), nullptr, 3, 4);
  CGPathAddQuadCurveToPoint(path.get(), nullptr, 5, 6, 7, 8);
  CGPathAddCurveToPoint(path.get(), nullptr, 9, 10, 11, 12, 13, 14);
  CGPathCloseSubpath(path.get());
  const auto elements = elementsOf(path.get());
  ASSERT_EQ(elements.size(), 5U);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(elements[static_cast<size_t>(i)].type, i);
  expectPoint(elements[0].points[0], 1, 2);
  expectPoint(elements[1].points[0], 3, 4);
  expectPoint(elements[2].points[0], 5, 6);
  expectPoint(elements[2].points[1], 7, 8);
  expectPoint(elements[3].points[0], 9, 10);
  expectPoint(elements[3].points[1], 11, 12);
  expectPoint(elements[3].points[2], 13, 14);
}

TEST(Path, NothingIsDrawnWithoutACurrentPoint) {
  const Path path = newPath();
  CGPathAddLineToPoint(path.get(), nullptr, 3, 4);
  CGPathAddQuadCurveToPoint(path.get(), nullptr, 5, 6, 7, 8);
  CGPathAddCurveToPoint(path.get(), nullptr, 9, 10, 11, 12, 13, 14);
  CGPathCloseSubpath(path.get());
  EXPECT_TRUE(CGPathIsEmpty(path.get()));
  EXPECT_TRUE(CGRectIsNull(CGPathGetBoundingBox(path.get())));
  expectPoint(CGPathGetCurrentPoint(path.get()), 0, 0);
}

TEST(Path, ACloseGoesBackToTheStartOfItsSubpath) {
  const Path path = newPath();
  CGPathMoveToPoint(path.get(), nullptr, 1, 2);
  CGPathAddLineToPoint(path.get(), nullptr, 3, 4);
  expectPoint(CGPathGetCurrentPoint(path.get()), 3, 4);
  CGPathCloseSubpath(path.get());
  expectPoint(CGPathGetCurrentPoint(path.get()), 1, 2);
  CGPathMoveToPoint(path.get(), nullptr, 8, 9);
  CGPathAddLineToPoint(path.get(), nullptr, 0, 0);
  CGPathCloseSubpath(path.get());
  expectPoint(CGPathGetCurrentPoint(path.get()), 8, 9);
}

TEST(Path, EveryPointGoesThroughTheTransform) {
  const Path path = newPath();
  const CGAffineTransform m = CGAffineTransformMake(2, 0, 0, 3, 10, 20);
  CGPathMoveToPoint(path.get(), &m, 1, 1);
  CGPathAddLineToPoint(path.get(), &m, 2, 2);
  CGPathAddQuadCurveToPoint(path.get(), &m, 3, 3, 4, 4);
  CGPathAddCurveToPoint(path.get(), &m, 5, 5, 6, 6, 7, 7);
  CGFloat step = 1;
  for (const Element &element : elementsOf(path.get()))
    for (const CGPoint point : element.points) {
      expectPoint(point, 2 * step + 10, 3 * step + 20);
      ++step;
    }
  EXPECT_EQ(step, 8);
}

TEST(Path, ARectangleIsAMoveThreeLinesAndAClose) {
  const Path path = newPath();
  CGPathAddRect(path.get(), nullptr, CGRectMake(5, 6, -2, -3));
  const auto elements = elementsOf(path.get());
  ASSERT_EQ(elements.size(), 5U);
  expectPoint(elements[0].points[0], 3, 3);
  expectPoint(elements[1].points[0], 5, 3);
  expectPoint(elements[2].points[0], 5, 6);
  expectPoint(elements[3].points[0], 3, 6);
  EXPECT_EQ(elements[4].type, kCGPathElementCloseSubpath);
  CGPathAddRect(path.get(), nullptr, CGRectNull);
  EXPECT_EQ(elementsOf(path.get()).size(), 5U);
}

TEST(Path, TheBoundingBoxContainsControlPoints) {
  const Path path = newPath();
  CGPathMoveToPoint(path.get(), nullptr, 0, 0);
  CGPathAddQuadCurveToPoint(path.get(), nullptr, 5, 10, 10, 0);
  EXPECT_TRUE(CGRectEqualToRect(CGPathGetBoundingBox(path.get()), CGRectMake(0, 0, 10, 10)));
}

TEST(Path, PathsWithTheSameElementsAreEqual) {
  const Path a = newPath(), b = newPath();
  EXPECT_TRUE(CGPathEqualToPath(a.get(), b.get()));
  CGPathMoveToPoint(a.get(), nullptr, 0.0F, 1);
  EXPECT_FALSE(CGPathEqualToPath(a.get(), b.get()));
  CGPathMoveToPoint(b.get(), nullptr, -0.0F, 1);
  EXPECT_TRUE(CGPathEqualToPath(a.get(), b.get()));
  EXPECT_TRUE(CFEqual(a.get(), b.get()));
  EXPECT_EQ(CFHash(a.get()), CFHash(b.get()));
  CGPathAddLineToPoint(a.get(), nullptr, 2, 2);
  CGPathMoveToPoint(b.get(), nullptr, 2, 2);
  EXPECT_FALSE(CGPathEqualToPath(a.get(), b.get()));
  EXPECT_FALSE(CGPathEqualToPath(a.get(), nullptr));
  EXPECT_TRUE(CGPathEqualToPath(nullptr, nullptr));
}

TEST(Path, ACopyDoesNotFollowItsOriginal) {
  const Path path = newPath();
  CGPathMoveToPoint(path.get(), nullptr, 1, 2);
  CGPathAddLineToPoint(path.get(), nullptr, 3, 4);
  const Path copy = Path::adopt(CGPathCreateMutableCopy(path.get()));
  EXPECT_TRUE(CGPathEqualToPath(path.get(), copy.get()));
  CGPathCloseSubpath(copy.get());
  expectPoint(CGPathGetCurrentPoint(copy.get()), 1, 2);
  expectPoint(CGPathGetCurrentPoint(path.get()), 3, 4);
  EXPECT_EQ(elementsOf(path.get()).size(), 2U);
}

TEST(Path, MayGrowWhileItIsApplied) {
  const Path path = newPath();
  CGPathMoveToPoint(path.get(), nullptr, 0, 0);
  for (int i = 0; i < 100; ++i) CGPathAddLineToPoint(path.get(), nullptr, 1, static_cast<CGFloat>(i));
  CGPathApply(path.get(), path.get(), [](void *info, const CGPathElement *element) {
    element->points[0].x = 77;
    CGPathAddLineToPoint(static_cast<CGMutablePathRef>(info), nullptr, 5, 5);
  });
  EXPECT_EQ(elementsOf(path.get()).size(), 202U);
  expectPoint(elementsOf(path.get())[1].points[0], 1, 0);
}

TEST(Path, NullIsTakenEverywhere) {
  EXPECT_TRUE(CGPathIsEmpty(nullptr));
  EXPECT_EQ(CGPathCreateCopy(nullptr), nullptr);
  EXPECT_EQ(CGPathRetain(nullptr), nullptr);
  CGPathRelease(nullptr);
  CGPathMoveToPoint(nullptr, nullptr, 0, 0);
  CGPathAddRect(nullptr, nullptr, CGRectMake(0, 0, 1, 1));
  CGPathCloseSubpath(nullptr);
  CGPathApply(nullptr, nullptr, nullptr);
  expectPoint(CGPathGetCurrentPoint(nullptr), 0, 0);
}

TEST(Path, SurvivesEveryFailedAllocation) {
  testing_support::forEachFailedAllocation([](CFAllocatorRef allocator, long) {
    CFAllocatorSetDefault(allocator);
    {
      const Path path = newPath();
      for (int i = 0; i < 200; ++i) {
        CGPathMoveToPoint(path.get(), nullptr, 0, 0);
        CGPathAddCurveToPoint(path.get(), nullptr, 1, 2, 3, 4, 5, 6);
      }
      const auto elements = elementsOf(path.get());
      for (const Element &element : elements)
        if (element.type == kCGPathElementAddCurveToPoint) {
          expectPoint(element.points[2], 5, 6);
        }
      const Path copy = Path::adopt(CGPathCreateMutableCopy(path.get()));
      if (copy) {
        EXPECT_TRUE(CGPathEqualToPath(path.get(), copy.get()));
      }
    }
    CFAllocatorSetDefault(nullptr);
  });
}

}  // namespace
