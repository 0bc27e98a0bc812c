// The modes that divide or take a root: a single-precision estimate, and the doubt that goes with it.
// Included once for each kind of processor.
//
// The estimate errs by less than 0.0003 of a byte step, the kernel by an amount that grows where it divides
// by little. Unless the estimate lies within both errors of a half-way point, both round to the same byte;
// where it lies closer, the pixel is doubtful and is settled the kernel's way. About one pixel in 500 is, and
// more where a mode is applied again and again: there pixels come to rest just short of a half-way point.
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
using PixelMask = hn::Mask<D32>;

HWY_INLINE Floats floats(float value) { return hn::Set(DF(), value); }

// Byte `Channel` of each pixel, as a number 0 ... 255.
template <int Channel>
HWY_INLINE Floats channelOf(Bytes v) {
  constexpr uint8_t c = Channel, none = 0x80;
  alignas(16) static constexpr uint8_t from[16] = {c,     none, none, none, c + 4,  none, none, none,
                                                   c + 8, none, none, none, c + 12, none, none, none};
  return hn::ConvertTo(DF(), hn::BitCast(DI(), hn::TableLookupBytesOr0(v, hn::LoadDup128(D8(), from))));
}

// A byte / 255, correctly rounded.
template <class D>
HWY_INLINE hn::Vec<D> unitFromSteps(D d, hn::Vec<D> steps) {
#if HWY_TARGET <= HWY_AVX2
  // What 1 / 255 rounded to single lacks, added in: a true division takes four times as long.
  constexpr double exact = 1.0 / 255.0;
  constexpr auto rounded = static_cast<float>(exact);
  return hn::MulAdd(steps, hn::Set(d, rounded),
                    hn::Mul(steps, hn::Set(d, static_cast<float>(exact - rounded))));
#else
  return hn::Div(steps, hn::Set(d, 255.0F));
#endif
}

// The alphas of a vector of pixels in byte steps, and what all three colours need of them.
struct FloatAlphas {
  Floats s, d, both;      // both: s * d
  Floats partOfS;         // s / 255
  Floats partKs, partKd;  // (255 - s) / 255, (255 - d) / 255
  Floats partBoth;        // s * d / 255
  Floats eighthOfD;       // d / 8
  Floats overD;           // 1 / d, and something finite for d = 0

  HWY_INLINE FloatAlphas(Floats sa, Floats da) : s(sa), d(da), both(hn::Mul(sa, da)) {
    const Floats part = floats(1.0F / 255.0F);
    partOfS = hn::Mul(s, part);
    partKs = hn::NegMulAdd(s, part, floats(1.0F));
    partKd = hn::NegMulAdd(d, part, floats(1.0F));
    partBoth = hn::Mul(both, part);
    eighthOfD = hn::Mul(d, floats(0.125F));
    overD = hn::Div(floats(1.0F), hn::Max(d, floats(1.0F)));
  }
};

// A component in byte steps. Its error beyond Guess<Mode>::least is `stretch` times Guess<Mode>::perStretch.
struct Estimate {
  Floats steps, stretch;
};

HWY_INLINE Floats withUncovered(Floats covered, Floats sc, Floats dc, const FloatAlphas &a) {
  return hn::MulAdd(sc, a.partKd, hn::MulAdd(dc, a.partKs, covered));
}

template <class Mode>
struct Guess {
  static constexpr bool exists = false;
};

// Has one error for every pixel, and a small one.
template <class Mode>
concept Fine = requires {
  Guess<Mode>::leastFine;
};
// Gives the kernel's byte for every pair of opaque components.
template <class Mode>
concept CertainOpaque = requires(Floats v) {
  Guess<Mode>::opaqueSteps(v, v);
};

// Products of two bytes are exact in single precision, and so are the comparisons of their sums. Where the
// sums are equal the kernel may take either branch: they meet there.
template <>
struct Guess<mode::ColorDodge> {
  static constexpr bool exists = true;
  // The kernel's 1 - Sc/Sa errs the more, the closer Sc comes to Sa.
  static constexpr float least = 3e-4F, perStretch = 255 * 5e-5F;
  // Without alpha there are 615 exact ties among the 65536 pairs, and the kernel rounds all of them up. The
  // nearest miss being 0.00197, half of that added decides every pair.
  static constexpr float opaqueNudge = 0.001F;

  static HWY_INLINE Estimate estimate(Floats sc, Floats dc, const FloatAlphas &a) {
    const Floats below = hn::Mul(dc, a.s);
    const Floats stretch = hn::Div(a.partOfS, hn::Max(hn::Sub(a.s, sc), floats(1.0F)));
    const auto full = hn::Ge(hn::MulAdd(sc, a.d, below), a.both);
    const Floats covered = hn::IfThenElse(full, a.partBoth, hn::Mul(below, stretch));
    return {withUncovered(covered, sc, dc, a), stretch};
  }
  static HWY_INLINE Floats opaqueSteps(Floats s, Floats d) {
    const Floats rest = hn::Max(hn::Sub(floats(255.0F), s), floats(1.0F));
    const Floats steps = hn::Div(hn::Mul(d, floats(255.0F)), rest);
    const auto full = hn::Ge(hn::Add(s, d), floats(255.0F));
    return hn::Add(hn::IfThenElse(full, floats(255.0F), steps), floats(opaqueNudge));
  }
};

