#include "graphics/alpha_rows.h"

#include <gtest/gtest.h>

#include <hwy/targets.h>

#include <functional>
#include <vector>

#include "graphics/alpha_math.h"

namespace {

using cg::AlphaStep;
using Bytes = std::vector<uint8_t>;

// Every pair of colour and alpha; the other two colours of a pixel come from elsewhere in the range.
Bytes everyPair(bool alphaFirst) {
  Bytes pixels;
  for (int a = 0; a < 256; ++a)
    for (int c = 0; c < 256; ++c) {
      const auto color = static_cast<uint8_t>(c), alpha = static_cast<uint8_t>(a);
      const auto inverse = static_cast<uint8_t>(255 - c), turned = static_cast<uint8_t>(c + 85);
      if (alphaFirst)
        pixels.insert(pixels.end(), {alpha, color, inverse, turned});
      else
        pixels.insert(pixels.end(), {color, inverse, turned, alpha});
    }
  return pixels;
}

void expectStep(AlphaStep step, bool alphaFirst, const Bytes &before, const Bytes &after) {
  const size_t alphaByte = alphaFirst ? 0 : 3;
  for (size_t i = 0; i < before.size(); ++i) {
    const uint8_t c = before[i], a = before[i / 4 * 4 + alphaByte];
    const uint8_t expected = i % 4 == alphaByte            ? a
                             : step == AlphaStep::multiply ? cg::multiply(c, a)
                             : step == AlphaStep::divide   ? cg::divide(c, a)
                                                           : c;
    ASSERT_EQ(after[i], expected) << int{c} << " with alpha " << int{a};
  }
}

// Runs a test with each instruction set that was compiled in and that this machine has.
void onEveryTarget(const std::function<void()> &test) {
  for (const int64_t target : hwy::SupportedAndGeneratedTargets()) {
    SCOPED_TRACE(hwy::TargetName(target));
    hwy::SetSupportedTargetsForTest(target);
    test();
  }
  hwy::SetSupportedTargetsForTest(0);
}

TEST(AlphaRows, EveryPairEqualsTheSingleForm) {
  onEveryTarget([] {
    for (const AlphaStep step : {AlphaStep::keep, AlphaStep::multiply, AlphaStep::divide})
      for (const bool alphaFirst : {true, false}) {
        const Bytes before = everyPair(alphaFirst);
        Bytes after = before;
        (alphaFirst ? cg::stepARGB : cg::stepRGBA)(step, after.data(), after.size() / 4);
        expectStep(step, alphaFirst, before, after);
      }
  });
}

TEST(AlphaRows, RowsOfAnyLengthEndWhereTheyShould) {
  onEveryTarget([] {
    const Bytes pairs = everyPair(true);
    for (size_t count = 0; count < 70; ++count) {
      Bytes before(pairs.begin() + 4 * 20001, pairs.begin() + static_cast<long>(4 * (20001 + count)));
      Bytes after = before;
      after.insert(after.end(), 8, 0xA5);
      cg::stepARGB(AlphaStep::multiply, after.data(), count);
      for (size_t b = 0; b < 8; ++b) ASSERT_EQ(after[4 * count + b], 0xA5);
      after.resize(before.size());
      expectStep(AlphaStep::multiply, true, before, after);
    }
  });
}

TEST(AlphaRows, PlanesEqualTheSingleForm) {
  for (const AlphaStep step : {AlphaStep::keep, AlphaStep::multiply, AlphaStep::divide}) {
    Bytes values(65536), alpha(65536);
    for (size_t i = 0; i < values.size(); ++i) {
      values[i] = static_cast<uint8_t>(i);
      alpha[i] = static_cast<uint8_t>(i >> 8);
    }
    cg::stepPlane(step, values.data(), alpha.data(), values.size());
    for (size_t i = 0; i < values.size(); ++i) {
      const auto c = static_cast<uint8_t>(i), a = static_cast<uint8_t>(i >> 8);
      ASSERT_EQ(values[i], step == AlphaStep::keep       ? c
                           : step == AlphaStep::multiply ? cg::multiply(c, a)
                                                         : cg::divide(c, a));
    }
  }
}

}  // namespace
