// Every shape in every verb, and again without its operands.

#include <gtest/gtest.h>

#include "picture_grid.h"
#include "picture_maker.h"

namespace codecs::pict {
namespace {

// A shape of four by four from (left, 0), by the first opcode of its kind.
void addShape(PictureMaker &picture, int kind, int verb, int left) {
  picture.op(kind + verb);
  const int right = left + 4;
  if (kind == 0x70) picture.u16({26});
  if (kind == 0x80) picture.u16({34});
  picture.box(0, left, 4, right);
  if (kind == 0x60) picture.u16({0, 180});
  if (kind == 0x70) picture.u16({0, left, 0, right, 4, right, 4, left});
  if (kind == 0x80)
    picture.u16({0, left, left + 2, 0x7FFF, 2, left + 2, right, 0x7FFF, 4, left, right, 0x7FFF});
}

void addSame(PictureMaker &picture, int kind, int verb) {
  picture.op(kind + 8 + verb);
  if (kind == 0x60) picture.u16({0, 180});
}

void addColours(PictureMaker &picture) {
  picture.op(0x000B).u16({4, 4});
  picture.op(0x001B).u16({-1, -1, 0});
  picture.op(0x000A).u32({0xAA55AA55, 0xAA55AA55});
}

// Frame, paint, erase, invert, fill, a column apart; yellow is the background's colour.
Grid fiveVerbs(int kind) {
  PictureMaker picture(4, 24);
  addColours(picture);
  for (int verb = 0; verb < 5; ++verb) addShape(picture, kind, verb, 5 * verb);
  return drawn(picture.end());
}

TEST(PictVerbs, Rectangles) {
  EXPECT_EQ(fiveVerbs(0x30), (Grid{"####.####.YYYY.####.#Y#Y", "#..#.####.YYYY.####.Y#Y#",
                                   "#..#.####.YYYY.####.#Y#Y", "####.####.YYYY.####.Y#Y#"}));
}

TEST(PictVerbs, RoundRectanglesAndOvals) {
  const Grid round{".##...##...YY...##...Y#.", "#..#.####.YYYY.####.Y#Y#", "#..#.####.YYYY.####.#Y#Y",
                   ".##...##...YY...##...#Y."};
  EXPECT_EQ(fiveVerbs(0x40), round);
  EXPECT_EQ(fiveVerbs(0x50), round);
}

TEST(PictVerbs, ArcsOfHalfATurn) {
  EXPECT_EQ(fiveVerbs(0x60), (Grid{"..#....#....Y....#....#.", "...#...##...YY...##...Y#",
                                   "...#...##...YY...##...#Y", "..#....#....Y....#....Y."}));
}

// The frame's lines hang to the lower right, and the outline stays open.
TEST(PictVerbs, Polygons) {
  EXPECT_EQ(fiveVerbs(0x70), (Grid{"#########.YYYY.####.#Y#Y", "....#####.YYYY.####.Y#Y#",
                                   "....#####.YYYY.####.#Y#Y", "....#####.YYYY.####.Y#Y#"}));
}

TEST(PictVerbs, Regions) {
  EXPECT_EQ(fiveVerbs(0x80), (Grid{"##...##...YY...##...#Y..", "##...##...YY...##...Y#..",
                                   "####.####.YYYY.####.#Y#Y", "####.####.YYYY.####.Y#Y#"}));
}

TEST(PictVerbs, SameShapesAreDrawnLikeTheirFirst) {
  for (int kind = 0x30; kind <= 0x80; kind += 0x10) {
    for (int verb = 0; verb < 5; ++verb) {
      PictureMaker first(5, 5), again(5, 5);
      addShape(again, kind, 2, 0);
      addColours(first);
      addColours(again);
      addShape(first, kind, verb, 0);
      addSame(again, kind, verb);
      EXPECT_EQ(drawn(again.end()), drawn(first.end())) << std::hex << kind + verb;
    }
  }
}

TEST(PictVerbs, PolygonsWhoseBoxIsEmptyAreNotDrawn) {
  for (int verb = 0; verb < 5; ++verb) {
    PictureMaker picture(2, 2);
    picture.op(0x70 + verb).u16({22}).box(0, 0, 0, 2).u16({0, 0, 2, 2, 0, 2});
    picture.op(0x78 + verb);
    EXPECT_EQ(drawn(picture.end()), (Grid{"..", ".."})) << verb;
  }
}

}  // namespace
}  // namespace codecs::pict
