#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "colormatch/lists.h"
#include "colormatch/plain_match.h"
#include "failing_allocator.h"

namespace {

using test::Entry;
using test::Floats;
using test::kAlways;
using test::kNever;
using test::List;
using test::listOf;
using test::match;
using test::newList;
using testing_support::FailingAllocator;
using testing_support::forEachFailedAllocation;

constexpr CFIndex kTailBytes = 32;
const Floats kBlack{0, 0, 0, 0}, kNothing{};

Entry always(const Floats &replacement, uint32_t options = 0) { return {options, {4, kAlways}, replacement}; }
Entry never(const Floats &replacement) { return {0, {4, kNever}, replacement}; }
DRAVCFColorMatchComponent near(float target) { return {AbsolutelyIfWithinRange, target, 0.001F}; }
Floats asRGB(Floats hsv) {
  DRAVConvertHSVToRGB(hsv.data());
  return hsv;
}

TEST(FindMatch, WithoutEntriesFindsNothing) {
  EXPECT_EQ(match(newList(0, 4), kBlack), kNothing);
  EXPECT_EQ(match(newList(AllEntriesMustMatch, 4), kBlack), kNothing);
}
TEST(FindMatch, AnEntryThatAlwaysMatchesGivesItsReplacement) {
  EXPECT_EQ(match(listOf(0, 4, {always({0.1F, 0.2F, 0.3F, 0.4F})}), kBlack),
            (Floats{0.1F, 0.2F, 0.3F, 0.4F}));
}
TEST(FindMatch, TwoMatchesGiveTheirMean) {
  EXPECT_EQ(match(listOf(0, 4, {always({1, 0, 0.5F, 1}), always({0, 0, 1, 0.5F})}), kBlack),
            (Floats{0.5F, 0, 0.75F, 0.75F}));
}
TEST(FindMatch, AnEntryThatDoesNotMatchChangesNothing) {
  const Entry a = always({1, 0, 0.5F, 1}), b = never({9, 9, 9, 9}), c = always({0, 0, 1, 0.5F});
  for (const std::vector<Entry> &entries :
       {std::vector{a, b, c}, std::vector{b, a, c}, std::vector{a, c, b}}) {
    EXPECT_EQ(match(listOf(0, 4, entries), kBlack), (Floats{0.5F, 0, 0.75F, 0.75F}));
    EXPECT_EQ(match(listOf(0xFFFFFFFE, 4, entries), kBlack), (Floats{0.5F, 0, 0.75F, 0.75F}));
  }
}
TEST(FindMatch, WhenAllEntriesMustMatchOneMissIsNoMatch) {
  const Entry a = always({1, 0, 0.5F, 1}), b = never({9, 9, 9, 9}), c = always({0, 0, 1, 0.5F});
  for (const std::vector<Entry> &entries :
       {std::vector{a, b, c}, std::vector{b, a, c}, std::vector{a, c, b}}) {
    EXPECT_EQ(match(listOf(AllEntriesMustMatch, 4, entries), kBlack), kNothing);
  }
  EXPECT_EQ(match(listOf(AllEntriesMustMatch, 4, {a, c}), kBlack), (Floats{0.5F, 0, 0.75F, 0.75F}));
}
TEST(FindMatch, NoMatchingEntryIsNoMatch) {
  EXPECT_EQ(match(listOf(0, 4, {never({1, 1, 1, 1}), never({2, 2, 2, 2})}), kBlack), kNothing);
}

TEST(FindMatch, ReadsTheColourAtEachComponent) {
  const List list = listOf(
      0, 4, {{AllComponentsMustMatch, {near(0.1F), near(0.2F), near(0.3F), near(0.4F)}, {1, 1, 1, 1}}});
  EXPECT_EQ(match(list, {0.1F, 0.2F, 0.3F, 0.4F}), (Floats{1, 1, 1, 1}));
  EXPECT_EQ(match(list, {0.2F, 0.2F, 0.3F, 0.4F}), kNothing);
  EXPECT_EQ(match(list, {0.1F, 0.2F, 0.3F, 0.5F}), kNothing);
}
TEST(FindMatch, SumsInTheOrderOfTheEntriesInSinglePrecision) {
  const float big = 16777216.0F;
  EXPECT_EQ(match(listOf(0, 1, {always({big}), always({1}), always({1})}), {0}), (Floats{big / 3.0F}));
  EXPECT_EQ(match(listOf(0, 1, {always({1}), always({1}), always({big})}), {0}),
            (Floats{(big + 2.0F) / 3.0F}));
}
TEST(FindMatch, NeitherClampsNorRounds) {
  EXPECT_EQ(match(listOf(0, 3, {always({-5, 1e30F, 0.3F}, IgnoringAlpha)}), {0, 0, 0}),
            (Floats{-5, 1e30F, 0.3F}));
}
TEST(FindMatch, TheMeanOfMinusZeroIsZero) {
  const Floats result = match(listOf(0, 1, {always({-0.0F})}), {0});
  ASSERT_EQ(result.size(), 1U);
  EXPECT_FALSE(std::signbit(result[0]));
}

TEST(FindMatch, ComponentsThatDoNotMatchKeepTheValuesOfEarlierEntries) {
  const Entry first = always({0.25F, 0.5F, 0.75F, 1});
  const Entry second{0, {kNever, kAlways, kNever, kNever}, {9, 1, 9, 9}};
  EXPECT_EQ(match(listOf(0, 4, {first, second}), kBlack), (Floats{0.25F, 0.75F, 0.75F, 1}));
}
TEST(FindMatch, ComponentsThatNoEntryHasSetAreZero) {
  EXPECT_EQ(match(listOf(0, 4, {{0, {kNever, kAlways, kNever, kNever}, {9, 1, 9, 9}}}), kBlack),
            (Floats{0, 1, 0, 0}));
}
TEST(FindMatch, AnEntryThatFailsHalfwayStillLeavesItsValuesForTheNext) {
  const Entry failing{AllComponentsMustMatch, {kAlways, kAlways, kNever, kAlways}, {0.1F, 0.2F, 0.3F, 0.4F}};
  const Entry last{0, {kNever, kNever, kNever, kAlways}, {9, 9, 9, 1}};
  EXPECT_EQ(match(listOf(0, 4, {failing, last}), kBlack), (Floats{0.1F, 0.2F, 0, 1}));
}

TEST(FindMatchInHSB, TestsHueSaturationAndBrightness) {
  const Floats color{0.5F, 0.25F, 0.25F, 0.125F};  // hue 0, saturation 0.25, brightness 0.5
  const Entry entry{AllComponentsMustMatch | ConvertToHSB,
                    {near(0), near(0.25F), near(0.5F), near(0.125F)},
                    {0.5F, 1, 1, 0.75F}};
  EXPECT_EQ(match(listOf(0, 4, {entry}), color), asRGB({0.5F, 1, 1, 0.75F}));
}
TEST(FindMatchInHSB, IgnoringIntensitiesTestsTheHueAloneAndConvertsTheWholeReplacement) {
  const List list = listOf(0, 4, {{IgnoringIntensities | ConvertToHSB, {near(120)}, {0.5F, 1, 1, 0.25F}}});
  EXPECT_EQ(match(list, {0, 1, 0, 1}), asRGB({0.5F, 1, 1, 0.25F}));
  EXPECT_EQ(match(list, {0.25F, 0.5F, 0.25F, 0}), asRGB({0.5F, 1, 1, 0.25F}));
  EXPECT_EQ(match(list, {1, 0, 0, 1}), kNothing);
}
TEST(FindMatchInHSB, LaterEntriesTestHSBWhetherTheyWantItOrNot) {
  const Entry converting{IgnoringIntensities | ConvertToHSB, {kNever}, {0, 0, 0, 0}};
  const Entry hue{IgnoringIntensities, {near(120)}, {1, 2, 3, 4}};
  EXPECT_EQ(match(listOf(0, 4, {converting, hue}), {0, 1, 0, 1}), (Floats{1, 2, 3, 4}));
  EXPECT_EQ(match(listOf(0, 4, {hue, converting}), {0, 1, 0, 1}), kNothing);
}
TEST(FindMatchInHSB, OnlyEntriesThatWantItHaveTheirReplacementConverted) {
  const Entry inHSB = always({0.5F, 1, 1, 1}, ConvertToHSB), plainEntry = always({0.5F, 1, 1, 1});
  const Floats converted = asRGB({0.5F, 1, 1, 1});
  EXPECT_EQ(match(listOf(0, 4, {inHSB, plainEntry}), kBlack),
            (Floats{(converted[0] + 0.5F) / 2, (converted[1] + 1) / 2, (converted[2] + 1) / 2, 1}));
}
TEST(FindMatchInHSB, ConvertsOnceForAllEntries) {
  const Entry hue{IgnoringIntensities | ConvertToHSB, {near(120)}, {0, 0, 0, 1}};
  EXPECT_EQ(match(listOf(AllEntriesMustMatch, 4, {hue, hue, hue}), {0, 1, 0, 1}), (Floats{0, 0, 0, 1}));
}
TEST(FindMatchInHSB, TheAlphaIsTheCallersWhicheverEntryComesFirst) {
  const Entry hueOnly{IgnoringIntensities | ConvertToHSB, {kNever}, {0, 0, 0, 0}};
  const Entry withoutAlpha{IgnoringAlpha | ConvertToHSB, {3, kNever}, {0, 0, 0, 0}};
  const Entry alpha{0, {kNever, kNever, kNever, near(0.375F)}, {0, 0, 0, 1}};
  const Entry alphaInHSB{ConvertToHSB, {kNever, kNever, kNever, near(0.375F)}, {0, 0, 0, 1}};
  for (const Entry &first : {hueOnly, withoutAlpha}) {
    for (const Entry &second : {alpha, alphaInHSB}) {
      EXPECT_EQ(match(listOf(0, 4, {first, second}), {1, 0, 0, 0.375F}), (Floats{0, 0, 0, 1}));
      EXPECT_EQ(match(listOf(0, 4, {first, second}), {1, 0, 0, 0.5F}), kNothing);
    }
  }
}
TEST(FindMatchInHSB, WithFewerThanThreeComponentsTheMissingAreZero) {
  const List list =
      listOf(0, 1, {{AllComponentsMustMatch | ConvertToHSB, {near(0), near(1), near(1), near(0)}, {0.5F}}});
  EXPECT_EQ(match(list, {1}), (Floats{0.5F}));
}

TEST(FindMatchWithOddLists, MoreThanFourComponentsNeverMatch) {
  for (const uint32_t componentCount : {5U, 6U}) {
    FailingAllocator allocator;
    const List list = listOf(0, componentCount, {always(Floats(componentCount, 1))}, allocator.get());
    const long requests = allocator.requests();
    EXPECT_EQ(match(list, Floats(componentCount, 0)), kNothing);
    EXPECT_EQ(allocator.requests(), requests);
  }
  const List most = newList(0, 0xFFFFFFFF);
  float color[4] = {};
  EXPECT_EQ(DRAVCFColorMatchListFindMatch(most.get(), color, color), 0);
}
TEST(FindMatchWithOddLists, TestsBeyondTheComponentsReadZero) {
  for (uint32_t componentCount = 0; componentCount < 4; ++componentCount) {
    std::vector<DRAVCFColorMatchComponent> tests(4, near(0.5F));
    for (uint32_t i = componentCount; i < 4; ++i) tests[i] = near(0);
    const List list =
        listOf(0, componentCount, {{AllComponentsMustMatch, tests, Floats(componentCount, 0.25F)}});
    // The arrays are exactly as long as the list says, for the sanitizer to see.
    const Floats color(componentCount, 0.5F);
    Floats result(componentCount);
    EXPECT_EQ(DRAVCFColorMatchListFindMatch(list.get(), color.data(), result.data()), 1) << componentCount;
    EXPECT_EQ(result, Floats(componentCount, 0.25F));
  }
}
TEST(FindMatchWithOddLists, WithoutComponentsWritesNothing) {
  const List list = listOf(0, 0, {always({}), always({}, ConvertToHSB)});
  EXPECT_EQ(DRAVCFColorMatchListFindMatch(list.get(), nullptr, nullptr), 1);
}
TEST(FindMatchWithOddLists, WithoutListColourOrResultFindsNothing) {
  const List list = listOf(0, 4, {always({1, 1, 1, 1})});
  Floats color(4), result(4);
  EXPECT_EQ(DRAVCFColorMatchListFindMatch(nullptr, color.data(), result.data()), 0);
  EXPECT_EQ(DRAVCFColorMatchListFindMatch(list.get(), nullptr, result.data()), 0);
  EXPECT_EQ(DRAVCFColorMatchListFindMatch(list.get(), color.data(), nullptr), 0);
  EXPECT_EQ(result, Floats(4));
}
TEST(FindMatchWithOddLists, TheResultMayTakeThePlaceOfTheColour) {
  const List list = listOf(0, 4,
                           {{0, {near(0.5F), kAlways, kAlways, near(1)}, {0.1F, 0.2F, 0.3F, 0.4F}},
                            always({0.5F, 1, 1, 1}, ConvertToHSB)});
  const Floats expected = match(list, {0.5F, 0.25F, 0, 1});
  Floats both{0.5F, 0.25F, 0, 1};
  EXPECT_EQ(DRAVCFColorMatchListFindMatch(list.get(), both.data(), both.data()), 1);
  EXPECT_EQ(both, expected);
}

TEST(FindMatchMemory, AsksForTheFilledSlotsAndOneByteAndReturnsEverything) {
  FailingAllocator allocator;
  const std::vector<Entry> entries(12, always({1, 1, 1, 1}));
  const List list = listOf(0, 4, entries, allocator.get());
  const long blocks = allocator.liveBlocks(), requests = allocator.requests();
  EXPECT_EQ(match(list, kBlack), (Floats{1, 1, 1, 1}));
  EXPECT_EQ(allocator.requests(), requests + 1 + 12);
  EXPECT_EQ(allocator.lastSize(), 11 * 16 + 1 + kTailBytes);
  EXPECT_EQ(allocator.liveBlocks(), blocks);
}
TEST(FindMatchMemory, MakesOneHSBCopy) {
  FailingAllocator allocator;
  const std::vector<Entry> entries(3, Entry{ConvertToHSB, {4, kNever}, {1, 1, 1, 1}});
  const List list = listOf(0, 4, entries, allocator.get());
  const long blocks = allocator.liveBlocks(), requests = allocator.requests();
  EXPECT_EQ(match(list, kBlack), kNothing);
  EXPECT_EQ(allocator.requests(), requests + 2);
  EXPECT_EQ(allocator.lastSize(), 16 + kTailBytes);
  EXPECT_EQ(allocator.liveBlocks(), blocks);
}
TEST(FindMatchMemory, AnyRefusedAllocationIsNoMatchAndLeavesNothingBehind) {
  const std::vector<Entry> entries{always({1, 1, 1, 1}), always({0.5F, 1, 1, 1}, ConvertToHSB),
                                   never({1, 1, 1, 1}), always({1, 1, 1, 1})};
  const Floats whole = match(listOf(0, 4, entries), kBlack);
  constexpr long kRequests = 5;  // the empty accumulator, the HSB copy, three slots
  for (long n = 1; n <= kRequests + 1; ++n) {
    FailingAllocator allocator;
    const List list = listOf(0, 4, entries, allocator.get());
    const long blocks = allocator.liveBlocks();
    allocator.failAfter(n);
    EXPECT_EQ(match(list, kBlack), n <= kRequests ? kNothing : whole) << n;
    EXPECT_EQ(allocator.failed(), n <= kRequests) << n;
    EXPECT_EQ(allocator.liveBlocks(), blocks) << n;
    allocator.failAfter(0);
    EXPECT_EQ(match(list, kBlack), whole);
  }
}

// Numbers that meet thresholds, guards and special cases often.
class OddNumbers {
 public:
  explicit OddNumbers(uint32_t seed) : random_(seed) {}

