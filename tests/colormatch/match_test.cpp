#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

#include "colormatch/color_match_list.h"
#include "colormatch/lists.h"

namespace {

using namespace drav::colormatch;
using test::Entry;
using test::Floats;
using test::kAlways;
using test::kNever;

const float kInfinity = std::numeric_limits<float>::infinity();
const float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kUntouched = -77.25F;

float above(float x) { return std::nextafterf(x, kInfinity); }
float below(float x) { return std::nextafterf(x, -kInfinity); }

// The factor by which the replacement 1 is scaled; nothing where there is no match.
std::optional<float> factor(uint32_t mode, float target, float range, float value) {
  float destination = kUntouched;
  if (GetReplacementComponent(value, {mode, target, range}, 1.0F, 0, &destination)) return destination;
  EXPECT_EQ(destination, kUntouched);
  return std::nullopt;
}

void expectBits(std::optional<float> found, float expected) {
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(std::bit_cast<uint32_t>(*found), std::bit_cast<uint32_t>(expected)) << *found << ' ' << expected;
}

constexpr auto kNoMatch = std::nullopt;

// Targets and ranges are chosen so that the neighbours of each threshold are told apart in single precision.

TEST(ProportionallyIfWithinRangeMode, MatchesUpToTheRangeOnBothSides) {
  const auto f = [](float value) { return factor(ProportionallyIfWithinRange, 0.625F, 0.25F, value); };
  expectBits(f(0.625F), 1.0F);
  expectBits(f(0.75F), 0.5F);
  expectBits(f(0.5F), 0.5F);
  expectBits(f(0.875F), 0.0F);
  expectBits(f(0.375F), 0.0F);
  expectBits(f(below(0.875F)), 1.0F - (below(0.875F) - 0.625F) / 0.25F);
  expectBits(f(above(0.375F)), 1.0F - (0.625F - above(0.375F)) / 0.25F);
  EXPECT_EQ(f(above(0.875F)), kNoMatch);
  EXPECT_EQ(f(below(0.375F)), kNoMatch);
}
TEST(ProportionallyIfWithinRangeMode, TakesTheDifferenceInSinglePrecision) {
  // The distance is 0.25 after rounding, and a little more before.
  expectBits(factor(ProportionallyIfWithinRange, 0.5F, 0.25F, below(0.25F)), 0.0F);
}
TEST(ProportionallyIfWithinRangeMode, WithoutARangeMatchesTheTargetAloneAndWhole) {
  expectBits(factor(ProportionallyIfWithinRange, 0.5F, 0.0F, 0.5F), 1.0F);
  expectBits(factor(ProportionallyIfWithinRange, 0.5F, -0.0F, 0.5F), 1.0F);
  EXPECT_EQ(factor(ProportionallyIfWithinRange, 0.5F, 0.0F, above(0.5F)), kNoMatch);
  EXPECT_EQ(factor(ProportionallyIfWithinRange, 0.5F, 0.0F, below(0.5F)), kNoMatch);
}
TEST(ProportionallyIfWithinRangeMode, NeverMatchesWithANegativeRange) {
  EXPECT_EQ(factor(ProportionallyIfWithinRange, 0.5F, -0.25F, 0.5F), kNoMatch);
}

TEST(ProportionallyIfNotWithinRangeMode, MatchesBeyondTheRangeOnBothSides) {
  const auto f = [](float value) { return factor(ProportionallyIfNotWithinRange, 0.625F, 0.25F, value); };
  EXPECT_EQ(f(0.875F), kNoMatch);
  EXPECT_EQ(f(0.375F), kNoMatch);
  EXPECT_EQ(f(below(0.875F)), kNoMatch);
  EXPECT_EQ(f(above(0.375F)), kNoMatch);
  EXPECT_EQ(f(0.625F), kNoMatch);
  expectBits(f(above(0.875F)), (above(0.875F) - 0.875F) / 0.125F);
  expectBits(f(below(0.375F)), 1.0F - below(0.375F) / 0.375F);
  expectBits(f(1.0F), 1.0F);
  expectBits(f(0.0F), 1.0F);
  expectBits(f(0.9375F), 0.5F);
  expectBits(f(0.1875F), 0.5F);
}
TEST(ProportionallyIfNotWithinRangeMode, WithoutARangeMatchesAllOtherValuesWithTheFactorZero) {
  expectBits(factor(ProportionallyIfNotWithinRange, 0.5F, 0.0F, above(0.5F)), 0.0F);
  expectBits(factor(ProportionallyIfNotWithinRange, 0.5F, 0.0F, 0.0F), 0.0F);
  EXPECT_EQ(factor(ProportionallyIfNotWithinRange, 0.5F, 0.0F, 0.5F), kNoMatch);
}
TEST(ProportionallyIfNotWithinRangeMode, WithANegativeRangeMatchesTheTargetWithTheFactorZero) {
  expectBits(factor(ProportionallyIfNotWithinRange, 0.5F, -0.25F, 0.5F), 0.0F);
}
TEST(ProportionallyIfNotWithinRangeMode, DividesByNothingWithoutHarm) {
  expectBits(factor(ProportionallyIfNotWithinRange, 0.75F, 0.25F, 2.0F), kInfinity);
  expectBits(factor(ProportionallyIfNotWithinRange, 0.25F, 0.25F, -1.0F), kInfinity);
}

TEST(AbsolutelyIfWithinRangeMode, MatchesUpToTheRangeOnBothSides) {
  const auto f = [](float value) { return factor(AbsolutelyIfWithinRange, 0.625F, 0.25F, value); };
  expectBits(f(0.625F), 1.0F);
  expectBits(f(0.875F), 1.0F);
  expectBits(f(0.375F), 1.0F);
  expectBits(f(below(0.875F)), 1.0F);
  expectBits(f(above(0.375F)), 1.0F);
  EXPECT_EQ(f(above(0.875F)), kNoMatch);
  EXPECT_EQ(f(below(0.375F)), kNoMatch);
}

TEST(AbsolutelyIfNotWithinRangeMode, MatchesBeyondTheRangeOnBothSides) {
  const auto f = [](float value) { return factor(AbsolutelyIfNotWithinRange, 0.625F, 0.25F, value); };
  EXPECT_EQ(f(0.625F), kNoMatch);
  EXPECT_EQ(f(0.875F), kNoMatch);
  EXPECT_EQ(f(0.375F), kNoMatch);
  EXPECT_EQ(f(below(0.875F)), kNoMatch);
  EXPECT_EQ(f(above(0.375F)), kNoMatch);
  expectBits(f(above(0.875F)), 1.0F);
  expectBits(f(below(0.375F)), 1.0F);
}

TEST(ProportionallyIfGreaterThanMode, MatchesFromTargetPlusRangeOn) {
  const auto f = [](float value) { return factor(ProportionallyIfGreaterThan, 0.5F, 0.25F, value); };
  EXPECT_EQ(f(below(0.75F)), kNoMatch);
  EXPECT_EQ(f(0.0F), kNoMatch);
  expectBits(f(0.75F), 0.0F);
  expectBits(f(above(0.75F)), (above(0.75F) - 0.75F) / 0.25F);
  expectBits(f(0.875F), 0.5F);
  expectBits(f(1.0F), 1.0F);
  expectBits(f(1.25F), 2.0F);
}
TEST(ProportionallyIfGreaterThanMode, NeverMatchesWhereTargetAndRangeMakeOne) {
  EXPECT_EQ(factor(ProportionallyIfGreaterThan, 0.75F, 0.25F, 2.0F), kNoMatch);
  EXPECT_EQ(factor(ProportionallyIfGreaterThan, 1.0F, 0.0F, 1.0F), kNoMatch);
  expectBits(factor(ProportionallyIfGreaterThan, below(0.75F), 0.25F, below(0.75F) + 0.25F), 0.0F);
}
// 0.9 + 0.1 is 1 in single precision, though the two floats do not add up to 1 exactly.
TEST(ProportionallyIfGreaterThanMode, AddsTargetAndRangeInSinglePrecision) {
  EXPECT_NE(1.0 - static_cast<double>(0.9F) - static_cast<double>(0.1F), 0.0);
  EXPECT_EQ(factor(ProportionallyIfGreaterThan, 0.9F, 0.1F, 5.0F), kNoMatch);
}
TEST(ProportionallyIfGreaterThanMode, DividesInDoublePrecision) {
  const float t = 0.1F, r = 0.7F, v = 0.93F;
  const auto expected = static_cast<float>(static_cast<double>((v - t) - r) /
                                           (1.0 - static_cast<double>(t) - static_cast<double>(r)));
  EXPECT_NE(expected, ((v - t) - r) / (1.0F - t - r)) << "values that do not tell the precisions apart";
  expectBits(factor(ProportionallyIfGreaterThan, t, r, v), expected);
  expectBits(factor(ProportionallyIfNotWithinRange, t, r, v), expected);
}

TEST(ProportionallyIfLessThanMode, MatchesUpToTargetPlusRange) {
  const auto f = [](float value) { return factor(ProportionallyIfLessThan, 0.5F, 0.25F, value); };
  EXPECT_EQ(f(above(0.75F)), kNoMatch);
  EXPECT_EQ(f(1.0F), kNoMatch);
  expectBits(f(0.75F), -2.0F);
  expectBits(f(below(0.75F)), 1.0F - below(0.75F) / 0.25F);
  expectBits(f(0.5F), -1.0F);
  expectBits(f(0.25F), 0.0F);
  expectBits(f(0.125F), 0.5F);
  expectBits(f(0.0F), 1.0F);
}
TEST(ProportionallyIfLessThanMode, ALittleAboveTheTargetGivesANegativeFactor) {
  const std::optional<float> found = factor(ProportionallyIfLessThan, 0.5F, 0.1F, 0.55F);
  expectBits(found, 1.0F - 0.55F / (0.5F - 0.1F));
  EXPECT_NEAR(*found, -0.375, 1e-6);
}
TEST(ProportionallyIfLessThanMode, NeverMatchesWhereTargetAndRangeAreTheSame) {
  EXPECT_EQ(factor(ProportionallyIfLessThan, 0.25F, 0.25F, 0.0F), kNoMatch);
  expectBits(factor(ProportionallyIfLessThan, above(0.25F), 0.25F, 0.0F), 1.0F);
}

TEST(AbsolutelyIfGreaterThanMode, MatchesFromTargetPlusRangeOn) {
  const auto f = [](float value) { return factor(AbsolutelyIfGreaterThan, 0.5F, 0.25F, value); };
  EXPECT_EQ(f(below(0.75F)), kNoMatch);
  expectBits(f(0.75F), 1.0F);
  expectBits(f(above(0.75F)), 1.0F);
  EXPECT_EQ(factor(AbsolutelyIfGreaterThan, 0.75F, 0.25F, 1.0F), kNoMatch);
  EXPECT_EQ(factor(AbsolutelyIfGreaterThan, 0.9F, 0.1F, 5.0F), kNoMatch);
  expectBits(factor(AbsolutelyIfGreaterThan, below(0.75F), 0.25F, 1.0F), 1.0F);
}

TEST(AbsolutelyIfLessThanMode, MatchesUpToTargetPlusRange) {
  const auto f = [](float value) { return factor(AbsolutelyIfLessThan, 0.5F, 0.25F, value); };
  EXPECT_EQ(f(above(0.75F)), kNoMatch);
  expectBits(f(0.75F), 1.0F);
  expectBits(f(below(0.75F)), 1.0F);
  expectBits(f(0.0F), 1.0F);
  EXPECT_EQ(factor(AbsolutelyIfLessThan, 0.25F, 0.25F, 0.0F), kNoMatch);
  expectBits(factor(AbsolutelyIfLessThan, above(0.25F), 0.25F, 0.0F), 1.0F);
}

TEST(AlwaysMatchesMode, MatchesWhateverTheNumbersAre) {
  for (const float number : {0.0F, -0.0F, 0.5F, -3.0F, kInfinity, -kInfinity, kNaN}) {
    expectBits(factor(AlwaysMatches, number, 0, 0.5F), 1.0F);
    expectBits(factor(AlwaysMatches, 0, number, 0.5F), 1.0F);
    expectBits(factor(AlwaysMatches, 0, 0, number), 1.0F);
  }
}

TEST(Modes, AboveTheLastNeverMatch) {
  for (const uint32_t mode : {9U, 10U, 255U, 256U, 0x80000000U, 0xFFFFFFFFU}) {
    EXPECT_EQ(factor(mode, 0.5F, 0.5F, 0.5F), kNoMatch);
  }
}
TEST(Modes, ButTheLastNeverMatchNaN) {
  for (uint32_t mode = 0; mode < AlwaysMatches; ++mode) {
    EXPECT_EQ(factor(mode, 0.5F, 0.25F, kNaN), kNoMatch) << mode;
    EXPECT_EQ(factor(mode, kNaN, 0.25F, 0.5F), kNoMatch) << mode;
    EXPECT_EQ(factor(mode, 0.5F, kNaN, 0.5F), kNoMatch) << mode;
  }
}
TEST(Modes, TakeInfinitiesAsFarAwayNumbers) {
  expectBits(factor(AbsolutelyIfGreaterThan, 0.5F, 0.25F, kInfinity), 1.0F);
  expectBits(factor(AbsolutelyIfLessThan, 0.5F, 0.25F, -kInfinity), 1.0F);
  expectBits(factor(AbsolutelyIfNotWithinRange, 0.5F, 0.25F, -kInfinity), 1.0F);
  expectBits(factor(ProportionallyIfGreaterThan, 0.5F, 0.25F, kInfinity), kInfinity);
  EXPECT_EQ(factor(AbsolutelyIfWithinRange, kInfinity, kInfinity, kInfinity), kNoMatch);
  expectBits(factor(ProportionallyIfWithinRange, 0.5F, kInfinity, 100.0F), 1.0F);
}
TEST(Modes, TakeMinusZeroAsZero) {
  for (uint32_t mode = 0; mode <= AlwaysMatches; ++mode) {
    EXPECT_EQ(factor(mode, 0.0F, 0.0F, -0.0F).has_value(), factor(mode, -0.0F, -0.0F, 0.0F).has_value())
        << mode;
  }
  expectBits(factor(ProportionallyIfWithinRange, 0.0F, 0.0F, -0.0F), 1.0F);
}

TEST(ReplacementComponent, IsTheReplacementTimesTheFactor) {
  float destination = 0;
  ASSERT_TRUE(
      GetReplacementComponent(0.625F, {ProportionallyIfWithinRange, 0.5F, 0.25F}, -0.3F, 0xF, &destination));
  expectBits(destination, -0.3F * 0.5F);
  ASSERT_TRUE(
      GetReplacementComponent(0.75F, {ProportionallyIfWithinRange, 0.5F, 0.25F}, -0.3F, 0, &destination));
  expectBits(destination, -0.0F);
  ASSERT_TRUE(GetReplacementComponent(0, kAlways, -0.0F, 0, &destination));
  expectBits(destination, -0.0F);
}

// What an entry makes of a colour of 0.5, 0.5, 0.5, 0.5 when the work colour is 10, 20, 30, 40 before.
struct Outcome {
  bool matches;
  Floats work;
  bool operator==(const Outcome &) const = default;
};
Outcome replaced(const Entry &entry, uint32_t componentCount) {
  const float color[] = {0.5F, 0.5F, 0.5F, 0.5F};
  Floats work{10, 20, 30, 40};
  const DRAVCFColorMatchEntry record = entry.record();
  const bool matches =
      ReplaceColorForEntry(color, record, 0, FindComponentCountForEntry(record), componentCount, work.data());
  return {matches, work};
}
const Floats kBefore{10, 20, 30, 40};
const DRAVCFColorMatchComponent kHalf{ProportionallyIfWithinRange, 0.375F, 0.25F};  // factor 0.5

TEST(EntryTest, ScalesEveryTestedComponent) {
  EXPECT_EQ(replaced({0, {kHalf, kAlways, kHalf, kHalf}, {1, 2, 3, 4}}, 4),
            (Outcome{true, {0.5F, 2, 1.5F, 2}}));
}
TEST(EntryTest, OneMatchingComponentIsEnough) {
  EXPECT_EQ(replaced({0, {kNever, kNever, kAlways, kNever}, {1, 2, 3, 4}}, 4),
            (Outcome{true, {10, 20, 3, 40}}));
}
TEST(EntryTest, NoMatchingComponentIsNoMatch) {
  EXPECT_EQ(replaced({0, {4, kNever}, {1, 2, 3, 4}}, 4), (Outcome{false, kBefore}));
}
TEST(EntryTest, WithAllComponentsWantedStopsAtTheFirstMissAndKeepsWhatIsWritten) {
  EXPECT_EQ(replaced({AllComponentsMustMatch, {kAlways, kNever, kAlways, kAlways}, {1, 2, 3, 4}}, 4),
            (Outcome{false, {1, 20, 30, 40}}));
  EXPECT_EQ(replaced({AllComponentsMustMatch, {4, kAlways}, {1, 2, 3, 4}}, 4), (Outcome{true, {1, 2, 3, 4}}));
}
TEST(EntryTest, IgnoringAlphaTakesTheReplacementsAlphaWhole) {
  EXPECT_EQ(replaced({IgnoringAlpha, {kHalf, kNever, kNever}, {1, 2, 3, 4}}, 4),
            (Outcome{true, {0.5F, 20, 30, 4}}));
  EXPECT_EQ(replaced({IgnoringAlpha, {kNever, kNever, kNever}, {1, 2, 3, 4}}, 4), (Outcome{false, kBefore}));
}
TEST(EntryTest, IgnoringAlphaInAListWithoutAlphaLeavesIt) {
  EXPECT_EQ(replaced({IgnoringAlpha, {kHalf, kHalf, kHalf}, {1, 2, 3}}, 3),
            (Outcome{true, {0.5F, 1, 1.5F, 40}}));
}
TEST(EntryTest, IgnoringIntensitiesTakesTheReplacementWhole) {
  EXPECT_EQ(replaced({IgnoringIntensities, {kHalf}, {1, 2, 3, 4}}, 4), (Outcome{true, {1, 2, 3, 4}}));
  EXPECT_EQ(replaced({IgnoringIntensities | IgnoringAlpha, {kHalf}, {1, 2, 3, 4}}, 4),
            (Outcome{true, {1, 2, 3, 4}}));
  EXPECT_EQ(replaced({IgnoringIntensities, {kHalf}, {1, 2}}, 2), (Outcome{true, {1, 2, 30, 40}}));
  EXPECT_EQ(replaced({IgnoringIntensities, {kNever}, {1, 2, 3, 4}}, 4), (Outcome{false, kBefore}));
}
TEST(EntryTest, TestsBeyondTheListsComponentsTakeZeroAsTheReplacement) {
  EXPECT_EQ(replaced({0, {4, kAlways}, {1, 2}}, 2), (Outcome{true, {1, 2, 0, 0}}));
  EXPECT_EQ(replaced({0, {4, kAlways}, {}}, 0), (Outcome{true, {0, 0, 0, 0}}));
}

}  // namespace
