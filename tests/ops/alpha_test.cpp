#include <gtest/gtest.h>

#include "core/images.h"
#include "failing_allocator.h"
#include "failing_new.h"

namespace {

using namespace test;

cf::Ref<DRAVCFImageRef> withAlphaInfo(uint32_t info) {
  return makeBufferImage(1, 1, 32, displaySpace().get(), info, {254, 1, 2, 3});
}

TEST(HasAlpha, IsNoForNoneAndTheSkippedOnesAndYesForEveryOther) {
  for (uint32_t info = 0; info <= 9; ++info) {
    EXPECT_EQ(DRAVCFImageHasAlpha(withAlphaInfo(info).get()), info == 0 || info == 5 || info == 6 ? 0 : 1)
        << info;
  }
}

// One pixel that no buffer has been made of.
cf::Ref<DRAVCFImageRef> platformPixel(CGImageAlphaInfo info, const Bytes &pixel) {
  const cf::Ref cgImage = makeCGImage({1, 1, 8, 32, 4, displaySpace().get(), info}, pixel);
  return cf::adopt(DRAVCFImageCreateWithImage(nullptr, cgImage.get()));
}

TEST(HasAlpha, OfAPlatformImageIsWhatThatSays) {
  EXPECT_EQ(DRAVCFImageHasAlpha(platformPixel(kCGImageAlphaNoneSkipFirst, {1, 2, 3, 4}).get()), 0);
  EXPECT_EQ(DRAVCFImageHasAlpha(platformPixel(kCGImageAlphaLast, {1, 2, 3, 4}).get()), 1);
}

TEST(IsOpaque, OfAPlatformImageLooksAtItsPixels) {
  EXPECT_EQ(DRAVCFImageIsOpaque(platformPixel(kCGImageAlphaFirst, {254, 0, 0, 0}).get()), 0);
  EXPECT_EQ(DRAVCFImageIsOpaque(platformPixel(kCGImageAlphaFirst, {255, 0, 0, 0}).get()), 1);
  EXPECT_EQ(DRAVCFImageIsOpaque(platformPixel(kCGImageAlphaLast, {255, 0, 0, 254}).get()), 0)
      << "its buffer has alpha first";
  EXPECT_EQ(DRAVCFImageIsOpaque(platformPixel(kCGImageAlphaNoneSkipFirst, {0, 0, 0, 0}).get()), 1);
}

TEST(IsOpaque, WithoutAlphaIsYesWithoutALookAtThePixels) {
  for (uint32_t info : {0u, 5u, 6u}) EXPECT_EQ(DRAVCFImageIsOpaque(withAlphaInfo(info).get()), 1) << info;
}

TEST(IsOpaque, ReadsTheFirstByteWhereverTheAlphaIs) {
  for (uint32_t info : {1u, 2u, 3u, 4u}) EXPECT_EQ(DRAVCFImageIsOpaque(withAlphaInfo(info).get()), 0) << info;
  const cf::Ref last =
      makeBufferImage(1, 1, 32, displaySpace().get(), kCGImageAlphaPremultipliedLast, {255, 1, 2, 3});
  EXPECT_EQ(DRAVCFImageIsOpaque(last.get()), 1);
}

TEST(IsOpaque, FindsOneTransparentPixelAnywhere) {
  for (size_t where = 0; where < 300; ++where) {
    Bytes pixels(300 * 4, 255);
    pixels[4 * where] = 254;
    EXPECT_EQ(DRAVCFImageIsOpaque(makeARGBImage(100, 3, pixels).get()), 0) << where;
  }
  EXPECT_EQ(DRAVCFImageIsOpaque(makeARGBImage(100, 3, Bytes(1200, 255)).get()), 1);
}

TEST(IsOpaque, LeavesPaddingOut) {
  Bytes rows(2 * 64, 0);
  for (size_t y = 0; y < 2; ++y) rows[64 * y] = 255;
  const cf::Ref image = cf::adopt(DRAVCFImageCreateWithBuffer(
      nullptr, rows.data(), 1, 2, 8, 32, 64, displaySpace().get(), kCGImageAlphaPremultipliedFirst));
  EXPECT_EQ(DRAVCFImageIsOpaque(image.get()), 1);
}

TEST(IsOpaque, NeverReadsPastABufferOfSmallerPixels) {
  const cf::Ref image = makeBufferImage(5, 1, 8, graySpace().get(), kCGImageAlphaOnly, {255, 0, 0, 0, 255});
  EXPECT_EQ(DRAVCFImageIsOpaque(image.get()), 1) << "bytes 0 and 4 are there, and no other counts";
  const cf::Ref other = makeBufferImage(5, 1, 8, graySpace().get(), kCGImageAlphaOnly, {255, 0, 0, 0, 254});
  EXPECT_EQ(DRAVCFImageIsOpaque(other.get()), 0);
}

TEST(IsOpaque, OfABufferShorterThanItsRowsClaimGoesByWhatIsThere) {
  const cf::Ref image = makeARGBImage(1, 3, {255, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0});
  image->bufferSize = 4;
  EXPECT_EQ(DRAVCFImageIsOpaque(image.get()), 1);
  image->bufferSize = 5;
  EXPECT_EQ(DRAVCFImageIsOpaque(image.get()), 0) << "the first byte of the second row";
}

TEST(AddAlpha, GivesOpaqueARGBAndLeavesAnImageThatHasAlpha) {
  const cf::Ref gray = makeGrayImage(1, 1, {7});
  DRAVCFImageAddAlphaChannel(gray.get());
  EXPECT_EQ(bufferOf(gray.get()), (Bytes{255, 7, 7, 7}));
  EXPECT_EQ(gray->alphaInfo, kCGImageAlphaPremultipliedFirst);
  const cf::Ref alpha = makeARGBImage(1, 1, {1, 1, 1, 1});
  const uint8_t *before = alpha->buffer;
  DRAVCFImageAddAlphaChannel(alpha.get());
  EXPECT_EQ(alpha->buffer, before);
}

TEST(RemoveAlpha, DividesAndStoresTheAlphaByteOne) {
  const cf::Ref image = makeARGBImage(3, 1, {128, 64, 64, 64, 0, 0, 0, 0, 255, 9, 8, 7});
  testing::internal::CaptureStderr();
  DRAVCFImageRemoveAlphaChannel(image.get());
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(bufferOf(image.get()), (Bytes{1, 128, 128, 128, 1, 0, 0, 0, 1, 9, 8, 7}));
  EXPECT_EQ(image->alphaInfo, kCGImageAlphaPremultipliedFirst);
  EXPECT_EQ(image->cgImage, nullptr);
}

TEST(RemoveAlpha, OfAnImageWithoutAlphaDoesNothing) {
  const cf::Ref image =
      makeBufferImage(1, 1, 32, displaySpace().get(), kCGImageAlphaNoneSkipFirst, {9, 1, 2, 3});
  DRAVCFImageRemoveAlphaChannel(image.get());
  EXPECT_EQ(bufferOf(image.get()), (Bytes{9, 1, 2, 3}));
}

TEST(RemoveAlpha, GivesTheBytesOfUnpremultiplicationForEveryPair) {
  Bytes pixels;
  for (int alpha = 0; alpha < 256; ++alpha)
    for (int colour = 0; colour <= alpha; ++colour)
      for (int byte : {alpha, colour, 0, alpha}) pixels.push_back(static_cast<uint8_t>(byte));
  Bytes expected = pixels;
  DRAVCFUnpremultiplyARGBBuffer(expected.data(), expected.size());
  for (size_t i = 0; i < expected.size(); i += 4) expected[i] = 1;
  const cf::Ref image = makeARGBImage(pixels.size() / 4, 1, pixels);
  DRAVCFImageRemoveAlphaChannel(image.get());
  EXPECT_EQ(bufferOf(image.get()), expected);
}

// Promotion would mend such pixels on the way only if drawing did; it copies them.
TEST(RemoveAlpha, OfColoursAboveTheirAlphaWarnsOnceACallAndClamps) {
  const cf::Ref image = makeARGBImage(3, 1, {100, 200, 0, 0, 100, 101, 0, 0, 100, 100, 0, 0});
  testing::internal::CaptureStderr();
  DRAVCFImageRemoveAlphaChannel(image.get());
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "DRAVCFImageRemoveAlphaChannel - invalid unpremultiplication\n");
  EXPECT_EQ(bufferOf(image.get()), (Bytes{1, 255, 0, 0, 1, 255, 0, 0, 1, 255, 0, 0}));
}

