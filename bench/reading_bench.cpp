// Reading each format against another program's reading of the same bytes into memory.
#ifdef DRAV_BENCH_MAGICK

#include <benchmark/benchmark.h>
#include <magick/MagickCore.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>

#include "media/codecs/registry.h"
#include "race.h"

namespace {

constexpr size_t kWidth = 1920;
constexpr size_t kHeight = 1080;

// What the other program is asked to write.
struct Kind {
  const char *format;
  const char *channels;
  CompressionType compression = UndefinedCompression;
  ImageType type = UndefinedType;
};

class Magick {
 public:
  Magick() : info_(AcquireImageInfo()), exception_(AcquireExceptionInfo()) {}
  ~Magick() {
    DestroyImageInfo(info_);
    DestroyExceptionInfo(exception_);
  }
  Magick(const Magick &) = delete;
  Magick &operator=(const Magick &) = delete;

  std::vector<uint8_t> written(const Kind &kind, const std::vector<uint8_t> &pixels) {
    Image *image = ConstituteImage(kWidth, kHeight, kind.channels, CharPixel, pixels.data(), exception_);
    if (!image) std::abort();
    if (kind.type != UndefinedType) SetImageType(image, kind.type);
    image->compression = info_->compression = kind.compression;
    SetImageOption(info_, "webp:lossless", kind.compression == LZWCompression ? "true" : "false");
    std::strcpy(image->magick, kind.format);
    std::strcpy(info_->magick, kind.format);
    size_t size = 0;
    auto *const blob = static_cast<uint8_t *>(ImageToBlob(info_, image, &size, exception_));
    if (!blob) std::abort();
    std::vector<uint8_t> file(blob, blob + size);
    RelinquishMagickMemory(blob);
    DestroyImage(image);
    return file;
  }

  void read(const std::vector<uint8_t> &file) {
    Image *image = BlobToImage(info_, file.data(), file.size(), exception_);
    if (!image) std::abort();
    benchmark::DoNotOptimize(image->columns);
    DestroyImageList(image);
  }

 private:
  ImageInfo *info_;
  ExceptionInfo *exception_;
};

// Soft shapes with noise: neither flat nor random.
std::vector<uint8_t> photo(size_t channels) {
  std::vector<uint8_t> pixels;
  uint32_t state = 1;
  for (size_t y = 0; y < kHeight; ++y) {
    for (size_t x = 0; x < kWidth; ++x) {
      state = state * 1664525u + 1013904223u;
      for (size_t c = 0; c < channels; ++c) {
        const double wave = std::sin(static_cast<double>(x) * 0.004 * (1.0 + static_cast<double>(c)) +
                                     static_cast<double>(y) * 0.006);
        pixels.push_back(static_cast<uint8_t>(128 + 100 * wave + static_cast<double>(state >> 29)));
      }
    }
  }
  return pixels;
}

void read(benchmark::State &state, const Kind &kind) {
  Magick magick;
  const std::vector<uint8_t> file = magick.written(kind, photo(std::strlen(kind.channels)));
  const CGImageDecodeLimits limits = CGImageGetDefaultDecodeLimits();
  if (!codecs::decodeAny(file, limits)) return state.SkipWithError("not read");
  bench::race(
      state, {"ours", [&] { benchmark::DoNotOptimize(codecs::decodeAny(file, limits).value.pixels.data()); }},
      {{"ImageMagick", [&] { magick.read(file); }}}, kWidth * kHeight);
  state.counters["bytes"] = static_cast<double>(file.size());
}

#define READ(name, ...) \
  BENCHMARK_CAPTURE(read, name, Kind{__VA_ARGS__})->UseManualTime()->Unit(benchmark::kMillisecond)
READ(png, "PNG", "RGB");
READ(png_alpha, "PNG", "RGBA");
READ(png_palette, "PNG", "RGB", UndefinedCompression, PaletteType);
READ(png_grey, "PNG", "I", UndefinedCompression, GrayscaleType);
READ(jpeg, "JPEG", "RGB", JPEGCompression);
READ(jpeg_grey, "JPEG", "I", JPEGCompression, GrayscaleType);
READ(tiff, "TIFF", "RGB", NoCompression);
READ(tiff_lzw, "TIFF", "RGB", LZWCompression);
READ(tiff_deflate, "TIFF", "RGBA", ZipCompression);
READ(tiff_palette, "TIFF", "RGB", NoCompression, PaletteType);
READ(tiff_fax, "TIFF", "RGB", Group4Compression, BilevelType);
READ(gif, "GIF", "RGB");
READ(bmp, "BMP", "RGB");
READ(bmp_alpha, "BMP", "RGBA");
READ(bmp_two, "BMP", "RGB", NoCompression, BilevelType);
READ(bmp_runs, "BMP", "RGB", RLECompression, PaletteType);
READ(tga, "TGA", "RGB");
READ(tga_palette_runs, "TGA", "RGB", RLECompression, PaletteType);
READ(tga_alpha_runs, "TGA", "RGBA", RLECompression);
READ(webp, "WEBP", "RGB");
READ(webp_lossless, "WEBP", "RGBA", LZWCompression);
READ(pict, "PICT", "RGB");

}  // namespace

#endif
