// Every transfer mode, for bitmaps and images, and what highlights do to exclusive ors.

#include <gtest/gtest.h>

#include "picture_grid.h"
#include "picture_maker.h"

namespace codecs::pict {
namespace {

constexpr Box kOne{0, 0, 1, 1};

void addRect(PictureMaker &picture, int code, const Box &box) {
  picture.op(code).box(box.top, box.left, box.bottom, box.right);
}

void addBitmap(PictureMaker &picture, const Box &box, unsigned bits, int mode) {
  picture.op(0x0090).u16({2}).box(box.top, box.left, box.bottom, box.right);
  addBoxes(picture, box, box, mode);
  picture.u8({bits, 0});
}

// One pixel, direct.
void addPixel(PictureMaker &picture, unsigned red, unsigned green, unsigned blue, int mode) {
  picture.op(0x009A).u32({0xFF});
  addMap(picture, {4, kOne, 1, 32, 3});
  addBoxes(picture, kOne, kOne, mode);
  picture.u8({0, red, green, blue});
}

// The bits 1010 in red on blue, half over white and half over black.
TEST(PictModes, EveryModeOfABitmap) {
  const struct {
    int mode;
    std::string expected;
  } kCases[] = {{0, "RBRB"},  {1, "R.R#"},  {2, "#..#"},  {3, "B.B#"},  {4, "BRBR"},
                {5, ".R#R"},  {6, ".##."},  {7, ".B#B"},  {64, "RBRB"}, {36, "R.R#"},
                {50, "..##"}, {49, "R.R#"}, {23, "..##"}, {256, "..##"}};
  for (const auto &one : kCases) {
    PictureMaker picture(1, 4);
    addRect(picture, 0x31, {2, 0, 4, 1});
    picture.op(0x001A).u16({-1, 0, 0});
    picture.op(0x001B).u16({0, 0, -1});
    addBitmap(picture, {0, 0, 4, 1}, 0xA0, one.mode);
    EXPECT_EQ(drawn(picture.end()), Grid{one.expected}) << one.mode;
  }
}

// Red over green.
TEST(PictModes, EveryBooleanModeOfColours) {
  const char kExpected[] = {'R', '#', 'B', 'C', 'C', 'G', 'Y', 'Y'};
  for (int mode = 0; mode < 8; ++mode) {
    PictureMaker picture(1, 1);
    addPixel(picture, 0, 255, 0, 0);
    addPixel(picture, 255, 0, 0, mode);
    EXPECT_EQ(drawn(picture.end()), Grid{std::string(1, kExpected[mode])}) << mode;
  }
}

TEST(PictModes, EveryArithmeticModeOfColours) {
  const struct {
    int mode;
    Pixel expected;
  } kCases[] = {{32, opaque(74, 149, 224)},  {33, opaque(127, 127, 127)}, {34, opaque(150, 44, 194)},
                {35, opaque(127, 127, 127)}, {36, opaque(100, 200, 250)}, {37, opaque(100, 200, 250)},
                {38, opaque(206, 156, 206)}, {39, opaque(50, 100, 200)},  {50, opaque(50, 100, 200)}};
  for (const auto &one : kCases) {
    PictureMaker picture(1, 1);
    picture.op(0x001F).u16({0x7FFF, 0x7FFF, 0x7FFF});
    addPixel(picture, 50, 100, 200, 0);
    addPixel(picture, 100, 200, 250, one.mode);
    const auto decoded = decodeBytes(picture.end());
    ASSERT_EQ(decoded.fault, Fault::none);
    EXPECT_EQ(pixelAt(decoded.value, 0, 0), one.expected) << one.mode;
  }
}

TEST(PictModes, WithoutAnOperandColourSumsEndAtNothing) {
  PictureMaker picture(1, 1);
  addPixel(picture, 100, 200, 250, 33);
  EXPECT_EQ(drawn(picture.end()), Grid{"#"});
}

const Letters kLavender{{kWhite, '.'}, {kBlack, '#'}, {opaque(0xCC, 0xCC, 0xFF), 'L'}};

TEST(PictModes, AHighlightGoesForABitmapToo) {
  PictureMaker picture(1, 4);
  picture.op(0x001C);
  addBitmap(picture, {0, 0, 4, 1}, 0xC0, 2);
  addBitmap(picture, {0, 0, 4, 1}, 0x10, 2);
  EXPECT_EQ(drawn(picture.end(), kLavender), Grid{"LL.#"});
}

TEST(PictModes, AHighlightOfWhatCannotBeSeenIsUsedUp) {
  PictureMaker picture(1, 2);
  picture.op(0x001C);
  addRect(picture, 0x33, {5, 5, 6, 6});
  addRect(picture, 0x33, {0, 0, 1, 1});
  EXPECT_EQ(drawn(picture.end(), kLavender), Grid{"#."});
}

TEST(PictModes, AHighlightLastsForAllLinesOfAPolygon) {
  PictureMaker picture(3, 3);
  picture.op(0x0008).u16({10});
  picture.op(0x001C);
  picture.op(0x0070).u16({26}).box(0, 0, 3, 3).u16({0, 0, 0, 1, 2, 2, 2, 1});
  const Grid grid = drawn(picture.end(), kLavender);
  for (const std::string &row : grid) EXPECT_EQ(row.find('#'), std::string::npos) << row;
  EXPECT_EQ(grid[0][0], 'L');
}

TEST(PictModes, DimmingIsAnOrForRectanglesAndNothingForCurves) {
  PictureMaker picture(2, 6);
  picture.op(0x0008).u16({49});
  addRect(picture, 0x31, {0, 0, 2, 2});
  addRect(picture, 0x51, {2, 0, 4, 2});
  addRect(picture, 0x41, {4, 0, 6, 2});
  EXPECT_EQ(drawn(picture.end()), (Grid{"##....", "##...."}));
}

TEST(PictModes, ModesOfSourcesWithAlphaAreNoneOfThePens) {
  PictureMaker picture(1, 1);
  picture.op(0x0008).u16({256});
  addRect(picture, 0x31, kOne);
  EXPECT_EQ(drawn(picture.end()), Grid{"."});
}

}  // namespace
}  // namespace codecs::pict
