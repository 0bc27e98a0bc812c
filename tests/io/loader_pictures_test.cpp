// The loaders on pictures that are written byte by byte: what becomes of depth, alpha and profile.
#include <gtest/gtest.h>

#include "core/foreign_profile.h"
#include "files.h"
#include "io/loader.h"
#include "media/picture_maker.h"

namespace {

using namespace test;
using codecs::pict::addBoxes;
using codecs::pict::addMap;
using codecs::pict::Box;
using codecs::pict::PictureMaker;

// Two pixels of 32 bits, one above the other.
Bytes directPicture(int components) {
  PictureMaker picture(2, 1);
  const Box whole{0, 0, 1, 2};
  picture.op(0x009A).u32({0xFF});
  addMap(picture, {4, whole, 1, 32, components});
  addBoxes(picture, whole, whole);
  picture.u8({0, 10, 20, 30, 128, 200, 100, 50});
  return picture.end();
}

// Eight pixels in a row, from a table of black, red and white. With a profile in front, if there is one.
Bytes indexedPicture(const Bytes &profile = {}) {
  PictureMaker picture(1, 8);
  if (!profile.empty()) {
    picture.op(0x00A1).u16({224, static_cast<int>(profile.size()) + 4}).u32({0}).add(profile);
    picture.op(0x00A1).u16({224, 4}).u32({2});
  }
  const Box whole{0, 0, 8, 1};
  picture.op(0x0098);
  addMap(picture, {8, whole, 0, 8, 1});
  picture.u32({0}).u16({0, 2});
  picture.u16({0, 0, 0, 0}).u16({1, 0xFFFF, 0, 0}).u16({2, 0xFFFF, 0xFFFF, 0xFFFF});
  addBoxes(picture, whole, whole);
  picture.u8({7, 0xFF, 0, 0xFF, 1, 0xFF, 2, 0xFF, 0});  // runs of two
  return picture.end();
}

using Load = DRAVCFImageLoaderRef (*)(CFAllocatorRef, CFDataRef);

cf::Ref<CGImageRef> loadedBy(Load load, const Bytes &bytes) {
  const cf::Ref loader = cf::adopt(load(nullptr, dataOf(bytes).get()));
  return cf::adopt(DRAVCFImageLoaderCopyImage(loader.get()));
}

TEST(LoadedPictures, Of32BitsLoseTheirAlphaAsPICTAndKeepItStraightAsPCT) {
  const cf::Ref pict = loadedBy(DRAVCFCreatePICTImageLoaderFromData, directPicture(4));
  ASSERT_TRUE(pict);
  EXPECT_EQ(CGImageGetAlphaInfo(pict.get()), kCGImageAlphaNoneSkipFirst);
  EXPECT_EQ(pixelsOf(pict.get()), (Bytes{255, 10, 20, 30, 255, 200, 100, 50}));
  const cf::Ref pct = loadedBy(DRAVCFCreatePCTImageLoaderFromData, directPicture(4));
  ASSERT_TRUE(pct);
  EXPECT_EQ(CGImageGetAlphaInfo(pct.get()), kCGImageAlphaFirst);
  EXPECT_EQ(pixelsOf(pct.get()), (Bytes{0, 10, 20, 30, 128, 200, 100, 50}));
}

TEST(LoadedPictures, OfThreeComponentsAreOpaqueAsPCT) {
  const cf::Ref pct = loadedBy(DRAVCFCreatePCTImageLoaderFromData, directPicture(3));
  ASSERT_TRUE(pct);
  EXPECT_EQ(CGImageGetAlphaInfo(pct.get()), kCGImageAlphaFirst);
  EXPECT_EQ(pixelsOf(pct.get()), (Bytes{255, 10, 20, 30, 255, 200, 100, 50}));
}

TEST(LoadedPictures, Of8BitsAreColourAsPICTAndGreyAsPCT) {
  const cf::Ref pict = loadedBy(DRAVCFCreatePICTImageLoaderFromData, indexedPicture());
  ASSERT_TRUE(pict);
  EXPECT_EQ(CGImageGetAlphaInfo(pict.get()), kCGImageAlphaNoneSkipFirst);
  EXPECT_EQ(pixelsOf(pict.get()),
            (Bytes{255, 0,   0,   0,   255, 0,   0,   0,   255, 255, 0, 0, 255, 255, 0, 0,
                   255, 255, 255, 255, 255, 255, 255, 255, 255, 0,   0, 0, 255, 0,   0, 0}));
  const cf::Ref pct = loadedBy(DRAVCFCreatePCTImageLoaderFromData, indexedPicture());
  ASSERT_TRUE(pct);
  EXPECT_EQ(CGImageGetBitsPerPixel(pct.get()), 8u);
  EXPECT_TRUE(CFEqual(CGImageGetColorSpace(pct.get()), graySpace().get()));
  EXPECT_EQ(pixelsOf(pct.get()), (Bytes{0, 0, 77, 77, 255, 255, 0, 0}));
}

TEST(LoadedPictures, TheirProfileBecomesTheColourSpace) {
  const Bytes profile = profileBytes(makeForeignRGB());
  const cf::Ref pict = loadedBy(DRAVCFCreatePICTImageLoaderFromData, indexedPicture(profile));
  ASSERT_TRUE(pict);
  EXPECT_TRUE(CFEqual(CGImageGetColorSpace(pict.get()), spaceOf(profile).get()));
}

// Grey pixels cannot be in the colour space of an RGB profile: the loader of the format gives up, and the
// image is made by the one that lets the bytes choose, in colour.
TEST(LoadedPictures, Of8BitsWithAProfileForColoursAreColourAsPCTToo) {
  const Bytes profile = profileBytes(makeForeignRGB());
  const cf::Ref data = dataOf(indexedPicture(profile));
  EXPECT_EQ(DRAVCFCreatePCTImageLoaderFromData(nullptr, data.get()), nullptr);
  const cf::Ref image =
      cf::adopt(DRAVCFImageCreateWithFormattedData(nullptr, data.get(), kDRAVCFImageFormatPCT));
  ASSERT_TRUE(image);
  EXPECT_TRUE(CFEqual(DRAVCFImageGetColorSpace(image.get()), spaceOf(profile).get()));
}

TEST(LoadedPictures, AreFoundBehindAFileHeaderOrWithoutOne) {
  const Bytes bare = directPicture(3);
  Bytes withHeader(512 + bare.size(), 0);
  std::copy(bare.begin(), bare.end(), withHeader.begin() + 512);
  for (const Load load : {DRAVCFCreatePICTImageLoaderFromData, DRAVCFCreatePCTImageLoaderFromData,
                          DRAVCFCreateUnknownImageLoaderFromData}) {
    for (const Bytes &bytes : {bare, withHeader}) {
      const cf::Ref image = loadedBy(load, bytes);
      ASSERT_TRUE(image);
      EXPECT_EQ(pixelsOf(image.get()), (Bytes{255, 10, 20, 30, 255, 200, 100, 50}));
    }
  }
}

// What an exporter writes comes back: without alpha as PICT, divided and with it as PCT.
TEST(LoadedPictures, ComeBackFromTheExporters) {
  const cf::Ref space = displaySpace();
  const cf::Ref image = makeCGImage({2, 1, 8, 32, 8, space.get(), kCGImageAlphaPremultipliedFirst},
                                    {128, 64, 64, 64, 255, 1, 2, 3});
  const cf::Ref pct =
      loadedBy(DRAVCFCreatePCTImageLoaderFromData, encoded(DRAVCFImageExporterCreatePCT, image.get()));
  ASSERT_TRUE(pct);
  EXPECT_EQ(pixelsOf(pct.get()), (Bytes{128, 128, 128, 128, 255, 1, 2, 3}));
  const cf::Ref pict =
      loadedBy(DRAVCFCreatePICTImageLoaderFromData, encoded(DRAVCFImageExporterCreatePICT, picture().get()));
  ASSERT_TRUE(pict);
  EXPECT_EQ(pixelsOf(pict.get()), pixelsOf(picture().get()));
}

}  // namespace