  uint32_t below(uint32_t limit) { return static_cast<uint32_t>(random_() % limit); }
  float number() {
    static constexpr float kInfinity = std::numeric_limits<float>::infinity();
    static constexpr std::array kOften{0.0F,
                                       -0.0F,
                                       0.25F,
                                       0.5F,
                                       0.75F,
                                       1.0F,
                                       -1.0F,
                                       0.1F,
                                       0.3F,
                                       0.7F,
                                       2.0F,
                                       120.0F,
                                       -30.0F,
                                       60.0F,
                                       1e-40F,
                                       3e38F,
                                       kInfinity,
                                       -kInfinity,
                                       std::numeric_limits<float>::quiet_NaN()};
    if (below(2) == 0) return kOften[below(kOften.size())];
    return std::uniform_real_distribution<float>(-0.25F, 1.25F)(random_);
  }
  Floats numbers(size_t count) {
    Floats made(count);
    for (float &made1 : made) made1 = number();
    return made;
  }

  Entry entry(uint32_t componentCount) {
    Entry made{below(8) == 0 ? static_cast<uint32_t>(random_()) : below(16), {}, numbers(componentCount)};
    for (int i = 0; i < 4; ++i) made.tests.push_back({below(11), number(), number()});
    return made;
  }

 private:
  std::mt19937 random_;
};

TEST(FindMatch, AgreesWithThePlainModelOnAHundredThousandRandomListsAndColours) {
  OddNumbers odd(20240229);
  int matches = 0;
  for (int round = 0; round < 100000; ++round) {
    plain::MatchList model{odd.below(8) == 0 ? odd.below(256) : odd.below(2),
                           odd.below(4) == 0 ? odd.below(7) : 3 + odd.below(2),
                           {}};
    const uint32_t entryCount = odd.below(6);
    for (uint32_t i = 0; i < entryCount; ++i) model.entries.push_back(odd.entry(model.componentCount));
    const List list = listOf(model.options, model.componentCount, model.entries);
    ASSERT_TRUE(list);
    const Floats color = odd.numbers(model.componentCount);
    Floats found(model.componentCount, 77), expected(model.componentCount, 77);
    const int32_t matched = DRAVCFColorMatchListFindMatch(list.get(), color.data(), found.data());
    ASSERT_EQ(matched, plain::findMatch(model, color.data(), expected.data())) << "round " << round;
    for (size_t i = 0; i < found.size(); ++i) {
      ASSERT_TRUE(test::same(found[i], expected[i]))
          << "round " << round << ": " << found[i] << ' ' << expected[i];
    }
    matches += matched;
  }
  EXPECT_GT(matches, 20000);
  EXPECT_LT(matches, 90000);
}

}  // namespace
