// The vector forms of the resampling loops, compiled once for each kind of processor.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "graphics/resample_rows.cpp"
// The loops interleave and pack within blocks of 16 bytes, which vectors of unknown size do not keep. Between
// SSSE3 and SSE4 nothing differs here.
#define HWY_DISABLED_TARGETS (HWY_SSSE3 | HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV)
#include <hwy/foreach_target.h>
// foreach_target comes first.
#include <hwy/highway.h>

#include <cstring>

#include "graphics/resample_plain.h"
#include "graphics/resample_rows.h"
#include "graphics/vector_targets.h"

HWY_BEFORE_NAMESPACE();
namespace cg::HWY_NAMESPACE {
namespace {

#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128 || __BYTE_ORDER__ != __ORDER_LITTLE_ENDIAN__
void downBytes(const uint8_t *const *rows, const ColumnFilter &filter, size_t count, int16_t *out) {
  downPlain(rows, filter, count, out);
}
void downWords(const int16_t *const *rows, const ColumnFilter &filter, size_t count, uint8_t *out) {
  downPlain(rows, filter, count, out);
}
void acrossBytes(const uint8_t *row, const RowFilter &filter, int16_t *out) {
  acrossPlain<4>(row, filter, out);
}
void acrossWords(const int16_t *row, const RowFilter &filter, uint8_t *out) {
  acrossPlain<4>(row, filter, out);
}
#else

namespace hn = hwy::HWY_NAMESPACE;
using D8 = hn::ScalableTag<uint8_t>;
using D16 = hn::ScalableTag<int16_t>;
using D32 = hn::ScalableTag<int32_t>;

// a[2i] * b[2i] + a[2i + 1] * b[2i + 1] for every i.
template <class D, class V>
HWY_INLINE hn::Vec<D> pairSums(D d32, V a, V b) {
#if HWY_ARCH_X86
  hn::Vec<D> unused = hn::Zero(d32);
  return hn::ReorderWidenMulAccumulate(d32, a, b, hn::Zero(d32), unused);
#else
  const auto wideA = hn::BitCast(d32, a), wideB = hn::BitCast(d32, b);
  const auto low =
      hn::Mul(hn::ShiftRight<16>(hn::ShiftLeft<16>(wideA)), hn::ShiftRight<16>(hn::ShiftLeft<16>(wideB)));
  return hn::Add(low, hn::Mul(hn::ShiftRight<16>(wideA), hn::ShiftRight<16>(wideB)));
#endif
}

constexpr int kFromBytes = kWeightBits - kWordFraction;
constexpr int kFromWords = kWeightBits + kWordFraction;

// The rows of a pair of taps; an odd one is paired with itself, at no weight.
template <class T>
struct RowPair {
  RowPair(const T *const *rows, size_t pair, size_t taps)
      : upper(rows[2 * pair]), lower(rows[2 * pair + 1 < taps ? 2 * pair + 1 : 2 * pair]) {}
  const T *upper, *lower;
};

HWY_INLINE hn::Vec<D16> wordsAt(const uint8_t *at) {
  return hn::BitCast(D16(), hn::PromoteTo(D16(), hn::LoadU(hn::Rebind<uint8_t, D16>(), at)));
}
HWY_INLINE hn::Vec<D16> wordsAt(const int16_t *at) { return hn::LoadU(D16(), at); }

// Sums with their fraction as words, held within them.
template <int kDrop, class D>
HWY_INLINE auto packed(D d16, hn::Vec<hn::RepartitionToWide<D> > a, hn::Vec<hn::RepartitionToWide<D> > b) {
  return hn::ReorderDemote2To(d16, hn::ShiftRight<kDrop>(a), hn::ShiftRight<kDrop>(b));
}

HWY_INLINE void storeAs(int16_t *out, hn::Vec<D16> v) { hn::StoreU(v, D16(), out); }
HWY_INLINE void storeAs(uint8_t *out, hn::Vec<D16> v) {
  const hn::Rebind<uint8_t, D16> half;
  hn::StoreU(hn::DemoteTo(half, v), half, out);
}

// kVectors times as many samples as a vector has words: sums of one alone would wait for each other.
template <int kVectors, class Out, class In>
HWY_INLINE void downAt(const In *const *rows, const ColumnFilter &filter, size_t at, Out *out) {
  constexpr int kDrop =
      kWeightBits + (sizeof(In) == 2 ? kWordFraction : 0) - (sizeof(Out) == 2 ? kWordFraction : 0);
  const D32 d32;
  const size_t step = hn::Lanes(D16());
  hn::Vec<D32> low[kVectors], high[kVectors];
  for (int v = 0; v < kVectors; ++v) low[v] = high[v] = hn::Set(d32, 1 << (kDrop - 1));
  for (size_t pair = 0; 2 * pair < filter.taps; ++pair) {
    const RowPair<In> row(rows, pair, filter.taps);
    const auto weights = hn::BitCast(D16(), hn::Set(d32, filter.words[pair]));
    for (int v = 0; v < kVectors; ++v) {
      const size_t sample = at + static_cast<size_t>(v) * step;
      const auto upper = wordsAt(row.upper + sample), lower = wordsAt(row.lower + sample);
      low[v] = hn::Add(low[v], pairSums(d32, hn::InterleaveLower(D16(), upper, lower), weights));
      high[v] = hn::Add(high[v], pairSums(d32, hn::InterleaveUpper(D16(), upper, lower), weights));
    }
  }
  for (int v = 0; v < kVectors; ++v)
    storeAs(out + at + static_cast<size_t>(v) * step, packed<kDrop>(D16(), low[v], high[v]));
}

template <class Out, class In>
void down(const In *const *rows, const ColumnFilter &filter, size_t count, Out *out) {
  const size_t step = hn::Lanes(D16());
  size_t at = 0;
  for (; at + 2 * step <= count; at += 2 * step) downAt<2>(rows, filter, at, out);
  for (; at + step <= count; at += step) downAt<1>(rows, filter, at, out);
  downPlainFrom(at, rows, filter, count, out);
}

// Along a row a block of 16 bytes holds the sums of one output pixel. A vector has one block or two, and is
// not made wider: what it is filled from lies apart.
template <size_t kBlocks>
struct Across {
  using D8 = hn::FixedTag<uint8_t, 16 * kBlocks>;
  using D16 = hn::FixedTag<int16_t, 8 * kBlocks>;
  using D32 = hn::FixedTag<int32_t, 4 * kBlocks>;
  using Block8 = hn::Full128<uint8_t>;

