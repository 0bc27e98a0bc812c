// Damaged bytes through every loader: an image or none, and not a word but the two there are for damage.
#include <gtest/gtest.h>

#include <sstream>

#include "constructors.h"
#include "io/loader.h"

namespace {

using namespace test;

// What loading the bytes with every constructor prints, on either stream.
std::string printedByAll(const Bytes &bytes) {
  const cf::Ref data = dataOf(bytes);
  testing::internal::CaptureStderr();
  testing::internal::CaptureStdout();
  for (const LoaderConstructors &loaders : kLoaders) {
    const cf::Ref loader = cf::adopt(loaders.fromData(nullptr, data.get()));
    if (loader) {
      EXPECT_NE(loader->cgImage, nullptr);
    }
  }
  return testing::internal::GetCapturedStdout() + testing::internal::GetCapturedStderr();
}

void expectKnownLines(const std::string &printed) {
  std::istringstream lines(printed);
  for (std::string line; std::getline(lines, line);) {
    EXPECT_TRUE(line == "Corrupt PICT data found, cannot load image" ||
                line == "Cannot validate profile : Valid: 0, Preferred CMM not found : 0")
        << line;
  }
}

class Damage : public testing::TestWithParam<LoaderConstructors> {};

TEST_P(Damage, ByTruncationSaysNothingElse) {
  const Bytes whole = GetParam().goodBytes();
  const size_t step = whole.size() / 100 + 1;
  for (size_t length = 0; length < whole.size(); length += step) {
    SCOPED_TRACE(length);
    expectKnownLines(printedByAll(Bytes(whole.begin(), whole.begin() + static_cast<long>(length))));
  }
}

TEST_P(Damage, OfSingleBytesSaysNothingElse) {
  const Bytes whole = GetParam().goodBytes();
  const size_t step = whole.size() / 200 + 1;
  for (size_t at = 0; at < whole.size(); at += step) {
    SCOPED_TRACE(at);
    Bytes damaged = whole;
    damaged[at] = static_cast<uint8_t>(~damaged[at]);
    expectKnownLines(printedByAll(damaged));
  }
}

TEST_P(Damage, ForTheLoadersOfOtherFormatsSaysNothingElse) {
  const Bytes whole = GetParam().goodBytes();
  expectKnownLines(printedByAll(whole));
}

INSTANTIATE_TEST_SUITE_P(Each, Damage, testing::ValuesIn(kLoaders),
                         [](const auto &loaders) { return std::string(loaders.param.name); });

}  // namespace
