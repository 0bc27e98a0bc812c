#include <gtest/gtest.h>

#include <limits>

#include "canvas.h"

namespace cg {
namespace {

using test::Bytes;
using test::Canvas;

TEST(Fill, CoversThePixelsWhoseCentresLieInside) {
  const Canvas canvas(4, 3, kCGImageAlphaNone);
  CGContextSetGrayFillColor(canvas.context(), 1, 1);
  CGContextFillRect(canvas.context(), CGRectMake(0.6f, 1, 2, 1));
  EXPECT_EQ(canvas.pixels(), (Bytes{0, 0, 0, 0, 0, 255, 255, 0, 0, 0, 0, 0}));
  EXPECT_TRUE(canvas.gapsAreWhole());
}

TEST(Fill, RowsCountFromTheBottom) {
  const Canvas canvas(1, 3, kCGImageAlphaNone);
  CGContextSetGrayFillColor(canvas.context(), 1, 1);
  CGContextFillRect(canvas.context(), CGRectMake(0, 0, 1, 1));
  EXPECT_EQ(canvas.pixels(), (Bytes{0, 0, 255}));
}

TEST(Fill, TheColorGoesIntoEveryLayout) {
  struct Case {
    CGBitmapInfo info;
    Bytes pixel;
  };
  // Red 1, green 0.2, blue 0 at alpha 0.4 (102) over nothing.
  const Case cases[] = {{kCGImageAlphaPremultipliedLast, {102, 20, 0, 102}},
                        {kCGImageAlphaPremultipliedFirst, {102, 102, 20, 0}},
                        {kCGImageAlphaLast, {255, 51, 0, 102}},
                        {kCGImageAlphaFirst, {102, 255, 51, 0}},
                        {kCGImageAlphaNoneSkipLast, {102, 20, 0, 255}},
                        {kCGImageAlphaNoneSkipFirst, {255, 102, 20, 0}},
                        {kCGImageAlphaOnly, {102}},
                        {kCGImageAlphaNone, {43}}};
  for (const Case &c : cases) {
    const Canvas canvas(1, 1, c.info);
    CGContextSetRGBFillColor(canvas.context(), 1, 0.2f, 0, 0.4f);
    CGContextFillRect(canvas.context(), CGRectMake(0, 0, 1, 1));
    EXPECT_EQ(canvas.pixels(), c.pixel) << "alpha info " << c.info;
  }
}

TEST(Fill, ComponentsOutOfRangeAreHeld) {
  const Canvas canvas(1, 1, kCGImageAlphaPremultipliedFirst);
  CGContextSetRGBFillColor(canvas.context(), 1e30f, -5, std::numeric_limits<float>::quiet_NaN(), 7);
  CGContextFillRect(canvas.context(), CGRectMake(0, 0, 1, 1));
  EXPECT_EQ(canvas.pixels(), (Bytes{255, 255, 0, 0}));
}

TEST(Fill, ClearingLeavesZeros) {
  const Canvas canvas(3, 2, kCGImageAlphaNone, 9);
  CGContextClearRect(canvas.context(), CGRectMake(1, 0, 1, 2));
  EXPECT_EQ(canvas.pixels(), (Bytes{9, 0, 9, 9, 0, 9}));
  EXPECT_TRUE(canvas.gapsAreWhole());
}

TEST(Fill, GoesThroughTheMatrix) {
  const Canvas canvas(4, 4, kCGImageAlphaNone);
  CGContextSetGrayFillColor(canvas.context(), 1, 1);
  CGContextTranslateCTM(canvas.context(), 4, 0);
  CGContextScaleCTM(canvas.context(), -2, 2);
  CGContextFillRect(canvas.context(), CGRectMake(0, 1, 1, 1));
  EXPECT_EQ(canvas.pixels(), (Bytes{0, 0, 255, 255, 0, 0, 255, 255, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(Fill, ClipsOnlyNarrow) {
  const Canvas canvas(5, 1, kCGImageAlphaNone);
  CGContextSetGrayFillColor(canvas.context(), 1, 1);
  CGContextClipToRect(canvas.context(), CGRectMake(1, 0, 3, 1));
  CGContextClipToRect(canvas.context(), CGRectMake(2, 0, 9, 9));
  EXPECT_TRUE(CGRectEqualToRect(CGContextGetClipBoundingBox(canvas.context()), CGRectMake(2, 0, 2, 1)));
  CGContextFillRect(canvas.context(), CGRectMake(-9, -9, 99, 99));
  EXPECT_EQ(canvas.pixels(), (Bytes{0, 0, 255, 255, 0}));
}

TEST(Fill, ClipsApartLeaveNothing) {
  const Canvas canvas(5, 1, kCGImageAlphaNone);
  CGContextClipToRect(canvas.context(), CGRectMake(0, 0, 1, 1));
  CGContextClipToRect(canvas.context(), CGRectMake(3, 0, 1, 1));
  EXPECT_TRUE(CGRectIsNull(CGContextGetClipBoundingBox(canvas.context())));
  CGContextSetGrayFillColor(canvas.context(), 1, 1);
  CGContextFillRect(canvas.context(), CGRectInfinite);
  EXPECT_EQ(canvas.pixels(), Bytes(5));
}

TEST(Fill, UnboundedRectanglesCoverTheSurface) {
  const Canvas canvas(3, 1, kCGImageAlphaNone);
  CGContextSetGrayFillColor(canvas.context(), 1, 1);
  CGContextFillRect(canvas.context(), CGRectInfinite);
  EXPECT_EQ(canvas.pixels(), Bytes(3, 255));
}

TEST(Fill, RectanglesThatAreNoneFillNothing) {
  const float infinity = std::numeric_limits<float>::infinity();
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const Canvas canvas(3, 3, kCGImageAlphaNone);
  CGContextSetGrayFillColor(canvas.context(), 1, 1);
  for (const CGRect &rect : {CGRectMake(nan, 0, 3, 3), CGRectMake(0, 0, nan, 3), CGRectMake(0, 0, 0, 3),
                             CGRectMake(-infinity, 0, infinity, 3), CGRectNull})
    CGContextFillRect(canvas.context(), rect);
  EXPECT_EQ(canvas.pixels(), Bytes(9));
}

}  // namespace
}  // namespace cg