template <>
struct Guess<mode::ColorBurn> {
  static constexpr bool exists = true;
  // The kernel divides a difference of nearly equal numbers by Sc.
  static constexpr float least = 3e-4F, perStretch = 255 * 1e-4F;

  static HWY_INLINE Estimate estimate(Floats sc, Floats dc, const FloatAlphas &a) {
    const Floats excess = hn::MulAdd(sc, a.d, hn::MulSub(dc, a.s, a.both));
    const Floats stretch = hn::Div(a.partOfS, hn::Max(sc, floats(1.0F)));
    const Floats covered = hn::Mul(hn::Max(excess, floats(0.0F)), stretch);
    return {withUncovered(covered, sc, dc, a), stretch};
  }
  // The kernel's own steps. It divides in double precision what is exact in single: the one rounding to
  // single after that gives what a division in single gives. Exact ties, of which there are 615, fall either
  // way.
  static HWY_INLINE Floats opaqueSteps(Floats s, Floats d) {
    const Floats unit = unitFromSteps(DF(), s), sum = hn::Add(unit, unitFromSteps(DF(), d));
    const Floats excess = hn::Sub(sum, floats(1.0F));
    const Floats kept = hn::IfThenElseZero(hn::Gt(sum, floats(1.0F)), hn::Div(excess, unit));
    return hn::Mul(kept, floats(255.0F));
  }
};

// All three branches are Dc + Sc kd - (2 Sc - Sa) t, each with a t of its own; for 2 Sc = Sa they are one.
template <>
struct Guess<mode::SoftLight> {
  static constexpr bool exists = true;
  // Estimate and kernel together, in the steps that Guessed::placeFinely counts. Where products and sums are
  // rounded apart, one pixel in 2^30 needs the second step.
#if HWY_TARGET <= HWY_AVX2
  static constexpr int leastFine = 1;
#else
  static constexpr int leastFine = 2;
#endif
  static constexpr int leastFineOpaque = 1;

  // `lean` is (2 Sc - Sa) / 255, `plain` Dc + Sc kd, `m` Dc / Da.
  static HWY_INLINE Floats estimate(Floats dc, Floats da, Floats eighthOfD, Floats m, Floats lean,
                                    Floats plain) {
    const Floats bent = hn::NegMulAdd(dc, m, dc);
    const Floats steep = hn::Mul(bent, hn::NegMulAdd(floats(8.0F), m, floats(3.0F)));
    const Floats rooted = hn::Sub(dc, hn::Sqrt(hn::Mul(dc, da)));
    const auto darkSource = hn::Lt(lean, floats(0.0F));
    const auto darkBelow = hn::Le(dc, eighthOfD);
    const Floats t = hn::IfThenElse(darkSource, bent, hn::IfThenElse(darkBelow, steep, rooted));
    return hn::Max(hn::NegMulAdd(lean, t, plain), floats(0.0F));
  }
  static HWY_INLINE Floats estimate(Floats sc, Floats dc, const FloatAlphas &a) {
    return estimate(dc, a.d, a.eighthOfD, hn::Mul(dc, a.overD),
                    hn::MulSub(sc, floats(2.0F / 255.0F), a.partOfS), hn::MulAdd(sc, a.partKd, dc));
  }
  static HWY_INLINE Floats estimateOpaque(Floats s, Floats d) {
    return estimate(d, floats(255.0F), floats(255.0F / 8), hn::Mul(d, floats(1.0F / 255.0F)),
                    hn::MulSub(s, floats(2.0F / 255.0F), floats(1.0F)), d);
  }
};

// A vector of bytes, and how far its lanes are to be trusted.
struct Guessed {
  Pixels bytes;
  Floats doubt;           // the largest distance from a whole number, errors added
  hn::Vec<DI> closeness;  // the smallest distance to a half-way point, in fine steps

  template <int Channel>
  HWY_INLINE void keep(Pixels shifted) {
    bytes = hn::OrAnd(bytes, shifted, hn::Set(D32(), 0xFFU << (8 * Channel)));
  }

