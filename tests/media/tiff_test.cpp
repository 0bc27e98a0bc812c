#include "media/codecs/tiff.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "decoded_pixels.h"
#include "media/codecs/registry.h"
#include "profiles.h"
#include "tiff_maker.h"

namespace {

using codecs::Fault;
using codecs::PixelLayout;
using decoded_pixels::Pixel;
using decoded_pixels::pixelAt;

using Numbers = std::initializer_list<uint16_t>;

const CGImageDecodeLimits kLimits = CGImageGetDefaultDecodeLimits();

// A value of that many bits, as a byte rounded to nearest.
uint8_t toByte(unsigned value, unsigned bits) {
  return static_cast<uint8_t>(std::lround(value * 255.0 / ((1u << bits) - 1)));
}

uint8_t ratio(unsigned colour, unsigned alpha) {
  return alpha == 0 ? uint8_t{0} : static_cast<uint8_t>(std::min(255L, std::lround(colour * 255.0 / alpha)));
}

unsigned coloursOf(const TiffRecipe &recipe) {
  return recipe.photometric == PHOTOMETRIC_RGB ? 3 : recipe.photometric == PHOTOMETRIC_SEPARATED ? 4 : 1;
}

Pixel expectedPixel(const TiffRecipe &recipe, uint32_t x, uint32_t y) {
  const unsigned own = coloursOf(recipe);
  const uint16_t kind = recipe.extraSamples.empty() ? uint16_t{0} : recipe.extraSamples[0];
  const bool associated = kind == EXTRASAMPLE_ASSOCALPHA;
  const unsigned alpha = kind ? recipe.sample(x, y, own) : 0;
  const auto value = [&](unsigned channel) {
    const unsigned raw = recipe.sample(x, y, channel);
    return associated ? ratio(raw, alpha) : toByte(raw, recipe.bits);
  };
  const uint8_t a = kind ? toByte(alpha, recipe.bits) : uint8_t{255};
  switch (recipe.photometric) {
    case PHOTOMETRIC_RGB:
      return {a, value(0), value(1), value(2)};
    case PHOTOMETRIC_PALETTE: {
      const size_t entries = recipe.palette.size() / 3, index = recipe.sample(x, y, 0);
      const auto part = [&](size_t i) { return toByte(recipe.palette[i * entries + index], 16); };
      return {a, part(0), part(1), part(2)};
    }
    case PHOTOMETRIC_SEPARATED: {
      const auto ink = [&](unsigned i) { return (255 - value(i)) * (255 - value(3)) / 255.0; };
      return {a, static_cast<uint8_t>(std::lround(ink(0))), static_cast<uint8_t>(std::lround(ink(1))),
              static_cast<uint8_t>(std::lround(ink(2)))};
    }
    default: {
      const bool white = recipe.photometric == PHOTOMETRIC_MINISWHITE;
      const auto grey = static_cast<uint8_t>(white ? 255 - value(0) : value(0));
      return {a, grey, grey, grey};
    }
  }
}

PixelLayout expectedLayout(const TiffRecipe &recipe) {
  if (!recipe.extraSamples.empty() && recipe.extraSamples[0] != EXTRASAMPLE_UNSPECIFIED)
    return PixelLayout::argb32;
  return recipe.photometric == PHOTOMETRIC_MINISBLACK || recipe.photometric == PHOTOMETRIC_MINISWHITE
             ? PixelLayout::grey8
             : PixelLayout::xrgb32;
}

void expectSame(const codecs::DecodedImage &image, const TiffRecipe &recipe) {
  decoded_pixels::expectPixels(image, recipe.width, recipe.height, expectedLayout(recipe),
                               [&](uint32_t x, uint32_t y) { return expectedPixel(recipe, x, y); });
}

void expectReadsBack(const TiffRecipe &recipe) {
  const auto decoded = codecs::decodeTiff(makeTiff(recipe), kLimits);
  ASSERT_EQ(decoded.fault, Fault::none);
  expectSame(decoded.value, recipe);
}

TiffRecipe randomRecipe(uint16_t photometric, uint16_t bits, std::vector<uint16_t> extras = {}) {
  TiffRecipe recipe;
  recipe.width = 37;
  recipe.height = 23;
  recipe.photometric = photometric;
  recipe.bits = bits;
  recipe.samplesPerPixel = static_cast<uint16_t>(coloursOf(recipe) + extras.size());
  recipe.extraSamples = std::move(extras);
  std::mt19937 random(photometric * 100u + bits + recipe.samplesPerPixel * 1000u);
  recipe.samples.resize(size_t{37} * 23 * recipe.samplesPerPixel);
  for (auto &sample : recipe.samples) sample = static_cast<uint16_t>(random() & ((1u << bits) - 1));
  if (photometric == PHOTOMETRIC_PALETTE) {
    recipe.palette.resize(size_t{3} << bits);
    for (auto &entry : recipe.palette) entry = static_cast<uint16_t>(random());
  }
  if (!recipe.extraSamples.empty() && recipe.extraSamples[0] == EXTRASAMPLE_ASSOCALPHA) {
    for (size_t i = 0; i < recipe.samples.size(); i += recipe.samplesPerPixel) {
      for (unsigned c = 0; c < coloursOf(recipe); ++c) {
        recipe.samples[i + c] = std::min(recipe.samples[i + c], recipe.samples[i + coloursOf(recipe)]);
      }
    }
  }
  return recipe;
}

std::vector<TiffRecipe> everyColour() {
  std::vector<TiffRecipe> recipes;
  for (uint16_t bits = 1; bits <= 16; ++bits) {
    for (const uint16_t photometric :
         Numbers{PHOTOMETRIC_MINISBLACK, PHOTOMETRIC_MINISWHITE, PHOTOMETRIC_RGB}) {
      recipes.push_back(randomRecipe(photometric, bits));
    }
  }
  for (const uint16_t bits : Numbers{1, 2, 4, 8, 16})
    recipes.push_back(randomRecipe(PHOTOMETRIC_PALETTE, bits));
  for (const uint16_t bits : Numbers{8, 16}) {
    recipes.push_back(randomRecipe(PHOTOMETRIC_SEPARATED, bits));
    for (const uint16_t kind :
         Numbers{EXTRASAMPLE_UNSPECIFIED, EXTRASAMPLE_ASSOCALPHA, EXTRASAMPLE_UNASSALPHA}) {
      for (const uint16_t photometric :
           Numbers{PHOTOMETRIC_MINISBLACK, PHOTOMETRIC_RGB, PHOTOMETRIC_SEPARATED}) {
        recipes.push_back(randomRecipe(photometric, bits, {kind}));
      }
    }
  }
  recipes.push_back(randomRecipe(PHOTOMETRIC_PALETTE, 8, {EXTRASAMPLE_UNASSALPHA}));
  return recipes;
}

std::string nameOf(const TiffRecipe &recipe) {
  return "photometric " + std::to_string(recipe.photometric) + " bits " + std::to_string(recipe.bits) +
         " samples " + std::to_string(recipe.samplesPerPixel) + " compression " +
         std::to_string(recipe.compression) + " planes " + std::to_string(recipe.planes) + " tiles " +
         std::to_string(recipe.tileSide) + " mode " + recipe.mode;
}

TEST(Tiff, EveryColourDepthAndArrangementReadsToTheSamePixels) {
  for (TiffRecipe recipe : everyColour()) {
    for (const bool planes : {false, true}) {
      for (const uint32_t tileSide : {0u, 16u}) {
        recipe.planes = planes;
        recipe.tileSide = tileSide;
        SCOPED_TRACE(nameOf(recipe));
        expectReadsBack(recipe);
      }
    }
  }
}

TEST(Tiff, BothByteOrdersAndSizesOfOffsetsReadAlike) {
  for (const char *mode : {"wl", "wb", "wl8", "wb8"}) {
    for (const uint16_t bits : Numbers{1, 8, 12, 16}) {
      TiffRecipe recipe = randomRecipe(PHOTOMETRIC_RGB, bits, {EXTRASAMPLE_UNASSALPHA});
      recipe.mode = mode;
      SCOPED_TRACE(nameOf(recipe));
      expectReadsBack(recipe);
    }
  }
}

TEST(Tiff, EveryLosslessCompressionReadsToTheSamePixels) {
  for (const uint16_t compression : Numbers{COMPRESSION_NONE, COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE,
                                            COMPRESSION_DEFLATE, COMPRESSION_PACKBITS, COMPRESSION_ZSTD}) {
    for (const uint16_t bits : Numbers{1, 4, 8, 16}) {
      for (const bool planes : {false, true}) {
        TiffRecipe recipe = randomRecipe(PHOTOMETRIC_RGB, bits);
        recipe.compression = compression;
        recipe.planes = planes;
        const bool predicts = compression != COMPRESSION_NONE && compression != COMPRESSION_PACKBITS;
        if (predicts && bits >= 8) recipe.predictor = PREDICTOR_HORIZONTAL;
        SCOPED_TRACE(nameOf(recipe));
        expectReadsBack(recipe);
      }
    }
  }
}

TEST(Tiff, FaxCompressionsReadInBothOrdersOfBits) {
  for (const uint16_t compression :
       Numbers{COMPRESSION_CCITTRLE, COMPRESSION_CCITTFAX3, COMPRESSION_CCITTFAX4}) {
    for (const uint16_t fillOrder : Numbers{FILLORDER_MSB2LSB, FILLORDER_LSB2MSB}) {
      for (const uint16_t photometric : Numbers{PHOTOMETRIC_MINISWHITE, PHOTOMETRIC_MINISBLACK}) {
        TiffRecipe recipe = randomRecipe(photometric, 1);
        recipe.compression = compression;
        recipe.fillOrder = fillOrder;
        SCOPED_TRACE(nameOf(recipe));
        expectReadsBack(recipe);
      }
    }
  }
}

// Nothing but one strip, longer than what is unpacked whole.
TEST(Tiff, LongStripsAreReadRowByRow) {
  for (const uint16_t compression : Numbers{COMPRESSION_NONE, COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE}) {
    TiffRecipe recipe;
    recipe.width = 1500;
    recipe.height = 1000;
    recipe.samplesPerPixel = 3;
    recipe.photometric = PHOTOMETRIC_RGB;
    recipe.compression = compression;
    recipe.rowsPerStrip = 1000;
    for (uint32_t i = 0; i < 4500000; ++i) recipe.samples.push_back(static_cast<uint8_t>(i * i >> 12));
    SCOPED_TRACE(nameOf(recipe));
    expectReadsBack(recipe);
  }
}

TiffRecipe smoothRecipe(uint16_t photometric) {
  TiffRecipe recipe;
  recipe.width = recipe.height = 48;
  recipe.rowsPerStrip = 16;
  recipe.photometric = photometric;
  recipe.samplesPerPixel = photometric == PHOTOMETRIC_MINISBLACK ? 1 : 3;
  recipe.compression = COMPRESSION_JPEG;
  for (unsigned y = 0; y < 48; ++y) {
    for (unsigned x = 0; x < 48; ++x) {
      for (unsigned c = 0; c < recipe.samplesPerPixel; ++c)
        recipe.samples.push_back(static_cast<uint16_t>(40 + 2 * x + (c == 1 ? 2 * y : y)));
    }
  }
  return recipe;
}

TEST(Tiff, JpegCompressionReadsToNearlyTheSamePixels) {
  for (const uint16_t photometric : Numbers{PHOTOMETRIC_MINISBLACK, PHOTOMETRIC_RGB, PHOTOMETRIC_YCBCR}) {
    for (const uint32_t tileSide : {0u, 16u}) {
      TiffRecipe recipe = smoothRecipe(photometric);
      recipe.tileSide = tileSide;
      SCOPED_TRACE(nameOf(recipe));
      const auto decoded = codecs::decodeTiff(makeTiff(recipe), kLimits);
      ASSERT_EQ(decoded.fault, Fault::none);
      for (uint32_t y = 0; y < 48; ++y) {
        for (uint32_t x = 0; x < 48; ++x) {
          const Pixel pixel = pixelAt(decoded.value, x, y);
          const unsigned last = recipe.samplesPerPixel - 1u;
          ASSERT_NEAR(pixel.r, recipe.sample(x, y, 0), 12);
          ASSERT_NEAR(pixel.g, recipe.sample(x, y, last / 2), 12);
          ASSERT_NEAR(pixel.b, recipe.sample(x, y, last), 12);
          ASSERT_EQ(pixel.a, 255);
        }
      }
    }
  }
}

// Luma and two neutral chroma values are grey.
TEST(Tiff, LumaAndChromaWithoutJpegBecomeRgb) {
  TiffRecipe recipe;
  recipe.width = 16;
  recipe.height = 3;
  recipe.samplesPerPixel = 3;
  recipe.photometric = PHOTOMETRIC_YCBCR;
  recipe.orientation = ORIENTATION_BOTRIGHT;
  for (unsigned i = 0; i < 48; ++i)
    recipe.samples.insert(recipe.samples.end(), {static_cast<uint16_t>(16 * (i % 16) + i / 16), 128, 128});
  tiff_maker::Sink sink;
  TIFF *tiff = tiff_maker::open(sink, "wl");
  tiff_maker::describe(tiff, recipe);
  TIFFSetField(tiff, TIFFTAG_YCBCRSUBSAMPLING, 1, 1);
  tiff_maker::writeRows(tiff, recipe);
  TIFFClose(tiff);
  const auto decoded = codecs::decodeTiff(sink.bytes, kLimits);
  ASSERT_EQ(decoded.fault, Fault::none);
  ASSERT_EQ(decoded.value.layout, PixelLayout::xrgb32);
  for (uint32_t y = 0; y < 3; ++y) {
    for (uint32_t x = 0; x < 16; ++x) {
      const auto grey = static_cast<uint8_t>(16 * x + y);
      ASSERT_EQ(pixelAt(decoded.value, 15 - x, 2 - y), (Pixel{255, grey, grey, grey}));
    }
  }
}

TEST(Tiff, FourthSamplesThatNobodyExplainsAreAlpha) {
  TiffRecipe recipe = randomRecipe(PHOTOMETRIC_RGB, 8, {EXTRASAMPLE_UNASSALPHA});
  const TiffRecipe expected = recipe;
  recipe.extraSamples.clear();
  const auto decoded = codecs::decodeTiff(makeTiff(recipe), kLimits);
  ASSERT_EQ(decoded.fault, Fault::none);
  expectSame(decoded.value, expected);
}

TEST(Tiff, PalettesOfEightBitsAreKnownByTheirValues) {
  TiffRecipe recipe = randomRecipe(PHOTOMETRIC_PALETTE, 8);
  for (const unsigned factor : {1u, 256u, 257u}) {
    for (size_t i = 0; i < recipe.palette.size(); ++i)
      recipe.palette[i] = static_cast<uint16_t>((i * 7 & 255) * factor);
    const auto decoded = codecs::decodeTiff(makeTiff(recipe), kLimits);
    ASSERT_EQ(decoded.fault, Fault::none);
    const unsigned index = recipe.sample(5, 6, 0);
    const auto part = [&](unsigned i) { return static_cast<uint8_t>((i * 256 + index) * 7); };
    EXPECT_EQ(pixelAt(decoded.value, 5, 6), (Pixel{255, part(0), part(1), part(2)})) << factor;
  }
}

TEST(Tiff, TheOrientationIsApplied) {
  for (uint16_t orientation = 1; orientation <= 8; ++orientation) {
    for (const uint16_t photometric : Numbers{PHOTOMETRIC_MINISBLACK, PHOTOMETRIC_RGB}) {
      TiffRecipe recipe = randomRecipe(photometric, 8);
      recipe.orientation = orientation;
      const auto decoded = codecs::decodeTiff(makeTiff(recipe), kLimits);
      ASSERT_EQ(decoded.fault, Fault::none);
      const auto &image = decoded.value;
      const bool turned = orientation > 4;
      ASSERT_EQ(image.width, turned ? recipe.height : recipe.width);
      ASSERT_EQ(image.height, turned ? recipe.width : recipe.height);
      for (uint32_t y = 0; y < recipe.height; ++y) {
        for (uint32_t x = 0; x < recipe.width; ++x) {
          uint32_t h = turned ? y : x, v = turned ? x : y;
          if (orientation == 2 || orientation == 3 || orientation == 6 || orientation == 7)
            h = image.width - 1 - h;
          if (orientation == 3 || orientation == 4 || orientation == 7 || orientation == 8)
            v = image.height - 1 - v;
          ASSERT_EQ(pixelAt(image, h, v), expectedPixel(recipe, x, y)) << orientation;
        }
      }
    }
  }
}

TEST(Tiff, ProfilesAreKeptByteForByteWhereTheyFit) {
  for (const uint16_t photometric : Numbers{PHOTOMETRIC_RGB, PHOTOMETRIC_PALETTE, PHOTOMETRIC_MINISBLACK}) {
    TiffRecipe recipe = randomRecipe(photometric, 8);
    const bool grey = photometric == PHOTOMETRIC_MINISBLACK;
    recipe.profile = grey ? greyProfile(1.8) : swappedRgbProfile();
    const auto decoded = codecs::decodeTiff(makeTiff(recipe), kLimits);
    ASSERT_EQ(decoded.fault, Fault::none);
    EXPECT_EQ(decoded.value.profile, recipe.profile);
    recipe.profile = grey ? swappedRgbProfile() : greyProfile(1.8);
    EXPECT_TRUE(codecs::decodeTiff(makeTiff(recipe), kLimits).value.profile.empty());
  }
}

TEST(Tiff, CmykGoesThroughItsProfile) {
  TiffRecipe recipe{.width = 2, .height = 1, .samplesPerPixel = 4, .photometric = PHOTOMETRIC_SEPARATED};
  recipe.samples = {255, 0, 0, 0, 0, 0, 0, 255};
  recipe.profile = blackInkProfile();
  const auto decoded = codecs::decodeTiff(makeTiff(recipe), kLimits);
  ASSERT_EQ(decoded.fault, Fault::none);
  EXPECT_TRUE(decoded.value.profile.empty());
  const Pixel cyan = pixelAt(decoded.value, 0, 0), black = pixelAt(decoded.value, 1, 0);
  EXPECT_GE(cyan.r, 250);  // only black ink counts in this profile
  EXPECT_LE(black.r, 5);
}

TEST(Tiff, AGreyProfileIsUsedUpWhenAlphaTurnsGreyIntoColour) {
  TiffRecipe recipe{.width = 1, .height = 1, .samplesPerPixel = 2};
  recipe.extraSamples = {EXTRASAMPLE_UNASSALPHA};
  recipe.samples = {128, 40};
  recipe.profile = greyProfile(1.0);
  const auto decoded = codecs::decodeTiff(makeTiff(recipe), kLimits);
  ASSERT_EQ(decoded.fault, Fault::none);
  EXPECT_TRUE(decoded.value.profile.empty());
  EXPECT_NEAR(pixelAt(decoded.value, 0, 0).r, 188, 1);
}

TEST(Tiff, ResolutionsInBothUnitsBecomeDotsPerInch) {
  TiffRecipe recipe = randomRecipe(PHOTOMETRIC_MINISBLACK, 8);
  recipe.dotsPerUnit = 100;
  const auto inch = codecs::decodeTiff(makeTiff(recipe), kLimits);
  EXPECT_NEAR(inch.value.resolution.x, 100, 0.01);
  EXPECT_NEAR(inch.value.resolution.y, 200, 0.01);
  recipe.resolutionUnit = RESUNIT_CENTIMETER;
  recipe.orientation = ORIENTATION_RIGHTTOP;
  const auto turned = codecs::decodeTiff(makeTiff(recipe), kLimits);
  EXPECT_NEAR(turned.value.resolution.x, 508, 0.01);
  EXPECT_NEAR(turned.value.resolution.y, 254, 0.01);
  recipe.resolutionUnit = RESUNIT_NONE;
  EXPECT_EQ(codecs::decodeTiff(makeTiff(recipe), kLimits).value.resolution.x, 0);
}

TEST(Tiff, OnlyTheFirstPageIsRead) {
  TiffRecipe first = randomRecipe(PHOTOMETRIC_MINISBLACK, 8), second = randomRecipe(PHOTOMETRIC_RGB, 8);
  tiff_maker::Sink sink;
  TIFF *tiff = tiff_maker::open(sink, "wl");
  for (const TiffRecipe *page : {&first, &second}) {
    tiff_maker::describe(tiff, *page);
    tiff_maker::writeRows(tiff, *page);
    TIFFWriteDirectory(tiff);
  }
  TIFFClose(tiff);
  const auto decoded = codecs::decodeTiff(sink.bytes, kLimits);
  ASSERT_EQ(decoded.fault, Fault::none);
  expectSame(decoded.value, first);
}

std::vector<TiffRecipe> sturdyRecipes() {
  std::vector<TiffRecipe> recipes;
  for (const uint16_t compression : Numbers{COMPRESSION_NONE, COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE,
                                            COMPRESSION_PACKBITS, COMPRESSION_ZSTD}) {
    recipes.push_back(randomRecipe(PHOTOMETRIC_RGB, 8, {EXTRASAMPLE_ASSOCALPHA}));
    recipes.back().compression = compression;
  }
  recipes.push_back(randomRecipe(PHOTOMETRIC_PALETTE, 4));
  recipes.back().tileSide = 16;
  recipes.push_back(randomRecipe(PHOTOMETRIC_SEPARATED, 16));
  recipes.back().planes = true;
  recipes.back().mode = "wb8";
  recipes.push_back(randomRecipe(PHOTOMETRIC_MINISWHITE, 1));
  recipes.back().compression = COMPRESSION_CCITTFAX4;
  recipes.push_back(smoothRecipe(PHOTOMETRIC_YCBCR));
  return recipes;
}

TEST(Tiff, EveryTruncationFails) {
  for (const TiffRecipe &recipe : sturdyRecipes()) {
    SCOPED_TRACE(nameOf(recipe));
    const std::vector<uint8_t> file = makeTiff(recipe);
    for (size_t length = 0; length < file.size();
         length += length < 300 || length + 600 > file.size() ? 1 : 17) {
      const std::vector<uint8_t> cut(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(length));
      const auto decoded = codecs::decodeTiff(cut, kLimits);
      ASSERT_NE(decoded.fault, Fault::none) << length;
    }
  }
}

TEST(Tiff, FlippedBytesNeverGiveHalfAnImage) {
  for (const TiffRecipe &recipe : sturdyRecipes()) {
    SCOPED_TRACE(nameOf(recipe));
    const std::vector<uint8_t> file = makeTiff(recipe);
    for (size_t at = 0; at < file.size(); at += at < 300 || at + 600 > file.size() ? 1 : 7) {
      for (const int flip : {0x01, 0x80, 0xFF}) {
        std::vector<uint8_t> damaged = file;
        damaged[at] = static_cast<uint8_t>(damaged[at] ^ flip);
        const auto decoded = codecs::decodeTiff(damaged, kLimits);
        if (!decoded) continue;
        ASSERT_EQ(decoded.value.pixels.size(), decoded.value.rowBytes * decoded.value.height);
      }
    }
  }
}

struct Rows {
  std::vector<uint8_t> pixels;
  size_t rowBytes;
};

std::vector<uint8_t> encoded(codecs::EncodeSource source, Rows rows) {
  source.context = &rows;
  source.copyRow = [](void *context, uint32_t y, uint8_t *out) noexcept {
    const Rows &from = *static_cast<Rows *>(context);
    std::memcpy(out, from.pixels.data() + y * from.rowBytes, from.rowBytes);
    return true;
  };
  std::vector<uint8_t> file;
  EXPECT_EQ(codecs::encodeTiff(source, file), Fault::none);
  return file;
}

codecs::EncodeSource sourceOf(uint32_t width, uint32_t height, codecs::RowLayout layout) {
  codecs::EncodeSource source;
  source.width = width;
  source.height = height;
  source.layout = layout;
  return source;
}

Rows randomRows(const codecs::EncodeSource &source) {
  Rows rows{{}, source.width * bytesPerPixel(source.layout)};
  std::mt19937 random(source.width);
  rows.pixels.resize(rows.rowBytes * source.height);
  for (auto &value : rows.pixels) value = static_cast<uint8_t>(random());
  return rows;
}

// As libtiff gives them back, without us.
std::vector<uint8_t> readBack(const std::vector<uint8_t> &file, uint16_t &samples, uint16_t &extra) {
  tiff_maker::Sink sink{file};
  TIFF *tiff = tiff_maker::open(sink, "r");
  uint32_t height = 0;
  uint16_t count = 0, *kinds = nullptr;
  TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &height);
  TIFFGetField(tiff, TIFFTAG_SAMPLESPERPIXEL, &samples);
  extra =
      TIFFGetField(tiff, TIFFTAG_EXTRASAMPLES, &count, &kinds) && count == 1 ? kinds[0] : uint16_t{0xFFFF};
  const auto rowBytes = static_cast<size_t>(TIFFScanlineSize(tiff));
  std::vector<uint8_t> pixels(rowBytes * height);
  for (uint32_t y = 0; y < height; ++y) TIFFReadScanline(tiff, pixels.data() + y * rowBytes, y, 0);
  TIFFClose(tiff);
  return pixels;
}

