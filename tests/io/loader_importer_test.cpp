// Loading through importers that say what no file can be made to say.
#include <gtest/gtest.h>

#include <functional>

#include "core/foreign_profile.h"
#include "files.h"
#include "io/loader.h"
#include "media/codecs/limits.h"

namespace {

using namespace test;

constexpr OSType kTestFormat = MEDIA_CODE('t', 'e', 's', 't');
constexpr OSType kPICT = MEDIA_CODE('P', 'I', 'C', 'T');
constexpr OSType kPCT = MEDIA_CODE('P', 'C', 'T', ' ');

// An importer that describes a 3 x 2 image as it is told, keeps the bytes that it was handed, and draws its
// world full of one byte.
class FakeImporter {
 public:
  explicit FakeImporter(OSType subtype) {
    table_.type = GraphicsImporterComponentType;
    table_.subType = subtype;
    table_.context = this;
    table_.open = [](const ComponentTable *table, void **self) -> OSErr {
      *self = table->context;
      return noErr;
    };
    table_.setData = [](void *self, const uint8_t *bytes, size_t size) -> ComponentResult {
      of(self).data = Bytes(bytes, bytes + size);
      return noErr;
    };
    table_.getDescription = [](void *self, ImageDescription *description) -> ComponentResult {
      description->width = of(self).width;
      description->height = of(self).height;
      description->depth = of(self).depth;
      return of(self).descriptionError;
    };
    table_.getProfile = [](void *self, Handle *made) -> ComponentResult {
      const Bytes &bytes = of(self).profile;
      if (!bytes.empty()) PtrToHand(bytes.data(), made, static_cast<Size>(bytes.size()));
      return noErr;
    };
    table_.draw = [](void *self, const OffscreenWorld *world) -> ComponentResult {
      of(self).pixelFormat = world->pixelFormat;
      const auto rows = static_cast<size_t>(world->bounds.bottom - world->bounds.top);
      std::fill_n(world->pixels, rows * world->rowBytes, uint8_t{77});
      return of(self).drawError;
    };
    EXPECT_EQ(RegisterComponentTable(&table_), noErr);
  }
  ~FakeImporter() { EXPECT_EQ(UnregisterComponentTable(&table_), noErr); }
  FakeImporter(const FakeImporter &) = delete;
  FakeImporter &operator=(const FakeImporter &) = delete;

  int16_t width = 3, height = 2, depth = 24;
  ComponentResult descriptionError = noErr, drawError = noErr;
  Bytes profile;
  Bytes data;
  uint32_t pixelFormat = 0;

