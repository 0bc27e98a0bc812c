#include "graphics/resample.h"

#include <algorithm>
#include <vector>

#include "graphics/resample_rows.h"
#include "graphics/resample_wide.h"
#include "graphics/source_rows.h"

namespace cg {
namespace {

// Output rows in the order in which the source is read from the top.
class DownwardOrder {
 public:
  explicit DownwardOrder(const AxisFilter &down) noexcept
      : rows_(down.outputs), fromBottom_(down.first.front() > down.first.back()) {}
  [[nodiscard]] size_t operator[](size_t i) const noexcept { return fromBottom_ ? rows_ - 1 - i : i; }

 private:
  size_t rows_;
  bool fromBottom_;
};

// Both ways of resampling with weights in fixed point share how they find their weights and finish a row.
class FixedResampler {
 public:
  FixedResampler(RowReader &source, const Resampling &plan)
      : plan_(plan),
        firstColumn_(plan.across.firstSample()),
        source_(source, firstColumn_, plan.across.endSample() - firstColumn_, plan.components),
        firsts_(plan.across.first),
        acrossWords_(spread(makePairWeights(plan.across))),
        downPairs_(makePairWeights(plan.down)) {
    for (uint32_t &first : firsts_) first -= static_cast<uint32_t>(firstColumn_);
  }

 protected:
  [[nodiscard]] ColumnFilter downFilter(size_t output) const noexcept {
    return {&downPairs_.words[output * downPairs_.pairs], plan_.down.taps};
  }
  [[nodiscard]] RowFilter acrossFilter() const noexcept {
    return {firsts_.data(), acrossWords_.data(), plan_.across.outputs, plan_.across.taps};
  }
  template <class Out, class In>
  void across(const In *row, Out *out) const noexcept {
    if constexpr (sizeof(In) == 1) {
      if (plan_.components == 4) return resampleRows().acrossBytes(row, acrossFilter(), out);
      acrossFewBytes(row, acrossFilter(), plan_.components, out);
    } else {
      if (plan_.components == 4) return resampleRows().acrossWords(row, acrossFilter(), out);
      acrossFewWords(row, acrossFilter(), plan_.components, out);
    }
  }
  void finish(size_t output, uint8_t *row, RowSink &sink) const noexcept {
    if (plan_.boundByAlpha) boundByAlpha(row, plan_.across.outputs, plan_.components);
    sink.finish(output);
  }

  const Resampling &plan_;
  size_t firstColumn_;
  SourceRows source_;
  std::vector<uint32_t> firsts_;  // counted from the first column that is read
  std::vector<int32_t> acrossWords_;
  PairWeights downPairs_;
};

// Rows are added up before they are shortened: best where there are fewer of them afterwards.
class DownFirst : FixedResampler {
 public:
  DownFirst(RowReader &source, const Resampling &plan)
      : FixedResampler(source, plan),
        ring_(plan.down.taps, source_.samples()),
        rows_(plan.down.taps),
        taps_(plan.down.taps),
        sums_(source_.samples()) {}

  void run(RowSink &sink) noexcept {
    const DownwardOrder order(plan_.down);
    size_t next = 0;
    for (size_t i = 0; i < plan_.down.outputs; ++i) {
      const size_t output = order[i];
      const size_t first = plan_.down.first[output];
      for (next = std::max(next, first); next < first + taps_; ++next)
        rows_[next % taps_] = source_.row(next, ring_.slot(next));
      for (size_t tap = 0; tap < taps_; ++tap) taken_[tap] = rows_[(first + tap) % taps_];
      resampleRows().downBytes(taken_, downFilter(output), source_.samples(), sums_.data());
      uint8_t *row = sink.rowFor(output);
      across(sums_.data(), row);
      finish(output, row, sink);
    }
  }

 private:
  RowRing<uint8_t> ring_;
  std::vector<const uint8_t *> rows_;  // where row r is: at r % taps
  size_t taps_;
  std::vector<int16_t> sums_;
  const uint8_t *taken_[kMostFixedTaps];
};

// Rows are lengthened before they are added up: best where there are more of them afterwards.
class AcrossFirst : FixedResampler {
 public:
  AcrossFirst(RowReader &source, const Resampling &plan)
      : FixedResampler(source, plan),
        taps_(plan.down.taps),
        samples_(plan.across.outputs * plan.components),
        room_(source_.samples()),
        ring_(taps_, samples_) {}

  void run(RowSink &sink) noexcept {
    const DownwardOrder order(plan_.down);
    size_t next = 0;
    for (size_t i = 0; i < plan_.down.outputs; ++i) {
      const size_t output = order[i];
      const size_t first = plan_.down.first[output];
      for (next = std::max(next, first); next < first + taps_; ++next)
        across(source_.row(next, room_.data()), ring_.slot(next));
      for (size_t tap = 0; tap < taps_; ++tap) taken_[tap] = ring_.slot(first + tap);
      uint8_t *row = sink.rowFor(output);
      resampleRows().downWords(taken_, downFilter(output), samples_, row);
      finish(output, row, sink);
    }
  }

 private:
  size_t taps_, samples_;
  std::vector<uint8_t> room_;
  RowRing<int16_t> ring_;
  const int16_t *taken_[kMostFixedTaps];
};

}  // namespace

void resample(RowReader &source, const Resampling &plan, RowSink &sink) {
  if (plan.across.outputs == 0 || plan.down.outputs == 0) return;
  if (std::max(plan.across.taps, plan.down.taps) > kMostFixedTaps) {
    resampleWide(source, plan, sink);
  } else if (plan.down.reduces) {
    DownFirst(source, plan).run(sink);
  } else {
    AcrossFirst(source, plan).run(sink);
  }
}

}  // namespace cg
