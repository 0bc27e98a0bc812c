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
  Floats overD;           // 1 / d, and 0 for d = 0

  HWY_INLINE FloatAlphas(Floats sa, Floats da) : s(sa), d(da), both(hn::Mul(sa, da)) {
    const Floats part = floats(1.0F / 255.0F);
    partOfS = hn::Mul(s, part);
    partKs = hn::NegMulAdd(s, part, floats(1.0F));
    partKd = hn::NegMulAdd(d, part, floats(1.0F));
    partBoth = hn::Mul(both, part);
    eighthOfD = hn::Mul(d, floats(0.125F));
    overD = hn::IfThenElseZero(hn::Gt(d, floats(0.0F)), hn::Div(floats(1.0F), d));
  }
};

// A component in byte steps. Its error beyond Guess<Mode>::least is `stretch` times Guess<Mode>::perStretch.
struct Estimate {
  Floats steps, stretch;
};

HWY_INLINE Floats withUncovered(Floats covered, Floats sc, Floats dc, const FloatAlphas &a) {
  return hn::MulAdd(sc, a.partKd, hn::MulAdd(dc, a.partKs, covered));
}

// Whose pixels have to be valid for an estimate.
enum class Needed { neither, destination, both };

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
  static constexpr Needed validity = Needed::neither;
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
  static constexpr Needed validity = Needed::both;
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
  // Above 1, m magnifies errors.
  static constexpr Needed validity = Needed::destination;
  // Estimate and kernel together, in the steps that Guessed::placeFinely counts.
#if HWY_TARGET <= HWY_AVX2
  static constexpr int leastFine = 1;
#else
  static constexpr int leastFine = 2;  // products and sums are rounded apart
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
    return hn::NegMulAdd(lean, t, plain);
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

// Whether any channel lies close to a half-way point, told by the distance in fine steps.
#if HWY_TARGET <= HWY_AVX3
// A distance that is not below twice the least has one of the upper bits. One instruction tests for them and
// joins the masks, for which Highway has two.
struct Closeness {
  PixelMask apart;
  template <int Least>
  HWY_INLINE void add(Pixels bits) {
    static_assert((Least & (Least - 1)) == 0);
    constexpr uint32_t ofGreater = 0x7FFFU & ~(2U * Least - 1U);
    apart = PixelMask{_mm512_mask_test_epi32_mask(apart.raw, bits.raw, hn::Set(D32(), ofGreater).raw)};
  }
  HWY_INLINE PixelMask below(int) const { return hn::Not(apart); }
};
HWY_INLINE Closeness farAway() { return {hn::FirstN(D32(), hn::Lanes(D32()))}; }
#else
struct Closeness {
  hn::Vec<DI> least;
  template <int Least>
  HWY_INLINE void add(Pixels bits) {
    least = hn::Min(least, hn::BitCast(DI(), hn::And(bits, hn::Set(D32(), 0x7FFFU))));
  }
  HWY_INLINE PixelMask below(int fineSteps) const {
    return hn::RebindMask(D32(), hn::Lt(least, hn::Set(DI(), fineSteps)));
  }
};
HWY_INLINE Closeness farAway() { return {hn::Set(DI(), 0x7FFF)}; }
#endif

using Whole = hn::Vec<DI>;
using DS = hn::ScalableTag<int16_t>;

// The words of both as bytes, held within 0 ... 255: block by block, those of the first before the second's.
HWY_INLINE Bytes heldWithinBytes(hn::Vec<DS> first, hn::Vec<DS> second) {
#if HWY_TARGET <= HWY_AVX3
  return Bytes{_mm512_packus_epi16(first.raw, second.raw)};
#elif HWY_TARGET <= HWY_AVX2
  return Bytes{_mm256_packus_epi16(first.raw, second.raw)};
#elif HWY_TARGET <= HWY_SSSE3
  return Bytes{_mm_packus_epi16(first.raw, second.raw)};
#else
  const hn::Half<D8> half;
  return hn::Combine(D8(), hn::DemoteTo(half, second), hn::DemoteTo(half, first));
#endif
}

// The components of a vector of pixels, and how far its lanes are to be trusted.
struct Guessed {
  Whole component[4];   // what lies outside 0 ... 255 is still to be held within
  Floats doubt;         // the largest distance from a whole number, errors added
  Closeness closeness;  // of the components to a half-way point

  HWY_INLINE Bytes bytes() const {
    // Four components of one channel beside each other, in each block.
    alignas(16) static constexpr uint8_t from[16] = {0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15};
    const auto words = [](Whole a, Whole b) { return hn::ReorderDemote2To(DS(), a, b); };
    return hn::TableLookupBytes(
        heldWithinBytes(words(component[0], component[1]), words(component[2], component[3])),
        hn::LoadDup128(D8(), from));
  }

  // Adding 2^23 rounds, and leaves the whole number in the low bits of the sum. A conversion would look for
  // what no integer holds.
  template <int Channel>
  HWY_INLINE Floats place(Floats steps) {
    const Floats sum = hn::Add(steps, floats(8388608.0F));
    component[Channel] = hn::Sub(hn::BitCast(DI(), sum), hn::BitCast(DI(), floats(8388608.0F)));
    return hn::Sub(sum, floats(8388608.0F));
  }
  template <class Mode, int Channel>
  HWY_INLINE void placeInDoubt(const Estimate &e) {
    const Floats distance = hn::Abs(hn::Sub(e.steps, place<Channel>(e.steps)));
    doubt = hn::Max(doubt, hn::MulAdd(e.stretch, floats(Guess<Mode>::perStretch), distance));
  }

  // Adding 256 and a half leaves in the low bits of the sum how far a component within 0 ... 255 lies above
  // the half-way point, in steps of 2^-15. `Least` more, and those that lie closer than that on either side
  // are below twice as many.
  template <int Channel, int Least>
  HWY_INLINE void placeFinely(Floats steps) {
    place<Channel>(steps);
    const Floats sum = hn::Add(steps, floats(256.5F + static_cast<float>(Least) / 32768.0F));
    closeness.add<Least>(hn::BitCast(D32(), sum));
  }

  // Halves are rounded up.
  template <int Channel>
  HWY_INLINE void placeExactly(Floats steps) {
    component[Channel] = hn::ConvertTo(DI(), hn::Add(steps, floats(0.5F)));
  }

  HWY_INLINE PixelMask closerThan(int leastFine) const { return closeness.below(2 * leastFine); }
  template <class Mode>
  HWY_INLINE PixelMask doubtfulARGB() const {
    if constexpr (Fine<Mode>)
      return closerThan(Guess<Mode>::leastFine);
    else
      return hn::RebindMask(D32(), hn::Gt(doubt, floats(0.5F - Guess<Mode>::least)));
  }
};

HWY_INLINE Guessed nothingGuessed() {
  const Whole none = hn::Zero(DI());
  return {{none, none, none, none}, floats(0.0F), farAway()};
}

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
  guessChannel<Mode, 3>(s, d, alphas, result);
  guessChannel<Mode, 2>(s, d, alphas, result);
  guessChannel<Mode, 1>(s, d, alphas, result);
  // The union of the alphas is a sum of products, never in doubt.
  result.place<0>(hn::MulAdd(alphas.d, alphas.partKs, alphas.s));
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
  guessOpaqueChannel<Mode, 3>(s, d, result);
  guessOpaqueChannel<Mode, 2>(s, d, result);
  guessOpaqueChannel<Mode, 1>(s, d, result);
  if constexpr (First == 0) guessOpaqueChannel<Mode, 0>(s, d, result);
  return result;
}

}  // namespace drav::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();
#endif
#endif
