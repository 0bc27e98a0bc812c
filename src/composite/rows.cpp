// The row forms, compiled once for each kind of processor, and the choice among them at run time.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "composite/rows.cpp"
// Between SSSE3 and SSE4 nothing differs here: one of them is enough.
#define HWY_DISABLED_TARGETS HWY_SSSE3
#include <hwy/foreach_target.h>
// foreach_target comes first.
#include <hwy/highway.h>

#include <cstring>

#include "composite/rows.h"
#include "composite/rows_bytes-inl.h"
#include "composite/rows_guess-inl.h"
#include "composite/rows_plain.h"

#define DRAV_TEXT(Words) #Words
#define DRAV_TARGET_NAME(Namespace) (DRAV_TEXT(Namespace) + 2)  // without Highway's "N_"

HWY_BEFORE_NAMESPACE();
namespace drav::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128 || __BYTE_ORDER__ != __ORDER_LITTLE_ENDIAN__
// Without vectors the kernels themselves are the rows.
const RowTable *targetRows() { return &kPlainRows; }
#else

template <PixelFormat Format, class Mode>
struct Combine;

// A vector of result bytes; any byte set in `doubtful` makes its pixel the kernel's.
struct Outcome {
  Bytes bytes, doubtful;
};

HWY_INLINE Bytes noDoubt() { return hn::Zero(D8()); }
HWY_INLINE Bytes asBytes(Pixels v) { return hn::BitCast(D8(), v); }

// Non-zero where a colour exceeds its alpha.
HWY_INLINE Bytes invalidBytes(Bytes v, Words alpha) {
  const Bytes alphas = hn::BitCast(D8(), hn::Or(alpha, hn::ShiftLeft<8>(alpha)));
  return hn::SaturatedSub(v, alphas);
}
HWY_INLINE Bytes invalidBytes(const Argb &p) {
  return hn::Or(invalidBytes(p.s, p.sa), invalidBytes(p.d, p.da));
}

template <class Mode>
concept ValidOnly = requires {
  Lanes<Mode>::validOnly;
};

template <class Mode>
HWY_INLINE Outcome combineARGB(Bytes s, Bytes d) {
  const Argb p(s, d);
  if constexpr (Mode::onAlpha == Effect::clear) {
    return {hn::Zero(D8()), noDoubt()};
  } else if constexpr (Mode::onAlpha == Effect::copy) {
    return {s, noDoubt()};
  } else if constexpr (Mode::onAlpha == Effect::keep) {
    return {d, noDoubt()};
  } else if constexpr (Guess<Mode>::exists) {
    const Guessed guessed = guessARGB<Mode>(s, d);
    return {asBytes(guessed.bytes), hn::Or(asBytes(guessed.doubtful), invalidBytes(p))};
  } else if constexpr (ValidOnly<Mode>) {
    return {Lanes<Mode>::argb(p), invalidBytes(p)};
  } else {
    return {Lanes<Mode>::argb(p), noDoubt()};
  }
}

template <class Mode>
HWY_INLINE Outcome combineOpaque(Bytes s, Bytes d) {
  if constexpr (Mode::onOpaque == Effect::clear) {
    return {hn::Set(D8(), uint8_t{255}), noDoubt()};
  } else if constexpr (Mode::onOpaque == Effect::copy) {
    return {s, noDoubt()};
  } else if constexpr (Mode::onOpaque == Effect::keep) {
    return {d, noDoubt()};
  } else if constexpr (Guess<Mode>::exists) {
    const Guessed guessed = guessOpaque<Mode>(s, d);
    return {asBytes(guessed.bytes), asBytes(guessed.doubtful)};
  } else {
    return {Lanes<Mode>::opaque(s, d), noDoubt()};
  }
}

template <PixelFormat Format, class Mode>
HWY_INLINE Outcome combine(Bytes s, Bytes d) {
  if constexpr (Format == PixelFormat::argb) return combineARGB<Mode>(s, d);
  Outcome outcome = combineOpaque<Mode>(s, d);
  if constexpr (Format == PixelFormat::xrgb)
    outcome.bytes = hn::IfThenElse(hn::MaskFromVec(colourBytes()), outcome.bytes, d);
  return outcome;
}

template <PixelFormat Format, class Mode>
constexpr bool canDoubt() {
  if (Format == PixelFormat::argb) return Guess<Mode>::exists || ValidOnly<Mode>;
  return Guess<Mode>::exists;
}

