// The fast tracer and the plain form give the same path and the same text.
#include <gtest/gtest.h>

#include <algorithm>

#include "path/tracing.h"

namespace drav::path {
namespace {

struct Tally {
  long merges = 0;
  long closedByMerging = 0;
};

// Compares one picture; false stops the caller's loop.
bool sameAsPlain(const Picture &picture, float threshold, Tally &tally) {
  const plain::Trace expected = plain::trace(picture.bytes.data(), picture.width, picture.height, threshold);
  const Traced result = traced(picture, threshold);
  tally.merges += expected.merges;
  tally.closedByMerging += expected.closedByMerging;
  EXPECT_EQ(expected.paths, plainly(result.list));
  EXPECT_EQ(expected.text, result.text);
  return !testing::Test::HasFailure();
}

int sizeUpTo(unsigned most, RandomNumbers &numbers) { return static_cast<int>(1 + numbers() % most); }

TEST(PlainComparison, FiftyThousandRandomSmallImagesTraceTheSame) {
  RandomNumbers numbers(1);
  Tally tally;
  for (int round = 0; round < 50000; ++round) {
    const int width = sizeUpTo(12, numbers);
    const int height = sizeUpTo(12, numbers);
    const Picture picture = Picture::random(width, height, 15 + numbers() % 80, numbers);
    ASSERT_TRUE(sameAsPlain(picture, 0.0F, tally)) << round;
  }
  EXPECT_GT(tally.merges, 10000);
}

TEST(PlainComparison, RandomImagesOfUpToTwoHundredPixelsASideTraceTheSame) {
  RandomNumbers numbers(2);
  Tally tally;
  for (int round = 0; round < 60; ++round) {
    const int width = round == 0 ? 200 : sizeUpTo(200, numbers);
    const int height = round == 0 ? 200 : sizeUpTo(200, numbers);
    const Picture picture = Picture::random(width, height, 20 + numbers() % 75, numbers);
    ASSERT_TRUE(sameAsPlain(picture, 0.0F, tally)) << round;
  }
}

TEST(PlainComparison, EverySmallestImageTracesTheSame) {
  Tally tally;
  for (int bits = 0; bits < 1 << 12; ++bits) {
    Picture picture(4, 3);
    for (int pixel = 0; pixel < 12; ++pixel) {
      if (bits >> pixel & 1) picture.alpha(pixel % 4, pixel / 4) = 255;
    }
    ASSERT_TRUE(sameAsPlain(picture, 0.0F, tally)) << bits;
  }
}

TEST(PlainComparison, SoftEdgesTraceTheSameAtEveryThreshold) {
  RandomNumbers numbers(4);
  Tally tally;
  for (int round = 0; round < 2000; ++round) {
    Picture picture(sizeUpTo(24, numbers), sizeUpTo(24, numbers));
    for (std::uint8_t &byte : picture.bytes) byte = static_cast<std::uint8_t>(numbers());
    const float threshold = static_cast<float>(numbers() % 256) / 255.0F;
    ASSERT_TRUE(sameAsPlain(picture, threshold, tally)) << round;
  }
}

// A stroke three pixels wide along a random path of a coarse grid that never meets itself: bars, hooks and
// spirals that wind back on themselves. Unlike noise, such images close subpaths by merging them.
Picture randomStroke(RandomNumbers &numbers) {
  constexpr int kStroke = 3;
  constexpr int kSteps[4][2] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};
  const int cells = 4 + static_cast<int>(numbers() % 8);
  const int pitch = kStroke + 1 + static_cast<int>(numbers() % 2);
  Picture picture(cells * pitch, cells * pitch);
  std::vector<bool> used(static_cast<std::size_t>(cells * cells), false);
  int x = static_cast<int>(numbers() % static_cast<unsigned>(cells));
  int y = static_cast<int>(numbers() % static_cast<unsigned>(cells));
  unsigned heading = numbers() % 4;
  const unsigned habit = numbers() % 4;
  used[static_cast<std::size_t>(y * cells + x)] = true;
  for (int steps = cells * cells; steps > 0; --steps) {
    const unsigned turn = numbers() % 6;
    const unsigned to = (turn < 2    ? heading
                         : turn == 2 ? heading + 1
                         : turn == 3 ? heading + 3
                                     : heading + habit) %
                        4;
    const int nextX = x + kSteps[to][0];
    const int nextY = y + kSteps[to][1];
    if (nextX < 0 || nextY < 0 || nextX >= cells || nextY >= cells) continue;
    if (used[static_cast<std::size_t>(nextY * cells + nextX)]) continue;
    picture.fill(std::min(x, nextX) * pitch, std::min(y, nextY) * pitch, std::max(x, nextX) * pitch + kStroke,
                 std::max(y, nextY) * pitch + kStroke);
    used[static_cast<std::size_t>(nextY * cells + nextX)] = true;
    x = nextX;
    y = nextY;
    heading = to;
  }
  return picture;
}

TEST(PlainComparison, StrokesThatWindBackOnThemselvesTraceTheSame) {
  RandomNumbers numbers(6);
  Tally tally;
  for (int round = 0; round < 5000; ++round)
    ASSERT_TRUE(sameAsPlain(randomStroke(numbers), 0.0F, tally)) << round;
  EXPECT_GT(tally.closedByMerging, 50);
}

// A spiral inwards against the clock, and its mirror image.
TEST(PlainComparison, LongSpiralsTraceTheSame) {
  for (const bool mirrored : {false, true}) {
    constexpr int kSide = 101;
    Picture picture(kSide, kSide);
    const auto dot = [&](int x, int y) { picture.alpha(mirrored ? kSide - 1 - x : x, y) = 255; };
    for (int ring = 0; ring < kSide / 4; ++ring) {
      const int low = 2 * ring;
      const int high = kSide - 1 - 2 * ring;
      for (int at = low; at <= high; ++at) {
        dot(low, at);
        dot(at, high);
        dot(high, at);
        if (at >= low + 2) dot(at, low);
      }
      if (low + 2 < kSide) dot(low + 1, low + 2);
      picture.alpha(mirrored ? kSide - 1 - low : low, low) = 255;
    }
    Tally tally;
    ASSERT_TRUE(sameAsPlain(picture, 0.0F, tally));
  }
}

}  // namespace
}  // namespace drav::path
