#include <gtest/gtest.h>

#include <random>

#include "media/codecs/big_endian.h"
#include "picture_grid.h"
#include "picture_maker.h"

namespace codecs::pict {
namespace {

using Vector = std::vector<uint8_t>;

constexpr Box kWhole3x2{0, 0, 3, 2};

// Three by two pixels, written out by hand as files have them.
Vector workedExample() {
  PictureMaker picture(2, 3);
  picture.header(-2, 72, 0, 0, 2, 3).op(0x001E).op(0x0001).u16({10}).box(0, 0, 2, 3);
  picture.op(0x009A).u32({0xFF});
  addMap(picture, {12, kWhole3x2, 4, 32, 3});
  addBoxes(picture, kWhole3x2, kWhole3x2);
  picture.u8({7, 0x01, 0xFF, 0xFF, 0xFB, 0x00, 0x00, 0xFF});
  picture.u8({6, 0xFE, 0x10, 0xFE, 0x20, 0xFE, 0x30});
  return picture.end();
}

// A bitmap opcode over the whole of a 4 by 2 picture, each row eight bytes and raw.
PictureMaker indexed(int pixelSize, const std::vector<Pixel> &colours, const Vector &row0, const Vector &row1,
                     int flags = 0x8000, int width = 4) {
  PictureMaker picture(2, width);
  const Box whole{0, 0, width, 2};
  picture.op(0x0098);
  const auto rowBytes = static_cast<int>(row0.size());
  addMap(picture, {rowBytes, whole, 0, pixelSize, 1});
  picture.u32({0}).u16({flags, static_cast<int>(colours.size()) - 1});
  for (size_t i = 0; i < colours.size(); ++i) {
    const auto c = bytesOf(colours[i]);
    picture.u16({static_cast<int>(flags & 0x8000 ? 0 : i), c[1] * 257, c[2] * 257, c[3] * 257});
  }
  addBoxes(picture, whole, whole);
  picture.add(row0).add(row1);
  return picture;
}

const std::vector<Pixel> kFourColours{kWhite, opaque(255, 0, 0), opaque(0, 255, 0), opaque(0, 0, 255)};

TEST(PictRead, TheWorkedExample) {
  const auto decoded = decodeBytes(workedExample());
  ASSERT_EQ(decoded.fault, Fault::none);
  EXPECT_EQ(decoded.value.width, 3u);
  EXPECT_EQ(decoded.value.height, 2u);
  EXPECT_EQ(decoded.value.depth, 32);
  EXPECT_EQ(decoded.value.layout, PixelLayout::xrgb32);
  const Letters letters{{opaque(255, 0, 0), 'R'}, {opaque(0, 0, 255), 'B'}, {opaque(0x10, 0x20, 0x30), 'x'}};
  EXPECT_EQ(gridOf(decoded.value, letters), (Grid{"RRB", "xxx"}));
}

TEST(PictRead, AFileHeaderAndBlankBytesInFrontChangeNothing) {
  const Vector bare = workedExample();
  const auto expected = decodeBytes(bare);
  for (const size_t blanks : {512u, 1024u}) {
    Vector file(blanks, 0);
    file.insert(file.end(), bare.begin(), bare.end());
    const auto decoded = decodeBytes(file);
    ASSERT_EQ(decoded.fault, Fault::none);
    EXPECT_EQ(gridOf(decoded.value), gridOf(expected.value));
  }
}

TEST(PictRead, OneBitAPixelTakesTheColoursInForce) {
  PictureMaker picture(2, 4);
  picture.op(0x001A).u16({-1, 0, 0});
  picture.op(0x001B).u16({0, 0, -1});
  picture.op(0x0090).u16({2}).box(0, 0, 2, 4);
  addBoxes(picture, {0, 0, 4, 2}, {0, 0, 4, 2});
  picture.u8({0xA0, 0, 0x30, 0});
  EXPECT_EQ(drawn(picture.end()), (Grid{"RBRB", "BBRR"}));
}

TEST(PictRead, EveryIndexedDepth) {
  EXPECT_EQ(drawn(indexed(1, {kWhite, opaque(255, 0, 0)}, {0x50, 0}, {0xF0, 0}).end()),
            (Grid{".R.R", "RRRR"}));
  EXPECT_EQ(drawn(indexed(2, kFourColours, {0x1B, 0}, {0xE4, 0}).end()), (Grid{".RGB", "BGR."}));
  EXPECT_EQ(drawn(indexed(4, kFourColours, {0x01, 0x23}, {0x32, 0x10}).end()), (Grid{".RGB", "BGR."}));
  EXPECT_EQ(drawn(indexed(8, kFourColours, {0, 1, 2, 3}, {3, 2, 1, 0}).end()), (Grid{".RGB", "BGR."}));
}

TEST(PictRead, WithoutTheTopFlagEntriesSayWhichValueTheyAreFor) {
  const std::vector<Pixel> colours{opaque(255, 0, 0), opaque(0, 255, 0)};
  EXPECT_EQ(drawn(indexed(8, colours, {0, 1, 2, 9}, {1, 1, 0, 0}, 0).end()), (Grid{"RG##", "GGRR"}));
  EXPECT_EQ(drawn(indexed(8, colours, {0, 1, 2, 9}, {1, 1, 0, 0}, 0x82F0).end()), (Grid{"RG##", "GGRR"}));
}

// Eight bytes a row and more are packed, each row behind its count.
TEST(PictRead, LongIndexedRowsArePacked) {
  PictureMaker picture = indexed(8, kFourColours, {}, {}, 0x8000, 8);
  for (size_t i = 0; i + 1 < picture.bytes.size(); ++i) {  // row bytes 0 becomes 8
    if (picture.bytes[i] == 0x80 && picture.bytes[i + 1] == 0) {
      picture.bytes[i + 1] = 8;
      break;
    }
  }
  picture.u8({2, 0xF9, 1}).u8({5, 0xFD, 2, 0xFD, 3, 0x80});
  EXPECT_EQ(drawn(picture.end()), (Grid{"RRRRRRRR", "GGGGBBBB"}));
}

std::vector<uint8_t> direct(int pixelSize, int packType, int components, int rowBytes, const Vector &rows,
                            int width = 3, int height = 1) {
  PictureMaker picture(height, width);
  const Box whole{0, 0, width, height};
  picture.op(0x009A).u32({0xFF});
  addMap(picture, {rowBytes, whole, packType, pixelSize, components});
  addBoxes(picture, whole, whole);
  picture.add(rows);
  return picture.end();
}

TEST(PictRead, SixteenBitsWidenSoThatWhiteStaysWhite) {
  const Vector pixels{0x7F, 0xFF, 0x7C, 0x00, 0x83, 0xE0, 0x00, 0x1F};
  EXPECT_EQ(drawn(direct(16, 1, 3, 8, pixels, 4)), (Grid{".RGB"}));
  EXPECT_EQ(drawn(direct(16, 1, 3, 6, {0x7F, 0xFF, 0x7C, 0x00, 0x03, 0xE0})), (Grid{".RG"}));
  EXPECT_EQ(drawn(direct(16, 3, 3, 8, {6, 0xFF, 0x7C, 0x00, 0xFF, 0x00, 0x1F}, 4)), (Grid{"RRBB"}));
  EXPECT_EQ(drawn(direct(16, 0, 3, 8, {6, 0xFF, 0x7C, 0x00, 0xFF, 0x00, 0x1F}, 4)), (Grid{"RRBB"}));
}

TEST(PictRead, ThirtyTwoBitsInEveryPackType) {
  const Vector words{0, 255, 0, 0, 9, 0, 255, 0, 7, 0, 0, 255};
  EXPECT_EQ(drawn(direct(32, 1, 3, 12, words)), (Grid{"RGB"}));
  const Vector triples{255, 0, 0, 0, 255, 0, 0, 0, 255};
  EXPECT_EQ(drawn(direct(32, 2, 3, 12, triples)), (Grid{"RGB"}));
  EXPECT_EQ(drawn(direct(32, 3, 3, 12, {13, 11, 0, 255, 0, 0, 9, 0, 255, 0, 7, 0, 0, 255})), (Grid{"RGB"}));
  const Vector planes{10, 8, 255, 0, 0, 0, 255, 0, 0, 0, 255};
  EXPECT_EQ(drawn(direct(32, 4, 3, 12, planes)), (Grid{"RGB"}));
  EXPECT_EQ(drawn(direct(32, 0, 3, 12, planes)), (Grid{"RGB"}));
  EXPECT_EQ(drawn(direct(32, 0, 3, 12, triples)), (Grid{"RGB"}));
}

TEST(PictRead, RowsBelowEightBytesAreNeverPacked) {
  EXPECT_EQ(drawn(direct(32, 4, 3, 4, {0, 255, 0, 0, 0, 0, 0, 255}, 1, 2)), (Grid{"R", "B"}));
}

TEST(PictRead, ASurplusPlaneIsIgnored) {
  EXPECT_EQ(drawn(direct(32, 4, 3, 12, {13, 11, 255, 0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0})), (Grid{"RGB"}));
}

// 62 pixels take 248 bytes, 63 take 252: the count grows to two bytes in between, though both rows
// pack into less than 250.
TEST(PictRead, CountsHaveTwoBytesAbove250RowBytes) {
  for (const int width : {50, 51, 62, 63, 83, 84, 300}) {
    Vector row;
    for (int plane = 0; plane < 3; ++plane) {
      for (int left = width; left > 0; left -= 128) {
        const int count = std::min(left, 128);
        if (count == 1) {
          row.insert(row.end(), {0, static_cast<uint8_t>(plane == 1 ? 255 : 0)});
        } else {
          row.insert(row.end(),
                     {static_cast<uint8_t>(1 - count), static_cast<uint8_t>(plane == 1 ? 255 : 0)});
        }
      }
    }
    Vector rows;
    if (4 * width > 250) rows.push_back(0);
    rows.push_back(static_cast<uint8_t>(row.size()));
    rows.insert(rows.end(), row.begin(), row.end());
    EXPECT_EQ(drawn(direct(32, 4, 3, 4 * width, rows, width)),
              (Grid{std::string(static_cast<size_t>(width), 'G')}))
        << width;
  }
}

TEST(PictRead, AFourthComponentIsAlphaInFront) {
  const auto decoded =
      decodeBytes(direct(32, 4, 4, 12, {13, 11, 255, 128, 0, 255, 0, 0, 0, 255, 0, 0, 0, 255}));
  ASSERT_EQ(decoded.fault, Fault::none);
  EXPECT_EQ(decoded.value.layout, PixelLayout::argb32);
  EXPECT_EQ(decoded.value.depth, 32);
  EXPECT_EQ(pixelAt(decoded.value, 0, 0), pixelOf(255, 255, 0, 0));
  EXPECT_EQ(pixelAt(decoded.value, 1, 0), pixelOf(128, 0, 255, 0));
  EXPECT_EQ(pixelAt(decoded.value, 2, 0), pixelOf(0, 0, 0, 255));
}

TEST(PictRead, AFourthComponentOfNothingButZerosOrFullMeansNothing) {
  for (const uint8_t value : {uint8_t{0}, uint8_t{255}}) {
    const auto decoded =
        decodeBytes(direct(32, 4, 4, 12, {13, 11, value, value, value, 255, 0, 0, 0, 255, 0, 0, 0, 255}));
    ASSERT_EQ(decoded.fault, Fault::none);
    EXPECT_EQ(decoded.value.layout, PixelLayout::xrgb32);
    EXPECT_EQ(decoded.value.depth, 32);
    EXPECT_EQ(gridOf(decoded.value), (Grid{"RGB"}));
  }
}

TEST(PictRead, BesideAlphaTheUntouchedPaperIsClear) {
  PictureMaker picture(1, 4);
  picture.op(0x009A).u32({0xFF});
  addMap(picture, {8, {0, 0, 2, 1}, 1, 32, 4});
  addBoxes(picture, {0, 0, 2, 1}, {1, 0, 3, 1});
  picture.u8({100, 255, 0, 0, 255, 0, 0, 255});
  const auto decoded = decodeBytes(picture.end());
  ASSERT_EQ(decoded.fault, Fault::none);
  EXPECT_EQ(pixelAt(decoded.value, 0, 0), pixelOf(0, 255, 255, 255));
  EXPECT_EQ(pixelAt(decoded.value, 1, 0), pixelOf(100, 255, 0, 0));
}

TEST(PictRead, EveryDepthIsReported) {
  EXPECT_EQ(decodeBytes(indexed(1, kFourColours, {0, 0}, {0, 0}).end()).value.depth, 8);
  EXPECT_EQ(decodeBytes(indexed(8, kFourColours, {0, 0, 0, 0}, {0, 0, 0, 0}).end()).value.depth, 8);
  EXPECT_EQ(decodeBytes(direct(16, 1, 3, 6, {0, 0, 0, 0, 0, 0})).value.depth, 24);
  EXPECT_EQ(decodeBytes(workedExample()).value.depth, 32);
}

// The longer rows of the published raw opcodes: raw unless only packed rows lead on.
TEST(PictRead, RawRowsMayBePackedAllTheSame) {
  PictureMaker raw(2, 64);
  raw.op(0x0090).u16({8}).box(0, 0, 2, 64);
  addBoxes(raw, {0, 0, 64, 2}, {0, 0, 64, 2});
  PictureMaker packed = raw;
  for (int i = 0; i < 16; ++i) raw.u8({i < 8 ? 255u : 0u});
  packed.u8({2, 0xF9, 255, 2, 0xF9, 0});
  const Grid expected{std::string(64, '#'), std::string(64, '.')};
  EXPECT_EQ(drawn(raw.end()), expected);
  EXPECT_EQ(drawn(packed.end()), expected);
}

PictureMaker bits4x4(const Box &source, const Box &destination, int mode = 0, const Vector &mask = {}) {
  PictureMaker picture(6, 6);
  picture.op(mask.empty() ? 0x0090 : 0x0091).u16({2}).box(0, 0, 4, 4);
  addBoxes(picture, source, destination, mode);
  picture.add(mask).u8({0x80, 0, 0xC0, 0, 0xE0, 0, 0xF0, 0});
  return picture;
}

TEST(PictRead, PixelsGoWhereTheDestinationIs) {
  EXPECT_EQ(drawn(bits4x4({0, 0, 4, 4}, {1, 2, 5, 6}).end()),
            (Grid{"......", "......", ".#....", ".##...", ".###..", ".####."}));
  EXPECT_EQ(drawn(bits4x4({0, 0, 4, 4}, {-2, -2, 2, 2}).end()),
            (Grid{"#.....", "##....", "......", "......", "......", "......"}));
  EXPECT_EQ(drawn(bits4x4({0, 2, 2, 4}, {0, 0, 2, 2}).end())[0], "##....");
}

TEST(PictRead, EnlargingRepeatsPixels) {
  EXPECT_EQ(drawn(bits4x4({0, 0, 2, 2}, {0, 0, 6, 6}).end()),
            (Grid{"###...", "###...", "###...", "######", "######", "######"}));
  EXPECT_EQ(drawn(bits4x4({0, 0, 4, 4}, {0, 0, 6, 4}).end()),
            (Grid{"#.....", "###...", "####..", "######", "......", "......"}));
}

TEST(PictRead, ReducingAveragesAllPixels) {
  const auto decoded = decodeBytes(bits4x4({0, 0, 4, 4}, {0, 0, 2, 2}).end());
  ASSERT_EQ(decoded.fault, Fault::none);
  EXPECT_EQ(pixelAt(decoded.value, 0, 0), opaque(64, 64, 64));
  EXPECT_EQ(pixelAt(decoded.value, 1, 0), kWhite);
  EXPECT_EQ(pixelAt(decoded.value, 0, 1), kBlack);
  EXPECT_EQ(pixelAt(decoded.value, 1, 1), opaque(64, 64, 64));
}

TEST(PictRead, ReducingOneWayAndEnlargingTheOther) {
  const auto decoded = decodeBytes(bits4x4({0, 0, 4, 4}, {0, 0, 2, 6}).end());
  ASSERT_EQ(decoded.fault, Fault::none);
  EXPECT_EQ(pixelAt(decoded.value, 0, 0), opaque(128, 128, 128));
  EXPECT_EQ(pixelAt(decoded.value, 0, 2), kBlack);
  EXPECT_EQ(pixelAt(decoded.value, 1, 5), kBlack);
}

TEST(PictRead, WhatTheSourceHasNotIsNotDrawn) {
  EXPECT_EQ(drawn(bits4x4({-2, -2, 4, 4}, {0, 0, 6, 6}).end()),
            (Grid{"......", "......", "..#...", "..##..", "..###.", "..####"}));
  EXPECT_EQ(drawn(bits4x4({2, 2, 6, 6}, {0, 0, 4, 4}).end())[0], "#.....");
  EXPECT_EQ(drawn(bits4x4({9, 9, 12, 12}, {0, 0, 3, 3}).end())[0], "......");
}

TEST(PictRead, EmptyRectanglesDrawNothing) {
  const Grid blank(6, "......");
  EXPECT_EQ(drawn(bits4x4({0, 0, 0, 4}, {0, 0, 4, 4}).end()), blank);
  EXPECT_EQ(drawn(bits4x4({0, 0, 4, 4}, {4, 4, 0, 0}).end()), blank);
  EXPECT_EQ(drawn(bits4x4({3, 3, 1, 1}, {0, 0, 4, 4}).end()), blank);
}

TEST(PictRead, AMaskLetsOnlyItsPixelsThrough) {
  const Vector mask =
      ByteMaker().u16({28}).box(0, 0, 4, 4).u16({0, 0, 2, 0x7FFF, 4, 0, 2, 0x7FFF, 0x7FFF}).bytes;
  EXPECT_EQ(drawn(bits4x4({0, 0, 4, 4}, {0, 0, 4, 4}, 0, mask).end()),
            (Grid{"#.....", "##....", "##....", "##....", "......", "......"}));
}

TEST(PictRead, ClipsReplaceEachOther) {
  PictureMaker picture(6, 6);
  picture.op(0x0001).u16({10}).box(0, 0, 1, 1);
  picture.op(0x0001).u16({10}).box(2, 0, 6, 2);
  const PictureMaker bits = bits4x4({0, 0, 4, 4}, {0, 0, 4, 4});
  picture.add(Vector(bits.bytes.begin() + 14, bits.bytes.end()));
  EXPECT_EQ(drawn(picture.end()), (Grid{"......", "......", "##....", "##....", "......", "......"}));
}

TEST(PictRead, TheOriginMovesWhatFollowsHorizontalFirst) {
  PictureMaker picture(6, 6);
  picture.op(0x000C).u16({-2, -1});
  picture.op(0x000C).u16({0, -1});
  const PictureMaker bits = bits4x4({0, 0, 4, 4}, {0, 0, 4, 4});
  picture.add(Vector(bits.bytes.begin() + 14, bits.bytes.end()));
  EXPECT_EQ(drawn(picture.end()), (Grid{"......", "......", "..#...", "..##..", "..###.", "..####"}));
}

TEST(PictRead, TheFramesCornerIsTheCanvass) {
  PictureMaker picture(-5, -7, -3, -3);
  picture.op(0x0090).u16({2}).box(0, 0, 2, 4);
  addBoxes(picture, {0, 0, 4, 2}, {-7, -5, -3, -3});
  picture.u8({0x90, 0, 0x60, 0});
  EXPECT_EQ(drawn(picture.end()), (Grid{"#..#", ".##."}));
}

TEST(PictRead, TransparentModeLeavesTheBackgroundColourOut) {
  PictureMaker picture(1, 4);
  const Box whole{0, 0, 4, 1};
  picture.op(0x0090).u16({2}).box(0, 0, 1, 4);
  addBoxes(picture, whole, whole);
  picture.u8({0xA0, 0});
  picture.op(0x009A).u32({0xFF});
  addMap(picture, {8, whole, 1, 16, 3});
  addBoxes(picture, whole, whole, 36);
  picture.u16({0x7FFF, 0x7C00, 0x7C00, 0x7FFF});
  EXPECT_EQ(drawn(picture.end()), (Grid{"#RR."}));
}

// Bands of one image, each with bounds of its own.
TEST(PictRead, SeveralImagesMakeOnePicture) {
  PictureMaker picture(2, 4);
  for (int y = 0; y < 2; ++y) {
    picture.op(0x0090).u16({2}).box(y, 0, y + 1, 4);
    addBoxes(picture, {0, y, 4, y + 1}, {0, y, 4, y + 1});
    picture.u8({y ? 0xF0u : 0x50u, 0});
  }
  EXPECT_EQ(drawn(picture.end()), (Grid{".#.#", "####"}));
}

TEST(PictRead, AnEndMarkMayBeMissingBehindAnImage) {
  PictureMaker picture = bits4x4({0, 0, 4, 4}, {0, 0, 4, 4});
  EXPECT_EQ(decodeBytes(picture.bytes).fault, Fault::none);
  picture.u8({0});
  EXPECT_EQ(decodeBytes(picture.bytes).fault, Fault::none);
  EXPECT_EQ(decodeBytes(PictureMaker(4, 4).bytes).fault, Fault::truncated);
  EXPECT_EQ(decodeBytes(PictureMaker(4, 4).end()).fault, Fault::none);
}

TEST(PictRead, EveryTruncationBeforeTheEndMarkFails) {
  for (const Vector &file : {workedExample(), indexed(8, kFourColours, {0, 1, 2, 3}, {3, 2, 1, 0}).end()}) {
    for (size_t size = 0; size + 3 < file.size(); ++size) {
      const auto decoded = decodeBytes(Vector(file.begin(), file.begin() + static_cast<long>(size)));
      EXPECT_NE(decoded.fault, Fault::none) << size;
    }
  }
}

TEST(PictRead, ByteFlipsEndInAPictureOrAFault) {
  std::mt19937 random(11);
  for (const Vector &file : {workedExample(), indexed(8, kFourColours, {0, 1, 2, 3}, {3, 2, 1, 0}).end(),
                             direct(16, 3, 3, 8, {6, 0xFF, 0x7C, 0, 0xFF, 0, 0x1F}, 4)}) {
    CGImageDecodeLimits limits = kPictureLimits;
    limits.pixels = 1 << 16;
    for (int round = 0; round < 4000; ++round) {
      Vector broken = file;
      for (int i = 0; i < 1 + round % 3; ++i)
        broken[random() % broken.size()] = static_cast<uint8_t>(random());
      const auto decoded = decodePict(broken, limits);
      if (!decoded) continue;
      ASSERT_EQ(decoded.value.pixels.size(), size_t{4} * decoded.value.width * decoded.value.height);
    }
  }
}

TEST(PictRead, FramesWithoutPixelsAreDamaged) {
  EXPECT_EQ(decodeBytes(PictureMaker(0, 0).end()).fault, Fault::damaged);
  EXPECT_EQ(decodeBytes(PictureMaker(5, 5, 5, 9).end()).fault, Fault::damaged);
  EXPECT_EQ(decodeBytes(PictureMaker(9, 9, 1, 1).end()).fault, Fault::damaged);
}

TEST(PictRead, FramesBeyondTheLimitsAreTooLarge) {
  EXPECT_EQ(decodeBytes(PictureMaker(-32767, -32767, 32767, 32767).end()).fault, Fault::tooLarge);
  CGImageDecodeLimits limits = kPictureLimits;
  limits.side = 9;
  EXPECT_EQ(decodePict(PictureMaker(5, 10).end(), limits).fault, Fault::tooLarge);
}

TEST(PictRead, MoreOpcodesThanTheLimitAreTooMany) {
  PictureMaker picture(2, 2);
  for (int i = 0; i < 50; ++i) picture.op(0);
  CGImageDecodeLimits limits = kPictureLimits;
  limits.pictOpcodes = 50;
  EXPECT_EQ(decodePict(picture.end(), limits).fault, Fault::none);
  limits.pictOpcodes = 49;
  EXPECT_EQ(decodePict(picture.end(), limits).fault, Fault::tooLarge);
}

TEST(PictRead, PaintingTheFrameOverAndOverEnds) {
  PictureMaker picture(2, 4);
  for (int i = 0; i < 20; ++i) {
    picture.op(0x0090).u16({2}).box(0, 0, 2, 4);
    addBoxes(picture, {0, 0, 4, 2}, {0, 0, 4, 2});
    picture.u8({0xF0, 0, 0xF0, 0});
  }
  CGImageDecodeLimits limits = kPictureLimits;
  limits.workFree = 0;
  limits.paintedFrames = 20;
  EXPECT_EQ(decodePict(picture.end(), limits).fault, Fault::none);
  limits.paintedFrames = 19;
  EXPECT_EQ(decodePict(picture.end(), limits).fault, Fault::tooLarge);
}

// A few bytes that ask for a gigabyte of zeros to be unpacked.
TEST(PictRead, EmptyRowsCostWorkToo) {
  PictureMaker picture(1, 1);
  picture.op(0x0098).u16({0x3FFE}).box(0, 0, 32767, 32767);
  addBoxes(picture, {0, 0, 32767, 32767}, {0, 0, 1, 1});
  picture.add(Vector(size_t{2} * 32767, 0));
  CGImageDecodeLimits limits = kPictureLimits;
  limits.workFree = 1 << 20;
  EXPECT_EQ(decodePict(picture.end(), limits).fault, Fault::tooLarge);
}

TEST(PictRead, CommentsOfAnyKindAndLengthArePassedOver) {
  PictureMaker picture(1, 1);
  for (int i = 0; i < 300; ++i) picture.op(0x00A1).u16({i, 1001}).add(Vector(1001, 0xAB));
  picture.op(0x00A0).u16({130});
  EXPECT_EQ(drawn(picture.end()), (Grid{"."}));
}

TEST(PictRead, AllocationsThatFailAreAFault) {
  CGImageDecodeLimits limits = kPictureLimits;
  limits.memoryBytes = 23;
  EXPECT_EQ(decodePict(workedExample(), limits).fault, Fault::tooLarge);
}

}  // namespace
}  // namespace codecs::pict
