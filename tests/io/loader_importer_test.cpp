// Loading through importers that say what no file can be made to say.
#include <gtest/gtest.h>

#include <cstdlib>

#include "core/foreign_profile.h"
#include "fake_importer.h"
#include "files.h"
#include "io/loader.h"
#include "media/codecs/limits.h"

namespace {

using namespace test;

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
  for (const LayoutCase &expected : {LayoutCase{kTestFormat, 40, 32, kCGImageAlphaNoneSkipFirst, 32},
                                     LayoutCase{kTestFormat, 32, 32, kCGImageAlphaPremultipliedFirst, 32},
                                     LayoutCase{kTestFormat, 24, 32, kCGImageAlphaNoneSkipFirst, 32},
                                     LayoutCase{kTestFormat, 8, 8, kCGImageAlphaNone, 40},
                                     LayoutCase{kPICT, 40, 32, kCGImageAlphaNoneSkipFirst, 32},
                                     LayoutCase{kPICT, 32, 32, kCGImageAlphaNoneSkipFirst, 32},
                                     LayoutCase{kPICT, 24, 32, kCGImageAlphaNoneSkipFirst, 32},
                                     LayoutCase{kPICT, 8, 32, kCGImageAlphaNoneSkipFirst, 32},
                                     LayoutCase{kPCT, 40, 32, kCGImageAlphaNoneSkipFirst, 32},
                                     LayoutCase{kPCT, 32, 32, kCGImageAlphaFirst, 32},
                                     LayoutCase{kPCT, 24, 32, kCGImageAlphaNoneSkipFirst, 32},
                                     LayoutCase{kPCT, 8, 8, kCGImageAlphaNone, 40}}) {
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
    EXPECT_EQ(importer.world.pixelFormat, expected.world);
    const cf::Ref space = expected.world == 40 ? graySpace() : displaySpace();
    EXPECT_TRUE(CFEqual(CGImageGetColorSpace(image), space.get()));
    EXPECT_EQ(pixelsOf(image), Bytes(2 * 3 * expected.bitsPerPixel / 8, 77));
    EXPECT_EQ(outcome.loader->importer, nullptr) << "closed as soon as the pixels are drawn";
    EXPECT_EQ(importer.closed, 1);
    EXPECT_EQ(outcome.loader->buffer, nullptr) << "handed to the image";
  }
}

TEST(LoaderImporter, KeepsTheFactsOfTheBufferInItsRecord) {
  FakeImporter importer(kPCT);
  importer.depth = 32;
  const Outcome outcome = load(kPCT);
  ASSERT_TRUE(outcome.loader);
  EXPECT_EQ(outcome.loader->width, 3u);
  EXPECT_EQ(outcome.loader->height, 2u);
  EXPECT_EQ(outcome.loader->bitsPerComponent, 8u);
  EXPECT_EQ(outcome.loader->bitsPerPixel, 32u);
  EXPECT_EQ(outcome.loader->bytesPerRow, 12u);
  EXPECT_EQ(outcome.loader->bufferSize, 24u);
  EXPECT_EQ(outcome.loader->alphaInfo, kCGImageAlphaFirst);
  EXPECT_EQ(outcome.loader->pixelFormat, 32u);
  EXPECT_EQ(outcome.loader->colorSpace, CGImageGetColorSpace(outcome.loader->cgImage));
  EXPECT_EQ(outcome.loader->profile, nullptr);
}

TEST(LoaderImporter, DrawsIntoAWorldFromTheOriginOverTheWholeBuffer) {
  FakeImporter importer(kTestFormat);
  importer.width = 5;
  importer.height = 32767;
  ASSERT_TRUE(load(kTestFormat).loader);
  EXPECT_EQ(importer.world.bounds.top, 0);
  EXPECT_EQ(importer.world.bounds.left, 0);
  EXPECT_EQ(importer.world.bounds.bottom, 32767);
  EXPECT_EQ(importer.world.bounds.right, 5);
  EXPECT_EQ(importer.world.rowBytes, 20u);
}

