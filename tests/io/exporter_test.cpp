#include "io/exporter.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "failing_allocator.h"
#include "fake_encoder.h"
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
  const cf::Ref pct = cf::adopt(DRAVCFImageExporterCreatePCT(nullptr));
  EXPECT_EQ(DRAVCFImageExportCreateData(nullptr, pct.get(), nullptr), nullptr);
}

TEST(Exporter, ThatIsNoneGivesNothing) {
  const TemporaryFolder folder;
  EXPECT_EQ(DRAVCFImageExportCreateData(nullptr, nullptr, picture().get()), nullptr);
  DRAVCFImageExportToFile(nullptr, picture().get(), string(folder.file("a")).get());
  EXPECT_FALSE(std::filesystem::exists(folder.file("a")));
}

TEST(Exporter, ItsClassHasAnInitCallbackAndNoOther) {
  const cf::Ref exporter = cf::adopt(DRAVCFImageExporterCreatePNG(nullptr));
  const CFRuntimeClass *record = _CFRuntimeGetClassWithTypeID(CFGetTypeID(exporter.get()));
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(record->version, 0);
  EXPECT_STREQ(record->className, "DRAVCFImageExporter");
  EXPECT_NE(record->init, nullptr);
  EXPECT_EQ(record->copy, nullptr);
  EXPECT_EQ(record->finalize, nullptr);
  EXPECT_EQ(record->equal, nullptr);
  EXPECT_EQ(record->hash, nullptr);
  EXPECT_EQ(record->copyFormattingDesc, nullptr);
  EXPECT_EQ(record->copyDebugDesc, nullptr);
}

TEST(Exporter, ServesAnyNumberOfExports) {
  const cf::Ref exporter = cf::adopt(DRAVCFImageExporterCreateJPEG(nullptr));
  for (int i = 0; i < 3; ++i) {
    const cf::Ref data = cf::adopt(DRAVCFImageExportCreateData(nullptr, exporter.get(), picture().get()));
    EXPECT_EQ(bytesOf(data.get()), jpegBytes());
  }
}

