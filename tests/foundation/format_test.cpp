#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdarg>
#include <cstdio>

#include "failing_allocator.h"
#include "foundation/text.h"

namespace {

using namespace testing_support;
using cf::adopt;

std::string formatted(const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const auto string =
      adopt(CFStringCreateWithFormatAndArguments(nullptr, nullptr, stringOf(format).get(), arguments));
  va_end(arguments);
  return textOf(string);
}

std::string printed(const char *format, ...) {
  char text[4096];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  return text;
}

TEST(Format, IntegersPrintAsTheCLibraryPrintsThem) {
  for (const char *format :
       {"%d",  "%i",  "%u",   "%x",    "%X",      "%o",  "%5d|", "%-5d|", "%05d", "%+d",    "% d",
        "%#x", "%#o", "%.4d", "%8.4d", "%-8.4x|", "%hd", "%hhd", "%hhu",  "%hu",  "%0-5d|", "%+ d"})
    for (const int value : {0, 1, -1, 42, -70000, INT_MAX, INT_MIN})
      EXPECT_EQ(formatted(format, value), printed(format, value)) << format;
  for (const char *format :
       {"%ld", "%lu", "%lx", "%lld", "%llu", "%zu", "%zd", "%jd", "%ju", "%td", "%20ld|"})
    for (const long value : {0L, -1L, LONG_MAX, LONG_MIN})
      EXPECT_EQ(formatted(format, value), printed(format, value)) << format;
  EXPECT_EQ(formatted("%qd", LONG_MIN), printed("%ld", LONG_MIN));
}

TEST(Format, FloatsPrintAsTheCLibraryPrintsThem) {
  for (const char *format : {"%f", "%e", "%g", "%a", "%F", "%E", "%G", "%A", "%.0f", "%.3f", "%10.2f|",
                             "%-10.2f|", "%+g", "%#g", "%010.3f", "%lf"})
    for (const double value : {0.0, -0.0, 0.5, 1.0 / 3, -2.5, 1e300, 5e-324, std::nan(""), HUGE_VAL})
      EXPECT_EQ(formatted(format, value), printed(format, value)) << format;
  EXPECT_EQ(formatted("%Lf", 0.25L), "0.250000");
}

TEST(Format, WidthsAndPrecisionsComeFromArgumentsToo) {
  EXPECT_EQ(formatted("%*d|%-*d|%.*f", 5, 1, 5, 2, 2, 0.125), "    1|2    |0.12");
  EXPECT_EQ(formatted("%*d|", -5, 1), "1    |");
  EXPECT_EQ(formatted("%.*d", -1, 7), "7");
  EXPECT_EQ(formatted("%*s|%.*s", 4, "ab", 1, "cd"), "  ab|c");
}

TEST(Format, ArgumentsStayInStep) {
  EXPECT_EQ(formatted("%d %@ %f %s %ld %c %%", 1, CFSTR("two"), 3.0, "four", 5L, '6'),
            "1 two 3.000000 four 5 6 %");
}

TEST(Format, NarrowTextIsUTF8) {
  EXPECT_EQ(formatted("%s", "gr\xC3\xBC"), "gr\xC3\xBC");
  EXPECT_EQ(formatted("%s", "gr\xFC"), "gr\xC3\xBC");
  EXPECT_EQ(formatted("%5s|%-5s|", "\xC3\xBC", "\xC3\xBC"), "    \xC3\xBC|\xC3\xBC    |");
  EXPECT_EQ(formatted("%.2s|", "a\xC3\xBC"), "a|");
  EXPECT_EQ(formatted("%.3s|", "a\xC3\xBC"), "a\xC3\xBC|");
  EXPECT_EQ(formatted("%.4s|%.3s|", "a\xF0\x9F\x8E\xA8", "\xF0\x9F\x8E\xA8"), "a||");
  EXPECT_EQ(formatted("%.2s|", "\xFC\xFC\xFC"), "\xC3\xBC\xC3\xBC|");
  EXPECT_EQ(formatted("%s|%.0s|", "", "abc"), "||");
  const char unterminated[] = {'a', 'b', 'c'};
  EXPECT_EQ(formatted("%.3s", unterminated), "abc");
}

TEST(Format, CharactersAndWideText) {
  const UniChar wide[] = {'a', 0x20AC, 0};
  EXPECT_EQ(formatted("%c%C|%3c|%-3c|", 'x', 0x20AC, 'y', 'z'), "x\xE2\x82\xAC|  y|z  |");
  EXPECT_EQ(formatted("%S|%.1S|", wide, wide), "a\xE2\x82\xAC|a|");
}

TEST(Format, ObjectsDescribeThemselves) {
  const auto data = adopt(CFDataCreate(nullptr, reinterpret_cast<const UInt8 *>("\1\2"), 2));
  const std::string text = formatted("%@", data.get());
  EXPECT_EQ(text.find("<CFData 0x"), 0u);
  EXPECT_NE(text.find("{length = 2, bytes = 0x0102}"), std::string::npos);
  EXPECT_EQ(formatted("[%6@] [%-6@] [%.2@]", CFSTR("abc"), CFSTR("abc"), CFSTR("abc")),
            "[   abc] [abc   ] [ab]");
}

TEST(Format, NothingPrintsAsNull) {
  EXPECT_EQ(formatted("%@ %s %S %8@", nullptr, nullptr, nullptr, nullptr), "(null) (null) (null)   (null)");
}

TEST(Format, PointersPrintInHexadecimal) {
  EXPECT_EQ(formatted("%p %p", nullptr, reinterpret_cast<void *>(0xABC)), "0x0 0xabc");
  EXPECT_EQ(formatted("%6p|%-6p|", nullptr, nullptr), "   0x0|0x0   |");
}

TEST(Format, WhatIsNoConversionStandsForItself) {
  EXPECT_EQ(formatted("100%"), "100%");
  EXPECT_EQ(formatted("%y %d", 1), "%y 1");
  EXPECT_EQ(formatted("%-5"), "%-5");
  EXPECT_EQ(formatted("%1$d"), "%1$d");
  EXPECT_EQ(formatted("%ls"), "%ls");
  EXPECT_EQ(formatted("%\xC3\xBC"), "%\xC3\xBC");
  EXPECT_EQ(formatted("%*y %d", 1), "%*y 1");
}

TEST(Format, NeverWritesThroughAnArgument) {
  int untouched = 42;
  EXPECT_EQ(formatted("abc%n%d", &untouched, 1), "abc1");
  EXPECT_EQ(untouched, 42);
}

TEST(Format, FieldsAreNoWiderThan4096) {
  EXPECT_EQ(formatted("%2147483647d", 1).size(), 4096u);
  EXPECT_EQ(formatted("%99999999999999999999d", 1).size(), 4096u);
  EXPECT_EQ(formatted("%*d", INT_MAX, 1).size(), 4096u);
  EXPECT_EQ(formatted("%*d", INT_MIN, 1).size(), 4096u);
  EXPECT_EQ(formatted("%.2147483647d", 1).size(), 4096u);
  EXPECT_EQ(formatted("%.2147483647f", 1.0).size(), 4098u);
  EXPECT_EQ(formatted("%.2147483647Lf", -1e4000L * 1e900L).size(), 4098u + 4901);
  EXPECT_EQ(formatted("%2147483647@", CFSTR("a")).size(), 4096u);
  EXPECT_EQ(formatted("%2147483647s", "a").size(), 4096u);
  EXPECT_EQ(formatted("%s", std::string(10000, 'a').c_str()).size(), 10000u);
}

TEST(Format, NumbersAreTheSameInEveryLocale) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  bool hasComma = false;
  for (const char *locale : {"de_DE.UTF-8", "fr_FR.UTF-8", "sv_SE.UTF-8"})
    hasComma = hasComma || (std::setlocale(LC_ALL, locale) && printed("%.1f", 1.5) == "1,5");
  const std::string text = formatted("%.2f", 1.5);
  std::setlocale(LC_ALL, before.c_str());
  EXPECT_EQ(text, "1.50");
  if (!hasComma) GTEST_SKIP() << "no locale with a decimal comma is installed";
}

