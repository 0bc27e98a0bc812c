// Files of three more programs read to the pixels that they see themselves, and files of ours are read by
// them.

#include <cstring>

#include "foreign_programs.h"

namespace {

using foreign::expectSamePixels;
using foreign::outputOf;

class GraphicsMagickFiles : public foreign::Folder {
 protected:
  void SetUp() override {
    Folder::SetUp();
    if (!foreign::hasGraphicsMagick()) GTEST_SKIP() << "GraphicsMagick is not installed";
  }

  void expectAlike(const std::string &name, const std::string &arguments, int tolerance = 0) const {
    SCOPED_TRACE(name + " " + arguments);
    outputOf("gm convert " + arguments + " '" + path(name) + "' 2>&1");
    expectSamePixels(foreign::bytesOfFile(path(name)), foreign::graphicsMagickSees(path(name)), tolerance);
  }
};

TEST_F(GraphicsMagickFiles, ReadToTheSamePixels) {
  expectAlike("a.bmp", "rose:");
  expectAlike("b.bmp", "rose: -type Palette -colors 30");
  expectAlike("c.bmp", "rose: -monochrome");
  expectAlike("a.tga", "rose:");
  expectAlike("b.tga", "rose: -compress RLE");
  expectAlike("c.tga", "rose: -type Palette -colors 30");
  expectAlike("a.gif", "rose:");
  expectAlike("b.gif", "rose: -interlace Line -transparent black");
  expectAlike("a.tif", "rose: -compress LZW");
  expectAlike("b.tif", "rose: -compress Zip -type Grayscale");
  expectAlike("c.tif", "rose: -monochrome -compress Group4");
  expectAlike("a.webp", "rose:");
  expectAlike("b.webp", "rose: -define webp:lossless=true");
}

class FfmpegFiles : public foreign::Folder {
 protected:
  void SetUp() override {
    Folder::SetUp();
    if (!foreign::hasFfmpeg()) GTEST_SKIP() << "ffmpeg is not installed";
  }

  void expectAlike(const std::string &name, const std::string &arguments, int tolerance = 0) const {
    SCOPED_TRACE(name + " " + arguments);
    outputOf("ffmpeg -v error -f lavfi -i testsrc2=size=83x61 -frames:v 1 " + arguments + " -y '" +
             path(name) + "' 2>&1");
    expectSamePixels(foreign::bytesOfFile(path(name)), foreign::ffmpegSees(path(name)), tolerance);
  }
};

TEST_F(FfmpegFiles, BmpsReadToTheSamePixels) {
  expectAlike("a.bmp", "-pix_fmt bgr24");
  expectAlike("b.bmp", "-pix_fmt bgra");
  expectAlike("c.bmp", "-pix_fmt rgb565le", 1);  // it repeats bits where we round
  expectAlike("d.bmp", "-pix_fmt gray");
  expectAlike("e.bmp", "-pix_fmt monob");
}

TEST_F(FfmpegFiles, TgasReadToTheSamePixels) {
  expectAlike("a.tga", "-pix_fmt bgr24");
  expectAlike("b.tga", "-pix_fmt bgra -rle 0");
  expectAlike("c.tga", "-pix_fmt gray");
  expectAlike("d.tga", "-pix_fmt rgb555le", 1);
  expectAlike("e.tga", "-pix_fmt pal8");
}

TEST_F(FfmpegFiles, OthersReadToTheSamePixels) {
  expectAlike("a.gif", "-pix_fmt rgb8");
  expectAlike("a.tif", "-pix_fmt rgb24 -compression_algo lzw");
  expectAlike("b.tif", "-pix_fmt rgba -compression_algo deflate");
  expectAlike("c.tif", "-pix_fmt gray -compression_algo packbits");
  expectAlike("d.tif", "-pix_fmt pal8");
  expectAlike("a.webp", "-pix_fmt bgra -lossless 1");
}

class TiffTools : public foreign::Folder {
 protected:
  void SetUp() override {
    Folder::SetUp();
    convert_ = foreign::findConvert();
    if (!foreign::isThere("tiffcp -h 2>&1 | grep -o 'tiffcp \\[options\\]' | head -1; true", "tiffcp"))
      GTEST_SKIP() << "libtiff's tools are not installed";
    if (convert_.empty()) GTEST_SKIP() << "ImageMagick's convert is not installed";
  }

  // A picture in every arrangement is the same picture.
  void expectCopiesAlike(const std::string &arguments, const std::vector<std::string> &options,
                         int tolerance) {
    outputOf(convert_ + " " + arguments + " '" + path("from.tif") + "' 2>&1");
    const std::string expected = foreign::convertSees(convert_, path("from.tif"));
    for (const std::string &option : options) {
      SCOPED_TRACE(arguments + ", tiffcp " + option);
      outputOf("tiffcp " + option + " '" + path("from.tif") + "' '" + path("to.tif") + "' 2>&1");
      expectSamePixels(foreign::bytesOfFile(path("to.tif")), expected, tolerance);
      removeFile("to.tif");
    }
  }
  void removeFile(const std::string &name) const { foreign::fs::remove(path(name)); }

