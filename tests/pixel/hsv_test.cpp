#include <DravKit/DravKit.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <random>

namespace {

using Color = std::array<float, 3>;

Color hsvOf(Color rgb) {
  DRAVConvertRGBToHSV(rgb.data());
  return rgb;
}

Color rgbOf(Color hsv) {
  DRAVConvertHSVToRGB(hsv.data());
  return hsv;
}

TEST(RGBToHSV, RedIsTheHueZero) { EXPECT_EQ(hsvOf({1, 0, 0}), (Color{0, 1, 1})); }
TEST(RGBToHSV, YellowGreenCyanBlueAndMagentaAreSixtyDegreesApart) {
  EXPECT_EQ(hsvOf({1, 1, 0}), (Color{60, 1, 1}));
  EXPECT_EQ(hsvOf({0, 1, 0}), (Color{120, 1, 1}));
  EXPECT_EQ(hsvOf({0, 1, 1}), (Color{180, 1, 1}));
  EXPECT_EQ(hsvOf({0, 0, 1}), (Color{240, 1, 1}));
  EXPECT_EQ(hsvOf({1, 0, 1}), (Color{-60, 1, 1}));
}
TEST(RGBToHSV, AHueBelowRedStaysNegative) { EXPECT_EQ(hsvOf({1, 0, 0.5F}), (Color{-30, 1, 1})); }
TEST(RGBToHSV, GreyHasNeitherHueNorSaturation) {
  EXPECT_EQ(hsvOf({0.5F, 0.5F, 0.5F}), (Color{0, 0, 0.5F}));
  EXPECT_EQ(hsvOf({0, 0, 0}), (Color{0, 0, 0}));
}
TEST(RGBToHSV, SaturationIsTheDifferenceItself) {
  const Color hsv = hsvOf({0.2F, 0.4F, 0.2F});
  EXPECT_EQ(hsv[1], 0.4F - 0.2F);
  EXPECT_EQ(hsv[0], 120.0F);
  EXPECT_EQ(hsv[2], 0.4F);
}
TEST(RGBToHSV, OfEqualLargestComponentsRedWinsThenGreen) {
  EXPECT_EQ(hsvOf({1, 1, 0.25F})[0], 60.0F);
  EXPECT_EQ(hsvOf({0.25F, 1, 1})[0], 180.0F);
}
TEST(RGBToHSV, TheSextantIsAddedInDoublePrecision) {
  std::mt19937 random(3);
  std::uniform_real_distribution<float> component(0.0F, 0.5F);
  int differing = 0;
  for (int i = 0; i < 1000; ++i) {
    const float red = component(random), blue = component(random), green = 0.75F;
    const float share = (blue - red) / (green - std::fmin(red, blue));
    const auto expected = static_cast<float>((static_cast<double>(share) + 2.0) * 60.0);
    ASSERT_EQ(hsvOf({red, green, blue})[0], expected);
    differing += (share + 2.0F) * 60.0F != expected;
  }
  EXPECT_GT(differing, 100);
}
TEST(RGBToHSV, NaNIsPassedOverWhereThereIsAnythingElse) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  EXPECT_EQ(hsvOf({0.25F, 0.5F, nan})[1], 0.25F);
  EXPECT_EQ(hsvOf({0.25F, 0.5F, nan})[2], 0.5F);
  EXPECT_TRUE(std::isnan(hsvOf({0.25F, 0.5F, nan})[0]));
}
TEST(RGBToHSV, NothingButNaNHasTheHueZero) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const Color hsv = hsvOf({nan, nan, nan});
  EXPECT_EQ(hsv[0], 0.0F);
  EXPECT_TRUE(std::isnan(hsv[1]));
  EXPECT_TRUE(std::isnan(hsv[2]));
}

TEST(HSVToRGB, AllThreeAreReadFromTheFirstElement) {
  for (const float other : {0.0F, 0.3F, 1.0F, 77.0F, std::numeric_limits<float>::quiet_NaN()}) {
    const Color rgb = rgbOf({0.5F, other, -other});
    EXPECT_EQ(rgb[0], 0.5F);
    EXPECT_NEAR(rgb[1], 0.2520833F, 1e-7F);
    EXPECT_EQ(rgb[2], 0.25F);
  }
}
TEST(HSVToRGB, ZeroIsBlackWhateverElseIsThere) {
  EXPECT_EQ(rgbOf({0, 1, 1}), (Color{0, 0, 0}));
  EXPECT_TRUE(std::signbit(rgbOf({-0.0F, 1, 1})[2]));
}