  // The bytes of two neighbouring pixels at the start of a block, or of one with zeros after it.
  template <size_t kBytes>
  static HWY_INLINE hn::Vec<Block8> load(const void *at) {
    if constexpr (kBytes == 16) {
      return hn::LoadU(Block8(), static_cast<const uint8_t *>(at));
    } else if constexpr (kBytes == 8) {
      return hn::ZeroExtendVector(Block8(), hn::LoadU(hn::Half<Block8>(), static_cast<const uint8_t *>(at)));
    } else {
      int32_t pixel;
      std::memcpy(&pixel, at, sizeof pixel);
      const hn::FixedTag<int32_t, 2> both;
      const auto low = hn::Set(hn::FixedTag<int32_t, 1>(), pixel);
      return hn::BitCast(Block8(),
                         hn::ZeroExtendVector(hn::Full128<int32_t>(), hn::ZeroExtendVector(both, low)));
    }
  }

  // Moves the samples of two pixels beside each other, as words.
  static HWY_INLINE hn::Vec<D16> interleaved(hn::Vec<D8> pixels, uint8_t) {
    constexpr uint8_t none = 0x80;
    HWY_ALIGN static constexpr uint8_t kOrder[16] = {0, none, 4, none, 1, none, 5, none,
                                                     2, none, 6, none, 3, none, 7, none};
    return hn::BitCast(D16(), hn::TableLookupBytesOr0(pixels, hn::LoadDup128(D8(), kOrder)));
  }
  static HWY_INLINE hn::Vec<D16> interleaved(hn::Vec<D8> pixels, int16_t) {
    HWY_ALIGN static constexpr uint8_t kOrder[16] = {0, 1, 8, 9, 2, 3, 10, 11, 4, 5, 12, 13, 6, 7, 14, 15};
    return hn::BitCast(D16(), hn::TableLookupBytes(pixels, hn::LoadDup128(D8(), kOrder)));
  }

  template <size_t kBytes, class In>
  static HWY_INLINE hn::Vec<D16> pixelsAt(const In *const *samples, size_t at) {
    const auto first = load<kBytes>(samples[0] + at);
    if constexpr (kBlocks == 1) {
      return interleaved(first, In());
    } else {
      return interleaved(hn::Combine(D8(), load<kBytes>(samples[1] + at), first), In());
    }
  }

