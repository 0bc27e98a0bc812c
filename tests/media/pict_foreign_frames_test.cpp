// Frames that ffmpeg compresses, as images inside pictures, show what it shows itself.

#include <ostream>

#include "compressed_maker.h"
#include "foreign_programs.h"

namespace codecs::pict {
namespace {

struct Frame {
  const char *encoder;
  const char *pixels;  // as the encoder calls them
  const char *codec;
  int depth;
};

void PrintTo(const Frame &frame, std::ostream *out) {
  *out << frame.encoder << " of " << frame.pixels << ", depth " << frame.depth;
}

constexpr int kWidth = 64, kHeight = 48;

class PictForeignFrames : public foreign::Folder, public testing::WithParamInterface<Frame> {
 protected:
  void SetUp() override {
    Folder::SetUp();
    if (!foreign::hasFfmpeg()) GTEST_SKIP() << "ffmpeg is not installed";
  }
};

TEST_P(PictForeignFrames, ShowTheSamePixels) {
  const Frame &frame = GetParam();
  const std::string quiet = "ffmpeg -hide_banner -loglevel fatal -nostdin -y ";
  const std::string movie = path("frame.mov"), data = path("frame.data"), shown = path("frame.rgb");
  foreign::outputOf(quiet + "-f lavfi -i testsrc2=s=64x48 -frames:v 1 -vf format=" + frame.pixels + " -c:v " +
                    frame.encoder + " " + movie + " 2>&1");
  foreign::outputOf(quiet + "-i " + movie + " -map 0:0 -c copy -f data " + data + " 2>&1");
  foreign::outputOf(quiet + "-i " + movie + " -f rawvideo -pix_fmt rgb24 " + shown + " 2>&1");
  const auto expected = foreign::bytesOfFile(shown);
  if (expected.size() != size_t{3} * kWidth * kHeight) GTEST_SKIP() << "ffmpeg does not write this";

  PictureMaker picture(kHeight, kWidth);
  const int paletteId = frame.depth > 32 ? frame.depth : -1;
  addCompressed(picture, {frame.codec, kWidth, kHeight, frame.depth, paletteId}, foreign::bytesOfFile(data),
                {{0, 0, kWidth, kHeight}});
  const auto decoded = decodeBytes(picture.end());
  ASSERT_EQ(decoded.fault, Fault::none);
  for (uint32_t i = 0; i < kWidth * kHeight; ++i) {
    const Pixel pixel = opaque(expected[3 * i], expected[3 * i + 1], expected[3 * i + 2]);
    ASSERT_EQ(pixelAt(decoded.value, i % kWidth, i / kWidth), pixel) << i % kWidth << ", " << i / kWidth;
  }
}

std::string nameOf(const testing::TestParamInfo<Frame> &frame) {
  return std::string(frame.param.encoder).append(1, '_').append(frame.param.pixels);
}

INSTANTIATE_TEST_SUITE_P(
    Ffmpeg, PictForeignFrames,
    testing::Values(Frame{"qtrle", "rgb24", "rle ", 24}, Frame{"qtrle", "rgb555be", "rle ", 16},
                    Frame{"qtrle", "argb", "rle ", 32}, Frame{"qtrle", "gray", "rle ", 40},
                    Frame{"cinepak", "rgb24", "cvid", 24}, Frame{"cinepak", "gray", "cvid", 40},
                    Frame{"rpza", "rgb555le", "rpza", 16}),
    nameOf);

}  // namespace
}  // namespace codecs::pict
