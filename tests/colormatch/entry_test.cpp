#include <gtest/gtest.h>

#include "colormatch/color_match_list.h"
#include "colormatch/lists.h"
#include "failing_allocator.h"

namespace {

using namespace drav::colormatch;
using test::Entry;
using test::kAlways;
using testing_support::FailingAllocator;

uint32_t testsWithOptions(uint32_t options) {
  return FindComponentCountForEntry({options, nullptr, nullptr});
}

TEST(FindComponentCount, IsFourUnlessSomethingIsIgnored) {
  EXPECT_EQ(testsWithOptions(0), 4U);
  EXPECT_EQ(testsWithOptions(AllComponentsMustMatch | ConvertToHSB | 0xFFFFFFF0U), 4U);
}
TEST(FindComponentCount, IsThreeWithoutAlpha) {
  EXPECT_EQ(testsWithOptions(IgnoringAlpha), 3U);
  EXPECT_EQ(testsWithOptions(IgnoringAlpha | ConvertToHSB | 0xFFFFFFF0U), 3U);
}
TEST(FindComponentCount, IsOneWithoutIntensitiesWhateverElseIsIgnored) {
  EXPECT_EQ(testsWithOptions(IgnoringIntensities), 1U);
  EXPECT_EQ(testsWithOptions(IgnoringIntensities | IgnoringAlpha), 1U);
}

TEST(CopyEntry, CopiesBothArrays) {
  FailingAllocator allocator;
  const Entry source{IgnoringAlpha, {{0, 0.5F, 0.25F}, {7, -0.0F, 1}, kAlways}, {1, 2}};
  DRAVCFColorMatchEntry copy{};
  ASSERT_TRUE(CopyEntry(allocator.get(), &copy, source.record(), 2));
  EXPECT_EQ(copy.options, source.options);
  EXPECT_NE(copy.findComponents, source.tests.data());
  EXPECT_EQ(copy.findComponents[1].matchMode, 7U);
  EXPECT_TRUE(std::signbit(copy.findComponents[1].target));
  EXPECT_EQ(copy.findComponents[2].matchMode, AlwaysMatches);
  EXPECT_EQ(copy.replaceComponents[0], 1.0F);
  EXPECT_EQ(copy.replaceComponents[1], 2.0F);
  CFAllocatorDeallocate(allocator.get(), copy.findComponents);
  CFAllocatorDeallocate(allocator.get(), copy.replaceComponents);
}

TEST(CopyEntry, WithoutReplacementComponentsNeedsNoArray) {
  FailingAllocator allocator;
  const Entry source{IgnoringIntensities, {kAlways}, {}};
  DRAVCFColorMatchEntry copy{};
  ASSERT_TRUE(CopyEntry(allocator.get(), &copy, source.record(), 0));
  EXPECT_NE(copy.replaceComponents, nullptr);
  CFAllocatorDeallocate(allocator.get(), copy.findComponents);
  CFAllocatorDeallocate(allocator.get(), copy.replaceComponents);
}

TEST(CopyEntry, WhoseFirstArrayFailsHasNone) {
  FailingAllocator allocator(1);
  DRAVCFColorMatchEntry copy{};
  EXPECT_FALSE(CopyEntry(allocator.get(), &copy, Entry{0, {4, kAlways}, {1}}.record(), 1));
  EXPECT_EQ(copy.findComponents, nullptr);
  EXPECT_EQ(copy.replaceComponents, nullptr);
}

TEST(CopyEntry, WhoseSecondArrayFailsKeepsTheFirst) {
  FailingAllocator allocator(2);
  DRAVCFColorMatchEntry copy{};
  EXPECT_FALSE(CopyEntry(allocator.get(), &copy, Entry{0, {4, kAlways}, {1}}.record(), 1));
  EXPECT_EQ(allocator.liveBlocks(), 1);
  EXPECT_EQ(copy.replaceComponents, nullptr);
  CFAllocatorDeallocate(allocator.get(), copy.findComponents);
}

}  // namespace
