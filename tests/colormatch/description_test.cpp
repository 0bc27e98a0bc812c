#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "colormatch/color_match_list.h"
#include "colormatch/lists.h"
#include "failing_allocator.h"
#include "text.h"

namespace {

using namespace drav::colormatch;
using test::Entry;
using test::kAlways;
using test::List;
using test::listOf;
using test::newList;
using testing_support::FailingAllocator;
using testing_support::forEachFailedAllocation;

std::string textOf(CFMutableStringRef owned) { return test::text(cf::adopt(owned).get()); }
std::string described(const List &list) { return test::text(cf::adopt(CFCopyDescription(list.get())).get()); }

// What the list of the tests below prints as.
const char *const kExample =
    "AllEntriesMustMatch {\n"
    " IgnoringAlpha | ConvertToHSB\n"
    " { ProportionallyIfWithinRange 0.500000 0.100000\n"
    "   AbsolutelyIfWithinRange 0.250000 0.125000\n"
    "   AlwaysMatches 0.000000 0.000000 }\n"
    " => {1.000000, 0.000000, 0.000000, 1.000000}\n"
    "}";
List exampleList(CFAllocatorRef allocator = nullptr) {
  return listOf(
      AllEntriesMustMatch, 4,
      {{IgnoringAlpha | ConvertToHSB, {{0, 0.5F, 0.1F}, {2, 0.25F, 0.125F}, kAlways}, {1, 0, 0, 1}}},
      allocator);
}

TEST(ColorMatchListDescription, ShowsOptionsTestsAndReplacement) {
  EXPECT_EQ(described(exampleList()), kExample);
}

TEST(ColorMatchListDescription, OfAnEmptyListWithoutOptionsIsABlankAndBraces) {
  EXPECT_EQ(described(newList(0, 4)), " {\n}");
}

TEST(ColorMatchListDescription, OfAnEntryWithoutKnownOptionsHasALineOfOneBlank) {
  EXPECT_EQ(described(listOf(0xFFFFFFFE, 1, {{0xFFFFFFF0, {4, {9, -1.5F, 2}}, {0.25F}}})),
            " {\n"
            " \n"
            " { (null) -1.500000 2.000000\n"
            "   (null) -1.500000 2.000000\n"
            "   (null) -1.500000 2.000000\n"
            "   (null) -1.500000 2.000000 }\n"
            " => {0.250000}\n"
            "}");
}

TEST(ColorMatchListDescription, ListsEntriesInOrder) {
  EXPECT_EQ(
      described(listOf(1, 0,
                       {{IgnoringIntensities, {kAlways}, {}},
                        {IgnoringIntensities | AllComponentsMustMatch, {{1, 0, 0}}, {}}})),
      "AllEntriesMustMatch {\n"
      " IgnoringIntensities\n { AlwaysMatches 0.000000 0.000000 }\n => {}\n"
      " IgnoringIntensities | AllComponentsMustMatch\n { ProportionallyIfNotWithinRange 0.000000 0.000000 }\n"
      " => {}\n"
      "}");
}

TEST(ColorMatchListDescription, IsWhatPercentAtPrints) {
  const List list = exampleList();
  const cf::Ref string = cf::adopt(CFStringCreateWithFormat(nullptr, nullptr, CFSTR("<%@>"), list.get()));
  EXPECT_EQ(test::text(string.get()), std::string("<") + kExample + ">");
}

TEST(ColorMatchListDescription, IsANewStringOnTheListsAllocator) {
  FailingAllocator allocator;
  const List list = exampleList(allocator.get());
  const cf::Ref first = cf::adopt(DRAVCFColorMatchListCopyDebugDesc(list.get()));
  const cf::Ref second = cf::adopt(DRAVCFColorMatchListCopyFormattingDesc(list.get(), nullptr));
  EXPECT_NE(first.get(), second.get());
  EXPECT_EQ(CFGetAllocator(first.get()), allocator.get());
  EXPECT_EQ(test::text(first.get()), test::text(second.get()));
}

TEST(ColorMatchListDescription, IsWholeOrNothingWhateverAllocationFails) {
  // The parts come from the thread's default allocator.
  forEachFailedAllocation([](CFAllocatorRef allocator, long) {
    const List list = exampleList(kCFAllocatorSystemDefault);
    CFAllocatorSetDefault(allocator);
    const cf::Ref description = cf::adopt(DRAVCFColorMatchListCopyDebugDesc(list.get()));
    CFAllocatorSetDefault(nullptr);
    if (description) {
      EXPECT_EQ(test::text(description.get()), kExample);
    }
  });
  // The whole comes from the list's.
  bool failed = true;
  for (long n = 1; failed; ++n) {
    FailingAllocator allocator;
    const List list = exampleList(allocator.get());
    allocator.failAfter(n);
    const cf::Ref description = cf::adopt(DRAVCFColorMatchListCopyDebugDesc(list.get()));
    if (description) {
      EXPECT_EQ(test::text(description.get()), kExample);
    }
    failed = allocator.failed();
  }
}

TEST(ListOptionsString, NamesTheOnlyBit) {
  EXPECT_EQ(textOf(CopyListOptionsString(*newList(0, 4))), "");
  EXPECT_EQ(textOf(CopyListOptionsString(*newList(1, 4))), "AllEntriesMustMatch");
  EXPECT_EQ(textOf(CopyListOptionsString(*newList(0xFFFFFFFF, 4))), "AllEntriesMustMatch");
  EXPECT_EQ(textOf(CopyListOptionsString(*newList(0xFFFFFFFE, 4))), "");
}

TEST(OptionsString, NamesEveryCombinationOfBitsInOrder) {
  const char *const expected[] = {
      "",
      "IgnoringAlpha",
      "IgnoringIntensities",
      "IgnoringAlpha | IgnoringIntensities",
      "AllComponentsMustMatch",
      "IgnoringAlpha | AllComponentsMustMatch",
      "IgnoringIntensities | AllComponentsMustMatch",
      "IgnoringAlpha | IgnoringIntensities | AllComponentsMustMatch",
      "ConvertToHSB",
      "IgnoringAlpha | ConvertToHSB",
      "IgnoringIntensities | ConvertToHSB",
      "IgnoringAlpha | IgnoringIntensities | ConvertToHSB",
      "AllComponentsMustMatch | ConvertToHSB",
      "IgnoringAlpha | AllComponentsMustMatch | ConvertToHSB",
      "IgnoringIntensities | AllComponentsMustMatch | ConvertToHSB",
      "IgnoringAlpha | IgnoringIntensities | AllComponentsMustMatch | ConvertToHSB",
  };
  for (uint32_t options = 0; options < 16; ++options) {
    EXPECT_EQ(textOf(CopyOptionsString(options)), expected[options]);
    EXPECT_EQ(textOf(CopyOptionsString(options | 0xABCDEF10)), expected[options]);
  }
}

TEST(FindComponentsString, NamesEveryMode) {
  const char *const expected[] = {"ProportionallyIfWithinRange",
                                  "ProportionallyIfNotWithinRange",
                                  "AbsolutelyIfWithinRange",
                                  "AbsolutelyIfNotWithinRange",
                                  "ProportionallyIfGreaterThan",
                                  "ProportionallyIfLessThan",
                                  "AbsolutelyIfGreaterThan",
                                  "AbsolutelyIfLessThan",
                                  "AlwaysMatches",
                                  "(null)",
                                  "(null)"};
  for (uint32_t mode = 0; mode < std::size(expected); ++mode) {
    const DRAVCFColorMatchComponent test{mode, 1, -2};
    EXPECT_EQ(textOf(CopyFindComponentsString(&test, 1)),
              std::string(expected[mode]) + " 1.000000 -2.000000");
  }
  const DRAVCFColorMatchComponent last{0xFFFFFFFF, 0, 0};
  EXPECT_EQ(textOf(CopyFindComponentsString(&last, 1)), "(null) 0.000000 0.000000");
}

TEST(FindComponentsString, OfNoTestsIsEmpty) { EXPECT_EQ(textOf(CopyFindComponentsString(nullptr, 0)), ""); }

TEST(FindComponentsString, WidensNumbersBeforePrintingThem) {
  const DRAVCFColorMatchComponent test{8, 16777217.0F, 0.1F};
  EXPECT_EQ(textOf(CopyFindComponentsString(&test, 1)), "AlwaysMatches 16777216.000000 0.100000");
}

TEST(FindComponentsString, PrintsWhatIsNoNumberAsPrintfDoes) {
  const float inf = std::numeric_limits<float>::infinity(), nan = std::numeric_limits<float>::quiet_NaN();
  const DRAVCFColorMatchComponent tests[] = {{8, inf, -inf}, {8, nan, -0.0F}};
  EXPECT_EQ(textOf(CopyFindComponentsString(tests, 2)),
            "AlwaysMatches inf -inf\n   AlwaysMatches nan -0.000000");
}

TEST(ReplaceComponentsString, SeparatesValuesByCommas) {
  const float values[] = {1, -0.5F, 360, 0};
  EXPECT_EQ(textOf(CopyReplaceComponentsString(values, 0)), "");
  EXPECT_EQ(textOf(CopyReplaceComponentsString(values, 1)), "1.000000");
  EXPECT_EQ(textOf(CopyReplaceComponentsString(values, 4)), "1.000000, -0.500000, 360.000000, 0.000000");
}

}  // namespace
