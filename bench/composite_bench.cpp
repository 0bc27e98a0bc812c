// Compositing, mode by mode, in cache and in memory. Every number is taken in the same run, best of several:
//
//   Mpx/s       million pixels a second, by the row form
//   of_copy     of what memcpy of the same pixels reaches, repeated in place
//   fresh       likewise, on a destination just copied: repeated, a mode brings its pixels to rest
//   of_traffic  of what reading both and writing one reaches (source ^ destination)
//   x_walk      how many times as fast as the kernel called for each pixel; likewise x_pixman, x_cairo,
//   x_libyuv
//               where they have the operator, in their own pixel layout
#include <benchmark/benchmark.h>
#include <pixman.h>

#ifdef DRAV_BENCH_CAIRO
#include <cairo.h>
#endif
#ifdef DRAV_BENCH_YUV
#include <libyuv/planar_functions.h>
#endif

#include <chrono>
#include <cstring>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "composite/rows.h"

namespace {

using drav::kBlendModeCount;
using Clock = std::chrono::steady_clock;

constexpr const char *kFormats[] = {"S_8", "RGB_888", "ARGB_8888"};
constexpr size_t kGrey = 0, kColour = 1, kAlpha = 2;

struct Mode {
  const char *name;
  pixman_op_t pixman;
#ifdef DRAV_BENCH_CAIRO
  cairo_operator_t cairo;
#endif
};
#ifdef DRAV_BENCH_CAIRO
#define DRAV_MODE(Name, Pixman, Cairo) \
  { #Name, PIXMAN_OP_##Pixman, CAIRO_OPERATOR_##Cairo }
#else
#define DRAV_MODE(Name, Pixman, Cairo) \
  { #Name, PIXMAN_OP_##Pixman }
#endif
constexpr Mode kModes[] = {
    DRAV_MODE(Clear, CLEAR, CLEAR),
    DRAV_MODE(CopySrc, SRC, SOURCE),
    DRAV_MODE(CopyDest, DST, DEST),
    DRAV_MODE(SrcOver, OVER, OVER),
    DRAV_MODE(DestOver, OVER_REVERSE, DEST_OVER),
    DRAV_MODE(SrcIn, IN, IN),
    DRAV_MODE(DestIn, IN_REVERSE, DEST_IN),
    DRAV_MODE(SrcOut, OUT, OUT),
    DRAV_MODE(DestOut, OUT_REVERSE, DEST_OUT),
    DRAV_MODE(SrcAtop, ATOP, ATOP),
    DRAV_MODE(DestAtop, ATOP_REVERSE, DEST_ATOP),
    DRAV_MODE(XOR, XOR, XOR),
    DRAV_MODE(Plus, ADD, ADD),
    DRAV_MODE(Multiply, MULTIPLY, MULTIPLY),
    DRAV_MODE(Screen, SCREEN, SCREEN),
    DRAV_MODE(Overlay, OVERLAY, OVERLAY),
    DRAV_MODE(Darken, DARKEN, DARKEN),
    DRAV_MODE(Lighten, LIGHTEN, LIGHTEN),
    DRAV_MODE(ColorDodge, COLOR_DODGE, COLOR_DODGE),
    DRAV_MODE(ColorBurn, COLOR_BURN, COLOR_BURN),
    DRAV_MODE(HardLight, HARD_LIGHT, HARD_LIGHT),
    DRAV_MODE(SoftLight, SOFT_LIGHT, SOFT_LIGHT),
    DRAV_MODE(Difference, DIFFERENCE, DIFFERENCE),
    DRAV_MODE(Exclusion, EXCLUSION, EXCLUSION),
};
static_assert(std::size(kModes) == kBlendModeCount);

struct Job {
  size_t format, mode;
  int width, height;
  size_t pixels() const { return static_cast<size_t>(width) * static_cast<size_t>(height); }
  size_t pixelBytes() const { return format == kGrey ? 1 : 4; }
  size_t bytes() const { return pixels() * pixelBytes(); }
  int stride() const { return width * static_cast<int>(pixelBytes()); }
};

// Page-aligned, so that every contender's copies are as quick as they can be.
class Plane {
 public:
  explicit Plane(size_t bytes)
      : data_(static_cast<uint8_t *>(std::aligned_alloc(4096, (bytes + 4095) / 4096 * 4096))) {}
  ~Plane() { std::free(data_); }
  Plane(const Plane &) = delete;
  Plane &operator=(const Plane &) = delete;
  uint8_t *data() const { return data_; }

 private:
  uint8_t *data_;
};

// Valid pixels for both byte orders of ARGB: every colour below every alpha that may stand beside it.
void fill(uint8_t *bytes, size_t count, bool alphaFirst, uint32_t seed) {
  std::minstd_rand random(seed);
  for (size_t i = 0; i + 4 <= count; i += 4) {
    const auto alpha = static_cast<uint32_t>(random() >> 7 & 255U);
    for (size_t c = 0; c < 4; ++c) bytes[i + c] = static_cast<uint8_t>((random() >> 7) % (alpha + 1));
    bytes[i + (alphaFirst ? 0 : 3)] = static_cast<uint8_t>(alpha);
  }
}

template <class F>
double bestSeconds(F once, double budget = 0.02) {
  double best = 1e9, spent = 0;
  for (int round = 0; round < 3 || (spent < budget && round < 500); ++round) {
    const auto start = Clock::now();
    once();
    benchmark::ClobberMemory();
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    best = std::min(best, seconds);
    spent += seconds;
  }
  return best;
}

double pixmanSeconds(const Job &job, uint8_t *source, uint8_t *destination) {
  const pixman_format_code_t format = job.format == kGrey     ? PIXMAN_a8
                                      : job.format == kColour ? PIXMAN_x8r8g8b8
                                                              : PIXMAN_a8r8g8b8;
  const auto image = [&](uint8_t *bytes) {
    return pixman_image_create_bits(format, job.width, job.height, reinterpret_cast<uint32_t *>(bytes),
                                    job.stride());
  };
  pixman_image_t *from = image(source), *to = image(destination);
  const auto once = [&] {
    pixman_image_composite32(kModes[job.mode].pixman, from, nullptr, to, 0, 0, 0, 0, 0, 0, job.width,
                             job.height);
  };
  const double seconds = bestSeconds(once);
  pixman_image_unref(from);
  pixman_image_unref(to);
  return seconds;
}

#ifdef DRAV_BENCH_CAIRO
double cairoSeconds(const Job &job, uint8_t *source, uint8_t *destination) {
  const cairo_format_t format = job.format == kColour ? CAIRO_FORMAT_RGB24 : CAIRO_FORMAT_ARGB32;
  const auto surface = [&](uint8_t *bytes) {
    return cairo_image_surface_create_for_data(bytes, format, job.width, job.height, job.stride());
  };
  cairo_surface_t *from = surface(source), *to = surface(destination);
  cairo_t *context = cairo_create(to);
  cairo_set_source_surface(context, from, 0, 0);
  cairo_set_operator(context, kModes[job.mode].cairo);
  const double seconds = bestSeconds([&] { cairo_paint(context); });
  cairo_destroy(context);
  cairo_surface_destroy(from);
  cairo_surface_destroy(to);
  return seconds;
}
#endif

#ifdef DRAV_BENCH_YUV
using YuvFunction = int (*)(const uint8_t *, int, const uint8_t *, int, uint8_t *, int, int, int);

YuvFunction yuvFunction(const Job &job) {
  if (job.format == kAlpha && job.mode == kDRAVCFBlendModeSrcOver) return libyuv::ARGBBlend;
  if (job.format != kGrey && job.mode == kDRAVCFBlendModePlus) return libyuv::ARGBAdd;
  if (job.format == kColour && job.mode == kDRAVCFBlendModeMultiply) return libyuv::ARGBMultiply;
  return nullptr;
}
#endif

void compareWithLibraries(benchmark::State &state, const Job &job, double ours) {
  Plane source(job.bytes()), destination(job.bytes());
  fill(source.data(), job.bytes(), false, 3);
  fill(destination.data(), job.bytes(), false, 4);
  // A lone alpha plane is the nearest thing to grey elsewhere: its sum is the only operator that means the
  // same.
  if (job.format != kGrey || job.mode == kDRAVCFBlendModePlus)
    state.counters["x_pixman"] = pixmanSeconds(job, source.data(), destination.data()) / ours;
#ifdef DRAV_BENCH_CAIRO
  if (job.format != kGrey)
    state.counters["x_cairo"] = cairoSeconds(job, source.data(), destination.data()) / ours;
#endif
#ifdef DRAV_BENCH_YUV
  if (const YuvFunction function = yuvFunction(job))
    state.counters["x_libyuv"] = bestSeconds([&] {
                                   function(source.data(), job.stride(), destination.data(), job.stride(),
                                            destination.data(), job.stride(), job.width, job.height);
                                 }) /
                                 ours;
#endif
}

// The destination is as before each time.
template <class F>
double freshSeconds(const Job &job, uint8_t *destination, F once) {
  Plane before(job.bytes());
  fill(before.data(), job.bytes(), true, 2);
  double best = 1e9;
  for (int round = 0; round < 8; ++round) {
    std::memcpy(destination, before.data(), job.bytes());
    const auto start = Clock::now();
    once();
    benchmark::ClobberMemory();
    best = std::min(best, std::chrono::duration<double>(Clock::now() - start).count());
  }
  return best;
}

double walkSeconds(const Job &job, const uint8_t *source, uint8_t *destination) {
  const DRAVCFCompositeFunction kernel = drav::kKernels[job.format][job.mode];
  const size_t pixels = std::min<size_t>(job.pixels(), 65536), step = job.pixelBytes();
  const double seconds = bestSeconds([&] {
    for (size_t i = 0; i < pixels; ++i) kernel(source + i * step, destination + i * step);
  });
  return seconds * static_cast<double>(job.pixels()) / static_cast<double>(pixels);
}

[[gnu::noinline]] void combineBytes(const uint8_t *__restrict source, uint8_t *__restrict destination,
                                    size_t bytes) {
  for (size_t i = 0; i < bytes; ++i) destination[i] = static_cast<uint8_t>(destination[i] ^ source[i]);
}

void composite(benchmark::State &state, Job job) {
  Plane source(job.bytes()), destination(job.bytes());
  fill(source.data(), job.bytes(), true, 1);
  fill(destination.data(), job.bytes(), true, 2);
  const DRAVCFCompositeFunction kernel = drav::kKernels[job.format][job.mode];
  const auto stride = static_cast<size_t>(job.stride());
  const auto once = [&] {
    drav::compositeRows(kernel, source.data(), stride, destination.data(), stride,
                        static_cast<size_t>(job.width), static_cast<size_t>(job.height), job.pixelBytes());
  };
  for (auto _ : state) {
    once();
    benchmark::ClobberMemory();
  }
  const double ours = bestSeconds(once, 0.05), fresh = freshSeconds(job, destination.data(), once);
  const double copy = bestSeconds([&] { std::memcpy(destination.data(), source.data(), job.bytes()); }, 0.05);
  fill(destination.data(), job.bytes(), true, 2);
  const double traffic =
      bestSeconds([&] { combineBytes(source.data(), destination.data(), job.bytes()); }, 0.05);
  fill(destination.data(), job.bytes(), true, 2);
  state.counters["Mpx/s"] = static_cast<double>(job.pixels()) / ours / 1e6;
  state.counters["of_copy"] = copy / ours;
  state.counters["fresh"] = copy / fresh;
  state.counters["of_traffic"] = traffic / ours;
  state.counters["x_walk"] = walkSeconds(job, source.data(), destination.data()) / ours;
  compareWithLibraries(state, job, ours);
}

void registerJob(const Job &job) {
  const std::string name = std::string("composite/") + kFormats[job.format] + "/" + kModes[job.mode].name +
                           "/" + std::to_string(job.width) + "x" + std::to_string(job.height);
  benchmark::RegisterBenchmark(name.c_str(), composite, job)->MinTime(0.02);
}

const bool kRegistered = [] {
  for (size_t format = 0; format < drav::kPixelFormatCount; ++format)
    for (size_t mode = 0; mode < kBlendModeCount; ++mode) {
      registerJob({format, mode, 256, 256});
      registerJob({format, mode, 3840, 2160});
    }
  return true;
}();

}  // namespace