TEST(CopyOpaque, LeavesTheSource) {
  const cf::Ref image = makeARGBImage(1, 1, {128, 64, 64, 64});
  const cf::Ref copy = cf::adopt(DRAVCFImageCopyOpaqueImage(nullptr, image.get()));
  EXPECT_EQ(bufferOf(copy.get()), (Bytes{1, 128, 128, 128}));
  EXPECT_EQ(bufferOf(image.get()), (Bytes{128, 64, 64, 64}));
}

TEST(CopyPremultipliedOpaque, KeepsTheColoursAndFillsTheAlpha) {
  const cf::Ref image = makeARGBImage(1, 1, {128, 64, 64, 64});
  ASSERT_NE(DRAVCFImageGetCGImage(image.get()), nullptr);
  const cf::Ref copy = cf::adopt(DRAVCFImageCopyPremultipliedOpaqueImage(nullptr, image.get()));
  EXPECT_EQ(bufferOf(copy.get()), (Bytes{255, 64, 64, 64}));
  EXPECT_EQ(image->cgImage, nullptr) << "the platform image of the source goes";
  EXPECT_EQ(bufferOf(image.get()), (Bytes{128, 64, 64, 64}));
}

TEST(CopyPremultipliedOpaque, OfAPlatformImageNeverDropsTheOnlyPixels) {
  const cf::Ref space = displaySpace();
  const cf::Ref cgImage =
      makeCGImage({1, 1, 8, 32, 4, space.get(), kCGImageAlphaPremultipliedFirst}, {128, 64, 64, 64});
  const cf::Ref image = cf::adopt(DRAVCFImageCreateWithImage(nullptr, cgImage.get()));
  const cf::Ref copy = cf::adopt(DRAVCFImageCopyPremultipliedOpaqueImage(nullptr, image.get()));
  EXPECT_EQ(bufferOf(copy.get()), (Bytes{255, 64, 64, 64}));
  EXPECT_EQ(image->cgImage, nullptr);
  EXPECT_EQ(bufferOf(image.get()), (Bytes{128, 64, 64, 64}));
}

