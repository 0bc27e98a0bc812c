// Other programs that write files for us, and tell what they see in a file.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "media/codecs/registry.h"

namespace foreign {

namespace fs = std::filesystem;

inline std::string outputOf(const std::string &command) {
  std::string text;
  FILE *pipe = popen(command.c_str(), "r");
  if (!pipe) return text;
  char block[4096];
  for (size_t got; (got = fread(block, 1, sizeof block, pipe)) > 0;) text.append(block, got);
  pclose(pipe);
  return text;
}

inline bool isThere(const std::string &command, const char *firstWords) {
  return outputOf(command + " 2>/dev/null").find(firstWords) == 0;
}

// Empty when the program is not installed, or something else goes by its name.
inline std::string findConvert() {
  for (const char *name : {"/usr/bin/convert", "convert"}) {
    if (isThere(std::string(name) + " --version", "Version: ImageMagick")) return name;
  }
  return {};
}
inline bool hasGraphicsMagick() { return isThere("gm version", "GraphicsMagick"); }
inline bool hasFfmpeg() { return isThere("ffmpeg -version", "ffmpeg version"); }

// The commands that give the pixels of a file: red, green, blue, alpha.
inline std::string convertSees(const std::string &convert, const std::string &file) {
  return outputOf(convert + " '" + file + "' -auto-orient -depth 8 rgba:- 2>/dev/null");
}
inline std::string graphicsMagickSees(const std::string &file) {
  return outputOf("gm convert '" + file + "' -depth 8 rgba:- 2>/dev/null");
}
inline std::string ffmpegSees(const std::string &file) {
  return outputOf("ffmpeg -v error -i '" + file + "' -frames:v 1 -f rawvideo -pix_fmt rgba - 2>/dev/null");
}

inline std::vector<uint8_t> bytesOfFile(const std::string &path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline std::string toRgba(const codecs::DecodedImage &image) {
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

// What is transparent throughout has no colour that programs would agree on.
inline void forgetHiddenColours(std::string &rgba) {
  for (size_t i = 0; i + 3 < rgba.size(); i += 4) {
    if (rgba[i + 3] == 0) rgba.replace(i, 3, 3, '\0');
  }
}

inline void expectAlike(std::string found, std::string expected, int tolerance) {
  forgetHiddenColours(found);
  forgetHiddenColours(expected);
  ASSERT_FALSE(expected.empty()) << "the other program saw nothing";
  ASSERT_EQ(found.size(), expected.size());
  int furthest = 0;
  for (size_t i = 0; i < found.size(); ++i) {
    furthest =
        std::max(furthest, std::abs(static_cast<uint8_t>(found[i]) - static_cast<uint8_t>(expected[i])));
  }
  EXPECT_LE(furthest, tolerance);
}

inline void expectSamePixels(const std::vector<uint8_t> &file, const std::string &expected,
                             int tolerance = 0) {
  ASSERT_FALSE(file.empty()) << "nothing was written";
  const auto decoded = codecs::decodeAny(file, CGImageGetDefaultDecodeLimits());
  ASSERT_EQ(decoded.fault, codecs::Fault::none);
  expectAlike(toRgba(decoded.value), expected, tolerance);
}

// A folder that goes with its test.
class Folder : public testing::Test {
 protected:
  void SetUp() override {
    folder_ = fs::temp_directory_path() / ("foreign_files_" + std::to_string(getpid()));
    fs::create_directories(folder_);
  }
  void TearDown() override { fs::remove_all(folder_); }
  std::string path(const std::string &name) const { return (folder_ / name).string(); }

 private:
  fs::path folder_;
};

}  // namespace foreign
