// Doubtful pixels, settled in vectors of their four components: one pixel at a time, or two where a vector
// holds the eight doubles that they come to. Included once for each kind of processor.
//
// A mode that is applied again and again leaves many pixels just short of a half-way point, each of them
// doubtful every time; calling the kernel for each would take as long as all the rest. These are the kernel's
// own steps in its own precision, several times as fast.
#if defined(DRAV_ROWS_SETTLE_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef DRAV_ROWS_SETTLE_INL_H
#undef DRAV_ROWS_SETTLE_INL_H
#else
#define DRAV_ROWS_SETTLE_INL_H
#endif

#include <cstring>

#include "composite/rows_guess-inl.h"

#if HWY_TARGET != HWY_SCALAR  // which has no vectors to compile this for
HWY_BEFORE_NAMESPACE();
namespace drav::HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

#if HWY_TARGET <= HWY_AVX3
inline constexpr size_t kSettledAtOnce = 2;
#else
inline constexpr size_t kSettledAtOnce = 1;
#endif
using Few8 = hn::FixedTag<uint8_t, 4 * kSettledAtOnce>;
using FewInt = hn::FixedTag<int32_t, 4 * kSettledAtOnce>;
using FewFloat = hn::FixedTag<float, 4 * kSettledAtOnce>;
using Components = hn::Vec<FewFloat>;

// As many doubles in one vector where there are such, otherwise in two.
#if HWY_TARGET <= HWY_AVX2
using Doubles = hn::FixedTag<double, 4 * kSettledAtOnce>;
#else
using Doubles = hn::FixedTag<double, 2>;
#endif
using Wide = hn::Vec<Doubles>;

HWY_INLINE Wide wide(double value) { return hn::Set(Doubles(), value); }

// f in double precision of some components, rounded to single.
template <class F>
HWY_INLINE Components inDoubles(F f) {
#if HWY_TARGET <= HWY_AVX2
  return hn::DemoteTo(FewFloat(), f([](Components v) { return hn::PromoteTo(Doubles(), v); }));
#else
  const hn::Half<FewFloat> half;
  const auto lower = [](Components v) { return hn::PromoteTo(Doubles(), hn::LowerHalf(v)); };
  const auto upper = [=](Components v) { return hn::PromoteTo(Doubles(), hn::UpperHalf(half, v)); };
  return hn::Combine(FewFloat(), hn::DemoteTo(half, f(upper)), hn::DemoteTo(half, f(lower)));
#endif
}

// The offsets of as many pixels as are settled at once; two of them may be the same.
using FewOffsets = size_t[kSettledAtOnce];

HWY_INLINE hn::Vec<Few8> fewPixels(const uint8_t *pixels, const FewOffsets &at) {
#if HWY_TARGET <= HWY_AVX3
  uint32_t first, second;
  std::memcpy(&first, pixels + at[0], sizeof first);
  std::memcpy(&second, pixels + at[1], sizeof second);
  return hn::BitCast(Few8(), hn::Set(hn::FixedTag<uint64_t, 1>(), uint64_t{second} << 32 | first));
#else
  return hn::LoadU(Few8(), pixels + at[0]);
#endif
}
HWY_INLINE void storeFewPixels(hn::Vec<Few8> v, uint8_t *pixels, const FewOffsets &at) {
  HWY_ALIGN uint8_t bytes[4 * kSettledAtOnce];
  hn::StoreU(v, Few8(), bytes);
  for (size_t i = 0; i < kSettledAtOnce; ++i) std::memcpy(pixels + at[i], bytes + 4 * i, 4);
}
HWY_INLINE Components unitsOf(hn::Vec<Few8> pixels) {
  return unitFromSteps(FewFloat(), hn::ConvertTo(FewFloat(), hn::PromoteTo(FewInt(), pixels)));
}

// Without the uncovered parts.
HWY_INLINE Wide softLight(Wide sc, Wide dc, Wide sa, Wide da, Wide m, Wide covered) {
  const Wide lean = hn::Sub(hn::Mul(wide(2.0), sc), sa);
  const Wide bent = hn::Mul(hn::Sub(wide(1.0), m), lean);
  const Wide steep = hn::Mul(bent, hn::Sub(wide(3.0), hn::Mul(wide(8.0), m)));
  const auto darkSource = hn::Lt(lean, wide(0.0));
  const auto darkBelow = hn::Le(hn::Mul(wide(8.0), dc), da);
  const Wide dark = hn::Mul(dc, hn::Sub(sa, hn::IfThenElse(darkSource, bent, steep)));
  const Wide rooted = hn::Add(covered, hn::Mul(hn::Sub(hn::Mul(hn::Sqrt(m), da), dc), lean));
  return hn::IfThenElse(hn::Or(darkSource, darkBelow), dark, rooted);
}

// Products that the kernel takes in single come as such.
HWY_INLINE Components softLight(Components s, Components d) {
  const FewFloat f;
  const Components one = hn::Set(f, 1.0F), sa = hn::Broadcast<0>(s), da = hn::Broadcast<0>(d);
  const Components m = hn::IfThenZeroElse(hn::Eq(da, hn::Zero(f)), hn::Div(d, da));
  const Components covered = hn::Mul(d, sa), ofSource = hn::Mul(s, hn::Sub(one, da)),
                   ofDestination = hn::Mul(d, hn::Sub(one, sa));
  return inDoubles([&](auto to) {
    const Wide blended = softLight(to(s), to(d), to(sa), to(da), to(m), to(covered));
    return hn::Add(hn::Add(blended, to(ofSource)), to(ofDestination));
  });
}

// No pixel, however invalid, gives a component above 255.0: there are no other cases to the clamped store.
HWY_NOINLINE void settleSoftLight(const uint8_t *source, uint8_t *destination, const FewOffsets &at) {
  const FewFloat f;
  const Components s = unitsOf(fewPixels(source, at)), d = unitsOf(fewPixels(destination, at));
  const Components alpha = hn::Sub(hn::Add(s, d), hn::Mul(s, d));
  const auto isAlpha = hn::Eq(hn::And(hn::Iota(FewInt(), 0), hn::Set(FewInt(), 3)), hn::Zero(FewInt()));
  const Components result = hn::IfThenElse(hn::RebindMask(f, isAlpha), alpha, softLight(s, d));
  const Components scaled = hn::Mul(hn::Max(result, hn::Zero(f)), hn::Set(f, 255.0F));
  const auto whole = hn::ConvertTo(FewInt(), scaled);
  const auto up = hn::Ge(hn::Sub(scaled, hn::ConvertTo(f, whole)), hn::Set(f, 0.5F));
  const auto rounded = hn::Sub(whole, hn::VecFromMask(FewInt(), hn::RebindMask(FewInt(), up)));
  storeFewPixels(hn::DemoteTo(Few8(), rounded), destination, at);
}

}  // namespace drav::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();
#endif
#endif
