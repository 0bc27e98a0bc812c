// Drawings from opcodes to pixels.

#include <gtest/gtest.h>

#include "picture_grid.h"
#include "picture_maker.h"

namespace codecs::pict {
namespace {

PictureMaker &rect(PictureMaker &picture, int code, const Box &box) {
  picture.op(code).box(box.top, box.left, box.bottom, box.right);
  return picture;
}

TEST(PictDrawing, TheWorkedExampleOfVersion1) {
  ByteMaker file;
  file.u16({0x29}).box(0, 0, 5, 6).u8({0x11, 1, 0x01}).u16({10}).box(0, 0, 5, 6);
  file.u8({0x31}).box(1, 1, 4, 5).u8({0xFF});
  EXPECT_EQ(drawn(file.bytes), (Grid{"......", ".####.", ".####.", ".####.", "......"}));
}

TEST(PictDrawing, RectanglesInEveryVerb) {
  PictureMaker picture(3, 20);
  picture.op(0x0002).u32({0, 0});
  picture.op(0x000A).u32({0xAA55AA55, 0xAA55AA55});
  for (int verb = 0; verb < 5; ++verb) rect(picture, 0x30 + verb, {4 * verb, 0, 4 * verb + 3, 3});
  EXPECT_EQ(drawn(picture.end()),
            (Grid{"###.###.....###.#.#.", "#.#.###.....###..#..", "###.###.....###.#.#."}));
}

TEST(PictDrawing, ReservedVerbsDrawNothing) {
  PictureMaker picture(3, 3);
  for (int verb = 5; verb < 8; ++verb) rect(picture, 0x30 + verb, {0, 0, 3, 3});
  EXPECT_EQ(drawn(picture.end()), (Grid{"...", "...", "..."}));
}

TEST(PictDrawing, FramesLieInsideAndAreAsThickAsThePen) {
  PictureMaker picture(5, 8);
  picture.op(0x0007).u16({1, 2});
  rect(picture, 0x30, {0, 0, 7, 5});
  EXPECT_EQ(drawn(picture.end()), (Grid{"#######.", "##...##.", "##...##.", "##...##.", "#######."}));
  PictureMaker thick(3, 3);
  thick.op(0x0007).u16({2, 2});
  rect(thick, 0x30, {0, 0, 3, 3});
  EXPECT_EQ(drawn(thick.end()), (Grid{"###", "###", "###"}));
}

TEST(PictDrawing, APenOfNothingFramesNothing) {
  PictureMaker picture(3, 3);
  picture.op(0x0007).u16({0, 0});
  for (const int code : {0x30, 0x40, 0x50}) rect(picture, code, {0, 0, 3, 3});
  EXPECT_EQ(drawn(picture.end()), (Grid{"...", "...", "..."}));
}

TEST(PictDrawing, ErasingUsesTheBackgroundPatternAndColours) {
  PictureMaker picture(2, 4);
  picture.op(0x001A).u16({-1, 0, 0});
  picture.op(0x001B).u16({0, 0, -1});
  picture.op(0x0002).u32({0xAA55AA55, 0xAA55AA55});
  rect(picture, 0x32, {0, 0, 4, 2});
  EXPECT_EQ(drawn(picture.end()), (Grid{"RBRB", "BRBR"}));
}

TEST(PictDrawing, InvertingTwiceLeavesWhatWasThere) {
  PictureMaker picture(1, 4);
  picture.op(0x001A).u16({-1, 0, 0});
  rect(picture, 0x31, {0, 0, 1, 1});
  rect(picture, 0x33, {0, 0, 3, 1});
  rect(picture, 0x33, {2, 0, 4, 1});
  EXPECT_EQ(drawn(picture.end()), (Grid{"C#.#"}));
}

TEST(PictDrawing, SameShapesShareOneLastRectangle) {
  PictureMaker picture(4, 4);
  picture.op(0x0050).box(0, 0, 4, 4);
  picture.op(0x0039);
  EXPECT_EQ(drawn(picture.end()), (Grid{"####", "####", "####", "####"}));
  PictureMaker arc(4, 4);
  rect(arc, 0x32, {0, 0, 4, 4});
  arc.op(0x0069).u16({0, 90});
  EXPECT_EQ(drawn(arc.end()), (Grid{"..#.", "..##", "....", "...."}));
}

TEST(PictDrawing, SamePolygonsAndRegionsHaveMemoriesOfTheirOwn) {
  PictureMaker picture(3, 6);
  picture.op(0x0072).u16({26}).box(0, 0, 2, 2).u16({0, 0, 0, 2, 2, 2, 2, 0});
  picture.op(0x0082).u16({10}).box(0, 3, 3, 5);
  rect(picture, 0x32, {0, 0, 6, 3});
  picture.op(0x0079);
  picture.op(0x0089);
  EXPECT_EQ(drawn(picture.end()), (Grid{"##.##.", "##.##.", "...##."}));
}

TEST(PictDrawing, ShapesRememberedMoveWithTheOrigin) {
  PictureMaker picture(2, 4);
  rect(picture, 0x31, {0, 0, 1, 1});
  picture.op(0x000C).u16({-2, -1});
  picture.op(0x0039);
  EXPECT_EQ(drawn(picture.end()), (Grid{"#...", "..#."}));
}

TEST(PictDrawing, LinesStartWhereTheLastOneEnded) {
  PictureMaker picture(4, 6);
  picture.op(0x0020).u16({0, 0, 0, 3});
  picture.op(0x0021).u16({3, 3});
  picture.op(0x0023).u8({2, 0});
  picture.op(0x0022).u16({1, 0}).u8({0, 2});
  EXPECT_EQ(drawn(picture.end()), (Grid{"####..", "#..#..", "#..#..", "#..###"}));
}

TEST(PictDrawing, ShortLinesGoBackToo) {
  PictureMaker picture(3, 3);
  picture.op(0x0022).u16({2, 2}).u8({0xFE, 0xFE});
  EXPECT_EQ(drawn(picture.end()), (Grid{"#..", ".#.", "..#"}));
}

TEST(PictDrawing, FramedPolygonsAreNotClosed) {
  PictureMaker picture(4, 4);
  picture.op(0x0070).u16({22}).box(0, 0, 3, 3).u16({0, 0, 0, 3, 3, 3});
  EXPECT_EQ(drawn(picture.end()), (Grid{"####", "...#", "...#", "...#"}));
}

TEST(PictDrawing, FramedRegionsLieInside) {
  PictureMaker picture(4, 4);
  picture.op(0x0080).u16({36}).box(0, 0, 4, 4);
  picture.u16({0, 0, 3, 0x7FFF, 3, 3, 4, 0x7FFF, 4, 0, 4, 0x7FFF, 0x7FFF});
  EXPECT_EQ(drawn(picture.end()), (Grid{"###.", "#.#.", "#.#.", "####"}));
}

TEST(PictDrawing, RoundRectanglesTakeTheOvalInForce) {
  PictureMaker picture(6, 8);
  picture.op(0x000B).u16({4, 4});
  rect(picture, 0x41, {0, 0, 8, 6});
  EXPECT_EQ(drawn(picture.end()),
            (Grid{".######.", "########", "########", "########", "########", ".######."}));
}

TEST(PictDrawing, ArcsGoClockwiseFromTheTop) {
  PictureMaker picture(4, 4);
  picture.op(0x0061).box(0, 0, 4, 4).u16({90, 90});
  EXPECT_EQ(drawn(picture.end()), (Grid{"....", "....", "..##", "..#."}));
  PictureMaker frame(7, 7);
  frame.op(0x0060).box(0, 0, 7, 7).u16({0, -180});
  EXPECT_EQ(drawn(frame.end()),
            (Grid{"..#....", ".#.....", "#......", "#......", "#......", ".#.....", "..#...."}));
}

TEST(PictDrawing, TheClipShapesWhatIsPainted) {
  PictureMaker picture(3, 6);
  picture.op(0x0001).u16({28}).box(0, 0, 3, 6).u16({0, 0, 2, 0x7FFF, 2, 0, 2, 0x7FFF, 0x7FFF});
  rect(picture, 0x31, {0, 0, 6, 3});
  EXPECT_EQ(drawn(picture.end()), (Grid{"##....", "##....", "......"}));
}

TEST(PictDrawing, APenOfNothingStillMovesAndUndefinedModesDrawNothing) {
  for (const int mode : {16, 23, 31}) {
    PictureMaker picture(3, 3);
    picture.op(0x0008).u16({mode});
    picture.op(0x0020).u16({0, 0, 0, 2});
    picture.op(0x0008).u16({8});
    picture.op(0x0007).u16({0, 0});
    picture.op(0x0021).u16({2, 2});
    picture.op(0x0007).u16({1, 1});
    picture.op(0x0023).u8({0xFE, 0});
    EXPECT_EQ(drawn(picture.end()), (Grid{"...", "...", "###"})) << mode;
  }
}

TEST(PictDrawing, OriginsAddUpAndTheClipStaysWhereItWasSet) {
  PictureMaker picture(2, 5);
  picture.op(0x0001).u16({10}).box(0, 1, 2, 4);
  picture.op(0x000C).u16({-1, 0});
  picture.op(0x000C).u16({-1, -1});
  rect(picture, 0x31, {-2, 0, 3, 1});
  EXPECT_EQ(drawn(picture.end()), (Grid{".....", ".###."}));
}

TEST(PictDrawing, PixelPatternsEraseAndSurviveTheOthers) {
  PictureMaker picture(1, 4);
  picture.op(0x0012).u16({2}).u32({0, 0}).u16({-1, 0, 0});
  picture.op(0x0014).u16({2}).u32({0, 0}).u16({0, 0, -1});
  rect(picture, 0x32, {0, 0, 1, 1});
  rect(picture, 0x34, {1, 0, 2, 1});
  rect(picture, 0x31, {2, 0, 3, 1});
  picture.op(0x0002).u32({0, 0});
  rect(picture, 0x32, {2, 0, 4, 1});
  EXPECT_EQ(drawn(picture.end()), (Grid{"RB.."}));
}

TEST(PictDrawing, PatternsStartInTheCanvassCorner) {
  PictureMaker picture(2, 10);
  picture.op(0x0009).u8({0x80, 0x01, 0, 0, 0, 0, 0, 0});
  rect(picture, 0x31, {1, 0, 10, 2});
  EXPECT_EQ(drawn(picture.end()), (Grid{"........#.", ".......#.."}));
}

TEST(PictDrawing, EveryBooleanPatternMode) {
  // On white and on black; fore red, back blue; pattern 10.
  const struct {
    int mode;
    std::string onWhite, onBlack;
  } kCases[] = {{8, "RB", "RB"},  {9, "R.", "R#"},  {10, "#.", ".#"}, {11, "B.", "B#"},
                {12, "BR", "BR"}, {13, ".R", "#R"}, {14, ".#", "#."}, {15, ".B", "#B"}};
  for (const auto &one : kCases) {
    PictureMaker picture(1, 4);
    rect(picture, 0x31, {2, 0, 4, 1});
    picture.op(0x001A).u16({-1, 0, 0});
    picture.op(0x001B).u16({0, 0, -1});
    picture.op(0x0009).u32({0xAAAAAAAA, 0xAAAAAAAA});
    picture.op(0x0008).u16({one.mode});
    rect(picture, 0x31, {0, 0, 4, 1});
    EXPECT_EQ(drawn(picture.end()), (Grid{one.onWhite + one.onBlack})) << one.mode;
  }
}

TEST(PictDrawing, EveryArithmeticMode) {
  const struct {
    int mode;
    Pixel expected;
  } kCases[] = {{32, opaque(75, 150, 225)},  {33, opaque(127, 127, 127)}, {34, opaque(150, 44, 194)},
                {35, opaque(127, 127, 127)}, {36, opaque(100, 200, 250)}, {37, opaque(100, 200, 250)},
                {38, opaque(206, 156, 206)}, {39, opaque(50, 100, 200)},  {40, opaque(75, 150, 225)},
                {50, opaque(50, 100, 200)},  {23, opaque(50, 100, 200)},  {100, opaque(100, 200, 250)}};
  for (const auto &one : kCases) {
    PictureMaker picture(1, 1);
    picture.op(0x001A).u16({50 * 257, 100 * 257, 200 * 257});
    rect(picture, 0x31, {0, 0, 1, 1});
    picture.op(0x001A).u16({100 * 257, 200 * 257, 250 * 257});
    picture.op(0x001F).u16({0x7FFF, 0x7FFF, 0x7FFF});
    picture.op(0x0008).u16({one.mode});
    rect(picture, 0x31, {0, 0, 1, 1});
    const auto decoded = decodeBytes(picture.end());
    ASSERT_EQ(decoded.fault, Fault::none);
    const auto made = bytesOf(pixelAt(decoded.value, 0, 0)), wanted = bytesOf(one.expected);
    for (size_t k = 0; k < 4; ++k) EXPECT_NEAR(made[k], wanted[k], 1) << one.mode << " channel " << k;
  }
}

TEST(PictDrawing, AHighlightTakesTheNextExclusiveOrsPlace) {
  PictureMaker picture(1, 4);
  rect(picture, 0x31, {0, 0, 1, 1});
  picture.op(0x001D).u16({-1, -1, 0});
  picture.op(0x001C);
  rect(picture, 0x33, {0, 0, 3, 1});
  rect(picture, 0x33, {3, 0, 4, 1});
  EXPECT_EQ(drawn(picture.end()), (Grid{"#YY#"}));
}

TEST(PictDrawing, OldColoursAreNamedByNumbers) {
  PictureMaker picture(1, 9);
  const int numbers[] = {33, 30, 205, 341, 409, 273, 137, 69, 7};
  for (int i = 0; i < 9; ++i) {
    picture.op(0x000E).u16({0, numbers[i]});
    rect(picture, 0x31, {i, 0, i + 1, 1});
  }
  const Letters letters{{kBlack, '#'},
                        {kWhite, '.'},
                        {opaque(0xDD, 0x08, 0x06), 'R'},
                        {opaque(0x00, 0x80, 0x11), 'G'},
                        {opaque(0x00, 0x00, 0xD4), 'B'},
                        {opaque(0x02, 0xAB, 0xEA), 'C'},
                        {opaque(0xF2, 0x08, 0x84), 'M'},
                        {opaque(0xFC, 0xF3, 0x05), 'Y'}};
  EXPECT_EQ(drawn(picture.end(), letters), (Grid{"#.RGBCMY#"}));
}

TEST(PictDrawing, PixelPatternsHaveTheirOwnColours) {
  PictureMaker picture(2, 4);
  picture.op(0x0013).u16({2}).u32({0, 0}).u16({0, -1, 0});
  rect(picture, 0x31, {0, 0, 1, 2});
  picture.op(0x0014).u16({1}).u32({0, 0});
  addMap(picture, {2, {0, 0, 2, 2}, 0, 8, 1});
  picture.u32({0}).u16({int{0x8000}, 1, 0, -1, 0, 0, 0, 0, 0, -1}).u8({0, 1, 1, 0});
  rect(picture, 0x34, {1, 0, 4, 2});
  EXPECT_EQ(drawn(picture.end()), (Grid{"GBRB", "GRBR"}));
}

TEST(PictDrawing, APlainPatternReplacesAPixelPattern) {
  PictureMaker picture(1, 2);
  picture.op(0x0013).u16({2}).u32({0, 0}).u16({0, -1, 0});
  picture.op(0x0009).u32({0xFFFFFFFF, 0xFFFFFFFF});
  rect(picture, 0x31, {0, 0, 2, 1});
  EXPECT_EQ(drawn(picture.end()), (Grid{"##"}));
}

TEST(PictDrawing, ColoursMakeADrawingDeeperThanBlackAndWhite) {
  PictureMaker plain(1, 2);
  rect(plain, 0x31, {0, 0, 1, 1});
  PictureMaker colour = plain;
  EXPECT_EQ(decodeBytes(plain.end()).value.depth, 8);
  colour.op(0x001A).u16({-1, 0, 0});
  rect(colour, 0x31, {0, 0, 1, 1});
  EXPECT_EQ(decodeBytes(colour.end()).value.depth, 24);
}

TEST(PictDrawing, EverythingHugeEnds) {
  PictureMaker picture(4, 4);
  picture.op(0x0007).u16({32767, 32767});
  for (const int kind : {0x30, 0x40, 0x50}) {
    for (int verb = 0; verb < 5; ++verb) picture.op(kind + verb).box(-32768, -32768, 32767, 32767);
  }
  picture.op(0x0060).box(-32768, -32768, 32767, 32767).u16({13, 200});
  picture.op(0x0020).u16({-32768, -32768, 32767, 32767});
  picture.op(0x0071)
      .u16({22})
      .box(-32768, -32768, 32767, 32767)
      .u16({-32768, 0, 32767, 32767, 32767, -32768});
  EXPECT_EQ(decodeBytes(picture.end()).fault, Fault::none);
}

}  // namespace
}  // namespace codecs::pict
