#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <thread>
#include <vector>

#include "failing_allocator.h"
#include "foundation/object.h"
#include "foundation/text.h"

namespace {

using namespace testing_support;

// A class with a plain record, as a host application would write one.
struct Counter {
  CFRuntimeBase base;
  int value;
  unsigned char rest[40];
};

int gFinalized = 0;
bool gFinalizeHolds = false;

const Counter &counterIn(CFTypeRef object) { return cf::objectIn<Counter>(object); }

const CFRuntimeClass kCounterClass = {
    0,
    "Counter",
    [](CFTypeRef object) { cf::mutableIn<Counter>(object)->value = 7; },
    [](CFAllocatorRef allocator, CFTypeRef object) -> CFTypeRef {
      auto *made = cf::newInstance<Counter>(allocator, CFGetTypeID(object));
      if (made) made->value = counterIn(object).value;
      return made;
    },
    [](CFTypeRef object) {
      ++gFinalized;
      if (gFinalizeHolds) CFRelease(CFRetain(object));
    },
    [](CFTypeRef a, CFTypeRef b) -> Boolean { return counterIn(a).value == counterIn(b).value; },
    [](CFTypeRef object) { return static_cast<CFHashCode>(counterIn(object).value); },
    [](CFTypeRef, CFDictionaryRef) { return CFStringCreateCopy(nullptr, CFSTR("a formatted counter")); },
    [](CFTypeRef object) {
      return CFStringCreateWithFormat(CFGetAllocator(object), nullptr, CFSTR("counter %d"),
                                      counterIn(object).value);
    }};

const CFRuntimeClass kBareClass = {0, "Bare", nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr};

CFTypeID counterID() {
  static const CFTypeID typeID = _CFRuntimeRegisterClass(&kCounterClass);
  return typeID;
}

CFTypeID bareID() {
  static const CFTypeID typeID = _CFRuntimeRegisterClass(&kBareClass);
  return typeID;
}

cf::Ref<Counter> newCounter(CFAllocatorRef allocator = nullptr) {
  return cf::Ref<Counter>::adopt(cf::newInstance<Counter>(allocator, counterID()));
}

cf::Ref<CFTypeRef> newBare(CFAllocatorRef allocator = nullptr) {
  return cf::adopt(_CFRuntimeCreateInstance(allocator, bareID(), 16, nullptr));
}

TEST(Runtime, AClassIsFoundByItsIdentifier) {
  EXPECT_NE(counterID(), CFTypeID{_kCFRuntimeNotATypeID});
  EXPECT_NE(counterID(), bareID());
  EXPECT_EQ(_CFRuntimeGetClassWithTypeID(counterID()), &kCounterClass);
}

TEST(Runtime, NumbersThatAreNoClassHaveNone) {
  EXPECT_EQ(_CFRuntimeGetClassWithTypeID(0), nullptr);
  EXPECT_EQ(_CFRuntimeGetClassWithTypeID(1000), nullptr);
  EXPECT_EQ(_CFRuntimeGetClassWithTypeID(ULONG_MAX), nullptr);
  EXPECT_EQ(_CFRuntimeRegisterClass(nullptr), CFTypeID{0});
  EXPECT_EQ(_CFRuntimeCreateInstance(nullptr, 1000, 0, nullptr), nullptr);
  EXPECT_EQ(CFCopyTypeIDDescription(0), nullptr);
}

TEST(Runtime, ANewInstanceIsZeroedAndThenInitialised) {
  FailingAllocator allocator;  // fills its blocks with rubbish
  const auto counter = newCounter(allocator.get());
  EXPECT_EQ(counter->value, 7);
  for (const unsigned char byte : counter->rest) EXPECT_EQ(byte, 0);
  EXPECT_EQ(CFGetRetainCount(counter.get()), 1);
  EXPECT_EQ(CFGetTypeID(counter.get()), counterID());
}

TEST(Runtime, AnInstanceLivesOnItsAllocatorAndRetainsIt) {
  FailingAllocator allocator;
  {
    const auto counter = newCounter(allocator.get());
    EXPECT_EQ(CFGetAllocator(counter.get()), allocator.get());
    EXPECT_EQ(CFGetRetainCount(allocator.get()), 2);
    EXPECT_EQ(allocator.liveBlocks(), 1);
  }
  EXPECT_EQ(CFGetRetainCount(allocator.get()), 1);
}

TEST(Runtime, AnInstanceThatCannotBeAllocatedIsNull) {
  EXPECT_FALSE(newCounter(kCFAllocatorNull));
  EXPECT_EQ(_CFRuntimeCreateInstance(nullptr, counterID(), -1, nullptr), nullptr);
  EXPECT_EQ(_CFRuntimeCreateInstance(nullptr, counterID(), LONG_MAX, nullptr), nullptr);
  forEachFailedAllocation(
      [](CFAllocatorRef allocator, long n) { EXPECT_EQ(!newCounter(allocator), n == 1); });
}

TEST(Runtime, TheLastReleaseFinalizesOnce) {
  gFinalized = 0;
  auto counter = newCounter();
  CFRetain(counter.get());
  EXPECT_EQ(CFGetRetainCount(counter.get()), 2);
  CFRelease(counter.get());
  EXPECT_EQ(gFinalized, 0);
  counter.reset();
  EXPECT_EQ(gFinalized, 1);
}

TEST(Runtime, ABalancedRetainDuringFinalizeDoesNotFinalizeAgain) {
  gFinalized = 0;
  gFinalizeHolds = true;
  newCounter().reset();
  gFinalizeHolds = false;
  EXPECT_EQ(gFinalized, 1);
}

TEST(Runtime, CountsAreExactWithManyThreads) {
  const auto counter = newCounter();
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i)
    threads.emplace_back([&] {
      for (int k = 0; k < 20000; ++k) CFRetain(counter.get());
      for (int k = 0; k < 19990; ++k) CFRelease(counter.get());
    });
  for (auto &thread : threads) thread.join();
  EXPECT_EQ(CFGetRetainCount(counter.get()), 41);
  for (int i = 0; i < 40; ++i) CFRelease(counter.get());
}

