// Pictures through the component calls: what the two importers and the exporter make of alpha and damage.

#include <gtest/gtest.h>

#include "image_support.h"
#include "import_support.h"
#include "media/inspection.h"
#include "picture_maker.h"

namespace {

using codecs::pict::addBoxes;
using codecs::pict::addMap;
using codecs::pict::Box;
using codecs::pict::PictureMaker;
using Vector = std::vector<uint8_t>;

constexpr OSType kPict = MEDIA_CODE('P', 'I', 'C', 'T');
constexpr OSType kPct = MEDIA_CODE('P', 'C', 'T', ' ');

Vector twoPixels(int components) {
  PictureMaker picture(1, 2);
  const Box whole{0, 0, 2, 1};
  picture.op(0x009A).u32({0xFF});
  addMap(picture, {8, whole, 1, 32, components});
  addBoxes(picture, whole, whole);
  picture.u8({0, 10, 20, 30, 128, 200, 100, 50});
  return picture.end();
}

TEST(PictImporter, OneImporterDropsAlphaAndTheOtherKeepsIt) {
  const OpenImporter pict(kPict, twoPixels(4)), pct(kPct, twoPixels(4));
  EXPECT_EQ(pict.describe().depth, 32);
  EXPECT_EQ(pct.describe().depth, 32);
  EXPECT_EQ(pict.draw(), (Vector{255, 10, 20, 30, 255, 200, 100, 50}));
  EXPECT_EQ(pct.draw(), (Vector{0, 10, 20, 30, 128, 200, 100, 50}));
}

TEST(PictImporter, ThreeComponentsAreOpaqueForBoth) {
  for (const OSType code : {kPict, kPct}) {
    const OpenImporter importer(code, twoPixels(3));
    EXPECT_EQ(importer.describe().depth, 32);
    EXPECT_EQ(importer.draw(), (Vector{255, 10, 20, 30, 255, 200, 100, 50}));
  }
}

TEST(PictImporter, DamageHasAnErrorNumberOfItsOwn) {
  const Vector whole = twoPixels(3);
  for (const OSType code : {kPict, kPct}) {
    for (const size_t size : {0u, 5u, 20u, 60u}) {
      const OpenImporter importer(code, Vector(whole.begin(), whole.begin() + static_cast<long>(size)));
      ImageDescriptionHandle description = nullptr;
      EXPECT_EQ(GraphicsImportGetImageDescription(importer.instance, &description), -3954) << size;
      EXPECT_EQ(description, nullptr);
    }
  }
}

TEST(PictImporter, SizesThatNoDescriptionHoldsAreTooLarge) {
  const OpenImporter importer(kPict, PictureMaker(-20000, 0, 20000, 3).end());
  ImageDescriptionHandle description = nullptr;
  EXPECT_EQ(GraphicsImportGetImageDescription(importer.instance, &description), codecTooLargeErr);
}

TEST(PictImporter, TheResolutionIsDescribed) {
  const OpenImporter importer(kPict, PictureMaker(72, 72).header(-2, 300, 0, 0, 300, 300).end());
  EXPECT_EQ(importer.describe().hRes, 300 << 16);
  EXPECT_EQ(importer.describe().width, 300);
}

TEST(PictImporter, PicturesAreRecognisedByTheirContent) {
  const Vector file = twoPixels(3);
  CGImageFileInfo info;
  ASSERT_TRUE(CGImageInspectData(file.data(), file.size(), &info));
  EXPECT_STREQ(info.format, "PICT");
  EXPECT_EQ(info.width, 2u);
}

}  // namespace
