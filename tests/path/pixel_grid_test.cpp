#include "path/pixel_grid.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "path/tracing.h"

namespace drav::path {
namespace {

TEST(PositionForIndex, DividesByTheWidthWithoutSign) {
  int row = 0;
  int column = 0;
  PositionForIndex({nullptr, 7, 5, 0}, 23, &row, &column);
  EXPECT_EQ(3, row);
  EXPECT_EQ(2, column);
  PositionForIndex({nullptr, 100000, 40000, 0}, 3999999999U, &row, &column);
  EXPECT_EQ(39999, row);
  EXPECT_EQ(99999, column);
}

struct Expected {
  int rows, columns;
};
constexpr Expected kTable[8] = {{0, -1}, {-1, -1}, {-1, 0}, {-1, 1}, {0, 1}, {1, 1}, {1, 0}, {1, -1}};

TEST(IsValidPixel, FollowsTheTableClockwiseFromWest) {
  const ImageInfo info{nullptr, 3, 3, 0};
  for (int identifier = 0; identifier < 32; ++identifier) {
    Pixel neighbour{};
    EXPECT_TRUE(IsValidPixel(info, PixelForIndex(info, 4), identifier, &neighbour));
    EXPECT_EQ(1 + kTable[identifier % 8].rows, neighbour.row);
    EXPECT_EQ(1 + kTable[identifier % 8].columns, neighbour.column);
    EXPECT_EQ(static_cast<PixelIndex>(3 * neighbour.row + neighbour.column), neighbour.index);
  }
}

TEST(IsValidPixel, KnowsTheBordersOfEverySmallImage) {
  for (int width = 1; width <= 3; ++width) {
    for (int height = 1; height <= 3; ++height) {
      const ImageInfo info{nullptr, width, height, 0};
      for (int index = 0; index < width * height; ++index) {
        for (int identifier = 0; identifier < 8; ++identifier) {
          const int row = index / width + kTable[identifier].rows;
          const int column = index % width + kTable[identifier].columns;
          Pixel neighbour{};
          EXPECT_EQ(row >= 0 && row < height && column >= 0 && column < width,
                    IsValidPixel(info, PixelForIndex(info, static_cast<PixelIndex>(index)), identifier,
                                 &neighbour));
        }
      }
    }
  }
}

TEST(IsValidPixel, WritesANeighbourThatDoesNotExist) {
  const ImageInfo info{nullptr, 3, 3, 0};
  Pixel neighbour{99, 99, 99};
  EXPECT_FALSE(IsValidPixel(info, PixelForIndex(info, 0), 6 + 2, &neighbour));
  EXPECT_EQ(kNoPixel, neighbour.index);
}

TEST(IsValidPixel, HasNoNeighbourForANegativeRemainderAndWritesNothing) {
  const ImageInfo info{nullptr, 3, 3, 0};
  for (int identifier = -7; identifier < 0; ++identifier) {
    Pixel neighbour{99, 98, 97};
    EXPECT_FALSE(IsValidPixel(info, PixelForIndex(info, 4), identifier, &neighbour));
    EXPECT_EQ(99U, neighbour.index);
    EXPECT_EQ(98, neighbour.row);
    EXPECT_EQ(97, neighbour.column);
  }
}

TEST(IsValidPixel, TakesANegativeMultipleOfEightForWest) {
  const ImageInfo info{nullptr, 3, 3, 0};
  Pixel neighbour{};
  EXPECT_TRUE(IsValidPixel(info, PixelForIndex(info, 4), -8, &neighbour));
  EXPECT_EQ(3U, neighbour.index);
}

TEST(IsPixelOpaque, HoldsAtAndBelowTheThreshold) {
  Picture picture(3, 1);
  picture.alpha(0, 0) = 50;
  picture.alpha(1, 0) = 51;
  picture.alpha(2, 0) = 52;
  const ImageInfo info = picture.info(51.0F / 255.0F);
  EXPECT_TRUE(IsPixelOpaque(info, 0));
  EXPECT_TRUE(IsPixelOpaque(info, 1));
  EXPECT_FALSE(IsPixelOpaque(info, 2));
}

TEST(IsPixelOpaque, DividesInSinglePrecision) {
  for (int alpha = 0; alpha < 256; ++alpha) {
    const float fraction = static_cast<float>(alpha) / 255.0F;
    const auto byte = static_cast<std::uint8_t>(alpha);
    EXPECT_TRUE(IsAlphaOpaque({nullptr, 0, 0, fraction}, byte));
    EXPECT_FALSE(IsAlphaOpaque({nullptr, 0, 0, std::nextafter(fraction, -1.0F)}, byte));
  }
}

TEST(IsPixelOpaque, NeverHoldsForAThresholdThatIsNotANumber) {
  EXPECT_FALSE(IsAlphaOpaque({nullptr, 0, 0, std::numeric_limits<float>::quiet_NaN()}, 0));
}

TEST(IsPixelFloating, HoldsWhereAllEightNeighboursBelongToTheRegion) {
  EXPECT_TRUE(IsPixelFloating(Picture::of({"XXX", "XXX", "XXX"}).info(), 4));
}

TEST(IsPixelFloating, DoesNotTestThePixelItself) {
  EXPECT_TRUE(IsPixelFloating(Picture::of({"XXX", "X.X", "XXX"}).info(), 4));
}

TEST(IsPixelFloating, FailsForEachSingleNeighbourThatIsBackground) {
  for (int hole = 0; hole < 9; ++hole) {
    Picture picture = Picture::of({"XXX", "XXX", "XXX"});
    if (hole == 4) continue;
    picture.alpha(hole % 3, hole / 3) = 0;
    EXPECT_FALSE(IsPixelFloating(picture.info(), 4)) << hole;
  }
}

TEST(IsPixelFloating, FailsOnTheImageBorder) {
  const Picture picture = Picture::of({"XXX", "XXX", "XXX"});
  for (PixelIndex index = 0; index < 9; ++index) {
    EXPECT_EQ(index == 4, IsPixelFloating(picture.info(), index));
  }
}

TEST(DirectionForIdentifier, PairsOppositeDirections) {
  const ProcessingDirection table[4] = {ProcessingDirectionHorizontal, ProcessingDirectionFalling,
                                        ProcessingDirectionVertical, ProcessingDirectionRising};
  for (int identifier = 0; identifier < 40; ++identifier) {
    EXPECT_EQ(table[identifier % 4], DirectionForIdentifier(identifier));
  }
}

TEST(DirectionForIdentifier, GivesNoneForANegativeRemainder) {
  for (int identifier = -7; identifier < 0; ++identifier) {
    EXPECT_EQ(ProcessingDirectionNone, DirectionForIdentifier(identifier));
  }
  EXPECT_EQ(ProcessingDirectionHorizontal, DirectionForIdentifier(-8));
}

}  // namespace
}  // namespace drav::path
