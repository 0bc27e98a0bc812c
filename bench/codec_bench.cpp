// Reading and writing files against the bare libraries: same file, same run, same final layout.

#include <benchmark/benchmark.h>
#include <png.h>

#include <chrono>
#include <cmath>
#include <cstring>
#include <functional>
#include <random>

#include "../tests/media/jpeg_maker.h"
#include "media/codecs/registry.h"

namespace {

constexpr uint32_t kWidth = 1920;
constexpr uint32_t kHeight = 1080;

// Soft shapes with noise: neither flat nor random.
void copyPhotoRow(uint32_t y, uint8_t *out, size_t channels) {
  uint32_t state = y * 2654435761u + 1;
  for (uint32_t x = 0; x < kWidth; ++x) {
    state = state * 1664525u + 1013904223u;
    for (size_t c = 0; c < channels; ++c) {
      const double wave = std::sin(x * 0.004 * (1.0 + static_cast<double>(c)) + y * 0.006);
      out[x * channels + c] = static_cast<uint8_t>(128 + 100 * wave + static_cast<double>(state >> 29));
    }
  }
}

std::vector<uint8_t> photo(const codecs::CodecRecord &codec, codecs::RowLayout layout) {
  codecs::EncodeSource source;
  source.width = kWidth;
  source.height = kHeight;
  source.layout = layout;
  source.context = &layout;
  source.copyRow = [](void *context, uint32_t y, uint8_t *out) noexcept {
    copyPhotoRow(y, out, bytesPerPixel(*static_cast<codecs::RowLayout *>(context)));
    return true;
  };
  std::vector<uint8_t> file;
  if (codec.encode(source, file) != codecs::Fault::none) std::abort();
  return file;
}

// The least that libpng can be asked for this layout: rows of the file into rows of a buffer.
void readBarePng(const std::vector<uint8_t> &file, uint8_t *pixels) {
  struct Input {
    const uint8_t *at;
  } input{file.data()};
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  png_set_read_fn(png, &input, [](png_structp from, png_bytep out, size_t count) {
    auto *bytes = static_cast<Input *>(png_get_io_ptr(from));
    std::memcpy(out, bytes->at, count);
    bytes->at += count;
  });
  png_read_info(png, info);
  if (png_get_color_type(png, info) & PNG_COLOR_MASK_ALPHA)
    png_set_swap_alpha(png);
  else if (png_get_color_type(png, info) & PNG_COLOR_MASK_COLOR)
    png_set_filler(png, 255, PNG_FILLER_BEFORE);
  png_read_update_info(png, info);
  const size_t rowBytes = png_get_rowbytes(png, info);
  for (uint32_t y = 0; y < kHeight; ++y) png_read_row(png, pixels + y * rowBytes, nullptr);
  png_destroy_read_struct(&png, &info, nullptr);
}

void readBareJpeg(const std::vector<uint8_t> &file, uint8_t *pixels) {
  jpeg_decompress_struct codec{};
  jpeg_error_mgr errors{};
  codec.err = jpeg_std_error(&errors);
  jpeg_create_decompress(&codec);
  jpeg_mem_src(&codec, file.data(), static_cast<unsigned long>(file.size()));
  jpeg_read_header(&codec, TRUE);
  if (codec.num_components == 3) codec.out_color_space = JCS_EXT_XRGB;
  jpeg_start_decompress(&codec);
  const size_t rowBytes = size_t{codec.output_width} * static_cast<size_t>(codec.output_components);
  while (codec.output_scanline < codec.output_height) {
    JSAMPROW row = pixels + codec.output_scanline * rowBytes;
    jpeg_read_scanlines(&codec, &row, 1);
  }
  jpeg_finish_decompress(&codec);
  jpeg_destroy_decompress(&codec);
}

double secondsFor(const std::function<void()> &work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Runs ours and theirs in turn, so that both see the same machine; reports the ratio of the fastest runs.
void compare(benchmark::State &state, const std::vector<uint8_t> &file, const codecs::CodecRecord &codec,
             void (*bare)(const std::vector<uint8_t> &, uint8_t *)) {
  const CGImageDecodeLimits limits = CGImageGetDefaultDecodeLimits();
  double ours = INFINITY, theirs = INFINITY;
  for (auto _ : state) {
    const double once =
        secondsFor([&] { benchmark::DoNotOptimize(codec.decode(file, limits).value.pixels.data()); });
    theirs = std::min(theirs, secondsFor([&] {
                        const auto buffer = codecs::PixelBuffer::zeroed(size_t{4} * kWidth * kHeight);
                        bare(file, const_cast<uint8_t *>(buffer.data()));
                        benchmark::DoNotOptimize(buffer.data());
                      }));
    ours = std::min(ours, once);
    state.SetIterationTime(once);
  }
  state.counters["x_bare_library"] = ours / theirs;
  state.counters["Mpixel/s"] = kWidth * kHeight / ours / 1e6;
}

template <codecs::RowLayout layout>
void readPng(benchmark::State &state) {
  compare(state, photo(codecs::kPngCodec, layout), codecs::kPngCodec, readBarePng);
}
BENCHMARK(readPng<codecs::RowLayout::grey>)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(readPng<codecs::RowLayout::rgbx>)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(readPng<codecs::RowLayout::rgba>)->UseManualTime()->Unit(benchmark::kMillisecond);

template <codecs::RowLayout layout>
void readJpegFile(benchmark::State &state) {
  compare(state, photo(codecs::kJpegCodec, layout), codecs::kJpegCodec, readBareJpeg);
}
BENCHMARK(readJpegFile<codecs::RowLayout::grey>)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(readJpegFile<codecs::RowLayout::rgbx>)->UseManualTime()->Unit(benchmark::kMillisecond);

void write(benchmark::State &state, const codecs::CodecRecord &codec, codecs::RowLayout layout) {
  size_t size = 0;
  for (auto _ : state) size = photo(codec, layout).size();
  state.counters["bytes"] = static_cast<double>(size);
}
BENCHMARK_CAPTURE(write, png, codecs::kPngCodec, codecs::RowLayout::rgbx)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(write, jpeg, codecs::kJpegCodec, codecs::RowLayout::rgbx)->Unit(benchmark::kMillisecond);

}  // namespace
