#include "path/text_output.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <sstream>

#include "path/tracing.h"

namespace drav::path {
namespace {

std::string asStream(float number) {
  std::ostringstream stream;
  stream << number;
  return stream.str();
}
std::string asOutput(float number) {
  return textOf([&](TextOutput &output) { output << number; });
}

TEST(TextOutput, WritesTextAndNumbersInTheOrderGiven) {
  EXPECT_EQ("Path 12\n(-3, 70000)\n", textOf([](TextOutput &output) {
              output << "Path " << std::size_t{12} << "\n(" << -3 << ", " << 70000 << ")\n";
            }));
}

TEST(TextOutput, PrintsWholeFloatsBelowAMillionAsIntegers) {
  EXPECT_EQ("0", asOutput(0.0F));
  EXPECT_EQ("65535", asOutput(65535.0F));
  EXPECT_EQ("999999", asOutput(999999.0F));
}

TEST(TextOutput, PrintsFloatsFromAMillionOnWithSixDigitsAndAnExponent) {
  EXPECT_EQ("1e+06", asOutput(1000000.0F));
  EXPECT_EQ("1e+06", asOutput(1000001.0F));
  EXPECT_EQ("1.23457e+06", asOutput(1234567.0F));
  EXPECT_EQ("1.67772e+07", asOutput(16777216.0F));
}

TEST(TextOutput, PrintsEveryFloatAsStreamsDoByDefault) {
  for (const float number :
       {-0.0F, -1.0F, 0.5F, 999999.5F, 999999.0625F, 1e-5F, 123456.7F, std::numeric_limits<float>::max(),
        std::numeric_limits<float>::denorm_min(), std::numeric_limits<float>::infinity(),
        -std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()}) {
    EXPECT_EQ(asStream(number), asOutput(number));
  }
  RandomNumbers numbers(7);
  for (int i = 0; i < 20000; ++i) {
    const auto number = std::ldexp(static_cast<float>(numbers()), static_cast<int>(numbers() % 60) - 40);
    ASSERT_EQ(asStream(number), asOutput(number));
  }
}

TEST(TextOutput, PrintsHexadecimalInLowerCase) {
  EXPECT_EQ("2a ffffffff", textOf([](TextOutput &output) {
              output.hexadecimal(42) << " ";
              output.hexadecimal(0xFFFFFFFFU);
            }));
}

TEST(TextOutput, KeepsTheOrderOfTextLongerThanItsBuffer) {
  const std::string longText(200000, 'x');
  std::string expected = longText;
  expected.front() = 'a';
  expected.back() = 'b';
  EXPECT_EQ(expected, textOf([&](TextOutput &output) {
              output << "a" << std::string_view(longText).substr(2) << "b";
            }));
}

TEST(TextOutput, LosesNothingWhenTheBufferFillsManyTimes) {
  std::string expected;
  const std::string text = textOf([&](TextOutput &output) {
    for (int i = 0; i < 100000; ++i) {
      output << "(" << i << ")\n";
      expected.append("(").append(std::to_string(i)).append(")\n");
    }
  });
  EXPECT_EQ(expected, text);
}

TEST(TextOutput, StaysInOrderWithWhatIsPrintedToTheStreamBeforeAndAfter) {
  const MemoryStream stream;
  std::fputs("before ", stream.get());
  { TextOutput(stream.get()) << "between "; }
  std::fputs("after", stream.get());
  std::fflush(stream.get());
  EXPECT_EQ("before between after", stream.text());
}

TEST(TextOutput, FlushAllWritesWhatEveryLiveOutputHolds) {
  const MemoryStream stream;
  TextOutput outer(stream.get());
  TextOutput inner(stream.get());
  inner << "inner";
  outer << "outer ";
  TextOutput::flushAll();
  EXPECT_EQ("outer inner", stream.text());
}

}  // namespace
}  // namespace drav::path
