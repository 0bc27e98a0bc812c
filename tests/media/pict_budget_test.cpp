// Pictures that ask for more than any picture needs: each ends by count, long before patience does.

#include "media/codecs/pict/budget.h"

#include <gtest/gtest.h>

#include "compressed_maker.h"

namespace codecs::pict {
namespace {

using Vector = std::vector<uint8_t>;

TEST(PictBudget, PaintAndWorkAreCountedApart) {
  CGImageDecodeLimits limits = kPictureLimits;
  limits.workFree = 10;
  limits.workPerByte = 0;
  limits.paintedFrames = 2;
  Budget budget(6, 0, limits);
  EXPECT_TRUE(budget.paint(4, 3));
  EXPECT_TRUE(budget.work(10));
  EXPECT_FALSE(budget.work(1));
  EXPECT_TRUE(budget.spent());
}

TEST(PictBudget, NoPictureIsSoLargeThatItMayWorkForMinutes) {
  Budget budget(uint64_t{1} << 28, 1 << 30, kPictureLimits);
  EXPECT_TRUE(budget.work(kPictureLimits.pictWork));
  EXPECT_FALSE(budget.work(1));
}

// With a million visits free, little for each byte.
Fault faultWithin(PictureMaker picture) {
  CGImageDecodeLimits limits = kPictureLimits;
  limits.workFree = 1 << 20;
  limits.workPerByte = 1;
  limits.paintedFrames = 4;
  return decodePict(picture.end(), limits).fault;
}

TEST(PictBudget, ShapesOutOfSightCostWhatTheyTakeToRead) {
  PictureMaker polygon(10, 10), region(10, 10);
  polygon.op(0x0070).u16({10 + 4 * 2000}).box(0, 0, 1, 1);
  for (int i = 0; i < 2000; ++i) polygon.u16({20000, 20000 + i % 7});
  region.op(0x0081).u16({10 + 2 * 2003}).box(0, 0, 9, 9).u16({5000});
  for (int i = 0; i < 2000; ++i) region.u16({5000 + i});
  region.u16({0x7FFF, 0x7FFF});
  EXPECT_EQ(faultWithin(polygon), Fault::none);
  EXPECT_EQ(faultWithin(region), Fault::none);
  for (int i = 0; i < 2000; ++i) polygon.op(0x0078);
  EXPECT_EQ(faultWithin(polygon), Fault::tooLarge);
}

TEST(PictBudget, LinesThroughAClipWithGapsCostTheirRows) {
  PictureMaker picture(5000, 2);
  picture.op(0x0001).u16({42}).box(0, 0, 5000, 2);
  picture.u16({0, 0, 2, 0x7FFF, 1, 0, 2, 0x7FFF, 4998, 0, 2, 0x7FFF, 4999, 0, 2, 0x7FFF});
  for (int i = 0; i < 100; ++i) picture.op(0x0020).u16({0, 0, 4999, 1});
  EXPECT_EQ(faultWithin(picture), Fault::tooLarge);
}

TEST(PictBudget, TilesOfNoBytesCostTheirPixels) {
  PictureMaker picture(10, 10);
  for (int i = 0; i < 4; ++i) {
    picture.op(0x0013).u16({1}).u32({0, 0});
    addMap(picture, {0, {0, 0, 1000, 1000}, 0, 8, 1});
    picture.u32({0}).u16({-0x8000, -1});
  }
  EXPECT_EQ(faultWithin(picture), Fault::tooLarge);
}

TEST(PictBudget, RowsAboveWhatIsShownAreCountedToo) {
  PictureMaker picture(10, 10);
  for (int i = 0; i < 40; ++i) {
    picture.op(0x0098).u16({0}).box(-32768, 0, 32767, 1);
    addBoxes(picture, {0, 32766, 1, 32767}, {0, 0, 1, 1});
  }
  EXPECT_EQ(faultWithin(picture), Fault::tooLarge);
}

TEST(PictBudget, CompressedFramesOfNothingCostTheirPixels) {
  for (const char *codec : {"rle ", "8BPS", "cvid"}) {
    PictureMaker picture(10, 10);
    for (int i = 0; i < 4; ++i)
      addCompressed(picture, {codec, 1000, 1000, 16}, Vector(20, 0), {{0, 0, 1000, 1000}});
    EXPECT_EQ(faultWithin(picture), Fault::tooLarge) << codec;
  }
}

TEST(PictBudget, FormatsNobodyReadsCostNothing) {
  PictureMaker picture(10, 10);
  addCompressed(picture, {"wxyz", 32000, 32000}, Vector(20, 0), {{0, 0, 9, 9}});
  picture.op(0x0031).box(0, 0, 1, 1);
  EXPECT_EQ(faultWithin(picture), Fault::none);
}

TEST(PictBudget, FamiliesOfFontsAreCounted) {
  PictureMaker picture(10, 10);
  for (int i = 0; i < 9; ++i) {
    picture.op(0x002C).u16({5, 500 + i}).u8({2, 'Q', static_cast<unsigned>('a' + i)});
    picture.op(0x0003).u16({500 + i});
    picture.op(0x0028).u16({5, 5}).u8({1, 'x'});
  }
  EXPECT_EQ(faultWithin(picture), Fault::tooLarge);
}

TEST(PictBudget, EnlargingOnePixelOverAndOverEnds) {
  PictureMaker picture(1000, 1000);
  for (int i = 0; i < 9; ++i) {
    picture.op(0x0090).u16({2}).box(0, 0, 1, 1);
    addBoxes(picture, {0, 0, 1, 1}, {0, 0, 32767, 32767});
    picture.u8({0x80, 0});
  }
  EXPECT_EQ(faultWithin(picture), Fault::tooLarge);
}

}  // namespace
}  // namespace codecs::pict
