#include "recoloring.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "color_memory.h"
#include "pixels.h"

namespace {

using Bytes = std::vector<uint8_t>;

const Watch kNobody = [](double) {};

// One row of four-byte pixels, alpha first.
Image row(const Bytes &bytes, CGImageAlphaInfo alpha) {
  return cf::adopt(
      DRAVCFImageCreateWithBuffer(nullptr, bytes.data(), bytes.size() / 4, 1, 8, 32, 0, nullptr, alpha));
}

Bytes bytesIn(DRAVCFImageRef image) {
  const uint8_t *buffer = DRAVCFImageGetImageBuffer(image);
  return {buffer, buffer + DRAVCFImageGetImageBufferSize(image)};
}

Bytes recoloredRow(const Bytes &bytes, CGImageAlphaInfo alpha, std::string_view rules) {
  return bytesIn(recolored(row(bytes, alpha), parseRules(rules).get(), kNobody).get());
}

constexpr std::string_view kRedToBlue = "rule\n red above 0.9\n becomes 0 0 1\n";

TEST(Recoloring, PremultipliedColoursAreTestedStraightAndMultipliedAgain) {
  // Half transparent: red 255 is stored as 128, and 100 of 128 is 199, too little.
  EXPECT_EQ(recoloredRow({128, 128, 0, 0, 128, 100, 0, 0}, kCGImageAlphaPremultipliedFirst, kRedToBlue),
            (Bytes{128, 0, 0, 128, 128, 100, 0, 0}));
}

TEST(Recoloring, PremultipliedPixelsThatDoNotMatchKeepEveryByte) {
  Bytes bytes;
  for (unsigned alpha = 0; alpha < 256; ++alpha) {
    for (unsigned color = 0; color <= alpha; ++color) {
      const auto low = static_cast<uint8_t>(color);
      bytes.insert(bytes.end(), {static_cast<uint8_t>(alpha), 0, low, low});
    }
  }
  EXPECT_EQ(recoloredRow(bytes, kCGImageAlphaPremultipliedFirst, kRedToBlue), bytes);
}

TEST(Recoloring, StraightPixelsThatDoNotMatchKeepEveryByte) {
  const Bytes bytes = {0, 10, 20, 30, 1, 200, 100, 50, 255, 1, 2, 3};
  EXPECT_EQ(recoloredRow(bytes, kCGImageAlphaFirst, kRedToBlue), bytes);
}

TEST(Recoloring, TheByteThatIsNoAlphaCountsAsOpaque) {
  const Image image = recolored(row({7, 255, 0, 0, 9, 1, 2, 3}, kCGImageAlphaNoneSkipFirst),
                                parseRules(kRedToBlue).get(), kNobody);
  EXPECT_FALSE(DRAVCFImageHasAlpha(image.get()));
  EXPECT_EQ(bytesIn(image.get()), (Bytes{255, 0, 0, 255, 255, 1, 2, 3}));
}

TEST(Recoloring, ClearingAPixelGivesAnOpaqueImageAlpha) {
  const Image image = recolored(row({7, 255, 0, 0, 9, 1, 2, 3}, kCGImageAlphaNoneSkipFirst),
                                parseRules("rule\n red above 0.9\n becomes 1 0 0 0\n").get(), kNobody);
  EXPECT_EQ(DRAVCFImageGetAlphaInfo(image.get()), CGImageAlphaInfo{kCGImageAlphaFirst});
  EXPECT_EQ(bytesIn(image.get()), (Bytes{0, 255, 0, 0, 255, 1, 2, 3}));
}

TEST(ColorMemory, EachColourIsComputedOnceAsLongAsItIsKnown) {
  ColorMemory memory;
  size_t computed = 0;
  const auto compute = [&](uint32_t color) {
    ++computed;
    return ~color;
  };
  constexpr uint32_t kColors = 300'000;
  for (int round = 0; round < 2; ++round) {
    for (uint32_t i = 0; i < kColors; ++i)
      EXPECT_EQ(memory.resultFor(i * 0x01010101U, compute), ~(i * 0x01010101U));
  }
  EXPECT_EQ(computed, kColors);
}

TEST(ColorMemory, WhatWasForgottenIsComputedAgain) {
  ColorMemory memory;
  const auto compute = [](uint32_t color) { return color ^ 0x5A5A5A5AU; };
  for (uint32_t i = 0; i < 5'000'000; ++i) EXPECT_EQ(memory.resultFor(i, compute), i ^ 0x5A5A5A5AU);
  for (uint32_t i = 0; i < 100; ++i) EXPECT_EQ(memory.resultFor(i, compute), i ^ 0x5A5A5A5AU);
}

}  // namespace
