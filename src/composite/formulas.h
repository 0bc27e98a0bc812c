#pragma once
// One blend mode, one struct: what it does to a pixel without alpha, and to one with alpha.
//
// The precision is part of each formula. Components are floats, so an operation on two of them is single; the
// constants written 1.0, 2.0 ... are doubles on purpose, and what they touch is double until it is stored. A
// fused or re-ordered operation changes bytes.

#include <DravKit/DravKit.h>

#include <cmath>

namespace drav {

// What some modes do to a whole pixel instead of computing. An opaque destination cannot carry the alpha that
// the Porter-Duff modes produce: there they copy, keep or clear. Cleared is white without alpha, transparent
// with it.
enum class Effect { compute, clear, copy, keep };

// Wrapped keeps the low 8 bits: the results of those modes stay within 0 ... 1 for every valid pixel.
enum class Store { wrapped, clamped };

struct Alphas {
  float s, d;    // of source and destination
  float ks, kd;  // 1 - s, 1 - d
};

inline float single(double value) noexcept { return static_cast<float>(value); }
inline float lesser(float a, float b) noexcept { return a < b ? a : b; }
inline float greater(float a, float b) noexcept { return a > b ? a : b; }
inline float uncovered(float sc, float dc, const Alphas &a) noexcept { return sc * a.kd + dc * a.ks; }

template <DRAVCFBlendMode Number, Effect OnOpaque, Effect OnAlpha>
struct WholePixel {
  static constexpr DRAVCFBlendMode mode = Number;
  static constexpr Effect onOpaque = OnOpaque, onAlpha = OnAlpha;
};

template <DRAVCFBlendMode Number, Effect OnOpaque>
struct PorterDuff {
  static constexpr DRAVCFBlendMode mode = Number;
  static constexpr Effect onOpaque = OnOpaque, onAlpha = Effect::compute;
  static constexpr Store store = Store::wrapped;
};

template <DRAVCFBlendMode Number>
struct Blend {
  static constexpr DRAVCFBlendMode mode = Number;
  static constexpr Effect onOpaque = Effect::compute, onAlpha = Effect::compute;
  static constexpr Store store = Store::clamped;
  static float alpha(const Alphas &a) noexcept { return a.s + a.d - a.s * a.d; }
};

namespace mode {

struct Clear : WholePixel<kDRAVCFBlendModeClear, Effect::clear, Effect::clear> {};
struct CopySrc : WholePixel<kDRAVCFBlendModeCopySrc, Effect::copy, Effect::copy> {};
struct CopyDest : WholePixel<kDRAVCFBlendModeCopyDest, Effect::keep, Effect::keep> {};

struct SrcOver : PorterDuff<kDRAVCFBlendModeSrcOver, Effect::copy> {
  static float colour(float sc, float dc, const Alphas &a) { return dc * a.ks + sc; }
  static float alpha(const Alphas &a) { return a.s + a.d - a.s * a.d; }
};
struct DestOver : PorterDuff<kDRAVCFBlendModeDestOver, Effect::keep> {
  static float colour(float sc, float dc, const Alphas &a) { return sc * a.kd + dc; }
  static float alpha(const Alphas &a) { return a.s + a.d - a.s * a.d; }
};
struct SrcIn : PorterDuff<kDRAVCFBlendModeSrcIn, Effect::copy> {
  static float colour(float sc, float, const Alphas &a) { return sc * a.d; }
  static float alpha(const Alphas &a) { return a.d * a.s; }
};
struct DestIn : PorterDuff<kDRAVCFBlendModeDestIn, Effect::keep> {
  static float colour(float, float dc, const Alphas &a) { return dc * a.s; }
  static float alpha(const Alphas &a) { return a.d * a.s; }
};
struct SrcOut : PorterDuff<kDRAVCFBlendModeSrcOut, Effect::clear> {
  static float colour(float sc, float, const Alphas &a) { return sc * a.kd; }
  static float alpha(const Alphas &a) { return a.s - a.s * a.d; }
};
struct DestOut : PorterDuff<kDRAVCFBlendModeDestOut, Effect::clear> {
  static float colour(float, float dc, const Alphas &a) { return dc * a.ks; }
  static float alpha(const Alphas &a) { return a.d - a.s * a.d; }
};
struct SrcAtop : PorterDuff<kDRAVCFBlendModeSrcAtop, Effect::copy> {
  static float colour(float sc, float dc, const Alphas &a) { return dc * a.ks + sc * a.d; }
  static float alpha(const Alphas &a) { return a.d; }
};
struct DestAtop : PorterDuff<kDRAVCFBlendModeDestAtop, Effect::keep> {
  static float colour(float sc, float dc, const Alphas &a) { return dc * a.s + sc * a.kd; }
  static float alpha(const Alphas &a) { return a.s; }
};
struct XOR : PorterDuff<kDRAVCFBlendModeXOR, Effect::clear> {
  static float colour(float sc, float dc, const Alphas &a) { return dc * a.ks + sc * a.kd; }
  static float alpha(const Alphas &a) { return (a.s + a.d) - 2.0F * a.s * a.d; }
};

struct Plus : Blend<kDRAVCFBlendModePlus> {
  static float opaque(float s, float d) { return s + d; }
  static float colour(float sc, float dc, const Alphas &) { return dc + sc; }
  static float alpha(const Alphas &a) { return a.d + a.s; }
};
struct Multiply : Blend<kDRAVCFBlendModeMultiply> {
  static float opaque(float s, float d) { return s * d; }
  static float colour(float sc, float dc, const Alphas &a) { return dc * a.ks + dc * sc + sc * a.kd; }
};
struct Screen : Blend<kDRAVCFBlendModeScreen> {
  static float opaque(float s, float d) { return s + d - s * d; }
  static float colour(float sc, float dc, const Alphas &) { return sc + dc - sc * dc; }
};

// Overlay and HardLight are one formula; which side decides the branch is all that differs.
inline float lit(bool dark, float s, float d) {
  return single(dark ? 2.0 * s * d : 1.0 - 2.0 * (1.0 - d) * (1.0 - s));
}
inline float lit(bool dark, float sc, float dc, const Alphas &a) {
  return single(dark ? 2.0 * sc * dc + sc * a.kd + dc * a.ks
                     : a.s * a.d - 2.0 * (a.d - dc) * (a.s - sc) + sc * a.kd + dc * a.ks);
}
struct Overlay : Blend<kDRAVCFBlendModeOverlay> {
  static float opaque(float s, float d) { return lit(2.0 * d < 1.0, s, d); }
  static float colour(float sc, float dc, const Alphas &a) { return lit(2.0 * dc < a.d, sc, dc, a); }
};

struct Darken : Blend<kDRAVCFBlendModeDarken> {
  static float opaque(float s, float d) { return lesser(s, d); }
  static float colour(float sc, float dc, const Alphas &a) {
    return lesser(sc * a.d, dc * a.s) + sc * a.kd + dc * a.ks;
  }
};
struct Lighten : Blend<kDRAVCFBlendModeLighten> {
  static float opaque(float s, float d) { return greater(s, d); }
  static float colour(float sc, float dc, const Alphas &a) {
    return greater(sc * a.d, dc * a.s) + sc * a.kd + dc * a.ks;
  }
};

// With a source alpha of 0 the first branch is taken, and nothing is divided.
struct ColorDodge : Blend<kDRAVCFBlendModeColorDodge> {
  static float opaque(float s, float d) { return single(s + d >= 1.0 ? 1.0 : d / (1.0 - s)); }
  static float colour(float sc, float dc, const Alphas &a) {
    const float both = a.s * a.d;
    if (sc * a.d + dc * a.s >= both) return sc * a.kd + both + dc * a.ks;
    return single(dc * a.s / (1.0 - sc / a.s) + sc * a.kd + dc * a.ks);
  }
};
// Without alpha s is above 0 wherever it divides; with alpha only an invalid pixel divides by 0.
struct ColorBurn : Blend<kDRAVCFBlendModeColorBurn> {
  static float opaque(float s, float d) { return single(s + d <= 1.0 ? 0.0 : (s + d - 1.0) / s); }
  static float colour(float sc, float dc, const Alphas &a) {
    const float both = a.s * a.d;
    if (sc * a.d + dc * a.s <= both) return uncovered(sc, dc, a);
    return a.s * (sc * a.d + dc * a.s - both) / sc + sc * a.kd + dc * a.ks;
  }
};
struct HardLight : Blend<kDRAVCFBlendModeHardLight> {
  static float opaque(float s, float d) { return lit(2.0 * s < 1.0, s, d); }
  static float colour(float sc, float dc, const Alphas &a) { return lit(2.0 * sc < a.s, sc, dc, a); }
};

// The correctly rounded root: pow(x, 0.5) may miss it by the last bit, from one mathematics library to the
// next. Not one byte depends on that bit.
inline double squareRoot(float v) { return std::sqrt(static_cast<double>(v)); }

// Dark sources brighten here: the minus signs are this mode's own.
struct SoftLight : Blend<kDRAVCFBlendModeSoftLight> {
  static float opaque(float s, float d) {
    if (2.0 * s < 1.0) return single(d * (1.0 - (1.0 - d) * (2.0 * s - 1.0)));
    if (8.0 * d <= 1.0) return single(d * (1.0 - (1.0 - d) * (2.0 * s - 1.0) * (3.0 - 8.0 * d)));
    return single(d + (squareRoot(d) - d) * (2.0 * s - 1.0));
  }
  static float colour(float sc, float dc, const Alphas &a) {
    const float m = a.d != 0.0F ? dc / a.d : 0.0F;
    if (2.0 * sc < a.s) return single(dc * (a.s - (1.0 - m) * (2.0 * sc - a.s)) + sc * a.kd + dc * a.ks);
    if (8.0 * dc <= a.d)
      return single(dc * (a.s - (1.0 - m) * (2.0 * sc - a.s) * (3.0 - 8.0 * m)) + sc * a.kd + dc * a.ks);
    return single(dc * a.s + (squareRoot(m) * a.d - dc) * (2.0 * sc - a.s) + sc * a.kd + dc * a.ks);
  }
};
struct Difference : Blend<kDRAVCFBlendModeDifference> {
  static float opaque(float s, float d) { return single((s + d) - 2.0 * lesser(s, d)); }
  static float colour(float sc, float dc, const Alphas &a) {
    return single((sc + dc) - 2.0 * lesser(sc * a.d, dc * a.s));
  }
};
struct Exclusion : Blend<kDRAVCFBlendModeExclusion> {
  static float opaque(float s, float d) { return single((s + d) - 2.0 * s * d); }
  static float colour(float sc, float dc, const Alphas &a) {
    return single((sc * a.d + dc * a.s) - 2.0 * sc * dc + sc * a.kd + dc * a.ks);
  }
};

}  // namespace mode

// Every mode, once, in the order of the enumeration.
template <class... Mode>
struct ModeList {
  static constexpr size_t count = sizeof...(Mode);
  static constexpr bool inEnumOrder() {
    DRAVCFBlendMode at = 0;
    return ((Mode::mode == at++) && ...);
  }
};
using Modes =
    ModeList<mode::Clear, mode::CopySrc, mode::CopyDest, mode::SrcOver, mode::DestOver, mode::SrcIn,
             mode::DestIn, mode::SrcOut, mode::DestOut, mode::SrcAtop, mode::DestAtop, mode::XOR, mode::Plus,
             mode::Multiply, mode::Screen, mode::Overlay, mode::Darken, mode::Lighten, mode::ColorDodge,
             mode::ColorBurn, mode::HardLight, mode::SoftLight, mode::Difference, mode::Exclusion>;
static_assert(Modes::inEnumOrder() && Modes::count == kDRAVCFBlendModeExclusion + 1);

}  // namespace drav
