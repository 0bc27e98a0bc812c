#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "canvas.h"

namespace cg {
namespace {

using test::Bytes;
using test::Canvas;

constexpr CGBitmapInfo kInfos[] = {
    kCGImageAlphaNone,  kCGImageAlphaPremultipliedLast, kCGImageAlphaPremultipliedFirst, kCGImageAlphaLast,
    kCGImageAlphaFirst, kCGImageAlphaNoneSkipLast,      kCGImageAlphaNoneSkipFirst,      kCGImageAlphaOnly};

Bytes alphaLast(Bytes bytes) {
  for (size_t i = 0; i < bytes.size(); i += 4) std::rotate(&bytes[i], &bytes[i + 1], &bytes[i] + 4);
  return bytes;
}

bool isAlphaLast(CGBitmapInfo info) {
  return info == kCGImageAlphaPremultipliedLast || info == kCGImageAlphaLast ||
         info == kCGImageAlphaNoneSkipLast;
}

// Pixels that are valid in a layout.
Bytes pixelsFor(std::mt19937 &random, size_t pixels, CGBitmapInfo info) {
  Bytes bytes = test::randomPixels(random, pixels, test::componentsOf(info));
  return isAlphaLast(info) ? alphaLast(std::move(bytes)) : bytes;
}

void drawWhole(const Canvas &canvas, CGImageRef image) {
  CGContextDrawImage(canvas.context(),
                     test::rect(0, 0, static_cast<double>(CGImageGetWidth(image)),
                                static_cast<double>(CGImageGetHeight(image))),
                     image);
}

TEST(DrawExact, MatchingLayoutsOverNothingKeepEveryByte) {
  std::mt19937 random(21);
  for (CGBitmapInfo info :
       {kCGImageAlphaNone, kCGImageAlphaPremultipliedLast, kCGImageAlphaPremultipliedFirst, kCGImageAlphaLast,
        kCGImageAlphaFirst, kCGImageAlphaOnly}) {
    const Bytes bytes = pixelsFor(random, 37 * 11, info);
    const Canvas canvas(37, 11, info);
    drawWhole(canvas, test::makeImage(bytes, 37, 11, info).get());
    EXPECT_EQ(canvas.pixels(), bytes) << "alpha info " << info;
    EXPECT_TRUE(canvas.gapsAreWhole());
  }
}

TEST(DrawExact, SkippedBytesBecomeFull) {
  std::mt19937 random(22);
  for (CGBitmapInfo info : {kCGImageAlphaNoneSkipLast, kCGImageAlphaNoneSkipFirst}) {
    Bytes bytes = pixelsFor(random, 37 * 11, info);
    const Canvas canvas(37, 11, info);
    drawWhole(canvas, test::makeImage(bytes, 37, 11, info).get());
    for (size_t i = info == kCGImageAlphaNoneSkipLast ? 3 : 0; i < bytes.size(); i += 4) bytes[i] = 255;
    EXPECT_EQ(canvas.pixels(), bytes) << "alpha info " << info;
  }
}

TEST(DrawExact, StraightPixelsArePremultipliedByTheContext) {
  const auto image = test::makeImage({128, 255, 100, 3}, 1, 1, kCGImageAlphaFirst);
  const Canvas canvas(1, 1, kCGImageAlphaPremultipliedFirst);
  drawWhole(canvas, image.get());
  EXPECT_EQ(canvas.pixels(), (Bytes{128, 128, 50, 2}));
}

TEST(DrawExact, PremultipliedPixelsAreDividedForAStraightContext) {
  const auto image = test::makeImage({128, 128, 50, 2}, 1, 1, kCGImageAlphaPremultipliedFirst);
  const Canvas canvas(1, 1, kCGImageAlphaLast);
  drawWhole(canvas, image.get());
  EXPECT_EQ(canvas.pixels(), (Bytes{255, 100, 4, 128}));
}

TEST(DrawExact, SourceIsComposedOverWhatIsThere) {
  std::mt19937 random(23);
  const Bytes source = pixelsFor(random, 53 * 7, kCGImageAlphaPremultipliedFirst);
  const Bytes before = pixelsFor(random, 53 * 7, kCGImageAlphaPremultipliedFirst);
  const Canvas canvas(53, 7, kCGImageAlphaPremultipliedFirst, before);
  drawWhole(canvas, test::makeImage(source, 53, 7, kCGImageAlphaPremultipliedFirst).get());
  const Bytes after = canvas.pixels();
  for (size_t i = 0; i < after.size(); ++i) {
    const double left = before[i] * (255 - source[i - i % 4]) / 255.0;
    ASSERT_EQ(after[i], source[i] + std::floor(left + 0.5));
  }
}

TEST(DrawExact, ColorBecomesGrayByTheStoredValues) {
  const auto image = test::makeImage({255, 200, 100, 50}, 1, 1, kCGImageAlphaNoneSkipFirst);
  const Canvas canvas(1, 1, kCGImageAlphaNone);
  drawWhole(canvas, image.get());
  EXPECT_EQ(canvas.pixels(), (Bytes{(30 * 200 + 59 * 100 + 11 * 50 + 50) / 100}));
}

TEST(DrawExact, ColorWithAlphaIsComposedOverTheGrayThere) {
  const auto image = test::makeImage({51, 255, 255, 255}, 1, 1, kCGImageAlphaFirst);
  const Canvas canvas(1, 1, kCGImageAlphaNone, 100);
  drawWhole(canvas, image.get());
  EXPECT_EQ(canvas.pixels(), (Bytes{51 + 80}));
}

TEST(DrawExact, GrayBecomesColorByRepeating) {
  const auto image = test::makeImage({77}, 1, 1, kCGImageAlphaNone);
  const Canvas canvas(1, 1, kCGImageAlphaPremultipliedLast);
  drawWhole(canvas, image.get());
  EXPECT_EQ(canvas.pixels(), (Bytes{77, 77, 77, 255}));
}

// Where a pixel goes: x = xx * u + xy * v + x0, and y alike, in rows from the top.
struct Turn {
  int xx, xy, yx, yy;
};
constexpr Turn kTurns[] = {{1, 0, 0, 1}, {-1, 0, 0, 1}, {1, 0, 0, -1}, {-1, 0, 0, -1},
                           {0, 1, 1, 0}, {0, -1, 1, 0}, {0, 1, -1, 0}, {0, -1, -1, 0}};

constexpr size_t kWidth = 150, kHeight = 9;

struct Turned {
  Bytes bytes;
  size_t width, height;
};

Turned turnedByHand(const Bytes &bytes, size_t components, const Turn &turn) {
  const bool sideways = turn.xx == 0;
  Turned result{Bytes(bytes.size()), sideways ? kHeight : kWidth, sideways ? kWidth : kHeight};
  for (size_t v = 0; v < kHeight; ++v) {
    for (size_t u = 0; u < kWidth; ++u) {
      const size_t alongX = sideways ? v : u, alongY = sideways ? u : v;
      const size_t x = turn.xx + turn.xy > 0 ? alongX : result.width - 1 - alongX;
      const size_t y = turn.yx + turn.yy > 0 ? alongY : result.height - 1 - alongY;
      std::copy_n(&bytes[(v * kWidth + u) * components], components,
                  &result.bytes[(y * result.width + x) * components]);
    }
  }
  return result;
}

// Draws the image turned about, with the top left corner of what it covers at x, y from the top.
void drawTurnedAt(const Canvas &canvas, CGImageRef image, const Turn &turn, double x, double y,
                  double surfaceHeight) {
  const bool sideways = turn.xx == 0;
  const double width = sideways ? kHeight : kWidth, height = sideways ? kWidth : kHeight;
  // With y up the image lies in 0, 0, width, height upside down as seen from its rows.
  const double a = turn.xx, b = -turn.yx, c = -turn.xy, d = turn.yy;
  const double left = std::min({0.0, a * kWidth, c * kHeight, a * kWidth + c * kHeight});
  const double bottom = std::min({0.0, b * kWidth, d * kHeight, b * kWidth + d * kHeight});
  CGContextSaveGState(canvas.context());
  CGContextTranslateCTM(canvas.context(), static_cast<CGFloat>(x - left),
                        static_cast<CGFloat>(surfaceHeight - y - height - bottom));
  CGContextConcatCTM(canvas.context(),
                     CGAffineTransformMake(static_cast<CGFloat>(a), static_cast<CGFloat>(b),
                                           static_cast<CGFloat>(c), static_cast<CGFloat>(d), 0, 0));
  CGContextDrawImage(canvas.context(), test::rect(0, 0, kWidth, kHeight), image);
  CGContextRestoreGState(canvas.context());
  EXPECT_GT(width, 0);
}

TEST(DrawExact, FlipsAndQuarterTurnsMovePixelsAsTheyAre) {
  std::mt19937 random(24);
  for (CGBitmapInfo sourceInfo : kInfos) {
    const Bytes bytes = pixelsFor(random, kWidth * kHeight, sourceInfo);
    const auto image = test::makeImage(bytes, kWidth, kHeight, sourceInfo);
    for (CGBitmapInfo info : kInfos) {
      for (const Turn &turn : kTurns) {
        const Turned byHand = turnedByHand(bytes, test::componentsOf(sourceInfo), turn);
        const Bytes before = pixelsFor(random, byHand.width * byHand.height, info);
        const Canvas got(byHand.width, byHand.height, info, before);
        drawTurnedAt(got, image.get(), turn, 0, 0, static_cast<double>(byHand.height));
        const Canvas expected(byHand.width, byHand.height, info, before);
        drawWhole(expected, test::makeImage(byHand.bytes, byHand.width, byHand.height, sourceInfo).get());
        ASSERT_EQ(got.pixels(), expected.pixels())
            << sourceInfo << " into " << info << ", turn " << &turn - kTurns;
        ASSERT_TRUE(got.gapsAreWhole());
      }
    }
  }
}

TEST(DrawExact, PartsAreCutOffByTheSurfaceAndTheClip) {
  std::mt19937 random(25);
  const CGBitmapInfo info = kCGImageAlphaPremultipliedFirst;
  const Bytes bytes = pixelsFor(random, kWidth * kHeight, info);
  const auto image = test::makeImage(bytes, kWidth, kHeight, info);
  for (const Turn &turn : kTurns) {
    const Turned byHand = turnedByHand(bytes, 4, turn);
    for (int x : {-100, -4, 0, 5, 31}) {
      for (int y : {-120, -3, 0, 2, 7, 40}) {
        const Canvas canvas(40, 30, info);
        CGContextClipToRect(canvas.context(), CGRectMake(2, 3, 35, 26));
        drawTurnedAt(canvas, image.get(), turn, x, y, 30);
        const Bytes pixels = canvas.pixels();
        for (int row = 0; row < 30; ++row) {
          for (int column = 0; column < 40; ++column) {
            const bool inClip = column >= 2 && column < 37 && row >= 1 && row < 27;
            const int u = column - x, v = row - y;
            const bool inImage =
                u >= 0 && v >= 0 && u < static_cast<int>(byHand.width) && v < static_cast<int>(byHand.height);
            const auto at = static_cast<size_t>(4 * (row * 40 + column));
            const auto from = static_cast<size_t>(4 * (v * static_cast<int>(byHand.width) + u));
            for (size_t c = 0; c < 4; ++c)
              ASSERT_EQ(pixels[at + c], inClip && inImage ? byHand.bytes[from + c] : 0)
                  << "turn " << &turn - kTurns << " at " << x << ' ' << y << ", pixel " << column << ' '
                  << row;
          }
        }
      }
    }
  }
}

TEST(DrawExact, ATurnByAnAngleIsExactToo) {
  std::mt19937 random(26);
  const CGBitmapInfo info = kCGImageAlphaPremultipliedFirst;
  const Bytes bytes = pixelsFor(random, kWidth * kHeight, info);
  const Canvas canvas(kHeight, kWidth, info);
  CGContextTranslateCTM(canvas.context(), kHeight, 0);
  CGContextRotateCTM(canvas.context(), std::numbers::pi_v<float> / 2);
  CGContextDrawImage(canvas.context(), test::rect(0, 0, kWidth, kHeight),
                     test::makeImage(bytes, kWidth, kHeight, info).get());
  EXPECT_EQ(canvas.pixels(), turnedByHand(bytes, 4, {0, 1, -1, 0}).bytes);
}

TEST(DrawExact, OutsideTheSurfaceNothingIsDrawn) {
  const auto image = test::makeImage(Bytes(100, 255), 10, 10, kCGImageAlphaNone);
  const Canvas canvas(10, 10, kCGImageAlphaNone);
  for (const CGRect &rect : {CGRectMake(10, 0, 10, 10), CGRectMake(0, -10, 10, 10),
                             CGRectMake(-4e8f, 0, 10, 10), CGRectMake(0, 1e20f, 10, 10)})
    CGContextDrawImage(canvas.context(), rect, image.get());
  EXPECT_EQ(canvas.pixels(), Bytes(100));
}

}  // namespace
}  // namespace cg
