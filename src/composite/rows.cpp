// The row forms, compiled once for each kind of processor, and the choice among them at run time.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "composite/rows.cpp"
// Between SSSE3 and SSE4 nothing differs here: one of them is enough. The estimates are packed within blocks
// of 16 bytes, which vectors of unknown size do not keep.
#define HWY_DISABLED_TARGETS (HWY_SSSE3 | HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV)
#include <hwy/foreach_target.h>
// foreach_target comes first.
#include <hwy/highway.h>

#include <algorithm>
#include <cstring>
#include <iterator>

#include "composite/rows.h"
#include "composite/rows_bytes-inl.h"
#include "composite/rows_guess-inl.h"
#include "composite/rows_plain.h"
#include "composite/rows_settle-inl.h"

#define DRAV_TEXT(Words) #Words
#define DRAV_TARGET_NAME(Namespace) (DRAV_TEXT(Namespace) + 2)  // without Highway's "N_"

HWY_BEFORE_NAMESPACE();
namespace drav::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128 || __BYTE_ORDER__ != __ORDER_LITTLE_ENDIAN__
// Without vectors the kernels themselves are the rows.
const RowTable *targetRows() { return &kPlainRows; }
#else

// A vector that is in a register for all its uses. Left alone, the compiler loads it anew for each of them,
// and while memory is slow to come every one of the loads waits: a third of the speed of Multiply.
HWY_INLINE Bytes loadedOnce(const uint8_t *bytes) {
  Bytes v = hn::LoadU(D8(), bytes);
#if HWY_TARGET <= HWY_SSSE3
  asm("" : "+v"(v.raw));
#endif
  return v;
}

// A vector of result bytes; the pixels in the lanes of `doubtful` are the kernel's to say.
struct Outcome {
  Bytes bytes;
  PixelMask doubtful;
};

HWY_INLINE Outcome certain(Bytes bytes) { return {bytes, hn::MaskFromVec(hn::Zero(D32()))}; }

// How far each byte exceeds its alpha.
HWY_INLINE Bytes excess(Bytes v) { return hn::SaturatedSub(v, alphaInBytes(v)); }
HWY_INLINE PixelMask someExcess(Bytes v) { return hn::Ne(hn::BitCast(D32(), v), hn::Zero(D32())); }

// The pixels in which a colour exceeds its alpha.
HWY_INLINE PixelMask invalidPixels(Bytes s, Bytes d) { return someExcess(hn::Or(excess(s), excess(d))); }

template <class Mode>
HWY_INLINE PixelMask doubtfulARGB(const Guessed &guessed, Bytes s, Bytes d) {
  const PixelMask doubtful = guessed.template doubtfulARGB<Mode>();
  if constexpr (Guess<Mode>::validity == Needed::neither) return doubtful;
  if constexpr (Guess<Mode>::validity == Needed::destination) return hn::Or(doubtful, someExcess(excess(d)));
  return hn::Or(doubtful, invalidPixels(s, d));
}

template <class Mode>
concept Suspecting = requires {
  Lanes<Mode>::suspectBit;
};
template <class Mode>
concept HasLongForm = requires(const Argb &pixels) {
  Lanes<Mode>::unsuspecting(pixels);
};

template <class Mode>
HWY_INLINE Outcome combineARGB(Bytes s, Bytes d) {
  if constexpr (Guess<Mode>::exists) {
    const Guessed guessed = guessARGB<Mode>(s, d);
    return {guessed.bytes(), doubtfulARGB<Mode>(guessed, s, d)};
  } else if constexpr (Suspecting<Mode>) {
    Suspects unused;
    return {Lanes<Mode>::argb(Argb(s, d), unused), invalidPixels(s, d)};
  } else {
    return certain(Lanes<Mode>::argb(Argb(s, d)));
  }
}

template <PixelFormat Format, class Mode>
HWY_INLINE Outcome combineOpaque(Bytes s, Bytes d) {
  constexpr int first = Format == PixelFormat::grey ? 0 : 1;
  if constexpr (Mode::onOpaque == Effect::clear) {
    return certain(hn::Set(D8(), uint8_t{255}));
  } else if constexpr (Mode::onOpaque == Effect::copy) {
    return certain(s);
  } else if constexpr (CertainOpaque<Mode>) {
    return certain(guessOpaque<first, Mode>(s, d).bytes());
  } else if constexpr (Guess<Mode>::exists) {
    const Guessed guessed = guessOpaque<first, Mode>(s, d);
    return {guessed.bytes(), guessed.closerThan(Guess<Mode>::leastFineOpaque)};
  } else {
    return certain(Lanes<Mode>::opaque(s, d));
  }
}