TEST(CopyPremultipliedOpaque, OfAnImageWithoutAlphaIsAPlainCopy) {
  const cf::Ref image = makeGrayImage(2, 1, {1, 2});
  ASSERT_NE(DRAVCFImageGetCGImage(image.get()), nullptr);
  const cf::Ref copy = cf::adopt(DRAVCFImageCopyPremultipliedOpaqueImage(nullptr, image.get()));
  EXPECT_EQ(bufferOf(copy.get()), (Bytes{1, 2}));
  EXPECT_NE(image->cgImage, nullptr);
}

TEST(CopyAlpha, IsTheFirstByteOfEveryPixelAsGrey) {
  Bytes rows(2 * 32, 9);
  for (size_t i = 0; i < 3; ++i) {
    rows[4 * i] = static_cast<uint8_t>(10 + i);
    rows[32 + 4 * i] = static_cast<uint8_t>(20 + i);
  }
  const cf::Ref image = cf::adopt(DRAVCFImageCreateWithBuffer(
      nullptr, rows.data(), 3, 2, 8, 32, 32, displaySpace().get(), kCGImageAlphaPremultipliedFirst));
  const cf::Ref alpha = cf::adopt(DRAVCFImageCopyAlphaChannel(nullptr, image.get()));
  ASSERT_TRUE(alpha);
  EXPECT_EQ(bufferOf(alpha.get()), (Bytes{10, 11, 12, 20, 21, 22}));
  EXPECT_EQ(alpha->alphaInfo, kCGImageAlphaNone);
  EXPECT_EQ(alpha->bitsPerPixel, 8u);
  EXPECT_TRUE(CFEqual(alpha->colorSpace, graySpace().get()));
}

TEST(CopyAlpha, OfAnImageWithoutAlphaIsWhiteAndLeavesTheSource) {
  const cf::Ref image = makeGrayImage(2, 1, {1, 2});
  const cf::Ref alpha = cf::adopt(DRAVCFImageCopyAlphaChannel(nullptr, image.get()));
  EXPECT_EQ(bufferOf(alpha.get()), (Bytes{255, 255}));
  EXPECT_EQ(bufferOf(image.get()), (Bytes{1, 2}));
}

TEST(CopyAlpha, OfSmallerPixelsIsNone) {
  const cf::Ref image = makeBufferImage(2, 1, 8, graySpace().get(), kCGImageAlphaOnly, {1, 2});
  EXPECT_EQ(DRAVCFImageCopyAlphaChannel(nullptr, image.get()), nullptr);
}

