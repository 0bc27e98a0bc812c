#include <gtest/gtest.h>

#include <numeric>
#include <vector>

#include "colormatch/color_match_list.h"
#include "colormatch/lists.h"
#include "failing_allocator.h"

namespace {

using test::add;
using test::Entry;
using test::Floats;
using test::kAlways;
using test::List;
using test::listOf;
using test::newList;
using testing_support::FailingAllocator;
using testing_support::forEachFailedAllocation;

const Entry kRed{IgnoringAlpha, {3, kAlways}, {1, 0, 0, 1}};
constexpr CFIndex kTailBytes = 32;

TEST(ColorMatchListCreate, StoresWhatItIsGivenAndHasNoEntries) {
  for (const uint32_t componentCount : {0U, 1U, 3U, 4U, 5U, 6U, 0xFFFFFFFFU}) {
    const List list = newList(0xDEADBEEF, componentCount);
    ASSERT_TRUE(list);
    EXPECT_EQ(list->options, 0xDEADBEEFU);
    EXPECT_EQ(list->componentCount, componentCount);
    EXPECT_EQ(list->entryCount, 0U);
  }
}

TEST(ColorMatchListCreate, AsksForAnEmptyArrayOfEntries) {
  FailingAllocator allocator;
  const List list = newList(0, 4, allocator.get());
  EXPECT_EQ(allocator.requests(), 2);
  EXPECT_EQ(allocator.lastSize(), kTailBytes);
  EXPECT_NE(list->entries, nullptr);
}

TEST(ColorMatchListCreate, FailsWhenItsEmptyArrayIsRefused) {
  FailingAllocator allocator(2);
  EXPECT_EQ(newList(0, 4, allocator.get()).get(), nullptr);
  EXPECT_EQ(allocator.liveBlocks(), 0);
}

TEST(ColorMatchListCreate, FailsOnAnAllocatorThatGivesNothing) {
  EXPECT_EQ(newList(0, 4, kCFAllocatorNull).get(), nullptr);
}

TEST(ColorMatchListCreate, SurvivesEveryFailedAllocation) {
  forEachFailedAllocation([](CFAllocatorRef allocator, long n) {
    const List list = newList(0, 4, allocator);
    EXPECT_EQ(static_cast<bool>(list), n > 2);
  });
}

TEST(ColorMatchListAddEntry, KeepsCopiesOfTheCallersArrays) {
  const List list = newList(0, 4);
  {
    Entry entry = kRed;
    ASSERT_EQ(add(list, entry), 1);
    entry.tests.assign(3, test::kNever);
    entry.replacement.assign(4, 0.5F);
  }
  EXPECT_EQ(test::match(list, {0, 0, 0, 0}), (Floats{1, 0, 0, 1}));
}

TEST(ColorMatchListAddEntry, GrowsByTheFilledEntriesAndOneByte) {
  FailingAllocator allocator;
  const List list = newList(0, 0, allocator.get());
  for (CFIndex filled = 0; filled < 20; ++filled) {
    allocator.failAfter(2);  // the array of entries grows, the first array of the entry fails
    EXPECT_EQ(add(list, kRed), 0);
    allocator.failAfter(1);
    EXPECT_EQ(add(list, kRed), 0);
    EXPECT_EQ(allocator.lastSize(), filled * CFIndex{sizeof(DRAVCFColorMatchEntry)} + 1 + kTailBytes);
    allocator.failAfter(0);
    ASSERT_EQ(add(list, kRed), 1);
  }
  EXPECT_EQ(list->entryCount, 20U);
}

TEST(ColorMatchListAddEntry, KeepsManyEntriesInOrder) {
  FailingAllocator allocator;
  const List list = newList(0, 1, allocator.get());
  for (int i = 0; i < 1000; ++i)
    ASSERT_EQ(add(list, {IgnoringIntensities, {kAlways}, {static_cast<float>(i)}}), 1);
  for (uint32_t i = 0; i < 1000; ++i) ASSERT_EQ(list->entries[i].replaceComponents[0], static_cast<float>(i));
  EXPECT_EQ(test::match(list, {0}), (Floats{499.5F}));
}

TEST(ColorMatchListAddEntry, WhoseArrayCannotGrowLeavesTheListAsItWas) {
  FailingAllocator allocator;
  const List list = listOf(0, 4, {kRed}, allocator.get());
  const DRAVCFColorMatchEntry *entries = list->entries;
  allocator.failAfter(1);
  EXPECT_EQ(add(list, kRed), 0);
  EXPECT_EQ(list->entryCount, 1U);
  EXPECT_EQ(list->entries, entries);
}

TEST(ColorMatchListAddEntry, WhoseTestsCannotBeCopiedKeepsTheGrownArrayAndTheCount) {
  FailingAllocator allocator;
  const List list = listOf(0, 4, {kRed}, allocator.get());
  const long blocks = allocator.liveBlocks();
  allocator.failAfter(2);
  EXPECT_EQ(add(list, kRed), 0);
  EXPECT_EQ(list->entryCount, 1U);
  EXPECT_EQ(allocator.liveBlocks(), blocks);
  allocator.failAfter(0);
  EXPECT_EQ(add(list, kRed), 1);
  EXPECT_EQ(test::match(list, {0, 0, 0, 0}), (Floats{1, 0, 0, 1}));
}

TEST(ColorMatchListAddEntry, WhoseReplacementCannotBeCopiedLeavesTheCopiedTestsBehind) {
  FailingAllocator allocator;
  const List list = listOf(0, 4, {kRed}, allocator.get());
  const long blocks = allocator.liveBlocks();
  allocator.failAfter(3);
  EXPECT_EQ(add(list, kRed), 0);
  EXPECT_EQ(list->entryCount, 1U);
  EXPECT_EQ(allocator.liveBlocks(), blocks + 1);
  CFAllocatorDeallocate(allocator.get(), list->entries[1].findComponents);
}

TEST(ColorMatchListAddEntry, WithoutAnythingToCopyIsRefused) {
  FailingAllocator allocator;
  const List list = newList(0, 4, allocator.get());
  const long requests = allocator.requests();
  float replacement[4] = {};
  DRAVCFColorMatchComponent tests[4] = {kAlways, kAlways, kAlways, kAlways};
  const DRAVCFColorMatchEntry withoutTests{0, nullptr, replacement}, withoutReplacement{0, tests, nullptr},
      withoutBoth{0, nullptr, nullptr};
  EXPECT_EQ(DRAVCFColorMatchListAddEntry(list.get(), &withoutTests), 0);
  EXPECT_EQ(DRAVCFColorMatchListAddEntry(list.get(), &withoutReplacement), 0);
  EXPECT_EQ(DRAVCFColorMatchListAddEntry(list.get(), &withoutBoth), 0);
  EXPECT_EQ(DRAVCFColorMatchListAddEntry(list.get(), nullptr), 0);
  EXPECT_EQ(DRAVCFColorMatchListAddEntry(nullptr, &withoutTests), 0);
  EXPECT_EQ(list->entryCount, 0U);
  EXPECT_EQ(allocator.requests(), requests);
}

TEST(ColorMatchListAddEntry, InAListWithoutComponentsNeedsNoReplacement) {
  const List list = newList(0, 0);
  DRAVCFColorMatchComponent tests[4] = {kAlways, kAlways, kAlways, kAlways};
  const DRAVCFColorMatchEntry entry{0, tests, nullptr};
  EXPECT_EQ(DRAVCFColorMatchListAddEntry(list.get(), &entry), 1);
}

// No allocator has 16 GiB to spare for a replacement here, and nothing is read before it is there.
TEST(ColorMatchListAddEntry, WithMoreComponentsThanMemoryIsRefused) {
  FailingAllocator allocator;
  const List list = newList(0, 0xFFFFFFFF, allocator.get());
  allocator.failAfter(3);
  EXPECT_EQ(add(list, kRed), 0);
  EXPECT_EQ(allocator.lastSize(), CFIndex{0xFFFFFFFF} * 4 + kTailBytes);
  CFAllocatorDeallocate(allocator.get(), list->entries[0].findComponents);
}

TEST(ColorMatchListAddEntry, CopiesAsManyReplacementValuesAsTheListHasComponents) {
  for (uint32_t componentCount = 0; componentCount <= 6; ++componentCount) {
    FailingAllocator allocator;
    Floats values(componentCount);
    std::iota(values.begin(), values.end(), 1.0F);
    const List list = listOf(0, componentCount, {{0, {4, kAlways}, values}}, allocator.get());
    ASSERT_TRUE(list) << componentCount;
    EXPECT_EQ(Floats(list->entries[0].replaceComponents, list->entries[0].replaceComponents + componentCount),
              values);
  }
}

}  // namespace
