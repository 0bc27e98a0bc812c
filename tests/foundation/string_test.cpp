#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <vector>

#include "failing_allocator.h"
#include "foundation/text.h"

namespace {

using namespace testing_support;
using cf::adopt;

constexpr CFStringEncoding kCStringEncodings[] = {kCFStringEncodingUTF8, kCFStringEncodingASCII,
                                                  kCFStringEncodingISOLatin1};

cf::Ref<CFStringRef> fromBytes(std::string_view bytes, CFStringEncoding encoding, bool external = false) {
  return adopt(CFStringCreateWithBytes(nullptr, reinterpret_cast<const UInt8 *>(bytes.data()),
                                       static_cast<CFIndex>(bytes.size()), encoding, external));
}

std::string bytesOf(CFStringRef string, CFStringEncoding encoding, UInt8 loss = 0, bool external = false) {
  std::array<UInt8, 64> bytes{};
  CFIndex used = 0;
  CFStringGetBytes(string, CFRangeMake(0, CFStringGetLength(string)), encoding, loss, external, bytes.data(),
                   64, &used);
  return {reinterpret_cast<const char *>(bytes.data()), static_cast<size_t>(used)};
}

using namespace std::string_view_literals;

struct Spelling {
  std::string_view bytes;
  CFStringEncoding encoding;
  std::string_view utf8;
  CFIndex length;
};

constexpr Spelling kSpellings[] = {
    {"", kCFStringEncodingUTF8, "", 0},
    {"abc", kCFStringEncodingASCII, "abc", 3},
    {"a\0b"sv, kCFStringEncodingUTF8, "a\0b"sv, 3},
    {"gr\xC3\xBC\xC3\x9F", kCFStringEncodingUTF8, "gr\xC3\xBC\xC3\x9F", 4},
    {"gr\xFC\xDF", kCFStringEncodingISOLatin1, "gr\xC3\xBC\xC3\x9F", 4},
    {"\xE2\x82\xAC", kCFStringEncodingUTF8, "\xE2\x82\xAC", 1},
    {"\xF0\x9F\x8E\xA8", kCFStringEncodingUTF8, "\xF0\x9F\x8E\xA8", 2},
    {"\x20\xAC\x00\x61"sv, kCFStringEncodingUTF16BE, "\xE2\x82\xAC\x61", 2},
    {"\xAC\x20\x61\x00"sv, kCFStringEncodingUTF16LE, "\xE2\x82\xAC\x61", 2},
    {"\xD8\x3C\xDF\xA8"sv, kCFStringEncodingUTF16BE, "\xF0\x9F\x8E\xA8", 2},
};

TEST(String, EveryEncodingReadsItsSpelling) {
  for (const Spelling &row : kSpellings) {
    const auto string = fromBytes(row.bytes, row.encoding);
    ASSERT_TRUE(string);
    EXPECT_EQ(textOf(string), row.utf8);
    EXPECT_EQ(CFStringGetLength(string.get()), row.length);
  }
}

TEST(String, EveryEncodingWritesItsSpelling) {
  for (const Spelling &row : kSpellings)
    EXPECT_EQ(bytesOf(stringOf(row.utf8).get(), row.encoding), row.bytes);
}

TEST(String, InvalidBytesMakeNoString) {
  for (const std::string_view bad : {"\x80"sv, "\xC3"sv, "\xC0\x80"sv, "\xC1\xBF"sv, "\xE0\x9F\xBF"sv,
                                     "\xED\xA0\x80"sv, "\xF4\x90\x80\x80"sv, "\xF0\x8F\xBF\xBF"sv,
                                     "\xF5\x80\x80\x80"sv, "\xFF"sv, "a\xE2\x82"sv, "\xE2\x28\xA1"sv})
    EXPECT_FALSE(fromBytes(bad, kCFStringEncodingUTF8)) << bad;
  EXPECT_FALSE(fromBytes("\x80", kCFStringEncodingASCII));
  EXPECT_FALSE(fromBytes("abc", kCFStringEncodingUTF16));
  EXPECT_FALSE(fromBytes("abc", 0x12345));
  EXPECT_EQ(CFStringCreateWithBytes(nullptr, nullptr, 1, kCFStringEncodingUTF8, false), nullptr);
  EXPECT_EQ(CFStringCreateWithBytes(nullptr, reinterpret_cast<const UInt8 *>("a"), -1, kCFStringEncodingUTF8,
                                    false),
            nullptr);
}

TEST(String, AByteOrderMarkIsObeyedInExternalBytesOnly) {
  EXPECT_EQ(textOf(fromBytes("\xFE\xFF\x00\x61"sv, kCFStringEncodingUTF16, true)), "a");
  EXPECT_EQ(textOf(fromBytes("\xFF\xFE\x61\x00"sv, kCFStringEncodingUTF16, true)), "a");
  EXPECT_EQ(textOf(fromBytes("\xEF\xBB\xBF\x61", kCFStringEncodingUTF8, true)), "a");
  EXPECT_EQ(textOf(fromBytes("\xEF\xBB\xBF\x61", kCFStringEncodingUTF8, false)), "\xEF\xBB\xBF\x61");
  EXPECT_EQ(CFStringGetLength(fromBytes("\xFE\xFF\x00\x61"sv, kCFStringEncodingUTF16BE, false).get()), 2);
}

TEST(String, UTF16IsWrittenWithAMarkOnRequest) {
  const std::string native = bytesOf(CFSTR("a"), kCFStringEncodingUTF16, 0, true);
  EXPECT_EQ(textOf(fromBytes(native, kCFStringEncodingUTF16, true)), "a");
  EXPECT_EQ(native.size(), 4u);
  EXPECT_EQ(bytesOf(CFSTR("a"), kCFStringEncodingUTF16).size(), 2u);
}

TEST(String, ALossByteStandsForWhatTheEncodingLacks) {
  const auto string = stringOf("a\xE2\x82\xAC\xF0\x9F\x8E\xA8z");
  EXPECT_EQ(bytesOf(string.get(), kCFStringEncodingISOLatin1, '?'), "a??z");
  EXPECT_EQ(bytesOf(string.get(), kCFStringEncodingISOLatin1), "a");
}

TEST(String, BytesEndAtTheLastWholeCharacterThatFits) {
  const auto string = stringOf("a\xE2\x82\xAC");
  std::array<UInt8, 8> bytes{};
  CFIndex used = -1;
  EXPECT_EQ(CFStringGetBytes(string.get(), CFRangeMake(0, 2), kCFStringEncodingUTF8, 0, false, bytes.data(),
                             3, &used),
            1);
  EXPECT_EQ(used, 1);
  EXPECT_EQ(CFStringGetBytes(string.get(), CFRangeMake(0, 2), kCFStringEncodingUTF8, 0, false, bytes.data(),
                             4, &used),
            2);
  EXPECT_EQ(used, 4);
  EXPECT_EQ(CFStringGetBytes(string.get(), CFRangeMake(1, 2), kCFStringEncodingUTF8, 0, false, bytes.data(),
                             8, &used),
            0);
  EXPECT_EQ(used, 0);
}

TEST(String, ACStringIsWholeOrNotAtAll) {
  char text[8] = "xxxxxxx";
  EXPECT_TRUE(CFStringGetCString(CFSTR("abc"), text, 4, kCFStringEncodingUTF8));
  EXPECT_STREQ(text, "abc");
  EXPECT_FALSE(CFStringGetCString(CFSTR("abcd"), text, 4, kCFStringEncodingUTF8));
  EXPECT_STREQ(text, "");
  EXPECT_FALSE(CFStringGetCString(CFSTR("abc"), text, 0, kCFStringEncodingUTF8));
  EXPECT_FALSE(CFStringGetCString(CFSTR("abc"), text, 8, kCFStringEncodingUTF16));
  EXPECT_FALSE(CFStringGetCString(stringOf("\xC3\xBC").get(), text, 8, kCFStringEncodingASCII));
  EXPECT_TRUE(CFStringGetCString(stringOf("\xC3\xBC").get(), text, 2, kCFStringEncodingISOLatin1));
  EXPECT_STREQ(text, "\xFC");
  EXPECT_FALSE(CFStringGetCString(nullptr, text, 8, kCFStringEncodingUTF8));
}

TEST(String, HalfASurrogatePairIsNoUTF8) {
  const UniChar units[] = {'a', 0xD83C};
  const auto string = adopt(CFStringCreateWithCharacters(nullptr, units, 2));
  char text[16];
  EXPECT_EQ(CFStringGetLength(string.get()), 2);
  EXPECT_FALSE(CFStringGetCString(string.get(), text, 16, kCFStringEncodingUTF8));
  EXPECT_EQ(bytesOf(string.get(), kCFStringEncodingUTF16BE), "\x00\x61\xD8\x3C"sv);
}

TEST(String, AFileNameHasNoZeroInside) {
  char text[16];
  EXPECT_TRUE(CFStringGetFileSystemRepresentation(CFSTR("a/b"), text, 16));
  EXPECT_FALSE(CFStringGetFileSystemRepresentation(stringOf("a\0b"sv).get(), text, 16));
}

TEST(String, TheMaximumSizeIsEnough) {
  for (const Spelling &row : kSpellings) {
    const CFIndex most = CFStringGetMaximumSizeForEncoding(row.length, row.encoding);
    EXPECT_GE(most, static_cast<CFIndex>(row.bytes.size()));
  }
  EXPECT_EQ(CFStringGetMaximumSizeForEncoding(LONG_MAX, kCFStringEncodingUTF8), kCFNotFound);
  EXPECT_EQ(CFStringGetMaximumSizeForEncoding(-1, kCFStringEncodingUTF8), kCFNotFound);
  EXPECT_EQ(CFStringGetMaximumSizeForEncoding(1, 0x12345), kCFNotFound);
}

TEST(String, CharactersAreReadByPositionAndRange) {
  CFStringRef string = CFSTR("abcd");
  EXPECT_EQ(CFStringGetCharacterAtIndex(string, 3), 'd');
  EXPECT_EQ(CFStringGetCharacterAtIndex(string, 4), 0);
  EXPECT_EQ(CFStringGetCharacterAtIndex(string, -1), 0);
  UniChar units[4] = {};
  CFStringGetCharacters(string, CFRangeMake(1, 2), units);
  EXPECT_EQ(units[1], 'c');
  CFStringGetCharacters(string, CFRangeMake(1, 4), units);
  EXPECT_EQ(units[0], 'b');
  EXPECT_EQ(CFStringGetCharactersPtr(string)[2], 'c');
}

TEST(String, ASubstringLiesInsideTheString) {
  EXPECT_EQ(textOf(adopt(CFStringCreateWithSubstring(nullptr, CFSTR("abcd"), CFRangeMake(1, 2)))), "bc");
  EXPECT_EQ(textOf(adopt(CFStringCreateWithSubstring(nullptr, CFSTR("abcd"), CFRangeMake(4, 0)))), "");
  for (const CFRange range : {CFRangeMake(3, 2), CFRangeMake(-1, 1), CFRangeMake(5, 0),
                              CFRangeMake(1, LONG_MAX), CFRangeMake(LONG_MAX, 1), CFRangeMake(1, -1)})
    EXPECT_EQ(CFStringCreateWithSubstring(nullptr, CFSTR("abcd"), range), nullptr);
}

TEST(String, ACopyOfAConstantTextIsTheTextItself) {
  const auto string = stringOf("abc");
  const auto same = adopt(CFStringCreateCopy(nullptr, string.get()));
  EXPECT_EQ(same.get(), string.get());
  FailingAllocator allocator;
  const auto moved = adopt(CFStringCreateCopy(allocator.get(), string.get()));
  EXPECT_NE(moved.get(), string.get());
  EXPECT_TRUE(CFEqual(moved.get(), string.get()));
}

TEST(String, ACopyOfAChangingTextDoesNotChange) {
  const auto changing = adopt(CFStringCreateMutableCopy(nullptr, 0, CFSTR("abc")));
  const auto copy = adopt(CFStringCreateCopy(nullptr, changing.get()));
  CFStringAppend(changing.get(), CFSTR("def"));
  EXPECT_EQ(textOf(copy), "abc");
  EXPECT_EQ(textOf(changing.get()), "abcdef");
}

TEST(String, EqualContentIsEqualAndHashesAlikeHoweverItCameAbout) {
  const auto built = adopt(CFStringCreateMutable(nullptr, 0));
  CFStringAppend(built.get(), CFSTR("gr"));
  CFStringAppendCString(built.get(), "\xFC\xDF", kCFStringEncodingISOLatin1);
  const auto read = stringOf("gr\xC3\xBC\xC3\x9F");
  EXPECT_TRUE(CFEqual(built.get(), read.get()));
  EXPECT_EQ(CFHash(built.get()), CFHash(read.get()));
  EXPECT_FALSE(CFEqual(read.get(), CFSTR("gr")));
  EXPECT_NE(CFHash(read.get()), CFHash(CFSTR("gr")));
}

TEST(String, ADescriptionShowsTheContents) {
  const auto description = adopt(CFCopyDescription(CFSTR("abc")));
  EXPECT_TRUE(CFStringHasPrefix(description.get(), CFSTR("<CFString 0x")));
  EXPECT_TRUE(CFStringHasSuffix(description.get(), CFSTR(">{contents = \"abc\"}")));
}

struct Comparison {
  std::string_view a, b;
  CFComparisonResult exact, folded;
};

constexpr Comparison kComparisons[] = {
    {"", "", kCFCompareEqualTo, kCFCompareEqualTo},
    {"", "a", kCFCompareLessThan, kCFCompareLessThan},
    {"ab", "a", kCFCompareGreaterThan, kCFCompareGreaterThan},
    {"png", "PNG", kCFCompareGreaterThan, kCFCompareEqualTo},
    {"pNg", "PnG", kCFCompareGreaterThan, kCFCompareEqualTo},
    {"png", "pnh", kCFCompareLessThan, kCFCompareLessThan},
    {"\xC3\xA4", "\xC3\x84", kCFCompareGreaterThan, kCFCompareEqualTo},  // a with diaeresis
    {"\xCF\x83", "\xCF\x82", kCFCompareGreaterThan, kCFCompareEqualTo},  // sigma, also at a word's end
    {"k", "\xE2\x84\xAA", kCFCompareLessThan, kCFCompareEqualTo},        // the kelvin sign
    {"s", "\xC5\xBF", kCFCompareLessThan, kCFCompareEqualTo},            // the long s
    {"\xF0\x90\x90\x80", "\xF0\x90\x90\xA8", kCFCompareLessThan, kCFCompareEqualTo},  // beyond 16 bits
    {"i", "\xC4\xB1", kCFCompareLessThan, kCFCompareLessThan},   // a dotless i is its own letter
    {"ss", "\xC3\x9F", kCFCompareLessThan, kCFCompareLessThan},  // one letter never folds to two
    {"\xE1\xBA\x9E", "\xC3\x9F", kCFCompareGreaterThan,
     kCFCompareEqualTo},  // but a capital sharp s does to one
};

TEST(String, ComparesByUnitsOrByFoldedCharacters) {
  for (const Comparison &row : kComparisons) {
    const auto a = stringOf(row.a), b = stringOf(row.b);
    EXPECT_EQ(CFStringCompare(a.get(), b.get(), 0), row.exact) << row.a << " " << row.b;
    EXPECT_EQ(CFStringCompare(b.get(), a.get(), 0), -row.exact) << row.a << " " << row.b;
    EXPECT_EQ(CFStringCompare(a.get(), b.get(), kCFCompareCaseInsensitive), row.folded)
        << row.a << " " << row.b;
    EXPECT_EQ(CFStringCompare(b.get(), a.get(), kCFCompareCaseInsensitive), -row.folded)
        << row.a << " " << row.b;
  }
}

TEST(String, NoStringIsLessThanAny) {
  EXPECT_EQ(CFStringCompare(nullptr, CFSTR(""), 0), kCFCompareLessThan);
  EXPECT_EQ(CFStringCompare(CFSTR(""), nullptr, 0), kCFCompareGreaterThan);
  EXPECT_EQ(CFStringCompare(nullptr, nullptr, 0), kCFCompareEqualTo);
}

TEST(String, PrefixAndSuffix) {
  EXPECT_TRUE(CFStringHasPrefix(CFSTR("abc"), CFSTR("ab")));
  EXPECT_TRUE(CFStringHasPrefix(CFSTR("abc"), CFSTR("")));
  EXPECT_FALSE(CFStringHasPrefix(CFSTR("abc"), CFSTR("bc")));
  EXPECT_FALSE(CFStringHasPrefix(CFSTR("ab"), CFSTR("abc")));
  EXPECT_TRUE(CFStringHasSuffix(CFSTR("abc"), CFSTR("bc")));
  EXPECT_FALSE(CFStringHasSuffix(CFSTR("abc"), CFSTR("ab")));
  EXPECT_FALSE(CFStringHasSuffix(CFSTR("bc"), CFSTR("abc")));
}

TEST(String, CreationSurvivesEveryFailedAllocation) {
  const auto expectNullOnly = [](CFAllocatorRef allocator, CFStringRef made, long n, long needed) {
    const auto string = adopt(made);
    EXPECT_EQ(!string, n <= needed) << n;
    if (string) {
      EXPECT_EQ(CFGetAllocator(string.get()), allocator);
    }
  };
  for (const CFStringEncoding encoding : kCStringEncodings)
    forEachFailedAllocation([&](CFAllocatorRef allocator, long n) {
      expectNullOnly(allocator, CFStringCreateWithCString(allocator, "abc", encoding), n, 2);
    });
  forEachFailedAllocation([&](CFAllocatorRef allocator, long n) {
    expectNullOnly(allocator, CFStringCreateCopy(allocator, CFSTR("abc")), n, 2);
  });
  forEachFailedAllocation([&](CFAllocatorRef allocator, long n) {
    expectNullOnly(allocator, CFStringCreateWithSubstring(allocator, CFSTR("abc"), CFRangeMake(0, 2)), n, 2);
  });
  forEachFailedAllocation([&](CFAllocatorRef allocator, long n) {
    expectNullOnly(allocator, CFStringCreateMutable(allocator, 0), n, 1);
  });
  forEachFailedAllocation([&](CFAllocatorRef allocator, long n) {
    expectNullOnly(allocator, CFStringCreateMutableCopy(allocator, 0, CFSTR("abc")), n, 2);
  });
  const UniChar units[] = {1, 2, 3};
  forEachFailedAllocation([&](CFAllocatorRef allocator, long n) {
    expectNullOnly(allocator, CFStringCreateWithCharacters(allocator, units, 3), n, 2);
  });
}

}  // namespace
