#include "io/loader_layout.h"

#include <gtest/gtest.h>

namespace {

using drav::layoutFor;

constexpr OSType kOther = MEDIA_CODE('T', 'I', 'F', 'F');

void expectLayout(int depth, OSType subtype, size_t bitsPerPixel, CGImageAlphaInfo alpha, uint32_t world) {
  SCOPED_TRACE(depth);
  const auto layout = layoutFor(depth, subtype);
  ASSERT_TRUE(layout);
  EXPECT_EQ(layout->bitsPerPixel, bitsPerPixel);
  EXPECT_EQ(layout->alphaInfo, alpha);
  EXPECT_EQ(layout->pixelFormat, world);
}

TEST(LoaderLayout, GreyOfDepth40IsDrawnAsColour) {
  for (OSType subtype : {kOther, drav::kPICTSubtype, drav::kPCTSubtype})
    expectLayout(40, subtype, 32, kCGImageAlphaNoneSkipFirst, 32);
}

TEST(LoaderLayout, ColourWithoutAlphaSkipsTheFirstByte) {
  for (OSType subtype : {kOther, drav::kPICTSubtype, drav::kPCTSubtype})
    expectLayout(24, subtype, 32, kCGImageAlphaNoneSkipFirst, 32);
}

TEST(LoaderLayout, AlphaIsDroppedForPICTStraightForPCTAndPremultipliedElsewhere) {
  expectLayout(32, drav::kPICTSubtype, 32, kCGImageAlphaNoneSkipFirst, 32);
  expectLayout(32, drav::kPCTSubtype, 32, kCGImageAlphaFirst, 32);
  expectLayout(32, kOther, 32, kCGImageAlphaPremultipliedFirst, 32);
}

TEST(LoaderLayout, Depth8IsGreyExceptForPICTWhereItIsAPalette) {
  expectLayout(8, drav::kPICTSubtype, 32, kCGImageAlphaNoneSkipFirst, 32);
  expectLayout(8, drav::kPCTSubtype, 8, kCGImageAlphaNone, 40);
  expectLayout(8, kOther, 8, kCGImageAlphaNone, 40);
}

TEST(LoaderLayout, NoOtherDepthHasALayout) {
  for (int depth = -32768; depth <= 32767; ++depth) {
    const bool known = depth == 8 || depth == 24 || depth == 32 || depth == 40;
    EXPECT_EQ(layoutFor(depth, kOther).has_value(), known) << depth;
  }
}

}  // namespace
