// What each blend mode gives, written a second time and in other words than the kernels: sums of products as
// exact fractions over 255 * 255, the three modes that divide as their printed C expressions.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "composite/kernels.h"

namespace drav_test {

using Pixel = std::array<uint8_t, 4>;  // alpha or ignored, red, green, blue

// N / 255 to nearest; a tie cannot occur, because 255 is odd.
inline int64_t over255(int64_t n) { return n >= 0 ? (2 * n + 255) / 510 : -((255 - 2 * n) / 510); }
inline uint8_t clampedOver255(int64_t n) {
  return static_cast<uint8_t>(std::clamp<int64_t>(over255(n), 0, 255));
}
inline uint8_t wrappedOver255(int64_t n) { return static_cast<uint8_t>(over255(n) & 255); }

inline uint8_t clampedFromFloat(float f) {
  const float scaled = f * 255.0f;
  if (!(scaled > 0.0f)) return 0;
  return scaled >= 254.5f ? uint8_t{255}
                          : static_cast<uint8_t>(std::floor(static_cast<double>(scaled) + 0.5));
}

inline float dodge(float sc, float dc, float sa, float da) {
  const float ks = 1.0f - sa, kd = 1.0f - da, p = sc * da, q = dc * sa, limit = sa * da;
  if (p + q >= limit) return sc * kd + limit + dc * ks;
  const float ratio = sc / sa, left = sc * kd, right = dc * ks;
  const double divided = double{q} / (1.0 - double{ratio});
  return static_cast<float>(divided + double{left} + double{right});
}
inline float burn(float sc, float dc, float sa, float da) {
  const float ks = 1.0f - sa, kd = 1.0f - da, p = sc * da, q = dc * sa, limit = sa * da;
  if (p + q <= limit) return sc * kd + dc * ks;
  return sa * (p + q - limit) / sc + sc * kd + dc * ks;
}
inline float soft(float sc, float dc, float sa, float da) {
  const float left = sc * (1.0f - da), right = dc * (1.0f - sa);
  const double m = da == 0.0f ? 0.0 : double{dc / da};
  const double lean = 2.0 * sc - sa;
  double inside = 0;
  if (2.0 * sc < sa)
    inside = dc * (sa - (1.0 - m) * lean);
  else if (8.0 * dc <= da)
    inside = dc * (sa - (1.0 - m) * lean * (3.0 - 8.0 * m));
  else
    inside = double{dc * sa} + (std::pow(m, 0.5) * da - dc) * lean;
  return static_cast<float>(inside + double{left} + double{right});
}
inline float opaqueDodge(float s, float d) {
  return s + d >= 1.0f ? 1.0f : static_cast<float>(double{d} / (1.0 - double{s}));
}
inline float opaqueBurn(float s, float d) {
  const float sum = s + d;
  return sum <= 1.0f ? 0.0f : static_cast<float>((double{sum} - 1.0) / double{s});
}
inline float opaqueSoft(float s, float d) {
  const double lean = 2.0 * s - 1.0, below = 1.0 - double{d};
  if (2.0 * s < 1.0) return static_cast<float>(d * (1.0 - below * lean));
  if (8.0 * d <= 1.0) return static_cast<float>(d * (1.0 - below * lean * (3.0 - 8.0 * d)));
  return static_cast<float>(d + (std::pow(double{d}, 0.5) - d) * lean);
}

inline uint8_t modelOpaque(DRAVCFBlendMode mode, int s, int d) {
  const auto clamped = [](int64_t n) { return clampedOver255(n); };
  const auto lit = [&](bool dark) {
    return clamped(dark ? 2 * s * d : 255 * 255 - 2 * (255 - d) * (255 - s));
  };
  const float fs = static_cast<float>(s) / 255.0f, fd = static_cast<float>(d) / 255.0f;
  switch (mode) {
    case kDRAVCFBlendModeClear:
    case kDRAVCFBlendModeSrcOut:
    case kDRAVCFBlendModeDestOut:
    case kDRAVCFBlendModeXOR:
      return 255;
    case kDRAVCFBlendModeCopySrc:
    case kDRAVCFBlendModeSrcOver:
    case kDRAVCFBlendModeSrcIn:
    case kDRAVCFBlendModeSrcAtop:
      return static_cast<uint8_t>(s);
    case kDRAVCFBlendModePlus:
      return static_cast<uint8_t>(std::min(s + d, 255));
    case kDRAVCFBlendModeMultiply:
      return clamped(s * d);
    case kDRAVCFBlendModeScreen:
      return clamped(255 * (s + d) - s * d);
    case kDRAVCFBlendModeOverlay:
      return lit(2 * d < 255);
    case kDRAVCFBlendModeHardLight:
      return lit(2 * s < 255);
    case kDRAVCFBlendModeDarken:
      return static_cast<uint8_t>(std::min(s, d));
    case kDRAVCFBlendModeLighten:
      return static_cast<uint8_t>(std::max(s, d));
    case kDRAVCFBlendModeColorDodge:
      return clampedFromFloat(opaqueDodge(fs, fd));
    case kDRAVCFBlendModeColorBurn:
      return clampedFromFloat(opaqueBurn(fs, fd));
    case kDRAVCFBlendModeSoftLight:
      return clampedFromFloat(opaqueSoft(fs, fd));
    case kDRAVCFBlendModeDifference:
      return static_cast<uint8_t>(std::abs(s - d));
    case kDRAVCFBlendModeExclusion:
      return clamped(255 * (s + d) - 2 * s * d);
    default:
      return static_cast<uint8_t>(d);  // CopyDest, DestOver, DestIn, DestAtop
  }
}

// One colour component; all arguments are bytes. Not for Clear and the two copies.
inline uint8_t modelColour(DRAVCFBlendMode mode, int sc, int dc, int sa, int da) {
  const int ks = 255 - sa, kd = 255 - da, bare = sc * kd + dc * ks;
  const int least = std::min(sc * da, dc * sa), most = std::max(sc * da, dc * sa);
  const auto lit = [&](bool dark) {
    return clampedOver255(bare + (dark ? 2 * sc * dc : sa * da - 2 * (da - dc) * (sa - sc)));
  };
  const auto unit = [](int byte) { return static_cast<float>(byte) / 255.0f; };
  switch (mode) {
    case kDRAVCFBlendModeSrcOver:
      return wrappedOver255(dc * ks + 255 * sc);
    case kDRAVCFBlendModeDestOver:
      return wrappedOver255(sc * kd + 255 * dc);
    case kDRAVCFBlendModeSrcIn:
      return wrappedOver255(sc * da);
    case kDRAVCFBlendModeDestIn:
      return wrappedOver255(dc * sa);
    case kDRAVCFBlendModeSrcOut:
      return wrappedOver255(sc * kd);
    case kDRAVCFBlendModeDestOut:
      return wrappedOver255(dc * ks);
    case kDRAVCFBlendModeSrcAtop:
      return wrappedOver255(dc * ks + sc * da);
    case kDRAVCFBlendModeDestAtop:
      return wrappedOver255(dc * sa + sc * kd);
    case kDRAVCFBlendModeXOR:
      return wrappedOver255(bare);
    case kDRAVCFBlendModePlus:
      return clampedOver255(255 * (sc + dc));
    case kDRAVCFBlendModeMultiply:
      return clampedOver255(bare + sc * dc);
    case kDRAVCFBlendModeScreen:
      return clampedOver255(255 * (sc + dc) - sc * dc);
    case kDRAVCFBlendModeOverlay:
      return lit(2 * dc < da);
    case kDRAVCFBlendModeHardLight:
      return lit(2 * sc < sa);
    case kDRAVCFBlendModeDarken:
      return clampedOver255(bare + least);
    case kDRAVCFBlendModeLighten:
      return clampedOver255(bare + most);
    case kDRAVCFBlendModeColorDodge:
      return clampedFromFloat(dodge(unit(sc), unit(dc), unit(sa), unit(da)));
    case kDRAVCFBlendModeColorBurn:
      return clampedFromFloat(burn(unit(sc), unit(dc), unit(sa), unit(da)));
    case kDRAVCFBlendModeSoftLight:
      return clampedFromFloat(soft(unit(sc), unit(dc), unit(sa), unit(da)));
    case kDRAVCFBlendModeDifference:
      return clampedOver255(255 * (sc + dc) - 2 * least);
    default:
      return clampedOver255(sc * da + dc * sa - 2 * sc * dc + bare);  // Exclusion
  }
}

inline uint8_t modelAlpha(DRAVCFBlendMode mode, int sa, int da) {
  switch (mode) {
    case kDRAVCFBlendModeSrcIn:
    case kDRAVCFBlendModeDestIn:
      return clampedOver255(sa * da);
    case kDRAVCFBlendModeSrcOut:
      return clampedOver255(255 * sa - sa * da);
    case kDRAVCFBlendModeDestOut:
      return clampedOver255(255 * da - sa * da);
    case kDRAVCFBlendModeSrcAtop:
      return static_cast<uint8_t>(da);
    case kDRAVCFBlendModeDestAtop:
      return static_cast<uint8_t>(sa);
    case kDRAVCFBlendModeXOR:
      return clampedOver255(255 * (sa + da) - 2 * sa * da);
    case kDRAVCFBlendModePlus:
      return clampedOver255(255 * (sa + da));
    default:
      return clampedOver255(255 * (sa + da) - sa * da);
  }
}

inline Pixel modelARGB(DRAVCFBlendMode mode, const Pixel &s, const Pixel &d) {
  if (mode == kDRAVCFBlendModeClear) return {0, 0, 0, 0};
  if (mode == kDRAVCFBlendModeCopySrc) return s;
  if (mode == kDRAVCFBlendModeCopyDest) return d;
  Pixel result{modelAlpha(mode, s[0], d[0])};
  for (size_t i = 1; i < 4; ++i) result[i] = modelColour(mode, s[i], d[i], s[0], d[0]);
  return result;
}

}  // namespace drav_test
