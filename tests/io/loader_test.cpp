#include "io/loader.h"

#include <gtest/gtest.h>

#include "failing_allocator.h"
#include "files.h"
#include "text.h"

namespace {

using namespace test;

size_t loadedWidth(DRAVCFImageLoaderRef made) {
  const cf::Ref loader = cf::adopt(made);
  const cf::Ref image = cf::adopt(DRAVCFImageLoaderCopyImage(loader.get()));
  return image ? CGImageGetWidth(image.get()) : 0;
}

constexpr OSType kPNGCode = MEDIA_CODE('P', 'N', 'G', 'f');
constexpr OSType kJPEGCode = MEDIA_CODE('J', 'P', 'E', 'G');

TEST(Loader, HasNoTypeIdentifierBeforeTheFirstOne) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(std::_Exit(DRAVCFImageLoaderGetTypeID() == 0 ? 0 : 1), testing::ExitedWithCode(0), "");
}

TEST(Loader, ReadsPNGAndJPEGFromPathURLAndData) {
  const TemporaryFolder folder;
  writeFile(folder.file("a.png"), pngBytes());
  writeFile(folder.file("a.jpg"), jpegBytes());
  const cf::Ref pngPath = string(folder.file("a.png")), jpegPath = string(folder.file("a.jpg"));
  const cf::Ref pngURL = urlOf(folder.file("a.png")), jpegURL = urlOf(folder.file("a.jpg"));
  const cf::Ref png = dataOf(pngBytes()), jpeg = dataOf(jpegBytes());
  EXPECT_EQ(loadedWidth(DRAVCFCreatePNGImageLoaderFromPath(nullptr, pngPath.get())), 3u);
  EXPECT_EQ(loadedWidth(DRAVCFCreatePNGImageLoaderFromURL(nullptr, pngURL.get())), 3u);
  EXPECT_EQ(loadedWidth(DRAVCFCreatePNGImageLoaderFromData(nullptr, png.get())), 3u);
  EXPECT_EQ(loadedWidth(DRAVCFCreateJPEGImageLoaderFromPath(nullptr, jpegPath.get())), 3u);
  EXPECT_EQ(loadedWidth(DRAVCFCreateJPEGImageLoaderFromURL(nullptr, jpegURL.get())), 3u);
  EXPECT_EQ(loadedWidth(DRAVCFCreateJPEGImageLoaderFromData(nullptr, jpeg.get())), 3u);
}

TEST(Loader, ReadsByFourCharacterCodeFromPathURLAndData) {
  const TemporaryFolder folder;
  writeFile(folder.file("a"), pngBytes());
  const cf::Ref path = string(folder.file("a"));
  const cf::Ref url = urlOf(folder.file("a"));
  const cf::Ref data = dataOf(pngBytes());
  EXPECT_EQ(loadedWidth(DRAVCFCreateFormattedImageLoaderFromPath(nullptr, path.get(), kPNGCode)), 3u);
  EXPECT_EQ(loadedWidth(DRAVCFCreateFormattedImageLoaderFromURL(nullptr, url.get(), kPNGCode)), 3u);
  EXPECT_EQ(loadedWidth(DRAVCFCreateFormattedImageLoaderFromData(nullptr, data.get(), kPNGCode)), 3u);
  EXPECT_EQ(loadedWidth(DRAVCFCreateFormattedImageLoaderFromData(nullptr, data.get(), kJPEGCode)), 0u);
  EXPECT_EQ(loadedWidth(DRAVCFCreateFormattedImageLoaderFromData(nullptr, data.get(), 1)), 0u);
}

TEST(Loader, LetsTheBytesChoose) {
  const TemporaryFolder folder;
  for (const Bytes &bytes : {pngBytes(), jpegBytes()}) {
    writeFile(folder.file("a"), bytes);
    const cf::Ref path = string(folder.file("a"));
    const cf::Ref url = urlOf(folder.file("a"));
    EXPECT_EQ(loadedWidth(DRAVCFCreateUnknownImageLoaderFromPath(nullptr, path.get())), 3u);
    EXPECT_EQ(loadedWidth(DRAVCFCreateUnknownImageLoaderFromURL(nullptr, url.get())), 3u);
    EXPECT_EQ(loadedWidth(DRAVCFCreateUnknownImageLoaderFromData(nullptr, dataOf(bytes).get())), 3u);
  }
}

