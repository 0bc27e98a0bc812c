// Resampling loops in plain code: the measure of the vector forms, and what runs where there are none.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "graphics/axis_filter.h"
#include "graphics/resample_rows.h"

namespace cg {

// One of the two weights in a word.
inline int32_t weightIn(int32_t word, size_t tap) noexcept {
  const auto bits = static_cast<uint32_t>(word);
  return static_cast<int16_t>(tap % 2 == 0 ? bits & 0xFFFF : bits >> 16);
}

// The weight of a tap among the words of its output.
inline int32_t weightOf(const int32_t *words, size_t tap) noexcept { return weightIn(words[tap / 2], tap); }

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
  const size_t pairs = filter.pairs();
  for (size_t i = 0; i < filter.outputs; ++i, out += kComponents) {
    const In *samples = row + size_t{filter.first[i]} * kComponents;
    int32_t sums[kComponents] = {};
    for (size_t tap = 0; tap < filter.taps; ++tap, samples += kComponents) {
      const int32_t weight = weightIn(filter.words[spreadIndex(i, tap / 2, pairs)], tap);
      for (size_t c = 0; c < kComponents; ++c) sums[c] += weight * samples[c];
    }
    for (size_t c = 0; c < kComponents; ++c) out[c] = rounded<Out, In>(sums[c]);
  }
}

}  // namespace cg
