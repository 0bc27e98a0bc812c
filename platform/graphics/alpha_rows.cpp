// The file is compiled once for each instruction set; the best one that the machine has is chosen at the
// first call.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "graphics/alpha_rows.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "graphics/alpha_math.h"
#include "graphics/alpha_rows.h"
#include "graphics/pixel_words.h"

HWY_BEFORE_NAMESPACE();
namespace cg::HWY_NAMESPACE {
namespace {

// What the last pixels of a row, fewer than a vector holds, are done with.
template <std::size_t kAlpha, class Change>
void changeColors(uint8_t *pixels, std::size_t count, Change change) noexcept {
  for (uint8_t *pixel = pixels; pixel != pixels + 4 * count; pixel += 4)
    for (std::size_t c = 0; c < 4; ++c)
      if (c != kAlpha) pixel[c] = change(pixel[c], pixel[kAlpha]);
}

#if HWY_TARGET == HWY_SCALAR

template <std::size_t kAlpha>
void multiplyRow(uint8_t *pixels, std::size_t count) noexcept {
  changeColors<kAlpha>(pixels, count, multiply);
}

template <std::size_t kAlpha>
void divideRow(uint8_t *pixels, std::size_t count) noexcept {
  changeColors<kAlpha>(pixels, count, divide);
}

#else

namespace hn = hwy::HWY_NAMESPACE;
using Bytes = hn::ScalableTag<uint8_t>;
using Pairs = hn::Repartition<uint16_t, Bytes>;
using Words = hn::Repartition<uint32_t, Bytes>;
using Floats = hn::RebindToFloat<Words>;

// cg::multiply in lanes of 16 bits, which the products fit.
template <class V>
V multiplied(V c, V a) noexcept {
  const Pairs d;
  const V product = hn::Add(hn::Mul(c, a), hn::Set(d, 128));
  return hn::ShiftRight<8>(hn::Add(product, hn::ShiftRight<8>(product)));
}

// Vectors of opaque pixels, which most pictures are made of, are left alone.
template <class V>
bool areOpaque(V pixels, V alphaMask) noexcept {
  return hn::AllTrue(Words(), hn::Eq(hn::And(pixels, alphaMask), alphaMask));
}

template <std::size_t kAlpha>
void multiplyRow(uint8_t *pixels, std::size_t count) noexcept {
  const Bytes d;
  const Pairs pairs;
  const Words words;
  const auto alphaMask = hn::Set(words, uint32_t{0xFF} << shiftOfByte(kAlpha));
  alignas(16) constexpr uint8_t kBroadcast[16] = {
      kAlpha,     kAlpha,     kAlpha,     kAlpha,     kAlpha + 4,  kAlpha + 4,  kAlpha + 4,  kAlpha + 4,
      kAlpha + 8, kAlpha + 8, kAlpha + 8, kAlpha + 8, kAlpha + 12, kAlpha + 12, kAlpha + 12, kAlpha + 12};
  const auto broadcast = hn::LoadDup128(d, kBroadcast);
  const auto low = hn::Set(pairs, 0xFF);
  const std::size_t step = hn::Lanes(words);
  std::size_t i = 0;
  for (; i + step <= count; i += step) {
    const auto v = hn::LoadU(d, pixels + 4 * i);
    if (areOpaque(hn::BitCast(words, v), alphaMask)) continue;
    // Alpha itself is multiplied by 255, and so stays.
    const auto alpha =
        hn::BitCast(pairs, hn::Or(hn::TableLookupBytes(v, broadcast), hn::BitCast(d, alphaMask)));
    const auto c = hn::BitCast(pairs, v);
    const auto even = multiplied(hn::And(c, low), hn::And(alpha, low));
    const auto odd = multiplied(hn::ShiftRight<8>(c), hn::ShiftRight<8>(alpha));
    hn::StoreU(hn::BitCast(d, hn::Or(even, hn::ShiftLeft<8>(odd))), d, pixels + 4 * i);
  }
  changeColors<kAlpha>(pixels + 4 * i, count - i, multiply);
}

// cg::divide as the floor of (510 c + a) / 2a. Both are whole numbers below 2^24; where the quotient is not
// whole it is at least 1/510 below the next whole number, so that 1/8192, which is more than all the
// roundings of single precision together, may be added before the fraction is cut off.
template <std::size_t kColor, class V, class A, class F>
V dividedColor(V pixels, A alpha, F reciprocal) noexcept {
  const Words words;
  const hn::RebindToSigned<Words> whole;
  const Floats floats;
  constexpr int kShift = shiftOfByte(kColor);
  const auto c = hn::Min(hn::And(hn::ShiftRight<kShift>(pixels), hn::Set(words, 0xFF)), alpha);
  const auto doubled = hn::Sub(hn::ShiftLeft<9>(c), hn::Add(c, c));
  const auto dividend = hn::ConvertTo(floats, hn::BitCast(whole, hn::Add(doubled, alpha)));
  const auto quotient = hn::Add(hn::Mul(dividend, reciprocal), hn::Set(floats, 1.0F / 8192));
  return hn::ShiftLeft<kShift>(hn::BitCast(words, hn::ConvertTo(whole, quotient)));
}

template <std::size_t kAlpha>
void divideRow(uint8_t *pixels, std::size_t count) noexcept {
  const Bytes d;
  const Words words;
  const hn::RebindToSigned<Words> whole;
  const Floats floats;
  constexpr std::size_t kFirst = kAlpha == 0 ? 1 : 0;
  constexpr int kAlphaShift = shiftOfByte(kAlpha);
  const auto alphaMask = hn::Set(words, uint32_t{0xFF} << kAlphaShift);
  const std::size_t step = hn::Lanes(words);
  std::size_t i = 0;
  for (; i + step <= count; i += step) {
    const auto v = hn::BitCast(words, hn::LoadU(d, pixels + 4 * i));
    if (areOpaque(v, alphaMask)) continue;
    const auto kept = hn::And(v, alphaMask);
    const auto alpha = hn::ShiftRight<kAlphaShift>(kept);
    // Without alpha the dividends are 0, and any divisor but 0 will do.
    const auto divisor = hn::Max(hn::Add(alpha, alpha), hn::Set(words, 1));
    const auto reciprocal =
        hn::Div(hn::Set(floats, 1.0F), hn::ConvertTo(floats, hn::BitCast(whole, divisor)));
    const auto first = dividedColor<kFirst>(v, alpha, reciprocal);
    const auto second = dividedColor<kFirst + 1>(v, alpha, reciprocal);
    const auto third = dividedColor<kFirst + 2>(v, alpha, reciprocal);
    const auto result = hn::Or(hn::Or(kept, first), hn::Or(second, third));
    hn::StoreU(hn::BitCast(d, result), d, pixels + 4 * i);
  }
  changeColors<kAlpha>(pixels + 4 * i, count - i, divide);
}

#endif

void multiplyARGB(uint8_t *pixels, std::size_t count) { multiplyRow<0>(pixels, count); }
void multiplyRGBA(uint8_t *pixels, std::size_t count) { multiplyRow<3>(pixels, count); }
void divideARGB(uint8_t *pixels, std::size_t count) { divideRow<0>(pixels, count); }
void divideRGBA(uint8_t *pixels, std::size_t count) { divideRow<3>(pixels, count); }

}  // namespace
}  // namespace cg::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace cg {

