// Compressed images inside pictures, mattes, and the drawings that stand in for them.

#include <gtest/gtest.h>

#include "compressed_maker.h"
#include "jpeg_maker.h"
#include "media/codecs/pict/compressed_image.h"
#include "picture_grid.h"
#include "picture_maker.h"
#include "png_maker.h"

namespace codecs::pict {
namespace {

using Vector = std::vector<uint8_t>;

constexpr Box kBox2x2{0, 0, 2, 2};
const Vector kRawRedGreenBlueWhite{255, 0, 0, 0, 255, 0, 0, 0, 255, 255, 255, 255};

TEST(PictCompressed, RawPixelsLandWhereTheMatrixMovesThem) {
  PictureMaker picture(4, 4);
  addCompressed(picture, {"raw ", 2, 2}, kRawRedGreenBlueWhite, {kBox2x2, 1, 2});
  EXPECT_EQ(drawn(picture.end()), (Grid{"....", "....", ".RG.", ".B.."}));
}

TEST(PictCompressed, OnlyTheSourceRectangleIsShown) {
  PictureMaker picture(2, 2);
  addCompressed(picture, {"raw ", 2, 2}, kRawRedGreenBlueWhite, {{1, 0, 2, 2}, -1, 0});
  EXPECT_EQ(drawn(picture.end()), (Grid{"G.", ".."}));
}

TEST(PictCompressed, TheDataStartsBehindWhateverDescriptionThereIs) {
  for (const size_t extension : {0u, 16u, 40u, 521u}) {
    PictureMaker picture(2, 2);
    addCompressed(picture, {"raw ", 2, 2, 24, -1, Vector(extension, 0x77)}, kRawRedGreenBlueWhite, {kBox2x2});
    EXPECT_EQ(drawn(picture.end()), (Grid{"RG", "B."})) << extension;
  }
}

TEST(PictCompressed, AJpegInsideMayHaveFewerScansThanOneByItself) {
  PictureMaker picture(16, 16);
  addCompressed(
      picture, {"jpeg", 16, 16},
      makeJpeg({.width = 16, .height = 16, .progressive = true, .samples = Vector(16 * 16 * 3, 99)}),
      {{0, 0, 16, 16}});
  const Vector file = picture.end();
  CGImageDecodeLimits limits = kPictureLimits;
  EXPECT_EQ(decodePict(file, limits).fault, Fault::none);
  limits.pictJpegScans = 3;
  EXPECT_EQ(decodePict(file, limits).fault, Fault::tooLarge);
}

TEST(PictCompressed, FilesOfOtherFormatsAreDecodedByTheirCodecs) {
  PictureMaker picture(1, 3);
  addCompressed(picture, {"png ", 2, 1},
                makePng({.width = 2, .height = 1, .samples = {255, 0, 0, 0, 255, 0}}), {{0, 0, 2, 1}});
  addCompressed(picture, {"jpeg", 1, 1}, makeJpeg({.width = 1, .height = 1, .samples = {0, 0, 0}}),
                {{0, 0, 1, 1}, 2});
  const auto decoded = decodeBytes(picture.end());
  ASSERT_EQ(decoded.fault, Fault::none);
  EXPECT_EQ(decoded.value.depth, 24);
  EXPECT_EQ(gridOf(decoded.value), (Grid{"RG#"}));
}

TEST(PictCompressed, ImagesWithAlphaAreLaidOverWhatIsThere) {
  PictureMaker picture(1, 2);
  addCompressed(picture, {"png ", 2, 1, 32},
                makePng({.width = 2,
                         .height = 1,
                         .colourType = PNG_COLOR_TYPE_RGB_ALPHA,
                         .samples = {255, 0, 0, 255, 0, 0, 0, 0}}),
                {{0, 0, 2, 1}});
  const auto decoded = decodeBytes(picture.end());
  ASSERT_EQ(decoded.fault, Fault::none);
  EXPECT_EQ(decoded.value.layout, PixelLayout::xrgb32);
  EXPECT_EQ(gridOf(decoded.value), (Grid{"R."}));
}

TEST(PictCompressed, AMaskLetsOnlyItsPixelsThrough) {
  PictureMaker picture(2, 2);
  const Vector mask = ByteMaker().u16({10}).box(0, 1, 2, 2).bytes;
  addCompressed(picture, {"raw ", 2, 2}, kRawRedGreenBlueWhite, {.source = kBox2x2, .mask = mask});
  EXPECT_EQ(drawn(picture.end()), (Grid{".G", ".."}));
}

TEST(PictCompressed, RawPixelsOfEveryDepth) {
  const Vector table = ByteMaker().u32({0}).u16({int{0x8000}, 1, 0, -1, 0, 0, 0, 0, 0, -1}).bytes;
  EXPECT_EQ(gridOfImage({"raw ", 4, 1, 1, 0, table}, {0x50, 0}), (Grid{"RBRB"}));
  EXPECT_EQ(gridOfImage({"raw ", 4, 1, 8, 0, table}, {0, 1, 1, 0}), (Grid{"RBBR"}));
  EXPECT_EQ(gridOfImage({"raw ", 4, 1, 1}, {0x50, 0}), (Grid{".#.#"}));
  EXPECT_EQ(gridOfImage({"raw ", 4, 1, 40, 40}, {0, 255, 255, 0}), (Grid{".##."}));
  EXPECT_EQ(gridOfImage({"raw ", 4, 1, 16}, {0x7C, 0, 0x03, 0xE0, 0, 0x1F, 0x7F, 0xFF}), (Grid{"RGB."}));
  EXPECT_EQ(gridOfImage({"raw ", 2, 1, 32}, {0, 255, 0, 0, 0, 0, 0, 255}), (Grid{"RB"}));
}

TEST(PictCompressed, CodecsNobodyKnowsLeaveTheStandIn) {
  PictureMaker picture(2, 2);
  addCompressed(picture, {"wxyz", 2, 2}, kRawRedGreenBlueWhite, {kBox2x2});
  EXPECT_EQ(decodeBytes(picture.end()).fault, Fault::unsupported);
  PictureMaker withStandIn(2, 2);
  addCompressed(withStandIn, {"wxyz", 2, 2}, kRawRedGreenBlueWhite, {kBox2x2});
  withStandIn.op(0x0090).u16({2}).box(0, 0, 2, 2);
  addBoxes(withStandIn, kBox2x2, kBox2x2);
  withStandIn.u8({0xC0, 0, 0, 0});
  EXPECT_EQ(drawn(withStandIn.end()), (Grid{"##", ".."}));
}

TEST(PictCompressed, ABitmapInTheImagesPlaceIsNotDrawn) {
  PictureMaker picture(2, 2);
  for (int pair = 0; pair < 2; ++pair) {
    addCompressed(picture, {"raw ", 2, 1}, {255, 0, 0, 0, 0, 255}, {{0, 0, 2, 1}, 0, pair});
    picture.op(0x0090).u16({2}).box(0, 0, 2, 2);
    addBoxes(picture, kBox2x2, {0, pair, 2, pair + 1});
    picture.u8({0xC0, 0, 0xC0, 0});
  }
  EXPECT_EQ(drawn(picture.end()), (Grid{"RB", "RB"}));
}

TEST(PictCompressed, ABitmapElsewhereIsDrawn) {
  PictureMaker picture(2, 2);
  addCompressed(picture, {"raw ", 2, 2}, kRawRedGreenBlueWhite, {kBox2x2});
  picture.op(0x0090).u16({2}).box(0, 0, 1, 1);
  addBoxes(picture, {0, 0, 1, 1}, {0, 0, 1, 1});
  picture.u8({0x80, 0});
  EXPECT_EQ(drawn(picture.end()), (Grid{"#G", "B."}));
}

PictureMaker withSkippedDrawing(const char *codec) {
  PictureMaker picture(2, 2);
  addCompressed(picture, {codec, 2, 2}, kRawRedGreenBlueWhite, {kBox2x2});
  PictureMaker skipped(2, 2);
  skipped.op(0x0090).u16({2}).box(0, 0, 1, 1);
  addBoxes(skipped, {0, 0, 1, 1}, {0, 0, 1, 1});
  skipped.u8({0x80, 0});
  const Vector drawing(skipped.bytes.begin() + 14, skipped.bytes.end());
  picture.op(0x0007).u16({174, static_cast<int>(drawing.size())}).add(drawing);
  return picture;
}

TEST(PictCompressed, AStrangePenSizeCountsTheBytesThatStandIn) {
  EXPECT_EQ(drawn(withSkippedDrawing("raw ").end()), (Grid{"RG", "B."}));
  EXPECT_EQ(drawn(withSkippedDrawing("wxyz").end()), (Grid{"#.", ".."}));
}

TEST(PictCompressed, AMarkBehindACommentStillMarksWhatStandsIn) {
  PictureMaker picture(2, 2);
  addCompressed(picture, {"raw ", 2, 2}, kRawRedGreenBlueWhite, {kBox2x2});
  picture.op(0x00A0).u16({130});
  picture.op(0x0007).u16({174, 10}).u16({0x0031}).box(0, 0, 2, 2);
  EXPECT_EQ(drawn(picture.end()), (Grid{"RG", "B."}));
}

TEST(PictCompressed, BehindOtherDrawingAMarkIsAPenSize) {
  PictureMaker picture(2, 2);
  addCompressed(picture, {"raw ", 2, 2}, kRawRedGreenBlueWhite, {kBox2x2});
  picture.op(0x0030).box(0, 0, 1, 1);
  picture.op(0x0007).u16({174, 10}).u16({0x0031}).box(0, 0, 2, 2);
  EXPECT_EQ(drawn(picture.end()), (Grid{"##", "##"}));
}

TEST(PictCompressed, BlendsTakeTheOperandColour) {
  PictureMaker picture(1, 1);
  picture.op(0x001F).u16({-1, 0, 0});
  addCompressed(picture, {"raw ", 1, 1}, {0, 0, 0}, {{0, 0, 1, 1}, 0, 0, 32});
  const auto decoded = decodeBytes(picture.end());
  ASSERT_EQ(decoded.fault, Fault::none);
  EXPECT_EQ(pixelAt(decoded.value, 0, 0), opaque(0, 255, 255));
}

TEST(PictCompressed, DamagedImagesAreDamagedPictures) {
  PictureMaker picture(2, 2);
  addCompressed(picture, {"raw ", 2, 2}, {255, 0, 0}, {kBox2x2});
  EXPECT_EQ(decodeBytes(picture.end()).fault, Fault::damaged);
  Vector jpeg = makeJpeg({.width = 64, .height = 64, .samples = std::vector<uint8_t>(64 * 64 * 3, 99)});
  jpeg.resize(jpeg.size() / 2);
  PictureMaker cut(2, 2);
  addCompressed(cut, {"jpeg", 64, 64}, jpeg, {{0, 0, 64, 64}});
  EXPECT_NE(decodeBytes(cut.end()).fault, Fault::none);
}

TEST(PictCompressed, EveryTruncationOfTheOperandsIsDamaged) {
  const Vector whole = operands({"raw ", 2, 2}, kRawRedGreenBlueWhite, {kBox2x2});
  for (size_t size = 0; size < whole.size(); ++size) {
    PictureMaker picture(2, 2);
    picture.op(0x8200)
        .u32({static_cast<uint32_t>(size)})
        .add(Vector(whole.begin(), whole.begin() + static_cast<long>(size)));
    const auto decoded = decodeBytes(picture.end());
    EXPECT_NE(decoded.fault, Fault::none) << size;
  }
}

Vector matteOf(int width, int height, const Vector &values) {
  ByteMaker matte;
  matte.add(description({"raw ", width, height, 40, 40})).add(values);
  ByteMaker out;
  out.u16({0}).u32({0x10000, 0, 0, 0, 0x10000, 0, 0, 0, 0x40000000});
  out.u32({static_cast<uint32_t>(matte.bytes.size())}).box(0, 0, height, width).add(matte.bytes);
  if (out.bytes.size() % 2) out.u8({0});
  return out.bytes;
}

PictureMaker withMatte() {
  PictureMaker picture(1, 4);
  const Vector matte = matteOf(4, 1, {255, 128, 0, 255});
  picture.op(0x8201).u32({static_cast<uint32_t>(matte.size())}).add(matte);
  picture.op(0x0090).u16({2}).box(0, 0, 1, 4);
  addBoxes(picture, {0, 0, 4, 1}, {0, 0, 4, 1});
  picture.u8({0xC0, 0});
  return picture;
}

TEST(PictCompressed, AMatteIsTheAlphaOfTheNextBitmap) {
  const auto decoded = decodeBytes(withMatte().end());
  ASSERT_EQ(decoded.fault, Fault::none);
  EXPECT_EQ(decoded.value.layout, PixelLayout::argb32);
  EXPECT_EQ(decoded.value.depth, 32);
  EXPECT_EQ(pixelAt(decoded.value, 0, 0), kBlack);
  EXPECT_EQ(pixelAt(decoded.value, 1, 0), pixelOf(128, 0, 0, 0));
  EXPECT_EQ(pixelAt(decoded.value, 2, 0), pixelOf(0, 255, 255, 255));
  EXPECT_EQ(pixelAt(decoded.value, 3, 0), kWhite);
}

TEST(PictCompressed, AMatteServesOneBitmapOnly) {
  PictureMaker picture = withMatte();
  picture.op(0x0090).u16({2}).box(0, 0, 1, 4);
  addBoxes(picture, {0, 0, 4, 1}, {0, 0, 4, 1});
  picture.u8({0xF0, 0});
  const auto decoded = decodeBytes(picture.end());
  ASSERT_EQ(decoded.fault, Fault::none);
  EXPECT_EQ(gridOf(decoded.value), (Grid{"####"}));
}

TEST(PictCompressed, TheStandardTables) {
  ImageDescription description;
  description.depth = 4;
  EXPECT_EQ(paletteOf(description)[0], kWhite);
  EXPECT_EQ(paletteOf(description)[3], opaque(0xDD, 0x09, 0x07));
  EXPECT_EQ(paletteOf(description)[15], kBlack);
  description.depth = 8;
  const Palette palette = paletteOf(description);
  EXPECT_EQ(palette[0], kWhite);
  EXPECT_EQ(palette[1], opaque(255, 255, 0xCC));
  EXPECT_EQ(palette[214], opaque(0, 0, 0x33));
  EXPECT_EQ(palette[215], opaque(0xEE, 0, 0));
  EXPECT_EQ(palette[225], opaque(0, 0xEE, 0));
  EXPECT_EQ(palette[254], opaque(0x11, 0x11, 0x11));
  EXPECT_EQ(palette[255], kBlack);
  description.depth = 34;
  EXPECT_EQ(paletteOf(description)[1], opaque(170, 170, 170));
}

}  // namespace
}  // namespace codecs::pict
