// Every format of whole files that a picture may hold an image in.

#include <gtest/gtest.h>

#include "compressed_maker.h"
#include "gif_maker.h"
#include "jpeg_maker.h"
#include "png_maker.h"
#include "tga_maker.h"
#include "tiff_maker.h"

namespace codecs::pict {
namespace {

using Vector = std::vector<uint8_t>;

// A red pixel, and a green one beside it.
std::vector<std::pair<const char *, Vector>> redAndGreen() {
  TiffRecipe tiff{.width = 2, .height = 1, .samplesPerPixel = 3, .photometric = PHOTOMETRIC_RGB};
  tiff.samples = {255, 0, 0, 0, 255, 0};
  const GifRecipe gif{.canvasWidth = 2,
                      .canvasHeight = 1,
                      .width = 2,
                      .height = 1,
                      .palette = {0x00FF00, 0xFF0000},
                      .samples = {1, 0}};
  return {{"png ", makePng({.width = 2, .height = 1, .samples = {255, 0, 0, 0, 255, 0}})},
          {"tiff", makeTiff(tiff)},
          {"gif ", makeGif(gif)},
          {"tga ", makeTga({.width = 2, .height = 1, .samples = {0xFF0000, 0x00FF00}})}};
}

TEST(PictFormats, ImagesInsideAreDecodedByTheCodecOfTheirFormat) {
  for (const auto &[codec, file] : redAndGreen()) {
    PictureMaker picture(1, 3);
    addCompressed(picture, {codec, 2, 1}, file, {{0, 0, 2, 1}});
    const auto decoded = decodeBytes(picture.end());
    ASSERT_EQ(decoded.fault, Fault::none) << codec;
    EXPECT_EQ(gridOf(decoded.value), (Grid{"RG."})) << codec;
  }
}

TEST(PictFormats, ImagesInsideThatAreCutOffCutOffThePicture) {
  for (const auto &[codec, file] : redAndGreen()) {
    PictureMaker picture(1, 3);
    addCompressed(picture, {codec, 2, 1}, Vector(file.begin(), file.begin() + 20), {{0, 0, 2, 1}});
    EXPECT_EQ(decodeBytes(picture.end()).fault, Fault::truncated) << codec;
  }
}

TEST(PictFormats, TransparentPixelsOfAnImageInsideLetThePaperThrough) {
  const GifRecipe gif{.canvasWidth = 2,
                      .canvasHeight = 1,
                      .width = 2,
                      .height = 1,
                      .transparent = 1,
                      .palette = {0xFF0000, 0x0000FF},
                      .samples = {0, 1}};
  PictureMaker picture(1, 2);
  addCompressed(picture, {"gif ", 2, 1}, makeGif(gif), {{0, 0, 2, 1}});
  const auto decoded = decodeBytes(picture.end());
  ASSERT_EQ(decoded.fault, Fault::none);
  EXPECT_EQ(gridOf(decoded.value), (Grid{"R."}));
}

}  // namespace
}  // namespace codecs::pict
