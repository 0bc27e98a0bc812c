#include "media/graphics_import.h"

#include <gtest/gtest.h>

#include "import_support.h"
#include "jpeg_maker.h"
#include "png_maker.h"
#include "profiles.h"

namespace {

constexpr OSType kPng = MEDIA_CODE('P', 'N', 'G', 'f');
constexpr OSType kJpeg = MEDIA_CODE('J', 'P', 'E', 'G');

TEST(GraphicsImport, DescribesSizeDepthAndResolution) {
  PngRecipe recipe{.width = 3, .height = 2, .colourType = PNG_COLOR_TYPE_GRAY};
  recipe.samples.assign(6, 9);
  recipe.dotsPerMetre = 2835;
  OpenImporter importer(kPng, makePng(recipe));
  const ImageDescription description = importer.describe();
  EXPECT_EQ(description.idSize, static_cast<int32_t>(sizeof description));
  EXPECT_EQ(description.cType, kPng);
  EXPECT_EQ(description.width, 3);
  EXPECT_EQ(description.height, 2);
  EXPECT_EQ(description.depth, 8);
  EXPECT_NEAR(description.hRes / 65536.0, 72.0, 0.02);
}

TEST(GraphicsImport, DrawsAlphaPremultiplied) {
  PngRecipe recipe{.width = 1, .height = 1, .colourType = PNG_COLOR_TYPE_RGB_ALPHA};
  recipe.samples = {200, 100, 50, 128};
  OpenImporter importer(kPng, makePng(recipe));
  EXPECT_EQ(importer.describe().depth, 32);
  EXPECT_EQ(importer.draw(), (std::vector<uint8_t>{128, 100, 50, 25}));
}

TEST(GraphicsImport, DrawsColourWithTheFirstByteOpaque) {
  OpenImporter importer(kPng, makePng({.width = 1, .height = 1, .samples = {200, 100, 50}}));
  EXPECT_EQ(importer.describe().depth, 24);
  EXPECT_EQ(importer.draw(), (std::vector<uint8_t>{255, 200, 100, 50}));
}

TEST(GraphicsImport, DrawsGreyAsGrey) {
  JpegRecipe recipe{.width = 2, .height = 1, .input = JCS_GRAYSCALE, .stored = JCS_GRAYSCALE};
  recipe.samples = {128, 128};
  OpenImporter importer(kJpeg, makeJpeg(recipe));
  EXPECT_EQ(importer.describe().depth, 8);
  EXPECT_EQ(importer.draw(), (std::vector<uint8_t>{128, 128}));
}

TEST(GraphicsImport, GivesTheEmbeddedProfile) {
  PngRecipe recipe{.width = 1, .height = 1, .samples = {1, 2, 3}};
  recipe.profile = swappedRgbProfile();
  OpenImporter importer(kPng, makePng(recipe));
  Handle profile = nullptr;
  ASSERT_EQ(GraphicsImportGetColorSyncProfile(importer.instance, &profile), noErr);
  ASSERT_NE(profile, nullptr);
  EXPECT_EQ(std::vector<uint8_t>(*profile, *profile + GetHandleSize(profile)), recipe.profile);
  DisposeHandle(profile);
}

TEST(GraphicsImport, GivesNoProfileWhereThereIsNone) {
  OpenImporter importer(kPng, makePng({.width = 1, .height = 1, .samples = {1, 2, 3}}));
  Handle profile = reinterpret_cast<Handle>(&importer);
  EXPECT_EQ(GraphicsImportGetColorSyncProfile(importer.instance, &profile), noErr);
  EXPECT_EQ(profile, nullptr);
}

TEST(GraphicsImport, TellsWhyDataCannotBeRead) {
  ImageDescriptionHandle description = nullptr;
  const auto file = makePng({.width = 1, .height = 1, .samples = {1, 2, 3}});
  OpenImporter truncated(kPng, {file.begin(), file.end() - 20});
  EXPECT_EQ(GraphicsImportGetImageDescription(truncated.instance, &description), codecBadDataErr);
  EXPECT_EQ(description, nullptr);
  OpenImporter other(kPng, makeJpeg({.width = 1, .height = 1, .samples = {1, 2, 3}}));
  EXPECT_EQ(GraphicsImportGetImageDescription(other.instance, &description), codecBadDataErr);
}

TEST(GraphicsImport, ASideThatADescriptionCannotHoldIsTooLarge) {
  PngRecipe recipe{.width = 32768, .height = 1, .colourType = PNG_COLOR_TYPE_GRAY};
  recipe.samples.assign(32768, 0);
  ImageDescriptionHandle description = nullptr;
  OpenImporter importer(kPng, makePng(recipe));
  EXPECT_EQ(GraphicsImportGetImageDescription(importer.instance, &description), codecTooLargeErr);
  recipe.width = 32767;
  OpenImporter largest(kPng, makePng(recipe));
  EXPECT_EQ(largest.describe().width, 32767);
}

TEST(GraphicsImport, DrawingWithoutAWorldIsAnError) {
  OpenImporter importer(kPng, makePng({.width = 1, .height = 1, .samples = {1, 2, 3}}));
  EXPECT_EQ(GraphicsImportDraw(importer.instance), paramErr);
  EXPECT_EQ(GraphicsImportSetGWorld(importer.instance, nullptr, nullptr), paramErr);
  OffscreenWorld world{};
  EXPECT_EQ(GraphicsImportSetGWorld(importer.instance, &world, reinterpret_cast<GDHandle>(&world)), paramErr);
}

TEST(GraphicsImport, NullIsAnErrorAndNotACrash) {
  ImageDescriptionHandle description = nullptr;
  Handle profile = nullptr;
  EXPECT_EQ(GraphicsImportSetDataHandle(nullptr, nullptr), badComponentInstance);
  EXPECT_EQ(GraphicsImportGetImageDescription(nullptr, &description), badComponentInstance);
  EXPECT_EQ(GraphicsImportGetImageDescription(nullptr, nullptr), paramErr);
  EXPECT_EQ(GraphicsImportGetColorSyncProfile(nullptr, &profile), badComponentInstance);
  EXPECT_EQ(GraphicsImportSetGWorld(nullptr, nullptr, nullptr), badComponentInstance);
  EXPECT_EQ(GraphicsImportDraw(nullptr), badComponentInstance);
  OpenImporter importer(kPng, {});
  EXPECT_EQ(GraphicsImportSetDataHandle(importer.instance, nullptr), nilHandleErr);
}

TEST(GraphicsImport, NewDataReplacesTheOld) {
  OpenImporter importer(kPng, makePng({.width = 1, .height = 1, .samples = {200, 100, 50}}));
  EXPECT_EQ(importer.describe().width, 1);
  const auto other = makePng({.width = 2, .height = 1, .samples = {1, 2, 3, 4, 5, 6}});
  Handle data = nullptr;
  ASSERT_EQ(PtrToHand(other.data(), &data, static_cast<Size>(other.size())), noErr);
  EXPECT_EQ(GraphicsImportSetDataHandle(importer.instance, data), noErr);
  EXPECT_EQ(importer.describe().width, 2);
  EXPECT_EQ(importer.draw(), (std::vector<uint8_t>{255, 1, 2, 3, 255, 4, 5, 6}));
  DisposeHandle(data);
}

TEST(GraphicsImport, AResolutionThatNoNumberHoldsCountsAsNone) {
  PngRecipe recipe{.width = 1, .height = 1, .samples = {1, 2, 3}};
  recipe.dotsPerMetre = 2'000'000'000;
  EXPECT_EQ(OpenImporter(kPng, makePng(recipe)).describe().hRes, 0);
  recipe.dotsPerMetre = 1'000'000;
  EXPECT_NEAR(OpenImporter(kPng, makePng(recipe)).describe().hRes / 65536.0, 25400, 1);
}

// A description that fails hands out no handle, whatever the component filled in before.
TEST(GraphicsImport, ADescriptionThatFailsIsNone) {
  ComponentTable table{};
  table.type = GraphicsImporterComponentType;
  table.subType = MEDIA_CODE('t', 'e', 's', 't');
  table.getDescription = [](void *, ImageDescription *description) -> ComponentResult {
    description->width = 5;
    return codecErr;
  };
  ASSERT_EQ(RegisterComponentTable(&table), noErr);
  GraphicsImportComponent importer = nullptr;
  ASSERT_EQ(OpenADefaultComponent(GraphicsImporterComponentType, table.subType, &importer), noErr);
  ImageDescriptionHandle description = nullptr;
  EXPECT_EQ(GraphicsImportGetImageDescription(importer, &description), codecErr);
  EXPECT_EQ(description, nullptr);
  CloseComponent(importer);
  EXPECT_EQ(UnregisterComponentTable(&table), noErr);
}

}  // namespace
