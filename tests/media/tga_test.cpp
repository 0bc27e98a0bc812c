#include "media/codecs/tga.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>

#include "decoding_checks.h"
#include "media/codecs/registry.h"
#include "tga_maker.h"

namespace {

using codecs::Fault;
using codecs::PixelLayout;
using decoding_checks::Argb;
using Vector = std::vector<uint8_t>;

const CGImageDecodeLimits kLimits = CGImageGetDefaultDecodeLimits();

auto decoded(const TgaRecipe &recipe) { return codecs::decodeTga(makeTga(recipe), kLimits); }

uint8_t fiveBits(uint32_t value) { return static_cast<uint8_t>(std::lround((value & 31) * 255 / 31.0)); }

Argb expectedColour(uint32_t value, unsigned bits, bool alpha) {
  if (bits <= 16) {
    const bool clear = alpha && (value & 0x8000) == 0;
    return {static_cast<uint8_t>(clear ? 0 : 255), fiveBits(value >> 10), fiveBits(value >> 5),
            fiveBits(value)};
  }
  return {static_cast<uint8_t>(alpha ? value >> 24 : 255), static_cast<uint8_t>(value >> 16),
          static_cast<uint8_t>(value >> 8), static_cast<uint8_t>(value)};
}

bool expectedAlpha(const TgaRecipe &recipe) { return (recipe.descriptor & 15) != 0; }

Argb expectedPixel(const TgaRecipe &recipe, uint32_t value) {
  switch (recipe.type % 8) {
    case 1: {
      const size_t entry = value - recipe.firstEntry;
      if (value < recipe.firstEntry || entry >= recipe.palette.size()) return {255, 0, 0, 0};
      return expectedColour(recipe.palette[entry], recipe.entryBits, expectedAlpha(recipe));
    }
    case 2:
      return expectedColour(value, recipe.bits, expectedAlpha(recipe));
    default: {
      const auto grey = static_cast<uint8_t>(value);
      return {static_cast<uint8_t>(expectedAlpha(recipe) ? value >> 8 : 255), grey, grey, grey};
    }
  }
}

PixelLayout expectedLayout(const TgaRecipe &recipe) {
  if (expectedAlpha(recipe)) return PixelLayout::argb32;
  return recipe.type % 8 == 3 ? PixelLayout::grey8 : PixelLayout::xrgb32;
}

void expectReadsAsMade(const TgaRecipe &recipe) {
  SCOPED_TRACE(testing::Message() << "type " << recipe.type << ", " << recipe.bits << " bits, descriptor "
                                  << recipe.descriptor << ", entries of " << recipe.entryBits);
  std::vector<Argb> pixels;
  for (const uint32_t value : recipe.samples) pixels.push_back(expectedPixel(recipe, value));
  decoding_checks::expectImage(decoded(recipe), recipe.width, recipe.height, expectedLayout(recipe), pixels);
}

// Stretches of one value between others, so that there are runs of both kinds.
TgaRecipe randomRecipe(unsigned type, unsigned bits, unsigned alphaBits = 0) {
  TgaRecipe recipe{.width = 23, .height = 9, .type = type, .bits = bits, .descriptor = 0x20 | alphaBits};
  std::mt19937 random(type * 100 + bits);
  const uint32_t most = bits == 32 ? 0xFFFFFFFF : (1u << bits) - 1;
  while (recipe.samples.size() < 23 * 9) {
    const uint32_t value = static_cast<uint32_t>(random()) & most;
    const size_t count = random() % 3 == 0 ? random() % 50 : 1;
    recipe.samples.resize(std::min<size_t>(23 * 9, recipe.samples.size() + count), value);
  }
  return recipe;
}

TgaRecipe indexedRecipe(unsigned type, unsigned bits, unsigned entryBits, unsigned alphaBits = 0) {
  TgaRecipe recipe = randomRecipe(type, bits, alphaBits);
  recipe.entryBits = entryBits;
  std::mt19937 random(entryBits);
  const uint32_t most = entryBits == 32 ? 0xFFFFFFFF : (1u << entryBits) - 1;
  for (int i = 0; i < 200; ++i) recipe.palette.push_back(static_cast<uint32_t>(random()) & most);
  for (uint32_t &sample : recipe.samples) sample %= 220;
  return recipe;
}

std::vector<TgaRecipe> everyRecipe() {
  std::vector<TgaRecipe> recipes;
  for (const unsigned runs : {0u, 8u}) {
    for (const unsigned entryBits : {15u, 16u, 24u, 32u}) {
      recipes.push_back(indexedRecipe(runs + 1, 8, entryBits));
      recipes.push_back(indexedRecipe(runs + 1, 16, entryBits));
    }
    recipes.push_back(indexedRecipe(runs + 1, 8, 32, 8));
    recipes.push_back(indexedRecipe(runs + 1, 8, 16, 1));
    for (const unsigned bits : {15u, 16u, 24u, 32u}) recipes.push_back(randomRecipe(runs + 2, bits));
    recipes.push_back(randomRecipe(runs + 2, 16, 1));
    recipes.push_back(randomRecipe(runs + 2, 32, 8));
    recipes.push_back(randomRecipe(runs + 3, 8));
    recipes.push_back(randomRecipe(runs + 3, 16));
    recipes.push_back(randomRecipe(runs + 3, 16, 8));
  }
  return recipes;
}

TEST(Tga, EveryTypeAndDepthReadsFromEveryCorner) {
  for (TgaRecipe recipe : everyRecipe()) {
    for (const unsigned corner : {0u, 0x10u, 0x20u, 0x30u}) {
      recipe.descriptor = (recipe.descriptor & 15) | corner;
      expectReadsAsMade(recipe);
    }
  }
}

TEST(Tga, PalettesMayStartAnywhere) {
  TgaRecipe recipe = indexedRecipe(1, 8, 24);
  for (const unsigned first : {1u, 100u, 255u, 256u, 65535u}) {
    recipe.firstEntry = first;
    expectReadsAsMade(recipe);
  }
}

TEST(Tga, ColoursMayComeWithAPaletteThatIsNotUsed) {
  TgaRecipe recipe = randomRecipe(2, 24);
  recipe.palette.assign(17, 0x123456);
  recipe.id = "a name";
  expectReadsAsMade(recipe);
}

TEST(Tga, TheExtensionSaysWhatAlphaIsFor) {
  TgaRecipe recipe{.width = 1, .height = 1, .bits = 32, .descriptor = 0x28, .samples = {0x80402000}};
  const auto pixelAndDepth = [&] {
    const auto read = decoded(recipe);
    EXPECT_EQ(read.fault, Fault::none);
    return std::pair{decoding_checks::pixelsOf(read.value).at(0), read.value.depth};
  };
  recipe.footer = true;
  EXPECT_EQ(pixelAndDepth(), (std::pair{Argb{0x80, 0x40, 0x20, 0}, 32}));
  recipe.alphaKind = 2;
  EXPECT_EQ(pixelAndDepth(), (std::pair{Argb{255, 0x40, 0x20, 0}, 24}));
  recipe.alphaKind = 3;
  EXPECT_EQ(pixelAndDepth(), (std::pair{Argb{0x80, 0x40, 0x20, 0}, 32}));
  recipe.descriptor = 0x20;
  EXPECT_EQ(pixelAndDepth(), (std::pair{Argb{0x80, 0x40, 0x20, 0}, 32}));
  recipe.alphaKind = 4;
  EXPECT_EQ(pixelAndDepth(), (std::pair{Argb{0x80, 0x80, 0x40, 0}, 32}));
}

TEST(Tga, IsRecognisedByAHeaderThatMakesSenseOrByItsFooter) {
  for (const TgaRecipe &recipe : everyRecipe()) {
    const Vector file = makeTga(recipe);
    EXPECT_EQ(codecs::recognise(file), &codecs::kTgaCodec);
  }
  TgaRecipe recipe = randomRecipe(2, 24);
  recipe.descriptor |= 8;  // alpha in 24 bits: that cannot be
  EXPECT_EQ(codecs::recognise(makeTga(recipe)), nullptr);
  recipe.footer = true;
  EXPECT_EQ(codecs::recognise(makeTga(recipe)), &codecs::kTgaCodec);
}

TEST(Tga, OtherBytesAreNotClaimed) {
  EXPECT_EQ(codecs::scoreTga({}), 0);
  EXPECT_EQ(codecs::scoreTga(Vector(100, 0)), 0);
  const Vector cursor{0, 0, 2, 0, 1, 0, 32, 32, 0, 0, 4, 0, 4, 0, 0x30, 1, 0, 0, 22, 0, 0, 0};
  EXPECT_EQ(codecs::scoreTga(cursor), 0);
  std::mt19937 random(1);
  int claimed = 0;
  for (int i = 0; i < 100000; ++i) {
    Vector bytes(32);
    for (uint8_t &byte : bytes) byte = static_cast<uint8_t>(random());
    claimed += codecs::scoreTga(bytes) != 0;
  }
  EXPECT_EQ(claimed, 0);
}

TEST(Tga, FieldsWithWhatThereIsNotAreNamedUnsupported) {
  const Vector file = makeTga(randomRecipe(2, 24));
  const auto faultWith = [&](size_t at, int value) {
    Vector changed = file;
    changed[at] = static_cast<uint8_t>(value);
    return codecs::decodeTga(changed, kLimits).fault;
  };
  EXPECT_EQ(faultWith(2, 0), Fault::unsupported);
  EXPECT_EQ(faultWith(2, 4), Fault::unsupported);
  EXPECT_EQ(faultWith(2, 8), Fault::unsupported);
  EXPECT_EQ(faultWith(2, 32), Fault::unsupported);
  EXPECT_EQ(faultWith(2, 1), Fault::unsupported);  // indices without a palette
  EXPECT_EQ(faultWith(1, 2), Fault::unsupported);
  EXPECT_EQ(faultWith(16, 8), Fault::unsupported);
  EXPECT_EQ(faultWith(17, 0x40), Fault::unsupported);  // rows in another order
}

TEST(Tga, SizesUpToTheTypesLimitAreRefused) {
  for (const unsigned type : {2u, 10u}) {
    Vector file = makeTga(randomRecipe(type, 24));
    const auto faultAt = [&](uint8_t width, uint8_t height) {
      file[12] = file[13] = width;
      file[14] = file[15] = height;
      return codecs::decodeTga(file, kLimits).fault;
    };
    EXPECT_EQ(faultAt(255, 255), Fault::tooLarge);
    EXPECT_EQ(faultAt(0, 255), Fault::damaged);
    EXPECT_EQ(faultAt(255, 0), Fault::damaged);
    EXPECT_EQ(faultAt(50, 50), Fault::truncated);
  }
}

TEST(Tga, APaletteLongerThanTheFileIsTruncated) {
  Vector file = makeTga(indexedRecipe(1, 8, 24));
  file[5] = file[6] = 255;
  EXPECT_EQ(codecs::decodeTga(file, kLimits).fault, Fault::truncated);
}

TEST(Tga, EveryTruncationFails) {
  for (const TgaRecipe &recipe : everyRecipe()) {
    const Vector file = makeTga(recipe);
    decoding_checks::expectEveryTruncationFails(codecs::decodeTga, file, 0, file.size());
  }
}

TEST(Tga, FlippedBytesNeverGiveHalfAnImage) {
  for (TgaRecipe recipe : everyRecipe()) {
    recipe.alphaKind = 4;
    decoding_checks::expectFlippedBytesAreHarmless(codecs::decodeTga, makeTga(recipe));
  }
}

TEST(Tga, LimitsAreHeldToTheLastPixel) {
  decoding_checks::expectLimitsAreHeld(codecs::decodeTga, makeTga(randomRecipe(2, 24)), 23, 9);
}

}  // namespace
