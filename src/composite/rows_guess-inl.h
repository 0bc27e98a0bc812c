// The modes that divide or take a root: a single-precision estimate, and the doubt that goes with it.
// Included once for each kind of processor.
//
// The estimate errs by less than 0.0003 of a byte step, the kernel by an amount that grows where it divides
// by little. Unless the estimate lies within both errors of a half-way point, both round to the same byte;
// where it lies closer, the pixel is doubtful and the kernel itself settles it. About one pixel in 500 is.
#if defined(DRAV_ROWS_GUESS_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef DRAV_ROWS_GUESS_INL_H
#undef DRAV_ROWS_GUESS_INL_H
#else
#define DRAV_ROWS_GUESS_INL_H
#endif

#include "composite/rows_bytes-inl.h"

#if HWY_TARGET != HWY_SCALAR  // which has no vectors to compile this for
HWY_BEFORE_NAMESPACE();
namespace drav::HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

using DI = hn::ScalableTag<int32_t>;
using DF = hn::ScalableTag<float>;
using Floats = hn::Vec<DF>;
using Truth = hn::Mask<DF>;

HWY_INLINE Floats floats(float value) { return hn::Set(DF(), value); }

// Byte `Channel` of each pixel, as a number 0 ... 255.
template <int Channel>
HWY_INLINE Floats channelOf(Bytes v) {
  const Pixels shifted = hn::ShiftRight<8 * Channel>(hn::BitCast(D32(), v));
  const Pixels low = Channel == 3 ? shifted : hn::And(shifted, hn::Set(D32(), 0xFFU));
  return hn::ConvertTo(DF(), hn::BitCast(DI(), low));
}

// One step of Newton's makes the processor's quick estimates good to about 22 bits. A zero gives nothing
// useful.
HWY_INLINE Floats reciprocal(Floats v) {
  const Floats first = hn::ApproximateReciprocal(v);
  return hn::Mul(first, hn::NegMulAdd(v, first, floats(2.0F)));
}
HWY_INLINE Floats squareRoot(Floats v) {
  const Floats first = hn::ApproximateReciprocalSqrt(v);
  const Floats half = hn::Mul(hn::Mul(v, first), floats(0.5F));
  return hn::Mul(hn::Mul(v, first), hn::NegMulAdd(half, first, floats(1.5F)));
}

// Alphas of a vector of pixels, in bytes' steps.
struct FloatAlphas {
  Floats s, d, ks, kd;
  Floats overD;  // 1 / d, and 0 for d = 0
};

// An estimate of 255 * 255 times the component, and how far from a half-way point its byte must lie (in byte
// steps).
struct Estimate {
  Floats value, doubt;
};

HWY_INLINE Floats uncovered(Floats sc, Floats dc, const FloatAlphas &a) {
  return hn::MulAdd(sc, a.kd, hn::Mul(dc, a.ks));
}

template <class Mode>
struct Guess {
  static constexpr bool exists = false;
};

template <>
struct Guess<mode::ColorDodge> {
  static constexpr bool exists = true;
  static HWY_INLINE Estimate estimate(Floats sc, Floats dc, const FloatAlphas &a) {
    const Floats both = hn::Mul(a.s, a.d);
    const Floats sum = hn::MulAdd(sc, a.d, hn::Mul(dc, a.s));
    // The kernel's 1 - Sc/Sa errs the more, the closer Sc comes to Sa.
    const Floats stretch = hn::Mul(a.s, reciprocal(hn::Max(hn::Sub(a.s, sc), floats(1.0F))));
    const Floats quotient = hn::Mul(hn::Mul(dc, a.s), stretch);
    const Floats value = hn::Add(hn::IfThenElse(hn::Ge(sum, both), both, quotient), uncovered(sc, dc, a));
    return {value, hn::MulAdd(stretch, floats(5e-5F), floats(3e-4F))};
  }
};

template <>
struct Guess<mode::ColorBurn> {
  static constexpr bool exists = true;
  static HWY_INLINE Estimate estimate(Floats sc, Floats dc, const FloatAlphas &a) {
    const Floats both = hn::Mul(a.s, a.d);
    const Floats excess = hn::Sub(hn::MulAdd(sc, a.d, hn::Mul(dc, a.s)), both);
    const Floats stretch = hn::Mul(a.s, reciprocal(hn::Max(sc, floats(1.0F))));
    const Floats value = hn::MulAdd(hn::Max(excess, floats(0.0F)), stretch, uncovered(sc, dc, a));
    return {value, hn::MulAdd(stretch, floats(1e-4F), floats(3e-4F))};
  }
};

