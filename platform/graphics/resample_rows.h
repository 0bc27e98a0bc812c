// The inner loops of resampling with weights in fixed point. Between the two passes samples are 16-bit words
// with kWordFraction bits after the point: room for the overshoot of filters with negative lobes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "graphics/axis_filter.h"

namespace cg {

inline constexpr int kWordFraction = 6;

// Weights along a row. Outputs come in twos, each word four times, as a multiplication of two whole pixels
// takes them: spreadIndex says where. An output that is alone at the end has the place of two.
struct RowFilter {
  const uint32_t *first;  // counted from the start of the source row that is handed over
  const int32_t *words;
  size_t outputs, taps;

  [[nodiscard]] size_t pairs() const noexcept { return (taps + 1) / 2; }
};
constexpr size_t spreadIndex(size_t output, size_t pair, size_t pairs) noexcept {
  return (output / 2 * pairs + pair) * 8 + output % 2 * 4;
}
std::vector<int32_t> spread(const PairWeights &weights);

// One sum of rows: taps rows, and the words of a single output.
struct ColumnFilter {
  const int32_t *words;
  size_t taps;
};

// Each writes all of its output row and reads no byte beyond the samples that have a place in the filter.
struct ResampleRows {
  // count samples of each row, weighed and added.
  void (*downBytes)(const uint8_t *const *rows, const ColumnFilter &filter, size_t count, int16_t *out);
  void (*downWords)(const int16_t *const *rows, const ColumnFilter &filter, size_t count, uint8_t *out);
  // Pixels of four samples.
  void (*acrossBytes)(const uint8_t *row, const RowFilter &filter, int16_t *out);
  void (*acrossWords)(const int16_t *row, const RowFilter &filter, uint8_t *out);
};

// The best for this processor, and all that it can run, for tests; plain loops are always the last.
const ResampleRows &resampleRows() noexcept;
std::span<const ResampleRows *const> allResampleRows() noexcept;

// Pixels of one or two samples.
void acrossFewBytes(const uint8_t *row, const RowFilter &filter, size_t components, int16_t *out) noexcept;
void acrossFewWords(const int16_t *row, const RowFilter &filter, size_t components, uint8_t *out) noexcept;

}  // namespace cg