TEST(LoaderImporter, WhatIsNotDrawnIsZero) {
  FakeImporter importer(kTestFormat);
  importer.paint.reset();
  const Outcome outcome = load(kTestFormat);
  ASSERT_TRUE(outcome.loader);
  EXPECT_EQ(pixelsOf(outcome.loader->cgImage), Bytes(24, 0));
}

TEST(LoaderImporter, TheImageIsPlainAndOutlivesItsLoader) {
  const FakeImporter importer(kTestFormat);
  Outcome outcome = load(kTestFormat);
  ASSERT_TRUE(outcome.loader);
  const cf::Ref image = cf::adopt(DRAVCFImageLoaderCopyImage(outcome.loader.get()));
  EXPECT_EQ(CFGetRetainCount(image.get()), 2);
  outcome.loader.reset();
  EXPECT_EQ(CFGetRetainCount(image.get()), 1);
  EXPECT_EQ(pixelsOf(image.get()), Bytes(24, 77));
  EXPECT_EQ(CGImageGetDecode(image.get()), nullptr);
  EXPECT_TRUE(CGImageGetShouldInterpolate(image.get()));
  EXPECT_EQ(CGImageGetRenderingIntent(image.get()), kCGRenderingIntentDefault);
}

TEST(LoaderImporter, ThatCannotBeOpenedOrRefusesItsDataGivesNone) {
  FakeImporter importer(kTestFormat);
  importer.openError = memFullErr;
  EXPECT_FALSE(load(kTestFormat).loader);
  importer.openError = noErr;
  importer.dataError = -1;
  const Outcome outcome = load(kTestFormat);
  EXPECT_FALSE(outcome.loader);
  EXPECT_EQ(outcome.messages, "");
  EXPECT_EQ(importer.described, 0);
}

TEST(LoaderImporter, TheStepsOfALoadFailWithoutALoaderAReferenceOrAnImporter) {
  const cf::Ref loader = cf::adopt(DRAVCFImageLoaderCreate(nullptr));
  Handle reference = NewHandle(1);
  EXPECT_FALSE(DRAVCFImageLoaderLoadImageCommon(nullptr, reference, HandleDataHandlerSubType));
  EXPECT_FALSE(DRAVCFImageLoaderLoadImageCommon(loader.get(), nullptr, HandleDataHandlerSubType));
  EXPECT_FALSE(DRAVCFImageLoaderLoadImageCommon(loader.get(), reference, HandleDataHandlerSubType));
  EXPECT_FALSE(DRAVCFImageLoaderLoadFromGraphicsImporter(nullptr));
  EXPECT_FALSE(DRAVCFImageLoaderLoadFromGraphicsImporter(loader.get()));
  DisposeHandle(reference);
}

