// Files written by another program read to the pixels that it reads itself.

#include "foreign_programs.h"

namespace {

using foreign::expectSamePixels;

class ForeignFiles : public foreign::Folder, public testing::WithParamInterface<const char *> {
 protected:
  void SetUp() override {
    Folder::SetUp();
    convert_ = foreign::findConvert();
    if (convert_.empty()) GTEST_SKIP() << "ImageMagick's convert is not installed";
  }

  std::vector<uint8_t> written(const std::string &arguments, const std::string &name) const {
    foreign::outputOf(convert_ + " " + arguments + " '" + path(name) + "' 2>&1");
    return foreign::bytesOfFile(path(name));
  }
  std::string seen(const std::string &name) const { return foreign::convertSees(convert_, path(name)); }

  // Each of the arguments, written in that format and read again by both.
  void expectAllAlike(const std::string &extension, const std::vector<std::string> &arguments,
                      int tolerance = 0) const {
    int number = 0;
    for (const std::string &argument : arguments) {
      SCOPED_TRACE(argument);
      const std::string name = std::to_string(number++) + "." + extension;
      const auto file = written(std::string(GetParam()) + " " + argument, name);
      expectSamePixels(file, seen(name), tolerance);
    }
  }

  std::string convert_;
};

constexpr const char *kHalfTransparent = "-alpha set -channel A -fx 'i/w' +channel";
constexpr const char *kHoles = "-alpha set -channel A -fx 'i%7<3' +channel";

TEST_P(ForeignFiles, PngsReadToTheSamePixels) {
  expectAllAlike(
      "png", {"", "-depth 16", "-colors 16 -type Palette", "-interlace PNG",
              "-alpha set -channel A -evaluate multiply 0.5 +channel", "-colorspace gray", "-threshold 50%"});
}

// The other program cuts 16 bits to 8 where we round.
TEST_P(ForeignFiles, SixteenBitGreyReadsToTheNearestByte) {
  const auto file = written(std::string(GetParam()) + " -colorspace gray -depth 16", "grey16.png");
  expectSamePixels(file, seen("grey16.png"), 1);
}

TEST_P(ForeignFiles, JpegsReadToTheSamePixels) {
  expectAllAlike("jpg", {"", "-interlace JPEG", "-sampling-factor 4:4:4",
                         "-sampling-factor 4:2:2 -quality 60", "-colorspace gray"});
}

// Like other programs it counts rows from the corner that the file names only when it is asked to.
TEST_P(ForeignFiles, TgasReadToTheSamePixels) {
  expectAllAlike("tga",
                 {"", "-compress RLE", kHalfTransparent, std::string(kHalfTransparent) + " -compress RLE",
                  "-colorspace gray", "-colors 16 -type Palette -orient TopLeft", "-orient TopLeft"});
}

TEST_P(ForeignFiles, BmpsReadToTheSamePixels) {
  expectAllAlike("bmp", {"", kHalfTransparent, "-type Palette -colors 16", "-type Palette -colors 200",
                         "-type Palette -compress RLE", "-monochrome"});
  expectAllAlike("bmp2", {"", "-type Palette -colors 16"});
  expectAllAlike("bmp3", {"", "-type Palette", "-monochrome"});
}

TEST_P(ForeignFiles, GifsReadToTheSamePixels) {
  expectAllAlike("gif", {"", "-interlace GIF", kHoles, std::string(kHoles) + " -interlace GIF", "-colors 5",
                         "-monochrome"});
}

TEST_P(ForeignFiles, WebpsReadToTheSamePixels) {
  expectAllAlike("webp", {"", "-define webp:lossless=true", kHalfTransparent,
                          std::string(kHalfTransparent) + " -define webp:lossless=true", "-quality 20"});
}

TEST_P(ForeignFiles, TiffsReadToTheSamePixels) {
  expectAllAlike("tif",
                 {"", "-compress LZW", "-compress Zip", "-compress RLE", "-endian MSB", "-interlace Plane",
                  "-define tiff:tile-geometry=32x32", "-colorspace gray", "-monochrome -compress Group4",
                  "-monochrome -compress Fax", std::string(kHalfTransparent) + " -compress Zip"});
}

// Entries of 16 bits: the other program cuts them to 8 where we round.
TEST_P(ForeignFiles, PalettesOfTiffsReadToTheNearestByte) {
  expectAllAlike("tif", {"-type Palette -colors 12", "-type Palette -colors 200 -compress Zip"}, 1);
}

INSTANTIATE_TEST_SUITE_P(BuiltInPictures, ForeignFiles,
                         testing::Values("rose:", "logo: -sample 20%", "wizard: -sample 20%"),
                         [](const auto &picture) {
                           const std::string name = picture.param;
                           return name.substr(0, name.find(':'));
                         });

}  // namespace