TEST(Loader, OfNoSourceIsNone) {
  EXPECT_EQ(DRAVCFCreatePNGImageLoaderFromPath(nullptr, nullptr), nullptr);
  EXPECT_EQ(DRAVCFCreateJPEGImageLoaderFromPath(nullptr, nullptr), nullptr);
  EXPECT_EQ(DRAVCFCreatePICTImageLoaderFromPath(nullptr, nullptr), nullptr);
  EXPECT_EQ(DRAVCFCreatePCTImageLoaderFromPath(nullptr, nullptr), nullptr);
  EXPECT_EQ(DRAVCFCreateFormattedImageLoaderFromPath(nullptr, nullptr, kPNGCode), nullptr);
  EXPECT_EQ(DRAVCFCreateUnknownImageLoaderFromPath(nullptr, nullptr), nullptr);
  EXPECT_EQ(DRAVCFCreatePNGImageLoaderFromURL(nullptr, nullptr), nullptr);
  EXPECT_EQ(DRAVCFCreateFormattedImageLoaderFromURL(nullptr, nullptr, kPNGCode), nullptr);
  EXPECT_EQ(DRAVCFCreateUnknownImageLoaderFromURL(nullptr, nullptr), nullptr);
  EXPECT_EQ(DRAVCFCreatePNGImageLoaderFromData(nullptr, nullptr), nullptr);
  EXPECT_EQ(DRAVCFCreateUnknownImageLoaderFromData(nullptr, nullptr), nullptr);
  EXPECT_EQ(DRAVCFImageLoaderCopyImage(nullptr), nullptr);
}

TEST(Loader, OfWhatCannotBeReadIsNone) {
  const TemporaryFolder folder;
  writeFile(folder.file("empty"), {});
  for (const std::string &path : {folder.file("absent"), folder.file("empty"), folder.file("")}) {
    const cf::Ref name = string(path);
    EXPECT_EQ(DRAVCFCreatePNGImageLoaderFromPath(nullptr, name.get()), nullptr);
    EXPECT_EQ(DRAVCFCreateJPEGImageLoaderFromPath(nullptr, name.get()), nullptr);
    EXPECT_EQ(DRAVCFCreateFormattedImageLoaderFromPath(nullptr, name.get(), kPNGCode), nullptr);
    EXPECT_EQ(DRAVCFCreateUnknownImageLoaderFromPath(nullptr, name.get()), nullptr);
  }
}

TEST(Loader, OfDirectFormatsKeepsThePlatformsLayout) {
  const cf::Ref data = dataOf(pngBytes());
  const cf::Ref loader = cf::adopt(DRAVCFCreatePNGImageLoaderFromData(nullptr, data.get()));
  ASSERT_TRUE(loader);
  EXPECT_EQ(CGImageGetAlphaInfo(loader->cgImage), kCGImageAlphaNoneSkipFirst);
  EXPECT_TRUE(CFEqual(CGImageGetColorSpace(loader->cgImage), displaySpace().get()));
  EXPECT_EQ(CGImageGetDecode(loader->cgImage), nullptr);
  EXPECT_TRUE(CGImageGetShouldInterpolate(loader->cgImage));
  EXPECT_EQ(CGImageGetRenderingIntent(loader->cgImage), kCGRenderingIntentDefault);
  EXPECT_EQ(loader->buffer, nullptr);
  EXPECT_EQ(loader->bufferSize, 0u) << "the fields of the buffer are for importers";
}