TEST(Tiff, StoredBytesAreWrittenAsTheyAreWithTheirKindOfAlpha) {
  for (const bool premultiplied : {false, true}) {
    codecs::EncodeSource source = sourceOf(301, 299, codecs::RowLayout::rgba);
    source.premultiplied = premultiplied;
    const Rows rows = randomRows(source);
    uint16_t samples = 0, extra = 0;
    EXPECT_EQ(readBack(encoded(source, rows), samples, extra), rows.pixels);
    EXPECT_EQ(samples, 4);
    EXPECT_EQ(extra, premultiplied ? EXTRASAMPLE_ASSOCALPHA : EXTRASAMPLE_UNASSALPHA);
  }
}

TEST(Tiff, GreyAndColourWithoutAlphaHaveNoExtraSamples) {
  uint16_t samples = 0, extra = 0;
  const auto grey = sourceOf(13, 7, codecs::RowLayout::grey);
  EXPECT_EQ(readBack(encoded(grey, randomRows(grey)), samples, extra), randomRows(grey).pixels);
  EXPECT_EQ(samples, 1);
  EXPECT_EQ(extra, 0xFFFF);
  const auto colour = sourceOf(700, 500, codecs::RowLayout::rgbx);
  Rows rows = randomRows(colour);
  std::vector<uint8_t> packed;
  for (size_t i = 0; i < rows.pixels.size(); ++i)
    if (i % 4 != 3) packed.push_back(rows.pixels[i]);
  EXPECT_EQ(readBack(encoded(colour, rows), samples, extra), packed);
  EXPECT_EQ(samples, 3);
}

