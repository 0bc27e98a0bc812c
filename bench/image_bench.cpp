// Images of 3840 x 2160: promotion, copies, geometry, operations, tiling.
#include <DravKit/DravKit.h>
#include <benchmark/benchmark.h>

#include <memory>
#include <random>

#include "core/image.h"
#include "foundation/ref.h"
#include "race.h"

namespace {

constexpr size_t kWidth = 3840, kHeight = 2160, kPixels = kWidth * kHeight;

using Image = cf::Ref<DRAVCFImageRef>;
using Space = cf::Ref<CGColorSpaceRef>;
using Bytes = std::vector<uint8_t>;

Space display() { return cf::adopt(DRAVCGColorSpaceCreateMainDisplay()); }
Space gray() { return cf::adopt(CGColorSpaceCreateDeviceGray()); }
Space calibrated() {
  const CGFloat white[3] = {0.9505f, 1, 1.089f}, black[3] = {0, 0, 0}, gamma[3] = {1.8f, 1.8f, 1.8f};
  const CGFloat matrix[9] = {0.4124f, 0.2126f, 0.0193f, 0.3576f, 0.7152f, 0.1192f, 0.1805f, 0.0722f, 0.9505f};
  return cf::adopt(CGColorSpaceCreateCalibratedRGB(white, black, gamma, matrix));
}

// Random pixels; with alpha first no colour is above it.
const Bytes &pixels(size_t bytesPerPixel) {
  static const Bytes four = [] {
    std::mt19937 random(1);
    Bytes bytes(4 * kPixels);
    for (size_t i = 0; i < bytes.size(); i += 4) {
      const auto word = static_cast<uint32_t>(random());
      const auto alpha = static_cast<uint8_t>(word);
      bytes[i] = alpha;
      for (size_t c = 1; c < 4; ++c) bytes[i + c] = std::min(alpha, static_cast<uint8_t>(word >> (8 * c)));
    }
    return bytes;
  }();
  static const Bytes one(four.begin(), four.begin() + kPixels);
  return bytesPerPixel == 4 ? four : one;
}

Image bufferImage(size_t bytesPerPixel, const Space &space, CGImageAlphaInfo alpha) {
  return cf::adopt(DRAVCFImageCreateWithBuffer(nullptr, pixels(bytesPerPixel).data(), kWidth, kHeight, 8,
                                               8 * bytesPerPixel, 0, space.get(), alpha));
}

Image argb() { return bufferImage(4, display(), kCGImageAlphaPremultipliedFirst); }
Image rgb() { return bufferImage(4, display(), kCGImageAlphaNoneSkipFirst); }

// An operation on a fresh image each round.
void onFresh(benchmark::State &state, const Image &model,
             const std::function<void(DRAVCFImageRef)> &operation, size_t memcpyBytes = 4 * kPixels) {
  auto fresh = std::make_shared<Image>();
  bench::Contender ours{"ours", [=] { operation(fresh->get()); },
                        [=] { *fresh = cf::adopt(DRAVCFImageCreateCopy(nullptr, model.get())); }};
  bench::race(state, ours, {bench::copying(memcpyBytes)}, kPixels);
}

// Promotion of an image that holds a platform image only.
void promote(benchmark::State &state, const Image &model, bool addAlpha) {
  const cf::Ref cgImage = cf::share(DRAVCFImageGetCGImage(model.get()));
  auto fresh = std::make_shared<Image>();
  bench::Contender ours{"ours", [=] { DRAVCFImagePromoteImage(fresh->get(), 0, addAlpha); },
                        [=] { *fresh = cf::adopt(DRAVCFImageCreateWithImage(nullptr, cgImage.get())); }};
  bench::race(state, ours, {bench::copying(4 * kPixels)}, kPixels);
}

void PromoteRightFormat(benchmark::State &state) { promote(state, argb(), false); }
void PromoteRGBToAlpha(benchmark::State &state) { promote(state, rgb(), true); }
void PromoteGray(benchmark::State &state) {
  promote(state, bufferImage(1, gray(), kCGImageAlphaNone), false);
}
void PromoteOtherProfile(benchmark::State &state) {
  promote(state, bufferImage(4, calibrated(), kCGImageAlphaNoneSkipFirst), false);
}

void Copy(benchmark::State &state) {
  onFresh(state, argb(),
          [](DRAVCFImageRef image) { cf::Ref copy = cf::adopt(DRAVCFImageCreateCopy(nullptr, image)); });
}

void Crop(benchmark::State &state) {
  onFresh(state, argb(), [](DRAVCFImageRef image) {
    DRAVCFImageCropToRect(image, CGRectMake(1, 1, kWidth - 2, kHeight - 2));
  });
}
void ScaleHalf(benchmark::State &state) {
  onFresh(state, argb(),
          [](DRAVCFImageRef image) { DRAVCFImageScaleToSize(image, CGSizeMake(kWidth / 2, kHeight / 2)); });
}
void ScaleThird(benchmark::State &state) {
  onFresh(state, argb(),
          [](DRAVCFImageRef image) { DRAVCFImageScaleToSize(image, CGSizeMake(kWidth / 3, kHeight / 3)); });
}
void ScaleDouble(benchmark::State &state) {
  onFresh(state, argb(),
          [](DRAVCFImageRef image) { DRAVCFImageScaleToSize(image, CGSizeMake(kWidth * 2, kHeight * 2)); });
}
void Flip(benchmark::State &state) { onFresh(state, argb(), DRAVCFImageFlipVertically); }

void IsOpaque(benchmark::State &state) {
  Image opaque = argb();
  for (size_t i = 0; i < opaque->bufferSize; i += 4) opaque->buffer[i] = 255;
  onFresh(state, opaque, [](DRAVCFImageRef image) { benchmark::DoNotOptimize(DRAVCFImageIsOpaque(image)); });
}
void RemoveAlpha(benchmark::State &state) { onFresh(state, argb(), DRAVCFImageRemoveAlphaChannel); }
void CopyOpaque(benchmark::State &state) {
  onFresh(state, argb(),
          [](DRAVCFImageRef image) { cf::Ref copy = cf::adopt(DRAVCFImageCopyOpaqueImage(nullptr, image)); });
}
void CopyAlpha(benchmark::State &state) {
  onFresh(state, argb(), [](DRAVCFImageRef image) {
    cf::Ref copy = cf::adopt(DRAVCFImageCopyAlphaChannel(nullptr, image));
  });
}
void Invert(benchmark::State &state) { onFresh(state, argb(), DRAVCFImageInvert); }
void Clear(benchmark::State &state) { onFresh(state, argb(), DRAVCFImageClear); }
void MakeGrayscale(benchmark::State &state) { onFresh(state, argb(), DRAVCFImageMakeGrayscale); }
void ConvertToGrayscale(benchmark::State &state) { onFresh(state, rgb(), DRAVCFImageConvertToGrayscale); }

// Tiles of 64 x 64 over the whole, against one composite of the whole.
void Tile(benchmark::State &state) {
  const auto mode = static_cast<DRAVCFBlendMode>(state.range(0));
  const Image source = argb(), destination = argb();
  bench::Contender ours{"ours", [=] {
                          DRAVCFImageTile(source.get(), destination.get(), CGRectMake(100, 100, 64, 64),
                                          CGRectMake(0, 0, kWidth, kHeight), mode, 2);
                        }};
  bench::Contender composite{
      "composite", [=] { DRAVCFImageComposite(source.get(), destination.get(), nullptr, nullptr, 1, mode); }};
  bench::race(state, ours, {composite, bench::copying(4 * kPixels)}, kPixels);
}

}  // namespace

#define DRAV_RACE(name) BENCHMARK(name)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(12)
DRAV_RACE(PromoteRightFormat);
DRAV_RACE(PromoteRGBToAlpha);
DRAV_RACE(PromoteGray);
DRAV_RACE(PromoteOtherProfile);
DRAV_RACE(Copy);
DRAV_RACE(Crop);
DRAV_RACE(ScaleHalf);
DRAV_RACE(ScaleThird);
DRAV_RACE(ScaleDouble);
DRAV_RACE(Flip);
DRAV_RACE(IsOpaque);
DRAV_RACE(RemoveAlpha);
DRAV_RACE(CopyOpaque);
DRAV_RACE(CopyAlpha);
DRAV_RACE(Invert);
DRAV_RACE(Clear);
DRAV_RACE(MakeGrayscale);
DRAV_RACE(ConvertToGrayscale);
DRAV_RACE(Tile)->Arg(kDRAVCFBlendModeSrcOver)->Arg(kDRAVCFBlendModeMultiply);
