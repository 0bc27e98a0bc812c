// The modes that are sums of products, in whole numbers. Included once for each kind of processor.
//
// Such a mode's exact value is N / 255 with N whole, and 255 is odd: a value never lies half-way between two
// bytes, the nearest miss is 0.5 / 255 = 0.00196. The kernels' single-precision steps err by less than
// 0.0002, so rounding N / 255 once gives the byte the kernel stores, for valid and invalid pixels alike; what
// remains is to clamp or wrap as the mode does. Alpha needs no case of its own where the colour formula gives
// the alpha result for Sc = Sa and Dc = Da, which is nearly everywhere.
#if defined(DRAV_ROWS_BYTES_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef DRAV_ROWS_BYTES_INL_H
#undef DRAV_ROWS_BYTES_INL_H
#else
#define DRAV_ROWS_BYTES_INL_H
#endif

#include <hwy/highway.h>

#include "composite/formulas.h"

#if HWY_TARGET != HWY_SCALAR  // which has no vectors to compile this for
HWY_BEFORE_NAMESPACE();
namespace drav::HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

using D8 = hn::ScalableTag<uint8_t>;
using D16 = hn::ScalableTag<uint16_t>;
using D32 = hn::ScalableTag<uint32_t>;
using Bytes = hn::Vec<D8>;
using Words = hn::Vec<D16>;
using Pixels = hn::Vec<D32>;

HWY_INLINE Words words(int value) { return hn::Set(D16(), static_cast<uint16_t>(value)); }
HWY_INLINE Words evenBytes(Bytes v) { return hn::And(hn::BitCast(D16(), v), words(0xFF)); }
HWY_INLINE Words oddBytes(Bytes v) { return hn::ShiftRight<8>(hn::BitCast(D16(), v)); }
HWY_INLINE Bytes joined(Words even, Words odd) {
  return hn::BitCast(D8(), hn::Or(even, hn::ShiftLeft<8>(odd)));
}
// 255 less each byte of joined(even, odd), in one step fewer.
HWY_INLINE Bytes joinedInverse(Words even, Words odd) {
  return hn::BitCast(D8(), hn::Xor3(even, hn::ShiftLeft<8>(odd), words(0xFFFF)));
}
// 255 - v, for bytes in words.
HWY_INLINE Words inverse(Words v) { return hn::Xor(v, words(0xFF)); }

// The bytes of a pixel other than byte 0 (alpha, or the ignored byte).
HWY_INLINE Bytes colourBytes() { return hn::BitCast(D8(), hn::Set(D32(), 0xFFFFFF00U)); }

// N / 255 to nearest, from N + 128 below 65536.
HWY_INLINE Words divided(Words biased) { return hn::MulHigh(biased, words(257)); }
HWY_INLINE Words rounded(Words n) { return divided(hn::Add(n, words(128))); }

// N / 255 to nearest of even and odd bytes, from N + 128. The odd ones' quotients come about in the upper
// half of their words, where they stay.
HWY_INLINE Bytes joinedQuotients(Words even, Words odd) {
  const Words upper = hn::Add(odd, hn::ShiftRight<8>(odd));
  return hn::BitCast(D8(), hn::IfVecThenElse(words(0xFF00), upper, divided(even)));
}

// What is missing from N / 255 to 255, which is 0 for every larger N: taking it away clamps for nothing.
// N is exact up to 65025; above that any larger value will do.
HWY_INLINE Words missing(Words n) { return divided(hn::SaturatedSub(words(255 * 255 + 128), n)); }

// Byte 0 of each pixel, in each of its words or in each of its bytes.
HWY_INLINE Words alphaInWords(Bytes v) {
  alignas(16) static constexpr uint8_t from[16] = {0, 0x80, 0, 0x80, 4,  0x80, 4,  0x80,
                                                   8, 0x80, 8, 0x80, 12, 0x80, 12, 0x80};
  return hn::BitCast(D16(), hn::TableLookupBytesOr0(v, hn::LoadDup128(D8(), from)));
}
HWY_INLINE Bytes alphaInBytes(Bytes v) {
  alignas(16) static constexpr uint8_t from[16] = {0, 0, 0, 0, 4, 4, 4, 4, 8, 8, 8, 8, 12, 12, 12, 12};
  return hn::TableLookupBytes(v, hn::LoadDup128(D8(), from));
}

