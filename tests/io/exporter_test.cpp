#include "io/exporter.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "failing_allocator.h"
#include "files.h"

namespace {

using namespace test;

Bytes roundTrip(CGImageRef image) {
  const cf::Ref data = dataOf(encoded(DRAVCFImageExporterCreatePNG, image));
  const cf::Ref loaded =
      cf::adopt(DRAVCFImageCreateWithFormattedData(nullptr, data.get(), kDRAVCFImageFormatPNG));
  if (!loaded) return {};
  const cf::Ref copied = cf::adopt(CGDataProviderCopyData(CGImageGetDataProvider(loaded->cgImage)));
  return bytesOf(copied.get());
}

TEST(Exporter, EachConstructorStoresItsCode) {
  const auto code = [](DRAVCFImageExporterRef made) { return cf::adopt(made)->exportType; };
  EXPECT_EQ(code(DRAVCFImageExporterCreateJPEG(nullptr)), 0x4A504547u);
  EXPECT_EQ(code(DRAVCFImageExporterCreatePICT(nullptr)), 0x50494354u);
  EXPECT_EQ(code(DRAVCFImageExporterCreatePCT(nullptr)), 0x50435420u);
  EXPECT_EQ(code(DRAVCFImageExporterCreatePNG(nullptr)), 0x504E4766u);
  EXPECT_EQ(code(DRAVCFImageExporterCreateTIFF(nullptr)), 0x54494646u);
  EXPECT_EQ(code(DRAVCFImageExporterCreate(nullptr)), 0u);
}

TEST(Exporter, ThroughPNGEveryColourComesBack) {
  EXPECT_EQ(roundTrip(picture().get()), (Bytes{255, 255, 0,  0,  255, 0,  255, 0,  255, 0,  0,  255,  //
                                               255, 10,  20, 30, 255, 40, 50,  60, 255, 70, 80, 90}));
}

TEST(Exporter, PNGHoldsPremultipliedPixelsDivided) {
  const cf::Ref space = displaySpace();
  const cf::Ref image = makeCGImage({2, 1, 8, 32, 8, space.get(), kCGImageAlphaPremultipliedFirst},
                                    {128, 64, 128, 0, 0, 0, 0, 0});
  EXPECT_EQ(roundTrip(image.get()), (Bytes{128, 128, 255, 0, 0, 0, 0, 0}));
}

TEST(Exporter, PNGHoldsStraightPixelsAsTheyAre) {
  const cf::Ref space = displaySpace();
  const cf::Ref image =
      makeCGImage({2, 1, 8, 32, 8, space.get(), kCGImageAlphaFirst}, {1, 200, 3, 4, 255, 5, 6, 7});
  EXPECT_EQ(roundTrip(image.get()), (Bytes{1, 200, 3, 4, 255, 5, 6, 7}));
}

TEST(Exporter, GreyStaysGreyThroughPNG) {
  const cf::Ref space = graySpace();
  const cf::Ref image = makeCGImage({3, 1, 8, 8, 3, space.get(), kCGImageAlphaNone}, {0, 100, 255});
  EXPECT_EQ(roundTrip(image.get()), (Bytes{0, 100, 255}));
}

TEST(Exporter, OfNoImageGivesNothing) {
  const cf::Ref exporter = cf::adopt(DRAVCFImageExporterCreatePNG(nullptr));
  EXPECT_EQ(DRAVCFImageExportCreateData(nullptr, exporter.get(), nullptr), nullptr);
  EXPECT_EQ(DRAVCFImageExporterCreateHandle(exporter.get(), nullptr), nullptr);
  EXPECT_EQ(_DRAVCFImageExporterCreatePCTHandle(exporter.get(), nullptr), nullptr);
}

TEST(Exporter, OfAnUnknownCodeGivesNothing) {
  const cf::Ref exporter = cf::adopt(DRAVCFImageExporterCreate(nullptr));
  EXPECT_EQ(DRAVCFImageExportCreateData(nullptr, exporter.get(), picture().get()), nullptr);
}

TEST(Exporter, WritesAFileOfTheVeryBytesOfTheData) {
  const TemporaryFolder folder;
  const cf::Ref exporter = cf::adopt(DRAVCFImageExporterCreatePNG(nullptr));
  const std::string path = folder.file("with space, 100% \xC3\xA4.png");
  writeFile(path, Bytes(100000, 1));  // a longer file that is replaced
  DRAVCFImageExportToFile(exporter.get(), picture().get(), string(path).get());
  EXPECT_EQ(readFile(path), pngBytes());
}

TEST(Exporter, ThatCannotEncodeLeavesTheFileAlone) {
  const TemporaryFolder folder;
  const cf::Ref exporter = cf::adopt(DRAVCFImageExporterCreate(nullptr));
  writeFile(folder.file("a"), {1, 2, 3});
  DRAVCFImageExportToFile(exporter.get(), picture().get(), string(folder.file("a")).get());
  EXPECT_EQ(readFile(folder.file("a")), (Bytes{1, 2, 3}));
}

TEST(Exporter, ToAPathThatMakesNoURLOrCannotBeOpenedDoesNothing) {
  const TemporaryFolder folder;
  const cf::Ref exporter = cf::adopt(DRAVCFImageExporterCreatePNG(nullptr));
  DRAVCFImageExportToFile(exporter.get(), picture().get(), CFSTR(""));
  DRAVCFImageExportToFile(exporter.get(), picture().get(), nullptr);
  DRAVCFImageExportToURL(exporter.get(), picture().get(), nullptr);
  DRAVCFImageExportToFile(exporter.get(), picture().get(), string(folder.file("absent/a.png")).get());
  EXPECT_FALSE(std::filesystem::exists(folder.file("absent")));
}

TEST(Exporter, OntoAFullDeviceFailsSilently) {
  testing::internal::CaptureStderr();
  const cf::Ref exporter = cf::adopt(DRAVCFImageExporterCreatePNG(nullptr));
  DRAVCFImageExportToFile(exporter.get(), picture().get(), CFSTR("/dev/full"));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(Exporter, WritingNoBytesMakesNoFile) {
  const TemporaryFolder folder;
  DRAVCFImageExporterWrite(urlOf(folder.file("a")).get(), nullptr, 5);
  EXPECT_FALSE(std::filesystem::exists(folder.file("a")));
}

TEST(ExportableImage, IsThePlatformImageWhereNothingIsToBeDivided) {
  const cf::Ref image = makeARGBImage(1, 1, {128, 64, 64, 64});
  const cf::Ref kept = cf::adopt(_DRAVCFImageCreateExportableImage(image.get(), 0));
  EXPECT_EQ(kept.get(), image->cgImage);
  const cf::Ref opaque = makeGrayImage(1, 1, {5});
  const cf::Ref alsoKept = cf::adopt(_DRAVCFImageCreateExportableImage(opaque.get(), 1));
  EXPECT_EQ(alsoKept.get(), opaque->cgImage);
  const cf::Ref empty = cf::adopt(DRAVCFImageCreate(nullptr));
  EXPECT_EQ(_DRAVCFImageCreateExportableImage(empty.get(), 0), nullptr);
  EXPECT_EQ(_DRAVCFImageCreateExportableImage(empty.get(), 1), nullptr);
}

TEST(ExportableImage, DividedStillSaysPremultiplied) {
  const cf::Ref image = makeARGBImage(1, 1, {128, 64, 64, 64});
  const cf::Ref divided = cf::adopt(_DRAVCFImageCreateExportableImage(image.get(), 1));
  ASSERT_TRUE(divided);
  EXPECT_EQ(CGImageGetAlphaInfo(divided.get()), kCGImageAlphaPremultipliedFirst);
  const cf::Ref bytes = cf::adopt(CGDataProviderCopyData(CGImageGetDataProvider(divided.get())));
  EXPECT_EQ(bytesOf(bytes.get()), (Bytes{128, 128, 128, 128}));
  EXPECT_EQ(bufferOf(image.get()), (Bytes{128, 64, 64, 64}));
}

// An encoder under the code of PICT that writes what it is told, and keeps what it was given.
struct FakeEncoder {
  explicit FakeEncoder(size_t writes) {
    size = writes;
    table.type = GraphicsExporterComponentType;
    table.subType = MEDIA_CODE('P', 'I', 'C', 'T');
    table.encode = [](void *, CGImageRef image, Handle output) -> ComponentResult {
      const cf::Ref copied = cf::adopt(CGDataProviderCopyData(CGImageGetDataProvider(image)));
      pixels = bytesOf(copied.get());
      SetHandleSize(output, static_cast<Size>(size));
      for (size_t i = 0; i < size; ++i) (*output)[i] = static_cast<char>(i);
      return noErr;
    };
    EXPECT_EQ(RegisterComponentTable(&table), noErr);
  }
  ~FakeEncoder() { EXPECT_EQ(UnregisterComponentTable(&table), noErr); }
  FakeEncoder(const FakeEncoder &) = delete;
  FakeEncoder &operator=(const FakeEncoder &) = delete;

  ComponentTable table{};
  static inline size_t size = 0;
  static inline Bytes pixels;
};

TEST(Exporter, PICTDataComesWithoutTheFileHeaderAndPCTDataWithIt) {
  const FakeEncoder encoder(520);
  const Bytes pict = encoded(DRAVCFImageExporterCreatePICT, picture().get());
  ASSERT_EQ(pict.size(), 8u);
  EXPECT_EQ(pict[0], 0);  // byte 512 of what was written
  EXPECT_EQ(pict[7], 7);
  EXPECT_EQ(encoded(DRAVCFImageExporterCreatePCT, picture().get()).size(), 520u);
}

TEST(Exporter, APICTFileKeepsItsHeader) {
  const FakeEncoder encoder(520);
  const TemporaryFolder folder;
  const cf::Ref exporter = cf::adopt(DRAVCFImageExporterCreatePICT(nullptr));
  DRAVCFImageExportToFile(exporter.get(), picture().get(), string(folder.file("a.pict")).get());
  EXPECT_EQ(readFile(folder.file("a.pict")).size(), 520u);
}

TEST(Exporter, PICTDataShorterThanAFileHeaderIsNone) {
  {
    const FakeEncoder encoder(511);
    EXPECT_EQ(encoded(DRAVCFImageExporterCreatePICT, picture().get()), Bytes{});
    EXPECT_EQ(encoded(DRAVCFImageExporterCreatePCT, picture().get()).size(), 511u);
  }
  const FakeEncoder encoder(512);
  const cf::Ref exporter = cf::adopt(DRAVCFImageExporterCreatePICT(nullptr));
  const cf::Ref data = cf::adopt(DRAVCFImageExportCreateData(nullptr, exporter.get(), picture().get()));
  ASSERT_TRUE(data);
  EXPECT_EQ(CFDataGetLength(data.get()), 0);
}

TEST(Exporter, PCTHandsDividedColoursToThePICTEncoderAndPICTThoseOfTheImage) {
  const FakeEncoder encoder(600);
  const cf::Ref space = displaySpace();
  const cf::Ref image =
      makeCGImage({1, 1, 8, 32, 4, space.get(), kCGImageAlphaPremultipliedFirst}, {128, 64, 64, 64});
  EXPECT_EQ(encoded(DRAVCFImageExporterCreatePCT, image.get()).size(), 600u);
  EXPECT_EQ(FakeEncoder::pixels, (Bytes{128, 128, 128, 128}));
  EXPECT_EQ(encoded(DRAVCFImageExporterCreatePICT, image.get()).size(), 88u);
  EXPECT_EQ(FakeEncoder::pixels, (Bytes{128, 64, 64, 64}));
}

TEST(ExporterAllocation, FailingAnywhereGivesNothing) {
  const cf::Ref image = picture();
  testing_support::forEachFailedAllocation([&](CFAllocatorRef allocator, long) {
    const cf::Ref exporter = cf::adopt(DRAVCFImageExporterCreatePNG(allocator));
    const cf::Ref data =
        cf::adopt(exporter ? DRAVCFImageExportCreateData(allocator, exporter.get(), image.get()) : nullptr);
  });
  testing_support::forEachFailedAllocation([&](CFAllocatorRef allocator, long) {
    const cf::Ref wrapped = cf::adopt(DRAVCFImageCreateWithImage(allocator, image.get()));
    const cf::Ref exportable =
        cf::adopt(wrapped ? _DRAVCFImageCreateExportableImage(wrapped.get(), 1) : nullptr);
  });
}

}  // namespace
