#include "media/inspection.h"

#include <gtest/gtest.h>

#include <thread>

#include "jpeg_maker.h"
#include "media/codecs/limits.h"
#include "png_maker.h"
#include "profiles.h"

namespace {

std::vector<uint8_t> tinyPng() { return makePng({.width = 2, .height = 1, .samples = {1, 2, 3, 4, 5, 6}}); }

TEST(Inspection, TellsFormatSizeDepthAndResolution) {
  JpegRecipe recipe{.width = 3, .height = 1, .samples = std::vector<uint8_t>(9, 80)};
  recipe.densityUnit = 1;
  recipe.density = 96;
  const auto file = makeJpeg(recipe);
  CGImageFileInfo info{};
  ASSERT_TRUE(CGImageInspectData(file.data(), file.size(), &info));
  EXPECT_STREQ(info.format, "JPEG");
  EXPECT_EQ(info.width, 3u);
  EXPECT_EQ(info.height, 1u);
  EXPECT_EQ(info.depth, 24);
  EXPECT_EQ(info.dotsPerInchX, 96);
  EXPECT_EQ(CGImageGetLastDecodeFault(), nullptr);
}

TEST(Inspection, TellsColoursAndAlpha) {
  CGImageFileInfo info{};
  const auto color = tinyPng();
  ASSERT_TRUE(CGImageInspectData(color.data(), color.size(), &info));
  EXPECT_EQ(info.colorComponents, 3u);
  EXPECT_FALSE(info.hasAlpha);
  EXPECT_STREQ(info.profileName, "");
  const auto gray =
      makeJpeg({.width = 2, .height = 1, .input = JCS_GRAYSCALE, .stored = JCS_GRAYSCALE, .samples = {7, 8}});
  ASSERT_TRUE(CGImageInspectData(gray.data(), gray.size(), &info));
  EXPECT_EQ(info.colorComponents, 1u);
  EXPECT_FALSE(info.hasAlpha);
  const auto alpha =
      makePng({.width = 1, .height = 1, .colourType = PNG_COLOR_TYPE_RGBA, .samples = {1, 2, 3, 4}});
  ASSERT_TRUE(CGImageInspectData(alpha.data(), alpha.size(), &info));
  EXPECT_EQ(info.colorComponents, 3u);
  EXPECT_TRUE(info.hasAlpha);
}

TEST(Inspection, NamesTheEmbeddedProfile) {
  CGImageFileInfo info{};
  const auto file = makePng(
      {.width = 1, .height = 1, .profile = profileBytes(cmsCreate_sRGBProfile()), .samples = {1, 2, 3}});
  ASSERT_TRUE(CGImageInspectData(file.data(), file.size(), &info));
  EXPECT_NE(std::string(info.profileName).find("sRGB"), std::string::npos) << info.profileName;
}

TEST(Inspection, TellsWhyADecodeFailed) {
  auto file = tinyPng();
  CGImageFileInfo info{};
  EXPECT_FALSE(CGImageInspectData(file.data(), file.size() - 20, &info));
  EXPECT_STREQ(CGImageGetLastDecodeFault(), "truncated");
  EXPECT_EQ(info.width, 0u);
  file[45] = static_cast<uint8_t>(~file[45]);
  EXPECT_FALSE(CGImageInspectData(file.data(), file.size(), &info));
  EXPECT_STREQ(CGImageGetLastDecodeFault(), "damaged");
  EXPECT_FALSE(CGImageInspectData("text", 4, &info));
  EXPECT_STREQ(CGImageGetLastDecodeFault(), "not an image this tool knows");
  EXPECT_FALSE(CGImageInspectData(nullptr, 0, nullptr));
}

TEST(Inspection, HoldsToTheLimitsThatAreSet) {
  CGImageDecodeLimits limits = CGImageGetDefaultDecodeLimits();
  limits.side = 1;
  CGImageSetDecodeLimits(&limits);
  const auto file = tinyPng();
  EXPECT_FALSE(CGImageInspectData(file.data(), file.size(), nullptr));
  EXPECT_STREQ(CGImageGetLastDecodeFault(), "too large");
  CGImageSetDecodeLimits(nullptr);
  EXPECT_TRUE(CGImageInspectData(file.data(), file.size(), nullptr));
}

TEST(Inspection, TheReasonBelongsToItsThread) {
  EXPECT_FALSE(CGImageInspectData("text", 4, nullptr));
  std::thread([] { EXPECT_EQ(CGImageGetLastDecodeFault(), nullptr); }).join();
  EXPECT_NE(CGImageGetLastDecodeFault(), nullptr);
}

}  // namespace