// Source and destination pixels, and their alphas beside each of their bytes. What a mode leaves unused costs
// nothing.
struct Argb {
  Bytes s, d;
  Words sa, da, ks, kd;
  HWY_INLINE Argb(Bytes source, Bytes destination)
      : s(source),
        d(destination),
        sa(alphaInWords(source)),
        da(alphaInWords(destination)),
        ks(inverse(sa)),
        kd(inverse(da)) {}
};

// f(s, d) for the even and for the odd bytes.
template <class F>
HWY_INLINE Bytes inHalves(Bytes s, Bytes d, F f) {
  return joined(f(evenBytes(s), evenBytes(d)), f(oddBytes(s), oddBytes(d)));
}
template <class F>
HWY_INLINE Bytes inHalves(const Argb &p, F f) {
  return inHalves(p.s, p.d, f);
}
// v * factor / 255, to nearest.
HWY_INLINE Bytes scaled(Bytes v, Words factor) {
  return joined(rounded(hn::Mul(evenBytes(v), factor)), rounded(hn::Mul(oddBytes(v), factor)));
}

// f(s, d) is N of the even or the odd bytes; the result is clamped.
template <class F>
HWY_INLINE Bytes clampedHalves(const Argb &p, F f) {
  return joinedInverse(missing(f(evenBytes(p.s), evenBytes(p.d))), missing(f(oddBytes(p.s), oddBytes(p.d))));
}

// (a + b) / 255 to nearest, modulo 256, where a + b may need 17 bits: 65536 = 257 * 255 + 1, so the carry
// counts one in the sum and (modulo 256) one in the result.
HWY_INLINE Words wrapped(Words a, Words b) {
  const Words sum = hn::Add(hn::Add(a, words(128)), b);
  const Words carry = hn::ShiftRight<15>(hn::AverageRound(hn::Add(a, words(127)), b));
  return hn::And(hn::Add(divided(hn::Add(sum, carry)), carry), words(0xFF));
}

// What only invalid pixels show, collected over several vectors, so that one branch looks at all of them. A
// mode that collects says which bit tells, and has a longer form for such vectors: `unsuspecting`, or else
// the kernel.
struct Suspects {
  Words found;
  HWY_INLINE Suspects() : found(hn::Zero(D16())) {}
  HWY_INLINE void add(Words a, Words b) { found = hn::Or3(found, a, b); }
  HWY_INLINE bool any(int bit) const { return !hn::AllFalse(D16(), hn::TestBit(found, words(bit))); }
};
// What a quotient of 256 shows: a sum that may not have fitted, and in any case exceeds 255.
inline constexpr int kTooMuch = 0x100;

// d * ofD + s * ofS, wrapped.
HWY_INLINE Bytes twoScaled(const Argb &p, Words ofD, Words ofS, Suspects &suspects) {
  const auto quotient = [&](Words s, Words d) {
    return divided(hn::SaturatedAdd(hn::Add(hn::Mul(d, ofD), words(128)), hn::Mul(s, ofS)));
  };
  const Words even = quotient(evenBytes(p.s), evenBytes(p.d)), odd = quotient(oddBytes(p.s), oddBytes(p.d));
  suspects.add(even, odd);
  return joined(even, odd);
}
HWY_INLINE Bytes twoScaledWrapped(const Argb &p, Words ofD, Words ofS) {
  return inHalves(p, [&](Words s, Words d) { return wrapped(hn::Mul(d, ofD), hn::Mul(s, ofS)); });
}

template <class Mode>
struct Lanes;

