#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "canvas.h"

namespace cg {
namespace {

using test::Bytes;
using test::Canvas;

void rotateAbout(const Canvas &canvas, double x, double y, double angle) {
  CGContextTranslateCTM(canvas.context(), static_cast<CGFloat>(x), static_cast<CGFloat>(y));
  CGContextRotateCTM(canvas.context(), static_cast<CGFloat>(angle));
}

TEST(DrawMapped, AnEvenImageStaysEvenInsideAndNothingOutside) {
  const auto image = test::makeImage(Bytes(20 * 20, 180), 20, 20, kCGImageAlphaNone);
  for (double angle : {0.1, 0.5, 1.0, 2.5, -0.7}) {
    const Canvas canvas(40, 40, kCGImageAlphaNone, 9);
    rotateAbout(canvas, 20, 20, angle);
    CGContextDrawImage(canvas.context(), CGRectMake(-10, -10, 20, 20), image.get());
    const Bytes pixels = canvas.pixels();
    for (size_t y = 0; y < 40; ++y) {
      for (size_t x = 0; x < 40; ++x) {
        const double dx = static_cast<double>(x) + 0.5 - 20, dy = 20 - static_cast<double>(y) - 0.5;
        const double u = std::cos(angle) * dx + std::sin(angle) * dy;
        const double v = std::cos(angle) * dy - std::sin(angle) * dx;
        const double inside = 10 - std::max(std::fabs(u), std::fabs(v));
        if (std::fabs(inside) < 0.01) continue;
        ASSERT_EQ(pixels[y * 40 + x], inside > 0 ? 180 : 9) << x << ' ' << y << ' ' << angle;
      }
    }
    EXPECT_TRUE(canvas.gapsAreWhole());
  }
}

// Against bilinear sampling in doubles.
TEST(DrawMapped, LiesWithinOneStepOfSamplingInDoubles) {
  std::mt19937 random(41);
  constexpr int kSide = 24;
  const Bytes bytes = test::randomPixels(random, kSide * kSide, 4);
  const auto image = test::makeImage(bytes, kSide, kSide, kCGImageAlphaPremultipliedFirst);
  const auto at = [&](int x, int y, size_t c) {
    x = std::clamp(x, 0, kSide - 1);
    y = std::clamp(y, 0, kSide - 1);
    return static_cast<double>(bytes[static_cast<size_t>(4 * (y * kSide + x)) + c]);
  };
  for (const CGAffineTransform &map :
       {CGAffineTransformMake(1.5f, 0.7f, -0.6f, 1.3f, 20, 5), CGAffineTransformMake(1, 0.25f, 0, 1, 3, 3),
        CGAffineTransformMake(0, 2, -1.5f, 0, 50, 4),
        CGAffineTransformMake(-1.2f, 0.4f, 0.4f, 1.2f, 40, 1)}) {
    const Canvas canvas(60, 60, kCGImageAlphaPremultipliedFirst);
    CGContextConcatCTM(canvas.context(), map);
    CGContextDrawImage(canvas.context(), CGRectMake(0, 0, kSide, kSide), image.get());
    const Bytes pixels = canvas.pixels();
    const double determinant = static_cast<double>(map.a * map.d - map.b * map.c);
    for (int y = 0; y < 60; ++y) {
      for (int x = 0; x < 60; ++x) {
        const double dx = x + 0.5 - static_cast<double>(map.tx),
                     dy = 60 - y - 0.5 - static_cast<double>(map.ty);
        const double u = (static_cast<double>(map.d) * dx - static_cast<double>(map.c) * dy) / determinant;
        const double v =
            kSide - (static_cast<double>(map.a) * dy - static_cast<double>(map.b) * dx) / determinant;
        const double depth = std::min({u, v, kSide - u, kSide - v});
        if (std::fabs(depth) < 0.01) continue;
        const int left = static_cast<int>(std::floor(u - 0.5)), top = static_cast<int>(std::floor(v - 0.5));
        const double fx = u - 0.5 - left, fy = v - 0.5 - top;
        for (size_t c = 0; c < 4; ++c) {
          const double upper = at(left, top, c) * (1 - fx) + at(left + 1, top, c) * fx;
          const double lower = at(left, top + 1, c) * (1 - fx) + at(left + 1, top + 1, c) * fx;
          const double expected = depth < 0 ? 0 : upper * (1 - fy) + lower * fy;
          ASSERT_NEAR(pixels[static_cast<size_t>(4 * (y * 60 + x)) + c], expected, 1.6) << x << ' ' << y;
        }
      }
    }
  }
}

TEST(DrawMapped, ColorStaysWithinAlpha) {
  std::mt19937 random(42);
  const auto image =
      test::makeImage(test::randomPixels(random, 90 * 70, 4), 90, 70, kCGImageAlphaPremultipliedFirst);
  for (double scale : {0.1, 0.45, 1.0, 3.0}) {
    for (CGInterpolationQuality quality :
         {kCGInterpolationDefault, kCGInterpolationNone, kCGInterpolationHigh}) {
      const Canvas canvas(64, 64, kCGImageAlphaPremultipliedFirst);
      CGContextSetInterpolationQuality(canvas.context(), quality);
      rotateAbout(canvas, 32, 32, 0.6);
      CGContextScaleCTM(canvas.context(), static_cast<CGFloat>(scale), static_cast<CGFloat>(scale));
      CGContextDrawImage(canvas.context(), CGRectMake(-45, -35, 90, 70), image.get());
      const Bytes pixels = canvas.pixels();
      for (size_t i = 0; i < pixels.size(); ++i) ASSERT_LE(pixels[i], pixels[i - i % 4]);
    }
  }
}

TEST(DrawMapped, StrongReductionAveragesWhatItCovers) {
  // Stripes one pixel wide become even, which looking up single pixels would not make them.
  Bytes stripes(200 * 200);
  for (size_t i = 0; i < stripes.size(); ++i) stripes[i] = i % 2 ? 200 : 0;
  const Canvas canvas(40, 40, kCGImageAlphaNone);
  rotateAbout(canvas, 20, 20, 0.5);
  CGContextDrawImage(canvas.context(), CGRectMake(-8, -8, 16, 16),
                     test::makeImage(stripes, 200, 200, kCGImageAlphaNone).get());
  const Bytes pixels = canvas.pixels();
  for (size_t y = 15; y < 25; ++y)  // away from the repeated outer stripes
    for (size_t x = 15; x < 25; ++x) ASSERT_NEAR(pixels[y * 40 + x], 100, 2);
}

TEST(DrawMapped, NearestTakesPixelsAsTheyAre) {
  std::mt19937 random(43);
  Bytes bytes(30 * 30);
  for (uint8_t &byte : bytes) byte = random() % 2 ? 40 : 220;
  const Canvas canvas(50, 50, kCGImageAlphaNone);
  CGContextSetInterpolationQuality(canvas.context(), kCGInterpolationNone);
  rotateAbout(canvas, 25, 25, 0.3);
  CGContextDrawImage(canvas.context(), CGRectMake(-15, -15, 30, 30),
                     test::makeImage(bytes, 30, 30, kCGImageAlphaNone).get());
  for (uint8_t value : canvas.pixels()) ASSERT_TRUE(value == 0 || value == 40 || value == 220);
}

TEST(DrawMapped, APartUnderAClipIsThatPartOfTheWhole) {
  std::mt19937 random(44);
  const auto image =
      test::makeImage(test::randomPixels(random, 40 * 40, 4), 40, 40, kCGImageAlphaPremultipliedFirst);
  const Canvas whole(50, 50, kCGImageAlphaPremultipliedFirst), part(50, 50, kCGImageAlphaPremultipliedFirst);
  CGContextClipToRect(part.context(), CGRectMake(12, 20, 9, 14));
  for (const Canvas *canvas : {&whole, &part}) {
    rotateAbout(*canvas, 25, 25, 1.1);
    CGContextDrawImage(canvas->context(), CGRectMake(-20, -20, 45, 45), image.get());
  }
  const Bytes all = whole.pixels(), some = part.pixels();
  for (size_t i = 0; i < all.size(); ++i) {
    const size_t x = i / 4 % 50, y = i / 200;
    ASSERT_NEAR(some[i], x >= 12 && x < 21 && y >= 16 && y < 30 ? all[i] : 0, 1);
  }
}

TEST(DrawMapped, WhatFlattensDrawsNothing) {
  const auto image = test::makeImage(Bytes(100, 255), 10, 10, kCGImageAlphaNone);
  const Canvas canvas(10, 10, kCGImageAlphaNone);
  for (const CGAffineTransform &map :
       {CGAffineTransformMake(1, 1, 1, 1, 0, 0), CGAffineTransformMake(0, 0, 0, 0, 5, 5),
        CGAffineTransformMake(1, 0, 0, 0, 0, 5)}) {
    CGContextSaveGState(canvas.context());
    CGContextConcatCTM(canvas.context(), map);
    CGContextDrawImage(canvas.context(), CGRectMake(0, 0, 10, 10), image.get());
    CGContextRestoreGState(canvas.context());
  }
  EXPECT_EQ(canvas.pixels(), Bytes(100));
}

TEST(DrawMapped, HostileMatricesAreSafe) {
  std::mt19937 random(45);
  const auto image = test::makeImage(Bytes(100, 255), 10, 10, kCGImageAlphaNone);
  const Canvas canvas(10, 10, kCGImageAlphaNone);
  const float infinity = std::numeric_limits<float>::infinity();
  const float values[] = {
      0,      1,     -1,     0.3f,   -7,       1e-30f,    1e30f,
      -1e30f, 1e38f, -1e38f, 1e-38f, infinity, -infinity, std::numeric_limits<float>::quiet_NaN(),
      5};
  const auto any = [&] { return values[random() % std::size(values)]; };
  for (int i = 0; i < 20000; ++i) {
    CGContextSaveGState(canvas.context());
    CGContextConcatCTM(canvas.context(), CGAffineTransformMake(any(), any(), any(), any(), any(), any()));
    CGContextConcatCTM(canvas.context(), CGAffineTransformMake(any(), any(), any(), any(), any(), any()));
    CGContextSetInterpolationQuality(canvas.context(), static_cast<CGInterpolationQuality>(random() % 5));
    CGContextDrawImage(canvas.context(), CGRectMake(any(), any(), any(), any()), image.get());
    CGContextRestoreGState(canvas.context());
  }
  EXPECT_TRUE(canvas.gapsAreWhole());
}

}  // namespace
}  // namespace cg
