#pragma once
// One function per pixel format and blend mode: combines one source pixel into one destination pixel. They
// are the meaning of the blend modes; the row forms (rows.h) have to give the same bytes.

#include <array>
#include <cstddef>
#include <cstdint>

#include "composite/formulas.h"

namespace drav {

enum class PixelFormat : uint8_t { grey, xrgb, argb };
inline constexpr size_t kPixelFormatCount = 3;
inline constexpr size_t kBlendModeCount = Modes::count;

constexpr size_t bytesPerPixel(PixelFormat format) noexcept { return format == PixelFormat::grey ? 1 : 4; }

// What belongs to each format and mode: table[format][mode].
template <class T>
using ByFormatAndMode = std::array<std::array<T, kBlendModeCount>, kPixelFormatCount>;

extern const ByFormatAndMode<DRAVCFCompositeFunction> kKernels;

// The place of one of our own kernels in the tables; `ours` is false for a function of the caller's.
struct KernelPlace {
  bool ours;
  PixelFormat format;
  DRAVCFBlendMode mode;
};
KernelPlace placeOfKernel(DRAVCFCompositeFunction kernel) noexcept;

#define DRAV_EACH_BLEND_MODE(X) \
  X(Clear)                      \
  X(CopySrc)                    \
  X(CopyDest)                   \
  X(SrcOver)                    \
  X(DestOver)                   \
  X(SrcIn)                      \
  X(DestIn)                     \
  X(SrcOut)                     \
  X(DestOut)                    \
  X(SrcAtop)                    \
  X(DestAtop)                   \
  X(XOR)                        \
  X(Plus)                       \
  X(Multiply)                   \
  X(Screen)                     \
  X(Overlay)                    \
  X(Darken) X(Lighten) X(ColorDodge) X(ColorBurn) X(HardLight) X(SoftLight) X(Difference) X(Exclusion)

#define DRAV_DECLARE_KERNELS(Mode)                                                     \
  void Composite_S_8_##Mode(const uint8_t *source, uint8_t *destination) noexcept;     \
  void Composite_RGB_888_##Mode(const uint8_t *source, uint8_t *destination) noexcept; \
  void Composite_ARGB_8888_##Mode(const uint8_t *source, uint8_t *destination) noexcept;
DRAV_EACH_BLEND_MODE(DRAV_DECLARE_KERNELS)
#undef DRAV_DECLARE_KERNELS

}  // namespace drav