  // The sums of kBlocks outputs.
  template <int kDrop, class In>
  static HWY_INLINE hn::Vec<D32> sumsAt(const In *row, const RowFilter &filter, size_t output) {
    const In *samples[kBlocks];
    for (size_t i = 0; i < kBlocks; ++i) samples[i] = row + size_t{filter.first[output + i]} * 4;
    const int32_t *words = filter.words + spreadIndex(output, 0, filter.pairs());
    auto sums = hn::Set(D32(), 1 << (kDrop - 1));
    const auto add = [&](hn::Vec<D16> pixels) HWY_ATTR {
      sums = hn::Add(sums, pairSums(D32(), pixels, hn::BitCast(D16(), hn::LoadU(D32(), words))));
      words += 8;
    };
    const size_t whole = filter.taps / 2 * 2;
    for (size_t tap = 0; tap < whole; tap += 2) add(pixelsAt<8 * sizeof(In)>(samples, 4 * tap));
    if (whole < filter.taps) add(pixelsAt<4 * sizeof(In)>(samples, 4 * whole));
    return hn::ShiftRight<kDrop>(sums);
  }
};

HWY_INLINE void storeSums(hn::Vec<hn::Full128<int32_t> > sums, int16_t *out) {
  const hn::Half<hn::Full128<int16_t> > half;
  hn::StoreU(hn::DemoteTo(half, sums), half, out);
}
HWY_INLINE void storeSums(hn::Vec<hn::Full128<int32_t> > sums, uint8_t *out) {
  const hn::FixedTag<uint8_t, 4> quarter;
  hn::StoreU(hn::DemoteTo(quarter, sums), quarter, out);
}
#if HWY_MAX_BYTES >= 32
using TwoSums = hn::Vec<hn::FixedTag<int32_t, 8> >;
HWY_INLINE void storeSums(TwoSums sums, int16_t *out) {
  const hn::FixedTag<int16_t, 8> both;
  hn::StoreU(hn::DemoteTo(both, sums), both, out);
}
HWY_INLINE void storeSums(TwoSums sums, uint8_t *out) {
  const hn::FixedTag<uint8_t, 8> both;
  hn::StoreU(hn::DemoteTo(both, sums), both, out);
}
#endif

// Enlarging, the pairs of pixels of four outputs lie within the eight pixels that follow the first of them:
// one load fetches what would take four.
class EnlargingAcross {
#if HWY_MAX_BYTES >= 64
  using Pixels = hn::FixedTag<uint32_t, 8>;
  using Words = hn::FixedTag<int16_t, 32>;

  [[nodiscard]] HWY_INLINE hn::Vec<Pixels> pixelsFrom(size_t first) const {
    return hn::BitCast(Pixels(), hn::LoadU(hn::FixedTag<uint8_t, 32>(), row_ + 4 * first));
  }
  // The places of both pixels of four outputs, counted from base.
  [[nodiscard]] HWY_INLINE hn::Vec<Pixels> pairsAt(size_t i, uint32_t base) const {
    const hn::FixedTag<uint64_t, 4> wide;
    const hn::FixedTag<uint32_t, 4> narrow;
    const auto first = hn::PromoteTo(wide, hn::LoadU(narrow, filter_.first + i));
    const auto both = hn::Or(first, hn::ShiftLeft<32>(first));
    const auto start = hn::Set(wide, (uint64_t{base} << 32 | base) - (uint64_t{1} << 32));
    return hn::BitCast(Pixels(), hn::Sub(both, start));
  }
  // Samples of each two pixels beside each other.
  static HWY_INLINE hn::Vec<Words> words(hn::Vec<Pixels> pixels) {
    HWY_ALIGN static constexpr uint8_t kOrder[16] = {0, 1, 8, 9, 2, 3, 10, 11, 4, 5, 12, 13, 6, 7, 14, 15};
    const hn::FixedTag<uint8_t, 64> bytes;
    const auto wide = hn::PromoteTo(Words(), hn::BitCast(hn::FixedTag<uint8_t, 32>(), pixels));
    return hn::BitCast(Words(),
                       hn::TableLookupBytes(hn::BitCast(bytes, wide), hn::LoadDup128(bytes, kOrder)));
  }
#endif

 public:
  EnlargingAcross(const uint8_t *row, const RowFilter &filter) : row_(row), filter_(filter) {
    if (filter.outputs == 0 || filter.taps != 2) return;
    const uint32_t last = HWY_MAX(filter.first[0], filter.first[filter.outputs - 1]);
    end_ = size_t{last} + filter.taps;
  }

