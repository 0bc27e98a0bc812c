// One doubtful pixel, settled in vectors of its four components. Included once for each kind of processor.
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

#include "composite/rows_guess-inl.h"

#if HWY_TARGET != HWY_SCALAR  // which has no vectors to compile this for
HWY_BEFORE_NAMESPACE();
namespace drav::HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

using One8 = hn::FixedTag<uint8_t, 4>;
using OneInt = hn::FixedTag<int32_t, 4>;
using OneFloat = hn::FixedTag<float, 4>;
using Components = hn::Vec<OneFloat>;

// Four doubles in one vector where there are such, otherwise in two.
#if HWY_TARGET <= HWY_AVX2
using Doubles = hn::FixedTag<double, 4>;
#else
using Doubles = hn::FixedTag<double, 2>;
#endif
using Wide = hn::Vec<Doubles>;

HWY_INLINE Wide wide(double value) { return hn::Set(Doubles(), value); }

// f in double precision of some components, rounded to single.
template <class F>
HWY_INLINE Components inDoubles(F f) {
#if HWY_TARGET <= HWY_AVX2
  return hn::DemoteTo(OneFloat(), f([](Components v) { return hn::PromoteTo(Doubles(), v); }));
#else
  const hn::Half<OneFloat> half;
  const auto lower = [](Components v) { return hn::PromoteTo(Doubles(), hn::LowerHalf(v)); };
  const auto upper = [=](Components v) { return hn::PromoteTo(Doubles(), hn::UpperHalf(half, v)); };
  return hn::Combine(OneFloat(), hn::DemoteTo(half, f(upper)), hn::DemoteTo(half, f(lower)));
#endif
}

HWY_INLINE Components unitsOf(const uint8_t *pixel) {
  const auto bytes = hn::PromoteTo(OneInt(), hn::LoadU(One8(), pixel));
  return unitFromSteps(OneFloat(), hn::ConvertTo(OneFloat(), bytes));
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
  const OneFloat f;
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
HWY_INLINE void settleSoftLight(const uint8_t *source, uint8_t *destination) {
  const OneFloat f;
  const Components s = unitsOf(source), d = unitsOf(destination);
  const Components alpha = hn::Sub(hn::Add(s, d), hn::Mul(s, d));
  const Components result = hn::IfThenElse(hn::FirstN(f, 1), alpha, softLight(s, d));
  const Components scaled = hn::Mul(hn::Max(result, hn::Zero(f)), hn::Set(f, 255.0F));
  const auto whole = hn::ConvertTo(OneInt(), scaled);
  const auto up = hn::Ge(hn::Sub(scaled, hn::ConvertTo(f, whole)), hn::Set(f, 0.5F));
  const auto rounded = hn::Sub(whole, hn::VecFromMask(OneInt(), hn::RebindMask(OneInt(), up)));
  hn::StoreU(hn::DemoteTo(One8(), rounded), One8(), destination);
}

}  // namespace drav::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();
#endif
#endif
