// JPEG files made, and read, with libjpeg itself.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include <jpeglib.h>

struct JpegRecipe {
  uint32_t width = 0;
  uint32_t height = 0;
  J_COLOR_SPACE input = JCS_RGB;
  J_COLOR_SPACE stored = JCS_YCbCr;
  bool progressive = false;
  bool arithmetic = false;
  unsigned restartInterval = 0;
  bool adobeMarker = false;
  std::vector<uint8_t> profile{};
  int densityUnit = 0;
  uint16_t density = 1;
  std::vector<uint8_t> samples{};

  size_t channels() const { return input == JCS_GRAYSCALE ? 1 : input == JCS_CMYK ? 4 : 3; }
};

inline std::vector<uint8_t> makeJpeg(const JpegRecipe &recipe) {
  jpeg_compress_struct codec{};
  jpeg_error_mgr errors{};
  codec.err = jpeg_std_error(&errors);
  jpeg_create_compress(&codec);
  unsigned char *bytes = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&codec, &bytes, &size);
  codec.image_width = recipe.width;
  codec.image_height = recipe.height;
  codec.input_components = static_cast<int>(recipe.channels());
  codec.in_color_space = recipe.input;
  jpeg_set_defaults(&codec);
  jpeg_set_colorspace(&codec, recipe.stored);
  jpeg_set_quality(&codec, 92, TRUE);
  if (recipe.progressive) jpeg_simple_progression(&codec);
  codec.arith_code = recipe.arithmetic;
  codec.restart_interval = recipe.restartInterval;
  codec.write_Adobe_marker = recipe.adobeMarker;
  codec.density_unit = static_cast<UINT8>(recipe.densityUnit);
  codec.X_density = codec.Y_density = recipe.density;
  jpeg_start_compress(&codec, TRUE);
  if (!recipe.profile.empty()) {
    jpeg_write_icc_profile(&codec, recipe.profile.data(), static_cast<unsigned>(recipe.profile.size()));
  }
  while (codec.next_scanline < codec.image_height) {
    auto *row =
        const_cast<JSAMPROW>(recipe.samples.data() + codec.next_scanline * recipe.width * recipe.channels());
    jpeg_write_scanlines(&codec, &row, 1);
  }
  jpeg_finish_compress(&codec);
  std::vector<uint8_t> file(bytes, bytes + size);
  jpeg_destroy_compress(&codec);
  std::free(bytes);
  return file;
}

// The file's samples in the given colour space, one row after the other.
inline std::vector<uint8_t> readJpeg(const std::vector<uint8_t> &file, J_COLOR_SPACE wanted) {
  jpeg_decompress_struct codec{};
  jpeg_error_mgr errors{};
  codec.err = jpeg_std_error(&errors);
  jpeg_create_decompress(&codec);
  jpeg_mem_src(&codec, file.data(), static_cast<unsigned long>(file.size()));
  jpeg_read_header(&codec, TRUE);
  codec.out_color_space = wanted;
  jpeg_start_decompress(&codec);
  const size_t rowBytes = size_t{codec.output_width} * static_cast<size_t>(codec.output_components);
  std::vector<uint8_t> samples(rowBytes * codec.output_height);
  while (codec.output_scanline < codec.output_height) {
    JSAMPROW row = samples.data() + codec.output_scanline * rowBytes;
    jpeg_read_scanlines(&codec, &row, 1);
  }
  jpeg_finish_decompress(&codec);
  jpeg_destroy_decompress(&codec);
  return samples;
}