TEST(Loader, ItsClassHasTheCallbacksItNeedsAndNoOther) {
  const cf::Ref loader = cf::adopt(DRAVCFImageLoaderCreate(nullptr));
  EXPECT_EQ(CFGetTypeID(loader.get()), DRAVCFImageLoaderGetTypeID());
  const CFRuntimeClass *record = _CFRuntimeGetClassWithTypeID(DRAVCFImageLoaderGetTypeID());
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(record->version, 0);
  EXPECT_STREQ(record->className, "DRAVCFImageLoader");
  EXPECT_NE(record->init, nullptr);
  EXPECT_EQ(record->copy, nullptr);
  EXPECT_NE(record->finalize, nullptr);
  EXPECT_EQ(record->equal, nullptr);
  EXPECT_EQ(record->hash, nullptr);
  EXPECT_EQ(record->copyFormattingDesc, nullptr);
  EXPECT_NE(record->copyDebugDesc, nullptr);
}

TEST(Loader, StartsWithNothing) {
  const cf::Ref loader = cf::adopt(DRAVCFImageLoaderCreate(nullptr));
  EXPECT_EQ(DRAVCFImageLoaderCopyImage(loader.get()), nullptr);
  EXPECT_EQ(loader->importer, nullptr);
  EXPECT_EQ(loader->width | loader->height | loader->bitsPerComponent | loader->bitsPerPixel, 0u);
  EXPECT_EQ(loader->bytesPerRow | loader->bufferSize | loader->pixelFormat, 0u);
  EXPECT_EQ(loader->alphaInfo, kCGImageAlphaNone);
  EXPECT_EQ(loader->colorSpace, nullptr);
  EXPECT_EQ(loader->buffer, nullptr);
  EXPECT_EQ(loader->profile, nullptr);
}

TEST(Loader, DescribesItselfAsItsImage) {
  const cf::Ref data = dataOf(pngBytes());
  const cf::Ref loader = cf::adopt(DRAVCFCreatePNGImageLoaderFromData(nullptr, data.get()));
  const cf::Ref expected = cf::adopt(CFCopyDescription(loader->cgImage));
  EXPECT_EQ(text(cf::adopt(CFCopyDescription(loader.get())).get()), text(expected.get()));
  const testing_support::FailingAllocator allocator;
  const cf::Ref empty = cf::adopt(DRAVCFImageLoaderCreate(allocator.get()));
  const cf::Ref none = cf::adopt(CFCopyDescription(empty.get()));
  EXPECT_EQ(text(none.get()), "(NULL)");
  EXPECT_EQ(CFGetAllocator(none.get()), allocator.get());
}

TEST(Loader, OfTruncatedDataIsNoneAtEveryLengthAndPrintsNothing) {
  testing::internal::CaptureStderr();
  for (const Bytes &whole : {pngBytes(), jpegBytes()}) {
    for (size_t length = 0; length + 12 < whole.size(); ++length) {
      const cf::Ref data = dataOf(Bytes(whole.begin(), whole.begin() + static_cast<long>(length)));
      EXPECT_EQ(DRAVCFCreatePNGImageLoaderFromData(nullptr, data.get()), nullptr) << length;
      EXPECT_EQ(DRAVCFCreateUnknownImageLoaderFromData(nullptr, data.get()), nullptr) << length;
    }
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(Loader, FailingAnywhereGivesNone) {
  using testing_support::forEachFailedAllocation;
  const TemporaryFolder folder;
  writeFile(folder.file("a"), pngBytes());
  const cf::Ref url = urlOf(folder.file("a"));
  const cf::Ref data = dataOf(pngBytes());
  forEachFailedAllocation([&](CFAllocatorRef allocator, long) {
    const cf::Ref loader = cf::adopt(DRAVCFCreatePNGImageLoaderFromData(allocator, data.get()));
  });
  forEachFailedAllocation([&](CFAllocatorRef allocator, long) {
    const cf::Ref loader = cf::adopt(DRAVCFCreateFormattedImageLoaderFromURL(allocator, url.get(), kPNGCode));
  });
  forEachFailedAllocation([&](CFAllocatorRef allocator, long) {
    const cf::Ref loader = cf::adopt(DRAVCFCreateUnknownImageLoaderFromURL(allocator, url.get()));
  });
}

}  // namespace
