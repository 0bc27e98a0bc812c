#include "graphics/color_convert.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "graphics/spaces.h"

namespace {

using cg::ColorConverter;
using cg::PixelOrder;
using testing_support::Space;
using Bytes = std::vector<uint8_t>;

std::optional<ColorConverter> converter(const Space &from, const Space &to,
                                        PixelOrder order = PixelOrder::argb) {
  return ColorConverter::make(from.get(), to.get(), order, kCGRenderingIntentDefault);
}

Bytes converted(const Space &from, const Space &to, Bytes pixels, size_t count, size_t bytesOut,
                PixelOrder order = PixelOrder::argb) {
  Bytes out(count * bytesOut);
  converter(from, to, order)->convert(pixels.data(), out.data(), count);
  return out;
}

class ColorConversion : public testing::Test {
 protected:
  static Space profiled(const cf::Ref<CFDataRef> &profile) {
    return Space(CGColorSpaceCreateWithICCProfile(profile.get()));
  }
  Space gray_{CGColorSpaceCreateDeviceGray()}, rgb_{CGColorSpaceCreateDeviceRGB()},
      cmyk_{CGColorSpaceCreateDeviceCMYK()};
  Space wide_ = profiled(testing_support::gammaProfile(1.8)),
        linearGray_ = profiled(testing_support::grayProfile(1.0));
};

TEST_F(ColorConversion, GrayWeighsTheStoredValuesOfEveryColour) {
  for (int r = 0; r < 256; r += 5)
    for (int g = 0; g < 256; g += 3)
      for (int b = 0; b < 256; ++b) {
        const double exact = 0.30 * r + 0.59 * g + 0.11 * b;
        const uint8_t gray =
            cg::grayOf(static_cast<uint8_t>(r), static_cast<uint8_t>(g), static_cast<uint8_t>(b));
        ASSERT_EQ(gray, static_cast<int>(std::floor(exact + 0.5 + 1e-9))) << r << ' ' << g << ' ' << b;
      }
}

TEST_F(ColorConversion, GrayRepeatsInAnyRGBAndIsOpaque) {
  EXPECT_EQ(converted(gray_, rgb_, {0, 7, 255}, 3, 4),
            (Bytes{255, 0, 0, 0, 255, 7, 7, 7, 255, 255, 255, 255}));
  EXPECT_EQ(converted(gray_, wide_, {7}, 1, 4), (Bytes{255, 7, 7, 7}));
  EXPECT_EQ(converted(gray_, rgb_, {7}, 1, 4, PixelOrder::rgba), (Bytes{7, 7, 7, 255}));
  EXPECT_TRUE(converter(gray_, rgb_)->isLinear());
}

TEST_F(ColorConversion, InksTakeLightAway) {
  EXPECT_EQ(converted(cmyk_, rgb_, {0, 0, 0, 0, 255, 0, 128, 0, 51, 102, 0, 128}, 3, 4),
            (Bytes{255, 255, 255, 255, 255, 0, 255, 127, 255, 102, 76, 127}));
  EXPECT_EQ(converted(cmyk_, rgb_, {255, 0, 128, 0}, 1, 4, PixelOrder::rgba), (Bytes{0, 255, 127, 255}));
  EXPECT_EQ(converted(cmyk_, gray_, {0, 255, 255, 0}, 1, 1), (Bytes{77}));
  EXPECT_FALSE(converter(cmyk_, rgb_)->isLinear());
}

TEST_F(ColorConversion, RGBOfAnyProfileIsWeighedAsStored) {
  EXPECT_EQ(converted(rgb_, gray_, {0, 100, 150, 200}, 1, 1), (Bytes{141}));
  EXPECT_EQ(converted(wide_, gray_, {0, 100, 150, 200}, 1, 1), (Bytes{141}));
}

TEST_F(ColorConversion, TheSameColoursNeedNothing) {
  EXPECT_TRUE(converter(rgb_, rgb_)->changesNothing());
  EXPECT_TRUE(converter(gray_, gray_)->changesNothing());
  EXPECT_TRUE(converter(linearGray_, gray_)->changesNothing());
  EXPECT_TRUE(converter(gray_, linearGray_)->changesNothing());
  EXPECT_TRUE(converter(wide_, wide_)->changesNothing());
  EXPECT_FALSE(converter(wide_, rgb_)->changesNothing());
  EXPECT_FALSE(converter(gray_, rgb_)->changesNothing());
  EXPECT_FALSE(converter(rgb_, gray_)->changesNothing());
  EXPECT_EQ(converted(rgb_, rgb_, {1, 2, 3, 4}, 1, 4), (Bytes{1, 2, 3, 4}));
}

TEST_F(ColorConversion, AlphaBytesStayBesideConvertedColours) {
  const Bytes out = converted(wide_, rgb_, {17, 100, 100, 100}, 1, 4);
  EXPECT_EQ(out[0], 17);
  EXPECT_NE(out[1], 100);
  EXPECT_EQ(converted(wide_, rgb_, {100, 100, 100, 17}, 1, 4, PixelOrder::rgba)[3], 17);
  Bytes inPlace = {17, 100, 100, 100};
  converter(wide_, rgb_)->convert(inPlace.data(), inPlace.data(), 1);
  EXPECT_EQ(inPlace, out);
}

TEST_F(ColorConversion, BlackAndWhiteStayBlackAndWhite) {
  EXPECT_EQ(converted(wide_, rgb_, {0, 0, 0, 0, 0, 255, 255, 255}, 2, 4),
            (Bytes{0, 0, 0, 0, 0, 255, 255, 255}));
  EXPECT_EQ(converted(rgb_, linearGray_, {0, 0, 0, 0, 0, 255, 255, 255}, 2, 1), (Bytes{0, 255}));
  EXPECT_EQ(converted(linearGray_, rgb_, {0, 255}, 2, 4), (Bytes{255, 0, 0, 0, 255, 255, 255, 255}));
}

TEST_F(ColorConversion, GrayLightIsCodedForTheDisplay) {
  const Bytes out = converted(linearGray_, rgb_, {1, 55}, 2, 4);
  EXPECT_NEAR(out[1], 12.7, 1);
  EXPECT_NEAR(out[5], 127.8, 1);
}

TEST_F(ColorConversion, ThereIsNoneIntoInksOrTables) {
  const uint8_t table[3] = {};
  const Space indexed(CGColorSpaceCreateIndexed(rgb_.get(), 0, table));
  EXPECT_FALSE(converter(rgb_, cmyk_));
  EXPECT_FALSE(converter(rgb_, indexed));
  EXPECT_FALSE(converter(indexed, rgb_));
}

}  // namespace
