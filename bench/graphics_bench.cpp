// Drawing at 3840 x 2160: pixel onto pixel beside copying the same bytes, and scaled beside pixman's and
// libyuv's filters.
// Each ratio is of times taken in turns in the same run, so that a busy machine slows both.
#include <CoreGraphics/CoreGraphics.h>
#include <benchmark/benchmark.h>
#include <pixman.h>

#ifdef DRAV_BENCH_YUV
#include <libyuv/scale_argb.h>
#endif

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <random>
#include <vector>

#include "foundation/ref.h"

namespace {

constexpr size_t kWidth = 3840, kHeight = 2160, kRowBytes = 4 * kWidth;
using Bytes = std::vector<uint8_t>;

enum class Content : uint8_t { opaque, mixed };

// Premultiplied pixels with alpha first; the mixed ones are never opaque nor clear.
Bytes pixels(Content content) {
  std::mt19937 random(1);
  Bytes bytes(kRowBytes * kHeight);
  for (size_t i = 0; i < bytes.size(); ++i)
    bytes[i] = static_cast<uint8_t>(i % 4 == 0 ? 200 + random() % 50 : random() % 200);
  for (size_t i = 0; content == Content::opaque && i < bytes.size(); i += 4) bytes[i] = 255;
  return bytes;
}

cf::Ref<CGImageRef> imageOf(const Bytes &bytes, CGBitmapInfo info) {
  const auto space = cf::adopt(CGColorSpaceCreateDeviceRGB());
  const auto data =
      cf::adopt(CFDataCreate(kCFAllocatorDefault, bytes.data(), static_cast<CFIndex>(bytes.size())));
  const auto provider = cf::adopt(CGDataProviderCreateWithCFData(data.get()));
  return cf::adopt(CGImageCreate(kWidth, kHeight, 8, 32, kRowBytes, space.get(), info, provider.get(),
                                 nullptr, true, kCGRenderingIntentDefault));
}

cf::Ref<CGContextRef> contextOver(Bytes &bytes, size_t width, size_t height, CGBitmapInfo info) {
  const auto space = cf::adopt(CGColorSpaceCreateDeviceRGB());
  return cf::adopt(CGBitmapContextCreate(bytes.data(), width, height, 8, 4 * width, space.get(), info));
}

void draw(CGContextRef context, CGImageRef image) {
  const auto width = static_cast<CGFloat>(CGBitmapContextGetWidth(context));
  const auto height = static_cast<CGFloat>(CGBitmapContextGetHeight(context));
  CGContextDrawImage(context, CGRectMake(0, 0, width, height), image);
}

// Of this thread alone: what other processes do meanwhile does not count.
double threadSeconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

template <class Work>
double secondsFor(Work &&work) {
  const double begin = threadSeconds();
  work();
  return threadSeconds() - begin;
}

// Runs both in turns; the benchmark's time is the first one's, the ratio that of the best rounds.
template <class Ours, class Theirs>
void race(benchmark::State &state, const char *name, Ours &&ours, Theirs &&theirs) {
  double oursTotal = 0, oursBest = 1e9, theirsBest = 1e9;
  for (auto _ : state) {
    const double seconds = secondsFor(ours);
    state.SetIterationTime(seconds);
    oursTotal += seconds;
    oursBest = std::min(oursBest, seconds);
    theirsBest = std::min(theirsBest, secondsFor(theirs));
  }
  state.counters[name] = oursBest / theirsBest;
  state.counters["best_ms"] = 1e3 * oursBest;
  state.counters["GB/s"] = benchmark::Counter(static_cast<double>(kRowBytes * kHeight) *
                                              static_cast<double>(state.iterations()) / oursTotal / 1e9);
}

void drawOneToOne(benchmark::State &state, CGBitmapInfo info, Content content, bool overNothing) {
  const Bytes source = pixels(content);
  Bytes target = overNothing ? Bytes(source.size()) : pixels(Content::mixed);
  Bytes copy(source.size());
  const auto image = imageOf(source, info);
  const auto context = contextOver(target, kWidth, kHeight, info);
  const auto ours = [&] { draw(context.get(), image.get()); };
  const auto theirs = [&] {
    std::memcpy(copy.data(), source.data(), source.size());
    benchmark::ClobberMemory();
  };
  if (!overNothing) return race(state, "x_memcpy", ours, theirs);
  // Drawing fills the target, so that it has to be emptied before each turn.
  double oursTotal = 0, theirsTotal = 0;
  for (auto _ : state) {
    std::memset(target.data(), 0, target.size());
    const double seconds = secondsFor(ours);
    state.SetIterationTime(seconds);
    oursTotal += seconds;
    theirsTotal += secondsFor(theirs);
  }
  state.counters["x_memcpy"] = oursTotal / theirsTotal;
}

void sameLayoutOpaque(benchmark::State &state) {
  drawOneToOne(state, kCGImageAlphaPremultipliedFirst, Content::opaque, false);
}
void sameLayoutOverNothing(benchmark::State &state) {
  drawOneToOne(state, kCGImageAlphaPremultipliedFirst, Content::mixed, true);
}
void sameLayoutOverMixed(benchmark::State &state) {
  drawOneToOne(state, kCGImageAlphaPremultipliedFirst, Content::mixed, false);
}
void sameLayoutWithoutAlpha(benchmark::State &state) {
  drawOneToOne(state, kCGImageAlphaNoneSkipFirst, Content::opaque, false);
}
void straightOverNothing(benchmark::State &state) {
  drawOneToOne(state, kCGImageAlphaFirst, Content::mixed, true);
}

BENCHMARK(sameLayoutOpaque)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(sameLayoutOverNothing)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(sameLayoutOverMixed)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(sameLayoutWithoutAlpha)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(straightOverNothing)->UseManualTime()->Unit(benchmark::kMillisecond);

// pixman's words have alpha at the top: in memory its format is the reverse of ours, at the same cost.
class PixmanScaler {
 public:
  PixmanScaler(Bytes &source, Bytes &target, size_t width, size_t height, bool covers)
      : from_(image(source, kWidth, kHeight)),
        to_(image(target, width, height)),
        width_(static_cast<uint16_t>(width)),
        height_(static_cast<uint16_t>(height)) {
    const pixman_fixed_t sx =
        pixman_double_to_fixed(static_cast<double>(kWidth) / static_cast<double>(width));
    const pixman_fixed_t sy =
        pixman_double_to_fixed(static_cast<double>(kHeight) / static_cast<double>(height));
    pixman_transform_t transform;
    pixman_transform_init_scale(&transform, sx, sy);
    pixman_image_set_transform(from_, &transform);
    pixman_image_set_repeat(from_, PIXMAN_REPEAT_PAD);
    if (!covers) {
      pixman_image_set_filter(from_, PIXMAN_FILTER_BILINEAR, nullptr, 0);
      return;
    }
    // A triangle as wide as ours.
    int count = 0;
    pixman_fixed_t *values =
        pixman_filter_create_separable_convolution(&count, sx, sy, PIXMAN_KERNEL_LINEAR, PIXMAN_KERNEL_LINEAR,
                                                   PIXMAN_KERNEL_IMPULSE, PIXMAN_KERNEL_IMPULSE, 1, 1);
    pixman_image_set_filter(from_, PIXMAN_FILTER_SEPARABLE_CONVOLUTION, values, count);
    std::free(values);
  }
  ~PixmanScaler() {
    pixman_image_unref(from_);
    pixman_image_unref(to_);
  }
  PixmanScaler(const PixmanScaler &) = delete;
  PixmanScaler &operator=(const PixmanScaler &) = delete;

