#include "foundation/ref.h"

#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>

namespace {

using cf::Ref;

CFMutableDataRef newData() { return CFDataCreateMutable(nullptr, 0); }

TEST(Ref, AdoptTakesOverACount) {
  const auto data = cf::adopt(newData());
  EXPECT_EQ(CFGetRetainCount(data.get()), 1);
}

TEST(Ref, ShareAddsACountAndTheDestructorDropsIt) {
  const auto owner = cf::adopt(newData());
  {
    const auto sharer = cf::share(owner.get());
    EXPECT_EQ(CFGetRetainCount(owner.get()), 2);
  }
  EXPECT_EQ(CFGetRetainCount(owner.get()), 1);
}

TEST(Ref, GiveHandsTheCountOver) {
  auto data = cf::adopt(newData());
  CFMutableDataRef given = data.give();
  EXPECT_FALSE(data);
  EXPECT_EQ(CFGetRetainCount(given), 1);
  CFRelease(given);
}

TEST(Ref, CopyAddsAndMoveSteals) {
  auto data = cf::adopt(newData());
  Ref<CFMutableDataRef> copy = data;
  EXPECT_EQ(CFGetRetainCount(copy.get()), 2);
  const Ref<CFMutableDataRef> moved = std::move(data);
  EXPECT_EQ(CFGetRetainCount(moved.get()), 2);
  copy = moved;
  EXPECT_EQ(CFGetRetainCount(moved.get()), 2);
  copy = nullptr;
  EXPECT_EQ(CFGetRetainCount(moved.get()), 1);
}

TEST(Ref, AssigningItToItselfKeepsTheObject) {
  auto data = cf::adopt(newData());
  auto &same = data;
  data = same;
  EXPECT_EQ(CFGetRetainCount(data.get()), 1);
}

TEST(Ref, EmptyIsFineEverywhere) {
  Ref<CFDataRef> none = nullptr;
  EXPECT_FALSE(none);
  EXPECT_FALSE(cf::share(none.get()));
  EXPECT_EQ(none.give(), nullptr);
  none.reset();
}

}  // namespace
