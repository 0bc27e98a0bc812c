// Premultiplying and un-premultiplying 3840 x 2160 pixels against memcpy and the libraries that do something
// of the kind, each in every round of the same run. The counters are ratios of the best rounds: how many
// times as long as the other ours took. vs_memcpy is to stay below 3, the others below 1.
//
// The others do less: libyuv rounds to within one or two, and pixman's result goes to a second buffer.
// libvips calculates in floats on all processors, cuts them off to bytes, and its result is a new image.
#include <DravKit/DravKit.h>
#include <benchmark/benchmark.h>
#include <pixman.h>
#ifdef DRAV_BENCH_YUV
#include <libyuv.h>
#endif
#ifdef DRAV_BENCH_VIPS
#include <vips/vips.h>
#endif

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr int kWidth = 3840, kHeight = 2160, kRowBytes = 4 * kWidth;
constexpr size_t kBytes = size_t{kRowBytes} * kHeight;

// The slowest of the others takes a tenth of a second.
constexpr int kRounds = 60;

using Pixels = std::vector<uint8_t>;

// Random pixels, alpha last in memory, with no colour above its alpha.
Pixels validPixels() {
  std::mt19937 random(1);
  Pixels pixels(kBytes);
  for (uint8_t &byte : pixels) byte = static_cast<uint8_t>(random());
  for (size_t at = 0; at < kBytes; at += 4) {
    for (size_t i = 0; i < 3; ++i) pixels[at + i] = std::min(pixels[at + i], pixels[at + 3]);
  }
  return pixels;
}

struct Contender {
  std::string name;
  std::function<void()> run;
  double bestSeconds = std::numeric_limits<double>::infinity();
};

// The pixels that everyone works on, the same at the beginning of each round and as warm in the caches.
struct Arena {
  Pixels fresh, work;
  explicit Arena(Pixels pixels) : fresh(std::move(pixels)), work(fresh) {}

  double round(Contender &contender) {
    std::memcpy(work.data(), fresh.data(), kBytes);
    const auto start = std::chrono::steady_clock::now();
    contender.run();
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    contender.bestSeconds = std::min(contender.bestSeconds, seconds);
    return seconds;
  }
  Contender copying() {
    return {"memcpy", [this] { std::memcpy(work.data(), fresh.data(), kBytes); }};
  }
};

void race(benchmark::State &state, Arena &arena, Contender ours, std::vector<Contender> others) {
  for (auto _ : state) {
    state.SetIterationTime(arena.round(ours));
    for (Contender &other : others) arena.round(other);
  }
  for (const Contender &other : others) {
    state.counters["vs_" + other.name] = ours.bestSeconds / other.bestSeconds;
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(kBytes));
}

// Colours without their alpha, through a mask that is the alpha.
class PixmanPremultiply {
 public:
  PixmanPremultiply(Pixels &to, Pixels &from)
      : colours_(image(PIXMAN_x8r8g8b8, from)),
        alphas_(image(PIXMAN_a8r8g8b8, from)),
        to_(image(PIXMAN_a8r8g8b8, to)) {}
  ~PixmanPremultiply() {
    for (pixman_image_t *image : {colours_, alphas_, to_}) pixman_image_unref(image);
  }
  PixmanPremultiply(const PixmanPremultiply &) = delete;
  PixmanPremultiply &operator=(const PixmanPremultiply &) = delete;

  void run() {
    pixman_image_composite32(PIXMAN_OP_SRC, colours_, alphas_, to_, 0, 0, 0, 0, 0, 0, kWidth, kHeight);
  }

 private:
  static pixman_image_t *image(pixman_format_code_t format, Pixels &pixels) {
    void *bits = pixels.data();
    return pixman_image_create_bits(format, kWidth, kHeight, static_cast<uint32_t *>(bits), kRowBytes);
  }
  pixman_image_t *colours_, *alphas_, *to_;
};

#ifdef DRAV_BENCH_VIPS
using VipsOperation = int (*)(VipsImage *, VipsImage **, ...);

// From bytes in memory to bytes in memory, without remembering results of before.
class Vips {
 public:
  Vips(const Pixels &pixels, VipsOperation operation) : operation_(operation) {
    static const bool isReady = VIPS_INIT("drav_bench") == 0;
    if (!isReady) std::abort();
    vips_cache_set_max(0);
    from_ = vips_image_new_from_memory(pixels.data(), kBytes, kWidth, kHeight, 4, VIPS_FORMAT_UCHAR);
  }
  ~Vips() { g_object_unref(from_); }
  Vips(const Vips &) = delete;
  Vips &operator=(const Vips &) = delete;

  void run() {
    VipsImage *floats = nullptr, *bytes = nullptr, *result = vips_image_new_memory();
    const bool done = operation_(from_, &floats, nullptr) == 0 &&
                      vips_cast_uchar(floats, &bytes, nullptr) == 0 && vips_image_write(bytes, result) == 0;
    if (!done) std::abort();
    for (VipsImage *image : {result, bytes, floats}) g_object_unref(image);
  }

 private:
  VipsOperation operation_;
  VipsImage *from_;
};
#endif

using Operation = void (*)(uint8_t *, size_t);

Contender ours(Arena &arena, Operation operation) {
  return {"ours", [&arena, operation] { operation(arena.work.data(), kBytes); }};
}

void premultiply(benchmark::State &state, Operation operation) {
  Arena arena(validPixels());
  Pixels &work = arena.work;
  PixmanPremultiply pixman(work, arena.fresh);
  std::vector<Contender> others{arena.copying(), {"pixman", [&] { pixman.run(); }}};
#ifdef DRAV_BENCH_YUV
  others.push_back({"libyuv", [&] {
                      libyuv::ARGBAttenuate(work.data(), kRowBytes, work.data(), kRowBytes, kWidth, kHeight);
                    }});
#endif
#ifdef DRAV_BENCH_VIPS
  Vips vips(work, vips_premultiply);
  others.push_back({"libvips", [&] { vips.run(); }});
#endif
  race(state, arena, ours(arena, operation), others);
}

void unpremultiply(benchmark::State &state, Operation operation, bool alphaFirst) {
  Pixels pixels = validPixels();
  for (size_t at = 0; alphaFirst && at < kBytes; at += 4) std::swap(pixels[at], pixels[at + 3]);
  Arena arena(std::move(pixels));
  Pixels &work = arena.work;
  std::vector<Contender> others{arena.copying()};
#ifdef DRAV_BENCH_YUV
  others.push_back(
      {"libyuv",
       [&] { libyuv::ARGBUnattenuate(work.data(), kRowBytes, work.data(), kRowBytes, kWidth, kHeight); }});
#endif
#ifdef DRAV_BENCH_VIPS
  Vips vips(work, vips_unpremultiply);
  others.push_back({"libvips", [&] { vips.run(); }});
#endif
  race(state, arena, ours(arena, operation), others);
}

BENCHMARK_CAPTURE(premultiply, ARGB, DRAVCFPremultiplyARGBBuffer)
    ->UseManualTime()
    ->Iterations(kRounds)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(premultiply, RGBA, DRAVCFPremultiplyRGBABuffer)
    ->UseManualTime()
    ->Iterations(kRounds)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(unpremultiply, ARGB, DRAVCFUnpremultiplyARGBBuffer, true)
    ->UseManualTime()
    ->Iterations(kRounds)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(unpremultiply, RGBA, DRAVCFUnpremultiplyRGBABuffer, false)
    ->UseManualTime()
    ->Iterations(kRounds)
    ->Unit(benchmark::kMillisecond);

}  // namespace