TEST(AlphaCopies, OfAnImageThatHoldsNothingAreNone) {
  const cf::Ref empty = cf::adopt(DRAVCFImageCreate(nullptr));
  EXPECT_EQ(DRAVCFImageCopyAlphaChannel(nullptr, empty.get()), nullptr);
  EXPECT_EQ(DRAVCFImageCopyOpaqueImage(nullptr, empty.get()), nullptr);
}

TEST(AlphaAllocation, FailingAnywhereGivesNothingOrTheWholeResult) {
  using testing_support::forEachFailedAllocation;
  const cf::Ref source = makeARGBImage(2, 1, {128, 64, 64, 64, 255, 1, 2, 3});
  const cf::Ref gray = makeGrayImage(2, 1, {1, 2});
  forEachFailedAllocation([&](CFAllocatorRef allocator, long) {
    const cf::Ref copy = cf::adopt(DRAVCFImageCopyOpaqueImage(allocator, source.get()));
    if (copy) {
      EXPECT_EQ(bufferOf(copy.get()), (Bytes{1, 128, 128, 128, 1, 1, 2, 3}));
    }
  });
  forEachFailedAllocation([&](CFAllocatorRef allocator, long) {
    const cf::Ref copy = cf::adopt(DRAVCFImageCopyPremultipliedOpaqueImage(allocator, source.get()));
    if (copy) {
      EXPECT_EQ(bufferOf(copy.get()), (Bytes{255, 64, 64, 64, 255, 1, 2, 3}));
    }
  });
  forEachFailedAllocation([&](CFAllocatorRef allocator, long) {
    const cf::Ref copy = cf::adopt(DRAVCFImageCopyAlphaChannel(allocator, source.get()));
    if (copy) {
      EXPECT_EQ(bufferOf(copy.get()), (Bytes{128, 255}));
    }
  });
  forEachFailedAllocation([&](CFAllocatorRef allocator, long) {
    const cf::Ref copy = cf::adopt(DRAVCFImageCopyAlphaChannel(allocator, gray.get()));
    if (copy) {
      EXPECT_EQ(bufferOf(copy.get()), (Bytes{255, 255}));
    }
  });
  EXPECT_EQ(bufferOf(source.get()), (Bytes{128, 64, 64, 64, 255, 1, 2, 3}));
}

TEST(AddAlpha, DropsThePlatformImage) {
  const cf::Ref image = platformPixel(kCGImageAlphaNoneSkipFirst, {9, 1, 2, 3});
  DRAVCFImageAddAlphaChannel(image.get());
  EXPECT_EQ(image->cgImage, nullptr);
  EXPECT_EQ(bufferOf(image.get()), (Bytes{255, 1, 2, 3}));
}

TEST(RemoveAlpha, OfAnyLayoutWithAlphaMovesItFirst) {
  for (const auto info : {kCGImageAlphaPremultipliedLast, kCGImageAlphaLast}) {
    const Bytes pixel = info == kCGImageAlphaLast ? Bytes{128, 0, 255, 128} : Bytes{64, 0, 128, 128};
    const cf::Ref buffered = makeBufferImage(1, 1, 32, displaySpace().get(), info, pixel);
    for (const auto &image : {buffered, platformPixel(info, pixel)}) {
      DRAVCFImageRemoveAlphaChannel(image.get());
      EXPECT_EQ(bufferOf(image.get()), (Bytes{1, 128, 0, 255}));
      EXPECT_EQ(image->alphaInfo, kCGImageAlphaPremultipliedFirst);
    }
  }
}

TEST(RemoveAlpha, WarnsOnceHoweverManyPixelsThereAre) {
  Bytes pixels;
  for (int i = 0; i < 20000; ++i) pixels.insert(pixels.end(), {100, 200, 0, 0});
  const cf::Ref image = makeARGBImage(200, 100, pixels);
  testing::internal::CaptureStderr();
  DRAVCFImageRemoveAlphaChannel(image.get());
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "DRAVCFImageRemoveAlphaChannel - invalid unpremultiplication\n");
  testing::internal::CaptureStderr();
  DRAVCFImageRemoveAlphaChannel(image.get());
  EXPECT_NE(testing::internal::GetCapturedStderr(), "") << "the alpha byte 1 is below most colours";
}

