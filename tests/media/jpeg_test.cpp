#include "media/codecs/jpeg.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>

#include "jpeg_maker.h"
#include "profiles.h"

namespace {

using codecs::Fault;
using codecs::PixelLayout;

const CGImageDecodeLimits kLimits = CGImageGetDefaultDecodeLimits();

// Soft waves with a little noise: something that looks like a photograph to the coder.
JpegRecipe waves(J_COLOR_SPACE input, J_COLOR_SPACE stored, uint32_t width = 53, uint32_t height = 37) {
  JpegRecipe recipe;
  recipe.width = width;
  recipe.height = height;
  recipe.input = input;
  recipe.stored = stored;
  std::mt19937 random(3);
  for (uint32_t y = 0; y < height; ++y) {
    for (uint32_t x = 0; x < width; ++x) {
      for (size_t c = 0; c < recipe.channels(); ++c) {
        const double wave = 128 + 100 * std::sin(x * 0.13 * (1.0 + static_cast<double>(c)) + y * 0.07);
        recipe.samples.push_back(static_cast<uint8_t>(wave + static_cast<double>(random() % 16)));
      }
    }
  }
  return recipe;
}

void expectColours(const codecs::DecodedImage &image, const std::vector<uint8_t> &rgb) {
  ASSERT_EQ(image.layout, PixelLayout::xrgb32);
  EXPECT_EQ(image.depth, 24);
  ASSERT_EQ(rgb.size(), size_t{3} * image.width * image.height);
  for (size_t i = 0; i < size_t{image.width} * image.height; ++i) {
    const uint8_t *pixel = image.pixels.data() + 4 * i;
    ASSERT_EQ(pixel[0], 255);
    ASSERT_EQ(std::memcmp(pixel + 1, rgb.data() + 3 * i, 3), 0) << i;
  }
}

TEST(Jpeg, GreyReadsAsGrey) {
  const JpegRecipe recipe = waves(JCS_GRAYSCALE, JCS_GRAYSCALE);
  const auto file = makeJpeg(recipe);
  const auto decoded = codecs::decodeJpeg(file, kLimits);
  ASSERT_EQ(decoded.fault, Fault::none);
  const auto expected = readJpeg(file, JCS_GRAYSCALE);
  ASSERT_EQ(decoded.value.layout, PixelLayout::grey8);
  EXPECT_EQ(decoded.value.depth, 8);
  ASSERT_EQ(decoded.value.pixels.size(), expected.size());
  EXPECT_EQ(std::memcmp(decoded.value.pixels.data(), expected.data(), expected.size()), 0);
}

TEST(Jpeg, EveryKindOfColourFileReadsToTheLibrarysOwnPixels) {
  for (const J_COLOR_SPACE stored : {JCS_YCbCr, JCS_RGB}) {
    for (const bool progressive : {false, true}) {
      for (const bool arithmetic : {false, true}) {
        for (const unsigned restart : {0u, 3u}) {
          JpegRecipe recipe = waves(JCS_RGB, stored);
          recipe.progressive = progressive;
          recipe.arithmetic = arithmetic;
          recipe.restartInterval = restart;
          recipe.adobeMarker = stored == JCS_RGB;
          const auto file = makeJpeg(recipe);
          const auto decoded = codecs::decodeJpeg(file, kLimits);
          ASSERT_EQ(decoded.fault, Fault::none);
          expectColours(decoded.value, readJpeg(file, JCS_RGB));
        }
      }
    }
  }
}

// What paper shows of ink on ink, without a profile.
std::vector<uint8_t> naiveColours(const std::vector<uint8_t> &cmyk, bool inverted) {
  std::vector<uint8_t> rgb;
  for (size_t i = 0; i < cmyk.size(); i += 4) {
    for (size_t c = 0; c < 3; ++c) {
      const double ink = inverted ? 1 - cmyk[i + c] / 255.0 : cmyk[i + c] / 255.0;
      const double black = inverted ? 1 - cmyk[i + 3] / 255.0 : cmyk[i + 3] / 255.0;
      rgb.push_back(static_cast<uint8_t>(std::lround((1 - ink) * (1 - black) * 255)));
    }
  }
  return rgb;
}

TEST(Jpeg, CmykAndYcckWithoutAProfileAreConvertedPlainly) {
  for (const J_COLOR_SPACE stored : {JCS_CMYK, JCS_YCCK}) {
    for (const bool adobe : {false, true}) {
      if (stored == JCS_YCCK && !adobe) continue;  // only that marker says that a file is YCCK
      JpegRecipe recipe = waves(JCS_CMYK, stored);
      recipe.adobeMarker = adobe;
      const auto file = makeJpeg(recipe);
      const auto decoded = codecs::decodeJpeg(file, kLimits);
      ASSERT_EQ(decoded.fault, Fault::none);
      expectColours(decoded.value, naiveColours(readJpeg(file, JCS_CMYK), adobe));
    }
  }
}

TEST(Jpeg, CmykWithAProfileGoesThroughIt) {
  for (const bool inverted : {false, true}) {
    JpegRecipe recipe{.width = 8, .height = 8, .input = JCS_CMYK, .stored = JCS_CMYK};
    recipe.adobeMarker = inverted;
    recipe.profile = blackInkProfile();
    const uint8_t none = inverted ? 255 : 0, full = inverted ? 0 : 255;
    for (int i = 0; i < 64; ++i) {  // full cyan, which this profile takes for white; then full black
      const bool black = i % 8 >= 4;
      recipe.samples.insert(recipe.samples.end(), {black ? none : full, none, none, black ? full : none});
    }
    const auto decoded = codecs::decodeJpeg(makeJpeg(recipe), kLimits);
    ASSERT_EQ(decoded.fault, Fault::none);
    EXPECT_TRUE(decoded.value.profile.empty());
    const uint8_t *row = decoded.value.row(3);
    for (int channel = 1; channel < 4; ++channel) {
      EXPECT_GE(row[channel], 250);
      EXPECT_LE(row[28 + channel], 10);
    }
    EXPECT_EQ(row[0], 255);
  }
}

TEST(Jpeg, AProfileIsKeptWhenItFitsTheColours) {
  JpegRecipe colour = waves(JCS_RGB, JCS_YCbCr);
  colour.profile = swappedRgbProfile();
  EXPECT_EQ(codecs::decodeJpeg(makeJpeg(colour), kLimits).value.profile, colour.profile);
  JpegRecipe grey = waves(JCS_GRAYSCALE, JCS_GRAYSCALE);
  grey.profile = greyProfile(1.8);
  EXPECT_EQ(codecs::decodeJpeg(makeJpeg(grey), kLimits).value.profile, grey.profile);
  grey.profile = colour.profile;
  const auto mismatched = codecs::decodeJpeg(makeJpeg(grey), kLimits);
  EXPECT_EQ(mismatched.fault, Fault::none);
  EXPECT_TRUE(mismatched.value.profile.empty());
}

TEST(Jpeg, AProfileOfSeveralPiecesIsPutTogether) {
  JpegRecipe recipe = waves(JCS_RGB, JCS_YCbCr);
  recipe.profile = swappedRgbProfile();
  recipe.profile.resize(150000, 0x5A);
  recipe.profile[0] = 0;
  recipe.profile[1] = 150000 >> 16;
  recipe.profile[2] = 150000 >> 8 & 255;
  recipe.profile[3] = 150000 & 255;
  EXPECT_EQ(codecs::decodeJpeg(makeJpeg(recipe), kLimits).value.profile, recipe.profile);
  CGImageDecodeLimits limits = kLimits;
  limits.profileBytes = 149999;
  const auto decoded = codecs::decodeJpeg(makeJpeg(recipe), limits);
  EXPECT_EQ(decoded.fault, Fault::none);
  EXPECT_TRUE(decoded.value.profile.empty());
}

TEST(Jpeg, DensityBecomesDotsPerInch) {
  JpegRecipe recipe = waves(JCS_RGB, JCS_YCbCr);
  recipe.densityUnit = 1;
  recipe.density = 300;
  EXPECT_EQ(codecs::decodeJpeg(makeJpeg(recipe), kLimits).value.resolution.x, 300);
  recipe.densityUnit = 2;
  recipe.density = 100;
  EXPECT_DOUBLE_EQ(codecs::decodeJpeg(makeJpeg(recipe), kLimits).value.resolution.y, 254);
  recipe.densityUnit = 0;
  EXPECT_EQ(codecs::decodeJpeg(makeJpeg(recipe), kLimits).value.resolution.x, 0);
}

std::vector<std::vector<uint8_t>> smallFiles() {
  std::vector<std::vector<uint8_t>> files;
  for (const bool progressive : {false, true}) {
    for (const unsigned restart : {0u, 2u}) {
      JpegRecipe recipe = waves(JCS_RGB, JCS_YCbCr, 33, 21);
      recipe.progressive = progressive;
      recipe.restartInterval = restart;
      files.push_back(makeJpeg(recipe));
    }
  }
  JpegRecipe ink = waves(JCS_CMYK, JCS_YCCK, 17, 9);
  ink.adobeMarker = true;
  files.push_back(makeJpeg(ink));
  files.push_back(makeJpeg(waves(JCS_GRAYSCALE, JCS_GRAYSCALE, 17, 9)));
  return files;
}

bool samePixels(const codecs::DecodedImage &a, const codecs::DecodedImage &b) {
  return a.pixels.size() == b.pixels.size() &&
         std::memcmp(a.pixels.data(), b.pixels.data(), a.pixels.size()) == 0;
}

TEST(Jpeg, EveryTruncationFailsOrGivesTheWholePicture) {
  for (const auto &file : smallFiles()) {
    const auto whole = codecs::decodeJpeg(file, kLimits);
    ASSERT_EQ(whole.fault, Fault::none);
    for (size_t length = 0; length < file.size(); ++length) {
      const codecs::Bytes cut(file.data(), length);
      const auto decoded = codecs::decodeJpeg(cut, kLimits);
      if (length < 2) {
        ASSERT_EQ(decoded.fault, Fault::unknownFormat) << length;
      } else if (decoded) {
        ASSERT_TRUE(samePixels(decoded.value, whole.value)) << length << " of " << file.size();
        ASSERT_GE(length + 3, file.size()) << "only the end mark and padding can be missed";
      } else {
        ASSERT_EQ(decoded.fault, Fault::truncated) << length << " of " << file.size();
      }
    }
  }
}

TEST(Jpeg, AFileThatOnlyLostItsEndMarkLoads) {
  for (const auto &file : smallFiles()) {
    EXPECT_EQ(codecs::decodeJpeg(codecs::Bytes(file.data(), file.size() - 2), kLimits).fault, Fault::none);
  }
}

TEST(Jpeg, FlippedBytesNeverCrash) {
  for (const auto &file : smallFiles()) {
    for (size_t at = 0; at < file.size(); ++at) {
      for (const int flip : {0x01, 0x80, 0xFF}) {
        std::vector<uint8_t> damaged = file;
        damaged[at] = static_cast<uint8_t>(damaged[at] ^ flip);
        const auto decoded = codecs::decodeJpeg(damaged, kLimits);
        if (!decoded) continue;
        ASSERT_EQ(decoded.value.pixels.size(), decoded.value.rowBytes * decoded.value.height);
      }
    }
  }
}

TEST(Jpeg, StrayBytesBetweenMarkersAreTolerated) {
  const auto file = makeJpeg(waves(JCS_RGB, JCS_YCbCr));
  std::vector<uint8_t> stray = file;
  const size_t afterFirstMarker = 2 + 2 + static_cast<size_t>(file[4] << 8 | file[5]);
  stray.insert(stray.begin() + static_cast<std::ptrdiff_t>(afterFirstMarker), {0x12, 0x34, 0x56});
  const auto decoded = codecs::decodeJpeg(stray, kLimits);
  ASSERT_EQ(decoded.fault, Fault::none);
  EXPECT_TRUE(samePixels(decoded.value, codecs::decodeJpeg(file, kLimits).value));
}

// Sets the size in the frame header.
std::vector<uint8_t> withSize(std::vector<uint8_t> file, unsigned width, unsigned height) {
  for (size_t at = 2; at + 9 < file.size(); at += 2 + static_cast<size_t>(file[at + 2] << 8 | file[at + 3])) {
    if (file[at + 1] < 0xC0 || file[at + 1] > 0xC2) continue;
    file[at + 5] = static_cast<uint8_t>(height >> 8);
    file[at + 6] = static_cast<uint8_t>(height);
    file[at + 7] = static_cast<uint8_t>(width >> 8);
    file[at + 8] = static_cast<uint8_t>(width);
    break;
  }
  return file;
}

TEST(Jpeg, AHeaderThatPromisesTooMuchIsRefused) {
  for (const bool progressive : {false, true}) {
    JpegRecipe recipe = waves(JCS_RGB, JCS_YCbCr);
    recipe.progressive = progressive;
    const auto file = makeJpeg(recipe);
    EXPECT_EQ(codecs::decodeJpeg(withSize(file, 65000, 65000), kLimits).fault, Fault::tooLarge);
    EXPECT_EQ(codecs::decodeJpeg(withSize(file, 16000, 16000), kLimits).fault, Fault::truncated);
    EXPECT_NE(codecs::decodeJpeg(withSize(file, 65535, 65535), kLimits).fault, Fault::none);
    EXPECT_NE(codecs::decodeJpeg(withSize(file, 0, 10), kLimits).fault, Fault::none);
  }
}

TEST(Jpeg, AWhiteImageWithTablesMadeForItStillLoads) {
  codecs::EncodeSource source;
  source.width = 4000;
  source.height = 3000;
  source.layout = codecs::RowLayout::rgbx;
  source.copyRow = [](void *, uint32_t, uint8_t *out) noexcept {
    std::memset(out, 255, 16000);
    return true;
  };
  std::vector<uint8_t> file;
  ASSERT_EQ(codecs::encodeJpeg(source, file), Fault::none);
  EXPECT_EQ(codecs::decodeJpeg(file, kLimits).fault, Fault::none);
}

// The position of the first mark of that code from `from` on; the file's size when there is none.
size_t findMark(const std::vector<uint8_t> &file, uint8_t code, size_t from) {
  for (size_t at = from; at + 1 < file.size(); ++at) {
    if (file[at] == 0xFF && (code ? file[at + 1] == code : file[at + 1] != 0)) return at;
  }
  return file.size();
}

// As many scans as asked for: the scan of the means comes again and again.
std::vector<uint8_t> withScans(size_t count) {
  JpegRecipe recipe = waves(JCS_GRAYSCALE, JCS_GRAYSCALE, 16, 16);
  recipe.progressive = true;
  std::vector<uint8_t> file = makeJpeg(recipe);
  size_t scans = 0;
  for (size_t at = 2; (at = findMark(file, 0xDA, at)) < file.size(); at += 2) ++scans;
  const size_t first = findMark(file, 0xDA, 2);
  const size_t next = findMark(file, 0, first + 2);
  const std::vector<uint8_t> again(file.data() + first, file.data() + next);
  std::vector<uint8_t> more;
  for (; scans < count; ++scans) more.insert(more.end(), again.begin(), again.end());
  file.insert(file.begin() + static_cast<std::ptrdiff_t>(next), more.begin(), more.end());
  return file;
}

TEST(Jpeg, FiveHundredScansAreReadAndOneMoreIsRefused) {
  EXPECT_EQ(codecs::decodeJpeg(withScans(500), kLimits).fault, Fault::none);
  EXPECT_EQ(codecs::decodeJpeg(withScans(501), kLimits).fault, Fault::tooLarge);
}

TEST(Jpeg, ScansBeyondTheWorkThatInputAndOutputJustifyAreRefused) {
  CGImageDecodeLimits limits = kLimits;
  limits.workFree = 0;
  limits.workPerByte = 0;
  EXPECT_EQ(codecs::decodeJpeg(withScans(10), limits).fault, Fault::tooLarge);
  limits.workFree = 16 * 16 * 30;
  EXPECT_EQ(codecs::decodeJpeg(withScans(10), limits).fault, Fault::none);
}

TEST(Jpeg, CoefficientsAboveTheMemoryLimitAreRefused) {
  JpegRecipe recipe = waves(JCS_RGB, JCS_YCbCr, 512, 512);
  recipe.progressive = true;
  CGImageDecodeLimits limits = kLimits;
  limits.memoryBytes = 512 * 512 * 4 + 100000;
  EXPECT_EQ(codecs::decodeJpeg(makeJpeg(recipe), limits).fault, Fault::tooLarge);
  recipe.progressive = false;
  EXPECT_EQ(codecs::decodeJpeg(makeJpeg(recipe), limits).fault, Fault::none);
}

TEST(Jpeg, OtherBytesAreNotClaimed) {
  EXPECT_EQ(codecs::decodeJpeg({}, kLimits).fault, Fault::unknownFormat);
  const std::vector<uint8_t> text{'h', 'e', 'l', 'l', 'o'};
  EXPECT_EQ(codecs::decodeJpeg(text, kLimits).fault, Fault::unknownFormat);
}

TEST(Jpeg, WhatIsWrittenReadsBackCloseWithProfileAndDensity) {
  for (const auto layout : {codecs::RowLayout::grey, codecs::RowLayout::rgbx, codecs::RowLayout::rgba}) {
    codecs::EncodeSource source;
    source.width = 64;
    source.height = 48;
    source.layout = layout;
    const auto profile = layout == codecs::RowLayout::grey ? greyProfile(2.2) : swappedRgbProfile();
    source.profile = profile;
    source.resolution = {144, 72};
    size_t channels = bytesPerPixel(layout);
    source.context = &channels;
    source.copyRow = [](void *context, uint32_t y, uint8_t *out) noexcept {
      const size_t count = *static_cast<size_t *>(context);
      for (uint32_t x = 0; x < 64; ++x) {
        for (size_t c = 0; c < count; ++c) out[x * count + c] = static_cast<uint8_t>(2 * x + y);
      }
      return true;
    };
    std::vector<uint8_t> file;
    ASSERT_EQ(codecs::encodeJpeg(source, file), Fault::none);
    const auto decoded = codecs::decodeJpeg(file, kLimits);
    ASSERT_EQ(decoded.fault, Fault::none);
    EXPECT_EQ(decoded.value.profile, profile);
    EXPECT_EQ(decoded.value.resolution.x, 144);
    EXPECT_EQ(decoded.value.resolution.y, 72);
    const size_t bytes = bytesPerPixel(decoded.value.layout);
    for (uint32_t y = 0; y < 48; ++y) {
      for (uint32_t x = 0; x < 64; ++x) {
        ASSERT_NEAR(decoded.value.row(y)[x * bytes + bytes - 1], static_cast<int>(2 * x + y), 6);
      }
    }
  }
}

TEST(Jpeg, AnImageTooLargeForTheFormatIsRefused) {
  codecs::EncodeSource source;
  source.width = 70000;
  source.height = 1;
  source.layout = codecs::RowLayout::grey;
  source.copyRow = [](void *, uint32_t, uint8_t *) noexcept { return true; };
  std::vector<uint8_t> file;
  EXPECT_EQ(codecs::encodeJpeg(source, file), Fault::tooLarge);
}

}  // namespace
