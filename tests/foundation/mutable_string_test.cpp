#include <gtest/gtest.h>

#include "failing_allocator.h"
#include "foundation/text.h"

namespace {

using namespace testing_support;
using cf::adopt;

cf::Ref<CFMutableStringRef> newMutable(std::string_view text = "", CFIndex maxLength = 0) {
  return adopt(CFStringCreateMutableCopy(nullptr, maxLength, stringOf(text).get()));
}

TEST(MutableString, AppendsTextOfEveryKind) {
  const auto string = newMutable();
  CFStringAppend(string.get(), CFSTR("one "));
  CFStringAppendCString(string.get(), "two ", kCFStringEncodingASCII);
  const UniChar units[] = {0x20AC, ' '};
  CFStringAppendCharacters(string.get(), units, 2);
  CFStringAppendFormat(string.get(), nullptr, CFSTR("%d"), 4);
  EXPECT_EQ(textOf(string.get()), "one two \xE2\x82\xAC 4");
}

TEST(MutableString, GrowsFarBeyondItsFirstRoom) {
  const auto string = newMutable();
  for (int i = 0; i < 10000; ++i) CFStringAppend(string.get(), CFSTR("abc"));
  EXPECT_EQ(CFStringGetLength(string.get()), 30000);
  EXPECT_EQ(CFStringGetCharacterAtIndex(string.get(), 29999), 'c');
}

TEST(MutableString, CanBeAppendedToItself) {
  const auto string = newMutable("abc");
  for (int i = 0; i < 8; ++i) CFStringAppend(string.get(), string.get());
  EXPECT_EQ(CFStringGetLength(string.get()), 3 * 256);
  const auto twice = newMutable("%@");
  CFStringAppendFormat(twice.get(), nullptr, twice.get(), twice.get());
  EXPECT_EQ(textOf(twice.get()), "%@%@");
}

TEST(MutableString, AConstantTextDoesNotChange) {
  const auto string = stringOf("abc");
  auto *pretended = const_cast<CFMutableStringRef>(string.get());
  CFStringAppend(pretended, CFSTR("d"));
  CFStringAppendFormat(pretended, nullptr, CFSTR("d"));
  CFStringAppendCString(pretended, "d", kCFStringEncodingASCII);
  EXPECT_EQ(textOf(string), "abc");
}

TEST(MutableString, NeverExceedsItsMaximumLength) {
  const auto string = newMutable("abc", 5);
  CFStringAppend(string.get(), CFSTR("def"));
  EXPECT_EQ(textOf(string.get()), "abc");
  CFStringAppend(string.get(), CFSTR("de"));
  EXPECT_EQ(textOf(string.get()), "abcde");
  EXPECT_EQ(CFStringCreateMutableCopy(nullptr, 2, CFSTR("abc")), nullptr);
  EXPECT_EQ(CFStringCreateMutable(nullptr, -1), nullptr);
}

TEST(MutableString, NothingAppendedChangesNothing) {
  const auto string = newMutable("abc");
  CFStringAppend(string.get(), nullptr);
  CFStringAppendCString(string.get(), nullptr, kCFStringEncodingUTF8);
  CFStringAppendCString(string.get(), "\xFF", kCFStringEncodingUTF8);
  CFStringAppendCharacters(string.get(), nullptr, 3);
  CFStringAppendFormat(string.get(), nullptr, nullptr);
  CFStringAppend(nullptr, CFSTR("abc"));
  EXPECT_EQ(textOf(string.get()), "abc");
}

TEST(MutableString, AFailedAppendLeavesTheText) {
  FailingAllocator allocator;
  const auto string = adopt(CFStringCreateMutableCopy(allocator.get(), 0, CFSTR("abc")));
  const auto more = stringOf(std::string(1000, 'x'));
  for (int round = 0; round < 4; ++round) {
    // Room is asked for twice, generously and exactly: an allocator without memory refuses both.
    const auto poor = adopt(CFStringCreateMutableCopy(nullptr, 3, CFSTR("abc")));
    CFStringAppend(poor.get(), more.get());
    EXPECT_EQ(textOf(poor.get()), "abc");
  }
  allocator.failAfter(1);
  CFStringAppendFormat(string.get(), nullptr, CFSTR("%d"), 1);
  EXPECT_TRUE(textOf(string.get()) == "abc" || textOf(string.get()) == "abc1");
}

}  // namespace