  void run() const {
    pixman_image_composite32(PIXMAN_OP_SRC, from_, nullptr, to_, 0, 0, 0, 0, 0, 0, width_, height_);
  }

 private:
  static pixman_image_t *image(Bytes &bytes, size_t width, size_t height) {
    return pixman_image_create_bits(PIXMAN_a8r8g8b8, static_cast<int>(width), static_cast<int>(height),
                                    static_cast<uint32_t *>(static_cast<void *>(bytes.data())),
                                    static_cast<int>(4 * width));
  }

  pixman_image_t *from_, *to_;
  uint16_t width_, height_;
};

void drawScaled(benchmark::State &state, size_t width, size_t height, bool covers,
                CGInterpolationQuality quality) {
  Bytes source = pixels(Content::mixed);
  Bytes target(4 * width * height), theirTarget(target.size());
  const auto image = imageOf(source, kCGImageAlphaPremultipliedFirst);
  const auto context = contextOver(target, width, height, kCGImageAlphaPremultipliedFirst);
  CGContextSetInterpolationQuality(context.get(), quality);
  const PixmanScaler pixman(source, theirTarget, width, height, covers);
  race(
      state, covers ? "x_pixman_triangle" : "x_pixman_bilinear", [&] { draw(context.get(), image.get()); },
      [&] { pixman.run(); });
}

void halfBesideBilinear(benchmark::State &state) {
  drawScaled(state, kWidth / 2, kHeight / 2, false, kCGInterpolationDefault);
}
void halfBesideTriangle(benchmark::State &state) {
  drawScaled(state, kWidth / 2, kHeight / 2, true, kCGInterpolationDefault);
}
void thirdBesideBilinear(benchmark::State &state) {
  drawScaled(state, kWidth / 3, kHeight / 3, false, kCGInterpolationDefault);
}
void thirdBesideTriangle(benchmark::State &state) {
  drawScaled(state, kWidth / 3, kHeight / 3, true, kCGInterpolationDefault);
}
void doubleBesideBilinear(benchmark::State &state) {
  drawScaled(state, 2 * kWidth, 2 * kHeight, false, kCGInterpolationDefault);
}
void doubleBesideTriangle(benchmark::State &state) {
  drawScaled(state, 2 * kWidth, 2 * kHeight, true, kCGInterpolationDefault);
}
void halfWithLanczos(benchmark::State &state) {
  drawScaled(state, kWidth / 2, kHeight / 2, true, kCGInterpolationHigh);
}
BENCHMARK(halfBesideBilinear)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(halfBesideTriangle)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(thirdBesideBilinear)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(thirdBesideTriangle)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(doubleBesideBilinear)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(doubleBesideTriangle)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(halfWithLanczos)->UseManualTime()->Unit(benchmark::kMillisecond);

#ifdef DRAV_BENCH_YUV
// Without alpha, as libyuv composes nothing. Its box takes the mean of the pixels that fall on each output,
// half as many as a triangle weighs each way; that is for a half, and any other reduction leaves pixels out.
void scaleBesideYuv(benchmark::State &state, size_t width, size_t height, libyuv::FilterMode filter) {
  const Bytes source = pixels(Content::opaque);
  Bytes target(4 * width * height), theirTarget(target.size());
  const auto image = imageOf(source, kCGImageAlphaNoneSkipFirst);
  const auto context = contextOver(target, width, height, kCGImageAlphaNoneSkipFirst);
  const auto theirs = [&] {
    libyuv::ARGBScale(source.data(), kRowBytes, kWidth, kHeight, theirTarget.data(),
                      static_cast<int>(4 * width), static_cast<int>(width), static_cast<int>(height), filter);
  };
  race(
      state, "x_libyuv", [&] { draw(context.get(), image.get()); }, theirs);
}
void halfBesideYuv(benchmark::State &state) {
  scaleBesideYuv(state, kWidth / 2, kHeight / 2, libyuv::kFilterBox);
}
void thirdBesideYuv(benchmark::State &state) {
  scaleBesideYuv(state, kWidth / 3, kHeight / 3, libyuv::kFilterBox);
}
void doubleBesideYuv(benchmark::State &state) {
  scaleBesideYuv(state, 2 * kWidth, 2 * kHeight, libyuv::kFilterBilinear);
}
BENCHMARK(halfBesideYuv)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(thirdBesideYuv)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(doubleBesideYuv)->UseManualTime()->Unit(benchmark::kMillisecond);
#endif

// Strong reductions stand alone: pixman's take less time than reading every pixel would.
void thumbnail(benchmark::State &state) {
  const auto width = static_cast<size_t>(state.range(0)), height = width * 9 / 16;
  Bytes target(4 * width * height);
  const auto image = imageOf(pixels(Content::mixed), kCGImageAlphaPremultipliedFirst);
  const auto context = contextOver(target, width, height, kCGImageAlphaPremultipliedFirst);
  for (auto _ : state) draw(context.get(), image.get());
}
BENCHMARK(thumbnail)->Arg(512)->Arg(128)->Arg(32)->Unit(benchmark::kMillisecond);

void turnedByAnAngle(benchmark::State &state) {
  const Bytes source = pixels(Content::mixed);
  Bytes target(source.size());
  const auto image = imageOf(source, kCGImageAlphaPremultipliedFirst);
  const auto context = contextOver(target, kWidth, kHeight, kCGImageAlphaPremultipliedFirst);
  CGContextTranslateCTM(context.get(), 600, -500);
  CGContextRotateCTM(context.get(), 0.3f);
  for (auto _ : state) draw(context.get(), image.get());
}
BENCHMARK(turnedByAnAngle)->Unit(benchmark::kMillisecond);

void aQuarterTurn(benchmark::State &state) {
  const Bytes source = pixels(Content::mixed);
  Bytes target(source.size());
  const auto image = imageOf(source, kCGImageAlphaPremultipliedFirst);
  const auto context = contextOver(target, kHeight, kWidth, kCGImageAlphaPremultipliedFirst);
  CGContextConcatCTM(context.get(), CGAffineTransformMake(0, 1, -1, 0, kHeight, 0));
  for (auto _ : state) CGContextDrawImage(context.get(), CGRectMake(0, 0, kWidth, kHeight), image.get());
}
BENCHMARK(aQuarterTurn)->Unit(benchmark::kMillisecond);

}  // namespace
