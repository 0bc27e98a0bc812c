#include "foundation/object.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "failing_allocator.h"
#include "foundation/text.h"

namespace {

using namespace testing_support;

struct Shape : cf::ObjectOf<Shape> {
  static constexpr const char *kName = "Shape";
  static inline int destroyed = 0;
  ~Shape() { ++destroyed; }
  bool operator==(const Shape &other) const noexcept { return corners == other.corners; }
  CFHashCode hash() const noexcept { return static_cast<CFHashCode>(corners); }
  std::string describe() const {
    if (corners < 0) throw std::bad_alloc();
    return "<Shape with " + std::to_string(corners) + " corners>";
  }
  int corners = 4;
  std::vector<int> lengths{};
};

struct Plain : cf::ObjectOf<Plain> {
  static constexpr const char *kName = "Plain";
  int value;
};

struct Late : cf::ObjectOf<Late> {
  static constexpr const char *kName = "Late";
};

TEST(Object, IsConstructedWithItsFieldsDefaults) {
  FailingAllocator allocator;
  {
    const auto shape = cf::make<Shape>(allocator.get());
    EXPECT_EQ(shape->corners, 4);
    EXPECT_EQ(CFGetRetainCount(shape.get()), 1);
    EXPECT_EQ(CFGetTypeID(shape.get()), Shape::typeID());
    EXPECT_EQ(shape->allocator(), allocator.get());
    EXPECT_EQ(cf::make<Plain>(allocator.get())->value, 0);
  }
  EXPECT_EQ(allocator.liveBlocks(), 0);
}

TEST(Object, ItsDestructorRunsWithTheLastRelease) {
  Shape::destroyed = 0;
  auto shape = cf::make<Shape>(nullptr);
  shape->lengths.assign(100, 1);
  shape.reset();
  EXPECT_EQ(Shape::destroyed, 1);
}

TEST(Object, TheRecordHasWhatTheTypeHas) {
  const auto one = cf::make<Shape>(nullptr), other = cf::make<Shape>(nullptr);
  EXPECT_TRUE(CFEqual(one.get(), other.get()));
  other->corners = 3;
  EXPECT_FALSE(CFEqual(one.get(), other.get()));
  EXPECT_EQ(CFHash(other.get()), 3u);
  EXPECT_EQ(textOf(cf::adopt(CFCopyDescription(other.get()))), "<Shape with 3 corners>");
}

TEST(Object, TheRecordLacksWhatTheTypeLacks) {
  const auto one = cf::make<Plain>(nullptr), other = cf::make<Plain>(nullptr);
  EXPECT_FALSE(CFEqual(one.get(), other.get()));
  EXPECT_EQ(CFHash(one.get()), reinterpret_cast<CFHashCode>(one.get()));
  EXPECT_TRUE(textOf(cf::adopt(CFCopyDescription(one.get()))).starts_with("<Plain 0x"));
}

TEST(Object, ADescriptionThatThrowsIsNone) {
  const auto shape = cf::make<Shape>(nullptr);
  shape->corners = -1;
  EXPECT_EQ(CFCopyDescription(shape.get()), nullptr);
  EXPECT_EQ(textOf(cf::adopt(CFStringCreateWithFormat(nullptr, nullptr, CFSTR("%@"), shape.get()))),
            "(null)");
}

TEST(Object, AClassIsRegisteredOnceHoweverManyThreadsAsk) {
  std::vector<CFTypeID> seen(4);
  std::vector<std::thread> threads;
  for (CFTypeID &mine : seen) threads.emplace_back([&mine] { mine = Late::typeID(); });
  for (auto &thread : threads) thread.join();
  for (const CFTypeID mine : seen) EXPECT_EQ(mine, seen[0]);
  EXPECT_STREQ(_CFRuntimeGetClassWithTypeID(seen[0])->className, "Late");
}

TEST(Object, WithoutMemoryThereIsNone) {
  Shape::destroyed = 0;
  forEachFailedAllocation(
      [](CFAllocatorRef allocator, long n) { EXPECT_EQ(!cf::make<Shape>(allocator), n == 1); });
  EXPECT_EQ(Shape::destroyed, 1);
}

}  // namespace