TEST(Format, WithoutArgumentsNoneIsRead) {
  const auto withoutArguments = [](const char *format) {
    return textOf(adopt(CFStringCreateWithFormatNoArguments(nullptr, nullptr, stringOf(format).get())));
  };
  EXPECT_EQ(withoutArguments("50%% of %d %s %@ %n %"), "50% of %d %s %@ %n %");
  EXPECT_EQ(withoutArguments("%%%"), "%%");
  EXPECT_EQ(withoutArguments("%%%%"), "%%");
  EXPECT_EQ(withoutArguments(""), "");
  EXPECT_EQ(CFStringCreateWithFormatNoArguments(nullptr, nullptr, nullptr), nullptr);
}

TEST(Format, NoFormatMakesNoString) {
  EXPECT_EQ(CFStringCreateWithFormat(nullptr, nullptr, nullptr), nullptr);
}

TEST(Format, SurvivesEveryFailedAllocation) {
  const std::string wide(3000, 'w');
  forEachFailedAllocation([&](CFAllocatorRef allocator, long n) {
    const auto string = adopt(CFStringCreateWithFormat(allocator, nullptr, CFSTR("%d %s %@ %500d"), 1,
                                                       wide.c_str(), CFSTR("object"), 2));
    if (n == 1) {
      EXPECT_FALSE(string);
    }
    if (string) {
      EXPECT_EQ(CFStringGetLength(string.get()), 2 + 3000 + 8 + 500);
    }
  });
  EXPECT_EQ(CFStringCreateWithFormat(kCFAllocatorNull, nullptr, CFSTR("%d"), 1), nullptr);
  forEachFailedAllocation([&](CFAllocatorRef allocator, long n) {
    EXPECT_EQ(!adopt(CFStringCreateWithFormatNoArguments(allocator, nullptr, CFSTR("100%%"))), n <= 2);
  });
}

}  // namespace
