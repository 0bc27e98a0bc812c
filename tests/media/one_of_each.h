// A small file of every format, with a profile where the format has one, and with alpha where it can.
#pragma once

#include "bmp_maker.h"
#include "compressed_maker.h"
#include "gif_maker.h"
#include "jpeg_maker.h"
#include "png_maker.h"
#include "profiles.h"
#include "tga_maker.h"
#include "tiff_maker.h"
#include "webp_maker.h"

struct NamedFile {
  const char *name;
  std::vector<uint8_t> bytes;
};

namespace one_of_each {

constexpr uint32_t kWidth = 9;
constexpr uint32_t kHeight = 7;

// Values that are neither all alike nor without any order.
template <class Number>
std::vector<Number> values(size_t count, unsigned most) {
  std::vector<Number> made;
  for (size_t i = 0; i < count; ++i) made.push_back(static_cast<Number>(i / 3 * 2654435761u >> 5 & most));
  return made;
}

inline std::vector<uint8_t> pngFile() {
  PngRecipe recipe{.width = kWidth, .height = kHeight, .colourType = PNG_COLOR_TYPE_RGBA};
  recipe.samples = values<uint16_t>(size_t{4} * kWidth * kHeight, 255);
  recipe.profile = swappedRgbProfile();
  return makePng(recipe);
}
inline std::vector<uint8_t> jpegFile() {
  JpegRecipe recipe{.width = kWidth, .height = kHeight};
  recipe.samples = values<uint8_t>(size_t{3} * kWidth * kHeight, 255);
  recipe.profile = swappedRgbProfile();
  return makeJpeg(recipe);
}
inline std::vector<uint8_t> tiffFile(uint16_t compression) {
  TiffRecipe recipe{.width = kWidth, .height = kHeight, .samplesPerPixel = 4, .photometric = PHOTOMETRIC_RGB};
  recipe.compression = compression;
  recipe.extraSamples = {EXTRASAMPLE_UNASSALPHA};
  recipe.orientation = ORIENTATION_RIGHTBOT;
  recipe.samples = values<uint16_t>(size_t{4} * kWidth * kHeight, 255);
  recipe.profile = swappedRgbProfile();
  return makeTiff(recipe);
}
inline std::vector<uint8_t> gifFile() {
  GifRecipe recipe{.canvasWidth = kWidth, .canvasHeight = kHeight, .width = kWidth, .height = kHeight};
  recipe.transparent = 2;
  recipe.palette = values<uint32_t>(16, 0xFFFFFF);
  recipe.samples = values<uint8_t>(size_t{kWidth} * kHeight, 15);
  recipe.profile = swappedRgbProfile();
  return makeGif(recipe);
}
inline std::vector<uint8_t> bmpFile() {
  BmpRecipe recipe{.width = kWidth, .height = kHeight, .bits = 32, .headerBytes = 124, .compression = 3};
  recipe.masks = {0xFF0000, 0xFF00, 0xFF, 0xFF000000};
  recipe.samples = values<uint32_t>(size_t{kWidth} * kHeight, 0xFFFFFFFF);
  recipe.profile = swappedRgbProfile();
  return makeBmp(recipe);
}
inline std::vector<uint8_t> bmpRunsFile() {
  BmpRecipe recipe{.width = 2, .height = 2, .bits = 8, .compression = 1, .palette = {0, 0xFF0000}};
  recipe.runs = {2, 1, 0, 0, 2, 0, 0, 1};
  return makeBmp(recipe);
}
inline std::vector<uint8_t> tgaFile() {
  TgaRecipe recipe{
      .width = kWidth, .height = kHeight, .type = 9, .bits = 8, .descriptor = 0x18, .entryBits = 32};
  recipe.palette = values<uint32_t>(256, 0xFFFFFFFF);
  recipe.samples = values<uint32_t>(size_t{kWidth} * kHeight, 255);
  return makeTga(recipe);
}
inline std::vector<uint8_t> webpFile(bool lossless) {
  WebpRecipe recipe{.width = kWidth, .height = kHeight, .lossless = lossless};
  recipe.samples = values<uint32_t>(size_t{kWidth} * kHeight, 0xFFFFFFFF);
  recipe.profile = swappedRgbProfile();
  return makeWebp(recipe);
}
inline std::vector<uint8_t> pictFile() {
  codecs::pict::PictureMaker picture(kHeight, kWidth);
  picture.op(0x0051).box(1, 1, 6, 8);
  codecs::pict::addCompressed(picture, {"gif ", kWidth, kHeight}, gifFile(), {{0, 0, kWidth, kHeight}});
  return picture.end();
}

}  // namespace one_of_each

inline std::vector<NamedFile> oneOfEach() {
  using namespace one_of_each;
  return {{"PNG", pngFile()},
          {"JPEG", jpegFile()},
          {"TIFF", tiffFile(COMPRESSION_ADOBE_DEFLATE)},
          {"TIFF of LZW", tiffFile(COMPRESSION_LZW)},
          {"GIF", gifFile()},
          {"BMP", bmpFile()},
          {"BMP of runs", bmpRunsFile()},
          {"TGA", tgaFile()},
          {"WebP, lossless", webpFile(true)},
          {"WebP, lossy", webpFile(false)},
          {"PICT", pictFile()}};
}
