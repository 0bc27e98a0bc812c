#include "pixel/alpha_kernels.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "pixel/alpha_formula.h"
#include "pixel/instruction_sets.h"
#include "pixel/plain_form.h"

namespace {

using drav::pixel::AlphaByte;
using plain::Layout;
using testing_support::forEachInstructionSet;

TEST(AlphaKernels, EachPairInEachChannelIsReportedExactlyWhenTheColourIsAboveItsAlpha) {
  forEachInstructionSet([] {
    for (const Layout layout : {Layout::argb, Layout::rgba}) {
      for (unsigned pair = 0; pair < 65536 * 3; ++pair) {
        const auto alpha = static_cast<uint8_t>(pair >> 8), colour = static_cast<uint8_t>(pair);
        uint8_t pixel[4] = {};
        pixel[plain::alphaIndex(layout)] = alpha;
        pixel[plain::colourIndex(layout, static_cast<int>(pair >> 16))] = colour;
        const bool reported = drav::pixel::unpremultiplyPixels(
            pixel, 1, layout == Layout::argb ? AlphaByte::first : AlphaByte::last);
        ASSERT_EQ(reported, colour > alpha) << +alpha << ' ' << +colour;
      }
    }
  });
}

TEST(AlphaKernels, NoPixelsAreNothingToDo) {
  forEachInstructionSet([] {
    for (const AlphaByte alpha : {AlphaByte::first, AlphaByte::last}) {
      uint8_t next[4] = {1, 2, 3, 4};
      drav::pixel::premultiplyPixels(next, 0, alpha);
      EXPECT_FALSE(drav::pixel::unpremultiplyPixels(next, 0, alpha));
      EXPECT_EQ(std::vector<uint8_t>(next, next + 4), (std::vector<uint8_t>{1, 2, 3, 4}));
    }
  });
}

TEST(AlphaFormula, IsThePlainArithmetic) {
  for (unsigned pair = 0; pair < 65536; ++pair) {
    const auto alpha = static_cast<uint8_t>(pair >> 8), colour = static_cast<uint8_t>(pair);
    uint8_t multiplied[4] = {alpha, colour}, divided[4] = {alpha, colour};
    plain::premultiply(multiplied, 4, Layout::argb);
    plain::unpremultiply(divided, 4, Layout::argb);
    ASSERT_EQ(drav::pixel::premultiplied(colour, alpha), multiplied[1]) << +alpha << ' ' << +colour;
    ASSERT_EQ(drav::pixel::unpremultiplied(colour, alpha), divided[1]) << +alpha << ' ' << +colour;
  }
}

}  // namespace
