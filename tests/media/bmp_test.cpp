#include "media/codecs/bmp.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>

#include "bmp_maker.h"
#include "decoding_checks.h"
#include "profiles.h"

namespace {

using codecs::Fault;
using codecs::PixelLayout;
using decoding_checks::Argb;
using Vector = std::vector<uint8_t>;

const CGImageDecodeLimits kLimits = CGImageGetDefaultDecodeLimits();

auto decoded(const BmpRecipe &recipe) { return codecs::decodeBmp(makeBmp(recipe), kLimits); }

uint8_t channelOf(uint32_t pixel, uint32_t mask, uint8_t otherwise) {
  if (mask == 0) return otherwise;
  const double most = mask >> std::countr_zero(mask);
  return static_cast<uint8_t>(std::lround((pixel & mask) / std::exp2(std::countr_zero(mask)) * 255 / most));
}

Argb expectedPixel(const BmpRecipe &recipe, uint32_t value) {
  if (recipe.bits <= 8) value = value < recipe.palette.size() ? recipe.palette[value] : 0;
  if (recipe.bits == 16 || recipe.bits == 32) {
    std::vector<uint32_t> masks = recipe.masks;
    if (masks.empty())
      masks = recipe.bits == 16 ? std::vector<uint32_t>{0x7C00, 0x3E0, 0x1F}
                                : std::vector<uint32_t>{0xFF0000, 0xFF00, 0xFF};
    masks.resize(4);
    return {channelOf(value, masks[3], 255), channelOf(value, masks[0], 0), channelOf(value, masks[1], 0),
            channelOf(value, masks[2], 0)};
  }
  return {255, static_cast<uint8_t>(value >> 16), static_cast<uint8_t>(value >> 8),
          static_cast<uint8_t>(value)};
}

std::vector<Argb> expectedPixels(const BmpRecipe &recipe) {
  std::vector<Argb> pixels;
  for (const uint32_t value : recipe.samples) pixels.push_back(expectedPixel(recipe, value));
  return pixels;
}

PixelLayout expectedLayout(const BmpRecipe &recipe) {
  return recipe.masks.size() == 4 && recipe.masks[3] != 0 ? PixelLayout::argb32 : PixelLayout::xrgb32;
}

void expectReadsAsMade(const BmpRecipe &recipe) {
  SCOPED_TRACE(testing::Message() << recipe.bits << " bits, header of " << recipe.headerBytes
                                  << ", compression " << recipe.compression << ", top down "
                                  << recipe.topDown);
  decoding_checks::expectImage(decoded(recipe), recipe.width, recipe.height, expectedLayout(recipe),
                               expectedPixels(recipe));
}

BmpRecipe randomRecipe(unsigned bits, uint32_t headerBytes = 40) {
  BmpRecipe recipe{.width = 19, .height = 7, .bits = bits, .headerBytes = headerBytes};
  std::mt19937 random(bits + headerBytes);
  const uint32_t most = bits == 32 ? 0xFFFFFFFF : (1u << bits) - 1;
  for (int i = 0; i < 19 * 7; ++i) recipe.samples.push_back(static_cast<uint32_t>(random()) & most);
  if (bits > 8) return recipe;
  for (unsigned i = 0; i < 1u << bits; ++i)
    recipe.palette.push_back(static_cast<uint32_t>(random()) & 0xFFFFFF);
  return recipe;
}

BmpRecipe withMasks(BmpRecipe recipe, std::vector<uint32_t> masks) {
  recipe.compression = masks.size() == 4 && recipe.headerBytes == 40 ? 6 : 3;
  recipe.masks = std::move(masks);
  return recipe;
}

BmpRecipe withRuns(unsigned bits, uint32_t width, uint32_t height, Vector runs) {
  BmpRecipe recipe{.width = width, .height = height, .bits = bits};
  recipe.headerBytes = bits == 24 ? 64 : 40;
  recipe.compression = bits == 8 ? 1 : bits == 4 ? 2 : 4;
  for (uint32_t i = 0; bits <= 8 && i < 1u << bits; ++i) recipe.palette.push_back(i * 0x10101);
  recipe.runs = std::move(runs);
  return recipe;
}

// The blue of each pixel, a row of text for each row from the top; digits stay below 10.
std::vector<std::string> rowsOf(const codecs::DecodedImage &image) {
  std::vector<std::string> rows(image.height);
  const auto pixels = decoding_checks::pixelsOf(image);
  for (size_t i = 0; i < pixels.size(); ++i)
    rows[i / image.width].push_back(static_cast<char>('0' + pixels[i][3]));
  return rows;
}

void expectRuns(const BmpRecipe &recipe, const std::vector<std::string> &rows) {
  const auto read = decoded(recipe);
  ASSERT_EQ(read.fault, Fault::none);
  EXPECT_EQ(rowsOf(read.value), rows);
}

TEST(Bmp, EveryDepthReadsUnderEveryHeaderAndEitherWayUp) {
  for (const uint32_t headerBytes : {12u, 16u, 40u, 52u, 56u, 64u, 108u, 124u}) {
    for (const unsigned bits : {1u, 2u, 4u, 8u, 16u, 24u, 32u}) {
      BmpRecipe recipe = randomRecipe(bits, headerBytes);
      expectReadsAsMade(recipe);
      recipe.topDown = headerBytes != 12;
      expectReadsAsMade(recipe);
    }
  }
}

TEST(Bmp, MasksOfAnyWidthAndOrderSayWhereTheChannelsAre) {
  for (const uint32_t headerBytes : {40u, 52u, 56u, 108u, 124u}) {
    expectReadsAsMade(withMasks(randomRecipe(16, headerBytes), {0xF800, 0x7E0, 0x1F}));
    expectReadsAsMade(withMasks(randomRecipe(16, headerBytes), {0xF, 0xF0, 0xF00}));
    expectReadsAsMade(withMasks(randomRecipe(32, headerBytes), {0xFF, 0xFF00, 0xFF0000}));
    expectReadsAsMade(withMasks(randomRecipe(32, headerBytes), {0x3FF00000, 0xFFC00, 0x3FF}));
    expectReadsAsMade(withMasks(randomRecipe(32, headerBytes), {0xFFFF0000, 0, 0xFFFF}));
  }
}

TEST(Bmp, AFourthMaskIsAlpha) {
  for (const uint32_t headerBytes : {40u, 56u, 108u, 124u}) {
    expectReadsAsMade(withMasks(randomRecipe(32, headerBytes), {0xFF0000, 0xFF00, 0xFF, 0xFF000000}));
    expectReadsAsMade(withMasks(randomRecipe(32, headerBytes), {0xFF000000, 0xFF0000, 0xFF00, 0xFF}));
    expectReadsAsMade(withMasks(randomRecipe(16, headerBytes), {0x7C00, 0x3E0, 0x1F, 0x8000}));
    expectReadsAsMade(withMasks(randomRecipe(16, headerBytes), {0xF00, 0xF0, 0xF, 0xF000}));
  }
}

TEST(Bmp, ByConventionTheFourthByteMeansNothingUntilAMaskSaysThatItIsAlpha) {
  BmpRecipe recipe = randomRecipe(32, 108);
  expectReadsAsMade(recipe);
  recipe.masks = {0xFF0000, 0xFF00, 0xFF, 0xFF000000};
  expectReadsAsMade(recipe);
}

TEST(Bmp, MasksThatMakeNoSenseAreDamage) {
  EXPECT_EQ(decoded(withMasks(randomRecipe(32), {0xFF0000, 0xFF00, 0x1FF})).fault, Fault::damaged);
  EXPECT_EQ(decoded(withMasks(randomRecipe(32), {0xF0F000, 0xFF0, 0xF})).fault, Fault::damaged);
  EXPECT_EQ(decoded(withMasks(randomRecipe(16), {0x1F0000, 0x3E0, 0x1F})).fault, Fault::damaged);
}

TEST(Bmp, ShortPalettesLeaveTheOtherIndicesBlack) {
  BmpRecipe recipe = randomRecipe(8);
  recipe.palette.resize(40);
  recipe.coloursUsed = 40;
  expectReadsAsMade(recipe);
  recipe.coloursUsed = 0;  // all 256, of which 216 would lie in the pixels
  expectReadsAsMade(recipe);
}

TEST(Bmp, PalettesLongerThanTheFileAreRefused) {
  BmpRecipe recipe = randomRecipe(8);
  recipe.coloursUsed = 280;  // more than pixels can name, but there could be room
  EXPECT_EQ(decoded(recipe).fault, Fault::none);
  recipe.coloursUsed = 5000;
  EXPECT_EQ(decoded(recipe).fault, Fault::truncated);
  recipe.coloursUsed = 0xFFFFFFFF;
  EXPECT_EQ(decoded(recipe).fault, Fault::truncated);
}

TEST(Bmp, RunsOfEightBits) {
  expectRuns(withRuns(8, 6, 2, {3, 7, 0, 3, 1, 2, 3, 0, 0, 0, 6, 9, 0, 1}), {"999999", "777123"});
}

TEST(Bmp, RunsOfFourBitsAlternate) {
  const Vector runs{5, 0x12, 1, 0x30, 0, 0, 0, 6, 0x98, 0x76, 0x54, 0, 0, 1};
  const auto read = decoded(withRuns(4, 6, 2, runs));
  ASSERT_EQ(read.fault, Fault::none);
  EXPECT_EQ(rowsOf(read.value), (std::vector<std::string>{"987654", "121213"}));
}

TEST(Bmp, RunsOfWholeColours) {
  const Vector runs{2, 1, 0, 0, 0, 3, 4, 0, 0, 5, 0, 0, 6, 0, 0, 0, 0, 1};
  expectRuns(withRuns(24, 5, 1, runs), {"11456"});
}

TEST(Bmp, WhatRunsStepOverIsTheFirstColour) {
  const Vector runs{1, 5, 0, 2, 1, 1, 1, 6, 0, 0, 0, 1};
  expectRuns(withRuns(8, 4, 4, runs), {"0000", "0000", "0060", "5000"});
}

TEST(Bmp, ALastRowThatIsFullNeedsNoEnd) {
  expectRuns(withRuns(8, 2, 2, {2, 1, 0, 0, 2, 3}), {"33", "11"});
  EXPECT_EQ(decoded(withRuns(8, 2, 2, {2, 1, 0, 0, 1, 3})).fault, Fault::truncated);
  EXPECT_EQ(decoded(withRuns(8, 2, 2, {2, 1})).fault, Fault::truncated);
}

TEST(Bmp, ThePaddingOfARowMayBePackedAlong) {
  expectRuns(withRuns(8, 3, 2, {4, 1, 0, 0, 3, 2, 1, 9, 0, 1}), {"222", "111"});
  EXPECT_EQ(decoded(withRuns(8, 3, 1, {5, 1, 0, 1})).fault, Fault::damaged);
  EXPECT_EQ(decoded(withRuns(4, 3, 1, {8, 0x11, 0, 1})).fault, Fault::none);
  EXPECT_EQ(decoded(withRuns(4, 3, 1, {9, 0x11, 0, 1})).fault, Fault::damaged);
}

TEST(Bmp, RunsThatLeaveTheirRowOrTheImageAreDamage) {
  EXPECT_EQ(decoded(withRuns(8, 4, 1, {5, 1, 0, 1})).fault, Fault::damaged);
  EXPECT_EQ(decoded(withRuns(8, 4, 1, {0, 5, 1, 2, 3, 4, 5, 0, 0, 1})).fault, Fault::damaged);
  EXPECT_EQ(decoded(withRuns(8, 4, 1, {0, 2, 5, 0, 0, 1})).fault, Fault::damaged);
  EXPECT_EQ(decoded(withRuns(8, 4, 2, {0, 2, 0, 2, 0, 1})).fault, Fault::damaged);
}

TEST(Bmp, TheResolutionBecomesDotsPerInch) {
  BmpRecipe recipe = randomRecipe(24);
  recipe.dotsPerMetre = 11811;
  const auto read = decoded(recipe);
  ASSERT_EQ(read.fault, Fault::none);
  EXPECT_NEAR(read.value.resolution.x, 300, 0.01);
  EXPECT_NEAR(read.value.resolution.y, 300, 0.01);
}

TEST(Bmp, AnEmbeddedProfileIsKept) {
  BmpRecipe recipe = randomRecipe(24, 124);
  recipe.profile = swappedRgbProfile();
  auto read = decoded(recipe);
  ASSERT_EQ(read.fault, Fault::none);
  EXPECT_EQ(read.value.profile, recipe.profile);
  recipe.profile = greyProfile(1.8);
  read = decoded(recipe);
  ASSERT_EQ(read.fault, Fault::none);
  EXPECT_TRUE(read.value.profile.empty());
}

TEST(Bmp, VariantsThatAreNotReadAreNamedSo) {
  for (const unsigned bits : {0u, 3u, 48u, 64u}) {
    BmpRecipe recipe = randomRecipe(24);
    recipe.bits = 24;
    Vector file = makeBmp(recipe);
    file[28] = static_cast<uint8_t>(bits);
    EXPECT_EQ(codecs::decodeBmp(file, kLimits).fault, Fault::unsupported) << bits;
  }
  for (const uint32_t compression : {1u, 2u, 4u, 5u, 7u}) {
    BmpRecipe recipe = randomRecipe(24);
    recipe.compression = compression;
    EXPECT_EQ(decoded(recipe).fault, Fault::unsupported) << compression;
  }
}

void put32(Vector &file, size_t at, uint32_t value) {
  for (size_t i = 0; i < 4; ++i) file[at + i] = static_cast<uint8_t>(value >> 8 * i);
}

TEST(Bmp, SizesUpToTheTypesLimitAreRefused) {
  const Vector plain = makeBmp(randomRecipe(24)), runs = makeBmp(withRuns(8, 2, 1, {2, 1, 0, 1}));
  for (const Vector &file : {plain, runs}) {
    const auto faultAt = [&](uint32_t width, uint32_t height) {
      Vector changed = file;
      put32(changed, 18, width);
      put32(changed, 22, height);
      return codecs::decodeBmp(changed, kLimits).fault;
    };
    EXPECT_EQ(faultAt(0x7FFFFFFF, 0x7FFFFFFF), Fault::tooLarge);
    EXPECT_EQ(faultAt(0x7FFFFFFF, 1), Fault::tooLarge);
    EXPECT_EQ(faultAt(1, 0x80000000), Fault::tooLarge);
    EXPECT_EQ(faultAt(65535, 65535), Fault::tooLarge);
    EXPECT_EQ(faultAt(0x80000000, 1), Fault::damaged);
    EXPECT_EQ(faultAt(0, 1), Fault::damaged);
    EXPECT_EQ(faultAt(1, 0), Fault::damaged);
    EXPECT_EQ(faultAt(16000, 16000), Fault::truncated);
  }
}

TEST(Bmp, PixelsThatStartInTheHeaderOrBehindTheFileAreRefused) {
  Vector file = makeBmp(randomRecipe(24));
  put32(file, 10, 53);
  EXPECT_EQ(codecs::decodeBmp(file, kLimits).fault, Fault::damaged);
  put32(file, 10, static_cast<uint32_t>(file.size() + 1));
  EXPECT_EQ(codecs::decodeBmp(file, kLimits).fault, Fault::truncated);
}

std::vector<BmpRecipe> sturdyRecipes() {
  std::vector<BmpRecipe> recipes{randomRecipe(1), randomRecipe(4, 12), randomRecipe(24),
                                 withMasks(randomRecipe(16), {0xF800, 0x7E0, 0x1F}),
                                 withMasks(randomRecipe(32, 124), {0xFF0000, 0xFF00, 0xFF, 0xFF000000})};
  recipes.push_back(withRuns(8, 6, 2, {3, 7, 0, 3, 1, 2, 3, 0, 0, 0, 6, 9, 0, 1}));
  recipes.push_back(withRuns(4, 6, 2, {5, 0x12, 1, 0x30, 0, 0, 0, 6, 0x98, 0x76, 0x54, 0, 0, 1}));
  recipes.push_back(withRuns(24, 5, 1, {2, 1, 0, 0, 0, 3, 4, 0, 0, 5, 0, 0, 6, 0, 0, 0, 0, 1}));
  return recipes;
}

// The padding of the last row, or of the last run, and the mark that ends full runs are missed by nobody.
TEST(Bmp, EveryTruncationFails) {
  for (const BmpRecipe &recipe : sturdyRecipes()) {
    const Vector file = makeBmp(recipe);
    const size_t padding = (4 - (recipe.width * recipe.bits + 7) / 8 % 4) % 4;
    const size_t spare = recipe.runs.empty() ? padding : recipe.bits == 8 ? 2 : 3;
    decoding_checks::expectEveryTruncationFails(codecs::decodeBmp, file, 2, file.size() - spare);
  }
}

TEST(Bmp, FlippedBytesNeverGiveHalfAnImage) {
  for (const BmpRecipe &recipe : sturdyRecipes())
    decoding_checks::expectFlippedBytesAreHarmless(codecs::decodeBmp, makeBmp(recipe));
}

TEST(Bmp, LimitsAreHeldToTheLastPixel) {
  decoding_checks::expectLimitsAreHeld(codecs::decodeBmp, makeBmp(randomRecipe(24)), 19, 7);
}

TEST(Bmp, OtherBytesAreNotClaimed) {
  EXPECT_EQ(codecs::decodeBmp({}, kLimits).fault, Fault::unknownFormat);
  const std::string text = "BMW and other makers of motor cars";
  EXPECT_EQ(codecs::scoreBmp({reinterpret_cast<const uint8_t *>(text.data()), text.size()}), 0);
  EXPECT_GT(codecs::scoreBmp(makeBmp(randomRecipe(24))), 0);
}

}  // namespace
