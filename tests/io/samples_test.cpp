// Pictures made by other programs through the loaders, where DRAV_SAMPLES says they are.
#include <gtest/gtest.h>

#include <cstdlib>

#include "files.h"
#include "io/loader.h"

namespace {

using namespace test;
namespace fs = std::filesystem;

class LoadedSamples : public testing::Test {
 protected:
  void SetUp() override {
    const char *const folder = std::getenv("DRAV_SAMPLES");
    const fs::path pictures = folder ? fs::path(folder) / "pict" : fs::path();
    if (!fs::is_directory(pictures)) GTEST_SKIP() << "DRAV_SAMPLES names no folder of sample pictures";
    for (const auto &entry : fs::directory_iterator(pictures)) paths.push_back(entry.path());
    ASSERT_FALSE(paths.empty());
    testing::internal::CaptureStderr();
  }
  void TearDown() override {
    if (!paths.empty()) {
      EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    }
  }

  std::vector<std::string> paths;
};

TEST_F(LoadedSamples, AreOpaqueColourAsPICTAndFollowTheirDepthAsPCT) {
  for (const std::string &path : paths) {
    SCOPED_TRACE(path);
    const cf::Ref pict = cf::adopt(DRAVCFCreatePICTImageLoaderFromPath(nullptr, string(path).get()));
    const cf::Ref pct = cf::adopt(DRAVCFCreatePCTImageLoaderFromPath(nullptr, string(path).get()));
    ASSERT_TRUE(pict && pct);
    EXPECT_EQ(CGImageGetBitsPerPixel(pict->cgImage), 32u);
    EXPECT_EQ(CGImageGetAlphaInfo(pict->cgImage), kCGImageAlphaNoneSkipFirst);
    EXPECT_EQ(CGImageGetWidth(pict->cgImage), CGImageGetWidth(pct->cgImage));
    EXPECT_EQ(CGImageGetHeight(pict->cgImage), CGImageGetHeight(pct->cgImage));
    const CGImageAlphaInfo alpha = CGImageGetAlphaInfo(pct->cgImage);
    if (CGImageGetBitsPerPixel(pct->cgImage) == 8) {
      EXPECT_EQ(alpha, kCGImageAlphaNone);
    } else {
      EXPECT_TRUE(alpha == kCGImageAlphaFirst || alpha == kCGImageAlphaNoneSkipFirst) << alpha;
    }
  }
}

TEST_F(LoadedSamples, ComeBackFromPNGAndTIFFAndPICTAsTheyAre) {
  for (const std::string &path : paths) {
    SCOPED_TRACE(path);
    const cf::Ref image = cf::adopt(DRAVCFImageCreateWithPath(nullptr, string(path).get()));
    ASSERT_TRUE(image);
    const cf::Ref png = cf::adopt(DRAVCFImageCopyPNGData(nullptr, image.get()));
    const cf::Ref tiff = cf::adopt(DRAVCFImageCopyTIFFData(nullptr, image.get()));
    const cf::Ref pict = dataOf(encoded(DRAVCFImageExporterCreatePICT, image->cgImage));
    ASSERT_NE(DRAVCFImageGetImageBuffer(image.get()), nullptr);
    for (CFDataRef data : {png.get(), tiff.get(), pict.get()}) {
      const cf::Ref again = cf::adopt(DRAVCFImageCreateWithData(nullptr, data));
      ASSERT_TRUE(again);
      ASSERT_NE(DRAVCFImageGetImageBuffer(again.get()), nullptr);
      EXPECT_EQ(again->width, image->width);
      EXPECT_TRUE(bufferOf(again.get()) == bufferOf(image.get()));
    }
  }
}

}  // namespace
