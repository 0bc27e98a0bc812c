#include <gtest/gtest.h>

#include <set>
#include <thread>
#include <vector>

#include "foundation/text.h"

namespace {

using namespace testing_support;

TEST(ConstantString, EqualLiteralsAreOneObject) {
  const std::string text = "a constant";
  EXPECT_EQ(CFSTR("a constant"), __CFStringMakeConstantString(text.c_str()));
  EXPECT_NE(CFSTR("a constant"), CFSTR("another"));
}

TEST(ConstantString, IsNeverFreed) {
  CFStringRef string = CFSTR("never freed");
  EXPECT_EQ(CFGetRetainCount(string), LONG_MAX);
  for (int i = 0; i < 10; ++i) CFRelease(string);
  EXPECT_EQ(textOf(string), "never freed");
  EXPECT_EQ(CFGetAllocator(string), kCFAllocatorSystemDefault);
}

TEST(ConstantString, IsUTF8OrElseLatin1) {
  EXPECT_EQ(textOf(CFSTR("gr\xC3\xBC")), "gr\xC3\xBC");
  EXPECT_EQ(textOf(CFSTR("gr\xFC")), "gr\xC3\xBC");
}

TEST(ConstantString, HasItsBytesAtHandIfTheyAreASCII) {
  EXPECT_STREQ(CFStringGetCStringPtr(CFSTR("at hand"), kCFStringEncodingUTF8), "at hand");
  EXPECT_STREQ(CFStringGetCStringPtr(CFSTR("at hand"), kCFStringEncodingISOLatin1), "at hand");
  EXPECT_EQ(CFStringGetCStringPtr(CFSTR("at hand"), kCFStringEncodingUTF16), nullptr);
  EXPECT_EQ(CFStringGetCStringPtr(CFSTR("gr\xC3\xBC"), kCFStringEncodingUTF8), nullptr);
  EXPECT_EQ(CFStringGetCStringPtr(stringOf("at hand").get(), kCFStringEncodingUTF8), nullptr);
}

TEST(ConstantString, MayBeMadeOnManyThreadsAtOnce) {
  constexpr int kThreads = 4, kStrings = 200;
  std::vector<std::vector<CFStringRef>> seen(kThreads);
  std::vector<std::thread> threads;
  for (auto &mine : seen)
    threads.emplace_back([&mine] {
      for (int i = 0; i < kStrings; ++i)
        mine.push_back(__CFStringMakeConstantString(("on thread " + std::to_string(i)).c_str()));
    });
  for (auto &thread : threads) thread.join();
  for (const auto &mine : seen) EXPECT_EQ(mine, seen[0]);
  EXPECT_EQ(std::set<CFStringRef>(seen[0].begin(), seen[0].end()).size(), size_t{kStrings});
}

}  // namespace
