// How the samples along one axis of a resampled image are made of those of the source.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace cg {

enum class FilterShape : uint8_t {
  triangle,  // bilinear when enlarging; when reducing it widens, so that every source sample takes part
  lanczos3,  // sharper, with negative lobes; widens likewise
};

// Output coordinates of an axis: scale * source coordinate + offset. The scale is not 0, may be negative.
struct AxisMap {
  double scale, offset;

  [[nodiscard]] double toSource(double output) const noexcept { return (output - offset) / scale; }
};

// Every output takes the same number of samples, all within the source; beyond its edges the first and the
// last sample repeat.
struct AxisFilter {
  size_t outputs = 0, taps = 0;
  bool reduces = false;         // whether outputs lie wider apart than samples
  std::vector<uint32_t> first;  // for each output, the sample that its weights begin at
  std::vector<float> weights;   // taps for each output, with the sum 1

  [[nodiscard]] size_t firstSample() const noexcept;  // of all outputs
  [[nodiscard]] size_t endSample() const noexcept;    // one past the last
};

// outputs samples from firstOutput on. Output i has its centre at i + 0.5, as source samples have.
AxisFilter makeAxisFilter(FilterShape shape, const AxisMap &map, size_t sourceLength, int64_t firstOutput,
                          size_t outputs);

// The weights in whole steps of 1 / kWeightOne. Those of an output have exactly the sum kWeightOne, so that
// an even area stays as it is; none is negative that was not.
inline constexpr int kWeightBits = 14;
inline constexpr int kWeightOne = 1 << kWeightBits;
// With more taps than this the steps are too coarse.
inline constexpr size_t kMostFixedTaps = 128;

// Pairs of weights as 32-bit words, the first in the low half: what one multiplication of pairs takes. An odd
// tap at the end is paired with 0.
struct PairWeights {
  size_t pairs = 0;            // for each output
  std::vector<int32_t> words;  // pairs for each output
};
PairWeights makePairWeights(const AxisFilter &filter);

}  // namespace cg
