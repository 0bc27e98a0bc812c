#include "media/codecs/png.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "decoded_pixels.h"
#include "png_maker.h"
#include "profiles.h"

namespace {

using codecs::Fault;
using codecs::PixelLayout;
using decoded_pixels::Pixel;
using decoded_pixels::pixelAt;

const CGImageDecodeLimits kLimits = CGImageGetDefaultDecodeLimits();

// A value of that many bits, as a byte rounded to nearest.
uint8_t toByte(unsigned value, int bits) {
  const double most = (1u << bits) - 1;
  return static_cast<uint8_t>(std::lround(value * 255.0 / most));
}

Pixel expectedPixel(const PngRecipe &recipe, uint32_t x, uint32_t y) {
  const auto value = [&](size_t channel) { return toByte(recipe.sample(x, y, channel), recipe.bitDepth); };
  const auto raw = [&](size_t channel) { return recipe.sample(x, y, channel); };
  switch (recipe.colourType) {
    case PNG_COLOR_TYPE_PALETTE: {
      const png_color &entry = recipe.palette[raw(0)];
      const uint8_t alpha = raw(0) < recipe.paletteAlpha.size() ? recipe.paletteAlpha[raw(0)] : uint8_t{255};
      return {alpha, entry.red, entry.green, entry.blue};
    }
    case PNG_COLOR_TYPE_GRAY: {
      const bool keyed = recipe.hasKey && raw(0) == recipe.key.gray;
      return {static_cast<uint8_t>(keyed ? 0 : 255), value(0), value(0), value(0)};
    }
    case PNG_COLOR_TYPE_GRAY_ALPHA:
      return {value(1), value(0), value(0), value(0)};
    case PNG_COLOR_TYPE_RGB: {
      const bool keyed = recipe.hasKey && raw(0) == recipe.key.red && raw(1) == recipe.key.green &&
                         raw(2) == recipe.key.blue;
      return {static_cast<uint8_t>(keyed ? 0 : 255), value(0), value(1), value(2)};
    }
    default:
      return {value(3), value(0), value(1), value(2)};
  }
}

PixelLayout expectedLayout(const PngRecipe &recipe) {
  bool alpha = recipe.hasKey || (recipe.colourType & PNG_COLOR_MASK_ALPHA);
  for (const png_byte entry : recipe.paletteAlpha) alpha = alpha || entry != 255;
  if (alpha) return PixelLayout::argb32;
  return recipe.colourType == PNG_COLOR_TYPE_GRAY ? PixelLayout::grey8 : PixelLayout::xrgb32;
}

void expectSame(const codecs::DecodedImage &image, const PngRecipe &recipe) {
  decoded_pixels::expectPixels(image, recipe.width, recipe.height, expectedLayout(recipe),
                               [&](uint32_t x, uint32_t y) { return expectedPixel(recipe, x, y); });
}

PngRecipe randomRecipe(int colourType, int bitDepth, bool interlaced, uint32_t width = 19,
                       uint32_t height = 11) {
  PngRecipe recipe;
  recipe.width = width;
  recipe.height = height;
  recipe.colourType = colourType;
  recipe.bitDepth = bitDepth;
  recipe.interlaced = interlaced;
  std::mt19937 random(static_cast<unsigned>(colourType * 100 + bitDepth * 2 + interlaced));
  recipe.samples.resize(size_t{width} * height * recipe.channels());
  for (auto &sample : recipe.samples) sample = static_cast<uint16_t>(random() & ((1u << bitDepth) - 1));
  if (colourType == PNG_COLOR_TYPE_PALETTE) {
    recipe.palette.resize(1u << bitDepth);
    for (auto &entry : recipe.palette) {
      entry = {static_cast<png_byte>(random()), static_cast<png_byte>(random()),
               static_cast<png_byte>(random())};
    }
  }
  return recipe;
}

std::vector<PngRecipe> everyLayout() {
  static constexpr struct {
    int colourType;
    std::initializer_list<int> depths;
  } kTypes[] = {{PNG_COLOR_TYPE_GRAY, {1, 2, 4, 8, 16}},
                {PNG_COLOR_TYPE_RGB, {8, 16}},
                {PNG_COLOR_TYPE_PALETTE, {1, 2, 4, 8}},
                {PNG_COLOR_TYPE_GRAY_ALPHA, {8, 16}},
                {PNG_COLOR_TYPE_RGB_ALPHA, {8, 16}}};
  std::vector<PngRecipe> recipes;
  for (const auto &type : kTypes) {
    for (const int depth : type.depths) {
      for (const bool interlaced : {false, true})
        recipes.push_back(randomRecipe(type.colourType, depth, interlaced));
    }
  }
  return recipes;
}

TEST(Png, EveryColourTypeDepthAndInterlacingReadsToTheSamePixels) {
  for (const PngRecipe &recipe : everyLayout()) {
    SCOPED_TRACE(testing::Message() << "type " << recipe.colourType << " depth " << recipe.bitDepth
                                    << " interlaced " << recipe.interlaced);
    const auto decoded = codecs::decodePng(makePng(recipe), kLimits);
    ASSERT_EQ(decoded.fault, Fault::none);
    expectSame(decoded.value, recipe);
  }
}

TEST(Png, AKeyColourBecomesTransparent) {
  for (PngRecipe recipe : everyLayout()) {
    if (recipe.colourType != PNG_COLOR_TYPE_GRAY && recipe.colourType != PNG_COLOR_TYPE_RGB) continue;
    SCOPED_TRACE(testing::Message() << "type " << recipe.colourType << " depth " << recipe.bitDepth);
    recipe.hasKey = true;
    recipe.key.gray = recipe.key.red = recipe.sample(3, 2, 0);
    if (recipe.colourType == PNG_COLOR_TYPE_RGB) {
      recipe.key.green = recipe.sample(3, 2, 1);
      recipe.key.blue = recipe.sample(3, 2, 2);
    }
    const auto decoded = codecs::decodePng(makePng(recipe), kLimits);
    ASSERT_EQ(decoded.fault, Fault::none);
    expectSame(decoded.value, recipe);
    EXPECT_EQ(pixelAt(decoded.value, 3, 2).a, 0);
  }
}

// The two differ in the low byte alone, so that they are alike once they are rounded.
TEST(Png, ASixteenBitKeyIsComparedBeforeRounding) {
  PngRecipe recipe{.width = 2, .height = 1, .colourType = PNG_COLOR_TYPE_GRAY, .bitDepth = 16};
  recipe.samples = {0x8000, 0x8001};
  recipe.hasKey = true;
  recipe.key.gray = 0x8001;
  const auto decoded = codecs::decodePng(makePng(recipe), kLimits);
  ASSERT_EQ(decoded.fault, Fault::none);
  EXPECT_EQ(pixelAt(decoded.value, 0, 0).a, 255);
  EXPECT_EQ(pixelAt(decoded.value, 1, 0).a, 0);
}

TEST(Png, APaletteWithATransparentEntryHasAlpha) {
  for (const int depth : {1, 2, 4, 8}) {
    PngRecipe recipe = randomRecipe(PNG_COLOR_TYPE_PALETTE, depth, depth == 4);
    recipe.paletteAlpha = {255, 77};
    const auto decoded = codecs::decodePng(makePng(recipe), kLimits);
    ASSERT_EQ(decoded.fault, Fault::none);
    expectSame(decoded.value, recipe);
  }
}

TEST(Png, APaletteWhoseAlphaIsOpaqueThroughoutHasNone) {
  PngRecipe recipe = randomRecipe(PNG_COLOR_TYPE_PALETTE, 2, false);
  recipe.paletteAlpha = {255, 255, 255};
  const auto decoded = codecs::decodePng(makePng(recipe), kLimits);
  ASSERT_EQ(decoded.fault, Fault::none);
  EXPECT_EQ(decoded.value.layout, PixelLayout::xrgb32);
  EXPECT_EQ(decoded.value.depth, 24);
  expectSame(decoded.value, recipe);
}

TEST(Png, SixteenBitsAreRoundedToNearestForEveryValue) {
  PngRecipe recipe{.width = 256, .height = 256, .colourType = PNG_COLOR_TYPE_GRAY, .bitDepth = 16};
  for (unsigned value = 0; value < 65536; ++value) recipe.samples.push_back(static_cast<uint16_t>(value));
  const auto decoded = codecs::decodePng(makePng(recipe), kLimits);
  ASSERT_EQ(decoded.fault, Fault::none);
  for (unsigned value = 0; value < 65536; ++value) {
    ASSERT_EQ(decoded.value.pixels.data()[value], (value * 2 + 257) / 514) << value;
  }
}

TEST(Png, GammaChunksAreIgnored) {
  PngRecipe recipe = randomRecipe(PNG_COLOR_TYPE_RGB, 8, false);
  recipe.gamma = 1.0;
  const auto decoded = codecs::decodePng(makePng(recipe), kLimits);
  ASSERT_EQ(decoded.fault, Fault::none);
  expectSame(decoded.value, recipe);
}

TEST(Png, AnRgbProfileIsKeptByteForByte) {
  PngRecipe recipe = randomRecipe(PNG_COLOR_TYPE_RGB_ALPHA, 8, false);
  recipe.profile = swappedRgbProfile();
  const auto decoded = codecs::decodePng(makePng(recipe), kLimits);
  ASSERT_EQ(decoded.fault, Fault::none);
  EXPECT_EQ(decoded.value.profile, recipe.profile);
  expectSame(decoded.value, recipe);
}

TEST(Png, AGreyProfileIsKeptForGrey) {
  PngRecipe recipe = randomRecipe(PNG_COLOR_TYPE_GRAY, 4, false);
  recipe.profile = greyProfile(1.8);
  const auto decoded = codecs::decodePng(makePng(recipe), kLimits);
  ASSERT_EQ(decoded.fault, Fault::none);
  EXPECT_EQ(decoded.value.profile, recipe.profile);
}

TEST(Png, AGreyProfileIsUsedUpWhenAlphaTurnsGreyIntoColour) {
  PngRecipe recipe{.width = 1, .height = 1, .colourType = PNG_COLOR_TYPE_GRAY_ALPHA};
  recipe.samples = {128, 40};
  recipe.profile = greyProfile(1.0);
  const auto decoded = codecs::decodePng(makePng(recipe), kLimits);
  ASSERT_EQ(decoded.fault, Fault::none);
  EXPECT_TRUE(decoded.value.profile.empty());
  const Pixel pixel = pixelAt(decoded.value, 0, 0);
  EXPECT_EQ(pixel.a, 40);
  EXPECT_NEAR(pixel.r, 188, 1);  // linear one half, in the sRGB encoding
  EXPECT_EQ(pixel.r, pixel.g);
  EXPECT_EQ(pixel.g, pixel.b);
}

TEST(Png, AProfileAboveTheLimitIsDropped) {
  PngRecipe recipe = randomRecipe(PNG_COLOR_TYPE_RGB, 8, false);
  recipe.profile = swappedRgbProfile();
  CGImageDecodeLimits limits = kLimits;
  limits.profileBytes = static_cast<uint32_t>(recipe.profile.size()) - 1;
  const auto decoded = codecs::decodePng(makePng(recipe), limits);
  ASSERT_EQ(decoded.fault, Fault::none);
  EXPECT_TRUE(decoded.value.profile.empty());
}

TEST(Png, PhysicalSizeBecomesDotsPerInch) {
  PngRecipe recipe = randomRecipe(PNG_COLOR_TYPE_RGB, 8, false);
  recipe.dotsPerMetre = 11811;
  const auto decoded = codecs::decodePng(makePng(recipe), kLimits);
  ASSERT_EQ(decoded.fault, Fault::none);
  EXPECT_NEAR(decoded.value.resolution.x, 300, 0.01);
  EXPECT_NEAR(decoded.value.resolution.y, 300, 0.01);
}

// The end mark is the last twelve bytes; without it, nothing of the picture is missing.
TEST(Png, EveryTruncationBeforeTheEndMarkFails) {
  for (const PngRecipe &recipe : everyLayout()) {
    const std::vector<uint8_t> file = makePng(recipe);
    for (size_t length = 0; length < file.size(); ++length) {
      const std::vector<uint8_t> cut(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(length));
      const auto decoded = codecs::decodePng(cut, kLimits);
      if (length < 4) {
        ASSERT_EQ(decoded.fault, Fault::unknownFormat) << length;
      } else if (length < file.size() - 12) {
        ASSERT_EQ(decoded.fault, Fault::truncated) << length;
      } else {
        ASSERT_EQ(decoded.fault, Fault::none) << length;
        expectSame(decoded.value, recipe);
      }
    }
  }
}

TEST(Png, FlippedBytesNeverChangeAPixelUnnoticed) {
  for (const PngRecipe &recipe : everyLayout()) {
    const std::vector<uint8_t> file = makePng(recipe);
    for (size_t at = 0; at < file.size(); ++at) {
      for (const int flip : {0x01, 0x80, 0xFF}) {
        std::vector<uint8_t> damaged = file;
        damaged[at] = static_cast<uint8_t>(damaged[at] ^ flip);
        const auto decoded = codecs::decodePng(damaged, kLimits);
        if (decoded) expectSame(decoded.value, recipe);
      }
    }
  }
}

void putBig32(std::vector<uint8_t> &file, size_t at, uint32_t value) {
  for (size_t i = 0; i < 4; ++i) file[at + i] = static_cast<uint8_t>(value >> (24 - 8 * i));
}

// A file whose header claims another size, with the checksum to match.
std::vector<uint8_t> withSize(std::vector<uint8_t> file, uint32_t width, uint32_t height) {
  putBig32(file, 16, width);
  putBig32(file, 20, height);
  uint32_t crc = 0xFFFFFFFF;
  for (size_t at = 12; at < 29; ++at) {
    crc ^= file[at];
    for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ (crc & 1 ? 0xEDB88320u : 0u);
  }
  putBig32(file, 29, ~crc);
  return file;
}

TEST(Png, AHeaderThatPromisesTooMuchIsRefused) {
  const auto file = makePng(randomRecipe(PNG_COLOR_TYPE_RGB, 8, false));
  EXPECT_EQ(codecs::decodePng(withSize(file, 100000, 100000), kLimits).fault, Fault::tooLarge);
  EXPECT_EQ(codecs::decodePng(withSize(file, 0x7FFFFFFF, 0x7FFFFFFF), kLimits).fault, Fault::tooLarge);
  EXPECT_EQ(codecs::decodePng(withSize(file, 65535, 65535), kLimits).fault, Fault::tooLarge);
  EXPECT_NE(codecs::decodePng(withSize(file, 0xFFFFFFFF, 1), kLimits).fault, Fault::none);
  EXPECT_NE(codecs::decodePng(withSize(file, 0, 1), kLimits).fault, Fault::none);
}

TEST(Png, AHeaderThatPromisesMoreThanTheFileCanHoldIsRefusedBeforeAllocating) {
  const auto file = makePng(randomRecipe(PNG_COLOR_TYPE_RGB, 8, false));
  CGImageDecodeLimits limits = kLimits;
  EXPECT_EQ(codecs::decodePng(withSize(file, 16384, 16384), limits).fault, Fault::truncated);
}

TEST(Png, AWhiteImageAtTheEdgeOfWhatCompressionCanDoStillLoads) {
  PngRecipe recipe{.width = 3000, .height = 3000, .colourType = PNG_COLOR_TYPE_GRAY, .bitDepth = 8};
  recipe.samples.assign(size_t{3000} * 3000, 255);
  EXPECT_EQ(codecs::decodePng(makePng(recipe), kLimits).fault, Fault::none);
}

TEST(Png, LimitsAreHeldToTheLastPixel) {
  const auto file = makePng(randomRecipe(PNG_COLOR_TYPE_RGB, 8, false));  // 19 x 11
  CGImageDecodeLimits limits = kLimits;
  limits.side = 18;
  EXPECT_EQ(codecs::decodePng(file, limits).fault, Fault::tooLarge);
  limits.side = 19;
  EXPECT_EQ(codecs::decodePng(file, limits).fault, Fault::none);
  limits.pixels = 19 * 11 - 1;
  EXPECT_EQ(codecs::decodePng(file, limits).fault, Fault::tooLarge);
  limits.pixels = 19 * 11;
  limits.memoryBytes = 19 * 11 * 4 - 1;
  EXPECT_EQ(codecs::decodePng(file, limits).fault, Fault::tooLarge);
}

TEST(Png, OtherBytesAreNotClaimed) {
  EXPECT_EQ(codecs::decodePng({}, kLimits).fault, Fault::unknownFormat);
  const std::vector<uint8_t> text{'h', 'e', 'l', 'l', 'o', ' ', 'w', 'o', 'r', 'l', 'd'};
  EXPECT_EQ(codecs::decodePng(text, kLimits).fault, Fault::unknownFormat);
}

struct Rows {
  const std::vector<uint8_t> *bytes;
  size_t rowBytes;
};

codecs::EncodeSource sourceOver(Rows &rows, uint32_t width, uint32_t height, codecs::RowLayout layout) {
  codecs::EncodeSource source;
  source.width = width;
  source.height = height;
  source.layout = layout;
  source.context = &rows;
  source.copyRow = [](void *context, uint32_t y, uint8_t *out) noexcept {
    const auto &from = *static_cast<Rows *>(context);
    std::memcpy(out, from.bytes->data() + y * from.rowBytes, from.rowBytes);
    return true;
  };
  return source;
}

TEST(Png, WhatIsWrittenReadsBackWithProfileAndResolution) {
  for (const auto layout : {codecs::RowLayout::grey, codecs::RowLayout::rgbx, codecs::RowLayout::rgba}) {
    const size_t bytes = bytesPerPixel(layout);
    std::vector<uint8_t> pixels(31 * 17 * bytes);
    std::mt19937 random(7);
    for (auto &value : pixels) value = static_cast<uint8_t>(random());
    Rows rows{&pixels, 31 * bytes};
    codecs::EncodeSource source = sourceOver(rows, 31, 17, layout);
    const auto profile = layout == codecs::RowLayout::grey ? greyProfile(2.2) : swappedRgbProfile();
    source.profile = profile;
    source.resolution = {300, 150};
    std::vector<uint8_t> file;
    ASSERT_EQ(codecs::encodePng(source, file), Fault::none);

    const auto decoded = codecs::decodePng(file, kLimits);
    ASSERT_EQ(decoded.fault, Fault::none);
    EXPECT_EQ(decoded.value.profile, profile);
    EXPECT_NEAR(decoded.value.resolution.x, 300, 0.02);
    EXPECT_NEAR(decoded.value.resolution.y, 150, 0.02);
    for (uint32_t y = 0; y < 17; ++y) {
      for (uint32_t x = 0; x < 31; ++x) {
        const uint8_t *at = pixels.data() + (y * 31 + x) * bytes;
        const uint8_t alpha = layout == codecs::RowLayout::rgba ? at[3] : uint8_t{255};
        const Pixel expected =
            bytes == 1 ? Pixel{255, at[0], at[0], at[0]} : Pixel{alpha, at[0], at[1], at[2]};
        ASSERT_EQ(pixelAt(decoded.value, x, y), expected);
      }
    }
  }
}

TEST(Png, AProfileOfTheWrongKindIsNotWritten) {
  const std::vector<uint8_t> pixels(4, 9);
  Rows rows{&pixels, 2};
  codecs::EncodeSource source = sourceOver(rows, 2, 2, codecs::RowLayout::grey);
  const auto profile = swappedRgbProfile();
  source.profile = profile;
  std::vector<uint8_t> file;
  ASSERT_EQ(codecs::encodePng(source, file), Fault::none);
  const auto decoded = codecs::decodePng(file, kLimits);
  ASSERT_EQ(decoded.fault, Fault::none);
  EXPECT_TRUE(decoded.value.profile.empty());
}

TEST(Png, ARowThatCannotBeHadEndsTheWriting) {
  const std::vector<uint8_t> pixels(4, 9);
  Rows rows{&pixels, 2};
  codecs::EncodeSource source = sourceOver(rows, 2, 2, codecs::RowLayout::grey);
  source.copyRow = [](void *, uint32_t, uint8_t *) noexcept { return false; };
  std::vector<uint8_t> file;
  EXPECT_EQ(codecs::encodePng(source, file), Fault::noMemory);
}

}  // namespace
