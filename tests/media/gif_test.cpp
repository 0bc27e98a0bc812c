#include "media/codecs/gif.h"

#include <gtest/gtest.h>

#include <random>
#include <string_view>

#include "decoding_checks.h"
#include "gif_maker.h"
#include "profiles.h"

namespace {

using codecs::Fault;
using codecs::PixelLayout;
using decoding_checks::Argb;
using Vector = std::vector<uint8_t>;

const CGImageDecodeLimits kLimits = CGImageGetDefaultDecodeLimits();

auto decoded(const GifRecipe &recipe) { return codecs::decodeGif(makeGif(recipe), kLimits); }

GifRecipe randomRecipe(unsigned bits, bool interlaced = false) {
  GifRecipe recipe{
      .canvasWidth = 21, .canvasHeight = 19, .width = 21, .height = 19, .interlaced = interlaced};
  std::mt19937 random(bits);
  for (unsigned i = 0; i < 1u << bits; ++i)
    recipe.palette.push_back(static_cast<uint32_t>(random()) & 0xFFFFFF);
  for (int i = 0; i < 21 * 19; ++i)
    recipe.samples.push_back(
        static_cast<uint8_t>(random() % 4 ? i / 40 & ((1 << bits) - 1) : random() & ((1u << bits) - 1)));
  return recipe;
}

Argb expectedPixel(const GifRecipe &recipe, uint32_t x, uint32_t y) {
  const uint32_t column = x - recipe.left, row = y - recipe.top;
  if (column >= recipe.width || row >= recipe.height) return {0, 0, 0, 0};
  const uint8_t index = recipe.samples[row * recipe.width + column];
  const uint32_t colour = recipe.palette[index];
  return {static_cast<uint8_t>(index == recipe.transparent ? 0 : 255), static_cast<uint8_t>(colour >> 16),
          static_cast<uint8_t>(colour >> 8), static_cast<uint8_t>(colour)};
}

void expectReadsAsMade(const GifRecipe &recipe, PixelLayout layout) {
  std::vector<Argb> pixels;
  for (uint32_t y = 0; y < recipe.canvasHeight; ++y) {
    for (uint32_t x = 0; x < recipe.canvasWidth; ++x) pixels.push_back(expectedPixel(recipe, x, y));
  }
  decoding_checks::expectImage(decoded(recipe), recipe.canvasWidth, recipe.canvasHeight, layout, pixels);
}

TEST(Gif, EveryDepthReadsInterlacedOrNotWithEitherKindOfPalette) {
  for (unsigned bits = 1; bits <= 8; ++bits) {
    for (const bool interlaced : {false, true}) {
      SCOPED_TRACE(testing::Message() << bits << " bits, interlaced " << interlaced);
      GifRecipe recipe = randomRecipe(bits, interlaced);
      expectReadsAsMade(recipe, PixelLayout::xrgb32);
      recipe.localColours = true;
      expectReadsAsMade(recipe, PixelLayout::xrgb32);
    }
  }
}

TEST(Gif, InterlacedFramesOfAnyHeightFallIntoPlace) {
  GifRecipe recipe = randomRecipe(8, true);
  for (uint32_t height = 1; height <= 19; ++height) {
    recipe.canvasHeight = recipe.height = height;
    expectReadsAsMade(recipe, PixelLayout::xrgb32);
  }
}

TEST(Gif, TheTransparentIndexKeepsItsColourWithoutAnyAlpha) {
  for (const int index : {0, 3, 255}) {
    GifRecipe recipe = randomRecipe(8);
    recipe.transparent = index;
    expectReadsAsMade(recipe, PixelLayout::argb32);
  }
}

TEST(Gif, ATransparentIndexBehindThePaletteStillMeansAlpha) {
  GifRecipe recipe = randomRecipe(2);
  recipe.transparent = 9;
  expectReadsAsMade(recipe, PixelLayout::argb32);
}

TEST(Gif, AFrameLiesAtItsPlaceOnATransparentCanvas) {
  GifRecipe recipe = randomRecipe(4);
  recipe.canvasWidth = 40;
  recipe.canvasHeight = 30;
  recipe.left = 5;
  recipe.top = 7;
  expectReadsAsMade(recipe, PixelLayout::argb32);
}

TEST(Gif, WhatSticksOutOfTheCanvasIsCutOff) {
  GifRecipe recipe = randomRecipe(4, true);
  recipe.canvasWidth = 20;
  recipe.canvasHeight = 10;
  expectReadsAsMade(recipe, PixelLayout::xrgb32);
  recipe.left = 15;
  recipe.top = 8;
  expectReadsAsMade(recipe, PixelLayout::argb32);
  recipe.left = 20;
  recipe.top = 10;
  expectReadsAsMade(recipe, PixelLayout::argb32);
  recipe.left = recipe.top = 60000;
  expectReadsAsMade(recipe, PixelLayout::argb32);
}

TEST(Gif, ACanvasWithoutASizeIsAsLargeAsItsFrame) {
  GifRecipe recipe = randomRecipe(4);
  recipe.left = 2;
  recipe.canvasWidth = recipe.canvasHeight = 0;
  const auto read = decoded(recipe);
  ASSERT_EQ(read.fault, Fault::none);
  EXPECT_EQ(read.value.width, 23u);
  EXPECT_EQ(read.value.height, 19u);
}

TEST(Gif, OnlyTheFirstFrameIsRead) {
  GifRecipe recipe = randomRecipe(4);
  const Vector one = makeGif(recipe);
  recipe.frames = 3;
  Vector three = makeGif(recipe);
  EXPECT_EQ(codecs::decodeGif(three, kLimits).fault, Fault::none);
  three.resize(one.size() + 5);  // in the middle of the second
  EXPECT_EQ(codecs::decodeGif(three, kLimits).fault, Fault::none);
}

TEST(Gif, AnEmbeddedProfileIsKept) {
  GifRecipe recipe = randomRecipe(4);
  recipe.profile = swappedRgbProfile();
  auto read = decoded(recipe);
  ASSERT_EQ(read.fault, Fault::none);
  EXPECT_EQ(read.value.profile, recipe.profile);
  CGImageDecodeLimits limits = kLimits;
  limits.profileBytes = static_cast<uint32_t>(recipe.profile.size()) - 1;
  read = codecs::decodeGif(makeGif(recipe), limits);
  ASSERT_EQ(read.fault, Fault::none);
  EXPECT_TRUE(read.value.profile.empty());
}

TEST(Gif, AFrameWithoutAnyPaletteIsDamaged) {
  Vector file = makeGif(randomRecipe(1));
  ASSERT_EQ(file[10] & 0x87, 0x80);
  file[10] = 0;
  file.erase(file.begin() + 13, file.begin() + 19);
  EXPECT_EQ(codecs::decodeGif(file, kLimits).fault, Fault::damaged);
}

TEST(Gif, AFileWithoutFramesIsDamaged) {
  const Vector file{'G', 'I', 'F', '8', '9', 'a', 5, 0, 5, 0, 0, 0, 0, ';'};
  EXPECT_EQ(codecs::decodeGif(file, kLimits).fault, Fault::damaged);
}

// The place of the frame's description, which starts with a comma.
size_t frameAt(const Vector &file) {
  size_t at = 13 + 6;  // behind the header and a palette of two
  while (file[at] != ',') ++at;
  return at;
}

TEST(Gif, SizesUpToTheTypesLimitAreRefused) {
  const Vector file = makeGif(randomRecipe(1));
  const size_t frame = frameAt(file);
  const auto faultAt = [&](int canvas, int side) {
    Vector changed = file;
    for (const size_t at : {size_t{6}, size_t{8}, frame + 5, frame + 7}) {
      changed[at] = static_cast<uint8_t>(at < 10 ? canvas : side);
      changed[at + 1] = static_cast<uint8_t>((at < 10 ? canvas : side) >> 8);
    }
    return codecs::decodeGif(changed, kLimits).fault;
  };
  EXPECT_EQ(faultAt(65535, 65535), Fault::tooLarge);
  EXPECT_EQ(faultAt(65535, 1), Fault::tooLarge);
  EXPECT_EQ(faultAt(19, 65535), Fault::tooLarge);
  EXPECT_EQ(faultAt(19, 16000), Fault::truncated);
  EXPECT_EQ(faultAt(16000, 19), Fault::truncated);  // blank by far the most of it
  EXPECT_EQ(faultAt(19, 0), Fault::damaged);
}

TEST(Gif, EndlessCommentsEndWithTheFile) {
  Vector file = makeGif(randomRecipe(1));
  file.resize(13 + 6);
  for (int i = 0; i < 20000; ++i) file.insert(file.end(), {'!', 0xFE, 1, 'x', 0});
  EXPECT_EQ(codecs::decodeGif(file, kLimits).fault, Fault::truncated);
}

std::vector<GifRecipe> sturdyRecipes() {
  std::vector<GifRecipe> recipes{randomRecipe(1), randomRecipe(4, true), randomRecipe(8)};
  recipes[0].transparent = 1;
  recipes[1].localColours = true;
  recipes[1].canvasWidth = 30;
  recipes[2].profile = greyProfile(1.8);
  return recipes;
}

// Behind the last block of pixels comes an empty one that ends them, and the mark that ends the file.
TEST(Gif, EveryTruncationFails) {
  for (const GifRecipe &recipe : sturdyRecipes()) {
    const Vector file = makeGif(recipe);
    decoding_checks::expectEveryTruncationFails(codecs::decodeGif, file, 4, file.size() - 1);
  }
}

TEST(Gif, FlippedBytesNeverGiveHalfAnImage) {
  for (const GifRecipe &recipe : sturdyRecipes())
    decoding_checks::expectFlippedBytesAreHarmless(codecs::decodeGif, makeGif(recipe));
}

TEST(Gif, LimitsAreHeldToTheLastPixel) {
  decoding_checks::expectLimitsAreHeld(codecs::decodeGif, makeGif(randomRecipe(4)), 21, 19);
}

TEST(Gif, OtherBytesAreNotClaimed) {
  EXPECT_EQ(codecs::decodeGif({}, kLimits).fault, Fault::unknownFormat);
  const std::string_view text = "GIF is a format";
  EXPECT_EQ(codecs::scoreGif({reinterpret_cast<const uint8_t *>(text.data()), text.size()}), 0);
}

}  // namespace