// N of a source or destination with 255 whole added is the byte itself added: SrcOver and DestOver wrap as
// bytes do.
template <>
struct Lanes<mode::SrcOver> {
  static HWY_INLINE Bytes argb(const Argb &p) { return hn::Add(p.s, scaled(p.d, p.ks)); }
};
template <>
struct Lanes<mode::DestOver> {
  static HWY_INLINE Bytes argb(const Argb &p) { return hn::Add(p.d, scaled(p.s, p.kd)); }
};
template <>
struct Lanes<mode::SrcIn> {
  static HWY_INLINE Bytes argb(const Argb &p) { return scaled(p.s, p.da); }
};
template <>
struct Lanes<mode::DestIn> {
  static HWY_INLINE Bytes argb(const Argb &p) { return scaled(p.d, p.sa); }
};
template <>
struct Lanes<mode::SrcOut> {
  static HWY_INLINE Bytes argb(const Argb &p) { return scaled(p.s, p.kd); }
};
template <>
struct Lanes<mode::DestOut> {
  static HWY_INLINE Bytes argb(const Argb &p) { return scaled(p.d, p.ks); }
};
template <>
struct Lanes<mode::SrcAtop> {
  static constexpr int suspectBit = kTooMuch;
  static HWY_INLINE Bytes argb(const Argb &p, Suspects &to) { return twoScaled(p, p.ks, p.da, to); }
  static HWY_INLINE Bytes unsuspecting(const Argb &p) { return twoScaledWrapped(p, p.ks, p.da); }
};
template <>
struct Lanes<mode::DestAtop> {
  static constexpr int suspectBit = kTooMuch;
  static HWY_INLINE Bytes argb(const Argb &p, Suspects &to) { return twoScaled(p, p.sa, p.kd, to); }
  static HWY_INLINE Bytes unsuspecting(const Argb &p) { return twoScaledWrapped(p, p.sa, p.kd); }
};
template <>
struct Lanes<mode::XOR> {
  static constexpr int suspectBit = kTooMuch;
  static HWY_INLINE Bytes argb(const Argb &p, Suspects &to) { return twoScaled(p, p.ks, p.kd, to); }
  static HWY_INLINE Bytes unsuspecting(const Argb &p) { return twoScaledWrapped(p, p.ks, p.kd); }
};

template <>
struct Lanes<mode::Plus> {
  static HWY_INLINE Bytes opaque(Bytes s, Bytes d) { return hn::SaturatedAdd(s, d); }
  static HWY_INLINE Bytes argb(const Argb &p) { return opaque(p.s, p.d); }
};
HWY_INLINE Words uncoveredProducts(const Argb &p, Words s, Words d) {
  return hn::SaturatedAdd(hn::Mul(s, p.kd), hn::Mul(d, p.ks));
}
template <>
struct Lanes<mode::Multiply> {
  static HWY_INLINE Bytes opaque(Bytes s, Bytes d) {
    return inHalves(s, d, [](Words x, Words y) { return rounded(hn::Mul(x, y)); });
  }
  static HWY_INLINE Bytes argb(const Argb &p) {
    return clampedHalves(
        p, [&](Words s, Words d) { return hn::SaturatedAdd(hn::Mul(s, d), uncoveredProducts(p, s, d)); });
  }
};
// Alphas screen like colours, so both layouts are one: the inverse of the product of the inverses. The odd
// bytes are multiplied where they are, 256 times themselves: the upper half of that product is theirs.
template <>
struct Lanes<mode::Screen> {
  static HWY_INLINE Bytes opaque(Bytes s, Bytes d) {
    const Words all = words(255 * 255 + 128);
    return joinedQuotients(
        hn::Sub(all, hn::Mul(inverseIn(words(0x00FF), s), inverseIn(words(0x00FF), d))),
        hn::Sub(all, hn::MulHigh(inverseIn(words(0xFF00), s), inverseIn(words(0xFF00), d))));
  }
  static HWY_INLINE Bytes argb(const Argb &p) { return opaque(p.s, p.d); }

 private:
  // 255 less each byte that `mask` is of, 0 elsewhere.
  static HWY_INLINE Words inverseIn(Words mask, Bytes v) { return hn::AndNot(hn::BitCast(D16(), v), mask); }
};

// Overlay and HardLight are s + d - R / 255, where, with x the component that decides the branch, y the other
// one, and X and Y their alphas, R is y (X - x) + x (Y - y) for x < X - x, and y x + (X - x) (Y - y)
// elsewhere: y times the greater and Y - y times the lesser of x and X - x. For valid pixels R lies in 0 ...
// 65025; for invalid ones a difference falls below 0, which shows in its sign, and the kernel does the pixel.
inline constexpr int kBelowZero = 0x8000;

