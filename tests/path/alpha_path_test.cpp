#include <DravKit/DravKit.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "core/image.h"
#include "failing_allocator.h"
#include "failing_new.h"
#include "foundation/ref.h"
#include "path/platform_path.h"
#include "path/tracing.h"

namespace drav::path {
namespace {

using Image = cf::Ref<DRAVCFImageRef>;
using PathRef = cf::Ref<CGMutablePathRef>;

// Standard output goes to a file while one of these lives, below the C library, as a shell redirects it.
class RedirectedOutput {
 public:
  RedirectedOutput() : file_(std::tmpfile()) {
    std::fflush(stdout);
    saved_ = dup(STDOUT_FILENO);
    dup2(fileno(file_), STDOUT_FILENO);
  }
  ~RedirectedOutput() {
    std::fflush(stdout);
    dup2(saved_, STDOUT_FILENO);
    close(saved_);
    std::fclose(file_);
  }
  RedirectedOutput(const RedirectedOutput &) = delete;
  RedirectedOutput &operator=(const RedirectedOutput &) = delete;

  // What has reached the file; nothing is flushed for it.
  std::string text() const {
    std::string result;
    char piece[4096];
    for (off_t at = 0;;) {
      const ssize_t count = pread(fileno(file_), piece, sizeof piece, at);
      if (count <= 0) return result;
      result.append(piece, static_cast<std::size_t>(count));
      at += count;
    }
  }

