// Files written by another program read to the pixels that it reads itself.

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "media/codecs/registry.h"

namespace {

namespace fs = std::filesystem;

std::string outputOf(const std::string &command) {
  std::string text;
  FILE *pipe = popen(command.c_str(), "r");
  if (!pipe) return text;
  char block[4096];
  for (size_t got; (got = fread(block, 1, sizeof block, pipe)) > 0;) text.append(block, got);
  pclose(pipe);
  return text;
}

// Empty when the program is not installed, or something else goes by its name.
std::string findConvert() {
  for (const char *name : {"/usr/bin/convert", "convert"}) {
    if (outputOf(std::string(name) + " --version 2>/dev/null").find("Version: ImageMagick") == 0) return name;
  }
  return {};
}

class ForeignFiles : public testing::TestWithParam<const char *> {
 protected:
  void SetUp() override {
    convert_ = findConvert();
    if (convert_.empty()) GTEST_SKIP() << "ImageMagick's convert is not installed";
    folder_ = fs::temp_directory_path() / ("foreign_files_" + std::to_string(getpid()));
    fs::create_directories(folder_);
  }
  void TearDown() override {
    if (!folder_.empty()) fs::remove_all(folder_);
  }

  std::vector<uint8_t> written(const std::string &arguments, const std::string &name) const {
    const fs::path path = folder_ / name;
    outputOf(convert_ + " " + arguments + " '" + path.string() + "' 2>&1");
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  // The file's pixels as the program itself sees them: red, green, blue, alpha.
  std::string seen(const std::string &name) const {
    return outputOf(convert_ + " '" + (folder_ / name).string() + "' -depth 8 rgba:-");
  }

  std::string convert_;
  fs::path folder_;
};

std::string toRgba(const codecs::DecodedImage &image) {
  std::string text;
  const uint8_t *at = image.pixels.data();
  for (size_t i = 0; i < size_t{image.width} * image.height; ++i, at += bytesPerPixel(image.layout)) {
    if (image.layout == codecs::PixelLayout::grey8) {
      text.append(3, static_cast<char>(at[0]));
      text.push_back(static_cast<char>(255));
    } else {
      text.append({static_cast<char>(at[1]), static_cast<char>(at[2]), static_cast<char>(at[3]),
                   static_cast<char>(at[0])});
    }
  }
  return text;
}

void expectSamePixels(const std::vector<uint8_t> &file, const std::string &expected, int tolerance = 0) {
  ASSERT_FALSE(file.empty());
  const auto decoded = codecs::decodeAny(file, CGImageGetDefaultDecodeLimits());
  ASSERT_EQ(decoded.fault, codecs::Fault::none);
  const std::string pixels = toRgba(decoded.value);
  ASSERT_EQ(pixels.size(), expected.size());
  int furthest = 0;
  for (size_t i = 0; i < pixels.size(); ++i) {
    furthest =
        std::max(furthest, std::abs(static_cast<uint8_t>(pixels[i]) - static_cast<uint8_t>(expected[i])));
  }
  EXPECT_LE(furthest, tolerance);
}

TEST_P(ForeignFiles, PngsReadToTheSamePixels) {
  const std::string arguments[] = {"",
                                   "-depth 16",
                                   "-colors 16 -type Palette",
                                   "-interlace PNG",
                                   "-alpha set -channel A -evaluate multiply 0.5 +channel",
                                   "-colorspace gray",
                                   "-threshold 50%"};
  int number = 0;
  for (const std::string &argument : arguments) {
    SCOPED_TRACE(argument);
    const std::string name = std::to_string(number++) + ".png";
    const auto file = written(std::string(GetParam()) + " " + argument, name);
    expectSamePixels(file, seen(name));
  }
}

// The other program cuts 16 bits to 8 where we round.
TEST_P(ForeignFiles, SixteenBitGreyReadsToTheNearestByte) {
  const auto file = written(std::string(GetParam()) + " -colorspace gray -depth 16", "grey16.png");
  expectSamePixels(file, seen("grey16.png"), 1);
}

TEST_P(ForeignFiles, JpegsReadToTheSamePixels) {
  const std::string arguments[] = {"", "-interlace JPEG", "-sampling-factor 4:4:4",
                                   "-sampling-factor 4:2:2 -quality 60", "-colorspace gray"};
  int number = 0;
  for (const std::string &argument : arguments) {
    SCOPED_TRACE(argument);
    const std::string name = std::to_string(number++) + ".jpg";
    const auto file = written(std::string(GetParam()) + " " + argument, name);
    expectSamePixels(file, seen(name));
  }
}

INSTANTIATE_TEST_SUITE_P(BuiltInPictures, ForeignFiles, testing::Values("rose:", "logo:", "wizard:"),
                         [](const auto &picture) {
                           const std::string name = picture.param;
                           return name.substr(0, name.size() - 1);
                         });

}  // namespace
