#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "failing_allocator.h"
#include "foundation/text.h"

namespace {

using namespace testing_support;
using cf::adopt;

const UInt8 *bytesIn(std::string_view text) { return reinterpret_cast<const UInt8 *>(text.data()); }

std::string contentOf(CFDataRef data) {
  return {reinterpret_cast<const char *>(CFDataGetBytePtr(data)), static_cast<size_t>(CFDataGetLength(data))};
}

cf::Ref<CFDataRef> dataOf(std::string_view text, CFAllocatorRef allocator = nullptr) {
  return adopt(CFDataCreate(allocator, bytesIn(text), static_cast<CFIndex>(text.size())));
}

cf::Ref<CFMutableDataRef> mutableOf(std::string_view text, CFIndex capacity = 0,
                                    CFAllocatorRef allocator = nullptr) {
  return adopt(CFDataCreateMutableCopy(allocator, capacity, dataOf(text).get()));
}

TEST(Data, HoldsACopyOfTheBytes) {
  char text[] = "abc";
  const auto data = dataOf(text);
  text[0] = 'x';
  EXPECT_EQ(contentOf(data.get()), "abc");
  EXPECT_EQ(CFGetTypeID(data.get()), CFDataGetTypeID());
}

TEST(Data, EmptyDataHasAPointer) {
  const auto data = adopt(CFDataCreate(nullptr, nullptr, 0));
  EXPECT_EQ(CFDataGetLength(data.get()), 0);
  EXPECT_NE(CFDataGetBytePtr(data.get()), nullptr);
  const auto changing = adopt(CFDataCreateMutable(nullptr, 0));
  EXPECT_NE(CFDataGetMutableBytePtr(changing.get()), nullptr);
}

TEST(Data, BytesThatCannotBeAreRefused) {
  EXPECT_EQ(CFDataCreate(nullptr, nullptr, 1), nullptr);
  EXPECT_EQ(CFDataCreate(nullptr, bytesIn("a"), -1), nullptr);
  EXPECT_EQ(CFDataCreateWithBytesNoCopy(nullptr, nullptr, 1, kCFAllocatorNull), nullptr);
  EXPECT_EQ(CFDataCreateMutable(nullptr, -1), nullptr);
  EXPECT_EQ(CFDataCreateCopy(nullptr, nullptr), nullptr);
  EXPECT_EQ(CFDataGetLength(nullptr), 0);
  EXPECT_EQ(CFDataGetBytePtr(nullptr), nullptr);
}

TEST(Data, BytesTakenOverAreFreedByTheirAllocator) {
  FailingAllocator allocator;
  auto *bytes = static_cast<UInt8 *>(CFAllocatorAllocate(allocator.get(), 3, 0));
  std::memcpy(bytes, "abc", 3);
  {
    const auto data = adopt(CFDataCreateWithBytesNoCopy(nullptr, bytes, 3, allocator.get()));
    EXPECT_EQ(CFDataGetBytePtr(data.get()), bytes);
    EXPECT_EQ(CFGetRetainCount(allocator.get()), 2);
  }
  EXPECT_EQ(allocator.liveBlocks(), 0);
  // malloc's own go back to free; the leak checker watches.
  CFRelease(
      CFDataCreateWithBytesNoCopy(nullptr, static_cast<UInt8 *>(std::malloc(3)), 3, kCFAllocatorMalloc));
}

TEST(Data, BytesBorrowedStayTheCallers) {
  const char text[] = "abc";
  adopt(CFDataCreateWithBytesNoCopy(nullptr, bytesIn(text), 3, kCFAllocatorNull)).reset();
  EXPECT_STREQ(text, "abc");
}

TEST(Data, ACopyOfConstantDataIsTheDataItself) {
  const auto data = dataOf("abc");
  EXPECT_EQ(adopt(CFDataCreateCopy(nullptr, data.get())).get(), data.get());
  FailingAllocator allocator;
  const auto moved = adopt(CFDataCreateCopy(allocator.get(), data.get()));
  EXPECT_NE(moved.get(), data.get());
  EXPECT_TRUE(CFEqual(moved.get(), data.get()));
}

TEST(Data, EqualBytesAreEqualAndHashAlike) {
  const auto data = dataOf("abc");
  const auto changing = mutableOf("ab");
  EXPECT_FALSE(CFEqual(data.get(), changing.get()));
  CFDataAppendBytes(changing.get(), bytesIn("c"), 1);
  EXPECT_TRUE(CFEqual(data.get(), changing.get()));
  EXPECT_EQ(CFHash(data.get()), CFHash(changing.get()));
}

TEST(Data, BytesAreCopiedOutByRange) {
  const auto data = dataOf("abcd");
  UInt8 out[4] = {'-', '-', '-', '-'};
  CFDataGetBytes(data.get(), CFRangeMake(1, 2), out);
  EXPECT_EQ(std::memcmp(out, "bc--", 4), 0);
  for (const CFRange range :
       {CFRangeMake(3, 2), CFRangeMake(-1, 1), CFRangeMake(1, LONG_MAX), CFRangeMake(5, 0)})
    CFDataGetBytes(data.get(), range, out);
  EXPECT_EQ(std::memcmp(out, "bc--", 4), 0);
}

TEST(Data, ADescriptionShowsTheFrontOfTheBytes) {
  const auto text = textOf(adopt(CFCopyDescription(dataOf(std::string(25, 'A')).get())));
  EXPECT_EQ(text.find("<CFData 0x"), 0u);
  EXPECT_NE(text.find("{length = 25, bytes = 0x414141"), std::string::npos);
  EXPECT_TRUE(text.ends_with("41 ...}"));
}

TEST(MutableData, GrowsByZeroBytes) {
  FailingAllocator allocator;  // fills its blocks with rubbish
  const auto data = mutableOf("ab", 0, allocator.get());
  CFDataIncreaseLength(data.get(), 3);
  EXPECT_EQ(contentOf(data.get()), std::string("ab\0\0\0", 5));
  CFDataSetLength(data.get(), 1);
  EXPECT_EQ(contentOf(data.get()), "a");
  CFDataSetLength(data.get(), 3);
  EXPECT_EQ(contentOf(data.get()), std::string("a\0\0", 3));
  CFDataSetLength(data.get(), 0);
  EXPECT_EQ(CFDataGetLength(data.get()), 0);
}

TEST(MutableData, AppendsManyTimes) {
  const auto data = mutableOf("");
  for (int i = 0; i < 100000; ++i) CFDataAppendBytes(data.get(), bytesIn("abc"), 3);
  EXPECT_EQ(CFDataGetLength(data.get()), 300000);
  EXPECT_EQ(CFDataGetBytePtr(data.get())[299999], 'c');
}

TEST(MutableData, AsksForMemoryRarelyHoweverOftenItGrows) {
  FailingAllocator allocator;
  const auto data = adopt(CFDataCreateMutable(allocator.get(), 0));
  for (int i = 0; i < 100000; ++i) CFDataAppendBytes(data.get(), bytesIn("a"), 1);
  EXPECT_LT(allocator.requests(), 40);
}

TEST(MutableData, CanBeAppendedToItself) {
  const auto data = mutableOf("abc");
  for (int i = 0; i < 8; ++i)
    CFDataAppendBytes(data.get(), CFDataGetBytePtr(data.get()), CFDataGetLength(data.get()));
  EXPECT_EQ(CFDataGetLength(data.get()), 3 * 256);
  EXPECT_TRUE(contentOf(data.get()).ends_with("abcabc"));
}

TEST(MutableData, IsWrittenThroughItsPointer) {
  const auto data = mutableOf("abc");
  CFDataGetMutableBytePtr(data.get())[1] = 'x';
  EXPECT_EQ(contentOf(data.get()), "axc");
}

struct Replacement {
  CFRange range;
  std::string_view bytes, expected;
};

TEST(MutableData, ReplacesARange) {
  const Replacement rows[] = {
      {{1, 2}, "XY", "aXYd"}, {{1, 2}, "", "ad"},     {{1, 2}, "VWXYZ", "aVWXYZd"}, {{0, 4}, "", ""},
      {{4, 0}, "X", "abcdX"}, {{0, 0}, "X", "Xabcd"}, {{0, 4}, "X", "X"},           {{3, 2}, "X", "abcd"},
      {{-1, 1}, "X", "abcd"}, {{5, 0}, "X", "abcd"},  {{1, LONG_MAX}, "X", "abcd"}};
  for (const Replacement &row : rows) {
    const auto data = mutableOf("abcd");
    CFDataReplaceBytes(data.get(), row.range, bytesIn(row.bytes), static_cast<CFIndex>(row.bytes.size()));
    EXPECT_EQ(contentOf(data.get()), row.expected);
  }
  const auto data = mutableOf("abcd");
  CFDataDeleteBytes(data.get(), CFRangeMake(0, 3));
  EXPECT_EQ(contentOf(data.get()), "d");
}

TEST(MutableData, ConstantDataDoesNotChange) {
  const auto data = dataOf("abc");
  auto *pretended = const_cast<CFMutableDataRef>(data.get());
  CFDataAppendBytes(pretended, bytesIn("d"), 1);
  CFDataSetLength(pretended, 1);
  CFDataIncreaseLength(pretended, 1);
  CFDataDeleteBytes(pretended, CFRangeMake(0, 1));
  EXPECT_EQ(CFDataGetMutableBytePtr(pretended), nullptr);
  EXPECT_EQ(contentOf(data.get()), "abc");
}

TEST(MutableData, NeverExceedsItsCapacity) {
  const auto data = mutableOf("abc", 4);
  CFDataAppendBytes(data.get(), bytesIn("de"), 2);
  CFDataSetLength(data.get(), 5);
  EXPECT_EQ(contentOf(data.get()), "abc");
  CFDataAppendBytes(data.get(), bytesIn("d"), 1);
  EXPECT_EQ(contentOf(data.get()), "abcd");
  EXPECT_FALSE(mutableOf("abc", 2));
}

TEST(MutableData, GrowthThatCannotBeHadLeavesTheData) {
  const auto data = mutableOf("abc");
  CFDataIncreaseLength(data.get(), LONG_MAX);
  CFDataIncreaseLength(data.get(), LONG_MAX - 100);
  CFDataIncreaseLength(data.get(), -1);
  CFDataSetLength(data.get(), LONG_MAX);
  CFDataSetLength(data.get(), -1);
  CFDataAppendBytes(data.get(), bytesIn("a"), LONG_MAX);
  CFDataAppendBytes(data.get(), bytesIn("a"), -1);
  EXPECT_EQ(contentOf(data.get()), "abc");
}

TEST(Data, CreationSurvivesEveryFailedAllocation) {
  forEachFailedAllocation(
      [](CFAllocatorRef allocator, long n) { EXPECT_EQ(!dataOf("abc", allocator), n <= 2); });
  forEachFailedAllocation(
      [](CFAllocatorRef allocator, long n) { EXPECT_EQ(!mutableOf("abc", 0, allocator), n <= 2); });
  forEachFailedAllocation(
      [](CFAllocatorRef allocator, long n) { EXPECT_EQ(!adopt(CFDataCreateMutable(allocator, 0)), n == 1); });
  forEachFailedAllocation([](CFAllocatorRef allocator, long n) {
    EXPECT_EQ(!adopt(CFDataCreateCopy(allocator, dataOf("abc").get())), n <= 2);
  });
  forEachFailedAllocation([](CFAllocatorRef allocator, long n) {
    EXPECT_EQ(!adopt(CFDataCreateWithBytesNoCopy(allocator, bytesIn("abc"), 3, kCFAllocatorNull)), n == 1);
  });
}

TEST(MutableData, AFailedAppendLeavesTheData) {
  forEachFailedAllocation([](CFAllocatorRef allocator, long) {
    const auto data = adopt(CFDataCreateMutable(allocator, 0));
    if (!data) return;
    std::string expected;
    for (int i = 0; i < 50; ++i) {
      const CFIndex before = CFDataGetLength(data.get());
      CFDataAppendBytes(data.get(), bytesIn("0123456789"), 10);
      if (CFDataGetLength(data.get()) != before) expected += "0123456789";
      ASSERT_EQ(contentOf(data.get()), expected);
    }
  });
}

}  // namespace
