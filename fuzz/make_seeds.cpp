// Writes the fuzzers' seeds below the folder given; run by make_seeds.

#include <filesystem>
#include <fstream>
#include <string>

#include "../tests/media/jpeg_maker.h"
#include "../tests/media/png_maker.h"
#include "../tests/media/profiles.h"

namespace {

void save(const std::filesystem::path &path, const std::vector<uint8_t> &bytes) {
  std::filesystem::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char *>(bytes.data()), static_cast<long>(bytes.size()));
}

PngRecipe png(int colourType, int bitDepth, bool interlaced) {
  PngRecipe recipe;
  recipe.width = 9;
  recipe.height = 7;
  recipe.colourType = colourType;
  recipe.bitDepth = bitDepth;
  recipe.interlaced = interlaced;
  recipe.dotsPerMetre = 2835;
  for (size_t i = 0; i < 63 * recipe.channels(); ++i) {
    recipe.samples.push_back(static_cast<uint16_t>(i * 2654435761u >> 7 & ((1u << bitDepth) - 1)));
  }
  if (colourType == PNG_COLOR_TYPE_PALETTE) {
    for (unsigned i = 0; i < 1u << bitDepth; ++i) {
      recipe.palette.push_back(
          {static_cast<png_byte>(i * 37), static_cast<png_byte>(i * 91), static_cast<png_byte>(i)});
    }
    recipe.paletteAlpha = {255, 40};
  }
  return recipe;
}

void savePngs(const std::filesystem::path &folder) {
  const struct {
    const char *name;
    int type;
    std::vector<int> depths;
  } kinds[] = {{"grey", PNG_COLOR_TYPE_GRAY, {1, 2, 4, 8, 16}},
               {"rgb", PNG_COLOR_TYPE_RGB, {8, 16}},
               {"palette", PNG_COLOR_TYPE_PALETTE, {1, 4, 8}},
               {"grey-alpha", PNG_COLOR_TYPE_GRAY_ALPHA, {8, 16}},
               {"rgba", PNG_COLOR_TYPE_RGB_ALPHA, {8, 16}}};
  for (const auto &kind : kinds) {
    for (const int depth : kind.depths) {
      const std::string name = std::string(kind.name) + std::to_string(depth) + ".png";
      save(folder / name, makePng(png(kind.type, depth, depth == 8)));
    }
  }
  PngRecipe profiled = png(PNG_COLOR_TYPE_GRAY_ALPHA, 8, false);
  profiled.profile = greyProfile(1.8);
  save(folder / "grey-alpha-profile.png", makePng(profiled));
}

JpegRecipe jpeg(J_COLOR_SPACE input, J_COLOR_SPACE stored) {
  JpegRecipe recipe;
  recipe.width = 19;
  recipe.height = 13;
  recipe.input = input;
  recipe.stored = stored;
  recipe.densityUnit = 1;
  recipe.density = 72;
  for (size_t i = 0; i < 19 * 13 * recipe.channels(); ++i)
    recipe.samples.push_back(static_cast<uint8_t>(i * i / 40));
  return recipe;
}

void saveJpegs(const std::filesystem::path &folder) {
  save(folder / "grey.jpg", makeJpeg(jpeg(JCS_GRAYSCALE, JCS_GRAYSCALE)));
  save(folder / "rgb.jpg", makeJpeg(jpeg(JCS_RGB, JCS_RGB)));
  JpegRecipe recipe = jpeg(JCS_RGB, JCS_YCbCr);
  save(folder / "ycbcr.jpg", makeJpeg(recipe));
  recipe.restartInterval = 1;
  save(folder / "restarts.jpg", makeJpeg(recipe));
  recipe.restartInterval = 0;
  recipe.progressive = true;
  save(folder / "progressive.jpg", makeJpeg(recipe));
  recipe.progressive = false;
  recipe.arithmetic = true;
  save(folder / "arithmetic.jpg", makeJpeg(recipe));
  JpegRecipe ink = jpeg(JCS_CMYK, JCS_YCCK);
  ink.adobeMarker = true;
  save(folder / "ycck.jpg", makeJpeg(ink));
  save(folder / "cmyk.jpg", makeJpeg(jpeg(JCS_CMYK, JCS_CMYK)));
  ink.profile = blackInkProfile();
  save(folder / "ycck-profile.jpg", makeJpeg(ink));
}

}  // namespace

int main(int argc, char **argv) {
  if (argc != 2) return 2;
  const std::filesystem::path seeds = argv[1];
  savePngs(seeds / "png");
  saveJpegs(seeds / "jpeg");
  save(seeds / "load" / "rgba.png", makePng(png(PNG_COLOR_TYPE_RGB_ALPHA, 8, true)));
  save(seeds / "load" / "palette.png", makePng(png(PNG_COLOR_TYPE_PALETTE, 4, false)));
  save(seeds / "load" / "grey.png", makePng(png(PNG_COLOR_TYPE_GRAY, 8, false)));
  save(seeds / "load" / "ycbcr.jpg", makeJpeg(jpeg(JCS_RGB, JCS_YCbCr)));
  save(seeds / "load" / "grey.jpg", makeJpeg(jpeg(JCS_GRAYSCALE, JCS_GRAYSCALE)));
}
