// Each operation on colour and alpha, over grey and colour, every alpha info, and rows that are packed,
// padded to whole words and padded to less, against a plain model.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>
#include <string>

#include "core/images.h"

namespace {

using namespace test;

constexpr size_t kWidth = 7;
constexpr size_t kHeight = 5;
constexpr uint8_t kPadding = 0xA7;

struct Form {
  bool isColor;
  uint32_t alpha;
  size_t paddingBytes;

  bool isAlphaOnly() const { return alpha == kCGImageAlphaOnly; }
  bool hasAlpha() const { return alpha != 0 && alpha != 5 && alpha != 6; }
  bool isPremultiplied() const { return alpha == 1 || alpha == 2; }
  bool alphaIsLast() const { return alpha == 1 || alpha == 3 || alpha == 5; }
  size_t colours() const { return isAlphaOnly() ? 0 : isColor ? 3 : 1; }
  size_t pixelBytes() const { return colours() + (alpha == kCGImageAlphaNone ? 0 : 1); }
  size_t rowBytes() const { return kWidth * pixelBytes() + paddingBytes; }
  std::string name() const {
    return (isColor ? "colour, alpha info " : "grey, alpha info ") + std::to_string(alpha) + ", " +
           std::to_string(paddingBytes) + " bytes of padding";
  }
};

struct Pixel {
  uint8_t alpha, red, green, blue;
};
using Pixels = std::vector<Pixel>;

// What the form can hold: colours up to their alpha where they are multiplied by it, one colour in greys.
Pixels samplesFor(const Form &form) {
  std::mt19937 random(form.alpha + 8 * form.isColor);
  const auto below = [&](unsigned limit) { return static_cast<uint8_t>(random() % limit); };
  Pixels pixels(kWidth * kHeight);
  for (size_t i = 0; i < pixels.size(); ++i) {
    const uint8_t alpha = i % 7 == 0 ? 0 : i % 5 == 0 ? 255 : below(256);
    const unsigned limit = form.isPremultiplied() ? alpha + 1U : 256U;
    pixels[i] = {alpha, below(limit), below(limit), below(limit)};
    if (!form.isColor) pixels[i].green = pixels[i].blue = pixels[i].red;
  }
  return pixels;
}

Bytes stored(const Form &form, const Pixels &pixels) {
  Bytes bytes;
  for (size_t i = 0; i < pixels.size(); ++i) {
    const Pixel &pixel = pixels[i];
    const uint8_t colours[] = {pixel.red, pixel.green, pixel.blue};
    const bool hasByte = form.alpha != kCGImageAlphaNone;
    if (hasByte && !form.alphaIsLast()) bytes.push_back(pixel.alpha);
    bytes.insert(bytes.end(), colours, colours + form.colours());
    if (hasByte && form.alphaIsLast()) bytes.push_back(pixel.alpha);
    if ((i + 1) % kWidth == 0) bytes.insert(bytes.end(), form.paddingBytes, kPadding);
  }
  return bytes;
}

cf::Ref<DRAVCFImageRef> imageOf(const Form &form, const Bytes &bytes) {
  const cf::Ref space = form.isColor ? displaySpace() : graySpace();
  return cf::adopt(DRAVCFImageCreateWithBuffer(nullptr, bytes.data(), kWidth, kHeight, 8,
                                               8 * form.pixelBytes(), form.rowBytes(), space.get(),
                                               static_cast<CGImageAlphaInfo>(form.alpha)));
}

// What an image shall be afterwards.
struct Expected {
  Bytes buffer;
  size_t bitsPerPixel, rowBytes;
  uint32_t alpha;
  bool isColor;
};

Expected unchanged(const Form &form, const Bytes &bytes) {
  return {bytes, 8 * form.pixelBytes(), form.rowBytes(), form.alpha, form.isColor};
}

void expectImage(DRAVCFImageRef image, const Expected &expected) {
  ASSERT_TRUE(image);
  EXPECT_EQ(image->width, kWidth);
  EXPECT_EQ(image->height, kHeight);
  EXPECT_EQ(bufferOf(image), expected.buffer);
  EXPECT_EQ(image->bitsPerPixel, expected.bitsPerPixel);
  EXPECT_EQ(image->bytesPerRow, expected.rowBytes);
  EXPECT_EQ(image->alphaInfo, expected.alpha);
  EXPECT_EQ(DRAVCFImageIsColor(image), expected.isColor);
  EXPECT_EQ(CGImageGetWidth(DRAVCFImageGetCGImage(image)), kWidth) << "what it is now can be shown";
}

// Runs a check for every form, with an image of it and the bytes that it holds.
using Check = std::function<void(const Form &form, DRAVCFImageRef image, const Bytes &bytes, const Pixels &)>;

void forEveryForm(const Check &check) {
  for (const bool isColor : {false, true}) {
    for (uint32_t alpha = 0; alpha <= 7; ++alpha) {
      for (const size_t padding : {0, 3, 8}) {
        const Form form{isColor, alpha, padding};
        SCOPED_TRACE(form.name());
        const Pixels pixels = samplesFor(form);
        const Bytes bytes = stored(form, pixels);
        const cf::Ref image = imageOf(form, bytes);
        ASSERT_TRUE(image);
        check(form, image.get(), bytes, pixels);
      }
    }
  }
}

uint8_t multiplied(uint8_t colour, uint8_t alpha) {
  return static_cast<uint8_t>(std::lround(colour * alpha / 255.0));
}

// The pixel as it is drawn onto nothing.
Pixel drawn(const Form &form, Pixel pixel) {
  if (!form.hasAlpha()) return {255, pixel.red, pixel.green, pixel.blue};
  if (form.isAlphaOnly()) return {pixel.alpha, 0, 0, 0};
  if (form.isPremultiplied()) return pixel;
  return {pixel.alpha, multiplied(pixel.red, pixel.alpha), multiplied(pixel.green, pixel.alpha),
          multiplied(pixel.blue, pixel.alpha)};
}

Bytes drawnBytes(const Form &form, const Pixels &pixels) {
  Bytes bytes;
  for (const Pixel &pixel : pixels) {
    const Pixel shown = drawn(form, pixel);
    for (const uint8_t byte : {shown.alpha, shown.red, shown.green, shown.blue}) bytes.push_back(byte);
  }
  return bytes;
}

Expected promoted(const Form &form, const Pixels &pixels) {
  return {drawnBytes(form, pixels), 32, 4 * kWidth, kCGImageAlphaPremultipliedFirst, true};
}

uint8_t divided(uint8_t colour, uint8_t alpha) {
  const float c = static_cast<float>(colour) / 255.0F, a = static_cast<float>(alpha) / 255.0F;
  const double inverse = a != 0 ? 1.0 / a : 0;
  const float quotient = std::min(static_cast<float>(c * inverse), 1.0F);
  return static_cast<uint8_t>(std::floor(quotient * 255.0F + 0.5));
}

Expected withoutAlpha(const Form &form, const Pixels &pixels) {
  Expected expected = promoted(form, pixels);
  for (size_t i = 0; i < expected.buffer.size(); i += 4) {
    uint8_t *pixel = &expected.buffer[i];
    for (int byte = 1; byte <= 3; ++byte) pixel[byte] = divided(pixel[byte], pixel[0]);
    pixel[0] = 1;
  }
  return expected;
}

// Calls a function for each whole word of four bytes, rows taken as contiguous.
template <class Change>
Bytes withWords(Bytes bytes, const Change &change) {
  for (size_t i = 0; i + 4 <= bytes.size(); i += 4) change(&bytes[i]);
  return bytes;
}

TEST(OperationsMatrix, ColourIsAskedOfTheSpace) {
  forEveryForm([](const Form &form, DRAVCFImageRef image, const Bytes &bytes, const Pixels &) {
    EXPECT_EQ(DRAVCFImageIsColor(image), form.isColor);
    expectImage(image, unchanged(form, bytes));
  });
}

TEST(OperationsMatrix, AlphaIsAskedOfTheAlphaInfo) {
  forEveryForm([](const Form &form, DRAVCFImageRef image, const Bytes &bytes, const Pixels &) {
    EXPECT_EQ(DRAVCFImageHasAlpha(image), form.hasAlpha());
    expectImage(image, unchanged(form, bytes));
  });
}

// The first of every four bytes decides, whatever they are bytes of.
bool firstBytesAreFull(const Form &form, const Bytes &bytes) {
  for (size_t y = 0; y < kHeight; ++y) {
    for (size_t x = 0; x < kWidth; ++x) {
      const size_t at = y * form.rowBytes() + 4 * x;
      if (at < bytes.size() && bytes[at] != 255) return false;
    }
  }
  return true;
}

TEST(OperationsMatrix, OpacityIsAskedOfFirstBytes) {
  forEveryForm([](const Form &form, DRAVCFImageRef image, const Bytes &bytes, const Pixels &) {
    EXPECT_EQ(DRAVCFImageIsOpaque(image), !form.hasAlpha() || firstBytesAreFull(form, bytes));
    Bytes full = bytes;
    for (size_t y = 0; y < kHeight; ++y)
      for (size_t x = 0; x < kWidth; ++x)
        if (const size_t at = y * form.rowBytes() + 4 * x; at < full.size()) full[at] = 255;
    const cf::Ref opaque = imageOf(form, full);
    EXPECT_EQ(DRAVCFImageIsOpaque(opaque.get()), 1);
    const size_t last = (kHeight - 1) * form.rowBytes() + 4 * (form.pixelBytes() * kWidth / 4 - 1);
    full[last] = 254;
    const cf::Ref almost = imageOf(form, full);
    EXPECT_EQ(DRAVCFImageIsOpaque(almost.get()), !form.hasAlpha());
    expectImage(image, unchanged(form, bytes));
  });
}

TEST(OperationsMatrix, ConversionToColourPromotesGreyAndLeavesColour) {
  forEveryForm([](const Form &form, DRAVCFImageRef image, const Bytes &bytes, const Pixels &pixels) {
    DRAVCFImageConvertToColor(image);
    Expected expected = form.isColor ? unchanged(form, bytes) : promoted(form, pixels);
    if (!form.isColor && !form.hasAlpha()) expected.alpha = kCGImageAlphaNoneSkipFirst;
    expectImage(image, expected);
  });
}

TEST(OperationsMatrix, AddingAlphaPromotesWhatHasNone) {
  forEveryForm([](const Form &form, DRAVCFImageRef image, const Bytes &bytes, const Pixels &pixels) {
    DRAVCFImageAddAlphaChannel(image);
    expectImage(image, form.hasAlpha() ? unchanged(form, bytes) : promoted(form, pixels));
  });
}

// The grey of straight colours is taken first, and then multiplied by their alpha.
uint8_t greyOver(const Form &form, Pixel pixel) {
  if (form.isAlphaOnly()) return 0;
  const auto grey =
      static_cast<uint8_t>(std::floor(0.30 * pixel.red + 0.59 * pixel.green + 0.11 * pixel.blue + 0.5));
  return form.hasAlpha() && !form.isPremultiplied() ? multiplied(grey, pixel.alpha) : grey;
}

TEST(OperationsMatrix, ConversionToGreyWeighsColoursOverBlackAndLeavesGrey) {
  forEveryForm([](const Form &form, DRAVCFImageRef image, const Bytes &bytes, const Pixels &pixels) {
    DRAVCFImageConvertToGrayscale(image);
    if (!form.isColor) return expectImage(image, unchanged(form, bytes));
    Bytes greys;
    for (const Pixel &pixel : pixels) greys.push_back(greyOver(form, pixel));
    expectImage(image, {greys, 8, kWidth, kCGImageAlphaNone, false});
  });
}

TEST(OperationsMatrix, TheUnweightedMeanReplacesColoursOfFourByteWordsAndNothingElse) {
  forEveryForm([](const Form &form, DRAVCFImageRef image, const Bytes &bytes, const Pixels &) {
    DRAVCFImageMakeGrayscale(image);
    Expected expected = unchanged(form, bytes);
    if (form.isColor && form.pixelBytes() == 4) {
      expected.buffer = withWords(bytes, [](uint8_t *word) {
        const float grey = (static_cast<float>(word[1]) / 255.0F + static_cast<float>(word[2]) / 255.0F +
                            static_cast<float>(word[3]) / 255.0F) /
                           3.0F;
        std::fill_n(word + 1, 3, static_cast<uint8_t>(std::lround(grey * 255.0F)));
      });
    }
    expectImage(image, expected);
  });
}

TEST(OperationsMatrix, RemovingAlphaDividesAndMarksWhatHasAlpha) {
  forEveryForm([](const Form &form, DRAVCFImageRef image, const Bytes &bytes, const Pixels &pixels) {
    testing::internal::CaptureStderr();
    DRAVCFImageRemoveAlphaChannel(image);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    expectImage(image, form.hasAlpha() ? withoutAlpha(form, pixels) : unchanged(form, bytes));
  });
}

TEST(OperationsMatrix, InversionComplementsEveryByteAndFillsFirstBytesWhereThereIsAlpha) {
  forEveryForm([](const Form &form, DRAVCFImageRef image, const Bytes &bytes, const Pixels &) {
    DRAVCFImageInvert(image);
    Bytes inverted = bytes;
    for (uint8_t &byte : inverted) byte = static_cast<uint8_t>(255 - byte);
    if (form.hasAlpha()) inverted = withWords(inverted, [](uint8_t *word) { word[0] = 255; });
    expectImage(image, unchanged(form, inverted));
  });
}

TEST(OperationsMatrix, ClearingGivesTransparentBlackWhereThereIsAlphaElseWhite) {
  forEveryForm([](const Form &form, DRAVCFImageRef image, const Bytes &bytes, const Pixels &) {
    DRAVCFImageClear(image);
    const uint8_t filling = form.hasAlpha() ? 0 : 255;
    expectImage(image, unchanged(form, Bytes(bytes.size(), filling)));
  });
}

TEST(OperationsMatrix, TheOpaqueCopyIsOneWithItsAlphaRemoved) {
  forEveryForm([](const Form &form, DRAVCFImageRef image, const Bytes &bytes, const Pixels &pixels) {
    const cf::Ref copy = cf::adopt(DRAVCFImageCopyOpaqueImage(nullptr, image));
    expectImage(copy.get(), form.hasAlpha() ? withoutAlpha(form, pixels) : unchanged(form, bytes));
    expectImage(image, unchanged(form, bytes));
  });
}

// Pixels of other sizes have no words to fill.
TEST(OperationsMatrix, ThePremultipliedOpaqueCopyFillsFirstBytesAndDropsTheSourcesPlatformImage) {
  forEveryForm([](const Form &form, DRAVCFImageRef image, const Bytes &bytes, const Pixels &) {
    ASSERT_TRUE(DRAVCFImageGetCGImage(image));
    const cf::Ref copy = cf::adopt(DRAVCFImageCopyPremultipliedOpaqueImage(nullptr, image));
    if (form.hasAlpha() && form.pixelBytes() != 4) {
      EXPECT_EQ(copy.get(), nullptr);
      return expectImage(image, unchanged(form, bytes));
    }
    EXPECT_EQ(image->cgImage == nullptr, form.hasAlpha());
    const Bytes filled = withWords(bytes, [](uint8_t *word) { word[0] = 255; });
    expectImage(copy.get(), unchanged(form, form.hasAlpha() ? filled : bytes));
    expectImage(image, unchanged(form, bytes));
  });
}

TEST(OperationsMatrix, TheAlphaCopyIsFirstBytesInGreyAndWhiteWhereThereIsNoAlpha) {
  forEveryForm([](const Form &form, DRAVCFImageRef image, const Bytes &bytes, const Pixels &) {
    const cf::Ref copy = cf::adopt(DRAVCFImageCopyAlphaChannel(nullptr, image));
    if (form.hasAlpha() && form.pixelBytes() != 4) {
      EXPECT_EQ(copy.get(), nullptr);
      return expectImage(image, unchanged(form, bytes));
    }
    Bytes firsts(kWidth * kHeight, 255);
    for (size_t i = 0; form.hasAlpha() && i < firsts.size(); ++i)
      firsts[i] = bytes[i / kWidth * form.rowBytes() + 4 * (i % kWidth)];
    expectImage(copy.get(), {firsts, 8, kWidth, kCGImageAlphaNone, false});
    expectImage(image, unchanged(form, bytes));
  });
}

}  // namespace
