// PNG files made with libpng itself, in any layout that the format knows.
#pragma once

#include <png.h>

#include <cstdint>
#include <cstdlib>
#include <vector>

struct PngRecipe {
  uint32_t width = 0;
  uint32_t height = 0;
  int colourType = PNG_COLOR_TYPE_RGB;
  int bitDepth = 8;
  bool interlaced = false;
  std::vector<png_color> palette{};
  std::vector<png_byte> paletteAlpha{};
  bool hasKey = false;
  png_color_16 key{};
  std::vector<uint8_t> profile{};
  uint32_t dotsPerMetre = 0;
  double gamma = 0;
  std::vector<uint16_t> samples{};  // width * height * channels values of bitDepth bits

  size_t channels() const {
    switch (colourType) {
      case PNG_COLOR_TYPE_GRAY_ALPHA:
        return 2;
      case PNG_COLOR_TYPE_RGB:
        return 3;
      case PNG_COLOR_TYPE_RGB_ALPHA:
        return 4;
      default:
        return 1;
    }
  }
  uint16_t sample(uint32_t x, uint32_t y, size_t channel) const {
    return samples[(size_t{y} * width + x) * channels() + channel];
  }
};

inline std::vector<uint8_t> packRow(const PngRecipe &recipe, uint32_t y) {
  const size_t perRow = recipe.width * recipe.channels();
  const auto depth = static_cast<size_t>(recipe.bitDepth);
  std::vector<uint8_t> row((perRow * depth + 7) / 8);
  for (size_t i = 0; i < perRow; ++i) {
    const unsigned value = recipe.samples[y * perRow + i];
    if (depth == 16) {
      row[2 * i] = static_cast<uint8_t>(value >> 8);
      row[2 * i + 1] = static_cast<uint8_t>(value);
    } else {
      const size_t bit = i * depth;
      row[bit / 8] = static_cast<uint8_t>(row[bit / 8] | value << (8 - depth - bit % 8));
    }
  }
  return row;
}

inline std::vector<uint8_t> makePng(const PngRecipe &recipe) {
  std::vector<uint8_t> file;
  std::vector<std::vector<uint8_t>> rows;
  for (uint32_t y = 0; y < recipe.height; ++y) rows.push_back(packRow(recipe, y));
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  if (setjmp(png_jmpbuf(png))) std::abort();
  png_set_write_fn(
      png, &file,
      [](png_structp to, png_bytep bytes, size_t count) {
        auto *out = static_cast<std::vector<uint8_t> *>(png_get_io_ptr(to));
        out->insert(out->end(), bytes, bytes + count);
      },
      nullptr);
  png_set_IHDR(png, info, recipe.width, recipe.height, recipe.bitDepth, recipe.colourType,
               recipe.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
               PNG_FILTER_TYPE_DEFAULT);
  if (!recipe.palette.empty()) {
    png_set_PLTE(png, info, recipe.palette.data(), static_cast<int>(recipe.palette.size()));
  }
  if (!recipe.paletteAlpha.empty()) {
    png_set_tRNS(png, info, recipe.paletteAlpha.data(), static_cast<int>(recipe.paletteAlpha.size()),
                 nullptr);
  }
  if (recipe.hasKey) png_set_tRNS(png, info, nullptr, 0, &recipe.key);
  if (recipe.gamma > 0) png_set_gAMA(png, info, recipe.gamma);
  if (!recipe.profile.empty()) {
    png_set_iCCP(png, info, "profile", 0, recipe.profile.data(),
                 static_cast<png_uint_32>(recipe.profile.size()));
  }
  if (recipe.dotsPerMetre) {
    png_set_pHYs(png, info, recipe.dotsPerMetre, recipe.dotsPerMetre, PNG_RESOLUTION_METER);
  }
  png_write_info(png, info);
  const int passes = recipe.interlaced ? png_set_interlace_handling(png) : 1;
  for (int pass = 0; pass < passes; ++pass) {
    for (auto &row : rows) png_write_row(png, row.data());
  }
  png_write_end(png, info);
  png_destroy_write_struct(&png, &info);
  return file;
}
