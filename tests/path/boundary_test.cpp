#include "path/boundary.h"

#include <gtest/gtest.h>

#include <limits>

#include "path/tracing.h"

namespace drav::path {
namespace {

// 'o' marks the boundary pixels.
std::vector<std::string> boundaryOf(const Picture &picture, float threshold = 0.0F) {
  const auto visited = picture.flags();
  MarkAllButBoundary(picture.info(threshold), visited.get());
  std::vector<std::string> rows;
  for (int row = 0; row < picture.height; ++row) {
    std::string &text = rows.emplace_back();
    for (int column = 0; column < picture.width; ++column) {
      text += visited[static_cast<std::size_t>(row * picture.width + column)] ? '.' : 'o';
    }
  }
  return rows;
}

using Rows = std::vector<std::string>;

TEST(MarkAllButBoundary, LeavesTheRimOfARegion) {
  EXPECT_EQ(Rows({"......", ".oooo.", ".o..o.", ".o..o.", ".oooo.", "......"}),
            boundaryOf(Picture::of({"......", ".XXXX.", ".XXXX.", ".XXXX.", ".XXXX.", "......"})));
}

TEST(MarkAllButBoundary, LeavesTheImageBorderOfAFullImage) {
  EXPECT_EQ(Rows({"oooo", "o..o", "oooo"}), boundaryOf(Picture::of({"XXXX", "XXXX", "XXXX"})));
}

TEST(MarkAllButBoundary, CountsADiagonalBackgroundNeighbour) {
  EXPECT_EQ(Rows({"ooo.", "o.oo", "o..o", "oooo"}),
            boundaryOf(Picture::of({"XXX.", "XXXX", "XXXX", "XXXX"})));
}

TEST(MarkAllButBoundary, EqualsTheDefinitionOnEverySizeAndDensity) {
  RandomNumbers numbers(5);
  for (int width = 1; width <= 40; ++width) {
    for (int height = 1; height <= 9; ++height) {
      Picture picture = Picture::random(width, height, 50 + numbers() % 50, numbers);
      for (std::size_t at = 0; at < picture.bytes.size(); at += 4) {
        if (picture.bytes[at] != 0) picture.bytes[at] = static_cast<std::uint8_t>(numbers() % 3 + 126);
      }
      for (const float threshold :
           {-1.0F, 0.0F, 127.0F / 255.0F, 0.5F, 1.0F, std::numeric_limits<float>::quiet_NaN()}) {
        const Rows rows = boundaryOf(picture, threshold);
        const ImageInfo info = picture.info(threshold);
        for (int index = 0; index < width * height; ++index) {
          const auto pixel = static_cast<PixelIndex>(index);
          const bool isBoundary = !IsPixelOpaque(info, pixel) && !IsPixelFloating(info, pixel);
          ASSERT_EQ(isBoundary ? 'o' : '.',
                    rows[static_cast<std::size_t>(index / width)][static_cast<std::size_t>(index % width)]);
        }
      }
    }
  }
}

TEST(MarkAllButBoundary, WritesNothingForAnImageWithoutPixels) {
  bool untouched = false;
  MarkAllButBoundary({nullptr, 0, 5, 0.0F}, &untouched);
  MarkAllButBoundary({nullptr, 5, 0, 0.0F}, &untouched);
  EXPECT_FALSE(untouched);
}

}  // namespace
}  // namespace drav::path