  // How many outputs were made, from output i on: four or none.
  HWY_INLINE size_t make(size_t i, int16_t *out) const {
#if HWY_MAX_BYTES >= 64
    if (i + 4 > filter_.outputs) return 0;
    const uint32_t base = filter_.first[i];
    // Where outputs run against the source the distance wraps, and is too far.
    if (filter_.first[i + 3] - base > 6 || size_t{base} + 8 > end_) return 0;
    const hn::FixedTag<int32_t, 16> sumsTag;
    const auto pixels =
        words(hn::TableLookupLanes(pixelsFrom(base), hn::IndicesFromVec(Pixels(), pairsAt(i, base))));
    const auto weights = hn::BitCast(Words(), hn::LoadU(sumsTag, filter_.words + 4 * i));
    const auto sums = hn::Add(pairSums(sumsTag, pixels, weights), hn::Set(sumsTag, 1 << (kFromBytes - 1)));
    const hn::FixedTag<int16_t, 16> result;
    hn::StoreU(hn::DemoteTo(result, hn::ShiftRight<kFromBytes>(sums)), result, out + 4 * i);
    return 4;
#else
    static_cast<void>(i), static_cast<void>(out);
    return 0;
#endif
  }

 private:
  const uint8_t *row_;
  RowFilter filter_;
  size_t end_ = 0;  // one past the last pixel that has a place in the filter
};

// From output i on, which is even.
template <class Out, class In>
void across(const In *row, const RowFilter &filter, size_t i, Out *out) {
  constexpr int kDrop =
      kWeightBits + (sizeof(In) == 2 ? kWordFraction : 0) - (sizeof(Out) == 2 ? kWordFraction : 0);
#if HWY_MAX_BYTES >= 32
  for (; i + 2 <= filter.outputs; i += 2)
    storeSums(Across<2>::template sumsAt<kDrop>(row, filter, i), out + 4 * i);
#endif
  for (; i < filter.outputs; ++i) storeSums(Across<1>::template sumsAt<kDrop>(row, filter, i), out + 4 * i);
}

void downBytes(const uint8_t *const *rows, const ColumnFilter &filter, size_t count, int16_t *out) {
  down(rows, filter, count, out);
}
void downWords(const int16_t *const *rows, const ColumnFilter &filter, size_t count, uint8_t *out) {
  down(rows, filter, count, out);
}
void acrossBytes(const uint8_t *row, const RowFilter &filter, int16_t *out) {
  const EnlargingAcross enlarging(row, filter);
  size_t i = 0;
  while (const size_t made = enlarging.make(i, out)) i += made;
  across(row, filter, i, out);
}
void acrossWords(const int16_t *row, const RowFilter &filter, uint8_t *out) { across(row, filter, 0, out); }
#endif

constinit const ResampleRows kRows{downBytes, downWords, acrossBytes, acrossWords};

const ResampleRows *targetRows() { return &kRows; }

}  // namespace
}  // namespace cg::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace cg {
HWY_EXPORT(targetRows);

namespace {

constinit const ResampleRows kPlainRows{downPlain<int16_t, uint8_t>, downPlain<uint8_t, int16_t>,
                                        acrossPlain<4, int16_t, uint8_t>, acrossPlain<4, uint8_t, int16_t>};

TargetTables<ResampleRows> everyTable() noexcept {
  TargetTables<ResampleRows> tables(HWY_TARGETS,
                                    [](size_t index) { return HWY_DISPATCH_TABLE(targetRows)[index](); });
  tables.add(&kPlainRows);
  return tables;
}

const TargetTables<ResampleRows> &tables() noexcept {
  static const TargetTables<ResampleRows> all = everyTable();
  return all;
}

}  // namespace

const ResampleRows &resampleRows() noexcept { return tables().best(); }

std::span<const ResampleRows *const> allResampleRows() noexcept { return tables().all(); }

std::vector<int32_t> spread(const PairWeights &weights) {
  const size_t outputs = weights.words.size() / weights.pairs;
  std::vector<int32_t> result((outputs + 1) / 2 * weights.pairs * 8);
  for (size_t output = 0; output < outputs; ++output) {
    for (size_t pair = 0; pair < weights.pairs; ++pair) {
      const size_t at = spreadIndex(output, pair, weights.pairs);
      std::fill_n(&result[at], 4, weights.words[output * weights.pairs + pair]);
    }
  }
  return result;
}

void acrossFewBytes(const uint8_t *row, const RowFilter &filter, size_t components, int16_t *out) noexcept {
  (components == 1 ? acrossPlain<1, int16_t, uint8_t> : acrossPlain<2, int16_t, uint8_t>)(row, filter, out);
}

void acrossFewWords(const int16_t *row, const RowFilter &filter, size_t components, uint8_t *out) noexcept {
  (components == 1 ? acrossPlain<1, uint8_t, int16_t> : acrossPlain<2, uint8_t, int16_t>)(row, filter, out);
}

}  // namespace cg
#endif
