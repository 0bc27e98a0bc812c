#include "media/formats.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "failing_new.h"
#include "foundation/ref.h"
#include "media/components.h"
#include "media/inspection.h"
#include "picture_maker.h"
#include "png_maker.h"

namespace {

std::vector<CGImageFormatInfo> allFormats() {
  std::vector<CGImageFormatInfo> all(CGImageGetFormatCount());
  for (size_t i = 0; i < all.size(); ++i) EXPECT_TRUE(CGImageGetFormat(i, &all[i]));
  return all;
}

TEST(Formats, EachHasANameExtensionsOfItsOwnAndWordsForPeople) {
  std::set<std::string> seen;
  for (const CGImageFormatInfo &format : allFormats()) {
    EXPECT_TRUE(seen.insert(format.name).second) << format.name;
    EXPECT_NE(std::string(format.extensions), "") << format.name;
    EXPECT_NE(std::string(format.reads), "") << format.name;
    EXPECT_EQ(format.exporter != 0, *format.writes != 0) << format.name;
  }
}

TEST(Formats, ExportersThatAreNamedOpen) {
  for (const CGImageFormatInfo &format : allFormats()) {
    if (!format.exporter) continue;
    ComponentInstance exporter = nullptr;
    EXPECT_EQ(OpenADefaultComponent(GraphicsExporterComponentType, format.exporter, &exporter), noErr);
    CloseComponent(exporter);
  }
}

TEST(Formats, OnlyPicturesHoldDrawingsAndEndWhereTheirCoordinatesDo) {
  for (const CGImageFormatInfo &format : allFormats()) {
    const bool isPicture = std::string(format.name) == "PICT";
    EXPECT_EQ(format.holdsDrawings, isPicture) << format.name;
    EXPECT_EQ(format.mostSide == 32767, isPicture) << format.name;
  }
}

TEST(Formats, BeyondTheLastThereIsNone) {
  CGImageFormatInfo info{};
  EXPECT_FALSE(CGImageGetFormat(CGImageGetFormatCount(), &info));
  EXPECT_EQ(info.name, nullptr);
  EXPECT_FALSE(CGImageGetFormat(0, nullptr));
}

TEST(Formats, AreRecognisedByFirstBytes) {
  const auto png = makePng({.width = 1, .height = 1, .samples = {1, 2, 3}});
  CGImageFormatInfo info{};
  ASSERT_TRUE(CGImageGetFormat(CGImageRecogniseFormat(png.data(), png.size()), &info));
  EXPECT_STREQ(info.name, "PNG");
  EXPECT_EQ(CGImageRecogniseFormat("plain text", 10), CGImageGetFormatCount());
  EXPECT_EQ(CGImageRecogniseFormat(nullptr, 10), CGImageGetFormatCount());
}

TEST(Formats, ImagesComeFromFilesOfAnyOfThemWithColoursBesideAlpha) {
  const auto png =
      makePng({.width = 1, .height = 1, .colourType = PNG_COLOR_TYPE_RGBA, .samples = {200, 100, 50, 3}});
  const cf::Ref image = cf::adopt(CGImageCreateWithEncodedData(png.data(), png.size()));
  ASSERT_TRUE(image);
  EXPECT_EQ(CGImageGetAlphaInfo(image.get()), kCGImageAlphaFirst);
  const cf::Ref bytes = cf::adopt(CGDataProviderCopyData(CGImageGetDataProvider(image.get())));
  EXPECT_EQ(std::vector(CFDataGetBytePtr(bytes.get()), CFDataGetBytePtr(bytes.get()) + 4),
            (std::vector<uint8_t>{3, 200, 100, 50}));
}

TEST(Formats, MemoryThatRunsOutAnywhereGivesNoImageAndSaysSo) {
  codecs::pict::PictureMaker picture(0, 0, 20, 30);
  picture.header(-2, 72, 0, 0, 20, 30);
  picture.op(0x0051).box(0, 0, 20, 30);
  const auto file = picture.end();
  long failures = 0;
  for (long failAt = 1;; ++failAt) {
    const testing_support::FailingNew failing(failAt);
    const cf::Ref image = cf::adopt(CGImageCreateWithEncodedData(file.data(), file.size()));
    const char *fault = CGImageGetLastDecodeFault();
    if (!failing.failed()) {
      EXPECT_TRUE(image);
      break;
    }
    ++failures;
    if (image) continue;
    EXPECT_STREQ(fault, "out of memory") << "allocation " << failAt;
  }
  EXPECT_GT(failures, 0);
}

TEST(Formats, AFileThatIsNoImageGivesNoneAndAReason) {
  EXPECT_EQ(CGImageCreateWithEncodedData("plain text", 10), nullptr);
  EXPECT_STREQ(CGImageGetLastDecodeFault(), "not an image this tool knows");
}

}  // namespace