  // REQUIRES: 0 <= steps < 255.5. Adding 2^23 rounds, and leaves the byte in the low bits of the sum.
  template <int Channel>
  HWY_INLINE Floats place(Floats steps) {
    const Floats sum = hn::Add(steps, floats(8388608.0F));
    const Pixels bits = hn::BitCast(D32(), sum);
    if constexpr (Channel == 0)
      bytes = hn::Or(bytes, hn::And(bits, hn::Set(D32(), 0xFFU)));
    else
      bytes = hn::Or(bytes, hn::ShiftLeft<8 * Channel>(bits));  // the exponent leaves at the top
    return hn::Sub(sum, floats(8388608.0F));
  }
  template <class Mode, int Channel>
  HWY_INLINE void placeInDoubt(const Estimate &e) {
    const Floats distance = hn::Abs(hn::Sub(e.steps, place<Channel>(e.steps)));
    doubt = hn::Max(doubt, hn::MulAdd(e.stretch, floats(Guess<Mode>::perStretch), distance));
  }

  // REQUIRES: 0 <= steps < 255.5. Adding 256 and a half leaves the byte in bits 15 to 22 of the sum, and
  // below them how far it lies above the half-way point, in steps of 2^-15. `Least` more, and those that lie
  // closer than that on either side are below twice as many.
  template <int Channel, int Least>
  HWY_INLINE void placeFinely(Floats steps) {
    const Floats sum = hn::Add(steps, floats(256.5F + static_cast<float>(Least) / 32768.0F));
    const Pixels bits = hn::BitCast(D32(), sum);
    if constexpr (Channel < 2)
      keep<Channel>(hn::ShiftRight<15 - 8 * Channel>(bits));
    else
      keep<Channel>(hn::ShiftLeft<8 * Channel - 15>(bits));
    closeness = hn::Min(closeness, hn::And(hn::BitCast(DI(), sum), hn::Set(DI(), 0x7FFF)));
  }

  // Halves are rounded up.
  template <int Channel>
  HWY_INLINE void placeExactly(Floats steps) {
    const auto whole = hn::BitCast(D32(), hn::ConvertTo(DI(), hn::Add(steps, floats(0.5F))));
    bytes = hn::Or(bytes, hn::ShiftLeft<8 * Channel>(whole));
  }

  HWY_INLINE PixelMask closerThan(int leastFine) const {
    return hn::RebindMask(D32(), hn::Lt(closeness, hn::Set(DI(), 2 * leastFine)));
  }
  template <class Mode>
  HWY_INLINE PixelMask doubtfulARGB() const {
    if constexpr (Fine<Mode>)
      return closerThan(Guess<Mode>::leastFine);
    else
      return hn::RebindMask(D32(), hn::Gt(doubt, floats(0.5F - Guess<Mode>::least)));
  }
};

HWY_INLINE Guessed nothingGuessed() { return {hn::Zero(D32()), floats(0.0F), hn::Set(DI(), 0x7FFF)}; }

template <class Mode, int Channel>
HWY_INLINE void guessChannel(Bytes s, Bytes d, const FloatAlphas &alphas, Guessed &to) {
  const Floats sc = channelOf<Channel>(s), dc = channelOf<Channel>(d);
  if constexpr (Fine<Mode>)
    to.placeFinely<Channel, Guess<Mode>::leastFine>(Guess<Mode>::estimate(sc, dc, alphas));
  else
    to.placeInDoubt<Mode, Channel>(Guess<Mode>::estimate(sc, dc, alphas));
}

template <class Mode>
HWY_INLINE Guessed guessARGB(Bytes s, Bytes d) {
  const FloatAlphas alphas(channelOf<0>(s), channelOf<0>(d));
  Guessed result = nothingGuessed();
  // The union of the alphas is a sum of products, never in doubt.
  result.place<0>(hn::MulAdd(alphas.d, alphas.partKs, alphas.s));
  guessChannel<Mode, 1>(s, d, alphas, result);
  guessChannel<Mode, 2>(s, d, alphas, result);
  guessChannel<Mode, 3>(s, d, alphas, result);
  return result;
}

template <class Mode, int Channel>
HWY_INLINE void guessOpaqueChannel(Bytes s, Bytes d, Guessed &to) {
  const Floats sc = channelOf<Channel>(s), dc = channelOf<Channel>(d);
  if constexpr (CertainOpaque<Mode>)
    to.placeExactly<Channel>(Guess<Mode>::opaqueSteps(sc, dc));
  else
    to.placeFinely<Channel, Guess<Mode>::leastFineOpaque>(Guess<Mode>::estimateOpaque(sc, dc));
}

// The bytes of each lane as opaque components, from byte `First` on.
template <int First, class Mode>
HWY_INLINE Guessed guessOpaque(Bytes s, Bytes d) {
  Guessed result = nothingGuessed();
  if constexpr (First == 0) guessOpaqueChannel<Mode, 0>(s, d, result);
  guessOpaqueChannel<Mode, 1>(s, d, result);
  guessOpaqueChannel<Mode, 2>(s, d, result);
  guessOpaqueChannel<Mode, 3>(s, d, result);
  return result;
}

}  // namespace drav::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();
#endif
#endif
