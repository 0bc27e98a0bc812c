#include "media/codecs/pict/picture.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "media/codecs/pict/opcode_walker.h"
#include "picture_grid.h"
#include "picture_maker.h"

namespace codecs::pict {
namespace {

using Vector = std::vector<uint8_t>;

Vector smallVersion2() { return PictureMaker(3, 5).end(); }
Vector smallVersion1() { return ByteMaker().u16({0}).box(0, 0, 3, 5).u8({0x11, 1, 0xFF}).bytes; }

Vector behind(size_t blanks, const Vector &picture) {
  Vector file(blanks + picture.size());
  std::ranges::copy(picture, file.begin() + static_cast<long>(blanks));
  return file;
}

Vector macBinary() {
  Vector header(128, 0);
  header[1] = 4;
  return header;
}

int widthFound(const Vector &file) {
  const auto picture = findPicture(file);
  return picture ? picture->frame.width() : 0;
}

TEST(PictPicture, StartsBehindEveryWrapping) {
  for (const Vector &picture : {smallVersion2(), smallVersion1()}) {
    for (const size_t blanks : {0u, 512u, 1024u}) {
      EXPECT_EQ(widthFound(behind(blanks, picture)), 5) << blanks;
      EXPECT_GT(scorePicture(behind(blanks, picture)), 0) << blanks;
    }
    for (const size_t outer : {0u, 512u}) {
      for (const size_t inner : {0u, 512u}) {
        Vector file = behind(outer + 128 + inner, picture);
        std::ranges::copy(macBinary(), file.begin() + static_cast<long>(outer));
        EXPECT_EQ(widthFound(file), 5) << outer << " " << inner;
      }
    }
  }
}

TEST(PictPicture, TheFileHeaderMayHoldAnything) {
  Vector file = behind(512, smallVersion2());
  for (size_t i = 0; i < 512; ++i) file[i] = static_cast<uint8_t>(i * 7);
  EXPECT_EQ(widthFound(file), 5);
}

TEST(PictPicture, OddWrappingsAreSearchedForVersion2) {
  EXPECT_EQ(widthFound(behind(333, smallVersion2())), 5);
  EXPECT_EQ(widthFound(behind(333, smallVersion1())), 0);
  EXPECT_EQ(scorePicture(behind(333, smallVersion2())), 0);
  EXPECT_EQ(widthFound(behind(5000, smallVersion2())), 0);
}

// Two bytes that look like a version inside the picture's own data.
TEST(PictPicture, ABareVersion1PictureIsNotTakenForAFileHeader) {
  Vector file = smallVersion1();
  file.pop_back();
  file.resize(800, 0x22);
  for (size_t i = 512; i < 522; ++i) file[i] = static_cast<uint8_t>(i % 4 ? 9 : 0);
  file[522] = 0x11;
  file[523] = 0x01;
  EXPECT_EQ(widthFound(file), 5);
}

TEST(PictPicture, Version1NeedsAFrame) {
  EXPECT_EQ(widthFound(ByteMaker().u16({0}).box(0, 0, 0, 5).u8({0x11, 1, 0xFF}).bytes), 0);
  EXPECT_EQ(widthFound(ByteMaker().u16({0}).box(9, 9, 3, 5).u8({0x11, 1, 0xFF}).bytes), 0);
}

TEST(PictPicture, OtherBytesAreNoPicture) {
  EXPECT_EQ(scorePicture({}), 0);
  EXPECT_EQ(scorePicture(Vector(2048, 0)), 0);
  EXPECT_EQ(decodeBytes(Vector(4000, 0x11)).fault, Fault::unknownFormat);
}

TEST(PictPicture, AnExtendedHeaderSaysWhatCoordinatesMean) {
  const Vector file = PictureMaker(0, 0, 72, 72).header(-2, 300, -10, 20, 290, 320).end();
  const auto picture = findPicture(file);
  ASSERT_TRUE(picture);
  EXPECT_TRUE(picture->isExtended);
  EXPECT_EQ(picture->drawing, (Box{20, -10, 320, 290}));
  EXPECT_EQ(picture->resolution.x, 300);
  EXPECT_EQ(picture->resolution.y, 300);
}

TEST(PictPicture, EveryOtherHeaderLeavesTheFrame) {
  for (const int version : {-1, 0, 7}) {
    const Vector file = PictureMaker(1, 2, 33, 44).header(version, 300, 0, 0, 290, 320).end();
    EXPECT_EQ(findPicture(file)->drawing, (Box{2, 1, 44, 33})) << version;
    EXPECT_EQ(findPicture(file)->resolution.x, 72);
  }
  EXPECT_EQ(findPicture(PictureMaker(33, 44).end())->drawing, (Box{0, 0, 44, 33}));
  const Vector empty = PictureMaker(33, 44).header(-2, 300, 5, 5, 5, 5).end();
  EXPECT_EQ(findPicture(empty)->drawing, (Box{0, 0, 44, 33}));
}

std::vector<uint16_t> codesOf(const Vector &file) {
  std::vector<uint16_t> codes;
  OpcodeWalker walker(*findPicture(file));
  while (const auto opcode = walker.next()) codes.push_back(opcode->code);
  EXPECT_EQ(walker.fault(), Fault::none);
  return codes;
}

TEST(PictWalker, WordsStartAtEvenOffsetsFromThePictureItself) {
  PictureMaker picture(3, 5);
  picture.op(0x0004).u8({1});
  picture.op(0x001C);
  EXPECT_EQ(codesOf(picture.end()), (std::vector<uint16_t>{0x04, 0x1C}));
  EXPECT_EQ(codesOf(behind(333, picture.bytes)), (std::vector<uint16_t>{0x04, 0x1C}));
}

TEST(PictWalker, Version1HasBytesWithoutPadding) {
  const Vector file =
      ByteMaker().u16({0}).box(0, 0, 3, 5).u8({0x11, 1, 0x04, 1, 0x0D, 0, 12, 0x00, 0xFF, 0x04}).bytes;
  EXPECT_EQ(codesOf(file), (std::vector<uint16_t>{0x04, 0x0D, 0x00}));
}

TEST(PictWalker, AVersionInMidStreamChangesTheWidth) {
  const Vector file = ByteMaker()
                          .u16({0})
                          .box(0, 0, 3, 5)
                          .u8({0x11, 1, 0x11, 2, 0x00, 0x1C, 0x00, 0x11, 0x01, 0x04, 1, 0xFF})
                          .bytes;
  EXPECT_EQ(codesOf(file), (std::vector<uint16_t>{0x11, 0x1C, 0x11, 0x04}));
}

TEST(PictWalker, NothingCountsBehindTheEnd) {
  Vector file = PictureMaker(3, 5).end();
  file.insert(file.end(), {0x00, 0x04, 1, 2, 3});
  EXPECT_TRUE(codesOf(file).empty());
}

TEST(PictWalker, SkippedBytesLeadToTheNextOpcode) {
  PictureMaker picture(3, 5);
  picture.op(0x0007).u16({174, 7}).u8({1, 2, 3, 4, 5, 6, 7});
  picture.op(0x001C);
  const Vector file = picture.end();
  OpcodeWalker walker(*findPicture(file));
  EXPECT_EQ(walker.next()->code, 0x07);
  walker.skip(7);
  EXPECT_EQ(walker.next()->code, 0x1C);
  walker.skip(1000000);
  EXPECT_FALSE(walker.next());
}

}  // namespace
}  // namespace codecs::pict