template <PixelFormat Format, class Mode>
HWY_INLINE Outcome combine(Bytes s, Bytes d) {
  if constexpr (Format == PixelFormat::argb) {
    return combineARGB<Mode>(s, d);
  } else if constexpr (Format == PixelFormat::xrgb && Mode::mode == kDRAVCFBlendModeScreen) {
    // A source of 0 leaves the destination's byte, which takes fewer steps than selecting it afterwards.
    return certain(Lanes<Mode>::opaque(hn::And(s, colourBytes()), d));
  } else {
    Outcome outcome = combineOpaque<Format, Mode>(s, d);
    if constexpr (Format == PixelFormat::xrgb)
      outcome.bytes = hn::IfVecThenElse(colourBytes(), outcome.bytes, d);
    return outcome;
  }
}

template <PixelFormat Format, class Mode>
constexpr bool mayDoubt() {
  if (Format == PixelFormat::argb) return Guess<Mode>::exists;
  return Guess<Mode>::exists && !CertainOpaque<Mode>;
}

// Does the pixels of 32-bit lanes as the kernel does.
template <PixelFormat Format, class Mode>
struct Settler {
  static constexpr bool inVectors = Format == PixelFormat::argb && Mode::mode == kDRAVCFBlendModeSoftLight;
  static constexpr size_t atOnce = inVectors ? kSettledAtOnce : 1;

  static HWY_INLINE void settle(const uint8_t *source, uint8_t *destination, const size_t (&at)[atOnce]) {
    if constexpr (inVectors)
      settleSoftLight(source, destination, at);
    else
      for (size_t i = 0; i < 4; i += bytesPerPixel(Format))
        blendOnePixel(Format, Mode::mode, source + at[0] + i, destination + at[0] + i);
  }
};

// Whole vectors of a mode that may doubt: all of them are estimated first, and the doubtful lanes, left as
// they were, settled after that. Settling each as it is found costs twice the time, nearly all of it in
// mispredicted branches.
template <PixelFormat Format, class Mode>
class DoubtfulRun {
 public:
  static constexpr size_t most = 64;  // vectors

  HWY_INLINE DoubtfulRun(const uint8_t *source, uint8_t *destination)
      : source_(source), destination_(destination) {}

  HWY_INLINE void estimate(size_t vectors) {
    const uint8_t *const source = source_;
    uint8_t *const destination = destination_;
    const size_t maskBytes = bytesOfMask();
    const size_t last = vectors * maskBytes / sizeof(uint64_t);
    std::memset(doubtful_ + last * sizeof(uint64_t), 0, sizeof(uint64_t));
    for (size_t v = 0; v < vectors; ++v) {
      const size_t at = v * hn::Lanes(D8());
      const Bytes d = hn::LoadU(D8(), destination + at);
      const Outcome outcome = combine<Format, Mode>(hn::LoadU(D8(), source + at), d);
      const Pixels kept =
          hn::IfThenElse(outcome.doubtful, hn::BitCast(D32(), d), hn::BitCast(D32(), outcome.bytes));
      hn::StoreMaskBits(D32(), outcome.doubtful, doubtful_ + v * maskBytes);
      hn::StoreU(hn::BitCast(D8(), kept), D8(), destination + at);
    }
  }
  HWY_INLINE void settle(size_t vectors) const {
    using Settling = Settler<Format, Mode>;
    const size_t maskBytes = bytesOfMask();
    size_t at[Settling::atOnce], found = 0;
    for (size_t first = 0; first < vectors * maskBytes; first += sizeof(uint64_t)) {
      uint64_t bits = 0;
      std::memcpy(&bits, doubtful_ + first, sizeof bits);
      for (; bits != 0; bits &= bits - 1) {
        const size_t bit = first * 8 + static_cast<size_t>(__builtin_ctzll(bits));
        at[found++] = bit / (maskBytes * 8) * hn::Lanes(D8()) + bit % (maskBytes * 8) * 4;
        if (found < Settling::atOnce) continue;
        Settling::settle(source_, destination_, at);
        found = 0;
      }
    }
    if (found == 0) return;
    std::fill(at + found, std::end(at), at[0]);
    Settling::settle(source_, destination_, at);
  }

 private:
  // The lanes of a vector as bits.
  static HWY_INLINE size_t bytesOfMask() { return (hn::Lanes(D32()) + 7) / 8; }
  static constexpr size_t mostMaskBytes = (hn::MaxLanes(D32()) + 7) / 8;

  const uint8_t *source_;
  uint8_t *destination_;
  uint8_t doubtful_[most * mostMaskBytes + sizeof(uint64_t)];
};

template <PixelFormat Format, class Mode>
void doubtfulVectors(const uint8_t *source, uint8_t *destination, size_t vectors) noexcept {
  using Run = DoubtfulRun<Format, Mode>;
  for (size_t done = 0; done < vectors; done += Run::most) {
    const size_t at = done * hn::Lanes(D8()), now = HWY_MIN(vectors - done, Run::most);
    Run run(source + at, destination + at);
    run.estimate(now);
    run.settle(now);
  }
}

