// Writes the fuzzers' seeds below the folder given; run by make_seeds.

#include <filesystem>
#include <fstream>
#include <string>

#include "../tests/media/bmp_maker.h"
#include "../tests/media/gif_maker.h"
#include "../tests/media/jpeg_maker.h"
#include "../tests/media/picture_maker.h"
#include "../tests/media/png_maker.h"
#include "../tests/media/profiles.h"
#include "../tests/media/tga_maker.h"
#include "../tests/media/tiff_maker.h"
#include "../tests/media/webp_maker.h"

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
using codecs::pict::ByteMaker;
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
  const bool isPlain32 = pixelSize == 32 && packType == 0;
  const bool isRaw = pixelSize < 8 || packType == 1 || packType == 2 || isPlain32;
  for (unsigned y = 0; y < 4; ++y) {
    if (isRaw) {
      for (unsigned i = 0; i < (packType == 2 || isPlain32 ? 24u : static_cast<unsigned>(pixelSize)); ++i)
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

std::vector<uint8_t> textPicture(int mode = 1) {
  PictureMaker picture(40, 90);
  picture.op(0x0005).u16({mode});
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
  save(folder / "rpza.pict",
       compressedPicture("rpza", 16, {0xE1, 0, 0, 9, 0xC0, 0x7C, 0, 0, 31, 0x1B, 0xE4, 0x1B, 0xE4, 0x80}));
  ByteMaker vectors;
  vectors.u8({0, 0, 0, 0}).u16({8, 4, 1, 0x1000, 12 + 16 + 12 + 13, 0, 0, 4, 8});
  vectors.u16({0x2200, 16}).u8({255, 255, 255, 255, 0, 0, 0, 255, 0, 255, 9, 200});
  vectors.u16({0x2400, 12}).u8({0, 0, 0, 0, 255, 0, 0, 255});
  vectors.u16({0x3000, 13}).u32({0x40000000}).u8({1, 0, 1, 1, 0});
  save(folder / "cvid.pict", compressedPicture("cvid", 24, vectors.bytes));
  save(folder / "smc.pict",
       compressedPicture("smc ", 8, {0, 0, 0, 14, 0xA0, 0, 1, 2, 3, 0x1B, 0x1B, 0x1B, 0x1B, 0x20}));
  save(folder / "smc-octets.pict",
       compressedPicture("smc ", 8,
                         {0, 0, 0, 22, 0xC0, 0, 1, 2, 3, 4, 5, 6, 7, 5, 0x30, 0x97, 0x70, 5, 0x37, 0x60, 9}));
  save(folder / "wrle.pict",
       compressedPicture("WRLE", 8, {3, 1, 0, 0, 0, 2, 1, 1, 2, 3, 0, 3, 1, 2, 3, 0, 0, 1}));
  save(folder / "wrle24.pict", compressedPicture("WRLE", 24, std::vector<uint8_t>(96, 50)));
  ByteMaker planes;
  for (int row = 0; row < 12; ++row) planes.u16({2});
  for (unsigned row = 0; row < 12; ++row) planes.u8({0xF9, 20 * row});
  save(folder / "8bps.pict", compressedPicture("8BPS", 24, planes.bytes));
  save(folder / "yuv2.pict", compressedPicture("yuv2", 24, std::vector<uint8_t>(64, 90)));
  save(folder / "pntg.pict", compressedPicture("PNTG", 1, {0xFF, 0xF0, 1, 0x81, 7}));
  save(folder / "jpeg.pict", compressedPicture("jpeg", 24, makeJpeg(jpeg(JCS_RGB, JCS_YCbCr))));
  for (const int mode : {0, 4, 6, 32, 49, 50})
    save(folder / ("text-mode" + std::to_string(mode) + ".pict"), textPicture(mode));
  save(folder / "png.pict", compressedPicture("png ", 24, makePng(png(PNG_COLOR_TYPE_RGB_ALPHA, 8, false))));
}

// Values of so many bits that are neither all alike nor without any order.
std::vector<uint32_t> pattern(size_t count, unsigned bits) {
  std::vector<uint32_t> values;
  const uint32_t most = bits == 32 ? 0xFFFFFFFF : (1u << bits) - 1;
  for (size_t i = 0; i < count; ++i) values.push_back(static_cast<uint32_t>(i / 5 * 2654435761u >> 3) & most);
  return values;
}

template <class Number>
std::vector<Number> narrowed(const std::vector<uint32_t> &values) {
  return {values.begin(), values.end()};
}

TiffRecipe tiff(uint16_t photometric, uint16_t samples, uint16_t bits) {
  TiffRecipe recipe{
      .width = 18, .height = 9, .samplesPerPixel = samples, .bits = bits, .photometric = photometric};
  recipe.samples = narrowed<uint16_t>(pattern(size_t{18} * 9 * samples, bits));
  if (photometric == PHOTOMETRIC_PALETTE) recipe.palette = narrowed<uint16_t>(pattern(size_t{3} << bits, 16));
  return recipe;
}

void saveTiffs(const std::filesystem::path &folder) {
  const struct {
    const char *name;
    uint16_t compression;
  } kinds[] = {{"plain", COMPRESSION_NONE},
               {"lzw", COMPRESSION_LZW},
               {"deflate", COMPRESSION_ADOBE_DEFLATE},
               {"packbits", COMPRESSION_PACKBITS},
               {"jpeg", COMPRESSION_JPEG}};
  for (const auto &kind : kinds) {
    TiffRecipe recipe = tiff(PHOTOMETRIC_RGB, 3, 8);
    recipe.compression = kind.compression;
    if (recipe.compression == COMPRESSION_LZW) recipe.predictor = 2;
    if (recipe.compression == COMPRESSION_JPEG) recipe.rowsPerStrip = 9;
    save(folder / (std::string(kind.name) + ".tif"), makeTiff(recipe));
  }
  for (const int fax : {COMPRESSION_CCITTRLE, COMPRESSION_CCITTFAX3, COMPRESSION_CCITTFAX4}) {
    TiffRecipe recipe = tiff(PHOTOMETRIC_MINISWHITE, 1, 1);
    recipe.compression = static_cast<uint16_t>(fax);
    save(folder / ("fax" + std::to_string(fax) + ".tif"), makeTiff(recipe));
  }
  TiffRecipe recipe = tiff(PHOTOMETRIC_PALETTE, 1, 4);
  save(folder / "palette4.tif", makeTiff(recipe));
  recipe = tiff(PHOTOMETRIC_MINISBLACK, 1, 12);
  recipe.mode = "wb";
  save(folder / "grey12-big.tif", makeTiff(recipe));
  recipe = tiff(PHOTOMETRIC_RGB, 4, 16);
  recipe.extraSamples = {EXTRASAMPLE_ASSOCALPHA};
  recipe.planes = true;
  recipe.tileSide = 16;
  recipe.orientation = ORIENTATION_RIGHTBOT;
  recipe.mode = "wl8";
  save(folder / "tiles-planes16.tif", makeTiff(recipe));
  recipe = tiff(PHOTOMETRIC_SEPARATED, 4, 8);
  recipe.profile = blackInkProfile();
  save(folder / "cmyk-profile.tif", makeTiff(recipe));
}

BmpRecipe bmp(unsigned bits, uint32_t headerBytes) {
  BmpRecipe recipe{.width = 9, .height = 5, .bits = bits, .headerBytes = headerBytes};
  recipe.samples = pattern(45, bits);
  if (bits <= 8) recipe.palette = pattern(size_t{1} << bits, 24);
  return recipe;
}

BmpRecipe bmpRuns(unsigned bits, std::vector<uint8_t> runs) {
  BmpRecipe recipe = bmp(bits, bits == 24 ? 64 : 40);
  recipe.compression = bits == 8 ? 1 : bits == 4 ? 2 : 4;
  recipe.runs = std::move(runs);
  return recipe;
}

void saveBmps(const std::filesystem::path &folder) {
  for (const unsigned bits : {1u, 4u, 8u, 16u, 24u, 32u})
    save(folder / ("plain" + std::to_string(bits) + ".bmp"), makeBmp(bmp(bits, 40)));
  save(folder / "os2.bmp", makeBmp(bmp(8, 12)));
  BmpRecipe recipe = bmp(16, 40);
  recipe.compression = 3;
  recipe.masks = {0xF800, 0x7E0, 0x1F};
  save(folder / "masks.bmp", makeBmp(recipe));
  recipe = bmp(32, 124);
  recipe.compression = 3;
  recipe.topDown = true;
  recipe.masks = {0x3FF00000, 0xFFC00, 0x3FF, 0xC0000000};
  recipe.profile = swappedRgbProfile();
  save(folder / "alpha-profile.bmp", makeBmp(recipe));
  save(folder / "runs8.bmp",
       makeBmp(bmpRuns(8, {3, 7, 0, 3, 1, 2, 3, 0, 0, 0, 6, 9, 0, 2, 1, 1, 2, 5, 0, 1})));
  save(folder / "runs4.bmp", makeBmp(bmpRuns(4, {5, 0x12, 1, 0x30, 0, 0, 0, 6, 0x98, 0x76, 0x54, 0, 0, 1})));
  save(folder / "runs24.bmp", makeBmp(bmpRuns(24, {2, 1, 0, 0, 0, 3, 4, 0, 0, 5, 0, 0, 6, 0, 0, 0, 0, 1})));
}

TgaRecipe tga(unsigned type, unsigned bits, unsigned descriptor) {
  TgaRecipe recipe{.width = 9, .height = 5, .type = type, .bits = bits, .descriptor = descriptor};
  recipe.samples = pattern(45, bits);
  return recipe;
}

void saveTgas(const std::filesystem::path &folder) {
  for (const unsigned runs : {0u, 8u}) {
    const std::string kind = runs ? "-runs.tga" : ".tga";
    TgaRecipe indexed = tga(1 + runs, 8, 0x20);
    indexed.entryBits = 16 + runs;
    indexed.palette = pattern(256, indexed.entryBits);
    save(folder / ("palette" + kind), makeTga(indexed));
    save(folder / ("colour16" + kind), makeTga(tga(2 + runs, 16, 0x11)));
    save(folder / ("colour24" + kind), makeTga(tga(2 + runs, 24, 0x20)));
    TgaRecipe alpha = tga(2 + runs, 32, 8);
    alpha.alphaKind = 4;
    save(folder / ("colour32" + kind), makeTga(alpha));
    save(folder / ("grey" + kind), makeTga(tga(3 + runs, 8, 0x30)));
    save(folder / ("grey-alpha" + kind), makeTga(tga(3 + runs, 16, 8)));
  }
}

GifRecipe gif(unsigned bits, bool interlaced) {
  GifRecipe recipe{
      .canvasWidth = 16, .canvasHeight = 11, .width = 14, .height = 10, .interlaced = interlaced};
  recipe.palette = pattern(size_t{1} << bits, 24);
  recipe.samples = narrowed<uint8_t>(pattern(140, bits));
  return recipe;
}

void saveGifs(const std::filesystem::path &folder) {
  save(folder / "two.gif", makeGif(gif(1, false)));
  GifRecipe recipe = gif(4, true);
  recipe.transparent = 3;
  recipe.left = 2;
  recipe.top = 1;
  recipe.localColours = true;
  save(folder / "transparent.gif", makeGif(recipe));
  recipe = gif(8, false);
  recipe.frames = 2;
  recipe.profile = swappedRgbProfile();
  save(folder / "frames-profile.gif", makeGif(recipe));
}

WebpRecipe webp(bool lossless, unsigned bits) {
  WebpRecipe recipe{.width = 14, .height = 10, .lossless = lossless};
  recipe.samples = pattern(140, bits);
  for (uint32_t &sample : recipe.samples) sample |= bits < 32 ? 0xFF000000 : 0;
  return recipe;
}

void saveWebps(const std::filesystem::path &folder) {
  save(folder / "lossless.webp", makeWebp(webp(true, 24)));
  save(folder / "lossless-alpha.webp", makeWebp(webp(true, 32)));
  save(folder / "lossy.webp", makeWebp(webp(false, 24)));
  save(folder / "lossy-alpha.webp", makeWebp(webp(false, 32)));
  WebpRecipe recipe = webp(false, 32);
  recipe.animated = true;
  recipe.canvasWidth = 20;
  recipe.left = 4;
  recipe.profile = swappedRgbProfile();
  save(folder / "animated-profile.webp", makeWebp(recipe));
}

void saveOneOfEach(const std::filesystem::path &folder) {
  save(folder / "rgba.png", makePng(png(PNG_COLOR_TYPE_RGB_ALPHA, 8, true)));
  save(folder / "palette.png", makePng(png(PNG_COLOR_TYPE_PALETTE, 4, false)));
  save(folder / "grey.png", makePng(png(PNG_COLOR_TYPE_GRAY, 8, false)));
  save(folder / "ycbcr.jpg", makeJpeg(jpeg(JCS_RGB, JCS_YCbCr)));
  save(folder / "grey.jpg", makeJpeg(jpeg(JCS_GRAYSCALE, JCS_GRAYSCALE)));
  save(folder / "drawn.pict", drawnPicture());
  save(folder / "rgb.tif", makeTiff(tiff(PHOTOMETRIC_RGB, 3, 8)));
  save(folder / "sixteen.gif", makeGif(gif(4, false)));
  save(folder / "plain.bmp", makeBmp(bmp(24, 40)));
  save(folder / "runs.tga", makeTga(tga(10, 24, 0x20)));
  save(folder / "lossy.webp", makeWebp(webp(false, 32)));
}

}  // namespace

int main(int argc, char **argv) {
  if (argc != 2) return 2;
  const std::filesystem::path seeds = argv[1];
  savePngs(seeds / "png");
  saveJpegs(seeds / "jpeg");
  savePictures(seeds / "pict");
  saveTiffs(seeds / "tiff");
  saveBmps(seeds / "bmp");
  saveTgas(seeds / "tga");
  saveGifs(seeds / "gif");
  saveWebps(seeds / "webp");
  saveOneOfEach(seeds / "load");
}
