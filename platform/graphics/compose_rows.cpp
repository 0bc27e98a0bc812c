// Composing in vectors, compiled once for each kind of processor.
//
// Most of what is drawn is opaque, or lands where nothing is yet: a vector of such pixels is stored as it is.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "graphics/compose_rows.cpp"
// Between SSSE3 and SSE4 nothing differs here.
#define HWY_DISABLED_TARGETS HWY_SSSE3
#include <hwy/foreach_target.h>
// foreach_target comes first.
#include <hwy/highway.h>

#include "graphics/compose.h"
#include "graphics/vector_targets.h"

HWY_BEFORE_NAMESPACE();
namespace cg::HWY_NAMESPACE {
namespace {

#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128 || __BYTE_ORDER__ != __ORDER_LITTLE_ENDIAN__
ComposeRow rowFor(SurfaceLayout, RowForm) noexcept { return nullptr; }
#else

namespace hn = hwy::HWY_NAMESPACE;
using D8 = hn::ScalableTag<uint8_t>;
using D16 = hn::ScalableTag<uint16_t>;
using D32 = hn::ScalableTag<uint32_t>;
using Pixels = hn::Vec<D32>;
using Words = hn::Vec<D16>;

// Pixels are words in memory order: the first byte is the lowest.
enum class AlphaAt : uint8_t { first, last };

template <AlphaAt kAt>
HWY_INLINE Pixels alphaBytes() {
  return hn::Set(D32(), kAt == AlphaAt::first ? 0xFFu : 0xFF000000u);
}

// Alpha in both halves of a word.
template <AlphaAt kAt>
HWY_INLINE Words alphas(Pixels p) {
  const Pixels low = kAt == AlphaAt::first ? hn::And(p, hn::Set(D32(), 0xFFu)) : hn::ShiftRight<24>(p);
  return hn::BitCast(D16(), hn::Or(low, hn::ShiftLeft<16>(low)));
}

HWY_INLINE bool allEqual(Pixels a, Pixels b) { return hn::AllTrue(D32(), hn::Eq(a, b)); }

// Working forms have alpha first.
template <AlphaAt kAt>
HWY_INLINE Pixels loadSource(const uint8_t *at) {
  const Pixels p = hn::BitCast(D32(), hn::LoadU(D8(), at));
  return kAt == AlphaAt::first ? p : hn::Or(hn::ShiftRight<8>(p), hn::ShiftLeft<24>(p));
}
HWY_INLINE Pixels load(const uint8_t *at) { return hn::BitCast(D32(), hn::LoadU(D8(), at)); }
HWY_INLINE void store(Pixels p, uint8_t *at) { hn::StoreU(hn::BitCast(D8(), p), D8(), at); }

// v / 255 rounded, times 256 with what lies below the point left in.
HWY_INLINE Words dividedBy255(Words v) {
  const Words biased = hn::Add(v, hn::Set(D16(), uint16_t{128}));
  return hn::Add(biased, hn::ShiftRight<8>(biased));
}

template <AlphaAt kAt>
HWY_INLINE Pixels over(Pixels s, Pixels d) {
  const Words low = hn::Set(D16(), uint16_t{255}), bytes = hn::BitCast(D16(), d);
  const Words uncovered = hn::Sub(low, alphas<kAt>(s));
  const Words even = hn::ShiftRight<8>(dividedBy255(hn::Mul(hn::And(bytes, low), uncovered)));
  const Words odd = hn::AndNot(low, dividedBy255(hn::Mul(hn::ShiftRight<8>(bytes), uncovered)));
  const auto left = hn::BitCast(D8(), hn::Or(even, odd));
  return hn::BitCast(D32(), hn::SaturatedAdd(hn::BitCast(D8(), s), left));
}

// The last pixels that fill no vector go the plain way.
template <class Body>
HWY_INLINE void eachVector(SurfaceLayout layout, RowForm form, const uint8_t *source, uint8_t *destination,
                           size_t pixels, Body body) {
  const size_t step = hn::Lanes(D32());
  size_t at = 0;
  for (; at + step <= pixels; at += step) body(source + 4 * at, destination + 4 * at);
  if (at < pixels) plainComposeRow(layout, form)(source + 4 * at, destination + 4 * at, pixels - at);
}

template <AlphaAt kAt, SurfaceLayout kLayout>
void overPremultiplied(const uint8_t *source, uint8_t *destination, size_t pixels) {
  const Pixels opaque = alphaBytes<kAt>(), none = hn::Zero(D32());
  eachVector(kLayout, RowForm::argbPremultiplied, source, destination, pixels,
             [&](const uint8_t *from, uint8_t *to) HWY_ATTR {
               const Pixels s = loadSource<kAt>(from);
               if (allEqual(hn::And(s, opaque), opaque)) return store(s, to);
               if (allEqual(s, none)) return;
               const Pixels d = load(to);
               store(allEqual(d, none) ? s : over<kAt>(s, d), to);
             });
}

// Surfaces without alpha: their skipped byte counts as opaque, and becomes so.
template <AlphaAt kAt, SurfaceLayout kLayout>
void overOpaque(const uint8_t *source, uint8_t *destination, size_t pixels) {
  const Pixels opaque = alphaBytes<kAt>();
  eachVector(kLayout, RowForm::argbPremultiplied, source, destination, pixels,
             [&](const uint8_t *from, uint8_t *to) HWY_ATTR {
               const Pixels s = loadSource<kAt>(from);
               if (allEqual(hn::And(s, opaque), opaque)) return store(s, to);
               store(hn::Or(over<kAt>(s, load(to)), opaque), to);
             });
}

// Straight pixels onto a surface of such: where both are seen the plain way is taken, as it divides.
template <AlphaAt kAt, SurfaceLayout kLayout>
void overStraight(const uint8_t *source, uint8_t *destination, size_t pixels) {
  const Pixels opaque = alphaBytes<kAt>(), none = hn::Zero(D32());
  const ComposeRow plain = plainComposeRow(kLayout, RowForm::argbStraight);
  const size_t step = hn::Lanes(D32());
  eachVector(kLayout, RowForm::argbStraight, source, destination, pixels,
             [&](const uint8_t *from, uint8_t *to) HWY_ATTR {
               const Pixels s = loadSource<kAt>(from);
               const auto coversAll = hn::Eq(hn::And(s, opaque), opaque);
               if (hn::AllTrue(D32(), coversAll)) return store(s, to);
               const auto liesOnNothing = hn::Eq(hn::And(load(to), opaque), none);
               if (hn::AllTrue(D32(), hn::Or(coversAll, liesOnNothing))) return store(s, to);
               plain(from, to, step);
             });
}

// Alpha and grey in pairs.
void overGray(const uint8_t *source, uint8_t *destination, size_t pixels) {
  const hn::Rebind<uint8_t, D16> half;
  const hn::Rebind<int16_t, D16> signedWords;
  const Words low = hn::Set(D16(), uint16_t{255});
  const size_t step = hn::Lanes(D16());
  size_t at = 0;
  for (; at + step <= pixels; at += step) {
    const Words s = hn::BitCast(D16(), hn::LoadU(D8(), source + 2 * at));
    const Words d = hn::PromoteTo(D16(), hn::LoadU(half, destination + at));
    const Words left = hn::ShiftRight<8>(dividedBy255(hn::Mul(d, hn::Sub(low, hn::And(s, low)))));
    const Words sum = hn::Add(hn::ShiftRight<8>(s), left);
    hn::StoreU(hn::DemoteTo(half, hn::BitCast(signedWords, sum)), half, destination + at);
  }
  if (at < pixels)
    plainComposeRow(SurfaceLayout::gray, RowForm::grayAlphaPremultiplied)(source + 2 * at, destination + at,
                                                                          pixels - at);
}

ComposeRow rowFor(SurfaceLayout layout, RowForm form) noexcept {
  using Layout = SurfaceLayout;
  if (form == RowForm::grayAlphaPremultiplied && layout == Layout::gray) return overGray;
  if (form == RowForm::argbStraight && layout == Layout::argb)
    return overStraight<AlphaAt::first, Layout::argb>;
  if (form == RowForm::argbStraight && layout == Layout::rgba)
    return overStraight<AlphaAt::last, Layout::rgba>;
  if (form != RowForm::argbPremultiplied) return nullptr;
  switch (layout) {
    case Layout::argbPremultiplied:
      return overPremultiplied<AlphaAt::first, Layout::argbPremultiplied>;
    case Layout::rgbaPremultiplied:
      return overPremultiplied<AlphaAt::last, Layout::rgbaPremultiplied>;
    case Layout::xrgb:
      return overOpaque<AlphaAt::first, Layout::xrgb>;
    case Layout::rgbx:
      return overOpaque<AlphaAt::last, Layout::rgbx>;
    default:
      return nullptr;
  }
}
#endif

constinit const VectorComposeRows kRows{rowFor};

const VectorComposeRows *targetRows() { return &kRows; }

}  // namespace
}  // namespace cg::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace cg {
HWY_EXPORT(targetRows);

namespace {

const TargetTables<VectorComposeRows> &tables() noexcept {
  static const TargetTables<VectorComposeRows> all(
      HWY_TARGETS, [](size_t index) { return HWY_DISPATCH_TABLE(targetRows)[index](); });
  return all;
}

}  // namespace

const VectorComposeRows &vectorComposeRows() noexcept { return tables().best(); }

std::span<const VectorComposeRows *const> allVectorComposeRows() noexcept { return tables().all(); }

}  // namespace cg
#endif
