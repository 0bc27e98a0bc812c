// Every format that is read, through the loaders: by its four-character code, and by its bytes.

#include <gtest/gtest.h>

#include "../media/one_of_each.h"
#include "failing_malloc.h"
#include "files.h"
#include "io/loader.h"

namespace {

using namespace test;

struct Format {
  const char *name;
  uint32_t code;
  std::vector<uint8_t> file;
  CGImageAlphaInfo alpha;
};

std::vector<Format> formats() {
  using namespace one_of_each;
  constexpr auto kMultiplied = kCGImageAlphaPremultipliedFirst, kNone = kCGImageAlphaNoneSkipFirst;
  return {{"PNG", 0x504E4766, pngFile(), kMultiplied},
          {"JPEG", 0x4A504547, jpegFile(), kNone},
          {"TIFF", 0x54494646, tiffFile(COMPRESSION_LZW), kMultiplied},
          {"GIF", 0x47494666, gifFile(), kMultiplied},
          {"BMP", 0x424D5066, bmpFile(), kMultiplied},
          {"BMP of runs", 0x424D5066, bmpRunsFile(), kNone},
          {"TGA", 0x54504943, tgaFile(), kMultiplied},
          {"WebP", 0x57454250, webpFile(true), kMultiplied},
          {"PICT", 0x50494354, pictFile(), kNone}};
}

cf::Ref<CGImageRef> imageOf(DRAVCFImageLoaderRef made) {
  const cf::Ref loader = cf::adopt(made);
  return cf::adopt(DRAVCFImageLoaderCopyImage(loader.get()));
}

TEST(LoaderFormats, EachLoadsByItsCodeInTheLayoutOfItsAlpha) {
  for (const Format &format : formats()) {
    const cf::Ref data = dataOf(format.file);
    const cf::Ref image = imageOf(DRAVCFCreateFormattedImageLoaderFromData(nullptr, data.get(), format.code));
    ASSERT_TRUE(image) << format.name;
    EXPECT_EQ(CGImageGetAlphaInfo(image.get()), format.alpha) << format.name;
    EXPECT_EQ(CGImageGetBitsPerPixel(image.get()), 32u) << format.name;
  }
}

TEST(LoaderFormats, EachIsKnownByItsBytesAndHasTheSamePixels) {
  for (const Format &format : formats()) {
    const cf::Ref data = dataOf(format.file);
    const cf::Ref named = imageOf(DRAVCFCreateFormattedImageLoaderFromData(nullptr, data.get(), format.code));
    const cf::Ref found = imageOf(DRAVCFCreateUnknownImageLoaderFromData(nullptr, data.get()));
    ASSERT_TRUE(named && found) << format.name;
    EXPECT_EQ(pixelsOf(found.get()), pixelsOf(named.get())) << format.name;
  }
}

TEST(LoaderFormats, AProfileInsideBecomesTheColourSpace) {
  const std::vector<uint8_t> profile = swappedRgbProfile();
  for (const Format &format : formats()) {
    const std::string name = format.name;
    if (name == "TGA" || name == "PICT" || name == "BMP of runs") continue;  // these have none
    const cf::Ref data = dataOf(format.file);
    const cf::Ref image = imageOf(DRAVCFCreateFormattedImageLoaderFromData(nullptr, data.get(), format.code));
    ASSERT_TRUE(image) << name;
    const cf::Ref kept = cf::adopt(CGColorSpaceCopyICCProfile(CGImageGetColorSpace(image.get())));
    EXPECT_EQ(bytesOf(kept.get()), profile) << name;
  }
}

TEST(LoaderFormats, WithoutMemoryEachGivesNoneOrTheWholeImage) {
  for (const Format &format : formats()) {
    const cf::Ref data = dataOf(format.file);
    const auto load = [&] { return cf::adopt(DRAVCFImageCreateWithData(nullptr, data.get())); };
    const Bytes whole = pixelsOf(load()->cgImage);
    bool failed = true;
    long request = 1;
    for (; failed; ++request) {
      ASSERT_LT(request, 1000) << format.name;
      const cf::Ref image = [&] {
        const testing_support::FailingMalloc failing(request);
        auto made = load();
        failed = failing.failed();
        return made;
      }();
      ASSERT_TRUE(image || failed) << format.name;
      if (image) {
        ASSERT_EQ(pixelsOf(image->cgImage), whole) << format.name << " " << request;
      }
    }
    EXPECT_GT(request, 5) << format.name;
  }
}

// A code names a decoder, whatever the bytes are.
TEST(LoaderFormats, AnotherFormatsCodeGivesNone) {
  const std::vector<Format> all = formats();
  for (const Format &format : all) {
    if (format.code == 0x50494354) continue;  // the picture's decoder prints what it thinks
    for (const Format &other : all) {
      if (other.code == format.code) continue;
      const cf::Ref data = dataOf(other.file);
      EXPECT_FALSE(imageOf(DRAVCFCreateFormattedImageLoaderFromData(nullptr, data.get(), format.code)))
          << other.name << " as " << format.name;
    }
  }
}

}  // namespace