struct Sextant {
  float hue;
  int value, p, other;  // where value and p go, and where q or t goes
  bool isQ;
};
// Even sextants rise to the next one (t), odd ones fall (q).
constexpr Sextant kSextants[] = {{30, 0, 2, 1, false},    {90, 1, 2, 0, true},   {150, 1, 0, 2, false},
                                 {210, 2, 0, 1, true},    {270, 2, 1, 0, false}, {330, 0, 1, 2, true},
                                 {59.9F, 0, 2, 1, false}, {60, 1, 2, 0, true},   {120, 1, 0, 2, false},
                                 {180, 2, 0, 1, true},    {240, 2, 1, 0, false}, {300, 0, 1, 2, true}};

TEST(HSVToRGB, EachSextantPlacesItsThreeValues) {
  for (const Sextant &sextant : kSextants) {
    const float h = sextant.hue;
    const auto i = static_cast<float>(std::floor(static_cast<double>(h) / 60.0));
    const auto f = static_cast<float>(static_cast<double>(h) / 60.0 - static_cast<double>(i));
    const float p = (1.0F - h) * h, q = (1.0F - h * f) * h, t = (1.0F - (1.0F - f) * h) * h;
    const Color rgb = rgbOf({h, 0, 0});
    EXPECT_EQ(rgb[static_cast<size_t>(sextant.value)], h) << h;
    EXPECT_EQ(rgb[static_cast<size_t>(sextant.p)], p) << h;
    EXPECT_EQ(rgb[static_cast<size_t>(sextant.other)], sextant.isQ ? q : t) << h;
  }
}
TEST(HSVToRGB, TheSextantIsFoundInDoublePrecision) {
  std::mt19937 random(5);
  std::uniform_real_distribution<float> hue(0.0F, 59.0F);
  int differing = 0;
  for (int i = 0; i < 1000; ++i) {
    const float h = hue(random);
    const auto f = static_cast<float>(static_cast<double>(h) / 60.0);
    ASSERT_EQ(rgbOf({h, 0, 0}), (Color{h, (1.0F - (1.0F - f) * h) * h, (1.0F - h) * h})) << h;
  }
  std::uniform_real_distribution<float> later(60.0F, 119.0F);
  for (int i = 0; i < 1000; ++i) {
    const float h = later(random);
    const auto f = static_cast<float>(static_cast<double>(h) / 60.0 - 1.0);
    ASSERT_EQ(rgbOf({h, 0, 0}), (Color{(1.0F - h * f) * h, h, (1.0F - h) * h})) << h;
    differing += h / 60.0F - 1.0F != f;
  }
  EXPECT_GT(differing, 100);
}
TEST(HSVToRGB, AHueOutsideTheCircleIsBlack) {
  const float inf = std::numeric_limits<float>::infinity();
  for (const float hue :
       {-0.25F, -60.0F, 360.0F, 1000.0F, inf, -inf, std::numeric_limits<float>::quiet_NaN()}) {
    EXPECT_EQ(rgbOf({hue, 1, 1}), (Color{0, 0, 0})) << hue;
  }
}
TEST(HSVToRGB, TheLastHueOfTheCircleIsInIt) {
  const float hue = std::nextafterf(360.0F, 0.0F);
  // hue / 60 is below 6 in double precision, and stays in the sextant 5.
  EXPECT_EQ(rgbOf({hue, 1, 1})[0], hue);
}

TEST(Conversions, WithoutAColourDoNothing) {
  DRAVConvertRGBToHSV(nullptr);
  DRAVConvertHSVToRGB(nullptr);
}
TEST(Conversions, LeaveTheFourthComponentAlone) {
  float color[] = {0.25F, 0.5F, 0.75F, 0.125F};
  DRAVConvertRGBToHSV(color);
  EXPECT_EQ(color[3], 0.125F);
  DRAVConvertHSVToRGB(color);
  EXPECT_EQ(color[3], 0.125F);
}

}  // namespace