  std::string convert_;
};

TEST_F(TiffTools, CopyInEveryArrangement) {
  const std::vector<std::string> any{"-c none",
                                     "-c lzw:2",
                                     "-c zip:2 -r 7",
                                     "-c packbits",
                                     "-c zstd",
                                     "-p separate -c lzw",
                                     "-B -c none",
                                     "-L -c zip",
                                     "-8 -c lzw",
                                     "-t -w 32 -l 16 -c zip",
                                     "-t -w 16 -l 16 -p separate -c none",
                                     "-f lsb2msb -c none"};
  expectCopiesAlike("rose:", any, 0);
  expectCopiesAlike("rose: -colorspace gray", any, 0);
  expectCopiesAlike("rose: -alpha set -channel A -fx 'i/w' +channel -depth 8", any, 0);
}

// Cut to 8 bits there and rounded here.
TEST_F(TiffTools, CopySixteenBits) {
  expectCopiesAlike("rose: -resize 90% -depth 16", {"-c none -B", "-c zip:2", "-t -w 16 -l 16"}, 1);
}

TEST_F(TiffTools, CopyFaxes) {
  expectCopiesAlike("rose: -monochrome -depth 1 -compress None",
                    {"-c g3", "-c g3:2d", "-c g3:fill", "-c g4", "-c g4 -f lsb2msb", "-c packbits",
                     "-c none -t -w 16 -l 16"},
                    0);
}

// Loss comes with the format; the other program reads the same file.
TEST_F(TiffTools, CopyJpegs) {
  outputOf(convert_ + " rose: '" + path("from.tif") + "'");
  for (const char *option : {"-c jpeg:90 -r 16", "-c jpeg:r:90 -r 16", "-c jpeg:80 -t -w 32 -l 32"}) {
    SCOPED_TRACE(option);
    outputOf("tiffcp " + std::string(option) + " '" + path("from.tif") + "' '" + path("to.tif") + "' 2>&1");
    expectSamePixels(foreign::bytesOfFile(path("to.tif")), foreign::convertSees(convert_, path("to.tif")), 2);
  }
}

// Soft colours, every alpha where there is one.
std::vector<uint8_t> ourFile(const codecs::CodecRecord &codec, codecs::RowLayout layout, bool premultiplied) {
  codecs::EncodeSource source;
  source.width = 83;
  source.height = 61;
  source.layout = layout;
  source.premultiplied = premultiplied;
  source.context = &source;
  source.copyRow = [](void *context, uint32_t y, uint8_t *out) noexcept {
    const auto &from = *static_cast<codecs::EncodeSource *>(context);
    for (uint32_t x = 0; x < from.width; ++x, out += bytesPerPixel(from.layout)) {
      out[0] = static_cast<uint8_t>(x * 3);
      if (from.layout == codecs::RowLayout::grey) continue;
      const uint8_t colours[4] = {out[0], static_cast<uint8_t>(y * 4), static_cast<uint8_t>(x + y),
                                  static_cast<uint8_t>(x * y)};
      std::memcpy(out, colours, 4);
      if (from.layout == codecs::RowLayout::rgbx) out[3] = 255;
      if (!from.premultiplied) continue;
      for (int c = 0; c < 3; ++c) out[c] = static_cast<uint8_t>(out[c] * out[3] / 255);
    }
    return true;
  };
  std::vector<uint8_t> file;
  EXPECT_EQ(codec.encode(source, file), codecs::Fault::none);
  return file;
}

class OurFiles : public foreign::Folder {
 protected:
  // What we read ourselves is compared with what the other program makes of the file.
  template <class Sees>
  void expectSeen(const codecs::CodecRecord &codec, codecs::RowLayout layout, const char *name, Sees &&sees,
                  bool premultiplied = false, int tolerance = 0) const {
    SCOPED_TRACE(testing::Message() << name << ", layout " << static_cast<int>(layout));
    const std::vector<uint8_t> file = ourFile(codec, layout, premultiplied);
    std::ofstream(path(name), std::ios::binary)
        .write(reinterpret_cast<const char *>(file.data()), static_cast<std::streamsize>(file.size()));
    expectSamePixels(file, sees(path(name)), tolerance);
  }

  template <class Sees>
  void expectAllSeen(Sees &&sees) const {
    for (const auto layout : {codecs::RowLayout::grey, codecs::RowLayout::rgbx, codecs::RowLayout::rgba}) {
      expectSeen(codecs::kPngCodec, layout, "a.png", sees);
      expectSeen(codecs::kTiffCodec, layout, "a.tif", sees);
    }
    expectSeen(codecs::kPictCodec, codecs::RowLayout::rgbx, "a.pct", sees);
  }
};

TEST_F(OurFiles, AreReadByImageMagick) {
  const std::string convert = foreign::findConvert();
  if (convert.empty()) GTEST_SKIP() << "ImageMagick's convert is not installed";
  const auto sees = [&](const std::string &file) { return foreign::convertSees(convert, file); };
  expectAllSeen(sees);
  expectSeen(codecs::kTiffCodec, codecs::RowLayout::rgba, "b.tif", sees, true, 1);
}

TEST_F(OurFiles, AreReadByGraphicsMagick) {
  if (!foreign::hasGraphicsMagick()) GTEST_SKIP() << "GraphicsMagick is not installed";
  expectAllSeen(foreign::graphicsMagickSees);
}

TEST_F(OurFiles, AreReadByFfmpeg) {
  if (!foreign::hasFfmpeg()) GTEST_SKIP() << "ffmpeg is not installed";
  expectAllSeen(foreign::ffmpegSees);
}

}  // namespace
