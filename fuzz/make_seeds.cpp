// Writes the fuzzers' seeds below the folder given; run by make_seeds.

#include <filesystem>
#include <fstream>
#include <string>

#include "../tests/media/jpeg_maker.h"
#include "../tests/media/picture_maker.h"
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

using codecs::pict::Box;
using codecs::pict::PictureMaker;

constexpr Box kBox8x4{0, 0, 8, 4};

std::vector<uint8_t> bitmapPicture(int opcode, int pixelSize, int packType, int components) {
  PictureMaker picture(12, 12);
  picture.op(0x0001).u16({10}).box(0, 0, 9, 11);
  picture.op(opcode);
  const bool isDirect = opcode >= 0x9A;
  if (isDirect) picture.u32({0xFF});
  addMap(picture, {8 * pixelSize / 8, kBox8x4, packType, pixelSize, components});
  if (!isDirect) picture.u32({0}).u16({0, 1, 0, -1, 0, 0, 1, 0, 0, -1});
  addBoxes(picture, kBox8x4, {1, 1, 11, 7}, packType == 1 ? 36 : 0);
  if (opcode & 1) picture.u16({28}).box(1, 1, 7, 9).u16({1, 1, 9, 0x7FFF, 7, 1, 9, 0x7FFF, 0x7FFF});
  const bool isRaw = pixelSize < 8 || packType == 1 || packType == 2;
  for (unsigned y = 0; y < 4; ++y) {
    if (isRaw) {
      for (unsigned i = 0; i < (packType == 2 ? 24u : static_cast<unsigned>(pixelSize)); ++i)
        picture.u8({i * 30 + y});
    } else {
      picture.u8({5, 0xFD, y, 0x01, 9, 200});
    }
  }
  return picture.end();
}

std::vector<uint8_t> drawnPicture() {
  PictureMaker picture(40, 40);
  picture.header(-2, 144, 0, 0, 40, 40).op(0x001C);
  picture.op(0x0007).u16({2, 3});
  picture.op(0x000B).u16({6, 8});
  picture.op(0x0002).u32({0xAA55AA55, 0x11223344});
  picture.op(0x0013).u16({2}).u32({0, 0}).u16({-1, 300, 0});
  picture.op(0x0014).u16({1}).u32({0, 0});
  addMap(picture, {2, {0, 0, 2, 2}, 0, 8, 1});
  picture.u32({0}).u16({0x8000 - 0x10000, 1, 0, -1, 0, 0, 0, 0, 0, -1}).u8({0, 1, 1, 0});
  picture.op(0x000C).u16({-3, 2});
  for (int kind = 0x30; kind <= 0x50; kind += 0x10) {
    for (int verb = 0; verb < 5; ++verb) picture.op(kind + verb).box(verb, kind / 8, 20 + verb, 30);
    picture.op(kind + 9);
  }
  for (int verb = 0; verb < 5; ++verb)
    picture.op(0x60 + verb).box(3, 4, 25, 35).u16({-30 * verb, 100 + 70 * verb});
  picture.op(0x0069).u16({5, 300});
  picture.op(0x0070).u16({26}).box(0, 0, 30, 30).u16({0, 0, 30, 5, 8, 30, 20, 2});
  picture.op(0x007C);
  picture.op(0x0080).u16({36}).box(0, 0, 20, 20);
  picture.u16({0, 0, 10, 0x7FFF, 10, 10, 20, 0x7FFF, 20, 0, 20, 0x7FFF, 0x7FFF});
  picture.op(0x008B);
  picture.op(0x0020).u16({0, 0, 30, 39});
  picture.op(0x0023).u8({250, 9});
  picture.op(0x0008).u16({10});
  picture.op(0x0021).u16({39, 0});
  return picture.end();
}

std::vector<uint8_t> textPicture() {
  PictureMaker picture(40, 90);
  picture.op(0x002C).u16({10, 20}).u8({5}).text("Times").u8({0, 0});
  picture.op(0x0003).u16({20});
  picture.op(0x0004).u8({31});
  picture.op(0x0006).u16({2, 0});
  picture.op(0x000D).u16({18});
  picture.op(0x0010).u16({3, 2, 2, 2});
  picture.op(0x0028).u16({20, 5}).u8({5}).text("Text\xA5");
  picture.op(0x0029).u8({9, 2}).text("ab");
  picture.op(0x002B).u8({3, 15, 1}).text("c");
  return picture.end();
}

