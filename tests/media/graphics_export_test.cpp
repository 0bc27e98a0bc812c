#include "media/graphics_export.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "failing_new.h"
#include "graphics/image.h"
#include "image_support.h"
#include "jpeg_maker.h"
#include "media/codecs/registry.h"
#include "profiles.h"

namespace {

constexpr OSType kPng = MEDIA_CODE('P', 'N', 'G', 'f');
constexpr OSType kJpeg = MEDIA_CODE('J', 'P', 'E', 'G');
constexpr OSType kPict = MEDIA_CODE('P', 'I', 'C', 'T');

std::vector<uint8_t> exportAs(OSType subType, CGImageRef image) {
  GraphicsExportComponent exporter = nullptr;
  EXPECT_EQ(OpenADefaultComponent(GraphicsExporterComponentType, subType, &exporter), noErr);
  Handle output = NewHandle(0);
  uint32_t written = 0;
  EXPECT_EQ(GraphicsExportSetInputCGImage(exporter, image), noErr);
  EXPECT_EQ(GraphicsExportSetOutputHandle(exporter, output), noErr);
  EXPECT_EQ(GraphicsExportDoExport(exporter, &written), noErr);
  CloseComponent(exporter);
  std::vector<uint8_t> file(*output, *output + GetHandleSize(output));
  EXPECT_EQ(written, file.size());
  DisposeHandle(output);
  return file;
}

codecs::DecodedImage decoded(const std::vector<uint8_t> &file) {
  auto result = codecs::decodeAny(file, CGImageGetDefaultDecodeLimits());
  EXPECT_TRUE(result);
  return std::move(result.value);
}

std::vector<uint8_t> pixels(const codecs::DecodedImage &image) {
  return {image.pixels.data(), image.pixels.data() + image.pixels.size()};
}

cf::Ref<CGColorSpaceRef> profiledSpace(const std::vector<uint8_t> &profile) {
  return cf::adopt(CGColorSpaceCreateWithICCProfile(dataOf(profile).get()));
}

TEST(GraphicsExport, StraightAlphaGoesIntoPngByteForByte) {
  const auto space = cf::adopt(CGColorSpaceCreateDeviceRGB());
  std::vector<uint8_t> argb;
  for (int i = 0; i < 4 * 300; ++i) argb.push_back(static_cast<uint8_t>(i * 7 + i / 256));
  const auto image = imageOf(30, 10, 4, space.get(), kCGImageAlphaFirst, argb);
  ASSERT_TRUE(image);
  const auto file = decoded(exportAs(kPng, image.get()));
  EXPECT_EQ(file.layout, codecs::PixelLayout::argb32);
  EXPECT_EQ(pixels(file), argb);
  EXPECT_TRUE(file.profile.empty());
}

TEST(GraphicsExport, PremultipliedAlphaIsWrittenStraight) {
  const auto space = cf::adopt(CGColorSpaceCreateDeviceRGB());
  const auto image =
      imageOf(2, 1, 4, space.get(), kCGImageAlphaPremultipliedFirst, {128, 64, 128, 0, 0, 0, 0, 0});
  ASSERT_TRUE(image);
  EXPECT_EQ(pixels(decoded(exportAs(kPng, image.get()))),
            (std::vector<uint8_t>{128, 128, 255, 0, 0, 0, 0, 0}));
}

// Colours above alpha included: that is how pixels that were made straight beforehand stay so.
TEST(GraphicsExport, PicturesKeepTheBytesWhateverTheAlphaInfoSays) {
  const auto space = cf::adopt(CGColorSpaceCreateDeviceRGB());
  const std::vector<uint8_t> argb{0, 1, 2, 3, 128, 255, 100, 7, 255, 9, 9, 9, 77, 78, 76, 200};
  std::vector<uint8_t> rgba;
  for (size_t i = 0; i < argb.size(); i += 4)
    rgba.insert(rgba.end(), {argb[i + 1], argb[i + 2], argb[i + 3], argb[i]});
  for (const auto &[info, bytes] : {std::pair{kCGImageAlphaFirst, argb},
                                    {kCGImageAlphaPremultipliedFirst, argb},
                                    {kCGImageAlphaLast, rgba},
                                    {kCGImageAlphaPremultipliedLast, rgba}}) {
    const auto image = imageOf(2, 2, 4, space.get(), info, bytes);
    ASSERT_TRUE(image);
    const auto file = decoded(exportAs(kPict, image.get()));
    EXPECT_EQ(file.layout, codecs::PixelLayout::argb32);
    EXPECT_EQ(pixels(file), argb) << info;
  }
}

TEST(GraphicsExport, PicturesWithoutAlphaHaveThreeComponents) {
  const auto space = cf::adopt(CGColorSpaceCreateDeviceRGB());
  const std::vector<uint8_t> xrgb{7, 1, 2, 3, 9, 255, 100, 7};
  const auto image = imageOf(2, 1, 4, space.get(), kCGImageAlphaNoneSkipFirst, xrgb);
  const auto file = decoded(exportAs(kPict, image.get()));
  EXPECT_EQ(pixels(file), (std::vector<uint8_t>{255, 1, 2, 3, 255, 255, 100, 7}));
}

TEST(GraphicsExport, ColourWithoutAlphaStaysWithoutAlpha) {
  const auto space = cf::adopt(CGColorSpaceCreateDeviceRGB());
  const auto image = imageOf(1, 1, 4, space.get(), kCGImageAlphaNoneSkipFirst, {9, 10, 20, 30});
  ASSERT_TRUE(image);
  const auto file = decoded(exportAs(kPng, image.get()));
  EXPECT_EQ(file.layout, codecs::PixelLayout::xrgb32);
  EXPECT_EQ(pixels(file), (std::vector<uint8_t>{255, 10, 20, 30}));
}

TEST(GraphicsExport, GreyStaysGrey) {
  const auto space = cf::adopt(CGColorSpaceCreateDeviceGray());
  const auto image = imageOf(3, 1, 1, space.get(), kCGImageAlphaNone, {0, 99, 255});
  ASSERT_TRUE(image);
  const auto png = decoded(exportAs(kPng, image.get()));
  EXPECT_EQ(png.layout, codecs::PixelLayout::grey8);
  EXPECT_EQ(pixels(png), (std::vector<uint8_t>{0, 99, 255}));
  EXPECT_EQ(decoded(exportAs(kJpeg, image.get())).layout, codecs::PixelLayout::grey8);
}

TEST(GraphicsExport, TheSpacesProfileIsEmbedded) {
  const auto profile = swappedRgbProfile();
  const auto image =
      imageOf(1, 1, 4, profiledSpace(profile).get(), kCGImageAlphaNoneSkipFirst, {0, 10, 20, 30});
  ASSERT_TRUE(image);
  for (const OSType type : {kPng, kJpeg}) EXPECT_EQ(decoded(exportAs(type, image.get())).profile, profile);
  const auto grey = greyProfile(1.8);
  const auto greyImage = imageOf(1, 1, 1, profiledSpace(grey).get(), kCGImageAlphaNone, {77});
  ASSERT_TRUE(greyImage);
  const auto file = decoded(exportAs(kPng, greyImage.get()));
  EXPECT_EQ(file.profile, grey);
  EXPECT_EQ(pixels(file), (std::vector<uint8_t>{77}));
}

TEST(GraphicsExport, TheImagesResolutionIsWritten) {
  const auto space = cf::adopt(CGColorSpaceCreateDeviceGray());
  const auto image = imageOf(1, 1, 1, space.get(), kCGImageAlphaNone, {0});
  ASSERT_TRUE(image);
  cg::setImageResolution(image.get(), {300, 150});
  for (const OSType type : {kPng, kJpeg}) {
    const auto file = decoded(exportAs(type, image.get()));
    EXPECT_NEAR(file.resolution.x, 300, 0.02);
    EXPECT_NEAR(file.resolution.y, 150, 0.02);
  }
}

TEST(GraphicsExport, JpegIsComposedOverWhite) {
  const auto space = cf::adopt(CGColorSpaceCreateDeviceRGB());
  for (const bool premultiplied : {false, true}) {
    std::vector<uint8_t> argb;
    for (int i = 0; i < 64; ++i) {
      const uint8_t red = premultiplied ? 100 : 199;
      argb.insert(argb.end(), {128, red, 0, 0});
    }
    const auto image = imageOf(8, 8, 4, space.get(),
                               premultiplied ? kCGImageAlphaPremultipliedFirst : kCGImageAlphaFirst, argb);
    ASSERT_TRUE(image);
    const auto rgb = readJpeg(exportAs(kJpeg, image.get()), JCS_RGB);
    EXPECT_NEAR(rgb[0], 227, 3);
    EXPECT_NEAR(rgb[1], 127, 3);
    EXPECT_NEAR(rgb[2], 127, 3);
  }
}

TEST(GraphicsExport, TransparentGreyIsComposedOverWhiteInJpegAndKeptInPng) {
  const auto space = cf::adopt(CGColorSpaceCreateDeviceGray());
  std::vector<uint8_t> pairs;
  for (int i = 0; i < 64; ++i) pairs.insert(pairs.end(), {0, 51});  // black, a fifth opaque
  const auto image = imageOf(8, 8, 2, space.get(), kCGImageAlphaLast, pairs);
  ASSERT_TRUE(image);
  const auto jpeg = decoded(exportAs(kJpeg, image.get()));
  EXPECT_EQ(jpeg.layout, codecs::PixelLayout::grey8);
  EXPECT_NEAR(jpeg.row(0)[0], 204, 2);
  const auto png = decoded(exportAs(kPng, image.get()));
  EXPECT_EQ(png.layout, codecs::PixelLayout::argb32);
  EXPECT_EQ(std::vector<uint8_t>(png.row(0), png.row(0) + 4), (std::vector<uint8_t>{51, 0, 0, 0}));
}

TEST(GraphicsExport, ColoursThatNoFileCouldNameAreBroughtToTheDisplaysSpace) {
  const auto space = cf::adopt(CGColorSpaceCreateDeviceCMYK());
  const auto image = imageOf(1, 1, 4, space.get(), kCGImageAlphaNone, {0, 0, 0, 255});
  ASSERT_TRUE(image);
  const auto file = decoded(exportAs(kPng, image.get()));
  EXPECT_EQ(file.layout, codecs::PixelLayout::xrgb32);
  EXPECT_FALSE(file.profile.empty());
  EXPECT_LE(*std::max_element(file.row(0) + 1, file.row(0) + 4), 40);
}

TEST(GraphicsExport, AFailureLeavesAnEmptyHandle) {
  const auto space = cf::adopt(CGColorSpaceCreateDeviceGray());
  const auto image = imageOf(70000, 1, 1, space.get(), kCGImageAlphaNone, std::vector<uint8_t>(70000));
  ASSERT_TRUE(image);
  GraphicsExportComponent exporter = nullptr;
  ASSERT_EQ(OpenADefaultComponent(GraphicsExporterComponentType, kJpeg, &exporter), noErr);
  Handle output = NewHandle(5);
  uint32_t written = 9;
  GraphicsExportSetInputCGImage(exporter, image.get());
  GraphicsExportSetOutputHandle(exporter, output);
  EXPECT_EQ(GraphicsExportDoExport(exporter, &written), codecErr);
  EXPECT_EQ(GetHandleSize(output), 0);
  EXPECT_EQ(written, 0u);
  CloseComponent(exporter);
  DisposeHandle(output);
}

TEST(GraphicsExport, MissingArgumentsAreErrors) {
  GraphicsExportComponent exporter = nullptr;
  ASSERT_EQ(OpenADefaultComponent(GraphicsExporterComponentType, kPng, &exporter), noErr);
  EXPECT_EQ(GraphicsExportDoExport(exporter, nullptr), paramErr);
  EXPECT_EQ(GraphicsExportSetInputCGImage(exporter, nullptr), paramErr);
  EXPECT_EQ(GraphicsExportSetOutputHandle(exporter, nullptr), nilHandleErr);
  EXPECT_EQ(GraphicsExportDoExport(nullptr, nullptr), badComponentInstance);
  EXPECT_EQ(GraphicsExportSetInputCGImage(nullptr, nullptr), badComponentInstance);
  Handle output = NewHandle(0);
  EXPECT_EQ(GraphicsExportSetOutputHandle(exporter, output), noErr);
  EXPECT_EQ(GraphicsExportDoExport(exporter, nullptr), paramErr) << "there is no image yet";
  CloseComponent(exporter);
  DisposeHandle(output);
}

TEST(GraphicsExport, AComponentThatCannotEncodeRefuses) {
  ComponentTable table{};
  table.type = GraphicsExporterComponentType;
  table.subType = MEDIA_CODE('t', 'e', 's', 't');
  ASSERT_EQ(RegisterComponentTable(&table), noErr);
  GraphicsExportComponent exporter = nullptr;
  ASSERT_EQ(OpenADefaultComponent(GraphicsExporterComponentType, table.subType, &exporter), noErr);
  EXPECT_EQ(GraphicsExportDoExport(exporter, nullptr), badComponentSelector);
  CloseComponent(exporter);
  EXPECT_EQ(UnregisterComponentTable(&table), noErr);
}

TEST(GraphicsExport, TheImageIsKeptUntilTheExporterIsClosed) {
  const auto space = cf::adopt(CGColorSpaceCreateDeviceGray());
  const auto image = imageOf(1, 1, 1, space.get(), kCGImageAlphaNone, {9});
  GraphicsExportComponent exporter = nullptr;
  ASSERT_EQ(OpenADefaultComponent(GraphicsExporterComponentType, kPng, &exporter), noErr);
  EXPECT_EQ(GraphicsExportSetInputCGImage(exporter, image.get()), noErr);
  EXPECT_EQ(CFGetRetainCount(image.get()), 2);
  CloseComponent(exporter);
  EXPECT_EQ(CFGetRetainCount(image.get()), 1);
}

// Colours above their alpha make no sense; nothing is brighter than the paper.
TEST(GraphicsExport, InvalidColoursOverWhiteAreWhite) {
  const auto space = cf::adopt(CGColorSpaceCreateDeviceRGB());
  std::vector<uint8_t> argb;
  for (int i = 0; i < 64; ++i) argb.insert(argb.end(), {0, 200, 200, 200});
  const auto image = imageOf(8, 8, 4, space.get(), kCGImageAlphaPremultipliedFirst, argb);
  const auto rgb = readJpeg(exportAs(kJpeg, image.get()), JCS_RGB);
  EXPECT_NEAR(rgb[0], 255, 2);
}

TEST(GraphicsExport, MemoryThatRunsOutFailsTheExportAndLeavesAnEmptyHandle) {
  const auto space = cf::adopt(CGColorSpaceCreateDeviceRGB());
  const auto image = imageOf(2, 1, 4, space.get(), kCGImageAlphaFirst, {1, 2, 3, 4, 255, 6, 7, 8});
  ASSERT_TRUE(image);
  for (const OSType type : {kPng, kPict}) {
    bool failed = true;
    for (long request = 1; failed; ++request) {
      ASSERT_LT(request, 1000);
      GraphicsExportComponent exporter = nullptr;
      ASSERT_EQ(OpenADefaultComponent(GraphicsExporterComponentType, type, &exporter), noErr);
      Handle output = NewHandle(0);
      GraphicsExportSetInputCGImage(exporter, image.get());
      GraphicsExportSetOutputHandle(exporter, output);
      const ComponentResult result = [&] {
        const testing_support::FailingNew failing(request);
        const ComponentResult answer = GraphicsExportDoExport(exporter, nullptr);
        failed = failing.failed();
        return answer;
      }();
      EXPECT_EQ(result != noErr, failed) << request;
      EXPECT_EQ(GetHandleSize(output) == 0, failed) << request;
      CloseComponent(exporter);
      DisposeHandle(output);
    }
  }
}

}  // namespace
