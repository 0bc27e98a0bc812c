#include "graphics/axis_filter.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace cg {
namespace {

double triangle(double x) noexcept { return std::max(0.0, 1.0 - std::fabs(x)); }

double sinc(double x) noexcept {
  const double angle = std::numbers::pi * x;
  return angle == 0 ? 1.0 : std::sin(angle) / angle;
}

double lanczos3(double x) noexcept { return std::fabs(x) < 3 ? sinc(x) * sinc(x / 3) : 0.0; }

struct Shape {
  double radius;
  double (*at)(double) noexcept;
};

Shape shapeOf(FilterShape shape) noexcept {
  return shape == FilterShape::triangle ? Shape{1, triangle} : Shape{3, lanczos3};
}

// The source samples that an output reaches, before they are held within the source.
struct Window {
  double centre;
  int64_t begin, end;
};

class FilterMaker {
 public:
  FilterMaker(FilterShape shape, const AxisMap &map, size_t sourceLength) noexcept
      : shape_(shapeOf(shape)), map_(map), length_(static_cast<int64_t>(sourceLength)) {
    // Beyond the source's length widening changes nothing but the time it takes.
    stretch_ = std::clamp(1 / std::fabs(map.scale), 1.0, static_cast<double>(sourceLength));
  }

  [[nodiscard]] Window windowOf(int64_t output) const noexcept {
    const double length = static_cast<double>(length_);
    const double centre = std::clamp(map_.toSource(static_cast<double>(output) + 0.5), 0.0, length);
    const double reach = shape_.radius * stretch_ - kNone;
    return {centre, static_cast<int64_t>(std::ceil(centre - reach - 0.5)),
            static_cast<int64_t>(std::floor(centre + reach - 0.5)) + 1};
  }

  // What the widest of the outputs' windows takes.
  [[nodiscard]] size_t taps(int64_t firstOutput, size_t outputs) const noexcept {
    int64_t most = 1;
    for (size_t i = 0; i < outputs; ++i) {
      const Window window = windowOf(firstOutput + static_cast<int64_t>(i));
      most = std::max(most, window.end - window.begin);
    }
    return static_cast<size_t>(std::min(most, length_));
  }

  // Adds each sample of the window to the tap that it falls on, and makes the sum 1.
  void weigh(const Window &window, uint32_t first, size_t taps, float *weights) {
    sums_.assign(taps, 0.0);
    double total = 0;
    for (int64_t i = window.begin; i < window.end; ++i) {
      const double weight = shape_.at((static_cast<double>(i) + 0.5 - window.centre) / stretch_);
      sums_[static_cast<size_t>(std::clamp<int64_t>(i, 0, length_ - 1) - first)] += weight;
      total += weight;
    }
    for (size_t tap = 0; tap < taps; ++tap) weights[tap] = static_cast<float>(sums_[tap] / total);
  }

  [[nodiscard]] uint32_t firstTap(const Window &window, size_t taps) const noexcept {
    return static_cast<uint32_t>(std::clamp<int64_t>(window.begin, 0, length_ - static_cast<int64_t>(taps)));
  }

 private:
  // So near the end of the filter that the weight is none.
  static constexpr double kNone = 1e-6;

  Shape shape_;
  AxisMap map_;
  int64_t length_;
  double stretch_;
  std::vector<double> sums_;
};

}  // namespace

size_t AxisFilter::firstSample() const noexcept { return *std::min_element(first.begin(), first.end()); }

size_t AxisFilter::endSample() const noexcept { return *std::max_element(first.begin(), first.end()) + taps; }

AxisFilter makeAxisFilter(FilterShape shape, const AxisMap &map, size_t sourceLength, int64_t firstOutput,
                          size_t outputs) {
  FilterMaker maker(shape, map, sourceLength);
  AxisFilter filter{outputs,
                    maker.taps(firstOutput, outputs),
                    std::fabs(map.scale) < 1,
                    std::vector<uint32_t>(outputs),
                    {}};
  filter.weights.resize(outputs * filter.taps);
  for (size_t i = 0; i < outputs; ++i) {
    const Window window = maker.windowOf(firstOutput + static_cast<int64_t>(i));
    filter.first[i] = maker.firstTap(window, filter.taps);
    maker.weigh(window, filter.first[i], filter.taps, &filter.weights[i * filter.taps]);
  }
  return filter;
}

PairWeights makePairWeights(const AxisFilter &filter) {
  PairWeights result{(filter.taps + 1) / 2, {}};
  result.words.reserve(result.pairs * filter.outputs);
  for (size_t i = 0; i < filter.outputs; ++i) {
    // Rounding the running sum keeps the error of every stretch of weights below one step.
    const float *weights = &filter.weights[i * filter.taps];
    double sum = 0;
    long given = 0;
    const auto next = [&](size_t tap) -> uint32_t {
      if (tap >= filter.taps) return 0;
      sum += static_cast<double>(weights[tap]);
      const long upTo = tap + 1 == filter.taps ? kWeightOne : std::lround(sum * kWeightOne);
      return static_cast<uint32_t>(upTo - std::exchange(given, upTo)) & 0xFFFF;
    };
    for (size_t tap = 0; tap < filter.taps; tap += 2) {
      const uint32_t low = next(tap);
      result.words.push_back(static_cast<int32_t>(low | next(tap + 1) << 16));
    }
  }
  return result;
}

}  // namespace cg
