// The tracer, commentary included, which goes to a temporary file. The number to watch is the time for each
// boundary pixel: from 250 to 4000 pixels a side it should grow by less than two, and 2000 by 2000 pixels of
// noise should trace in under three seconds.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <random>
#include <vector>

#include "path/boundary.h"
#include "path/path_finder.h"

namespace {

using drav::path::ImageInfo;

struct Alphas {
  int side;
  std::vector<std::uint8_t> bytes;

  explicit Alphas(int imageSide) : side(imageSide), bytes(std::size_t{4} * imageSide * imageSide) {}
  ImageInfo info() const { return {bytes.data(), side, side, 0.5F}; }
};

Alphas noise(int side) {
  Alphas alphas(side);
  std::mt19937 numbers(1);
  for (std::size_t at = 0; at < alphas.bytes.size(); at += 4) alphas.bytes[at] = numbers() % 2 == 0 ? 255 : 0;
  return alphas;
}

// Filled discs on a grid: what cut-out pictures look like.
Alphas discs(int side) {
  constexpr int kPitch = 100;
  constexpr int kRadius = 45;
  Alphas alphas(side);
  for (int row = 0; row < side; ++row) {
    for (int column = 0; column < side; ++column) {
      const int x = column % kPitch - kPitch / 2;
      const int y = row % kPitch - kPitch / 2;
      const bool isInside = x * x + y * y < kRadius * kRadius;
      alphas.bytes[std::size_t{4} * (static_cast<std::size_t>(row) * side + column)] = isInside ? 255 : 0;
    }
  }
  return alphas;
}

struct CloseFile {
  void operator()(std::FILE *file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

void trace(benchmark::State &state, const Alphas &alphas) {
  const std::size_t pixels = alphas.bytes.size() / 4;
  const auto visited = std::make_unique<bool[]>(pixels);
  drav::path::MarkAllButBoundary(alphas.info(), visited.get());
  const auto boundary = std::count(visited.get(), visited.get() + pixels, false);
  const File file(std::tmpfile());
  for (auto _ : state) {
    std::rewind(file.get());
    drav::path::TextOutput output(file.get());
    benchmark::DoNotOptimize(drav::path::TraceSubpaths(alphas.info(), visited.get(), output));
  }
  // A rate that is inverted: the time for one.
  state.counters["per_boundary_pixel"] =
      benchmark::Counter(static_cast<double>(boundary),
                         benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
  state.counters["output_bytes"] = static_cast<double>(std::ftell(file.get()));
}

void BM_TraceNoise(benchmark::State &state) { trace(state, noise(static_cast<int>(state.range(0)))); }
void BM_TraceDiscs(benchmark::State &state) { trace(state, discs(static_cast<int>(state.range(0)))); }

}  // namespace

BENCHMARK(BM_TraceNoise)
    ->Arg(250)
    ->Arg(1000)
    ->Arg(2000)
    ->Arg(4000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(BM_TraceDiscs)
    ->Arg(250)
    ->Arg(1000)
    ->Arg(2000)
    ->Arg(4000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
