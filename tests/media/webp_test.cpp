#include "media/codecs/webp.h"

#include <gtest/gtest.h>
#include <webp/decode.h>

#include <random>

#include "decoding_checks.h"
#include "profiles.h"
#include "webp_maker.h"

namespace {

using codecs::Fault;
using codecs::PixelLayout;
using decoding_checks::Argb;
using Vector = std::vector<uint8_t>;

const CGImageDecodeLimits kLimits = CGImageGetDefaultDecodeLimits();

auto decoded(const WebpRecipe &recipe) { return codecs::decodeWebp(makeWebp(recipe), kLimits); }

WebpRecipe randomRecipe(bool lossless, bool alpha) {
  WebpRecipe recipe{.width = 23, .height = 17, .lossless = lossless};
  std::mt19937 random(7);
  for (int i = 0; i < 23 * 17; ++i)
    recipe.samples.push_back(static_cast<uint32_t>(random()) | (alpha ? 0 : 0xFF000000));
  return recipe;
}

Argb argbOf(uint32_t sample) {
  return {static_cast<uint8_t>(sample >> 24), static_cast<uint8_t>(sample >> 16),
          static_cast<uint8_t>(sample >> 8), static_cast<uint8_t>(sample)};
}

std::vector<Argb> expectedPixels(const WebpRecipe &recipe) {
  std::vector<Argb> pixels;
  for (const uint32_t sample : recipe.samples) pixels.push_back(argbOf(sample));
  return pixels;
}

TEST(Webp, LosslessPixelsComeBackWithTheirAlphaStraight) {
  const WebpRecipe opaque = randomRecipe(true, false), clear = randomRecipe(true, true);
  decoding_checks::expectImage(decoded(opaque), 23, 17, PixelLayout::xrgb32, expectedPixels(opaque));
  decoding_checks::expectImage(decoded(clear), 23, 17, PixelLayout::argb32, expectedPixels(clear));
}

TEST(Webp, LossyPixelsAreThoseThatTheLibraryGives) {
  for (const bool alpha : {false, true}) {
    const Vector file = makeWebp(randomRecipe(false, alpha));
    int width = 0, height = 0;
    uint8_t *const rgba = WebPDecodeRGBA(file.data(), file.size(), &width, &height);
    ASSERT_NE(rgba, nullptr);
    std::vector<Argb> pixels;
    for (int i = 0; i < width * height; ++i)
      pixels.push_back({rgba[4 * i + 3], rgba[4 * i], rgba[4 * i + 1], rgba[4 * i + 2]});
    WebPFree(rgba);
    decoding_checks::expectImage(codecs::decodeWebp(file, kLimits), 23, 17,
                                 alpha ? PixelLayout::argb32 : PixelLayout::xrgb32, pixels);
  }
}

TEST(Webp, TheFirstFrameOfAnAnimationLiesAtItsPlace) {
  WebpRecipe recipe = randomRecipe(true, true);
  recipe.animated = true;
  decoding_checks::expectImage(decoded(recipe), 23, 17, PixelLayout::argb32, expectedPixels(recipe));
  recipe.canvasWidth = 40;
  recipe.canvasHeight = 30;
  recipe.left = 6;
  recipe.top = 12;
  std::vector<Argb> pixels(40 * 30, Argb{0, 0, 0, 0});
  for (size_t y = 0; y < 17; ++y) {
    for (size_t x = 0; x < 23; ++x) pixels[(y + 12) * 40 + x + 6] = argbOf(recipe.samples[y * 23 + x]);
  }
  decoding_checks::expectImage(decoded(recipe), 40, 30, PixelLayout::argb32, pixels);
}

TEST(Webp, AnOpaqueFrameThatLeavesSomeOfTheCanvasFreeHasAlpha) {
  WebpRecipe recipe = randomRecipe(true, false);
  recipe.animated = true;
  recipe.canvasWidth = 24;
  const auto read = decoded(recipe);
  ASSERT_EQ(read.fault, Fault::none);
  EXPECT_EQ(read.value.layout, PixelLayout::argb32);
  const auto pixels = decoding_checks::pixelsOf(read.value);
  EXPECT_EQ(pixels[22][0], 255);
  EXPECT_EQ(pixels[23][0], 0);
}

TEST(Webp, AnEmbeddedProfileIsKept) {
  WebpRecipe recipe = randomRecipe(true, true);
  recipe.profile = swappedRgbProfile();
  auto read = decoded(recipe);
  ASSERT_EQ(read.fault, Fault::none);
  EXPECT_EQ(read.value.profile, recipe.profile);
  recipe.profile = greyProfile(1.8);
  read = decoded(recipe);
  ASSERT_EQ(read.fault, Fault::none);
  EXPECT_TRUE(read.value.profile.empty());
}

TEST(Webp, AFrameThatSticksOutOfTheCanvasIsDamaged) {
  WebpRecipe recipe = randomRecipe(true, true);
  recipe.animated = true;
  recipe.left = 2;
  EXPECT_EQ(decoded(recipe).fault, Fault::damaged);
}

TEST(Webp, CanvasesUpToTheTypesLimitAreRefused) {
  WebpRecipe recipe = randomRecipe(true, true);
  recipe.animated = true;
  for (const auto &[width, height] : {std::pair{1u << 24, 1u}, {1u << 24, 255u}, {40000u, 40000u}}) {
    recipe.canvasWidth = width;
    recipe.canvasHeight = std::max(height, recipe.height);
    EXPECT_EQ(decoded(recipe).fault, Fault::tooLarge) << width << " x " << height;
  }
  recipe.canvasWidth = recipe.canvasHeight = 16000;
  EXPECT_EQ(decoded(recipe).fault, Fault::truncated);  // blank by far the most of it
}

TEST(Webp, LosslessFramesCountTwice) {
  const Vector file = makeWebp(randomRecipe(true, false));
  CGImageDecodeLimits limits = kLimits;
  limits.memoryBytes = 2 * 4 * 23 * 17;
  EXPECT_EQ(codecs::decodeWebp(file, limits).fault, Fault::none);
  --limits.memoryBytes;
  EXPECT_EQ(codecs::decodeWebp(file, limits).fault, Fault::tooLarge);
}

std::vector<WebpRecipe> sturdyRecipes() {
  std::vector<WebpRecipe> recipes{randomRecipe(true, true), randomRecipe(false, false),
                                  randomRecipe(false, true), randomRecipe(true, false)};
  recipes[3].animated = true;
  recipes[3].canvasWidth = 30;
  recipes[3].profile = swappedRgbProfile();
  return recipes;
}

TEST(Webp, EveryTruncationFails) {
  for (const WebpRecipe &recipe : sturdyRecipes()) {
    const Vector file = makeWebp(recipe);
    decoding_checks::expectEveryTruncationFails(codecs::decodeWebp, file, 4, file.size());
  }
}

TEST(Webp, FlippedBytesNeverGiveHalfAnImage) {
  for (const WebpRecipe &recipe : sturdyRecipes())
    decoding_checks::expectFlippedBytesAreHarmless(codecs::decodeWebp, makeWebp(recipe));
}

TEST(Webp, LimitsAreHeldToTheLastPixel) {
  decoding_checks::expectLimitsAreHeld(codecs::decodeWebp, makeWebp(randomRecipe(false, true)), 23, 17);
}

TEST(Webp, OtherBytesAreNotClaimed) {
  EXPECT_EQ(codecs::decodeWebp({}, kLimits).fault, Fault::unknownFormat);
  const Vector sound{'R', 'I', 'F', 'F', 4, 0, 0, 0, 'W', 'A', 'V', 'E', 0, 0};
  EXPECT_EQ(codecs::scoreWebp(sound), 0);
}

}  // namespace