TEST(RemoveAlpha, OfAnImageThatCannotBePromotedLeavesNoBuffer) {
  const cf::Ref image = makeBufferImage(4, 1, 7, displaySpace().get(), kCGImageAlphaFirst, Bytes(4, 1));
  DRAVCFImageRemoveAlphaChannel(image.get());
  EXPECT_EQ(image->buffer, nullptr);
  const cf::Ref other = makeBufferImage(4, 1, 7, displaySpace().get(), kCGImageAlphaFirst, Bytes(4, 1));
  EXPECT_EQ(DRAVCFImageCopyOpaqueImage(nullptr, other.get()), nullptr);
  EXPECT_EQ(bufferOf(other.get()), Bytes(4, 1));
}

TEST(CopyOpaque, OfAnImageWithoutAlphaIsAPlainCopy) {
  const cf::Ref image = makeGrayImage(3, 1, {1, 2, 3});
  const cf::Ref copy = cf::adopt(DRAVCFImageCopyOpaqueImage(nullptr, image.get()));
  EXPECT_EQ(bufferOf(copy.get()), (Bytes{1, 2, 3}));
  EXPECT_NE(copy->buffer, image->buffer);
}

TEST(CopyPremultipliedOpaque, FillsTheFirstByteWhereverTheAlphaIs) {
  const cf::Ref image =
      makeBufferImage(1, 1, 32, displaySpace().get(), kCGImageAlphaPremultipliedLast, {1, 2, 3, 4});
  const cf::Ref copy = cf::adopt(DRAVCFImageCopyPremultipliedOpaqueImage(nullptr, image.get()));
  EXPECT_EQ(bufferOf(copy.get()), (Bytes{255, 2, 3, 4}));
}

TEST(CopyPremultipliedOpaque, OfSmallerPixelsIsNone) {
  const cf::Ref image = makeBufferImage(8, 1, 8, graySpace().get(), kCGImageAlphaOnly, Bytes(8, 9));
  EXPECT_EQ(DRAVCFImageCopyPremultipliedOpaqueImage(nullptr, image.get()), nullptr);
  EXPECT_EQ(bufferOf(image.get()), Bytes(8, 9));
}

TEST(CopyAlpha, OfAPlatformImageIsItsAlpha) {
  const cf::Ref image = platformPixel(kCGImageAlphaLast, {1, 2, 3, 77});
  const cf::Ref alpha = cf::adopt(DRAVCFImageCopyAlphaChannel(nullptr, image.get()));
  EXPECT_EQ(bufferOf(alpha.get()), (Bytes{77}));
}

TEST(AddAlpha, LeavesAlphaWhereverItIs) {
  const cf::Ref image =
      makeBufferImage(1, 1, 32, displaySpace().get(), kCGImageAlphaPremultipliedLast, {1, 2, 3, 4});
  DRAVCFImageAddAlphaChannel(image.get());
  EXPECT_EQ(bufferOf(image.get()), (Bytes{1, 2, 3, 4}));
  EXPECT_EQ(image->alphaInfo, kCGImageAlphaPremultipliedLast);
}

TEST(RemoveAlpha, WarnsOfOnePixelAmongMany) {
  for (const size_t where : {size_t{0}, size_t{5000}, size_t{19999}}) {
    Bytes pixels(4 * 20000, 100);
    pixels[4 * where + 3] = 101;
    const cf::Ref image = makeARGBImage(200, 100, pixels);
    testing::internal::CaptureStderr();
    DRAVCFImageRemoveAlphaChannel(image.get());
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "DRAVCFImageRemoveAlphaChannel - invalid unpremultiplication\n")
        << where;
  }
}

TEST(AlphaAllocation, OfDrawingGivesNothingOrTheWholeResult) {
  const cf::Ref last =
      makeBufferImage(1, 1, 32, displaySpace().get(), kCGImageAlphaPremultipliedLast, {64, 0, 128, 128});
  const cf::Ref gray = makeGrayImage(2, 1, {1, 2});
  int refusals = 0;
  const auto check = [&](auto copyOf, DRAVCFImageRef image, const Bytes &expected) {
    bool failed = true;
    for (long n = 1; failed; ++n) {
      cf::Ref<DRAVCFImageRef> copy;
      {
        const testing_support::FailingNew failing(n);
        copy = cf::adopt(copyOf(nullptr, image));
        failed = failing.failed();
      }
      refusals += !copy;
      if (copy) {
        EXPECT_EQ(bufferOf(copy.get()), expected) << n;
      }
    }
  };
  check(DRAVCFImageCopyOpaqueImage, last.get(), {1, 128, 0, 255});
  check(DRAVCFImageCopyAlphaChannel, gray.get(), {255, 255});
  EXPECT_GT(refusals, 0);
}

}  // namespace