TEST(Runtime, TheLastReleaseOnAnyThreadFinalizesOnce) {
  for (int round = 0; round < 200; ++round) {
    gFinalized = 0;
    Counter *counter = newCounter().give();
    CFRetain(counter);
    std::thread other([&] { CFRelease(counter); });
    CFRelease(counter);
    other.join();
    ASSERT_EQ(gFinalized, 1);
  }
}

TEST(RuntimeDeathTest, ReleasingWithoutACountAborts) {
  // Memory that stays readable, so that the second release looks at something.
  alignas(16) static unsigned char memory[256];
  CFAllocatorContext context{};
  context.allocate = [](CFIndex, CFOptionFlags, void *) -> void * { return memory; };
  const auto allocator = cf::adopt(CFAllocatorCreate(nullptr, &context));
  EXPECT_DEATH(
      {
        CFTypeRef object = newBare(allocator.get()).give();
        CFRelease(object);
        CFRelease(object);
      },
      "CFRelease - no count is left");
  EXPECT_DEATH(
      {
        CFTypeRef object = newBare(allocator.get()).give();
        CFRelease(object);
        CFRetain(object);
      },
      "CFRetain - the object was freed");
}

TEST(RuntimeDeathTest, CountingNothingAborts) {
  EXPECT_DEATH(CFRetain(nullptr), "CFRetain - no object");
  EXPECT_DEATH(CFRelease(nullptr), "CFRelease - no object");
}

TEST(Runtime, EqualityIsTheClasssAffair) {
  const auto one = newCounter(), other = newCounter();
  EXPECT_TRUE(CFEqual(one.get(), other.get()));
  other->value = 8;
  EXPECT_FALSE(CFEqual(one.get(), other.get()));
  EXPECT_EQ(CFHash(other.get()), 8u);
}

TEST(Runtime, AClassWithoutEqualComparesAddresses) {
  const auto one = newBare(), other = newBare();
  EXPECT_TRUE(CFEqual(one.get(), one.get()));
  EXPECT_FALSE(CFEqual(one.get(), other.get()));
  EXPECT_EQ(CFHash(one.get()), reinterpret_cast<CFHashCode>(one.get()));
}

TEST(Runtime, ObjectsOfDifferentClassesAreNeverEqual) {
  EXPECT_FALSE(CFEqual(newCounter().get(), newBare().get()));
  EXPECT_FALSE(CFEqual(newCounter().get(), nullptr));
  EXPECT_TRUE(CFEqual(nullptr, nullptr));
}

TEST(Runtime, ADescriptionIsTheClasssOrItsNameAndAddress) {
  const auto bare = newBare();
  char expected[64];
  std::snprintf(expected, sizeof expected, "<Bare %p>", bare.get());
  EXPECT_EQ(textOf(cf::adopt(CFCopyDescription(bare.get())).get()), expected);
  EXPECT_EQ(textOf(cf::adopt(CFCopyDescription(newCounter().get())).get()), "counter 7");
  EXPECT_EQ(CFCopyDescription(nullptr), nullptr);
}

TEST(Runtime, AFormatAsksForTheFormattingDescription) {
  const auto counter = newCounter();
  const auto text = cf::adopt(CFStringCreateWithFormat(nullptr, nullptr, CFSTR("[%@]"), counter.get()));
  EXPECT_EQ(textOf(text.get()), "[a formatted counter]");
}

TEST(Runtime, ACopyIsReachedThroughTheClassRecord) {
  const auto counter = newCounter();
  counter->value = 42;
  const auto copy =
      cf::adopt(_CFRuntimeGetClassWithTypeID(CFGetTypeID(counter.get()))->copy(nullptr, counter.get()));
  EXPECT_NE(copy.get(), counter.get());
  EXPECT_TRUE(CFEqual(copy.get(), counter.get()));
}

TEST(Runtime, ATypeIsNamed) {
  EXPECT_EQ(textOf(cf::adopt(CFCopyTypeIDDescription(counterID())).get()), "Counter");
  EXPECT_EQ(textOf(cf::adopt(CFCopyTypeIDDescription(CFAllocatorGetTypeID())).get()), "CFAllocator");
}

TEST(Runtime, ShowWritesTheDescriptionToStandardError) {
  testing::internal::CaptureStderr();
  CFShow(newCounter().get());
  CFShow(nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "counter 7\n(null)\n");
}

}  // namespace
