#include <gtest/gtest.h>

#include <string>

#include "foreign_profile.h"
#include "images.h"

namespace {

using namespace test;

// A source pixel and how the platform stores it.
struct Source {
  bool isGray;
  CGImageAlphaInfo alpha;
  size_t bitsPerPixel;
  Bytes pixel;         // as stored
  uint8_t a, r, g, b;  // what it means: straight colour where it has alpha
};

// Alpha 128 with colours that are whole multiples of it, so that premultiplied and straight forms agree.
Source sourceFor(bool isGray, CGImageAlphaInfo alpha) {
  constexpr uint8_t kA = 85, kR = 255, kG = 51, kB = 0;  // straight
  constexpr uint8_t kPR = 85, kPG = 17, kPB = 0;         // times 85 / 255
  if (isGray) {
    switch (alpha) {
      case kCGImageAlphaNone:
        return {true, alpha, 8, {51}, 255, 51, 51, 51};
      case kCGImageAlphaPremultipliedLast:
        return {true, alpha, 16, {kPG, kA}, kA, 51, 51, 51};
      case kCGImageAlphaPremultipliedFirst:
        return {true, alpha, 16, {kA, kPG}, kA, 51, 51, 51};
      case kCGImageAlphaLast:
        return {true, alpha, 16, {kG, kA}, kA, 51, 51, 51};
      case kCGImageAlphaFirst:
        return {true, alpha, 16, {kA, kG}, kA, 51, 51, 51};
      case kCGImageAlphaNoneSkipLast:
        return {true, alpha, 16, {51, 9}, 255, 51, 51, 51};
      case kCGImageAlphaNoneSkipFirst:
        return {true, alpha, 16, {9, 51}, 255, 51, 51, 51};
      default:
        return {true, alpha, 8, {kA}, kA, 0, 0, 0};
    }
  }
  switch (alpha) {
    case kCGImageAlphaNone:
      return {false, alpha, 24, {10, 20, 30}, 255, 10, 20, 30};
    case kCGImageAlphaPremultipliedLast:
      return {false, alpha, 32, {kPR, kPG, kPB, kA}, kA, kR, kG, kB};
    case kCGImageAlphaPremultipliedFirst:
      return {false, alpha, 32, {kA, kPR, kPG, kPB}, kA, kR, kG, kB};
    case kCGImageAlphaLast:
      return {false, alpha, 32, {kR, kG, kB, kA}, kA, kR, kG, kB};
    case kCGImageAlphaFirst:
      return {false, alpha, 32, {kA, kR, kG, kB}, kA, kR, kG, kB};
    case kCGImageAlphaNoneSkipLast:
      return {false, alpha, 32, {10, 20, 30, 9}, 255, 10, 20, 30};
    case kCGImageAlphaNoneSkipFirst:
      return {false, alpha, 32, {9, 10, 20, 30}, 255, 10, 20, 30};
    default:
      return {false, alpha, 8, {kA}, kA, 0, 0, 0};
  }
}

bool sourceHasAlpha(CGImageAlphaInfo alpha) {
  return alpha != kCGImageAlphaNone && alpha != kCGImageAlphaNoneSkipFirst &&
         alpha != kCGImageAlphaNoneSkipLast;
}

uint8_t times(uint8_t colour, uint8_t alpha) {
  return static_cast<uint8_t>((2 * colour * alpha + 255) / 510);  // nearest; 255 is odd, so there is no tie
}

// Three pixels a row and two rows of the same pixel, so that row lengths show.
cf::Ref<CGImageRef> platformImage(const Source &source, CGColorSpaceRef space) {
  Bytes bytes;
  for (int i = 0; i < 6; ++i) bytes.insert(bytes.end(), source.pixel.begin(), source.pixel.end());
  return makeCGImage({3, 2, 8, source.bitsPerPixel, 3 * source.bitsPerPixel / 8, space, source.alpha}, bytes);
}

enum class Space { native, device, foreign };

void expectPromotion(bool isGray, uint32_t info, Space kind, bool toColor, bool addAlpha) {
  const auto alpha = static_cast<CGImageAlphaInfo>(info);
  SCOPED_TRACE(std::string(isGray ? "grey" : "RGB") + " alpha " + std::to_string(info) + " space " +
               std::to_string(static_cast<int>(kind)) + (toColor ? " toColor" : "") +
               (addAlpha ? " addAlpha" : ""));
  const Source source = sourceFor(isGray, alpha);
  cf::Ref<CGColorSpaceRef> space;
  if (isGray)
    space = kind == Space::foreign ? foreignGraySpace() : graySpace();
  else if (kind == Space::native)
    space = displaySpace();
  else
    space = kind == Space::foreign ? foreignRGBSpace() : deviceRGBSpace();
  const cf::Ref cgImage = platformImage(source, space.get());
  ASSERT_TRUE(cgImage);
  const cf::Ref image = cf::adopt(DRAVCFImageCreateWithImage(nullptr, cgImage.get()));

  DRAVCFImagePromoteImage(image.get(), toColor, addAlpha);

  const bool alphaKept = !addAlpha && (info == 2 || info == 6);
  const bool changed = toColor || addAlpha || !alphaKept || isGray || kind != Space::native;
  EXPECT_EQ(image->cgImage, changed ? nullptr : cgImage.get());
  ASSERT_NE(image->buffer, nullptr);
  EXPECT_EQ(image->width, 3u);
  EXPECT_EQ(image->height, 2u);
  EXPECT_EQ(image->bitsPerComponent, 8u);
  EXPECT_EQ(image->bitsPerPixel, 32u);
  EXPECT_EQ(image->bytesPerRow, 12u);
  EXPECT_EQ(image->bufferSize, 24u);
  const bool withAlpha = addAlpha || sourceHasAlpha(alpha);
  EXPECT_EQ(image->alphaInfo, withAlpha ? kCGImageAlphaPremultipliedFirst : kCGImageAlphaNoneSkipFirst);
  EXPECT_TRUE(CFEqual(image->colorSpace, displaySpace().get()));

  Colour colour{source.r, source.g, source.b};
  if (kind == Space::foreign) colour = isGray ? foreignGrayToDisplay(source.r) : foreignRGBToDisplay(colour);
  for (size_t pixel = 0; pixel < 6; ++pixel) {
    const uint8_t *found = image->buffer + 4 * pixel;
    EXPECT_EQ(found[0], source.a);
    EXPECT_EQ(found[1], times(colour.r, source.a));
    EXPECT_EQ(found[2], times(colour.g, source.a));
    EXPECT_EQ(found[3], times(colour.b, source.a));
  }
}

void expectAllFlagPairs(bool isGray, uint32_t info, Space kind) {
  for (bool toColor : {false, true})
    for (bool addAlpha : {false, true}) expectPromotion(isGray, info, kind, toColor, addAlpha);
}

TEST(Promotion, OfEveryRGBLayoutInTheNativeSpaceGivesAWorkingLayout) {
  for (uint32_t info = 0; info <= 6; ++info) expectAllFlagPairs(false, info, Space::native);
}

TEST(Promotion, OfEveryRGBLayoutInTheDeviceSpaceGivesTheNativeSpace) {
  for (uint32_t info = 0; info <= 6; ++info) expectAllFlagPairs(false, info, Space::device);
}

TEST(Promotion, OfEveryRGBLayoutInAnotherProfileConvertsTheColours) {
  for (uint32_t info = 0; info <= 6; ++info) expectAllFlagPairs(false, info, Space::foreign);
}

TEST(Promotion, OfEveryGreyLayoutGivesColour) {
  for (uint32_t info = 0; info <= 6; ++info) expectAllFlagPairs(true, info, Space::device);
}

TEST(Promotion, OfEveryGreyLayoutInAnotherProfileGivesColour) {
  for (uint32_t info = 0; info <= 6; ++info) expectAllFlagPairs(true, info, Space::foreign);
}

TEST(Promotion, OfAlphaAloneGivesBlackWithThatAlpha) {
  expectAllFlagPairs(true, kCGImageAlphaOnly, Space::device);
  expectAllFlagPairs(false, kCGImageAlphaOnly, Space::native);
}

TEST(Promotion, WithoutFlagsKeepsABufferAsItIs) {
  const cf::Ref image = makeGrayImage(2, 1, {10, 20});
  const uint8_t *before = image->buffer;
  DRAVCFImagePromoteImage(image.get(), 0, 0);
  EXPECT_EQ(image->buffer, before);
  EXPECT_EQ(bufferOf(image.get()), (Bytes{10, 20}));
  EXPECT_EQ(image->alphaInfo, kCGImageAlphaNone);
}

TEST(Promotion, OfAGreyBufferToColourGivesRGBInTheNativeSpace) {
  const cf::Ref image = makeGrayImage(2, 1, {10, 20});
  DRAVCFImagePromoteImage(image.get(), 1, 0);
  EXPECT_EQ(bufferOf(image.get()), (Bytes{255, 10, 10, 10, 255, 20, 20, 20}));
  EXPECT_EQ(image->alphaInfo, kCGImageAlphaNoneSkipFirst);
  EXPECT_EQ(image->bitsPerPixel, 32u);
  EXPECT_TRUE(CFEqual(image->colorSpace, displaySpace().get()));
  EXPECT_EQ(image->cgImage, nullptr);
}

TEST(Promotion, OfAGreyBufferToAlphaGivesOpaqueColour) {
  const cf::Ref image = makeGrayImage(2, 1, {10, 20});
  DRAVCFImagePromoteImage(image.get(), 0, 1);
  EXPECT_EQ(bufferOf(image.get()), (Bytes{255, 10, 10, 10, 255, 20, 20, 20}));
  EXPECT_EQ(image->alphaInfo, kCGImageAlphaPremultipliedFirst);
}

TEST(Promotion, OfAnRGBBufferToAlphaMakesIgnoredBytesOpaque) {
  const cf::Ref image =
      makeBufferImage(1, 1, 32, displaySpace().get(), kCGImageAlphaNoneSkipFirst, {7, 10, 20, 30});
  DRAVCFImagePromoteImage(image.get(), 0, 1);
  EXPECT_EQ(bufferOf(image.get()), (Bytes{255, 10, 20, 30}));
}

TEST(Promotion, OfABufferAlreadyRightKeepsEveryPremultipliedByte) {
  Bytes all;
  for (int alpha = 0; alpha < 256; ++alpha)
    for (int colour = 0; colour <= alpha; ++colour)
      for (int byte : {alpha, colour, alpha - colour, alpha}) all.push_back(static_cast<uint8_t>(byte));
  const cf::Ref image = makeARGBImage(all.size() / 4, 1, all);
  DRAVCFImagePromoteImage(image.get(), 1, 1);
  EXPECT_EQ(bufferOf(image.get()), all);
}

TEST(Promotion, OfABufferAlreadyRightIsThatOfItsPlatformImage) {
  // Pixels with colours above their alpha, too: drawing copies them.
  Bytes pixels;
  for (int i = 0; i < 1024; ++i) pixels.push_back(static_cast<uint8_t>(i * 37 + i / 7));
  const cf::Ref image = makeARGBImage(16, 16, pixels), drawn = makeARGBImage(16, 16, pixels);
  ASSERT_NE(DRAVCFImageGetCGImage(drawn.get()), nullptr);
  DRAVCFImagePromoteImage(image.get(), 0, 1);
  DRAVCFImagePromoteImage(drawn.get(), 0, 1);
  EXPECT_EQ(bufferOf(image.get()), bufferOf(drawn.get()));
  EXPECT_EQ(image->cgImage, nullptr);
  EXPECT_EQ(drawn->cgImage, nullptr);
}

TEST(Promotion, WithAPlatformImageThatDiffersTakesThat) {
  const cf::Ref image = makeARGBImage(1, 1, {255, 1, 1, 1});
  ASSERT_NE(DRAVCFImageGetCGImage(image.get()), nullptr);
  image->buffer[1] = 99;
  DRAVCFImagePromoteImage(image.get(), 0, 1);
  EXPECT_EQ(bufferOf(image.get()), (Bytes{255, 1, 1, 1}));
}

TEST(Promotion, OfPaddedRowsGivesPackedRows) {
  const Bytes padded{255, 1, 2, 3, 0, 0, 0, 0, 255, 4, 5, 6, 0, 0, 0, 0};
  const cf::Ref image = cf::adopt(DRAVCFImageCreateWithBuffer(
      nullptr, padded.data(), 1, 2, 8, 32, 8, displaySpace().get(), kCGImageAlphaPremultipliedFirst));
  DRAVCFImagePromoteImage(image.get(), 0, 1);
  EXPECT_EQ(image->bytesPerRow, 4u);
  EXPECT_EQ(bufferOf(image.get()), (Bytes{255, 1, 2, 3, 255, 4, 5, 6}));
}

TEST(Promotion, OfAnImageThatHoldsNothingLeavesItClear) {
  const cf::Ref image = cf::adopt(DRAVCFImageCreate(nullptr));
  image->width = 5;
  DRAVCFImagePromoteImage(image.get(), 1, 1);
  EXPECT_EQ(image->buffer, nullptr);
  EXPECT_EQ(image->width, 0u);
  EXPECT_EQ(image->alphaInfo, kCGImageAlphaPremultipliedFirst);
}

TEST(Promotion, OfABufferThatFitsNoPlatformImageLosesThePixels) {
  const cf::Ref image = makeBufferImage(4, 1, 7, displaySpace().get(), kCGImageAlphaNone, Bytes(4, 1));
  ASSERT_NE(image->buffer, nullptr);
  DRAVCFImagePromoteImage(image.get(), 1, 0);
  EXPECT_EQ(image->buffer, nullptr);
  EXPECT_EQ(image->cgImage, nullptr);
  EXPECT_EQ(DRAVCFImageGetWidth(image.get()), 0u);
}

TEST(Promotion, OfAnImageWithoutPixelsGivesNoBuffer) {
  const cf::Ref image = cf::adopt(DRAVCFImageCreateWithSize(nullptr, CGSizeMake(0, 0), 1));
  DRAVCFImagePromoteImage(image.get(), 1, 1);
  EXPECT_EQ(image->buffer, nullptr);
}

// ---- unification

struct Unified {
  size_t bitsPerPixel;
  CGImageAlphaInfo alpha;
};

void expectUnified(const cf::Ref<DRAVCFImageRef> &a, const cf::Ref<DRAVCFImageRef> &b, Unified expected) {
  DRAVCFImageUnifyImageFormats(a.get(), b.get());
  for (const auto &image : {a, b}) {
    EXPECT_EQ(DRAVCFImageGetBitsPerPixel(image.get()), expected.bitsPerPixel);
    EXPECT_EQ(DRAVCFImageGetAlphaInfo(image.get()), expected.alpha);
  }
}

cf::Ref<DRAVCFImageRef> gray() { return makeGrayImage(1, 1, {51}); }
cf::Ref<DRAVCFImageRef> argb() { return makeARGBImage(1, 1, {85, 17, 17, 0}); }
cf::Ref<DRAVCFImageRef> rgb() {
  return makeBufferImage(1, 1, 32, displaySpace().get(), kCGImageAlphaNoneSkipFirst, {0, 10, 20, 30});
}
cf::Ref<DRAVCFImageRef> rgba() {
  return makeBufferImage(1, 1, 32, displaySpace().get(), kCGImageAlphaPremultipliedLast, {17, 17, 0, 85});
}

TEST(Unification, OfAlikeImagesChangesNothing) {
  expectUnified(gray(), gray(), {8, kCGImageAlphaNone});
  expectUnified(rgb(), rgb(), {32, kCGImageAlphaNoneSkipFirst});
  expectUnified(argb(), argb(), {32, kCGImageAlphaPremultipliedFirst});
}

TEST(Unification, OfGreyAndColourGivesColour) {
  expectUnified(gray(), rgb(), {32, kCGImageAlphaNoneSkipFirst});
  expectUnified(rgb(), gray(), {32, kCGImageAlphaNoneSkipFirst});
}

TEST(Unification, OfOpaqueAndAlphaGivesAlpha) {
  expectUnified(rgb(), argb(), {32, kCGImageAlphaPremultipliedFirst});
  expectUnified(argb(), rgb(), {32, kCGImageAlphaPremultipliedFirst});
  expectUnified(gray(), argb(), {32, kCGImageAlphaPremultipliedFirst});
  expectUnified(argb(), gray(), {32, kCGImageAlphaPremultipliedFirst});
}

TEST(Unification, OfAlphaElsewhereMovesItFirst) {
  expectUnified(rgba(), rgb(), {32, kCGImageAlphaPremultipliedFirst});
  expectUnified(rgb(), rgba(), {32, kCGImageAlphaPremultipliedFirst});
  expectUnified(rgba(), rgba(), {32, kCGImageAlphaPremultipliedFirst});
}

TEST(Unification, WithAnImageThatHoldsNothingChangesNothing) {
  const cf::Ref empty = cf::adopt(DRAVCFImageCreate(nullptr));
  const cf::Ref image = gray();
  DRAVCFImageUnifyImageFormats(empty.get(), image.get());
  EXPECT_EQ(image->bitsPerPixel, 8u);
  DRAVCFImageUnifyImageFormats(image.get(), empty.get());
  EXPECT_EQ(image->bitsPerPixel, 8u);
  EXPECT_EQ(bufferOf(image.get()), (Bytes{51}));
}

}  // namespace