TEST(Exporter, ItsDataComesFromTheAllocator) {
  const testing_support::FailingAllocator allocator;
  const cf::Ref exporter = cf::adopt(DRAVCFImageExporterCreateTIFF(allocator.get()));
  EXPECT_EQ(CFGetAllocator(exporter.get()), allocator.get());
  const cf::Ref data =
      cf::adopt(DRAVCFImageExportCreateData(allocator.get(), exporter.get(), picture().get()));
  ASSERT_TRUE(data);
  EXPECT_EQ(CFGetAllocator(data.get()), allocator.get());
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
  const cf::Ref remote = cf::adopt(CFURLCreateWithString(nullptr, CFSTR("http://host/a.png"), nullptr));
  DRAVCFImageExportToURL(exporter.get(), picture().get(), remote.get());
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

TEST(ExportableImage, IsDividedForEveryKindOfAlphaAndNoOther) {
  const cf::Ref space = deviceRGBSpace();
  for (const CGImageAlphaInfo alpha : {kCGImageAlphaPremultipliedLast, kCGImageAlphaPremultipliedFirst,
                                       kCGImageAlphaLast, kCGImageAlphaFirst}) {
    const cf::Ref cgImage = makeCGImage({1, 1, 8, 32, 4, space.get(), alpha}, {51, 51, 51, 51});
    const cf::Ref image = cf::adopt(DRAVCFImageCreateWithImage(nullptr, cgImage.get()));
    const cf::Ref divided = cf::adopt(_DRAVCFImageCreateExportableImage(image.get(), 1));
    ASSERT_TRUE(divided) << alpha;
    EXPECT_EQ(CGImageGetAlphaInfo(divided.get()), kCGImageAlphaPremultipliedFirst);
    const bool straight = alpha == kCGImageAlphaFirst || alpha == kCGImageAlphaLast;
    const uint8_t colour = straight ? 51 : 255;
    EXPECT_NEAR(pixelsOf(divided.get())[1], colour, 2) << alpha;
    EXPECT_EQ(pixelsOf(divided.get())[0], 51);
  }
  for (const CGImageAlphaInfo alpha : {kCGImageAlphaNoneSkipLast, kCGImageAlphaNoneSkipFirst}) {
    const cf::Ref cgImage = makeCGImage({1, 1, 8, 32, 4, space.get(), alpha}, {51, 51, 51, 51});
    const cf::Ref image = cf::adopt(DRAVCFImageCreateWithImage(nullptr, cgImage.get()));
    const cf::Ref kept = cf::adopt(_DRAVCFImageCreateExportableImage(image.get(), 1));
    EXPECT_EQ(kept.get(), cgImage.get()) << alpha;
  }
}

TEST(ExportableImage, DividedHasTheShapeOfTheBufferAndOutlivesItsImage) {
  cf::Ref image = makeARGBImage(2, 1, {128, 64, 64, 64, 255, 1, 2, 3});
  const cf::Ref divided = cf::adopt(_DRAVCFImageCreateExportableImage(image.get(), 1));
  ASSERT_TRUE(divided);
  EXPECT_EQ(image->cgImage, nullptr) << "the buffer alone is enough";
  image.reset();
  EXPECT_EQ(CGImageGetWidth(divided.get()), 2u);
  EXPECT_EQ(CGImageGetHeight(divided.get()), 1u);
  EXPECT_EQ(CGImageGetBitsPerComponent(divided.get()), 8u);
  EXPECT_EQ(CGImageGetBitsPerPixel(divided.get()), 32u);
  EXPECT_EQ(CGImageGetBytesPerRow(divided.get()), 8u);
  EXPECT_TRUE(CFEqual(CGImageGetColorSpace(divided.get()), displaySpace().get()));
  EXPECT_EQ(CGImageGetDecode(divided.get()), nullptr);
  EXPECT_TRUE(CGImageGetShouldInterpolate(divided.get()));
  EXPECT_EQ(CGImageGetRenderingIntent(divided.get()), kCGRenderingIntentDefault);
  EXPECT_EQ(pixelsOf(divided.get()), (Bytes{128, 128, 128, 128, 255, 1, 2, 3}));
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
  EXPECT_EQ(encoder.pixels, (Bytes{128, 128, 128, 128}));
  EXPECT_EQ(encoder.alpha, kCGImageAlphaPremultipliedFirst) << "what is divided goes on saying so";
  EXPECT_EQ(encoded(DRAVCFImageExporterCreatePICT, image.get()).size(), 88u);
  EXPECT_EQ(encoder.pixels, (Bytes{128, 64, 64, 64}));
}

TEST(Exporter, PCTAsksThePICTEncoderThoughThereBeOneOfItsOwn) {
  const FakeEncoder own(600, MEDIA_CODE('P', 'C', 'T', ' ')), encoder(600);
  EXPECT_EQ(encoded(DRAVCFImageExporterCreatePCT, picture().get()).size(), 600u);
  EXPECT_EQ(own.opened, 0);
  EXPECT_EQ(encoder.encoded, 1);
}

TEST(Exporter, AFileOfNoBytesIsAFile) {
  const TemporaryFolder folder;
  const FakeEncoder encoder(0, MEDIA_CODE('P', 'N', 'G', 'f'));
  const cf::Ref exporter = cf::adopt(DRAVCFImageExporterCreatePNG(nullptr));
  const cf::Ref data = cf::adopt(DRAVCFImageExportCreateData(nullptr, exporter.get(), picture().get()));
  ASSERT_TRUE(data);
  EXPECT_EQ(CFDataGetLength(data.get()), 0);
  DRAVCFImageExportToFile(exporter.get(), picture().get(), string(folder.file("a")).get());
  EXPECT_TRUE(std::filesystem::exists(folder.file("a")));
}

TEST(Exporter, AnEncoderThatCannotBeOpenedOrFailsGivesNothing) {
  const TemporaryFolder folder;
  FakeEncoder encoder(600);
  const auto expectNothing = [&] {
    EXPECT_EQ(encoded(DRAVCFImageExporterCreatePICT, picture().get()), Bytes{});
    EXPECT_EQ(encoded(DRAVCFImageExporterCreatePCT, picture().get()), Bytes{});
    const cf::Ref exporter = cf::adopt(DRAVCFImageExporterCreatePICT(nullptr));
    DRAVCFImageExportToURL(exporter.get(), picture().get(), urlOf(folder.file("a")).get());
    EXPECT_FALSE(std::filesystem::exists(folder.file("a")));
  };
  encoder.openError = memFullErr;
  expectNothing();
  EXPECT_EQ(encoder.encoded, 0);
  encoder.openError = noErr;
  encoder.encodeError = codecErr;
  expectNothing();
  EXPECT_EQ(encoder.encoded, 3);
}

TEST(Exporter, ByTheBuiltInEncoderAPICTFileIs512BytesLongerThanItsData) {
  const TemporaryFolder folder;
  const cf::Ref exporter = cf::adopt(DRAVCFImageExporterCreatePICT(nullptr));
  DRAVCFImageExportToURL(exporter.get(), picture().get(), urlOf(folder.file("a.pict")).get());
  const Bytes file = readFile(folder.file("a.pict"));
  ASSERT_GT(file.size(), 512u);
  EXPECT_EQ(encoded(DRAVCFImageExporterCreatePICT, picture().get()), Bytes(file.begin() + 512, file.end()));
  EXPECT_EQ(encoded(DRAVCFImageExporterCreatePCT, picture().get()), file);
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
