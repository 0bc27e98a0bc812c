// Tiling: how many tiles there are, where they lie, and what each of them reads.
#include <gtest/gtest.h>

#include <cmath>

#include "core/images.h"
#include "plain_composite.h"

namespace {

using namespace test;

// Adds 1 to the one pixel of a destination for every tile. An origin left of or above the image moves to 0,
// so that tiles far to the left and above are counted like any other.
int tilesOf(CGRect sourceRect, CGRect destinationRect, uint32_t corner) {
  const cf::Ref source = makeGrayImage(1, 1, {1}), destination = makeGrayImage(1, 1, {0});
  DRAVCFImageTile(source.get(), destination.get(), sourceRect, destinationRect, kDRAVCFBlendModePlus, corner);
  return destination->buffer[0];
}

TEST(Tile, AFractionOfATileIsOneMore) {
  EXPECT_EQ(tilesOf(CGRectMake(0, 0, 10, 10), CGRectMake(-100, -100, 30, 10), 2), 3);
  EXPECT_EQ(tilesOf(CGRectMake(0, 0, 10, 10), CGRectMake(-100, -100, 31, 10), 2), 4);
  EXPECT_EQ(tilesOf(CGRectMake(0, 0, 10, 10), CGRectMake(-100, -100, 10, 31), 2), 4);
  EXPECT_EQ(tilesOf(CGRectMake(0, 0, 10, 10), CGRectMake(-100, -100, 31, 11), 2), 8);
}

TEST(Tile, FractionsOfPixelsAreCutOffBeforeTilesAreCounted) {
  EXPECT_EQ(tilesOf(CGRectMake(0, 0, 10.9f, 10), CGRectMake(-100, -100, 30.9f, 10), 2), 3);
  EXPECT_EQ(tilesOf(CGRectMake(0, 0, 10, 10.9f), CGRectMake(-100, -100, 10, 30.9f), 2), 3);
}

TEST(Tile, TheirNumberComesOfADivisionInSinglePrecision) {
  // 25165828 / 8388609 is a hair above 3, and 3 in single precision.
  const float tile = 8388609, area = 25165828;
  ASSERT_EQ(area / tile, 3.0f);
  ASSERT_GT(static_cast<double>(area) / static_cast<double>(tile), 3.0);
  EXPECT_EQ(tilesOf(CGRectMake(0, 0, tile, 1), CGRectMake(-2e9f, 0, area, 1), 2), 3);
  EXPECT_EQ(tilesOf(CGRectMake(0, 0, 1, tile), CGRectMake(0, -2e9f, 1, area), 2), 3);
}

TEST(Tile, ANegativeSizeCountsLikeItsPositive) {
  EXPECT_EQ(tilesOf(CGRectMake(1, 1, -1, -1), CGRectMake(-100, -100, -3, -2), 2), 6);
}

TEST(Tile, TheFirstOneIsPlacedByWholePixelsAndTheNextByTheirSteps) {
  const cf::Ref source = makeGrayImage(8, 8, Bytes(64, 9));
  for (uint32_t corner = 0; corner < 4; ++corner)
    for (const CGRect from : {CGRectMake(0, 0, 4.5f, 3), CGRectMake(0, 0, 3, 4.5f),
                              CGRectMake(1, 1, 2.7f, 2.2f), CGRectMake(6, 6, -4.5f, -3.5f)}) {
      const CGRect to = CGRectMake(3.25f, 2.75f, 9.5f, 11.5f);
      const cf::Ref destination = makeGrayImage(20, 20, Bytes(400, 1)),
                    expected = makeGrayImage(20, 20, Bytes(400, 1));
      DRAVCFImageTile(source.get(), destination.get(), from, to, kDRAVCFBlendModePlus, corner);
      plainTile(source.get(), expected.get(), from, to, kDRAVCFBlendModePlus, corner);
      EXPECT_EQ(bufferOf(destination.get()), bufferOf(expected.get())) << corner << " " << from.size.width;
    }
  // By hand: the greatest y is 14.25, less 4 (not 4.5) is 10.25, so rows 10 to 14; and 4.5 above that rows 5
  // to 10.
  const cf::Ref destination = makeGrayImage(1, 20, Bytes(20, 1));
  DRAVCFImageTile(makeGrayImage(1, 1, {9}).get(), destination.get(), CGRectMake(0, 0, 1, 4.5f),
                  CGRectMake(0, 6.75f, 1, 7.5f), kDRAVCFBlendModePlus, 0);
  Bytes expected(20, 1);
  for (size_t y = 5; y < 15; ++y) expected[y] = y == 10 ? 19 : 10;
  EXPECT_EQ(bufferOf(destination.get()), expected);
}

TEST(Tile, ANegativeSizeLiesBeforeItsPlace) {
  const cf::Ref source = makeGrayImage(2, 1, {8, 9}), destination = makeGrayImage(4, 1, {1, 2, 3, 4});
  DRAVCFImageTile(source.get(), destination.get(), CGRectMake(2, 1, -2, -1), CGRectMake(4, 1, 2, 1),
                  kDRAVCFBlendModeCopySrc, 2);
  EXPECT_EQ(bufferOf(destination.get()), (Bytes{1, 2, 8, 9}));
}

TEST(Tile, OfAnImageWithItselfReadsWhatTheTilesBeforeDrew) {
  const cf::Ref image = makeGrayImage(6, 1, {1, 2, 3, 4, 5, 6});
  DRAVCFImageTile(image.get(), image.get(), CGRectMake(0, 0, 2, 1), CGRectMake(1, 0, 4, 1),
                  kDRAVCFBlendModeCopySrc, 2);
  EXPECT_EQ(bufferOf(image.get()), (Bytes{1, 1, 2, 1, 1, 6}));
}

TEST(Tile, OfFarMoreTilesThanTheImageHoldsDrawsThoseInside) {
  const cf::Ref source = makeGrayImage(1, 1, {1}), destination = makeGrayImage(3, 3, Bytes(9, 5));
  const CGRect one = CGRectMake(0, 0, 1, 1);
  DRAVCFImageTile(source.get(), destination.get(), one, CGRectMake(1, 1, 2e9f, 2e9f), kDRAVCFBlendModePlus,
                  2);
  DRAVCFImageTile(source.get(), destination.get(), one, CGRectMake(1e9f, 1, 2e9f, 2e9f), kDRAVCFBlendModePlus,
                  2);
  EXPECT_EQ(bufferOf(destination.get()), (Bytes{5, 5, 5, 5, 6, 6, 5, 6, 6}));
}

TEST(Tile, FromAFarCornerTowardsTheImageDrawsThoseInside) {
  // 2^24 tiles a side, from the right and from below; those inside are the last ones.
  const cf::Ref source = makeGrayImage(1, 1, {1}), destination = makeGrayImage(3, 3, Bytes(9, 5));
  DRAVCFImageTile(source.get(), destination.get(), CGRectMake(0, 0, 1, 1),
                  CGRectMake(1, 2, 16777215, 16777214), kDRAVCFBlendModePlus, 1);
  EXPECT_EQ(bufferOf(destination.get()), (Bytes{5, 5, 5, 5, 5, 5, 5, 6, 6}));
}

TEST(Tile, OfARectangleNowhereDrawsNothingAtOnce) {
  const cf::Ref source = makeGrayImage(1, 1, {1}), destination = makeGrayImage(3, 3, Bytes(9, 5));
  for (float nowhere : {std::nanf(""), HUGE_VALF, -HUGE_VALF, 3e38f})
    for (uint32_t corner = 0; corner < 4; ++corner) {
      DRAVCFImageTile(source.get(), destination.get(), CGRectMake(0, 0, 1, 1),
                      CGRectMake(nowhere, 0, 2e9f, 2e9f), kDRAVCFBlendModePlus, corner);
      DRAVCFImageTile(source.get(), destination.get(), CGRectMake(0, 0, 1, 1),
                      CGRectMake(0, nowhere, 2e9f, 2e9f), kDRAVCFBlendModePlus, corner);
    }
  EXPECT_EQ(bufferOf(destination.get()), Bytes(9, 5));
}

TEST(Tile, OutsideTheImageBringsBothToOneLayoutAllTheSame) {
  const cf::Ref source = makeARGBImage(1, 1, {128, 64, 64, 64}), destination = makeGrayImage(1, 1, {7});
  DRAVCFImageTile(source.get(), destination.get(), CGRectMake(0, 0, 1, 1), CGRectMake(50, 0, 1, 1),
                  kDRAVCFBlendModeSrcOver, 2);
  EXPECT_EQ(bufferOf(destination.get()), (Bytes{255, 7, 7, 7}));
}

TEST(Tile, LeavesAStalePlatformImageInPlace) {
  const cf::Ref cgImage =
      makeCGImage({2, 1, 8, 32, 8, displaySpace().get(), kCGImageAlphaPremultipliedFirst}, Bytes(8, 1));
  const cf::Ref destination = cf::adopt(DRAVCFImageCreateWithImage(nullptr, cgImage.get()));
  DRAVCFImageTile(makeARGBImage(1, 1, {255, 9, 9, 9}).get(), destination.get(), CGRectMake(0, 0, 1, 1),
                  CGRectMake(0, 0, 2, 1), kDRAVCFBlendModeCopySrc, 2);
  EXPECT_EQ(DRAVCFImageGetCGImage(destination.get()), cgImage.get());
  EXPECT_EQ(bufferOf(destination.get()), (Bytes{255, 9, 9, 9, 255, 9, 9, 9}));
}

TEST(Tile, OfAModeWithoutKernelOnlyBringsBothToOneLayout) {
  const cf::Ref source = makeARGBImage(1, 1, {128, 64, 64, 64}), destination = makeGrayImage(1, 1, {7});
  DRAVCFImageTile(source.get(), destination.get(), CGRectMake(0, 0, 1, 1), CGRectMake(0, 0, 1, 1), 24, 2);
  EXPECT_EQ(bufferOf(destination.get()), (Bytes{255, 7, 7, 7}));
}

}  // namespace