// Puts what the kernel gives into the doubtful pixels of a vector. `source` and `destination` are the pixels
// as they were.
template <PixelFormat Format>
HWY_NOINLINE Bytes settled(DRAVCFBlendMode mode, Outcome outcome, Bytes source, Bytes destination) {
  constexpr size_t step = bytesPerPixel(Format), most = HWY_MAX_BYTES;
  HWY_ALIGN uint8_t s[most], d[most], result[most], doubtful[most];
  hn::Store(source, D8(), s);
  hn::Store(destination, D8(), d);
  hn::Store(outcome.bytes, D8(), result);
  hn::Store(outcome.doubtful, D8(), doubtful);
  for (size_t at = 0; at < hn::Lanes(D8()); at += step) {
    uint32_t any = 0;
    std::memcpy(&any, doubtful + at, step);
    if (any == 0) continue;
    blendOnePixel(Format, mode, s + at, d + at);
    std::memcpy(result + at, d + at, step);
  }
  return hn::Load(D8(), result);
}

template <PixelFormat Format, class Mode>
HWY_INLINE Bytes blended(Bytes s, Bytes d) {
  const Outcome outcome = combine<Format, Mode>(s, d);
  if constexpr (canDoubt<Format, Mode>()) {
    if (HWY_UNLIKELY(!hn::AllTrue(D8(), hn::Eq(outcome.doubtful, hn::Zero(D8())))))
      return settled<Format>(Mode::mode, outcome, s, d);
  }
  return outcome.bytes;
}

template <PixelFormat Format, class Mode>
void row(const uint8_t *source, uint8_t *destination, size_t pixels) noexcept {
  const size_t bytes = pixels * bytesPerPixel(Format), step = hn::Lanes(D8());
  size_t at = 0;
  for (; at + step <= bytes; at += step)
    hn::StoreU(blended<Format, Mode>(hn::LoadU(D8(), source + at), hn::LoadU(D8(), destination + at)), D8(),
               destination + at);
  if (at == bytes) return;
  HWY_ALIGN uint8_t s[HWY_MAX_BYTES] = {}, d[HWY_MAX_BYTES] = {};
  std::memcpy(s, source + at, bytes - at);
  std::memcpy(d, destination + at, bytes - at);
  hn::Store(blended<Format, Mode>(hn::Load(D8(), s), hn::Load(D8(), d)), D8(), d);
  std::memcpy(destination + at, d, bytes - at);
}

template <PixelFormat Format, class... Mode>
constexpr std::array<RowFunction, sizeof...(Mode)> rowsOf(ModeList<Mode...>) {
  return {&row<Format, Mode>...};
}

constinit const RowTable kRows{DRAV_TARGET_NAME(HWY_NAMESPACE),
                               {{rowsOf<PixelFormat::grey>(Modes{}), rowsOf<PixelFormat::xrgb>(Modes{}),
                                 rowsOf<PixelFormat::argb>(Modes{})}}};

const RowTable *targetRows() { return &kRows; }
#endif

}  // namespace drav::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace drav {
HWY_EXPORT(targetRows);

namespace {

struct Tables {
  std::array<const RowTable *, HWY_MAX_DYNAMIC_TARGETS + 1> best{};
  size_t count = 0;

  void add(const RowTable *table) noexcept {
    for (size_t i = 0; i < count; ++i)
      if (best[i] == table) return;
    best[count++] = table;
  }
};

// The lower a processor's bit, the better.
Tables everyTable() noexcept {
  Tables tables;
  for (int64_t left = hwy::SupportedTargets() & HWY_TARGETS; left != 0; left &= left - 1) {
    hwy::ChosenTarget chosen;
    chosen.Update(left & -left);
    tables.add(HWY_DISPATCH_TABLE(targetRows)[chosen.GetIndex()]());
  }
  tables.add(&kPlainRows);
  return tables;
}

const Tables &tables() noexcept {
  static const Tables all = everyTable();
  return all;
}

}  // namespace

const RowTable &rowTable() noexcept { return *tables().best[0]; }

std::span<const RowTable *const> rowTables() noexcept { return {tables().best.data(), tables().count}; }

const RowTable *rowTableNamed(std::string_view name) noexcept {
  for (const RowTable *table : rowTables())
    if (table->name == name) return table;
  return nullptr;
}

}  // namespace drav
#endif
