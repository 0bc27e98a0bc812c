#include "graphics/resample_wide.h"

#include <algorithm>
#include <vector>

#include "graphics/source_rows.h"

namespace cg {
namespace {

// Every component of a pixel goes through the same operations in the same order, and rounding never turns
// an order about: colour stays within alpha here too.
class WideResampler {
 public:
  WideResampler(RowReader &source, const Resampling &plan)
      : plan_(plan),
        firstColumn_(plan.across.firstSample()),
        source_(source, firstColumn_, plan.across.endSample() - firstColumn_, plan.components),
        room_(source_.samples()),
        sums_(source_.samples()) {}

  void run(RowSink &sink) noexcept {
    for (size_t output = 0; output < plan_.down.outputs; ++output) {
      addRows(output);
      uint8_t *row = sink.rowFor(output);
      if (plan_.components == 4) {
        shorten<4>(row);
      } else {
        plan_.components == 2 ? shorten<2>(row) : shorten<1>(row);
      }
      if (plan_.boundByAlpha) boundByAlpha(row, plan_.across.outputs, plan_.components);
      sink.finish(output);
    }
  }

 private:
  // Neighbouring outputs share source rows, which are read again: keeping as many as these filters span could
  // take as much memory as the whole image.
  void addRows(size_t output) noexcept {
    std::fill(sums_.begin(), sums_.end(), 0.0f);
    const size_t first = plan_.down.first[output];
    for (size_t tap = 0; tap < plan_.down.taps; ++tap) {
      const float weight = plan_.down.weights[output * plan_.down.taps + tap];
      if (weight == 0) continue;
      const uint8_t *row = source_.row(first + tap, room_.data());
      for (size_t i = 0; i < sums_.size(); ++i) sums_[i] += weight * static_cast<float>(row[i]);
    }
  }

  template <size_t kComponents>
  void shorten(uint8_t *out) const noexcept {
    const float *weights = plan_.across.weights.data();
    for (size_t i = 0; i < plan_.across.outputs; ++i, out += kComponents) {
      const float *sample = sums_.data() + (plan_.across.first[i] - firstColumn_) * kComponents;
      float sums[kComponents] = {};
      for (size_t tap = 0; tap < plan_.across.taps; ++tap, ++weights, sample += kComponents)
        for (size_t c = 0; c < kComponents; ++c) sums[c] += *weights * sample[c];
      for (size_t c = 0; c < kComponents; ++c)
        out[c] = static_cast<uint8_t>(std::clamp(sums[c] + 0.5f, 0.0f, 255.0f));
    }
  }

  const Resampling &plan_;
  size_t firstColumn_;
  SourceRows source_;
  std::vector<uint8_t> room_;
  std::vector<float> sums_;
};

template <size_t kComponents>
void bound(uint8_t *row, size_t pixels) noexcept {
  for (size_t i = 0; i < pixels; ++i, row += kComponents)
    for (size_t c = 1; c < kComponents; ++c) row[c] = std::min(row[c], row[0]);
}

}  // namespace

void resampleWide(RowReader &source, const Resampling &plan, RowSink &sink) {
  WideResampler(source, plan).run(sink);
}

void boundByAlpha(uint8_t *row, size_t pixels, size_t components) noexcept {
  components == 4 ? bound<4>(row, pixels) : bound<2>(row, pixels);
}

}  // namespace cg