std::vector<uint8_t> compressedPicture(const char *codec, int depth, const std::vector<uint8_t> &data) {
  codecs::pict::ByteMaker out;
  out.u16({0}).u32({0x10000, 0, 0, 0, 0x10000, 0}).u16({2, 0, 3, 0}).u32({0x40000000, 0}).box(0, 0, 0, 0);
  out.u16({64}).box(0, 0, 4, 8).u32({0, 0});
  out.u32({86}).text(codec).u32({0, 0, 0, 0, 0, 0}).u16({8, 4}).u32({72 << 16, 72 << 16, 0}).u16({1});
  out.add(std::vector<uint8_t>(32, 0)).u16({depth, -1}).add(data);
  PictureMaker picture(12, 16);
  picture.op(0x8200).u32({static_cast<uint32_t>(out.bytes.size())}).add(out.bytes);
  picture.op(0x0007).u16({174, 2}).u16({0});
  return picture.end();
}

std::vector<uint8_t> mattePicture() {
  codecs::pict::ByteMaker out;
  out.u16({0}).u32({0x10000, 0, 0, 0, 0x10000, 0, 0, 0, 0x40000000, 86 + 32}).box(0, 0, 4, 8);
  out.u32({86}).text("raw ").u32({0, 0, 0, 0, 0, 0}).u16({8, 4}).u32({72 << 16, 72 << 16, 0}).u16({1});
  out.add(std::vector<uint8_t>(32, 0)).u16({40, 40}).add(std::vector<uint8_t>(32, 100));
  PictureMaker picture(4, 8);
  picture.op(0x8201).u32({static_cast<uint32_t>(out.bytes.size())}).add(out.bytes);
  const auto bitmap = bitmapPicture(0x98, 1, 0, 1);
  picture.add({bitmap.begin() + 26, bitmap.end()});
  return picture.bytes;
}

void savePictures(const std::filesystem::path &folder) {
  for (const int size : {1, 2, 4, 8}) {
    save(folder / ("indexed" + std::to_string(size) + ".pict"), bitmapPicture(0x98, size, 0, 1));
    save(folder / ("region" + std::to_string(size) + ".pict"), bitmapPicture(0x91, size, 0, 1));
  }
  for (int type = 0; type <= 4; ++type)
    save(folder / ("direct32-" + std::to_string(type) + ".pict"),
         bitmapPicture(0x9A, 32, type, 3 + type / 4));
  save(folder / "direct16.pict", bitmapPicture(0x9B, 16, 3, 3));
  save(folder / "drawn.pict", drawnPicture());
  save(folder / "text.pict", textPicture());
  save(folder / "matte.pict", mattePicture());
  const std::vector<uint8_t> rle{0,    0, 0, 0, 0,    8, 0, 0, 0, 0, 0, 2, 0, 0,    1,
                                 0xFC, 9, 9, 9, 0xFF, 1, 2, 1, 2, 3, 4, 5, 6, 0xFF, 0};
  save(folder / "raw.pict", compressedPicture("raw ", 24, std::vector<uint8_t>(96, 77)));
  save(folder / "rle.pict", compressedPicture("rle ", 24, rle));
  save(folder / "png.pict", compressedPicture("png ", 24, makePng(png(PNG_COLOR_TYPE_RGB_ALPHA, 8, false))));
}

}  // namespace

int main(int argc, char **argv) {
  if (argc != 2) return 2;
  const std::filesystem::path seeds = argv[1];
  savePngs(seeds / "png");
  saveJpegs(seeds / "jpeg");
  savePictures(seeds / "pict");
  save(seeds / "load" / "rgba.png", makePng(png(PNG_COLOR_TYPE_RGB_ALPHA, 8, true)));
  save(seeds / "load" / "palette.png", makePng(png(PNG_COLOR_TYPE_PALETTE, 4, false)));
  save(seeds / "load" / "grey.png", makePng(png(PNG_COLOR_TYPE_GRAY, 8, false)));
  save(seeds / "load" / "ycbcr.jpg", makeJpeg(jpeg(JCS_RGB, JCS_YCbCr)));
  save(seeds / "load" / "drawn.pict", drawnPicture());
  save(seeds / "load" / "grey.jpg", makeJpeg(jpeg(JCS_GRAYSCALE, JCS_GRAYSCALE)));
}
