#include "media/codecs/colour_engine.h"

#include <gtest/gtest.h>

#include "profiles.h"

namespace {

using codecs::ProfileInput;
using codecs::ToSrgb;

TEST(ToSrgb, BringsLinearGreyToTheSrgbEncoding) {
  const ToSrgb engine = ToSrgb::make(greyProfile(1.0), ProfileInput::grey);
  ASSERT_TRUE(engine);
  const uint8_t greys[] = {0, 55, 255};
  uint8_t colours[12] = {};
  engine.convert(greys, colours, 3);
  EXPECT_EQ(colours[0], 255);
  EXPECT_EQ(colours[1], 0);
  EXPECT_NEAR(colours[5], 128, 1);
  EXPECT_EQ(colours[9], 255);
  EXPECT_EQ(colours[10], 255);
}

TEST(ToSrgb, IsEmptyForAProfileOfOtherColoursOrNone) {
  EXPECT_FALSE(ToSrgb::make(swappedRgbProfile(), ProfileInput::cmyk));
  EXPECT_FALSE(ToSrgb::make(blackInkProfile(), ProfileInput::grey));
  EXPECT_FALSE(ToSrgb::make({}, ProfileInput::grey));
  const std::vector<uint8_t> zeros(1000);
  EXPECT_FALSE(ToSrgb::make(zeros, ProfileInput::grey));
}

TEST(ToSrgb, SurvivesAProfileThatIsDamagedAnywhere) {
  const std::vector<uint8_t> profile = blackInkProfile();
  const uint8_t ink[8] = {10, 20, 30, 40, 250, 0, 0, 0};
  for (size_t at = 0; at < profile.size(); at += 7) {
    std::vector<uint8_t> damaged = profile;
    damaged[at] = static_cast<uint8_t>(damaged[at] ^ 0xFF);
    if (const ToSrgb engine = ToSrgb::make(damaged, ProfileInput::cmyk)) {
      uint8_t colours[8] = {};
      engine.convert(ink, colours, 2);
      EXPECT_EQ(colours[0], 255);
    }
  }
}

}  // namespace
