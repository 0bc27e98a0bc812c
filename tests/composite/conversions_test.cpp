#include "composite/conversions.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <limits>

namespace {

using namespace drav;
constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

uint8_t clampedGrey(float component) {
  uint8_t byte = 77;
  FloatSToIntS_Clamp(&component, &byte);
  return byte;
}

TEST(Conversions, EveryByteSurvivesTheRoundTripThroughFloats) {
  for (int value = 0; value < 256; ++value) {
    const auto byte = static_cast<uint8_t>(value);
    const uint8_t pixel[4] = {byte, byte, byte, byte};
    float floats[4];
    IntARGBToFloatARGB(pixel, floats);
    uint8_t clamped[4] = {}, wrapped[4] = {};
    FloatARGBToIntARGB(floats, wrapped);
    FloatARGBToIntARGB_Clamp(floats, clamped);
    for (int i = 0; i < 4; ++i) {
      EXPECT_EQ(clamped[i], byte);
      EXPECT_EQ(wrapped[i], byte);
    }
    EXPECT_EQ(clampedGrey(floats[0]), byte);
  }
}

TEST(Conversions, ByteToFloatIsATrueDivision) {
  int unlikeReciprocal = 0;
  for (int value = 0; value < 256; ++value) {
    const auto byte = static_cast<uint8_t>(value);
    float component = -1;
    IntSToFloatS(&byte, &component);
    EXPECT_EQ(component, static_cast<float>(value) / 255.0F);
    unlikeReciprocal += component != static_cast<float>(value) * (1.0F / 255.0F);
  }
  EXPECT_GT(unlikeReciprocal, 0) << "the two could not be told apart";
}

TEST(Conversions, ColourWithoutAlphaSkipsByteZeroBothWays) {
  const uint8_t pixel[4] = {9, 51, 102, 255};
  float floats[3];
  IntXRGBToFloatRGB(pixel, floats);
  EXPECT_EQ(floats[0], 51.0F / 255.0F);
  EXPECT_EQ(floats[1], 102.0F / 255.0F);
  EXPECT_EQ(floats[2], 1.0F);
  uint8_t stored[4] = {200, 0, 0, 0};
  FloatRGBToIntXRGB_Clamp(floats, stored);
  EXPECT_EQ((std::array{stored[0], stored[1], stored[2], stored[3]}),
            (std::array<uint8_t, 4>{200, 51, 102, 255}));
}

TEST(Conversions, ClampedStoreOfValuesJustBelowZeroGivesZero) {
  EXPECT_EQ(clampedGrey(-1e-6F), 0);
  EXPECT_EQ(clampedGrey(-0.002F), 0);
  EXPECT_EQ(clampedGrey(-1000.0F), 0);
  EXPECT_EQ(clampedGrey(-kInfinity), 0);
}

TEST(Conversions, ClampedStoreOverwritesTheCallersNegativeComponents) {
  float floats[4] = {-0.5F, 0.5F, -2.0F, 1.0F};
  uint8_t pixel[4];
  FloatARGBToIntARGB_Clamp(floats, pixel);
  EXPECT_EQ(floats[0], 0.0F);
  EXPECT_EQ(floats[1], 0.5F);
  EXPECT_EQ(floats[2], 0.0F);
}

TEST(Conversions, HalvesRoundAwayFromZero) {
  EXPECT_EQ(0.5F * 255.0F, 127.5F);
  EXPECT_EQ(clampedGrey(0.5F), 128);
  const float floats[4] = {0.5F, -0.5F, 0, 1};
  uint8_t pixel[4];
  FloatARGBToIntARGB(floats, pixel);
  EXPECT_EQ(pixel[0], 128);
  EXPECT_EQ(pixel[1], 128) << "-128 wraps";
}

TEST(Conversions, RoundingIsThatOfTheMathematicsLibrary) {
  // Every 997th float from the smallest to those beyond 32 bits, and the neighbours of every half.
  for (uint32_t bits = 0; bits < 0x50000000U; bits += 997) {
    const float value = std::bit_cast<float>(bits);
    ASSERT_EQ(roundedComponent(value), std::lroundf(value * 255.0F)) << value;
    ASSERT_EQ(roundedComponent(-value), std::lroundf(-value * 255.0F)) << -value;
  }
  for (int half = -1023; half < 1024; half += 2) {
    float value = static_cast<float>(half) / 510.0F;
    for (int step = 0; step < 5; ++step) value = std::nextafter(value, -kInfinity);
    for (int step = 0; step < 11; ++step, value = std::nextafter(value, kInfinity))
      ASSERT_EQ(roundedComponent(value), std::lroundf(value * 255.0F)) << value;
  }
}

TEST(Conversions, ClampedStoreLooksAtTheLowSixteenBits) {
  EXPECT_EQ(clampedGrey(256.0F / 255.0F), 255);
  EXPECT_EQ(clampedGrey(2.0F), 255);
  EXPECT_EQ(clampedGrey(65536.0F / 255.0F), 0) << "the low 16 bits of 65536";
  EXPECT_EQ(clampedGrey(65540.0F / 255.0F), 4);
}

TEST(Conversions, UnclampedStoreWrapsModulo256) {
  const float floats[4] = {256.0F / 255.0F, 300.0F / 255.0F, -1.0F / 255.0F, 1.0F};
  uint8_t pixel[4];
  FloatARGBToIntARGB(floats, pixel);
  EXPECT_EQ((std::array{pixel[0], pixel[1], pixel[2], pixel[3]}), (std::array<uint8_t, 4>{0, 44, 255, 255}));
}

TEST(Conversions, WhatNoIntegerHoldsIsStoredTheSameEverywhere) {
  EXPECT_EQ(clampedGrey(kInfinity), 255);
  EXPECT_EQ(clampedGrey(1e30F), 255);
  EXPECT_EQ(clampedGrey(std::numeric_limits<float>::max()), 255);
  EXPECT_EQ(clampedGrey(kNaN), 0);
}

}  // namespace