HWY_INLINE Words lit(Words decider, Words other, Words deciderAlpha, Words otherAlpha, Suspects &suspects) {
  const Words rest = hn::Sub(deciderAlpha, decider), otherRest = hn::Sub(otherAlpha, other);
  suspects.add(rest, otherRest);
  return rounded(hn::Add(hn::Mul(other, hn::Max(decider, rest)), hn::Mul(otherRest, hn::Min(decider, rest))));
}
HWY_INLINE Bytes litPixels(Bytes decider, Bytes other, Words deciderAlpha, Words otherAlpha,
                           Suspects &suspects) {
  const auto half = [&](Words x, Words y) { return lit(x, y, deciderAlpha, otherAlpha, suspects); };
  return hn::Sub(hn::Add(decider, other), inHalves(decider, other, half));
}
HWY_INLINE Bytes litOpaque(Bytes decider, Bytes other) {
  Suspects none;
  return litPixels(decider, other, words(255), words(255), none);
}
template <>
struct Lanes<mode::Overlay> {
  static constexpr int suspectBit = kBelowZero;
  static HWY_INLINE Bytes opaque(Bytes s, Bytes d) { return litOpaque(d, s); }
  static HWY_INLINE Bytes argb(const Argb &p, Suspects &to) { return litPixels(p.d, p.s, p.da, p.sa, to); }
};
template <>
struct Lanes<mode::HardLight> {
  static constexpr int suspectBit = kBelowZero;
  static HWY_INLINE Bytes opaque(Bytes s, Bytes d) { return litOpaque(s, d); }
  static HWY_INLINE Bytes argb(const Argb &p, Suspects &to) { return litPixels(p.s, p.d, p.sa, p.da, to); }
};

template <>
struct Lanes<mode::Darken> {
  static HWY_INLINE Bytes opaque(Bytes s, Bytes d) { return hn::Min(s, d); }
  static HWY_INLINE Bytes argb(const Argb &p) {
    return clampedHalves(p, [&](Words s, Words d) {
      const Words least = hn::Min(hn::Mul(s, p.da), hn::Mul(d, p.sa));
      return hn::SaturatedAdd(least, uncoveredProducts(p, s, d));
    });
  }
};
template <>
struct Lanes<mode::Lighten> {
  static HWY_INLINE Bytes opaque(Bytes s, Bytes d) { return hn::Max(s, d); }
  static HWY_INLINE Bytes argb(const Argb &p) {
    return clampedHalves(p, [&](Words s, Words d) {
      const Words most = hn::Max(hn::Mul(s, p.da), hn::Mul(d, p.sa));
      return hn::SaturatedAdd(most, uncoveredProducts(p, s, d));
    });
  }
};
// With m the lesser product, (s - m) + (d - m) for colour and (s - m) + d for alpha: neither part falls below
// 0.
template <>
struct Lanes<mode::Difference> {
  static HWY_INLINE Bytes opaque(Bytes s, Bytes d) { return hn::Sub(hn::Max(s, d), hn::Min(s, d)); }
  static HWY_INLINE Words half(Words s, Words d, const Argb &p, Words colour) {
    const Words least = hn::Min(hn::Mul(s, p.da), hn::Mul(d, p.sa));
    return missing(hn::SaturatedAdd(hn::Sub(hn::Mul(s, words(255)), least),
                                    hn::Sub(hn::Mul(d, words(255)), hn::And(least, colour))));
  }
  static HWY_INLINE Bytes argb(const Argb &p) {
    const Words evenColour = hn::BitCast(D16(), hn::Set(D32(), 0xFFFF0000U));
    return joinedInverse(half(evenBytes(p.s), evenBytes(p.d), p, evenColour),
                         half(oddBytes(p.s), oddBytes(p.d), p, words(0xFFFF)));
  }
};
// The alphas cancel: s (255 - d) + d (255 - s) for colour, s (255 - d) + 255 d for alpha.
template <>
struct Lanes<mode::Exclusion> {
  static HWY_INLINE Words half(Words s, Words d, Words subtracted) {
    return rounded(hn::Add(hn::Mul(s, inverse(d)), hn::Mul(d, inverse(subtracted))));
  }
  static HWY_INLINE Bytes of(Bytes s, Bytes d, Bytes subtracted) {
    return joined(half(evenBytes(s), evenBytes(d), evenBytes(subtracted)),
                  half(oddBytes(s), oddBytes(d), oddBytes(subtracted)));
  }
  static HWY_INLINE Bytes opaque(Bytes s, Bytes d) { return of(s, d, s); }
  static HWY_INLINE Bytes argb(const Argb &p) { return of(p.s, p.d, hn::And(p.s, colourBytes())); }
};

}  // namespace drav::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();
#endif
#endif