 private:
  std::FILE *file_;
  int saved_;
};

// Premultiplied white in the picture's alphas.
std::vector<std::uint8_t> whitePixels(const Picture &picture) {
  std::vector<std::uint8_t> bytes = picture.bytes;
  for (std::size_t at = 0; at < bytes.size(); ++at) bytes[at] = bytes[at & ~std::size_t{3}];
  return bytes;
}

Image imageOf(const Picture &picture, CGImageAlphaInfo alpha = kCGImageAlphaPremultipliedFirst,
              CFAllocatorRef allocator = nullptr) {
  return cf::adopt(DRAVCFImageCreateWithBuffer(
      allocator, whitePixels(picture).data(), static_cast<std::size_t>(picture.width),
      static_cast<std::size_t>(picture.height), 8, 32, 0, nullptr, alpha));
}

std::vector<std::uint8_t> bufferOf(DRAVCFImageRef image) {
  return {image->buffer, image->buffer + image->bufferSize};
}

PathRef quietPath(DRAVCFImageRef image, float threshold) {
  const RedirectedOutput redirected;
  return cf::adopt(DRAVCFImageCopyAlphaPath(image, threshold));
}

const Picture &ring() {
  static const Picture picture = Picture::of({".....", ".XXX.", ".X.X.", ".XXX.", "....."});
  return picture;
}
const Lines kRingPath = {"M1,3 L3,3 L3,1 L1,1 Z"};

TEST(CopyAlphaPath, AnImageWithoutAlphaGivesAnEmptyPathAndPrintsNothing) {
  const Image image = imageOf(ring(), kCGImageAlphaNoneSkipFirst);
  const RedirectedOutput redirected;
  const PathRef path = cf::adopt(DRAVCFImageCopyAlphaPath(image.get(), 0.0F));
  ASSERT_TRUE(path);
  EXPECT_TRUE(CGPathIsEmpty(path.get()));
  EXPECT_EQ("", redirected.text());
  EXPECT_EQ(kCGImageAlphaNoneSkipFirst, image->alphaInfo);
}

TEST(CopyAlphaPath, ATransparentImageGivesAPathWithoutSubpaths) {
  const PathRef path = quietPath(imageOf(Picture(4, 4)).get(), 0.0F);
  ASSERT_TRUE(path);
  EXPECT_TRUE(CGPathIsEmpty(path.get()));
}

TEST(CopyAlphaPath, GivesTheTracedPathAndPrintsTheCommentary) {
  const Image image = imageOf(ring());
  const RedirectedOutput redirected;
  const PathRef path = cf::adopt(DRAVCFImageCopyAlphaPath(image.get(), 0.5F));
  ASSERT_TRUE(path);
  EXPECT_EQ(kRingPath, written(path.get()));
  const plain::Trace expected = plain::trace(ring().bytes.data(), ring().width, ring().height, 0.5F);
  EXPECT_EQ(expected.text, redirected.text());
}

TEST(CopyAlphaPath, KeepsTheOrderOfWhatTheHostPrints) {
  const Image image = imageOf(Picture::of({"X"}));
  const RedirectedOutput redirected;
  std::printf("before\n");
  const PathRef path = cf::adopt(DRAVCFImageCopyAlphaPath(image.get(), 0.0F));
  EXPECT_EQ(0U, redirected.text().find("before\nstarting subpath (0, 0)\nPath 0\n"));
  std::printf("after\n");
  std::fflush(stdout);
  const std::string text = redirected.text();
  EXPECT_EQ("\tCloseSubpath\nafter\n", text.substr(text.size() - 20));
}

TEST(CopyAlphaPath, LeavesTheImagePromotedToPremultipliedAlpha) {
  const Image image = imageOf(ring(), kCGImageAlphaFirst);
  const PathRef path = quietPath(image.get(), 0.0F);
  ASSERT_TRUE(path);
  EXPECT_EQ(kRingPath, written(path.get()));
  EXPECT_EQ(kCGImageAlphaPremultipliedFirst, image->alphaInfo);
  EXPECT_EQ(32U, image->bitsPerPixel);
  EXPECT_EQ(nullptr, image->cgImage);
  EXPECT_NE(nullptr, image->buffer);
}

TEST(CopyAlphaPath, ReadsAlphaThatComesLast) {
  Picture picture = ring();
  std::vector<std::uint8_t> bytes = whitePixels(picture);
  const Image image = cf::adopt(DRAVCFImageCreateWithBuffer(nullptr, bytes.data(), 5, 5, 8, 32, 0, nullptr,
                                                            kCGImageAlphaPremultipliedLast));
  const PathRef path = quietPath(image.get(), 0.0F);
  ASSERT_TRUE(path);
  EXPECT_EQ(kRingPath, written(path.get()));
}

TEST(CopyAlphaPath, ReadsRowsWithPadding) {
  const std::vector<std::uint8_t> packed = whitePixels(ring());
  constexpr std::size_t kRowBytes = 32;
  std::vector<std::uint8_t> padded(kRowBytes * 5, 0xEE);
  for (std::size_t row = 0; row < 5; ++row) {
    std::copy_n(packed.begin() + static_cast<std::ptrdiff_t>(20 * row), 20,
                padded.begin() + static_cast<std::ptrdiff_t>(kRowBytes * row));
  }
  const Image image = cf::adopt(DRAVCFImageCreateWithBuffer(nullptr, padded.data(), 5, 5, 8, 32, kRowBytes,
                                                            nullptr, kCGImageAlphaPremultipliedFirst));
  const PathRef path = quietPath(image.get(), 0.0F);
  ASSERT_TRUE(path);
  EXPECT_EQ(kRingPath, written(path.get()));
}

TEST(CopyAlphaPath, AnAlphaAtTheThresholdIsOutside) {
  Picture picture = ring();
  for (std::uint8_t &byte : picture.bytes) byte = byte == 255 ? 51 : 0;
  const Image image = imageOf(picture);
  EXPECT_TRUE(CGPathIsEmpty(quietPath(image.get(), 51.0F / 255.0F).get()));
  EXPECT_EQ(kRingPath, written(quietPath(image.get(), 50.0F / 255.0F).get()));
}

TEST(CopyAlphaPath, ABufferShorterThanItsRowsGivesNull) {
  const Image image = imageOf(ring());
  image->bufferSize = 4;
  EXPECT_FALSE(quietPath(image.get(), 0.0F));
}

TEST(CopyAlphaPath, AnImageWithNeitherFormGivesNull) {
  const Image image = imageOf(ring());
  DRAVCFImageInvalidateBuffer(image.get());
  EXPECT_FALSE(quietPath(image.get(), 0.0F));
}

TEST(CopyAlphaPath, GivesNullOrTheWholePathWhenTheImagesAllocatorFails) {
  int failures = 0;
  testing_support::forEachFailedAllocation([&](CFAllocatorRef allocator, long) {
    const Image image = imageOf(ring(), kCGImageAlphaPremultipliedFirst, allocator);
    if (!image) return;
    DRAVCFImageGetCGImage(image.get());  // beside it the buffer has to be made anew
    const PathRef path = quietPath(image.get(), 0.0F);
    if (path) {
      EXPECT_EQ(kRingPath, written(path.get()));
    } else {
      ++failures;
    }
  });
  EXPECT_GE(failures, 2);  // the promoted buffer and the flags at least
}

TEST(CopyAlphaPath, TheImageStaysPromotedWhenTheFlagsCannotBeAllocated) {
  testing_support::FailingAllocator allocator;
  const Image image = imageOf(ring(), kCGImageAlphaPremultipliedFirst, allocator.get());
  const long before = allocator.requests();
  ASSERT_TRUE(quietPath(image.get(), 0.0F));
  const long needed = allocator.requests() - before;
  allocator.failAfter(needed);  // the flags are what is asked for last
  EXPECT_FALSE(quietPath(image.get(), 0.0F));
  ASSERT_NE(nullptr, image->buffer);
  EXPECT_EQ(kCGImageAlphaPremultipliedFirst, image->alphaInfo);
  EXPECT_EQ(whitePixels(ring()), bufferOf(image.get()));
}

TEST(CopyAlphaPath, GivesNullOrTheWholePathWhenMemoryRunsOutInside) {
  int failures = 0;
  for (long failAt = 1; failAt < 1000; ++failAt) {
    const Image image = imageOf(ring());
    PathRef path;
    bool failed = false;
    {
      const RedirectedOutput redirected;
      const testing_support::FailingNew failing(failAt);
      path = cf::adopt(DRAVCFImageCopyAlphaPath(image.get(), 0.0F));
      failed = failing.failed();
    }
    if (path) {
      EXPECT_EQ(kRingPath, written(path.get())) << failAt;
    } else {
      ++failures;
    }
    if (!failed) {
      EXPECT_TRUE(path);
      EXPECT_GT(failures, 5);
      return;
    }
  }
  FAIL() << "there was always one more allocation to fail";
}

}  // namespace
}  // namespace drav::path
