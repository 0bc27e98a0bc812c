#include <gtest/gtest.h>

#include "graphics/image.h"
#include "graphics/profile.h"
#include "image_support.h"
#include "jpeg_maker.h"
#include "media/codecs/limits.h"
#include "media/inspection.h"
#include "png_maker.h"
#include "profiles.h"

namespace {

cf::Ref<CGImageRef> decodePng(const std::vector<uint8_t> &file) {
  return cf::adopt(
      CGImageCreateWithPNGDataProvider(providerOf(file).get(), nullptr, true, kCGRenderingIntentDefault));
}

cf::Ref<CGImageRef> decodeJpeg(const std::vector<uint8_t> &file) {
  return cf::adopt(
      CGImageCreateWithJPEGDataProvider(providerOf(file).get(), nullptr, true, kCGRenderingIntentDefault));
}

cf::Ref<CGColorSpaceRef> systemSpace() {
  CMProfileRef profile = nullptr;
  EXPECT_EQ(CMGetSystemProfile(&profile), 0);
  auto space = cf::adopt(CGColorSpaceCreateWithPlatformColorSpace(profile));
  CMCloseProfile(profile);
  return space;
}

TEST(ImageDecoding, GreyIsEightBitDeviceGrey) {
  PngRecipe recipe{.width = 2, .height = 1, .colourType = PNG_COLOR_TYPE_GRAY, .samples = {7, 250}};
  const auto image = decodePng(makePng(recipe));
  ASSERT_TRUE(image);
  EXPECT_EQ(CGImageGetWidth(image.get()), 2u);
  EXPECT_EQ(CGImageGetHeight(image.get()), 1u);
  EXPECT_EQ(CGImageGetBitsPerComponent(image.get()), 8u);
  EXPECT_EQ(CGImageGetBitsPerPixel(image.get()), 8u);
  EXPECT_EQ(CGImageGetBytesPerRow(image.get()), 2u);
  EXPECT_EQ(CGImageGetAlphaInfo(image.get()), kCGImageAlphaNone);
  EXPECT_EQ(CGColorSpaceGetType(CGImageGetColorSpace(image.get())), kCGColorSpaceTypeDeviceGray);
  EXPECT_EQ(pixelsOf(image.get()), (std::vector<uint8_t>{7, 250}));
}

TEST(ImageDecoding, ColourIsSkipFirstInTheDisplaysSpace) {
  const auto png = decodePng(makePng({.width = 1, .height = 1, .samples = {10, 20, 30}}));
  ASSERT_TRUE(png);
  EXPECT_EQ(CGImageGetBitsPerPixel(png.get()), 32u);
  EXPECT_EQ(CGImageGetAlphaInfo(png.get()), kCGImageAlphaNoneSkipFirst);
  EXPECT_EQ(pixelsOf(png.get()), (std::vector<uint8_t>{255, 10, 20, 30}));
  EXPECT_TRUE(CFEqual(CGImageGetColorSpace(png.get()), systemSpace().get()));
  const auto jpeg = decodeJpeg(makeJpeg({.width = 1, .height = 1, .samples = {100, 100, 100}}));
  ASSERT_TRUE(jpeg);
  EXPECT_EQ(CGImageGetAlphaInfo(jpeg.get()), kCGImageAlphaNoneSkipFirst);
  EXPECT_TRUE(CFEqual(CGImageGetColorSpace(jpeg.get()), systemSpace().get()));
}

TEST(ImageDecoding, AlphaComesFirstAndStraight) {
  PngRecipe recipe{
      .width = 1, .height = 1, .colourType = PNG_COLOR_TYPE_RGB_ALPHA, .samples = {200, 100, 50, 3}};
  const auto image = decodePng(makePng(recipe));
  ASSERT_TRUE(image);
  EXPECT_EQ(CGImageGetAlphaInfo(image.get()), kCGImageAlphaFirst);
  EXPECT_EQ(pixelsOf(image.get()), (std::vector<uint8_t>{3, 200, 100, 50}));
}

TEST(ImageDecoding, AnEmbeddedProfileBecomesTheSpace) {
  PngRecipe colour{.width = 1, .height = 1, .samples = {10, 20, 30}};
  colour.profile = swappedRgbProfile();
  const auto image = decodePng(makePng(colour));
  ASSERT_TRUE(image);
  const auto profile = cf::adopt(CGColorSpaceCopyICCProfile(CGImageGetColorSpace(image.get())));
  EXPECT_EQ(bytesOf(profile.get()), colour.profile);
  JpegRecipe grey{.width = 1, .height = 1, .input = JCS_GRAYSCALE, .stored = JCS_GRAYSCALE, .samples = {9}};
  grey.profile = greyProfile(1.8);
  const auto greyImage = decodeJpeg(makeJpeg(grey));
  ASSERT_TRUE(greyImage);
  EXPECT_EQ(CGColorSpaceGetType(CGImageGetColorSpace(greyImage.get())), kCGColorSpaceTypeCalibratedGray);
}

TEST(ImageDecoding, AProfileThatCannotBeUsedGivesWayToTheDefault) {
  JpegRecipe recipe{.width = 1, .height = 1, .samples = {1, 2, 3}};
  recipe.profile = swappedRgbProfile();
  std::fill(recipe.profile.begin() + 128, recipe.profile.end(), uint8_t{0});
  const auto image = decodeJpeg(makeJpeg(recipe));
  ASSERT_TRUE(image);
  EXPECT_TRUE(CFEqual(CGImageGetColorSpace(image.get()), systemSpace().get()));
}

TEST(ImageDecoding, ArgumentsAreKeptInTheImage) {
  const CGFloat decode[] = {1, 0};
  PngRecipe recipe{.width = 1, .height = 1, .colourType = PNG_COLOR_TYPE_GRAY, .samples = {1}};
  const auto image = cf::adopt(CGImageCreateWithPNGDataProvider(providerOf(makePng(recipe)).get(), decode,
                                                                false, kCGRenderingIntentSaturation));
  ASSERT_TRUE(image);
  ASSERT_NE(CGImageGetDecode(image.get()), nullptr);
  EXPECT_EQ(CGImageGetDecode(image.get())[0], 1);
  EXPECT_FALSE(CGImageGetShouldInterpolate(image.get()));
  EXPECT_EQ(CGImageGetRenderingIntent(image.get()), kCGRenderingIntentSaturation);
}

TEST(ImageDecoding, TheResolutionIsKeptBesideTheImage) {
  PngRecipe recipe{.width = 1, .height = 1, .samples = {1, 2, 3}};
  recipe.dotsPerMetre = 11811;
  const auto image = decodePng(makePng(recipe));
  ASSERT_TRUE(image);
  EXPECT_NEAR(cg::imageResolution(image.get()).x, 300, 0.01);
}

TEST(ImageDecoding, OtherFormatsAndDamageGiveNothingAndAReason) {
  const auto png = makePng({.width = 1, .height = 1, .samples = {1, 2, 3}});
  EXPECT_FALSE(decodeJpeg(png));
  EXPECT_STREQ(CGImageGetLastDecodeFault(), "not an image this tool knows");
  EXPECT_FALSE(decodePng({png.begin(), png.end() - 20}));
  EXPECT_STREQ(CGImageGetLastDecodeFault(), "truncated");
  EXPECT_FALSE(decodePng({}));
  EXPECT_EQ(CGImageCreateWithPNGDataProvider(nullptr, nullptr, true, kCGRenderingIntentDefault), nullptr);
  EXPECT_TRUE(decodePng(png));
  EXPECT_EQ(CGImageGetLastDecodeFault(), nullptr);
}

TEST(ImageDecoding, HoldsToTheLimitsThatAreSet) {
  const auto png = makePng({.width = 2, .height = 1, .samples = {1, 2, 3, 4, 5, 6}});
  CGImageDecodeLimits limits = CGImageGetDefaultDecodeLimits();
  limits.pixels = 1;
  CGImageSetDecodeLimits(&limits);
  EXPECT_FALSE(decodePng(png));
  CGImageSetDecodeLimits(nullptr);
  EXPECT_TRUE(decodePng(png));
}

TEST(ImageDecoding, ImagesWithoutAProfileShareOneSpace) {
  const auto file = makePng({.width = 1, .height = 1, .samples = {1, 2, 3}});
  const auto decodeOne = [&] {
    return cf::adopt(
        CGImageCreateWithPNGDataProvider(providerOf(file).get(), nullptr, true, kCGRenderingIntentDefault));
  };
  const auto first = decodeOne(), second = decodeOne();
  ASSERT_TRUE(first && second);
  EXPECT_EQ(CGImageGetColorSpace(first.get()), CGImageGetColorSpace(second.get()));
}

}  // namespace
