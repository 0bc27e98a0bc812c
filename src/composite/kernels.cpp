#include "composite/kernels.h"

#include <cstring>

#include "composite/conversions.h"

namespace drav {
namespace {

// Grey, or the three colours behind the ignored byte 0 of an opaque pixel.
struct Grey {
  static constexpr size_t channels = 1, first = 0;
  static void load(const uint8_t *pixel, float *to) { IntSToFloatS(pixel, to); }
  static void store(float *from, uint8_t *pixel) { FloatSToIntS_Clamp(from, pixel); }
};
struct Colour {
  static constexpr size_t channels = 3, first = 1;
  static void load(const uint8_t *pixel, float *to) { IntXRGBToFloatRGB(pixel, to); }
  static void store(float *from, uint8_t *pixel) { FloatRGBToIntXRGB_Clamp(from, pixel); }
};

template <class Format, class Mode>
void computeOpaque(const uint8_t *source, uint8_t *destination) noexcept {
  float s[Format::channels], d[Format::channels];
  Format::load(source, s);
  Format::load(destination, d);
  for (size_t i = 0; i < Format::channels; ++i) d[i] = Mode::opaque(s[i], d[i]);
  Format::store(d, destination);
}

template <class Mode>
void computeARGB(const uint8_t *source, uint8_t *destination) noexcept {
  float s[4], d[4];
  IntARGBToFloatARGB(source, s);
  IntARGBToFloatARGB(destination, d);
  const Alphas alphas{s[0], d[0], 1.0F - s[0], 1.0F - d[0]};
  for (size_t i = 1; i < 4; ++i) d[i] = Mode::colour(s[i], d[i], alphas);
  d[0] = Mode::alpha(alphas);
  if constexpr (Mode::store == Store::wrapped)
    FloatARGBToIntARGB(d, destination);
  else
    FloatARGBToIntARGB_Clamp(d, destination);
}

template <class Format, class Mode>
void blendOpaque(const uint8_t *source, uint8_t *destination) noexcept {
  constexpr size_t at = Format::first, count = Format::channels;
  if constexpr (Mode::onOpaque == Effect::clear) std::memset(destination + at, 255, count);
  if constexpr (Mode::onOpaque == Effect::copy) std::memmove(destination + at, source + at, count);
  if constexpr (Mode::onOpaque == Effect::compute) computeOpaque<Format, Mode>(source, destination);
}

template <class Mode>
void blendARGB(const uint8_t *source, uint8_t *destination) noexcept {
  if constexpr (Mode::onAlpha == Effect::clear) std::memset(destination, 0, 4);
  if constexpr (Mode::onAlpha == Effect::copy) std::memmove(destination, source, 4);
  if constexpr (Mode::onAlpha == Effect::compute) computeARGB<Mode>(source, destination);
}

}  // namespace

#define DRAV_DEFINE_KERNELS(Mode)                                                         \
  void Composite_S_8_##Mode(const uint8_t *source, uint8_t *destination) noexcept {       \
    blendOpaque<Grey, mode::Mode>(source, destination);                                   \
  }                                                                                       \
  void Composite_RGB_888_##Mode(const uint8_t *source, uint8_t *destination) noexcept {   \
    blendOpaque<Colour, mode::Mode>(source, destination);                                 \
  }                                                                                       \
  void Composite_ARGB_8888_##Mode(const uint8_t *source, uint8_t *destination) noexcept { \
    blendARGB<mode::Mode>(source, destination);                                           \
  }
DRAV_EACH_BLEND_MODE(DRAV_DEFINE_KERNELS)

#define DRAV_S_8(Mode) &Composite_S_8_##Mode,
#define DRAV_RGB_888(Mode) &Composite_RGB_888_##Mode,
#define DRAV_ARGB_8888(Mode) &Composite_ARGB_8888_##Mode,
constinit const ByFormatAndMode<DRAVCFCompositeFunction> kKernels{{
    {DRAV_EACH_BLEND_MODE(DRAV_S_8)},
    {DRAV_EACH_BLEND_MODE(DRAV_RGB_888)},
    {DRAV_EACH_BLEND_MODE(DRAV_ARGB_8888)},
}};

namespace {
// The list of names stands in the order of the enumeration too.
#define DRAV_MODE(Mode) mode::Mode::mode,
constexpr DRAVCFBlendMode kNamedModes[] = {DRAV_EACH_BLEND_MODE(DRAV_MODE)};
constexpr bool namesAreInEnumOrder() {
  DRAVCFBlendMode at = 0;
  for (const DRAVCFBlendMode mode : kNamedModes)
    if (mode != at++) return false;
  return at == kBlendModeCount;
}
static_assert(namesAreInEnumOrder());
}  // namespace

KernelPlace placeOfKernel(DRAVCFCompositeFunction kernel) noexcept {
  for (size_t format = 0; format < kPixelFormatCount; ++format)
    for (size_t mode = 0; mode < kBlendModeCount; ++mode)
      if (kKernels[format][mode] == kernel)
        return {true, static_cast<PixelFormat>(format), static_cast<DRAVCFBlendMode>(mode)};
  return {false, PixelFormat::grey, 0};
}

}  // namespace drav
