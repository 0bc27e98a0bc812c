#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "colormatch/color_match_list.h"
#include "colormatch/lists.h"
#include "failing_allocator.h"
#include "text.h"

namespace {

using test::add;
using test::copyOf;
using test::Entry;
using test::kAlways;
using test::List;
using test::listOf;
using test::newList;
using testing_support::FailingAllocator;
using testing_support::forEachFailedAllocation;

// Asked before main, and so before any list.
const CFTypeID kTypeIDBeforeAnyList = DRAVCFColorMatchListGetTypeID();

const Entry kRed{IgnoringAlpha, {3, kAlways}, {1, 0, 0, 1}};
const Entry kGrey{0, {{0, 0.5F, 0.25F}, {1, 0, 0}, kAlways, kAlways}, {0.5F, 0.5F, 0.5F, 1}};

bool equal(const List &a, const List &b) { return CFEqual(a.get(), b.get()); }

TEST(ColorMatchListClass, IsRegisteredByTheFirstList) {
  EXPECT_EQ(kTypeIDBeforeAnyList, 0U);
  const List list = newList(0, 4);
  EXPECT_NE(DRAVCFColorMatchListGetTypeID(), 0U);
  EXPECT_EQ(CFGetTypeID(list.get()), DRAVCFColorMatchListGetTypeID());
  EXPECT_EQ(drav::colormatch::gDRAVCFColorMatchListInited, 1);
}

TEST(ColorMatchListClass, IsRegisteredOnce) {
  const List first = newList(0, 4), second = newList(0, 4);
  EXPECT_EQ(CFGetTypeID(first.get()), CFGetTypeID(second.get()));
}

TEST(ColorMatchListClass, HasItsNameAndItsCallbacks) {
  const List list = newList(0, 4);
  const CFRuntimeClass *record = _CFRuntimeGetClassWithTypeID(DRAVCFColorMatchListGetTypeID());
  EXPECT_EQ(record->version, 0);
  EXPECT_STREQ(record->className, "DRAVCFColorMatchList");
  EXPECT_EQ(record->copy, drav::colormatch::DRAVCFColorMatchListCopy);
  EXPECT_TRUE(record->init && record->finalize && record->equal && record->hash &&
              record->copyFormattingDesc && record->copyDebugDesc);
}

TEST(ColorMatchListClass, MakesInstancesWithAllFieldsZero) {
  const List list = cf::adopt(drav::colormatch::ColorMatchListCreatePrivate(nullptr));
  EXPECT_EQ(list->options, 0U);
  EXPECT_EQ(list->componentCount, 0U);
  EXPECT_EQ(list->entryCount, 0U);
  EXPECT_EQ(list->entries, nullptr);
}

TEST(ColorMatchListFinalize, ReturnsEverythingToTheListsAllocator) {
  FailingAllocator allocator;
  { const List list = listOf(0, 4, {kRed, kGrey, kRed}, allocator.get()); }
  EXPECT_EQ(allocator.liveBlocks(), 0);
  EXPECT_EQ(allocator.deallocations(), 8);  // six arrays of entries, their array, the instance
}

TEST(ColorMatchListEqual, ListsOfTheSameEntriesInTheSameOrderAreEqual) {
  EXPECT_TRUE(equal(listOf(1, 4, {kRed, kGrey}), listOf(1, 4, {kRed, kGrey})));
  EXPECT_TRUE(equal(newList(0, 3), newList(0, 3)));
}
TEST(ColorMatchListEqual, OrderMatters) {
  EXPECT_FALSE(equal(listOf(0, 4, {kRed, kGrey}), listOf(0, 4, {kGrey, kRed})));
}
TEST(ColorMatchListEqual, OptionsComponentsAndNumberOfEntriesMatter) {
  EXPECT_FALSE(equal(newList(0, 4), newList(1, 4)));
  EXPECT_FALSE(equal(newList(0, 4), newList(0x80, 4)));
  EXPECT_FALSE(equal(newList(0, 4), newList(0, 3)));
  EXPECT_FALSE(equal(listOf(0, 4, {kRed}), listOf(0, 4, {kRed, kRed})));
}
TEST(ColorMatchListEqual, EveryPartOfAnEntryMatters) {
  const List list = listOf(0, 4, {kGrey});
  std::vector<Entry> others(8, kGrey);
  others[0].options |= 0x100;
  others[1].tests[3].matchMode = 9;
  others[2].tests[3].target = 1;
  others[3].tests[3].range = 1;
  others[4].replacement[0] = 0;
  others[5].replacement[3] = 0;
  others[6].tests[3].range = -0.0F;
  others[7].replacement[3] = -1;
  for (const Entry &other : others) EXPECT_FALSE(equal(list, listOf(0, 4, {other})));
}
TEST(ColorMatchListEqual, TestsBeyondTheComparedOnesDoNotMatter) {
  Entry longer = kRed;
  longer.tests.push_back(test::kNever);
  EXPECT_TRUE(equal(listOf(0, 4, {kRed}), listOf(0, 4, {longer})));
}
TEST(ColorMatchListEqual, ComparesBytesNotNumbers) {
  Entry negative = kGrey, nan = kGrey;
  negative.tests[1].target = -0.0F;
  nan.tests[1].target = std::numeric_limits<float>::quiet_NaN();
  EXPECT_FALSE(equal(listOf(0, 4, {kGrey}), listOf(0, 4, {negative})));
  EXPECT_TRUE(equal(listOf(0, 4, {nan}), listOf(0, 4, {nan})));
}

TEST(ColorMatchListHash, OfEqualListsDiffers) {
  const List a = listOf(0, 4, {kRed}), b = listOf(0, 4, {kRed});
  EXPECT_TRUE(equal(a, b));
  EXPECT_NE(CFHash(a.get()), CFHash(b.get()));
  EXPECT_EQ(CFHash(a.get()), reinterpret_cast<CFHashCode>(a.get()));
}

TEST(ColorMatchListCopy, IsEqualAndLivesOnItsOwn) {
  FailingAllocator allocator;
  List list = listOf(1, 4, {kRed, kGrey});
  const List copy = copyOf(allocator.get(), list), same = listOf(1, 4, {kRed, kGrey});
  EXPECT_TRUE(equal(copy, list));
  list.reset();
  EXPECT_TRUE(equal(copy, same));
  EXPECT_EQ(CFGetAllocator(copy.get()), allocator.get());
  EXPECT_EQ(add(copy, kRed), 1);
  EXPECT_FALSE(equal(copy, same));
}
TEST(ColorMatchListCopy, OfAnEmptyListIsEmpty) {
  const List list = newList(7, 3), copy = copyOf(nullptr, list);
  EXPECT_TRUE(equal(copy, list));
  EXPECT_NE(copy->entries, nullptr);
}
TEST(ColorMatchListCopy, OfAnEmptyListFailsWhenItsEmptyArrayIsRefused) {
  FailingAllocator allocator(2);
  EXPECT_EQ(copyOf(allocator.get(), newList(0, 4)).get(), nullptr);
}
TEST(ColorMatchListCopy, OfNothingIsNothing) {
  const List list = newList(0, 4);
  EXPECT_EQ(copyOf(nullptr, List()).get(), nullptr);
}
TEST(ColorMatchListCopy, LeavesNothingBehindWhateverAllocationFails) {
  const List list = listOf(1, 4, {kRed, kGrey, kRed});
  forEachFailedAllocation([&](CFAllocatorRef allocator, long n) {
    const List copy = copyOf(allocator, list);
    EXPECT_EQ(static_cast<bool>(copy), n > 8);
    if (copy) {
      EXPECT_TRUE(equal(copy, list));
    }
  });
}
TEST(ColorMatchListCopy, KeepsEveryNumberOfComponents) {
  for (uint32_t componentCount = 0; componentCount <= 6; ++componentCount) {
    FailingAllocator allocator;
    const List list = listOf(0, componentCount, {{0, {4, kAlways}, test::Floats(componentCount, 0.25F)}});
    EXPECT_TRUE(equal(copyOf(allocator.get(), list), list)) << componentCount;
  }
}

}  // namespace
