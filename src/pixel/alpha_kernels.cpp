// Both loops give, byte for byte, what alpha_formula.h gives.
//
// Premultiplying needs no floats for that: colour * alpha / 255 never comes near a half, being at least 1/510
// away from one, as 255 is odd. Un-premultiplying does meet halves, 615 of them, and the roundings inside the
// formula carry 64 of those down. These roundings are part of the result, and are therefore made here one by
// one, in the same order. The tests compare all 65,536 pairs on every instruction set that the machine has.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/alpha_kernels.cpp"
#include <hwy/foreach_target.h>
// After foreach_target.h, as Highway wants it.
#include <hwy/highway.h>

#include <bit>
#include <cstring>
#include <type_traits>

#include "pixel/alpha_formula.h"
#include "pixel/alpha_kernels.h"

HWY_BEFORE_NAMESPACE();
namespace drav::pixel::HWY_NAMESPACE {

template <AlphaByte kAlpha>
constexpr int kAlphaIndex = kAlpha == AlphaByte::first ? 0 : 3;
template <AlphaByte kAlpha>
constexpr int kFirstColour = kAlpha == AlphaByte::first ? 1 : 0;

#if HWY_TARGET == HWY_SCALAR

template <AlphaByte kAlpha>
void premultiply(uint8_t *pixels, size_t pixelCount) {
  for (uint8_t *pixel = pixels; pixel != pixels + 4 * pixelCount; pixel += 4) {
    for (int i = kFirstColour<kAlpha>; i < kFirstColour<kAlpha> + 3; ++i) {
      pixel[i] = premultiplied(pixel[i], pixel[kAlphaIndex<kAlpha>]);
    }
  }
}

template <AlphaByte kAlpha>
bool unpremultiply(uint8_t *pixels, size_t pixelCount) {
  bool excess = false;
  for (uint8_t *pixel = pixels; pixel != pixels + 4 * pixelCount; pixel += 4) {
    const uint8_t alpha = pixel[kAlphaIndex<kAlpha>];
    for (int i = kFirstColour<kAlpha>; i < kFirstColour<kAlpha> + 3; ++i) {
      excess |= pixel[i] > alpha;
      pixel[i] = unpremultiplied(pixel[i], alpha);
    }
  }
  return excess;
}

#else

namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::ScalableTag<uint8_t>;
using Words = hn::Repartition<uint16_t, Bytes>;
using Pixels = hn::Repartition<uint32_t, Bytes>;
using Integers = hn::Repartition<int32_t, Bytes>;
using Floats = hn::Repartition<float, Bytes>;
using ByteVector = hn::Vec<Bytes>;
using WordVector = hn::Vec<Words>;
using PixelVector = hn::Vec<Pixels>;
using IntegerVector = hn::Vec<Integers>;
using FloatVector = hn::Vec<Floats>;

// Where byte number index of a pixel lies in the pixel read as a 32-bit lane.
constexpr int shiftOf(int index) {
  return std::endian::native == std::endian::little ? 8 * index : 24 - 8 * index;
}

template <int kIndex>
HWY_INLINE PixelVector byteMask() {
  return hn::Set(Pixels(), uint32_t{0xFF} << shiftOf(kIndex));
}

// Byte number kIndex of each pixel in all four bytes of the pixel.
template <int kIndex>
HWY_INLINE ByteVector spread(ByteVector pixels) {
  constexpr uint8_t a = kIndex, b = a + 4, c = a + 8, d = a + 12;
  alignas(16) static constexpr uint8_t kFrom[16] = {a, a, a, a, b, b, b, b, c, c, c, c, d, d, d, d};
  return hn::TableLookupBytes(pixels, hn::LoadDup128(Bytes(), kFrom));
}

// The nearest integer to product / 255, for products of two bytes.
HWY_INLINE WordVector over255(WordVector product) {
  const Words words;
  return hn::MulHigh(hn::Add(product, hn::Set(words, uint16_t{128})), hn::Set(words, uint16_t{257}));
}

template <AlphaByte kAlpha>
struct Premultiply {
  // Upper and lower bytes of 16-bit words are worked on apart. The alpha byte, which is one of them in every
  // second word, is multiplied by 255, which leaves it as it is.
  static HWY_INLINE ByteVector apply(ByteVector pixels, ByteVector & /*excess*/) {
    constexpr int kAlphaShift = shiftOf(kAlphaIndex<kAlpha>);
    constexpr bool kAlphaIsLower = kAlphaShift % 16 == 0;
    const Words words;
    const WordVector lowerMask = hn::Set(words, uint16_t{0xFF});
    const WordVector both = hn::BitCast(words, pixels);
    const WordVector alpha = hn::And(hn::BitCast(words, spread<kAlphaIndex<kAlpha> >(pixels)), lowerMask);
    const PixelVector opaque = hn::Set(Pixels(), uint32_t{0xFF} << (kAlphaShift & 16));
    const WordVector alphaOr255 = hn::Or(alpha, hn::BitCast(words, opaque));
    const WordVector lower = hn::Mul(hn::And(both, lowerMask), kAlphaIsLower ? alphaOr255 : alpha);
    const WordVector upper = hn::Mul(hn::ShiftRight<8>(both), kAlphaIsLower ? alpha : alphaOr255);
    return hn::BitCast(Bytes(), hn::Or(over255(lower), hn::ShiftLeft<8>(over255(upper))));
  }
};

// What can be made a float at once: 32 bits, or 31 where the conversion knows signed integers only.
#if HWY_ARCH_X86 && HWY_TARGET <= HWY_AVX3
using Digits = Pixels;
#else
using Digits = Integers;
#endif
constexpr int kSignBits = std::is_signed_v<hn::TFromD<Digits> > ? 1 : 0;
constexpr float kOne = kSignBits == 0 ? 0x1p32F : 0x1p31F;

// byte / 255 in units of 1 / kOne, rounded as a division would be, from a byte spread over its lane.
//
// 1/255 is 0.0101... in hexadecimal, so that the byte repeated is the fraction's digits. The digits that no
// longer fit a lane come to less than one in its last place; a one there rounds as they do, for every byte
// (the largest saturates). A byte of 0 gives that one, which is below anything that shows.
HWY_INLINE FloatVector unit(ByteVector spreadByte) {
  const ByteVector digits =
      hn::BitCast(Bytes(), hn::ShiftRight<kSignBits>(hn::BitCast(Pixels(), spreadByte)));
  const ByteVector lastPlace = hn::BitCast(Bytes(), hn::Set(Pixels(), uint32_t{1}));
  return hn::ConvertTo(Floats(), hn::BitCast(Digits(), hn::SaturatedAdd(digits, lastPlace)));
}

// The integer part of floats that an int32_t holds. Highway's own conversion also looks after those that it
// does not hold: a fifth of the whole work here.
HWY_INLINE IntegerVector truncated(FloatVector floats) {
#if HWY_ARCH_X86 && HWY_TARGET <= HWY_AVX3
  return IntegerVector{_mm512_cvttps_epi32(floats.raw)};
#elif HWY_ARCH_X86 && HWY_TARGET == HWY_AVX2
  return IntegerVector{_mm256_cvttps_epi32(floats.raw)};
#elif HWY_ARCH_X86 && HWY_TARGET >= HWY_SSE4 && HWY_TARGET <= HWY_SSSE3
  return IntegerVector{_mm_cvttps_epi32(floats.raw)};
#else
  return hn::ConvertTo(Integers(), floats);
#endif
}

// Byte number kIndex times inverse, in its place. Below that place lies what the rounding cut off.
template <int kIndex>
HWY_INLINE PixelVector divided(ByteVector pixels, FloatVector inverse) {
  // The top byte gets there by a shift, as a float of that size would not fit an int32_t.
  constexpr int kLift = shiftOf(kIndex) == 24 ? 24 : 0;
  constexpr auto kPlace = static_cast<float>(1 << (shiftOf(kIndex) - kLift));
  const Floats floats;
  const FloatVector colour = hn::Mul(unit(spread<kIndex>(pixels)), inverse);
  const FloatVector scaled =
      hn::MulAdd(colour, hn::Set(floats, 255.0F * kPlace), hn::Set(floats, 0.5F * kPlace));
  return hn::ShiftLeft<kLift>(hn::BitCast(Pixels(), truncated(scaled)));
}

template <AlphaByte kAlpha>
struct Unpremultiply {
  static HWY_INLINE ByteVector apply(ByteVector pixels, ByteVector &excess) {
    constexpr int a = kAlphaIndex<kAlpha>, c = kFirstColour<kAlpha>;
    const ByteVector alpha = spread<a>(pixels);
    excess = hn::Or(excess, hn::SaturatedSub(pixels, alpha));
    // A colour like its alpha gives 255: what the formula limits its result to. Below an alpha of 0 there is
    // only 0, and the alpha then counts as 1, because a finite inverse keeps that 0.
    const ByteVector valid = hn::Min(pixels, alpha);
    const FloatVector leastAlpha = hn::Set(Floats(), kOne / 255.0F);
    const FloatVector inverse = hn::Div(hn::Set(Floats(), 1.0F), hn::Max(unit(alpha), leastAlpha));
    PixelVector result = hn::And(hn::BitCast(Pixels(), pixels), byteMask<a>());
    result = hn::OrAnd(result, divided<c>(valid, inverse), byteMask<c>());
    result = hn::OrAnd(result, divided<c + 1>(valid, inverse), byteMask<c + 1>());
    return hn::BitCast(Bytes(), hn::OrAnd(result, divided<c + 2>(valid, inverse), byteMask<c + 2>()));
  }
};

// Pixels that do not fill a vector, carried through one that zero bytes fill up: a pixel of zeros has no
// excess.
template <class Operation>
HWY_INLINE void applyToPart(uint8_t *pixels, size_t byteCount, ByteVector &excess) {
  HWY_ALIGN uint8_t part[HWY_MAX_BYTES] = {};
  std::memcpy(part, pixels, byteCount);
  hn::Store(Operation::apply(hn::Load(Bytes(), part), excess), Bytes(), part);
  std::memcpy(pixels, part, byteCount);
}

// Bytes before the first whole vector: where pixels can be aligned, all accesses are, since those across
// cache lines double the time of the cheaper loop.
HWY_INLINE size_t headBytes(const uint8_t *pixels, size_t byteCount, size_t vectorBytes) {
  const size_t head = (0 - reinterpret_cast<uintptr_t>(pixels)) % vectorBytes;
  return head % 4 == 0 && head < byteCount ? head : 0;
}

// Gives whether excess, which the operation adds to, ended as anything but zeros.
template <class Operation>
HWY_INLINE bool forEachVector(uint8_t *pixels, size_t byteCount) {
  const Bytes d;
  const size_t step = hn::Lanes(d);
  ByteVector excess = hn::Zero(d);
  size_t at = headBytes(pixels, byteCount, step);
  if (at != 0) applyToPart<Operation>(pixels, at, excess);
  for (; byteCount - at >= step; at += step) {
    hn::StoreU(Operation::apply(hn::LoadU(d, pixels + at), excess), d, pixels + at);
  }
  if (at != byteCount) applyToPart<Operation>(pixels + at, byteCount - at, excess);
  return !hn::AllTrue(d, hn::Eq(excess, hn::Zero(d)));
}

template <AlphaByte kAlpha>
void premultiply(uint8_t *pixels, size_t pixelCount) {
  forEachVector<Premultiply<kAlpha> >(pixels, pixelCount * 4);
}

template <AlphaByte kAlpha>
bool unpremultiply(uint8_t *pixels, size_t pixelCount) {
  return forEachVector<Unpremultiply<kAlpha> >(pixels, pixelCount * 4);
}

#endif  // HWY_TARGET == HWY_SCALAR

void premultiplyARGB(uint8_t *pixels, size_t count) { premultiply<AlphaByte::first>(pixels, count); }
void premultiplyRGBA(uint8_t *pixels, size_t count) { premultiply<AlphaByte::last>(pixels, count); }
bool unpremultiplyARGB(uint8_t *pixels, size_t count) {
  return unpremultiply<AlphaByte::first>(pixels, count);
}
bool unpremultiplyRGBA(uint8_t *pixels, size_t count) {
  return unpremultiply<AlphaByte::last>(pixels, count);
}

}  // namespace drav::pixel::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace drav::pixel {

HWY_EXPORT(premultiplyARGB);
HWY_EXPORT(premultiplyRGBA);
HWY_EXPORT(unpremultiplyARGB);
HWY_EXPORT(unpremultiplyRGBA);

void premultiplyPixels(uint8_t *pixels, size_t pixelCount, AlphaByte alpha) noexcept {
  if (alpha == AlphaByte::first) {
    HWY_DYNAMIC_DISPATCH(premultiplyARGB)(pixels, pixelCount);
  } else {
    HWY_DYNAMIC_DISPATCH(premultiplyRGBA)(pixels, pixelCount);
  }
}

bool unpremultiplyPixels(uint8_t *pixels, size_t pixelCount, AlphaByte alpha) noexcept {
  return alpha == AlphaByte::first ? HWY_DYNAMIC_DISPATCH(unpremultiplyARGB)(pixels, pixelCount)
                                   : HWY_DYNAMIC_DISPATCH(unpremultiplyRGBA)(pixels, pixelCount);
}

}  // namespace drav::pixel
#endif  // HWY_ONCE
