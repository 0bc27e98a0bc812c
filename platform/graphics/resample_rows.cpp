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

using Block8 = hn::Full128<uint8_t>;
using Block16 = hn::Full128<int16_t>;
using Block32 = hn::Full128<int32_t>;
using PixelSums = hn::Vec<Block32>;

// Two neighbouring pixels with their samples interleaved, as words; or one, with zeros between.
HWY_INLINE hn::Vec<Block16> twoPixels(const uint8_t *at) {
  const hn::Rebind<uint8_t, Block16> half;
  const auto both = hn::LoadU(half, at);
  const auto words = hn::BitCast(Block16(), hn::PromoteTo(Block16(), both));
  return hn::InterleaveLower(Block16(), words, hn::ShiftRightBytes<8>(Block16(), words));
}
HWY_INLINE hn::Vec<Block16> twoPixels(const int16_t *at) {
  const auto words = hn::LoadU(Block16(), at);
  return hn::InterleaveLower(Block16(), words, hn::ShiftRightBytes<8>(Block16(), words));
}
HWY_INLINE hn::Vec<Block16> onePixel(const uint8_t *at) {
  int32_t pixel;
  std::memcpy(&pixel, at, sizeof pixel);
  const auto bytes = hn::BitCast(Block8(), hn::Set(Block32(), pixel));
  const auto words = hn::BitCast(Block16(), hn::InterleaveLower(Block8(), bytes, hn::Zero(Block8())));
  return hn::InterleaveLower(Block16(), words, hn::Zero(Block16()));
}
HWY_INLINE hn::Vec<Block16> onePixel(const int16_t *at) {
  int64_t pixel;
  std::memcpy(&pixel, at, sizeof pixel);
  const auto words = hn::BitCast(Block16(), hn::Set(hn::Full128<int64_t>(), pixel));
  return hn::InterleaveLower(Block16(), words, hn::Zero(Block16()));
}

HWY_INLINE PixelSums weighed(hn::Vec<Block16> pixels, int32_t weights) {
  return pairSums(Block32(), pixels, hn::BitCast(Block16(), hn::Set(Block32(), weights)));
}

// The sums of one output pixel.
template <int kDrop, class In>
HWY_INLINE PixelSums acrossAt(const In *row, const RowFilter &filter, size_t pairs, size_t output) {
  const In *samples = row + size_t{filter.first[output]} * 4;
  const int32_t *words = filter.words + output * pairs;
  PixelSums sums = hn::Set(Block32(), 1 << (kDrop - 1));
  size_t tap = 0;
  for (; tap + 2 <= filter.taps; tap += 2, samples += 8)
    sums = hn::Add(sums, weighed(twoPixels(samples), *words++));
  if (tap < filter.taps) sums = hn::Add(sums, weighed(onePixel(samples), *words));
  return sums;
}

HWY_INLINE void storePixels(hn::Vec<Block16> pixels, size_t count, int16_t *out) {
  if (count == 2) return hn::StoreU(pixels, Block16(), out);
  hn::StoreU(hn::LowerHalf(pixels), hn::Half<Block16>(), out);
}
HWY_INLINE void storePixels(hn::Vec<Block16> pixels, size_t count, uint8_t *out) {
  const hn::Rebind<uint8_t, Block16> half;
  const auto bytes = hn::DemoteTo(half, pixels);
  if (count == 2) return hn::StoreU(bytes, half, out);
  hn::StoreU(hn::LowerHalf(bytes), hn::Half<decltype(half)>(), out);
}

template <class Out, class In>
void across(const In *row, const RowFilter &filter, Out *out) {
  constexpr int kDrop =
      kWeightBits + (sizeof(In) == 2 ? kWordFraction : 0) - (sizeof(Out) == 2 ? kWordFraction : 0);
  const size_t pairs = (filter.taps + 1) / 2;
  size_t i = 0;
  for (; i + 2 <= filter.outputs; i += 2) {
    const PixelSums a = acrossAt<kDrop>(row, filter, pairs, i),
                    b = acrossAt<kDrop>(row, filter, pairs, i + 1);
    storePixels(packed<kDrop>(Block16(), a, b), 2, out + 4 * i);
  }
  if (i == filter.outputs) return;
  const PixelSums last = acrossAt<kDrop>(row, filter, pairs, i);
  storePixels(packed<kDrop>(Block16(), last, last), 1, out + 4 * i);
}

void downBytes(const uint8_t *const *rows, const ColumnFilter &filter, size_t count, int16_t *out) {
  down(rows, filter, count, out);
}
void downWords(const int16_t *const *rows, const ColumnFilter &filter, size_t count, uint8_t *out) {
  down(rows, filter, count, out);
}
void acrossBytes(const uint8_t *row, const RowFilter &filter, int16_t *out) { across(row, filter, out); }
void acrossWords(const int16_t *row, const RowFilter &filter, uint8_t *out) { across(row, filter, out); }
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

void acrossFewBytes(const uint8_t *row, const RowFilter &filter, size_t components, int16_t *out) noexcept {
  (components == 1 ? acrossPlain<1, int16_t, uint8_t> : acrossPlain<2, int16_t, uint8_t>)(row, filter, out);
}

void acrossFewWords(const int16_t *row, const RowFilter &filter, size_t components, uint8_t *out) noexcept {
  (components == 1 ? acrossPlain<1, uint8_t, int16_t> : acrossPlain<2, uint8_t, int16_t>)(row, filter, out);
}

}  // namespace cg
#endif