TEST(LoaderImporter, TheSubtypeOfTheImporterThatTheBytesChooseDecidesToo) {
  const cf::Ref data = dataOf({1, 2, 3});
  for (const auto &[subtype, alpha] : {std::pair{kTestFormat, kCGImageAlphaPremultipliedFirst},
                                       {kPICT, kCGImageAlphaNoneSkipFirst},
                                       {kPCT, kCGImageAlphaFirst}}) {
    FakeImporter importer(subtype);
    importer.score = 1000;
    importer.depth = 32;
    const cf::Ref loader = cf::adopt(DRAVCFCreateUnknownImageLoaderFromData(nullptr, data.get()));
    ASSERT_TRUE(loader);
    EXPECT_EQ(loader->alphaInfo, alpha);
    EXPECT_EQ(importer.data, (Bytes{1, 2, 3})) << "without a blank header";
    EXPECT_EQ(importer.closed, 1);
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
  importer.score = 1000;
  importer.descriptionError = -3954;
  const cf::Ref data = dataOf({1, 2, 3});
  testing::internal::CaptureStderr();
  EXPECT_EQ(DRAVCFImageCreateWithFormattedData(nullptr, data.get(), kDRAVCFImageFormatPICT), nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Corrupt PICT data found, cannot load image\n");
  EXPECT_EQ(importer.described, 2) << "by the loader of pictures, and by that of any format";
  testing::internal::CaptureStderr();
  EXPECT_EQ(DRAVCFImageCreateWithFormattedData(nullptr, data.get(), kDRAVCFImageFormatPICT), nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Corrupt PICT data found, cannot load image\n");
  testing::internal::CaptureStderr();
  EXPECT_EQ(DRAVCFCreatePICTImageLoaderFromData(nullptr, data.get()), nullptr);
  EXPECT_EQ(DRAVCFCreatePICTImageLoaderFromData(nullptr, data.get()), nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Corrupt PICT data found, cannot load image\nCorrupt PICT data found, cannot load image\n")
      << "each load by itself has its message";
}

TEST(LoaderImporter, AnUnexpectedDepthIsNamedByEachLoaderThatMeetsIt) {
  FakeImporter importer(kPICT);
  importer.score = 1000;
  importer.depth = 16;
  const cf::Ref data = dataOf({1, 2, 3});
  testing::internal::CaptureStderr();
  EXPECT_EQ(DRAVCFImageCreateWithFormattedData(nullptr, data.get(), kDRAVCFImageFormatPICT), nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Unexpected image depth encountered: 16\nUnexpected image depth encountered: 16\n");
}

TEST(LoaderImporter, ADamageThatIsNotThePicturesOwnErrorIsNotAnnounced) {
  const cf::Ref png = dataOf({0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n', 0, 0});
  testing::internal::CaptureStderr();
  EXPECT_EQ(DRAVCFCreateUnknownImageLoaderFromData(nullptr, png.get()), nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(LoaderImporter, ARealPictureThatIsDamagedIsReported) {
  Bytes bytes = encoded(DRAVCFImageExporterCreatePICT, picture().get());
  bytes.resize(bytes.size() - 20);
  const cf::Ref data = dataOf(bytes);
  testing::internal::CaptureStderr();
  EXPECT_EQ(DRAVCFCreatePICTImageLoaderFromData(nullptr, data.get()), nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Corrupt PICT data found, cannot load image\n");
}

TEST(LoaderImporter, ADrawThatFailsGivesNone) {
  FakeImporter importer(kTestFormat);
  importer.drawError = -1;
  EXPECT_FALSE(load(kTestFormat).loader);
  EXPECT_EQ(importer.closed, 1);
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
  EXPECT_TRUE(CFEqual(CGImageGetColorSpace(outcome.loader->cgImage), spaceOf(*importer.profile).get()));
}

TEST(LoaderImporter, AProfileThatIsNoneIsNamedAndFailsTheLoad) {
  FakeImporter importer(kTestFormat);
  importer.profile = Bytes{1, 2, 3, 4};
  const Outcome outcome = load(kTestFormat);
  EXPECT_FALSE(outcome.loader);
  EXPECT_EQ(outcome.messages, "Cannot validate profile : Valid: 0, Preferred CMM not found : 0\n");
}

TEST(LoaderImporter, AProfileOfNoBytesCannotBeOpenedAndFailsTheLoadSilently) {
  FakeImporter importer(kTestFormat);
  importer.profile = Bytes{};
  const Outcome outcome = load(kTestFormat);
  EXPECT_FALSE(outcome.loader);
  EXPECT_EQ(outcome.messages, "");
}

TEST(LoaderImporter, WhatTheRequestForAProfileAnswersDoesNotMatterButTheProfileDoes) {
  FakeImporter importer(kTestFormat);
  importer.profileError = -1;
  const Outcome without = load(kTestFormat);
  ASSERT_TRUE(without.loader);
  EXPECT_TRUE(CFEqual(CGImageGetColorSpace(without.loader->cgImage), displaySpace().get()));
  importer.profile = profileBytes(makeForeignRGB());
  const Outcome with = load(kTestFormat);
  ASSERT_TRUE(with.loader);
  EXPECT_TRUE(CFEqual(CGImageGetColorSpace(with.loader->cgImage), spaceOf(*importer.profile).get()));
}

TEST(LoaderImporter, AProfileIsForGreyPixelsToo) {
  FakeImporter importer(kTestFormat);
  importer.depth = 8;
  importer.profile = profileBytes(makeForeignGray());
  const Outcome outcome = load(kTestFormat);
  ASSERT_TRUE(outcome.loader);
  EXPECT_TRUE(CFEqual(CGImageGetColorSpace(outcome.loader->cgImage), spaceOf(*importer.profile).get()));
  EXPECT_NE(outcome.loader->profile, nullptr) << "kept open as long as the loader";
}

TEST(LoaderImporter, AProfileOfMoreComponentsThanThePixelsHaveGivesNone) {
  FakeImporter importer(kTestFormat);
  importer.depth = 8;
  importer.profile = profileBytes(makeForeignRGB());
  EXPECT_FALSE(load(kTestFormat).loader);
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
  const FakeImporter importer(kPCT);
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

// An allocator that has no block as long as that.
cf::Ref<CFAllocatorRef> allocatorOfBlocksBelow(CFIndex size) {
  static CFIndex tooLong;
  tooLong = size;
  CFAllocatorContext context{};
  context.allocate = [](CFIndex bytes, CFOptionFlags, void *) {
    return bytes < tooLong ? std::malloc(static_cast<size_t>(bytes)) : nullptr;
  };
  context.reallocate = [](void *block, CFIndex bytes, CFOptionFlags, void *) {
    return bytes < tooLong ? std::realloc(block, static_cast<size_t>(bytes)) : nullptr;
  };
  context.deallocate = [](void *block, void *) { std::free(block); };
  return cf::adopt(CFAllocatorCreate(nullptr, &context));
}

TEST(LoaderImporter, AFileThatOutgrowsTheMemoryIsNotHandedOnInPart) {
  const TemporaryFolder folder;
  writeFile(folder.file("a"), Bytes(900000, 9));  // more than is read at a time
  const cf::Ref url = urlOf(folder.file("a"));
  const cf::Ref allocator = allocatorOfBlocksBelow(800000);
  const FakeImporter pict(kPICT), pct(kPCT);
  EXPECT_EQ(DRAVCFCreatePCTImageLoaderFromURL(allocator.get(), url.get()), nullptr);
  EXPECT_EQ(DRAVCFCreatePICTImageLoaderFromURL(allocator.get(), url.get()), nullptr);
  EXPECT_EQ(DRAVCFCreatePICTImageLoaderFromData(allocator.get(), dataOf(Bytes(900000, 9)).get()), nullptr);
  EXPECT_EQ(pict.opened + pct.opened, 0);
}

TEST(LoaderImporter, AFileAsLongAsTheLimitIsReadAndALongerOneIsNot) {
  const TemporaryFolder folder;
  const cf::Ref url = urlOf(folder.file("a"));
  const FakeImporter importer(kPCT);
  CGImageDecodeLimits small = CGImageGetDefaultDecodeLimits();
  small.memoryBytes = 1000;
  CGImageSetDecodeLimits(&small);
  writeFile(folder.file("a"), Bytes(1000, 9));
  EXPECT_TRUE(cf::adopt(DRAVCFCreatePCTImageLoaderFromURL(nullptr, url.get())));
  writeFile(folder.file("a"), Bytes(1001, 9));
  EXPECT_FALSE(cf::adopt(DRAVCFCreatePCTImageLoaderFromURL(nullptr, url.get())));
  CGImageSetDecodeLimits(nullptr);
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