 private:
  static FakeImporter &of(void *self) { return *static_cast<FakeImporter *>(self); }
  ComponentTable table_{};
};

struct Outcome {
  cf::Ref<DRAVCFImageLoaderRef> loader;
  std::string messages;
};

Outcome load(OSType subtype) {
  const cf::Ref data = dataOf({1, 2, 3});
  testing::internal::CaptureStderr();
  Outcome outcome{cf::adopt(DRAVCFCreateFormattedImageLoaderFromData(nullptr, data.get(), subtype)), ""};
  outcome.messages = testing::internal::GetCapturedStderr();
  return outcome;
}

struct LayoutCase {
  OSType subtype;
  int16_t depth;
  size_t bitsPerPixel;
  CGImageAlphaInfo alpha;
  uint32_t world;
};

TEST(LoaderImporter, AsksForTheLayoutOfItsDepthAndSubtype) {
  for (const LayoutCase &expected :
       {LayoutCase{kTestFormat, 40, 32, kCGImageAlphaNoneSkipFirst, 32},
        LayoutCase{kTestFormat, 32, 32, kCGImageAlphaPremultipliedFirst, 32},
        LayoutCase{kTestFormat, 24, 32, kCGImageAlphaNoneSkipFirst, 32},
        LayoutCase{kTestFormat, 8, 8, kCGImageAlphaNone, 40},
        LayoutCase{kPICT, 32, 32, kCGImageAlphaNoneSkipFirst, 32},
        LayoutCase{kPICT, 8, 32, kCGImageAlphaNoneSkipFirst, 32},
        LayoutCase{kPCT, 32, 32, kCGImageAlphaFirst, 32}, LayoutCase{kPCT, 8, 8, kCGImageAlphaNone, 40}}) {
    SCOPED_TRACE(expected.depth);
    FakeImporter importer(expected.subtype);
    importer.depth = expected.depth;
    const Outcome outcome = load(expected.subtype);
    ASSERT_TRUE(outcome.loader);
    EXPECT_EQ(outcome.messages, "");
    CGImageRef image = outcome.loader->cgImage;
    EXPECT_EQ(CGImageGetWidth(image), 3u);
    EXPECT_EQ(CGImageGetHeight(image), 2u);
    EXPECT_EQ(CGImageGetBitsPerComponent(image), 8u);
    EXPECT_EQ(CGImageGetBitsPerPixel(image), expected.bitsPerPixel);
    EXPECT_EQ(CGImageGetBytesPerRow(image), 3 * expected.bitsPerPixel / 8);
    EXPECT_EQ(CGImageGetAlphaInfo(image), expected.alpha);
    EXPECT_EQ(importer.pixelFormat, expected.world);
    const cf::Ref space = expected.world == 40 ? graySpace() : displaySpace();
    EXPECT_TRUE(CFEqual(CGImageGetColorSpace(image), space.get()));
    const cf::Ref pixels = cf::adopt(CGDataProviderCopyData(CGImageGetDataProvider(image)));
    EXPECT_EQ(bytesOf(pixels.get()), Bytes(2 * 3 * expected.bitsPerPixel / 8, 77));
    EXPECT_EQ(outcome.loader->importer, nullptr) << "closed as soon as the pixels are drawn";
    EXPECT_EQ(outcome.loader->buffer, nullptr) << "handed to the image";
  }
}

TEST(LoaderImporter, NamesADepthThatNobodyDrawsAt) {
  FakeImporter importer(kTestFormat);
  for (int depth : {16, 3, 0, -1, 64}) {
    importer.depth = static_cast<int16_t>(depth);
    const Outcome outcome = load(kTestFormat);
    EXPECT_FALSE(outcome.loader);
    EXPECT_EQ(outcome.messages, "Unexpected image depth encountered: " + std::to_string(depth) + "\n");
  }
}

TEST(LoaderImporter, ReportsADamagedPictureAndNoOtherErrorOfItsDescription) {
  FakeImporter importer(kTestFormat);
  importer.descriptionError = -3954;
  const Outcome damaged = load(kTestFormat);
  EXPECT_FALSE(damaged.loader);
  EXPECT_EQ(damaged.messages, "Corrupt PICT data found, cannot load image\n");
  importer.descriptionError = -50;
  const Outcome other = load(kTestFormat);
  EXPECT_FALSE(other.loader);
  EXPECT_EQ(other.messages, "");
}

TEST(LoaderImporter, ADamagedPictureIsReportedOnceHoweverManyLoadersTryIt) {
  FakeImporter importer(kPICT);
  importer.descriptionError = -3954;
  const cf::Ref data = dataOf({1, 2, 3});
  testing::internal::CaptureStderr();
  EXPECT_EQ(DRAVCFImageCreateWithFormattedData(nullptr, data.get(), kDRAVCFImageFormatPICT), nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Corrupt PICT data found, cannot load image\n");
  testing::internal::CaptureStderr();
  EXPECT_EQ(DRAVCFImageCreateWithFormattedData(nullptr, data.get(), kDRAVCFImageFormatPICT), nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Corrupt PICT data found, cannot load image\n");
}

TEST(LoaderImporter, ADrawThatFailsGivesNone) {
  FakeImporter importer(kTestFormat);
  importer.drawError = -1;
  EXPECT_FALSE(load(kTestFormat).loader);
}

TEST(LoaderImporter, ASideThatIsNegativeOrNoneGivesNone) {
  FakeImporter importer(kTestFormat);
  for (int side : {-1, -32768, 0}) {
    importer.width = static_cast<int16_t>(side);
    importer.height = 2;
    EXPECT_FALSE(load(kTestFormat).loader) << side;
    importer.width = 3;
    importer.height = static_cast<int16_t>(side);
    EXPECT_FALSE(load(kTestFormat).loader) << side;
  }
}

TEST(LoaderImporter, AnEmbeddedProfileBecomesTheColourSpace) {
  FakeImporter importer(kTestFormat);
  importer.profile = profileBytes(makeForeignRGB());
  const Outcome outcome = load(kTestFormat);
  ASSERT_TRUE(outcome.loader);
  EXPECT_TRUE(CFEqual(CGImageGetColorSpace(outcome.loader->cgImage), spaceOf(importer.profile).get()));
}

TEST(LoaderImporter, AProfileThatIsNoneIsNamedAndFailsTheLoad) {
  FakeImporter importer(kTestFormat);
  importer.profile = {1, 2, 3, 4};
  const Outcome outcome = load(kTestFormat);
  EXPECT_FALSE(outcome.loader);
  EXPECT_EQ(outcome.messages, "Cannot validate profile : Valid: 0, Preferred CMM not found : 0\n");
}

TEST(LoaderImporter, PICTDataGetsABlankFileHeaderAndPCTDataDoesNot) {
  const cf::Ref data = dataOf({1, 2, 3});
  {
    FakeImporter importer(kPICT);
    const cf::Ref loader = cf::adopt(DRAVCFCreatePICTImageLoaderFromData(nullptr, data.get()));
    ASSERT_TRUE(loader);
    Bytes expected(512, 0);
    expected.insert(expected.end(), {1, 2, 3});
    EXPECT_EQ(importer.data, expected);
  }
  FakeImporter importer(kPCT);
  const cf::Ref loader = cf::adopt(DRAVCFCreatePCTImageLoaderFromData(nullptr, data.get()));
  ASSERT_TRUE(loader);
  EXPECT_EQ(importer.data, (Bytes{1, 2, 3}));
}

TEST(LoaderImporter, PICTAndPCTFilesAreReadWholeFromPathAndURL) {
  const TemporaryFolder folder;
  writeFile(folder.file("a"), Bytes(300000, 9));
  const cf::Ref path = string(folder.file("a"));
  const cf::Ref url = urlOf(folder.file("a"));
  FakeImporter pict(kPICT), pct(kPCT);
  EXPECT_TRUE(cf::adopt(DRAVCFCreatePICTImageLoaderFromPath(nullptr, path.get())));
  EXPECT_EQ(pict.data.size(), 300512u);
  EXPECT_TRUE(cf::adopt(DRAVCFCreatePICTImageLoaderFromURL(nullptr, url.get())));
  EXPECT_TRUE(cf::adopt(DRAVCFCreatePCTImageLoaderFromPath(nullptr, path.get())));
  EXPECT_EQ(pct.data, Bytes(300000, 9));
  EXPECT_TRUE(cf::adopt(DRAVCFCreatePCTImageLoaderFromURL(nullptr, url.get())));
}

TEST(LoaderImporter, AFileThatCannotBeOpenedReachesTheImporterAsNoData) {
  FakeImporter importer(kPCT);
  importer.data = {9};
  EXPECT_TRUE(cf::adopt(DRAVCFCreatePCTImageLoaderFromPath(nullptr, CFSTR("/nowhere/at all"))));
  EXPECT_EQ(importer.data, Bytes{});
}

TEST(LoaderImporter, AnEndlessFileGivesNone) {
  FakeImporter importer(kPCT);
  CGImageDecodeLimits small = CGImageGetDefaultDecodeLimits();
  small.memoryBytes = 1 << 20;
  CGImageSetDecodeLimits(&small);
  EXPECT_EQ(DRAVCFCreatePCTImageLoaderFromPath(nullptr, CFSTR("/dev/zero")), nullptr);
  CGImageSetDecodeLimits(nullptr);
}

}  // namespace