HWY_EXPORT(multiplyARGB);
HWY_EXPORT(multiplyRGBA);
HWY_EXPORT(divideARGB);
HWY_EXPORT(divideRGBA);

void stepARGB(AlphaStep step, uint8_t *pixels, std::size_t count) noexcept {
  if (step == AlphaStep::multiply) HWY_DYNAMIC_DISPATCH(multiplyARGB)(pixels, count);
  if (step == AlphaStep::divide) HWY_DYNAMIC_DISPATCH(divideARGB)(pixels, count);
}

void stepRGBA(AlphaStep step, uint8_t *pixels, std::size_t count) noexcept {
  if (step == AlphaStep::multiply) HWY_DYNAMIC_DISPATCH(multiplyRGBA)(pixels, count);
  if (step == AlphaStep::divide) HWY_DYNAMIC_DISPATCH(divideRGBA)(pixels, count);
}

void stepPlane(AlphaStep step, uint8_t *values, const uint8_t *alpha, std::size_t count) noexcept {
  if (step == AlphaStep::multiply)
    for (std::size_t i = 0; i < count; ++i) values[i] = multiply(values[i], alpha[i]);
  if (step == AlphaStep::divide)
    for (std::size_t i = 0; i < count; ++i) values[i] = divide(values[i], alpha[i]);
}

}  // namespace cg
#endif
