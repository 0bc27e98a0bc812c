// Resampling loops in plain code: the measure of the vector forms, and what runs where there are none.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "graphics/axis_filter.h"
#include "graphics/resample_rows.h"

namespace cg {

// The weight of a tap among the words of its output.
inline int32_t weightOf(const int32_t *words, size_t tap) noexcept {
  const auto word = static_cast<uint32_t>(words[tap / 2]);
  return static_cast<int16_t>(tap % 2 == 0 ? word & 0xFFFF : word >> 16);
}

// What a sum of weighed samples is stored as: bytes come in whole, words with their fraction.
template <class Out, class In>
Out rounded(int32_t sum) noexcept {
  constexpr int inFraction = sizeof(In) == 2 ? kWordFraction : 0;
  constexpr int outFraction = sizeof(Out) == 2 ? kWordFraction : 0;
  constexpr int drop = kWeightBits + inFraction - outFraction;
  const int32_t value = (sum + (1 << (drop - 1))) >> drop;
  constexpr int32_t least = sizeof(Out) == 2 ? -32768 : 0, greatest = sizeof(Out) == 2 ? 32767 : 255;
  return static_cast<Out>(std::clamp(value, least, greatest));
}

template <class Out, class In>
void downPlainFrom(size_t begin, const In *const *rows, const ColumnFilter &filter, size_t count, Out *out) {
  for (size_t i = begin; i < count; ++i) {
    int32_t sum = 0;
    for (size_t tap = 0; tap < filter.taps; ++tap) sum += weightOf(filter.words, tap) * rows[tap][i];
    out[i] = rounded<Out, In>(sum);
  }
}

template <class Out, class In>
void downPlain(const In *const *rows, const ColumnFilter &filter, size_t count, Out *out) {
  downPlainFrom(0, rows, filter, count, out);
}

template <size_t kComponents, class Out, class In>
void acrossPlain(const In *row, const RowFilter &filter, Out *out) {
  const size_t pairs = (filter.taps + 1) / 2;
  for (size_t i = 0; i < filter.outputs; ++i, out += kComponents) {
    const In *samples = row + size_t{filter.first[i]} * kComponents;
    int32_t sums[kComponents] = {};
    for (size_t tap = 0; tap < filter.taps; ++tap, samples += kComponents) {
      const int32_t weight = weightOf(filter.words + i * pairs, tap);
      for (size_t c = 0; c < kComponents; ++c) sums[c] += weight * samples[c];
    }
    for (size_t c = 0; c < kComponents; ++c) out[c] = rounded<Out, In>(sums[c]);
  }
}

}  // namespace cg