// A vector that may hold invalid pixels.
template <class Mode>
HWY_NOINLINE Bytes unsuspecting(Bytes s, Bytes d) {
  if constexpr (HasLongForm<Mode>) {
    return Lanes<Mode>::unsuspecting(Argb(s, d));
  } else {
    HWY_ALIGN uint8_t source[HWY_MAX_BYTES], destination[HWY_MAX_BYTES];
    hn::Store(s, D8(), source);
    hn::Store(d, D8(), destination);
    doubtfulVectors<PixelFormat::argb, Mode>(source, destination, 1);
    return hn::Load(D8(), destination);
  }
}

// `Count` vectors on end.
template <class Mode, size_t Count>
HWY_INLINE void suspectVectors(const uint8_t *source, uint8_t *destination) {
  static_assert(Count == 1 || Count == 2);
  const size_t step = (Count - 1) * hn::Lanes(D8());  // 0: both are one
  const Bytes s0 = loadedOnce(source), s1 = loadedOnce(source + step);
  const Bytes d0 = loadedOnce(destination), d1 = loadedOnce(destination + step);
  Suspects suspects;
  Bytes r0 = Lanes<Mode>::argb(Argb(s0, d0), suspects);
  Bytes r1 = Lanes<Mode>::argb(Argb(s1, d1), suspects);
  if (HWY_UNLIKELY(suspects.any(Lanes<Mode>::suspectBit))) {
    r0 = unsuspecting<Mode>(s0, d0);
    r1 = unsuspecting<Mode>(s1, d1);
  }
  hn::StoreU(r0, D8(), destination);
  hn::StoreU(r1, D8(), destination + step);
}

template <PixelFormat Format, class Mode>
HWY_INLINE void wholeVectors(const uint8_t *source, uint8_t *destination, size_t vectors) {
  const size_t step = hn::Lanes(D8()), end = vectors * step;
  if constexpr (mayDoubt<Format, Mode>()) {
    doubtfulVectors<Format, Mode>(source, destination, vectors);
  } else if constexpr (Format == PixelFormat::argb && Suspecting<Mode>) {
    size_t at = 0;
    for (; at + 2 * step <= end; at += 2 * step) suspectVectors<Mode, 2>(source + at, destination + at);
    if (at < end) suspectVectors<Mode, 1>(source + at, destination + at);
  } else {
    for (size_t at = 0; at < end; at += step) {
      const Bytes s = loadedOnce(source + at), d = loadedOnce(destination + at);
      hn::StoreU(combine<Format, Mode>(s, d).bytes, D8(), destination + at);
    }
  }
}

template <PixelFormat Format, class Mode>
inline constexpr Effect effectOf = Format == PixelFormat::argb ? Mode::onAlpha : Mode::onOpaque;

// Whether a row is cleared, copied or kept whole. Byte 0 of a pixel without alpha is in the way of the first
// two.
template <PixelFormat Format, class Mode>
inline constexpr bool isWholeRow = effectOf<Format, Mode> == Effect::keep ||
                                   (effectOf<Format, Mode> != Effect::compute && Format != PixelFormat::xrgb);

template <PixelFormat Format, class Mode>
HWY_INLINE void wholeRow(const uint8_t *source, uint8_t *destination, size_t bytes) {
  if constexpr (effectOf<Format, Mode> == Effect::clear)
    std::memset(destination, Format == PixelFormat::argb ? 0 : 255, bytes);
  if constexpr (effectOf<Format, Mode> == Effect::copy) std::memmove(destination, source, bytes);
}

template <PixelFormat Format, class Mode>
void vectorRow(const uint8_t *source, uint8_t *destination, size_t bytes) noexcept {
  const size_t vectors = bytes / hn::Lanes(D8()), at = vectors * hn::Lanes(D8());
  wholeVectors<Format, Mode>(source, destination, vectors);
  if (at == bytes) return;
  // The rest, in the middle of nothing: zeros are valid pixels.
  HWY_ALIGN uint8_t s[HWY_MAX_BYTES] = {}, d[HWY_MAX_BYTES] = {};
  std::memcpy(s, source + at, bytes - at);
  std::memcpy(d, destination + at, bytes - at);
  wholeVectors<Format, Mode>(s, d, 1);
  std::memcpy(destination + at, d, bytes - at);
}

template <PixelFormat Format, class Mode>
void row(const uint8_t *source, uint8_t *destination, size_t pixels) noexcept {
  if constexpr (isWholeRow<Format, Mode>)
    wholeRow<Format, Mode>(source, destination, pixels * bytesPerPixel(Format));
  else
    vectorRow<Format, Mode>(source, destination, pixels * bytesPerPixel(Format));
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
