// Which loader an image is made by: the format decides, or the extension, or the bytes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "fake_importer.h"
#include "files.h"

namespace {

using namespace test;

// Claims whatever is left to the bytes, so that its being asked shows who loaded.
class LoaderChoice : public testing::Test {
 protected:
  LoaderChoice() { claimant.score = 1000; }

  DRAVCFImageRef fromFile(const std::string &name, const Bytes &bytes, DRAVCFImageFormat format = 0) {
    writeFile(folder.file(name), bytes);
    image = cf::adopt(DRAVCFImageCreateWithPathAndFormat(nullptr, string(folder.file(name)).get(), format));
    return image.get();
  }
  DRAVCFImageRef fromData(const Bytes &bytes, DRAVCFImageFormat format) {
    image = cf::adopt(DRAVCFImageCreateWithFormattedData(nullptr, dataOf(bytes).get(), format));
    return image.get();
  }

  FakeImporter claimant{kTestFormat};
  TemporaryFolder folder;
  cf::Ref<DRAVCFImageRef> image;
};

Bytes withBlankHeader(const Bytes &bytes) {
  Bytes whole(512 + bytes.size(), 0);
  std::copy(bytes.begin(), bytes.end(), whole.begin() + 512);
  return whole;
}

TEST_F(LoaderChoice, TheExtensionChoosesInAnyCase) {
  for (const char *name : {"a.png", "a.PNG", "b.tar.Png"}) {
    EXPECT_NE(fromFile(name, pngBytes()), nullptr) << name;
    EXPECT_EQ(claimant.opened, 0) << name;
  }
  for (const char *name : {"a.jpg", "a.JPG", "a.jpeg", "a.JPEG"}) {
    EXPECT_NE(fromFile(name, jpegBytes()), nullptr) << name;
    EXPECT_EQ(claimant.opened, 0) << name;
  }
}

TEST_F(LoaderChoice, WithoutAKnownExtensionTheBytesChoose) {
  for (const char *name : {"a", "a.tif", "a.gif", "png", ".png", "a.png.bak", "a.pngx", "a."}) {
    EXPECT_NE(fromFile(name, pngBytes()), nullptr) << name;
    EXPECT_EQ(claimant.opened, 1) << name;
    claimant.opened = claimant.closed = 0;
  }
}

TEST_F(LoaderChoice, PictureExtensionsChooseTheirOwnImporters) {
  const FakeImporter pict(kPICT), pct(kPCT);
  EXPECT_NE(fromFile("a.PICT", {1, 2, 3}), nullptr);
  EXPECT_EQ(pict.opened, 1);
  EXPECT_EQ(pct.opened, 0);
  EXPECT_EQ(pict.data, withBlankHeader({1, 2, 3}));
  EXPECT_NE(fromFile("a.Pct", {4, 5}), nullptr);
  EXPECT_EQ(pict.opened, 1);
  EXPECT_EQ(pct.opened, 1);
  EXPECT_EQ(pct.data, (Bytes{4, 5}));
  EXPECT_EQ(claimant.opened, 0);
}

TEST_F(LoaderChoice, AGivenFormatComesBeforeTheExtension) {
  const FakeImporter pict(kPICT), pct(kPCT);
  EXPECT_NE(fromFile("a.png", pngBytes(), kDRAVCFImageFormatPICT), nullptr);
  EXPECT_EQ(pict.opened, 1);
  EXPECT_NE(fromFile("a.png", pngBytes(), kDRAVCFImageFormatPCT), nullptr);
  EXPECT_EQ(pct.opened, 1);
  EXPECT_NE(fromFile("a.pict", pngBytes(), kDRAVCFImageFormatPNG), nullptr);
  EXPECT_NE(fromFile("a.pct", jpegBytes(), kDRAVCFImageFormatJPEG), nullptr);
  EXPECT_EQ(pict.opened + pct.opened, 2);
  EXPECT_EQ(claimant.opened, 0);
}

TEST_F(LoaderChoice, OfDataTheFormatAloneChooses) {
  const FakeImporter pict(kPICT), pct(kPCT);
  EXPECT_NE(fromData({1, 2, 3}, kDRAVCFImageFormatPICT), nullptr);
  EXPECT_EQ(pict.data, withBlankHeader({1, 2, 3}));
  EXPECT_NE(fromData({4, 5}, kDRAVCFImageFormatPCT), nullptr);
  EXPECT_EQ(pct.data, (Bytes{4, 5}));
  EXPECT_NE(fromData(pngBytes(), kDRAVCFImageFormatPNG), nullptr);
  EXPECT_NE(fromData(jpegBytes(), kDRAVCFImageFormatJPEG), nullptr);
  EXPECT_EQ(pict.opened, 1);
  EXPECT_EQ(pct.opened, 1);
  EXPECT_EQ(claimant.opened, 0);
}

TEST_F(LoaderChoice, OfDataWithoutAFormatTheBytesChoose) {
  EXPECT_NE(fromData(pngBytes(), kDRAVCFImageFormatUnknown), nullptr);
  EXPECT_EQ(claimant.opened, 1);
  image = cf::adopt(DRAVCFImageCreateWithData(nullptr, dataOf(jpegBytes()).get()));
  EXPECT_TRUE(image);
  EXPECT_EQ(claimant.opened, 2);
}

TEST_F(LoaderChoice, EveryFormatThatRefusesFallsBackOnTheBytes) {
  FakeImporter pict(kPICT), pct(kPCT);
  pict.drawError = pct.drawError = -1;
  int fallbacks = 0;
  for (DRAVCFImageFormat format = kDRAVCFImageFormatPICT; format <= kDRAVCFImageFormatJPEG; ++format) {
    EXPECT_NE(fromData({1, 2, 3}, format), nullptr) << format;
    EXPECT_EQ(claimant.opened, ++fallbacks) << format;
    EXPECT_EQ(claimant.data, (Bytes{1, 2, 3}));
    EXPECT_NE(fromFile("a", {4, 5}, format), nullptr) << format;
    EXPECT_EQ(claimant.opened, ++fallbacks) << format;
    EXPECT_EQ(claimant.data, (Bytes{4, 5}));
  }
}

TEST_F(LoaderChoice, WhatTheBytesChoseMayStillFail) {
  claimant.descriptionError = -1;
  EXPECT_EQ(fromData({1, 2, 3}, kDRAVCFImageFormatPNG), nullptr);
  EXPECT_EQ(fromFile("a.png", {1, 2, 3}), nullptr);
  EXPECT_EQ(claimant.described, 2);
}

TEST_F(LoaderChoice, ANumberThatIsNoFormatAsksNobody) {
  const FakeImporter pict(kPICT), pct(kPCT);
  for (const DRAVCFImageFormat format : {5u, 7u, UINT32_MAX}) {
    EXPECT_EQ(fromFile("a.pict", pngBytes(), format), nullptr);
    EXPECT_EQ(fromData(pngBytes(), format), nullptr);
  }
  EXPECT_EQ(pict.opened + pct.opened + claimant.opened, 0);
}

TEST(LoaderChoiceOfNoFormat, MakesAnImageFirst) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        const cf::Ref data = dataOf({1});
        const bool none = !DRAVCFImageCreateWithFormattedData(nullptr, data.get(), 7);
        std::_Exit(none && kDRAVCFImageID != 0 ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

}  // namespace
