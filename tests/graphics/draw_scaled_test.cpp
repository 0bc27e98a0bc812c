#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "canvas.h"

namespace cg {
namespace {

using test::Bytes;
using test::Canvas;

Bytes grayRamp(size_t width, size_t height) {
  Bytes bytes(width * height);
  for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<uint8_t>(i % width * 255 / (width - 1));
  return bytes;
}

TEST(DrawScaled, DoublingMixesNeighboursByQuarters) {
  const Canvas canvas(4, 1, kCGImageAlphaNone);
  CGContextDrawImage(canvas.context(), CGRectMake(0, 0, 4, 1),
                     test::makeImage({0, 200}, 2, 1, kCGImageAlphaNone).get());
  EXPECT_EQ(canvas.pixels(), (Bytes{0, 50, 150, 200}));
}

TEST(DrawScaled, HalvingTakesFourNeighbours) {
  const Canvas canvas(3, 1, kCGImageAlphaNone);
  CGContextDrawImage(canvas.context(), CGRectMake(0, 0, 3, 1),
                     test::makeImage({0, 0, 0, 240, 0, 0}, 6, 1, kCGImageAlphaNone).get());
  EXPECT_EQ(canvas.pixels(), (Bytes{0, 90, 30}));
}

TEST(DrawScaled, ColorIsFilteredPremultiplied) {
  // A transparent neighbour takes alpha away, and no colour from the other.
  const auto image = test::makeImage({255, 200, 100, 60, 0, 255, 255, 255}, 2, 1, kCGImageAlphaFirst);
  const Canvas premultiplied(4, 1, kCGImageAlphaPremultipliedFirst);
  CGContextDrawImage(premultiplied.context(), CGRectMake(0, 0, 4, 1), image.get());
  EXPECT_EQ(premultiplied.pixels(), (Bytes{255, 200, 100, 60, 191, 150, 75, 45, 64, 50, 25, 15, 0, 0, 0, 0}));
  const Canvas straight(4, 1, kCGImageAlphaFirst);
  CGContextDrawImage(straight.context(), CGRectMake(0, 0, 4, 1), image.get());
  EXPECT_EQ(straight.pixels(), (Bytes{255, 200, 100, 60, 191, 200, 100, 60, 64, 199, 100, 60, 0, 0, 0, 0}));
}

TEST(DrawScaled, NearestTakesThePixelUnderTheCentre) {
  const auto image = test::makeImage({10, 20, 30}, 3, 1, kCGImageAlphaNone);
  for (const bool flipped : {false, true}) {
    const Canvas canvas(7, 2, kCGImageAlphaNone);
    CGContextSetInterpolationQuality(canvas.context(), kCGInterpolationNone);
    if (flipped) CGContextConcatCTM(canvas.context(), CGAffineTransformMake(-1, 0, 0, 1, 7, 0));
    CGContextDrawImage(canvas.context(), CGRectMake(0, 0, 7, 2), image.get());
    EXPECT_EQ(canvas.pixels(), flipped ? (Bytes{30, 30, 20, 20, 20, 10, 10, 30, 30, 20, 20, 20, 10, 10})
                                       : (Bytes{10, 10, 20, 20, 20, 30, 30, 10, 10, 20, 20, 20, 30, 30}));
  }
}

TEST(DrawScaled, AnImageNotToBeInterpolatedIsNot) {
  const Canvas canvas(4, 1, kCGImageAlphaNone);
  CGContextDrawImage(canvas.context(), CGRectMake(0, 0, 4, 1),
                     test::makeImage({0, 200}, 2, 1, kCGImageAlphaNone, false).get());
  EXPECT_EQ(canvas.pixels(), (Bytes{0, 0, 200, 200}));
}

TEST(DrawScaled, NearestKeepsStraightPixelsAsTheyAre) {
  const auto image = test::makeImage({3, 200, 100, 60}, 1, 1, kCGImageAlphaFirst);
  const Canvas canvas(2, 1, kCGImageAlphaFirst);
  CGContextSetInterpolationQuality(canvas.context(), kCGInterpolationNone);
  CGContextDrawImage(canvas.context(), CGRectMake(0, 0, 2, 1), image.get());
  EXPECT_EQ(canvas.pixels(), (Bytes{3, 200, 100, 60, 3, 200, 100, 60}));
}

TEST(DrawScaled, HighQualityIsSharper) {
  Bytes step(16);
  std::fill(step.begin() + 8, step.end(), uint8_t{200});
  const auto image = test::makeImage(step, 16, 1, kCGImageAlphaNone);
  const Canvas smooth(32, 1, kCGImageAlphaNone), sharp(32, 1, kCGImageAlphaNone);
  CGContextSetInterpolationQuality(sharp.context(), kCGInterpolationHigh);
  CGContextDrawImage(smooth.context(), CGRectMake(0, 0, 32, 1), image.get());
  CGContextDrawImage(sharp.context(), CGRectMake(0, 0, 32, 1), image.get());
  EXPECT_GT(sharp.pixels()[16] - sharp.pixels()[15], smooth.pixels()[16] - smooth.pixels()[15]);
  EXPECT_GT(sharp.pixels()[18], 200);  // the overshoot that makes edges crisp
}

TEST(DrawScaled, OnlyPixelsWithTheirCentreInsideAreDrawn) {
  const Canvas canvas(6, 1, kCGImageAlphaNone, 1);
  CGContextDrawImage(canvas.context(), CGRectMake(1.6f, 0, 2, 1),
                     test::makeImage({9, 9, 9}, 3, 1, kCGImageAlphaNone).get());
  EXPECT_EQ(canvas.pixels(), (Bytes{1, 1, 9, 9, 1, 1}));
}

TEST(DrawScaled, HalfAPixelAsideMixesNeighbours) {
  const Canvas canvas(3, 1, kCGImageAlphaNone);
  CGContextDrawImage(canvas.context(), CGRectMake(0.5f, 0, 2, 1),
                     test::makeImage({100, 200}, 2, 1, kCGImageAlphaNone).get());
  EXPECT_EQ(canvas.pixels(), (Bytes{100, 150, 0}));
}

TEST(DrawScaled, APartUnderAClipIsThatPartOfTheWhole) {
  std::mt19937 random(31);
  const CGBitmapInfo info = kCGImageAlphaPremultipliedFirst;
  const auto image = test::makeImage(test::randomPixels(random, 50 * 40, 4), 50, 40, info);
  for (CGInterpolationQuality quality :
       {kCGInterpolationDefault, kCGInterpolationNone, kCGInterpolationHigh}) {
    for (const CGRect &rect :
         {CGRectMake(0, 0, 23, 31), CGRectMake(-40, -20, 130, 77), CGRectMake(3, 2, 20, 90)}) {
      const Canvas whole(30, 35, info), part(30, 35, info);
      CGContextSetInterpolationQuality(whole.context(), quality);
      CGContextSetInterpolationQuality(part.context(), quality);
      CGContextClipToRect(part.context(), CGRectMake(7, 11, 13, 9));
      CGContextDrawImage(whole.context(), rect, image.get());
      CGContextDrawImage(part.context(), rect, image.get());
      const Bytes all = whole.pixels(), some = part.pixels();
      for (size_t i = 0; i < all.size(); ++i) {
        const size_t x = i / 4 % 30, y = i / 120;
        const bool inside = x >= 7 && x < 20 && y >= 35 - 20 && y < 35 - 11;
        ASSERT_EQ(some[i], inside ? all[i] : 0);
      }
      ASSERT_TRUE(part.gapsAreWhole());
    }
  }
}

TEST(DrawScaled, AFlipIsTheMirrorOfTheUprightImage) {
  const auto image = test::makeImage(grayRamp(40, 3), 40, 3, kCGImageAlphaNone);
  for (double width : {13.0, 77.0}) {
    const auto count = static_cast<size_t>(width);
    const Canvas upright(count, 3, kCGImageAlphaNone), mirrored(count, 3, kCGImageAlphaNone);
    CGContextConcatCTM(mirrored.context(),
                       CGAffineTransformMake(-1, 0, 0, 1, static_cast<CGFloat>(width), 0));
    CGContextDrawImage(upright.context(), test::rect(0, 0, width, 3), image.get());
    CGContextDrawImage(mirrored.context(), test::rect(0, 0, width, 3), image.get());
    const Bytes a = upright.pixels(), b = mirrored.pixels();
    for (size_t i = 0; i < a.size(); ++i) ASSERT_NEAR(a[i], b[i / count * count + count - 1 - i % count], 1);
  }
}

TEST(DrawScaled, EveryLayoutTakesEveryLayout) {
  for (CGBitmapInfo from = 0; from < 8; ++from) {
    const Bytes bytes(10 * 10 * test::componentsOf(from), 255);  // white, opaque
    const auto image = test::makeImage(bytes, 10, 10, from);
    for (CGBitmapInfo to = 0; to < 8; ++to) {
      if (from == kCGImageAlphaOnly && to != kCGImageAlphaOnly) continue;
      for (double side : {7.0, 15.0}) {
        const Canvas canvas(static_cast<size_t>(side), static_cast<size_t>(side), to);
        CGContextDrawImage(canvas.context(), test::rect(0, 0, side, side), image.get());
        ASSERT_EQ(canvas.pixels(), Bytes(canvas.pixels().size(), 255)) << from << " into " << to;
      }
    }
  }
}

TEST(DrawScaled, HostileSizesAreSafe) {
  const auto image = test::makeImage(Bytes(100, 255), 10, 10, kCGImageAlphaNone);
  const Canvas canvas(10, 10, kCGImageAlphaNone);
  for (const CGRect &rect : {CGRectMake(0, 0, 1e-30f, 1e-30f), CGRectMake(0.5f, 0.5f, 1e-30f, 1e30f),
                             CGRectMake(-1e30f, -1e30f, 1, 1), CGRectMake(0, 0, 1e-38f, 10), CGRectInfinite,
                             CGRectMake(-1e38f, -1e38f, 2e38f, 2e38f)})
    CGContextDrawImage(canvas.context(), rect, image.get());
  CGContextScaleCTM(canvas.context(), 1e38f, 1e38f);
  CGContextScaleCTM(canvas.context(), 1e38f, 1e38f);
  for (int i = 0; i < 20; ++i) CGContextScaleCTM(canvas.context(), 1e38f, 1e38f);
  CGContextDrawImage(canvas.context(), CGRectMake(-1, -1, 2, 2), image.get());
  EXPECT_TRUE(canvas.gapsAreWhole());
}

}  // namespace
}  // namespace cg
