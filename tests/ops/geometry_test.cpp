#include <gtest/gtest.h>

#include <cmath>

#include "core/images.h"
#include "failing_allocator.h"
#include "failing_new.h"

namespace {

using namespace test;

// Grey pixels that tell their place: 10 * row + column, row 0 on top.
cf::Ref<DRAVCFImageRef> placeImage(size_t width, size_t height, CFAllocatorRef allocator = nullptr) {
  Bytes bytes;
  for (size_t y = 0; y < height; ++y)
    for (size_t x = 0; x < width; ++x) bytes.push_back(static_cast<uint8_t>(10 * y + x));
  return makeGrayImage(width, height, bytes, allocator);
}

TEST(Crop, CountsRowsFromTheBottom) {
  const cf::Ref image = placeImage(4, 3);
  DRAVCFImageCropToRect(image.get(), CGRectMake(1, 0, 2, 2));
  EXPECT_EQ(bufferOf(image.get()), (Bytes{11, 12, 21, 22}));
  EXPECT_EQ(image->width, 2u);
  EXPECT_EQ(image->height, 2u);
  EXPECT_EQ(image->bytesPerRow, 2u);
  EXPECT_EQ(image->cgImage, nullptr);
}

TEST(Crop, ToTheWholeImageLeavesItUntouched) {
  const cf::Ref image = placeImage(4, 3);
  const uint8_t *before = image->buffer;
  DRAVCFImageCropToRect(image.get(), CGRectMake(0, 0, 4, 3));
  DRAVCFImageCropToRect(image.get(), CGRectMake(0.2f, 0.3f, 3.5f, 2.5f));
  DRAVCFImageCropToRect(image.get(), CGRectMake(4, 3, -4, -3));
  EXPECT_EQ(image->buffer, before);
}

// Drawn anew its rows would be padded.
TEST(Crop, ToTheWholeOfAColourImageLeavesItUntouched) {
  const cf::Ref image = makeARGBImage(3, 1, Bytes(12, 255));
  CGImageRef before = DRAVCFImageGetCGImage(image.get());
  DRAVCFImageCropToRect(image.get(), CGRectMake(0.2f, 0.3f, 2.5f, 0.6f));
  EXPECT_EQ(image->bytesPerRow, 12u);
  EXPECT_EQ(image->cgImage, before);
  // The whole of it after clipping only is drawn.
  DRAVCFImageCropToRect(image.get(), CGRectMake(-1, 0, 4, 1));
  EXPECT_EQ(image->width, 3u);
  EXPECT_EQ(image->bytesPerRow, 32u);
}

TEST(Crop, MovesAnOriginBelowZeroBeforeItCuts) {
  const cf::Ref image = placeImage(5, 4);
  DRAVCFImageCropToRect(image.get(), CGRectMake(-2, -3, 6, 5));
  EXPECT_EQ(image->width, 5u);
  EXPECT_EQ(image->height, 4u);
  const cf::Ref lower = placeImage(3, 4);
  DRAVCFImageCropToRect(lower.get(), CGRectMake(0, -3, 3, 2));
  EXPECT_EQ(bufferOf(lower.get()), (Bytes{20, 21, 22, 30, 31, 32})) << "two rows from the bottom";
}

TEST(Crop, AnOriginBelowZeroMovesWithoutShortening) {
  const cf::Ref image = placeImage(100, 2);
  DRAVCFImageCropToRect(image.get(), CGRectMake(-10, 0, 50, 2));
  EXPECT_EQ(image->width, 50u);
  EXPECT_EQ(bufferOf(image.get())[0], 0);
  EXPECT_EQ(bufferOf(image.get())[49], 49);
}

TEST(Crop, ANegativeSizeMeansItsStandardisedForm) {
  const cf::Ref image = placeImage(4, 3);
  DRAVCFImageCropToRect(image.get(), CGRectMake(3, 2, -2, -2));
  EXPECT_EQ(bufferOf(image.get()), (Bytes{11, 12, 21, 22}));
}

TEST(Crop, PastTheEdgeIsCutThere) {
  const cf::Ref image = placeImage(4, 3);
  DRAVCFImageCropToRect(image.get(), CGRectMake(2, 1, 10, 10));
  EXPECT_EQ(bufferOf(image.get()), (Bytes{2, 3, 12, 13}));
}

TEST(Crop, ThatEndsWithoutWidthOrHeightLeavesTheImage) {
  const cf::Ref image = placeImage(4, 3);
  const Bytes before = bufferOf(image.get());
  DRAVCFImageCropToRect(image.get(), CGRectMake(4, 0, 5, 3));
  DRAVCFImageCropToRect(image.get(), CGRectMake(0, 3, 4, 5));
  DRAVCFImageCropToRect(image.get(), CGRectMake(1, 1, 0, 2));
  EXPECT_EQ(bufferOf(image.get()), before);
  EXPECT_EQ(image->width, 4u);
}

TEST(Crop, ByNumbersThatAreNoPixelsLeavesTheImage) {
  const float infinity = HUGE_VALF;
  for (float odd : {std::nanf(""), infinity, -infinity}) {
    for (int field = 0; field < 4; ++field) {
      const cf::Ref image = placeImage(4, 3);
      CGRect rect = CGRectMake(1, 1, 2, 2);
      (field == 0   ? rect.origin.x
       : field == 1 ? rect.origin.y
       : field == 2 ? rect.size.width
                    : rect.size.height) = odd;
      DRAVCFImageCropToRect(image.get(), rect);
      ASSERT_NE(image->buffer, nullptr);
      EXPECT_LE(image->width, 4u);
      EXPECT_LE(image->height, 3u);
      EXPECT_TRUE(drav::bufferIsWhole(image.get()));
    }
  }
}

TEST(Crop, RowsOfColourArePaddedTo32Bytes) {
  const cf::Ref image = makeARGBImage(10, 2, Bytes(80, 255));
  DRAVCFImageCropToRect(image.get(), CGRectMake(0, 0, 9, 2));
  EXPECT_EQ(image->bytesPerRow, 64u);
  EXPECT_EQ(image->bufferSize, 128u);
  EXPECT_EQ(image->alphaInfo, kCGImageAlphaPremultipliedFirst);
  EXPECT_EQ(image->buffer[0], 255);
  EXPECT_EQ(image->buffer[36], 0) << "padding is zero";
}

TEST(Crop, Of24BitColourSkipsALastByte) {
  const cf::Ref image =
      makeBufferImage(2, 1, 24, deviceRGBSpace().get(), kCGImageAlphaNone, {1, 2, 3, 4, 5, 6});
  DRAVCFImageCropToRect(image.get(), CGRectMake(1, 0, 1, 1));
  EXPECT_EQ(image->bitsPerPixel, 32u);
  EXPECT_EQ(image->alphaInfo, kCGImageAlphaNoneSkipLast);
  EXPECT_EQ(image->bytesPerRow, 32u);
  EXPECT_EQ(image->buffer[0], 4);
  EXPECT_EQ(image->buffer[1], 5);
  EXPECT_EQ(image->buffer[2], 6);
}

TEST(Crop, KeepsEveryPremultipliedByte) {
  Bytes all;
  for (int alpha = 0; alpha < 256; ++alpha)
    for (int colour = 0; colour <= alpha; colour += 3)
      for (int byte : {alpha, colour, alpha - colour, alpha}) all.push_back(static_cast<uint8_t>(byte));
  const size_t width = all.size() / 4;
  const cf::Ref image = makeARGBImage(width, 1, all);
  DRAVCFImageCropToRect(image.get(), CGRectMake(1, 0, static_cast<float>(width) - 1, 1));
  const Bytes cropped(image->buffer, image->buffer + 4 * (width - 1));
  EXPECT_EQ(cropped, Bytes(all.begin() + 4, all.end()));
}

TEST(Crop, OfALayoutNoContextDrawsIntoLeavesTheImage) {
  const cf::Ref space = graySpace();
  const Bytes wide(8, 1);
  const cf::Ref image = cf::adopt(
      DRAVCFImageCreateWithBuffer(nullptr, wide.data(), 4, 1, 16, 16, 8, space.get(), kCGImageAlphaNone));
  DRAVCFImageCropToRect(image.get(), CGRectMake(0, 0, 2, 1));
  EXPECT_EQ(image->width, 4u);
  EXPECT_EQ(bufferOf(image.get()), wide);
}

TEST(Crop, OfAnImageThatHoldsNothingDoesNothing) {
  const cf::Ref image = cf::adopt(DRAVCFImageCreate(nullptr));
  DRAVCFImageCropToRect(image.get(), CGRectMake(0, 0, 2, 1));
  DRAVCFImageScaleToSize(image.get(), CGSizeMake(3, 3));
  DRAVCFImageFlipVertically(image.get());
  EXPECT_EQ(image->buffer, nullptr);
}

TEST(Scale, RoundsTheSizeToWholePixels) {
  const cf::Ref image = makeARGBImage(10, 4, Bytes(160, 255));
  DRAVCFImageScaleToSize(image.get(), CGSizeMake(10, 7.5f));
  EXPECT_EQ(image->width, 10u);
  EXPECT_EQ(image->height, 8u);
  EXPECT_EQ(image->bytesPerRow, 64u);
  EXPECT_EQ(image->buffer[0], 255);
}

TEST(Scale, ToTheSameSizeAfterRoundingChangesNothing) {
  const cf::Ref image = makeGrayImage(100, 1, Bytes(100, 9));
  const uint8_t *before = image->buffer;
  DRAVCFImageScaleToSize(image.get(), CGSizeMake(99.6f, 1.2f));
  EXPECT_EQ(image->buffer, before);
}

TEST(Scale, ToANegativeEmptyOrImpossibleSizeChangesNothing) {
  const cf::Ref image = makeGrayImage(4, 1, {1, 2, 3, 4});
  for (CGSize size : {CGSizeMake(-1, 5), CGSizeMake(5, -1), CGSizeMake(0, 5), CGSizeMake(5, 0.4f),
                      CGSizeMake(std::nanf(""), 5), CGSizeMake(5, std::nanf("")), CGSizeMake(HUGE_VALF, 5),
                      CGSizeMake(3e9f, 5)}) {
    DRAVCFImageScaleToSize(image.get(), size);
    EXPECT_EQ(bufferOf(image.get()), (Bytes{1, 2, 3, 4}));
  }
}

TEST(Scale, OfOneColourStaysThatColour) {
  const Bytes pixel{200, 150, 100, 50};
  Bytes all;
  for (int i = 0; i < 35; ++i) all.insert(all.end(), pixel.begin(), pixel.end());
  for (CGSize size : {CGSizeMake(3, 2), CGSizeMake(20, 13), CGSizeMake(1, 1), CGSizeMake(7, 50)}) {
    const cf::Ref image = makeARGBImage(7, 5, all);
    DRAVCFImageScaleToSize(image.get(), size);
    for (size_t y = 0; y < image->height; ++y)
      for (size_t x = 0; x < image->width; ++x) {
        const uint8_t *at = image->buffer + y * image->bytesPerRow + 4 * x;
        EXPECT_EQ(Bytes(at, at + 4), pixel);
      }
  }
}

TEST(Flip, ExchangesTopAndBottom) {
  const cf::Ref image = placeImage(2, 3);
  DRAVCFImageFlipVertically(image.get());
  EXPECT_EQ(bufferOf(image.get()), (Bytes{20, 21, 10, 11, 0, 1}));
  EXPECT_EQ(image->cgImage, nullptr);
}

TEST(Flip, TwiceRestoresEveryByte) {
  Bytes pixels;
  for (int alpha = 0; alpha < 256; ++alpha)
    for (int byte : {alpha, alpha / 2, alpha, 0}) pixels.push_back(static_cast<uint8_t>(byte));
  const cf::Ref image = makeARGBImage(16, 16, pixels);
  DRAVCFImageFlipVertically(image.get());
  EXPECT_NE(bufferOf(image.get()), pixels);
  DRAVCFImageFlipVertically(image.get());
  EXPECT_EQ(bufferOf(image.get()), pixels);
}

TEST(Flip, OfAPlatformImageInAnotherLayoutMakesTheBufferFirst) {
  const cf::Ref space = deviceRGBSpace();
  const cf::Ref cgImage =
      makeCGImage({1, 2, 8, 32, 4, space.get(), kCGImageAlphaLast}, {255, 0, 0, 255, 0, 0, 255, 128});
  const cf::Ref image = cf::adopt(DRAVCFImageCreateWithImage(nullptr, cgImage.get()));
  DRAVCFImageFlipVertically(image.get());
  EXPECT_EQ(bufferOf(image.get()), (Bytes{128, 0, 0, 128, 255, 255, 0, 0}));
  EXPECT_EQ(image->alphaInfo, kCGImageAlphaPremultipliedFirst);
}

TEST(Flip, OfAPlatformImageWithPaddedRowsKeepsTheBufferPacked) {
  const cf::Ref space = displaySpace();
  Bytes rows(32, 0);
  rows[0] = rows[16] = 255;
  rows[1] = 10;
  rows[17] = 20;
  const cf::Ref cgImage = makeCGImage({1, 2, 8, 32, 16, space.get(), kCGImageAlphaPremultipliedFirst}, rows);
  const cf::Ref image = cf::adopt(DRAVCFImageCreateWithImage(nullptr, cgImage.get()));
  DRAVCFImageFlipVertically(image.get());
  EXPECT_EQ(bufferOf(image.get()), (Bytes{255, 20, 0, 0, 255, 10, 0, 0}));
}

TEST(GeometryAllocation, OfDrawingLeavesTheImageAsItWas) {
  const auto check = [](auto operation) {
    bool failed = true;
    int kept = 0;
    for (long n = 1; failed; ++n) {
      const cf::Ref image = placeImage(4, 3);
      const Bytes before = bufferOf(image.get());
      ASSERT_NE(DRAVCFImageGetCGImage(image.get()), nullptr);
      {
        const testing_support::FailingNew failing(n);
        operation(image.get());
        failed = failing.failed();
      }
      if (failed) {
        EXPECT_EQ(bufferOf(image.get()), before) << n;
        ++kept;
      }
    }
    EXPECT_GT(kept, 0);
  };
  check([](DRAVCFImageRef image) { DRAVCFImageCropToRect(image, CGRectMake(1, 1, 2, 1)); });
  check([](DRAVCFImageRef image) { DRAVCFImageScaleToSize(image, CGSizeMake(8, 2)); });
  check([](DRAVCFImageRef image) { DRAVCFImageFlipVertically(image); });
}

TEST(Crop, WhollyBeyondTheEdgeIsStandardisedIntoAnEmptyPlaceBesideIt) {
  const cf::Ref image = makeGrayImage(10, 1, Bytes(10, 9));
  // Cut to the edge the width is -2, which stands for the two columns before x = 12.
  DRAVCFImageCropToRect(image.get(), CGRectMake(12, 0, 5, 1));
  EXPECT_EQ(bufferOf(image.get()), (Bytes{0, 0}));
}

TEST(GeometryAllocation, FailingAnywhereLeavesTheImageAsItWas) {
  const auto check = [](auto operation) {
    testing_support::forEachFailedAllocation([&](CFAllocatorRef allocator, long n) {
      const cf::Ref image = placeImage(4, 3, allocator);
      if (!image) return;
      const Bytes before = bufferOf(image.get());
      const uint8_t *buffer = image->buffer;
      operation(image.get());
      if (image->buffer == buffer && image->width == 4 && image->height == 3) {
        const Bytes after = bufferOf(image.get());
        Bytes flipped{20, 21, 22, 23, 10, 11, 12, 13, 0, 1, 2, 3};
        EXPECT_TRUE(after == before || after == flipped) << n;
      } else {
        EXPECT_TRUE(drav::bufferIsWhole(image.get())) << n;
      }
    });
  };
  check([](DRAVCFImageRef image) { DRAVCFImageCropToRect(image, CGRectMake(1, 1, 2, 1)); });
  check([](DRAVCFImageRef image) { DRAVCFImageScaleToSize(image, CGSizeMake(8, 2)); });
  check([](DRAVCFImageRef image) { DRAVCFImageFlipVertically(image); });
}

TEST(Crop, OfOnePixelOrAColumnCutsOutWhatIsThere) {
  const cf::Ref pixel = makeARGBImage(1, 1, {9, 1, 2, 3});
  DRAVCFImageCropToRect(pixel.get(), CGRectMake(-5, -5, 100, 100));
  EXPECT_EQ(Bytes(pixel->buffer, pixel->buffer + 4), (Bytes{9, 1, 2, 3}));
  Bytes bytes(40000);
  for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<uint8_t>(i / 7);
  const cf::Ref column = makeGrayImage(1, 40000, bytes);
  DRAVCFImageCropToRect(column.get(), CGRectMake(0, 1, 1, 39998));
  EXPECT_EQ(bufferOf(column.get()), Bytes(bytes.begin() + 1, bytes.end() - 1));
  DRAVCFImageFlipVertically(column.get());
  EXPECT_EQ(bufferOf(column.get()), Bytes(bytes.rbegin() + 1, bytes.rend() - 1));
}

TEST(Crop, ByHugeRectanglesKeepsWhatIsThere) {
  for (const CGRect huge : {CGRectMake(-1e9f, -1e9f, 3e9f, 3e9f), CGRectMake(-1, -1, 3e38f, 3e38f),
                            CGRectInfinite, CGRectMake(0, 0, HUGE_VALF, HUGE_VALF)}) {
    const cf::Ref image = placeImage(4, 3);
    const Bytes before = bufferOf(image.get());
    DRAVCFImageCropToRect(image.get(), huge);
    EXPECT_EQ(bufferOf(image.get()), before) << huge.size.width;
    EXPECT_EQ(image->width, 4u);
  }
}

TEST(Geometry, OfAPlatformImageWorksOnItsPixels) {
  const cf::Ref cgImage =
      makeCGImage({2, 1, 8, 24, 6, deviceRGBSpace().get(), kCGImageAlphaNone}, {1, 2, 3, 4, 5, 6});
  const cf::Ref cropped = cf::adopt(DRAVCFImageCreateWithImage(nullptr, cgImage.get())),
                scaled = cf::adopt(DRAVCFImageCreateWithImage(nullptr, cgImage.get()));
  DRAVCFImageCropToRect(cropped.get(), CGRectMake(1, 0, 1, 1));
  EXPECT_EQ(Bytes(cropped->buffer, cropped->buffer + 3), (Bytes{4, 5, 6}));
  DRAVCFImageScaleToSize(scaled.get(), CGSizeMake(2, 2));
  EXPECT_EQ(Bytes(scaled->buffer, scaled->buffer + 3), (Bytes{1, 2, 3}));
  for (const auto &image : {cropped, scaled}) {
    EXPECT_EQ(image->cgImage, nullptr);
    EXPECT_EQ(image->bitsPerPixel, 32u);
    EXPECT_EQ(image->alphaInfo, kCGImageAlphaNoneSkipLast);
    EXPECT_EQ(image->bytesPerRow, 32u);
    EXPECT_TRUE(CFEqual(image->colorSpace, deviceRGBSpace().get())) << "the space stays";
  }
}

TEST(Scale, Of32BitColourKeepsItsLayout) {
  for (const auto info : {kCGImageAlphaPremultipliedLast, kCGImageAlphaPremultipliedFirst,
                          kCGImageAlphaNoneSkipLast, kCGImageAlphaNoneSkipFirst}) {
    const cf::Ref image = makeBufferImage(1, 1, 32, displaySpace().get(), info, {9, 9, 9, 9});
    DRAVCFImageScaleToSize(image.get(), CGSizeMake(9, 1));
    EXPECT_EQ(image->alphaInfo, info);
    EXPECT_EQ(image->bytesPerRow, 64u);
    EXPECT_EQ(image->bufferSize, 64u);
  }
}

TEST(Scale, OfGreyPacksItsRows) {
  const cf::Ref image = makeGrayImage(1, 1, {9});
  DRAVCFImageScaleToSize(image.get(), CGSizeMake(5, 3));
  EXPECT_EQ(image->bytesPerRow, 5u);
  EXPECT_EQ(bufferOf(image.get()), Bytes(15, 9));
}

TEST(Flip, OfAPlatformImageOfFewerBitsInRowsOfTheSameLengthMakesTheBufferAgree) {
  // Four bits a component, and rows as long as those of the buffer.
  const cf::Ref cgImage = makeCGImage({1, 2, 4, 16, 4, displaySpace().get(), kCGImageAlphaPremultipliedFirst},
                                      {0xFF, 0x00, 0, 0, 0xF0, 0xF0, 0, 0});
  ASSERT_TRUE(cgImage);
  const cf::Ref image = cf::adopt(DRAVCFImageCreateWithImage(nullptr, cgImage.get()));
  DRAVCFImageFlipVertically(image.get());
  EXPECT_EQ(bufferOf(image.get()), (Bytes{255, 0, 255, 0, 255, 255, 0, 0}));
}

TEST(Flip, OfALayoutNoContextDrawsIntoLeavesTheImage) {
  const Bytes wide{1, 2, 3, 4};
  const cf::Ref image = cf::adopt(DRAVCFImageCreateWithBuffer(nullptr, wide.data(), 1, 2, 16, 16, 2,
                                                              graySpace().get(), kCGImageAlphaNone));
  DRAVCFImageFlipVertically(image.get());
  EXPECT_EQ(bufferOf(image.get()), wide);
  const cf::Ref packed =
      makeBufferImage(1, 2, 24, deviceRGBSpace().get(), kCGImageAlphaNone, {1, 2, 3, 4, 5, 6});
  DRAVCFImageFlipVertically(packed.get());
  EXPECT_EQ(bufferOf(packed.get()), (Bytes{1, 2, 3, 4, 5, 6}));
}

TEST(Flip, OfPaddedRowsKeepsThem) {
  const cf::Ref image = makeARGBImage(3, 2, {255, 1, 1, 1, 255, 2, 2, 2, 255, 3, 3, 3,  //
                                             255, 4, 4, 4, 255, 5, 5, 5, 255, 6, 6, 6});
  DRAVCFImageCropToRect(image.get(), CGRectMake(1, 0, 2, 2));
  const uint8_t *buffer = image->buffer;
  DRAVCFImageFlipVertically(image.get());
  EXPECT_EQ(image->buffer, buffer);
  EXPECT_EQ(image->bytesPerRow, 32u);
  EXPECT_EQ(Bytes(buffer, buffer + 8), (Bytes{255, 5, 5, 5, 255, 6, 6, 6}));
  EXPECT_EQ(Bytes(buffer + 32, buffer + 40), (Bytes{255, 2, 2, 2, 255, 3, 3, 3}));
}

TEST(GeometryAllocation, FailingAnywhereKeepsThePlatformImage) {
  const cf::Ref cgImage =
      makeCGImage({2, 2, 8, 32, 8, displaySpace().get(), kCGImageAlphaPremultipliedFirst}, Bytes(16, 255));
  for (const auto operation :
       {+[](DRAVCFImageRef image) { DRAVCFImageCropToRect(image, CGRectMake(0, 0, 1, 1)); },
        +[](DRAVCFImageRef image) { DRAVCFImageScaleToSize(image, CGSizeMake(1, 1)); },
        +[](DRAVCFImageRef image) { DRAVCFImageFlipVertically(image); }}) {
    testing_support::forEachFailedAllocation([&](CFAllocatorRef allocator, long n) {
      const cf::Ref image = cf::adopt(DRAVCFImageCreateWithImage(allocator, cgImage.get()));
      if (!image) return;
      operation(image.get());
      if (image->cgImage != cgImage.get()) {
        ASSERT_TRUE(drav::bufferIsWhole(image.get())) << n;
        EXPECT_EQ(Bytes(image->buffer, image->buffer + 4), Bytes(4, 255)) << n;
      }
    });
  }
}

}  // namespace
