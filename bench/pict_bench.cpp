// Pictures of 4000 x 3000 pixels read and written, beside a copy of as many pixels; a drawing of many shapes.

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstring>
#include <random>

#include "../tests/media/picture_maker.h"
#include "media/codecs/pict/pict.h"

namespace {

using codecs::RowLayout;

constexpr uint32_t kWidth = 4000;
constexpr uint32_t kHeight = 3000;

// Soft shapes: runs here and there, neither flat nor noise.
const std::vector<uint8_t> &photo() {
  static const std::vector<uint8_t> pixels = [] {
    std::vector<uint8_t> made(size_t{4} * kWidth * kHeight);
    for (size_t i = 0; i < made.size(); ++i) {
      const double x = static_cast<double>(i / 4 % kWidth), y = static_cast<double>(i / 4 / kWidth);
      made[i] =
          static_cast<uint8_t>(128 + 100 * std::sin(x * 0.004 * static_cast<double>(1 + i % 4) + y * 0.006));
    }
    return made;
  }();
  return pixels;
}

codecs::EncodeSource source(RowLayout layout) {
  codecs::EncodeSource made;
  made.width = kWidth;
  made.height = kHeight;
  made.layout = layout;
  made.copyRow = [](void *, uint32_t y, uint8_t *out) noexcept {
    std::memcpy(out, photo().data() + size_t{4} * kWidth * y, size_t{4} * kWidth);
    return true;
  };
  return made;
}

void countPixels(benchmark::State &state) {
  state.counters["pixel/s"] =
      benchmark::Counter(double{kWidth} * kHeight, benchmark::Counter::kIsIterationInvariantRate);
}

void copyPixels(benchmark::State &state) {
  std::vector<uint8_t> to(photo().size());
  for (auto _ : state) {
    std::memcpy(to.data(), photo().data(), to.size());
    benchmark::DoNotOptimize(to.data());
  }
  countPixels(state);
}
BENCHMARK(copyPixels)->Unit(benchmark::kMillisecond);

void writePicture(benchmark::State &state, RowLayout layout) {
  photo();
  for (auto _ : state) {
    std::vector<uint8_t> file;
    if (codecs::encodePict(source(layout), file) != codecs::Fault::none) std::abort();
    benchmark::DoNotOptimize(file.data());
  }
  countPixels(state);
}
BENCHMARK_CAPTURE(writePicture, rgb, RowLayout::rgbx)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(writePicture, alpha, RowLayout::rgba)->Unit(benchmark::kMillisecond);

void readPicture(benchmark::State &state, RowLayout layout) {
  std::vector<uint8_t> file;
  if (codecs::encodePict(source(layout), file) != codecs::Fault::none) std::abort();
  for (auto _ : state) {
    const auto decoded = codecs::decodePict(file, CGImageGetDefaultDecodeLimits());
    if (!decoded) std::abort();
    benchmark::DoNotOptimize(decoded.value.pixels.data());
  }
  countPixels(state);
}
BENCHMARK_CAPTURE(readPicture, rgb, RowLayout::rgbx)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readPicture, alpha, RowLayout::rgba)->Unit(benchmark::kMillisecond);

// Rectangles, ovals, arcs, polygons and lines in turn, each in a colour of its own.
std::vector<uint8_t> shapes(int count) {
  codecs::pict::PictureMaker picture(2000, 2000);
  std::mt19937 random(3);
  const auto upTo = [&](unsigned most) { return static_cast<int>(random() % most); };
  for (int i = 0; i < count; ++i) {
    const int top = upTo(1900), left = upTo(1900), bottom = top + 10 + upTo(150),
              right = left + 10 + upTo(150);
    picture.op(0x001A).u16({upTo(65536), upTo(65536), upTo(65536)});
    static constexpr int kOpcodes[] = {0x31, 0x51, 0x61, 0x71, 0x20};
    picture.op(kOpcodes[i % 5]);
    if (i % 5 == 3) picture.u16({26});
    picture.box(top, left, bottom, right);
    if (i % 5 == 2) picture.u16({upTo(360), upTo(360)});
    if (i % 5 == 3) picture.u16({top, left, bottom, left + 5, top + 3, right, (top + bottom) / 2, left});
  }
  return picture.end();
}

void drawShapes(benchmark::State &state) {
  const std::vector<uint8_t> file = shapes(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    const auto decoded = codecs::decodePict(file, CGImageGetDefaultDecodeLimits());
    if (!decoded) std::abort();
    benchmark::DoNotOptimize(decoded.value.pixels.data());
  }
}
BENCHMARK(drawShapes)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace
