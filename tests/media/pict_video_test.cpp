// The small codecs of compressed images, from bytes to pixels.

#include "media/codecs/pict/video_codecs.h"

#include <gtest/gtest.h>

#include <random>

#include "compressed_maker.h"

namespace codecs::pict {
namespace {

using Vector = std::vector<uint8_t>;

constexpr int kRed15 = 0x7C00, kGreen15 = 0x03E0, kBlue15 = 0x001F;

// Red, green and blue by index, then black.
Vector tableOfThree() {
  ByteMaker out;
  out.u32({0}).u16({-0x8000, 3, 0, -1, -1, -1, 0, -1, 0, 0, 0, 0, -1, 0, 0, 0, 0, -1});
  return out.bytes;
}
Described indexed(const char *codec, int width, int height) {
  return {codec, width, height, 8, 0, tableOfThree()};
}

// Four bytes of grey indices: a line of two runs, one skipped, one of copies.
TEST(PictVideo, RleOfGreysCountsFourPixelsAtATime) {
  const Vector data = ByteMaker()
                          .u32({0})
                          .u16({8, 0, 0, 3, 0})
                          .u8({1, 0xFE, 255, 255, 255, 255, 0xFF})
                          .u8({2, 1, 255, 255, 0, 0, 0xFF})
                          .u8({1, 1, 0, 0, 0, 0, 0, 2, 0xFF})
                          .bytes;
  EXPECT_EQ(gridOfImage({"rle ", 8, 3, 40, 40}, data), (Grid{"########", "######..", "....####"}));
}

TEST(PictVideo, RleOfDeepPixels) {
  const Vector data =
      ByteMaker().u32({0}).u16({0}).u8({1, 0xFE, 255, 0, 0, 0, 2, 1, 0, 0, 255, 0xFF, 0}).bytes;
  EXPECT_EQ(gridOfImage({"rle ", 4, 1, 24}, data), (Grid{"RR#B"}));
  const Vector words = ByteMaker().u32({0}).u16({0}).u8({1, 0xFD, 0x7C, 0, 1, 0, 0x1F, 0xFF, 0}).bytes;
  EXPECT_EQ(gridOfImage({"rle ", 4, 1, 16}, words), (Grid{"RRRB"}));
}

TEST(PictVideo, RleStopsAtLineEndsAndAtTheImages) {
  const Vector data = ByteMaker().u32({0}).u16({8, 1, 0, 99, 0}).u8({1, 0x81, 255, 0, 0, 0xFF, 0}).bytes;
  EXPECT_EQ(gridOfImage({"rle ", 3, 3, 24}, data), (Grid{"###", "RRR", "###"}));
}

TEST(PictVideo, RpzaBlocksOfEveryKind) {
  ByteMaker data;
  data.u8({0xE1, 0, 0, 0});
  data.u8({0xA0}).u16({kRed15});
  data.u8({0x80});
  data.u8({0xC0}).u16({kGreen15, kBlue15}).u8({0xC3, 0xC3, 0x3C, 0x3C});
  data.u16({kRed15, 0x8000 | kBlue15}).u8({0xFF, 0x00, 0xFF, 0x00});
  data.u16({0});
  for (int i = 0; i < 15; ++i) data.u16({i % 2 ? kGreen15 : 0x7FFF});
  data.u8({0xA0}).u16({kBlue15});
  EXPECT_EQ(gridOfImage({"rpza", 12, 8, 24}, data.bytes),
            (Grid{"RRRR####GBBG", "RRRR####GBBG", "RRRR####BGGB", "RRRR####BGGB", "RRRR#.G.BBBB",
                  "BBBBG.G.BBBB", "RRRRG.G.BBBB", "BBBBG.G.BBBB"}));
}

TEST(PictVideo, RpzaMixesTheTwoColoursBetween) {
  const Vector data =
      ByteMaker().u8({0xE1, 0, 0, 0, 0xC0}).u16({31 << 10, 0}).u8({0x1B, 0x1B, 0x1B, 0x1B}).bytes;
  const auto red = [](unsigned five) { return opaque(static_cast<uint8_t>(five << 3 | five >> 2), 0, 0); };
  const Letters letters{{red(0), '0'}, {red(11 * 31 / 32), '1'}, {red(21 * 31 / 32), '2'}, {red(31), '3'}};
  EXPECT_EQ(gridOfImage({"rpza", 4, 2, 24}, data, letters), (Grid{"0123", "0123"}));
}

ByteMaker vectorFrame(int width, int height, const Vector &chunks) {
  ByteMaker out;
  out.u8({0, 0, 0, 0}).u16({width, height, 1});
  out.u16({0x1000, static_cast<int>(12 + chunks.size()), 0, 0, height, width}).add(chunks);
  return out;
}

TEST(PictVideo, CvidVectorsOfBothKinds) {
  ByteMaker chunks;
  chunks.u16({0x2200, 4 + 12}).u8({255, 255, 255, 255, 0, 0, 0, 255, 0, 255, 0, 0});
  chunks.u16({0x2400, 4 + 8}).u8({0, 0, 0, 0, 255, 0, 0, 255});
  chunks.u16({0x3000, 4 + 4 + 1 + 4}).u32({0x40000000}).u8({1, 0, 1, 1, 0});
  EXPECT_EQ(gridOfImage({"cvid", 8, 4, 24}, vectorFrame(8, 4, chunks.bytes).bytes),
            (Grid{"##..##.#", "##..###.", "##...###", "##..#.##"}));
}

TEST(PictVideo, CvidColoursComeFromTwoDifferences) {
  ByteMaker chunks;
  chunks.u16({0x2200, 4 + 6}).u8({85, 85, 85, 85, 0xD6, 85});
  chunks.u16({0x3200, 4 + 1}).u8({0});
  const Letters letters{{opaque(255, 21, 1), 'x'}};
  EXPECT_EQ(gridOfImage({"cvid", 4, 1, 24}, vectorFrame(4, 4, chunks.bytes).bytes, letters), (Grid{"xxxx"}));
}

TEST(PictVideo, CvidUpdatesAndBlocksThatAreLeftOut) {
  ByteMaker chunks;
  chunks.u16({0x2700, 4 + 4 + 4}).u32({0x40000000}).u8({255, 255, 255, 255});
  chunks.u16({0x3100, 4 + 4 + 1}).u32({0x40000000 | 0x00000000}).u8({1});
  EXPECT_EQ(gridOfImage({"cvid", 8, 1, 24}, vectorFrame(8, 4, chunks.bytes).bytes), (Grid{"####...."}));
}

TEST(PictVideo, SmcBlocksOfEveryKind) {
  ByteMaker data;
  data.u32({0});
  data.u8({0x60, 1});
  data.u8({0x80, 1, 2}).u16({0x0F0F});
  data.u8({0x90, 0}).u16({0x00FF});
  data.u8({0xA0, 0, 1, 2, 3}).u32({0x1B1B1B1B});
  data.u8({0x20});
  data.u8({0xE0, 0, 1, 2, 3, 3, 2, 1, 0, 0, 0, 0, 0, 1, 1, 1, 1});
  const Grid expected{"RRRRRRRRRRRR", "RRRRGGGGRRRR", "RRRRRRRRGGGG", "RRRRGGGGGGGG",
                      ".RGB.RGB.RGB", ".RGB.RGBBGR.", ".RGB.RGB....", ".RGB.RGBRRRR"};
  Letters letters = kPlainLetters;
  letters[kWhite] = '.';
  EXPECT_EQ(gridOfImage({"smc ", 12, 8, 8, 0,
                         ByteMaker()
                             .u32({0})
                             .u16({-0x8000, 3, 0, -1, -1, -1, 0, -1, 0, 0, 0, 0, -1, 0, 0, 0, 0, -1})
                             .bytes},
                        data.bytes, letters),
            expected);
}

TEST(PictVideo, SmcRepeatsNeedWhatTheyRepeat) {
  EXPECT_EQ(faultOfImage(indexed("smc ", 4, 4), {0, 0, 0, 0, 0x20}), Fault::damaged);
  EXPECT_EQ(faultOfImage(indexed("smc ", 8, 4), {0, 0, 0, 0, 0x60, 1, 0x40}), Fault::damaged);
  EXPECT_EQ(gridOfImage(indexed("smc ", 12, 4), {0, 0, 0, 0, 0x60, 1, 0x60, 2, 0x40})[0], "RRRRGGGGRRRR");
}

TEST(PictVideo, SmcSetsOfEight) {
  ByteMaker data;
  data.u32({0}).u8({0xC0, 0, 1, 2, 3, 3, 2, 1, 0});
  // 0 to 7 for the first eight pixels, twice: 000 001 010 011 100 101 110 111.
  data.u16({0x0530, 0x9770, 0x0537});
  const Grid grid = gridOfImage(indexed("smc ", 4, 4), data.bytes);
  EXPECT_EQ(grid[0], ".RGB");
  EXPECT_EQ(grid[1], "BGR.");
}

TEST(PictVideo, WrleRowsGoUpwardsWithBlueFirst) {
  const Vector data{0, 0, 255, 255, 0, 0, 0, 0, 0, 255, 0, 255, 255, 255, 0, 0};
  EXPECT_EQ(gridOfImage({"WRLE", 2, 2, 24}, data), (Grid{"G.", "RB"}));
}

TEST(PictVideo, WrleRunsMovesAndCopies) {
  const Vector data{3, 1, 0, 0, 0, 2, 1, 1, 2, 3, 0, 3, 1, 2, 3, 0, 0, 1};
  EXPECT_EQ(gridOfImage(indexed("WRLE", 6, 3), data), (Grid{"#BBRGB", "######", "RRR###"}));
}

TEST(PictVideo, WrleRunsMayBeLongerThanPlainRows) {
  const Vector data{1, 1, 1, 2, 1, 3, 1, 1, 0, 0, 1, 3, 1, 2, 1, 1, 1, 3, 0, 1};
  EXPECT_EQ(gridOfImage(indexed("WRLE", 4, 2), data), (Grid{"BGRB", "RGBR"}));
}

TEST(PictVideo, PntgPacksAllRowsInOneGo) {
  EXPECT_EQ(gridOfImage({"PNTG", 8, 3, 1}, {0xFF, 0xF0, 0, 0x81}),
            (Grid{"####....", "####....", "#......#"}));
  EXPECT_EQ(faultOfImage({"PNTG", 8, 3, 1}, {0xFF, 0xF0}), Fault::damaged);
}

// The luma is an index of the palette at 8 bits, and the grey itself at 40.
TEST(PictVideo, CvidGreysAreNoIndices) {
  ByteMaker chunks;
  chunks.u16({0x2600, 4 + 4}).u8({0, 255, 255, 0});
  chunks.u16({0x3200, 4 + 1}).u8({0});
  const Vector frame = vectorFrame(4, 4, chunks.bytes).bytes;
  EXPECT_EQ(gridOfImage({"cvid", 4, 4, 40, 40}, frame), (Grid{"##..", "##..", "..##", "..##"}));
  EXPECT_EQ(gridOfImage({"cvid", 4, 4, 8, 8}, frame), (Grid{"..##", "..##", "##..", "##.."}));
}

TEST(PictVideo, EightBpsPlanesFollowEachOther) {
  const Vector data{0,   2,    0, 2, 0, 3,   0, 3,   0, 2,    0, 2,    0xFF,
                    255, 0xFF, 0, 1, 0, 255, 1, 255, 0, 0xFF, 0, 0xFF, 255};
  EXPECT_EQ(gridOfImage({"8BPS", 2, 2, 24}, data), (Grid{"RY", "CB"}));
}

TEST(PictVideo, Yuv2SharesColourBetweenTwoPixels) {
  EXPECT_EQ(gridOfImage({"yuv2", 3, 1, 24}, {255, 0, 0, 0, 255, 0, 255, 0}), (Grid{".#."}));
  const Letters letters{{opaque(254, 0, 0), 'r'}};
  EXPECT_EQ(gridOfImage({"yuv2", 2, 1, 24}, {76, 0xD5, 76, 127}, letters), (Grid{"rr"}));
}

TEST(PictVideo, EveryTruncationAndByteFlipEnds) {
  std::mt19937 random(5);
  const Described images[] = {{"raw ", 9, 7, 24},     {"rle ", 9, 7, 24}, {"rle ", 9, 7, 40, 40},
                              {"rle ", 9, 7, 1},      {"rpza", 9, 7, 24}, {"cvid", 9, 7, 24},
                              {"cvid", 9, 7, 40, 40}, {"smc ", 9, 7, 8},  {"WRLE", 9, 7, 8},
                              {"WRLE", 9, 7, 24},     {"8BPS", 9, 7, 24}, {"yuv2", 9, 7, 24}};
  for (const Described &image : images) {
    for (int round = 0; round < 300; ++round) {
      Vector data(random() % 200);
      for (uint8_t &byte : data) byte = static_cast<uint8_t>(random() % 3 ? random() % 8 : random());
      if (data.size() > 1 && std::string(image.codec) == "rpza") data[0] = 0xE1;
      if (data.size() > 10 && std::string(image.codec) == "cvid") data[9] = 2;
      faultOfImage(image, data);
    }
  }
}

TEST(PictVideo, DepthsThatACodecHasNotAreUnsupported) {
  EXPECT_EQ(faultOfImage({"raw ", 1, 1, 7}, Vector(100)), Fault::unsupported);
  EXPECT_EQ(faultOfImage({"rle ", 1, 1, 3}, Vector(100)), Fault::unsupported);
  EXPECT_EQ(faultOfImage({"smc ", 1, 1, 24}, Vector(100)), Fault::unsupported);
  EXPECT_EQ(faultOfImage({"8BPS", 1, 1, 16}, Vector(100)), Fault::unsupported);
  EXPECT_EQ(faultOfImage({"WRLE", 1, 1, 2}, Vector(100)), Fault::unsupported);
}

}  // namespace
}  // namespace codecs::pict
