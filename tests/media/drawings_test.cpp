#include "media/drawings.h"

#include <gtest/gtest.h>

#include "image_support.h"
#include "media/inspection.h"
#include "picture_grid.h"
#include "png_maker.h"

namespace {

using codecs::pict::Grid;
using codecs::pict::PictureMaker;
using Vector = std::vector<uint8_t>;

Vector twoRectangles() {
  PictureMaker picture(0, 0, 2, 4);
  picture.header(-2, 144, 10, 20, 14, 28);
  picture.op(0x0031).box(10, 20, 12, 22);
  picture.op(0x0030).box(12, 24, 14, 28);
  return picture.end();
}

TEST(Drawings, AnInspectionTellsWhatTheHeaderSaysAndCountsOpcodes) {
  const Vector file = twoRectangles();
  CGPictureInfo info;
  ASSERT_TRUE(CGImageInspectPicture(file.data(), file.size(), &info, nullptr, nullptr));
  EXPECT_EQ(info.version, 2);
  EXPECT_TRUE(info.isExtended);
  EXPECT_EQ(info.frame.bottom, 2);
  EXPECT_EQ(info.drawing.left, 20);
  EXPECT_EQ(info.dotsPerInchX, 144);
  EXPECT_EQ(info.opcodes, 3u);
  EXPECT_EQ(CGImageGetLastDecodeFault(), nullptr);
}

TEST(Drawings, AnInspectionListsOpcodesByName) {
  const Vector file = twoRectangles();
  std::string list;
  CGImageInspectPicture(
      file.data(), file.size(), nullptr,
      [](void *context, uint32_t code, const char *name, size_t bytes) {
        *static_cast<std::string *>(context) += std::to_string(code) + name + std::to_string(bytes) + " ";
      },
      &list);
  EXPECT_EQ(list, "3072header24 49paintRect8 48frameRect8 ");
}

TEST(Drawings, DamageLeavesTheFactsAlone) {
  Vector file = twoRectangles();
  file.resize(file.size() - 6);
  CGPictureInfo info{};
  EXPECT_FALSE(CGImageInspectPicture(file.data(), file.size(), &info, nullptr, nullptr));
  EXPECT_STREQ(CGImageGetLastDecodeFault(), "truncated");
  EXPECT_EQ(info.version, 0);
  EXPECT_FALSE(CGImageInspectPicture(nullptr, 10, &info, nullptr, nullptr));
}

TEST(Drawings, AtTwiceTheSizeShapesAreTwiceAsLarge) {
  const Vector file = twoRectangles();
  const auto small = codecs::decodePict(file, CGImageGetDefaultDecodeLimits());
  EXPECT_EQ(codecs::pict::gridOf(small.value), (Grid{"##......", "##......", "....####", "....####"}));
  const auto image = cf::adopt(CGImageCreateDrawingAtSize(file.data(), file.size(), 16, 8));
  ASSERT_TRUE(image);
  EXPECT_EQ(CGImageGetWidth(image.get()), 16u);
  const auto large = codecs::decodePictAtSize(file, 16, 8, CGImageGetDefaultDecodeLimits());
  EXPECT_EQ(codecs::pict::gridOf(large.value),
            (Grid{"####............", "####............", "####............", "####............",
                  "........########", "........########", "........########", "........########"}));
  EXPECT_EQ(large.value.resolution.x, 288);
}

// A circle of 4 has corners of one pixel; at ten times the size it is round, not made of blocks.
TEST(Drawings, CurvesAreDrawnAnewNotEnlarged) {
  PictureMaker picture(4, 4);
  picture.op(0x0051).box(0, 0, 4, 4);
  const auto large = codecs::decodePictAtSize(picture.end(), 40, 40, CGImageGetDefaultDecodeLimits());
  ASSERT_EQ(large.fault, codecs::Fault::none);
  const Grid grid = codecs::pict::gridOf(large.value);
  size_t changes = 0;
  for (size_t y = 1; y < 40; ++y) changes += grid[y] != grid[y - 1];
  EXPECT_GT(changes, 15u);
}

TEST(Drawings, ImagesClipsAndRegionsGoAlong) {
  PictureMaker picture(2, 2);
  picture.op(0x0001).u16({10}).box(0, 0, 2, 1);
  picture.op(0x0090).u16({2}).box(0, 0, 2, 2);
  picture.box(0, 0, 2, 2).box(0, 0, 2, 2).u16({0}).u8({0x80, 0, 0x40, 0});
  picture.op(0x0001).u16({10}).box(0, 0, 2, 2);
  picture.op(0x0081).u16({10}).box(1, 1, 2, 2);
  const auto large = codecs::decodePictAtSize(picture.end(), 4, 6, CGImageGetDefaultDecodeLimits());
  ASSERT_EQ(large.fault, codecs::Fault::none);
  EXPECT_EQ(codecs::pict::gridOf(large.value), (Grid{"##..", "##..", "##..", "..##", "..##", "..##"}));
}

TEST(Drawings, FormatsOfPixelsHaveNoOtherSize) {
  const Vector png = makePng({.width = 1, .height = 1, .samples = {1, 2, 3}});
  EXPECT_EQ(CGImageCreateDrawingAtSize(png.data(), png.size(), 5, 5), nullptr);
  EXPECT_NE(CGImageGetLastDecodeFault(), nullptr);
  EXPECT_EQ(CGImageCreateDrawingAtSize(nullptr, 0, 5, 5), nullptr);
  const Vector file = twoRectangles();
  EXPECT_EQ(CGImageCreateDrawingAtSize(file.data(), file.size(), 0, 5), nullptr);
  EXPECT_EQ(CGImageCreateDrawingAtSize(file.data(), file.size(), 70000, 5), nullptr);
}

}  // namespace