TEST(Tiff, PremultipliedBytesComeBackFromTheirStraightForm) {
  codecs::EncodeSource source = sourceOf(256, 256, codecs::RowLayout::rgba);
  source.premultiplied = true;
  Rows rows{{}, 1024};
  for (unsigned alpha = 0; alpha < 256; ++alpha) {
    for (unsigned i = 0; i < 256; ++i) {
      const auto colour = static_cast<uint8_t>(std::min(i, alpha));
      rows.pixels.insert(rows.pixels.end(),
                         {colour, 0, static_cast<uint8_t>(alpha), static_cast<uint8_t>(alpha)});
    }
  }
  const auto decoded = codecs::decodeTiff(encoded(source, rows), kLimits);
  ASSERT_EQ(decoded.fault, Fault::none);
  for (uint32_t alpha = 0; alpha < 256; ++alpha) {
    for (uint32_t i = 0; i < 256; ++i) {
      const Pixel pixel = pixelAt(decoded.value, i, alpha);
      ASSERT_EQ(pixel.a, alpha);
      ASSERT_EQ(std::lround(pixel.r * pixel.a / 255.0), std::min(i, alpha));
      ASSERT_EQ(pixel.b, alpha ? 255 : 0);
    }
  }
}

TEST(Tiff, ProfileAndResolutionAreWritten) {
  codecs::EncodeSource source = sourceOf(5, 4, codecs::RowLayout::rgbx);
  const auto profile = swappedRgbProfile();
  source.profile = profile;
  source.resolution = {300, 150};
  const auto decoded = codecs::decodeTiff(encoded(source, randomRows(source)), kLimits);
  ASSERT_EQ(decoded.fault, Fault::none);
  EXPECT_EQ(decoded.value.profile, profile);
  EXPECT_NEAR(decoded.value.resolution.x, 300, 0.01);
  EXPECT_NEAR(decoded.value.resolution.y, 150, 0.01);
}

TEST(Tiff, WritingEndsWithTheFirstRowThatFails) {
  codecs::EncodeSource source = sourceOf(5, 4, codecs::RowLayout::grey);
  source.copyRow = [](void *, uint32_t y, uint8_t *out) noexcept {
    std::memset(out, 0, 5);
    return y < 2;
  };
  std::vector<uint8_t> file;
  EXPECT_EQ(codecs::encodeTiff(source, file), Fault::noMemory);
}

}  // namespace
