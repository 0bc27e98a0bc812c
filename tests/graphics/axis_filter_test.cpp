#include "graphics/axis_filter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

#include "graphics/resample_plain.h"

namespace cg {
namespace {

constexpr FilterShape kShapes[] = {FilterShape::triangle, FilterShape::lanczos3};
constexpr double kScales[] = {0.013, 0.1, 1.0 / 3, 0.5, 0.77, 1, 1.5, 2, 7.3, -0.5, -1, -2.2};

AxisFilter filterOver(FilterShape shape, double scale, size_t length) {
  const double extent = std::fabs(scale) * static_cast<double>(length);
  return makeAxisFilter(shape, {scale, scale < 0 ? extent : 0.0}, length, 0,
                        static_cast<size_t>(std::ceil(extent)));
}

std::vector<float> weightsOf(const AxisFilter &filter, size_t output) {
  const auto begin = filter.weights.begin() + static_cast<std::ptrdiff_t>(output * filter.taps);
  return {begin, begin + static_cast<std::ptrdiff_t>(filter.taps)};
}

TEST(AxisFilter, EveryTapLiesWithinTheSource) {
  for (FilterShape shape : kShapes) {
    for (double scale : kScales) {
      for (size_t length : {1u, 2u, 3u, 7u, 100u}) {
        const AxisFilter filter = filterOver(shape, scale, length);
        ASSERT_LE(filter.taps, length);
        ASSERT_LE(filter.endSample(), length);
      }
    }
  }
}

TEST(AxisFilter, WeightsOfAnOutputHaveTheSumOne) {
  for (FilterShape shape : kShapes) {
    for (double scale : kScales) {
      const AxisFilter filter = filterOver(shape, scale, 100);
      for (size_t i = 0; i < filter.outputs; ++i) {
        const auto weights = weightsOf(filter, i);
        EXPECT_NEAR(std::accumulate(weights.begin(), weights.end(), 0.0), 1, 1e-5);
      }
    }
  }
}

TEST(AxisFilter, HalvingTakesFourSamples) {
  const AxisFilter filter = filterOver(FilterShape::triangle, 0.5, 100);
  EXPECT_EQ(filter.taps, 4u);
  EXPECT_EQ(filter.first[10], 19u);
  EXPECT_EQ(weightsOf(filter, 10), (std::vector<float>{0.125f, 0.375f, 0.375f, 0.125f}));
}

TEST(AxisFilter, ReducingToAThirdTakesFiveSamples) {
  EXPECT_EQ(filterOver(FilterShape::triangle, 1.0 / 3, 99).taps, 5u);
}

TEST(AxisFilter, DoublingMixesTwoNeighbours) {
  const AxisFilter filter = filterOver(FilterShape::triangle, 2, 100);
  EXPECT_EQ(filter.taps, 2u);
  EXPECT_EQ(filter.first[10], 4u);
  EXPECT_EQ(weightsOf(filter, 10), (std::vector<float>{0.25f, 0.75f}));
  EXPECT_EQ(filter.first[11], 5u);
  EXPECT_EQ(weightsOf(filter, 11), (std::vector<float>{0.75f, 0.25f}));
}

TEST(AxisFilter, AtTheSameSizeOneSampleIsAll) {
  const AxisFilter filter = filterOver(FilterShape::triangle, 1, 10);
  EXPECT_EQ(filter.taps, 1u);
  EXPECT_EQ(filter.first[7], 7u);
  EXPECT_EQ(filter.weights[7], 1.0f);
}

TEST(AxisFilter, TheEdgeSampleRepeats) {
  const AxisFilter filter = filterOver(FilterShape::triangle, 2, 100);
  EXPECT_EQ(weightsOf(filter, 0), (std::vector<float>{1, 0}));
  EXPECT_EQ(weightsOf(filter, 199), (std::vector<float>{0, 1}));
}

TEST(AxisFilter, ReducingSkipsNoSample) {
  for (double scale : {0.5, 0.3, 0.07, 0.013}) {
    const AxisFilter filter = filterOver(FilterShape::triangle, scale, 1000);
    std::vector<double> taken(1000);
    for (size_t i = 0; i < filter.outputs; ++i)
      for (size_t tap = 0; tap < filter.taps; ++tap)
        taken[filter.first[i] + tap] += static_cast<double>(filter.weights[i * filter.taps + tap]);
    for (double weight : taken) EXPECT_GT(weight, scale / 2);
  }
}

TEST(AxisFilter, AScaleNextToNothingStaysWithinBounds) {
  const AxisFilter filter = makeAxisFilter(FilterShape::triangle, {1e-30, 0.5}, 50, 0, 2);
  EXPECT_LE(filter.endSample(), 50u);
}

TEST(AxisFilter, FarOffsetsStayWithinBounds) {
  for (double offset : {1e18, -1e18, 1e300, -1e300}) {
    const AxisFilter filter = makeAxisFilter(FilterShape::lanczos3, {1e5, offset}, 50, 0, 3);
    EXPECT_LE(filter.endSample(), 50u);
  }
}

TEST(PairWeights, HaveExactlyTheSumOne) {
  for (FilterShape shape : kShapes) {
    for (double scale : kScales) {
      const AxisFilter filter = filterOver(shape, scale, 100);
      const PairWeights pairs = makePairWeights(filter);
      for (size_t i = 0; i < filter.outputs; ++i) {
        int sum = 0;
        for (size_t tap = 0; tap < 2 * pairs.pairs; ++tap) {
          const int32_t weight = weightOf(&pairs.words[i * pairs.pairs], tap);
          sum += weight;
          if (shape == FilterShape::triangle) {
            EXPECT_GE(weight, 0);
          }
        }
        EXPECT_EQ(sum, kWeightOne);
      }
    }
  }
}

TEST(PairWeights, StayWithinOneStepOfTheWeights) {
  const AxisFilter filter = filterOver(FilterShape::lanczos3, 0.77, 100);
  const PairWeights pairs = makePairWeights(filter);
  for (size_t i = 0; i < filter.outputs; ++i)
    for (size_t tap = 0; tap < filter.taps; ++tap)
      EXPECT_NEAR(weightOf(&pairs.words[i * pairs.pairs], tap),
                  filter.weights[i * filter.taps + tap] * kWeightOne, 1.01);
}

}  // namespace
}  // namespace cg