template <>
struct Guess<mode::SoftLight> {
  static constexpr bool exists = true;
  static HWY_INLINE Estimate estimate(Floats sc, Floats dc, const FloatAlphas &a) {
    const Floats m = hn::Mul(dc, a.overD);
    const Floats lean = hn::Sub(hn::Add(sc, sc), a.s);
    const Floats bent = hn::Mul(hn::Sub(floats(1.0F), m), lean);
    const Floats steep = hn::Mul(bent, hn::NegMulAdd(floats(8.0F), m, floats(3.0F)));
    const Truth darkSource = hn::Lt(lean, floats(0.0F));
    const Truth darkBelow = hn::Le(hn::Mul(dc, floats(8.0F)), a.d);
    const Floats polynomial = hn::Mul(dc, hn::Sub(a.s, hn::IfThenElse(darkSource, bent, steep)));
    const Floats root = hn::MulAdd(hn::Sub(squareRoot(hn::Mul(dc, a.d)), dc), lean, hn::Mul(dc, a.s));
    const Floats value = hn::IfThenElse(hn::Or(darkSource, darkBelow), polynomial, root);
    return {hn::Add(value, uncovered(sc, dc, a)), floats(8e-4F)};
  }
};

// A vector of bytes, and which of them are not to be trusted.
struct Guessed {
  Pixels bytes, doubtful;
};

// The estimate as bytes in place `Channel` of each pixel, with its doubt, added to what the others gave.
template <int Channel>
HWY_INLINE void place(const Estimate &e, Guessed &to) {
  const Floats steps = hn::Mul(e.value, floats(1.0F / 255.0F));
  const Floats shifted = hn::Add(hn::Clamp(steps, floats(0.0F), floats(255.0F)), floats(0.5F));
  const auto whole = hn::ConvertTo(DI(), shifted);
  const Floats fromHalf = hn::Abs(hn::Sub(hn::Sub(shifted, hn::ConvertTo(DF(), whole)), floats(0.5F)));
  const Truth unsure = hn::Gt(fromHalf, hn::Sub(floats(0.5F), e.doubt));
  to.bytes = hn::Or(to.bytes, hn::ShiftLeft<8 * Channel>(hn::BitCast(D32(), whole)));
  to.doubtful = hn::Or(to.doubtful, hn::BitCast(D32(), hn::VecFromMask(DF(), unsure)));
}

template <class Mode, int Channel>
HWY_INLINE void guessChannel(Bytes s, Bytes d, const FloatAlphas &alphas, Guessed &to) {
  place<Channel>(Guess<Mode>::estimate(channelOf<Channel>(s), channelOf<Channel>(d), alphas), to);
}

template <class Mode>
HWY_INLINE Guessed guessARGB(Bytes s, Bytes d) {
  const Floats sa = channelOf<0>(s), da = channelOf<0>(d), full = floats(255.0F);
  const Floats overD = hn::IfThenElseZero(hn::Gt(da, floats(0.0F)), reciprocal(da));
  const FloatAlphas alphas{sa, da, hn::Sub(full, sa), hn::Sub(full, da), overD};
  Guessed result{hn::Zero(D32()), hn::Zero(D32())};
  guessChannel<Mode, 1>(s, d, alphas, result);
  guessChannel<Mode, 2>(s, d, alphas, result);
  guessChannel<Mode, 3>(s, d, alphas, result);
  // Source over destination: a sum of products, never in doubt.
  place<0>({hn::MulAdd(full, sa, hn::Mul(da, alphas.ks)), floats(0.0F)}, result);
  return result;
}

// All four bytes of each vector lane as opaque components.
template <class Mode>
HWY_INLINE Guessed guessOpaque(Bytes s, Bytes d) {
  const Floats full = floats(255.0F), none = floats(0.0F);
  const FloatAlphas alphas{full, full, none, none, floats(1.0F / 255.0F)};
  Guessed result{hn::Zero(D32()), hn::Zero(D32())};
  guessChannel<Mode, 0>(s, d, alphas, result);
  guessChannel<Mode, 1>(s, d, alphas, result);
  guessChannel<Mode, 2>(s, d, alphas, result);
  guessChannel<Mode, 3>(s, d, alphas, result);
  return result;
}

}  // namespace drav::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();
#endif
#endif
