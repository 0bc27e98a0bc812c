#include <gtest/gtest.h>

#include <cmath>

#include "core/images.h"
#include "failing_allocator.h"
#include "failing_new.h"

namespace {

using namespace test;

cf::Ref<DRAVCFImageRef> rgbImage(size_t width, size_t height, const Bytes &bytes) {
  return makeBufferImage(width, height, 32, displaySpace().get(), kCGImageAlphaNoneSkipFirst, bytes);
}

Bytes masked(DRAVCFImageRef image, DRAVCFImageRef mask, Boolean isPremultiplied) {
  const cf::Ref result = cf::adopt(DRAVCFImageCreateWithImageAndMask(nullptr, image, mask, isPremultiplied));
  return result ? bufferOf(result.get()) : Bytes{};
}

TEST(Mask, OfAnotherSizeGivesNothing) {
  const cf::Ref image = rgbImage(1, 1, {0, 1, 2, 3});
  EXPECT_EQ(masked(image.get(), makeGrayImage(2, 1, {1, 2}).get(), 0), Bytes{});
  EXPECT_EQ(masked(image.get(), makeGrayImage(1, 2, {1, 2}).get(), 0), Bytes{});
}

TEST(Mask, BecomesTheAlphaAndMultipliesTheColours) {
  const cf::Ref image = rgbImage(3, 1, {0, 9, 8, 7, 0, 9, 8, 7, 0, 255, 0, 100});
  EXPECT_EQ(masked(image.get(), makeGrayImage(3, 1, {0, 255, 128}).get(), 0),
            (Bytes{0, 0, 0, 0, 255, 9, 8, 7, 128, 128, 0, 50}));
}

TEST(Mask, OfPremultipliedColoursLeavesThem) {
  const cf::Ref image = rgbImage(1, 1, {0, 9, 8, 7});
  EXPECT_EQ(masked(image.get(), makeGrayImage(1, 1, {10}).get(), 1), (Bytes{10, 9, 8, 7}));
}

TEST(Mask, MultipliesEveryPairAsDefined) {
  Bytes pixels, grays, expected;
  for (int m = 0; m < 256; ++m) {
    for (int v = 0; v < 256; ++v) {
      for (int byte : {0, v, v, v}) pixels.push_back(static_cast<uint8_t>(byte));
      grays.push_back(static_cast<uint8_t>(m));
      const float a = static_cast<float>(m) / 255.0f;
      const float scaled = ((static_cast<float>(v) / 255.0f) * a) * 255.0f;
      const auto product =
          static_cast<uint8_t>(static_cast<int>(std::floor(static_cast<double>(scaled) + 0.5)));
      for (uint8_t byte : {static_cast<uint8_t>(m), product, product, product}) expected.push_back(byte);
    }
  }
  const cf::Ref image = rgbImage(256, 256, pixels);
  const cf::Ref mask = makeGrayImage(256, 256, grays);
  EXPECT_EQ(masked(image.get(), mask.get(), 0), expected);
}

TEST(Mask, OfAGreyImagePromotesItToColour) {
  const cf::Ref image = makeGrayImage(2, 1, {100, 200});
  EXPECT_EQ(masked(image.get(), makeGrayImage(2, 1, {255, 0}).get(), 0),
            (Bytes{255, 100, 100, 100, 0, 0, 0, 0}));
  EXPECT_EQ(image->bitsPerPixel, 8u) << "the image itself is not changed";
}

TEST(Mask, InColourCountsAsItsGrey) {
  const cf::Ref image = rgbImage(1, 1, {0, 255, 255, 255});
  const cf::Ref mask = rgbImage(1, 1, {0, 0, 255, 0});
  EXPECT_EQ(masked(image.get(), mask.get(), 1), (Bytes{150, 255, 255, 255}));
}

TEST(Mask, OfAnImageWithAlphaTakesItsColoursDivided) {
  const cf::Ref image = makeARGBImage(1, 1, {128, 64, 64, 64});
  EXPECT_EQ(masked(image.get(), makeGrayImage(1, 1, {255}).get(), 0), (Bytes{255, 128, 128, 128}));
}

TEST(Mask, WalksEachBufferWithItsOwnRows) {
  const Bytes padded{0, 1, 2, 3, 9, 9, 9, 9, 0, 4, 5, 6, 9, 9, 9, 9};
  const cf::Ref image = cf::adopt(DRAVCFImageCreateWithBuffer(
      nullptr, padded.data(), 1, 2, 8, 32, 8, displaySpace().get(), kCGImageAlphaNoneSkipFirst));
  EXPECT_EQ(masked(image.get(), makeGrayImage(1, 2, {255, 255}).get(), 0),
            (Bytes{255, 1, 2, 3, 255, 4, 5, 6}));
}

TEST(Mask, FailingAnywhereGivesNothingOrTheWholeResult) {
  const cf::Ref image = rgbImage(1, 1, {0, 9, 8, 7});
  const cf::Ref mask = rgbImage(1, 1, {0, 255, 255, 255});
  testing_support::forEachFailedAllocation([&](CFAllocatorRef allocator, long) {
    const cf::Ref result =
        cf::adopt(DRAVCFImageCreateWithImageAndMask(allocator, image.get(), mask.get(), 0));
    if (result) {
      EXPECT_EQ(bufferOf(result.get()), (Bytes{255, 9, 8, 7}));
    }
  });
}

TEST(Mask, WalksThePaddedRowsOfTheMask) {
  const Bytes padded{10, 99, 99, 20, 99, 99};
  const cf::Ref mask = cf::adopt(DRAVCFImageCreateWithBuffer(nullptr, padded.data(), 1, 2, 8, 8, 3,
                                                             graySpace().get(), kCGImageAlphaNone));
  const cf::Ref image = rgbImage(1, 2, {0, 1, 2, 3, 0, 4, 5, 6});
  EXPECT_EQ(masked(image.get(), mask.get(), 1), (Bytes{10, 1, 2, 3, 20, 4, 5, 6}));
}

TEST(Mask, OfPlatformImagesIsThatOfTheirPixels) {
  Bytes grays, colours, expected;
  for (int gray = 0; gray < 256; ++gray) {
    grays.push_back(static_cast<uint8_t>(gray));
    for (int byte : {0, 10, 20, 30}) colours.push_back(static_cast<uint8_t>(byte));
    for (int byte : {gray, 10, 20, 30}) expected.push_back(static_cast<uint8_t>(byte));
  }
  const cf::Ref gray = makeCGImage({256, 1, 8, 8, 256, graySpace().get(), kCGImageAlphaNone}, grays);
  const cf::Ref colour =
      makeCGImage({256, 1, 8, 32, 1024, displaySpace().get(), kCGImageAlphaNoneSkipFirst}, colours);
  const cf::Ref mask = cf::adopt(DRAVCFImageCreateWithImage(nullptr, gray.get())),
                image = cf::adopt(DRAVCFImageCreateWithImage(nullptr, colour.get()));
  EXPECT_EQ(masked(image.get(), mask.get(), 1), expected);
  EXPECT_EQ(mask->cgImage, gray.get());
  EXPECT_EQ(image->cgImage, colour.get());
}

TEST(Mask, WithAlphaCountsAsItsGreyOverBlack) {
  const cf::Ref image = rgbImage(1, 1, {0, 9, 8, 7});
  EXPECT_EQ(masked(image.get(), makeARGBImage(1, 1, {128, 100, 100, 100}).get(), 1), (Bytes{100, 9, 8, 7}));
}

TEST(Mask, OfDeeperGreyThanAByteGivesNothing) {
  const Bytes wide{1, 2};
  const cf::Ref mask = cf::adopt(DRAVCFImageCreateWithBuffer(nullptr, wide.data(), 1, 1, 16, 16, 2,
                                                             graySpace().get(), kCGImageAlphaNone));
  EXPECT_EQ(masked(rgbImage(1, 1, {0, 9, 8, 7}).get(), mask.get(), 1), Bytes{});
}

TEST(Mask, FailingAnywhereOfAGreyImageGivesNothingOrTheWholeResult) {
  const cf::Ref image = makeGrayImage(1, 1, {200}), mask = makeGrayImage(1, 1, {128});
  bool isDone = false;
  testing_support::forEachFailedAllocation([&](CFAllocatorRef allocator, long) {
    const cf::Ref result =
        cf::adopt(DRAVCFImageCreateWithImageAndMask(allocator, image.get(), mask.get(), 0));
    isDone = static_cast<bool>(result);
    if (result) {
      EXPECT_EQ(bufferOf(result.get()), (Bytes{128, 100, 100, 100}));
    }
  });
  EXPECT_TRUE(isDone) << "with no allocation failing";
}

TEST(Mask, OfImagesThatHoldNothingGivesNothing) {
  const cf::Ref empty = cf::adopt(DRAVCFImageCreate(nullptr));
  EXPECT_EQ(DRAVCFImageCreateWithImageAndMask(nullptr, empty.get(), empty.get(), 0), nullptr);
}

TEST(Mask, WithoutMemoryForDrawingGivesNothingOrTheWholeResult) {
  const cf::Ref image = makeGrayImage(1, 1, {9});
  const cf::Ref mask = rgbImage(1, 1, {0, 255, 255, 255});
  bool failed = true;
  for (long request = 1; failed; ++request) {
    ASSERT_LT(request, 1000);
    const cf::Ref result = [&] {
      const testing_support::FailingNew failing(request);
      cf::Ref made = cf::adopt(DRAVCFImageCreateWithImageAndMask(nullptr, image.get(), mask.get(), 0));
      failed = failing.failed();
      return made;
    }();
    EXPECT_TRUE(result || failed) << request;
    if (result) {
      EXPECT_EQ(bufferOf(result.get()), (Bytes{255, 9, 9, 9})) << request;
    }
  }
}

TEST(Mask, LeavesABufferAlone) {
  const cf::Ref image = rgbImage(1, 1, {5, 9, 8, 7});
  const cf::Ref mask = makeGrayImage(1, 1, {6});
  const cf::Ref result = cf::adopt(DRAVCFImageCreateWithImageAndMask(nullptr, image.get(), mask.get(), 2));
  ASSERT_TRUE(result);
  EXPECT_EQ(result->cgImage, nullptr);
  EXPECT_EQ(result->alphaInfo, kCGImageAlphaPremultipliedFirst);
  EXPECT_EQ(result->bitsPerPixel, 32u);
  EXPECT_EQ(bufferOf(result.get()), (Bytes{6, 9, 8, 7})) << "any number but 0 means premultiplied";
}

TEST(Mask, WithoutMemoryToDrawWithGivesNothing) {
  const cf::Ref image = makeGrayImage(1, 1, {200}), mask = rgbImage(1, 1, {0, 255, 255, 255});
  int refusals = 0;
  bool failed = true;
  for (long n = 1; failed; ++n) {
    cf::Ref<DRAVCFImageRef> result;
    {
      const testing_support::FailingNew failing(n);
      result = cf::adopt(DRAVCFImageCreateWithImageAndMask(nullptr, image.get(), mask.get(), 0));
      failed = failing.failed();
    }
    refusals += !result;
    if (result) {
      EXPECT_EQ(bufferOf(result.get()), (Bytes{255, 200, 200, 200})) << n;
    }
  }
  EXPECT_GT(refusals, 0);
}

}  // namespace
