#include <gtest/gtest.h>

#include "failing_allocator.h"
#include "files.h"

namespace {

using namespace test;

size_t widthFromFile(const std::string &path) {
  const cf::Ref image = cf::adopt(DRAVCFImageCreateWithPath(nullptr, string(path).get()));
  return image ? DRAVCFImageGetWidth(image.get()) : 0;
}

TEST(EncodedCreation, FromAFileHoldsAPlatformImageOnly) {
  const TemporaryFolder folder;
  writeFile(folder.file("a.png"), pngBytes());
  const cf::Ref image = cf::adopt(DRAVCFImageCreateWithPath(nullptr, string(folder.file("a.png")).get()));
  ASSERT_TRUE(image);
  EXPECT_NE(image->cgImage, nullptr);
  EXPECT_EQ(image->buffer, nullptr);
  EXPECT_EQ(DRAVCFImageGetWidth(image.get()), 3u);
}

TEST(EncodedCreation, AnyNameOfAFileWillDo) {
  const TemporaryFolder folder;
  for (const char *name :
       {"A.JPG", "b.jpeg", "no extension", "with space.jpg", "100%25.jpg", "\xC3\xA4\xE2\x82\xAC.jpg"}) {
    writeFile(folder.file(name), jpegBytes());
    EXPECT_EQ(widthFromFile(folder.file(name)), 3u) << name;
  }
}

TEST(EncodedCreation, AWrongExtensionFallsBackOnTheBytes) {
  const TemporaryFolder folder;
  writeFile(folder.file("a.png"), jpegBytes());
  writeFile(folder.file("b.jpg"), pngBytes());
  writeFile(folder.file("c.tif"), pngBytes());
  for (const char *name : {"a.png", "b.jpg", "c.tif"})
    EXPECT_EQ(widthFromFile(folder.file(name)), 3u) << name;
}

TEST(EncodedCreation, AGivenFormatThatIsWrongFallsBackToo) {
  const cf::Ref data = dataOf(pngBytes());
  for (uint32_t format = 0; format <= 4; ++format) {
    const cf::Ref image = cf::adopt(DRAVCFImageCreateWithFormattedData(nullptr, data.get(), format));
    EXPECT_TRUE(image) << format;
  }
}

TEST(EncodedCreation, AFormatFrom5OnGivesNothing) {
  const TemporaryFolder folder;
  writeFile(folder.file("a.png"), pngBytes());
  const cf::Ref path = string(folder.file("a.png"));
  const cf::Ref url = urlOf(folder.file("a.png"));
  const cf::Ref data = dataOf(pngBytes());
  for (uint32_t format : {5u, 7u, UINT32_MAX}) {
    EXPECT_EQ(DRAVCFImageCreateWithPathAndFormat(nullptr, path.get(), format), nullptr);
    EXPECT_EQ(DRAVCFImageCreateWithURLAndFormat(nullptr, url.get(), format), nullptr);
    EXPECT_EQ(DRAVCFImageCreateWithFormattedData(nullptr, data.get(), format), nullptr);
  }
}

TEST(EncodedCreation, OfWhatIsNoImageGivesNothing) {
  const TemporaryFolder folder;
  writeFile(folder.file("a.png"), {});
  writeFile(folder.file("b.png"), {'h', 'e', 'l', 'l', 'o'});
  EXPECT_EQ(widthFromFile(folder.file("a.png")), 0u);
  EXPECT_EQ(widthFromFile(folder.file("b.png")), 0u);
  EXPECT_EQ(widthFromFile(folder.file("absent.png")), 0u);
  EXPECT_EQ(widthFromFile(folder.file("")), 0u);
  EXPECT_EQ(DRAVCFImageCreateWithPath(nullptr, nullptr), nullptr);
  EXPECT_EQ(DRAVCFImageCreateWithURL(nullptr, nullptr), nullptr);
  EXPECT_EQ(DRAVCFImageCreateWithData(nullptr, nullptr), nullptr);
  EXPECT_EQ(DRAVCFImageCreateWithPath(nullptr, CFSTR("")), nullptr);
}

TEST(EncodedCreation, PNGDataLoadsAsTheSamePixels) {
  const cf::Ref image = makeARGBImage(2, 1, {255, 1, 2, 3, 51, 51, 0, 17});
  const cf::Ref png = cf::adopt(DRAVCFImageCopyPNGData(nullptr, image.get()));
  ASSERT_TRUE(png);
  const cf::Ref loaded = cf::adopt(DRAVCFImageCreateWithData(nullptr, png.get()));
  ASSERT_TRUE(loaded);
  ASSERT_NE(DRAVCFImageGetImageBuffer(loaded.get()), nullptr);
  EXPECT_EQ(bufferOf(loaded.get()), (Bytes{255, 1, 2, 3, 51, 51, 0, 17}));
}

TEST(EncodedCreation, TIFFDataLoadsAsTheSamePixels) {
  const cf::Ref image = makeARGBImage(2, 1, {255, 1, 2, 3, 51, 51, 0, 17});
  const cf::Ref tiff = cf::adopt(DRAVCFImageCopyTIFFData(nullptr, image.get()));
  ASSERT_TRUE(tiff);
  const cf::Ref loaded = cf::adopt(DRAVCFImageCreateWithData(nullptr, tiff.get()));
  ASSERT_TRUE(loaded);
  ASSERT_NE(DRAVCFImageGetImageBuffer(loaded.get()), nullptr);
  EXPECT_EQ(bufferOf(loaded.get()), (Bytes{255, 1, 2, 3, 51, 51, 0, 17}));
}

TEST(EncodedCreation, DataIsOfItsFormatAndFromTheAllocator) {
  const testing_support::FailingAllocator allocator;
  const cf::Ref image = makeGrayImage(2, 1, {7, 200});
  const cf::Ref png = cf::adopt(DRAVCFImageCopyPNGData(allocator.get(), image.get()));
  const cf::Ref tiff = cf::adopt(DRAVCFImageCopyTIFFData(allocator.get(), image.get()));
  ASSERT_TRUE(png && tiff);
  EXPECT_EQ(CFGetAllocator(png.get()), allocator.get());
  EXPECT_EQ(CFGetAllocator(tiff.get()), allocator.get());
  EXPECT_EQ(bytesOf(png.get())[1], 'P');
  const uint8_t byteOrder = bytesOf(tiff.get())[0];
  EXPECT_TRUE(byteOrder == 'I' || byteOrder == 'M');
}

TEST(EncodedCreation, AnImageIsFromTheAllocator) {
  const testing_support::FailingAllocator allocator;
  const cf::Ref image = cf::adopt(DRAVCFImageCreateWithData(allocator.get(), dataOf(pngBytes()).get()));
  ASSERT_TRUE(image);
  EXPECT_EQ(CFGetAllocator(image.get()), allocator.get());
}

TEST(EncodedCreation, APathBecomesAURLFromTheAllocator) {
  const TemporaryFolder folder;
  writeFile(folder.file("a.png"), pngBytes());
  const cf::Ref url = urlOf(folder.file("a.png"));
  const cf::Ref path = string(folder.file("a.png"));
  const testing_support::FailingAllocator forURL, forPath;
  EXPECT_TRUE(cf::adopt(DRAVCFImageCreateWithURL(forURL.get(), url.get())));
  EXPECT_TRUE(cf::adopt(DRAVCFImageCreateWithPath(forPath.get(), path.get())));
  EXPECT_GT(forPath.requests(), forURL.requests());
}

TEST(EncodedCreation, PNGDataOfAnImageThatHoldsNothingIsNone) {
  const cf::Ref image = cf::adopt(DRAVCFImageCreate(nullptr));
  EXPECT_EQ(DRAVCFImageCopyPNGData(nullptr, image.get()), nullptr);
  EXPECT_EQ(DRAVCFImageCopyTIFFData(nullptr, image.get()), nullptr);
}

TEST(EncodedCreation, FailingAnywhereGivesNothing) {
  const cf::Ref data = dataOf(pngBytes());
  testing_support::forEachFailedAllocation([&](CFAllocatorRef allocator, long) {
    const cf::Ref image =
        cf::adopt(DRAVCFImageCreateWithFormattedData(allocator, data.get(), kDRAVCFImageFormatPNG));
    if (image) {
      EXPECT_EQ(DRAVCFImageGetWidth(image.get()), 3u);
    }
  });
  testing_support::forEachFailedAllocation([&](CFAllocatorRef allocator, long) {
    const cf::Ref image = makeARGBImage(1, 1, {255, 1, 2, 3}, allocator);
    const cf::Ref png = cf::adopt(image ? DRAVCFImageCopyPNGData(allocator, image.get()) : nullptr);
  });
}

}  // namespace
