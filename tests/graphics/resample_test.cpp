#include "graphics/resample.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "buffer_reader.h"

namespace cg {
namespace {

using test::BufferReader;
using test::Bytes;

struct Shape {
  size_t width, height, components;
  [[nodiscard]] size_t bytes() const { return width * height * components; }
};

class BufferSink final : public RowSink {
 public:
  explicit BufferSink(const Shape &shape)
      : bytes(shape.bytes()), rowBytes_(shape.width * shape.components), finished(shape.height) {}
  uint8_t *rowFor(size_t i) noexcept override { return bytes.data() + i * rowBytes_; }
  void finish(size_t i) noexcept override { ++finished[i]; }

  Bytes bytes;

 private:
  size_t rowBytes_;

 public:
  std::vector<int> finished;
};

struct Axes {
  AxisMap across, down;
};

// The whole of one shape onto the whole of another.
Axes between(const Shape &from, const Shape &to) {
  return {{static_cast<double>(to.width) / static_cast<double>(from.width), 0},
          {static_cast<double>(to.height) / static_cast<double>(from.height), 0}};
}

Bytes resampled(const Bytes &bytes, const Shape &from, const Shape &to, const Axes &axes, FilterShape filter,
                bool inPlace = true) {
  BufferReader reader(bytes, from.width, from.components, inPlace);
  BufferSink sink(to);
  const Resampling plan{makeAxisFilter(filter, axes.across, from.width, 0, to.width),
                        makeAxisFilter(filter, axes.down, from.height, 0, to.height), from.components,
                        filter == FilterShape::lanczos3 && from.components > 1};
  resample(reader, plan, sink);
  EXPECT_EQ(sink.finished, std::vector<int>(to.height, 1));
  return sink.bytes;
}

// The slow and plain model: every source sample is asked for its weight at every output.
double weightAt(FilterShape filter, double distance) {
  const double x = std::fabs(distance), pi = std::numbers::pi;
  if (filter == FilterShape::triangle) return x < 1 ? 1 - x : 0;
  if (x >= 3) return 0;
  return x == 0 ? 1 : 3 * std::sin(pi * x) * std::sin(pi * x / 3) / (pi * pi * x * x);
}

std::vector<double> modelAxis(FilterShape filter, const AxisMap &map, size_t length, size_t output) {
  const double stretch = std::max(1.0, 1 / std::fabs(map.scale));
  const double centre = (static_cast<double>(output) + 0.5 - map.offset) / map.scale;
  const int margin = static_cast<int>(std::ceil(3 * stretch)) + 1, last = static_cast<int>(length) - 1;
  std::vector<double> weights(length);
  double total = 0;
  for (int i = -margin; i <= last + margin; ++i) {
    const double weight = weightAt(filter, (i + 0.5 - centre) / stretch);
    weights[static_cast<size_t>(std::clamp(i, 0, last))] += weight;
    total += weight;
  }
  for (double &weight : weights) weight /= total;
  return weights;
}

std::vector<double> model(const Bytes &bytes, const Shape &from, const Shape &to, const Axes &axes,
                          FilterShape filter) {
  std::vector<double> narrow(to.width * from.height * from.components), result(to.bytes());
  const size_t n = from.components;
  for (size_t x = 0; x < to.width; ++x) {
    const auto weights = modelAxis(filter, axes.across, from.width, x);
    for (size_t y = 0; y < from.height; ++y)
      for (size_t i = 0; i < from.width; ++i)
        for (size_t c = 0; c < n; ++c)
          narrow[(y * to.width + x) * n + c] += weights[i] * bytes[(y * from.width + i) * n + c];
  }
  for (size_t y = 0; y < to.height; ++y) {
    const auto weights = modelAxis(filter, axes.down, from.height, y);
    for (size_t i = 0; i < from.height; ++i)
      for (size_t at = 0; at < to.width * n; ++at)
        result[y * to.width * n + at] += weights[i] * narrow[i * to.width * n + at];
  }
  if (filter == FilterShape::lanczos3)
    for (size_t at = 0; at < result.size(); ++at)
      result[at] = std::clamp(result[at], 0.0, n > 1 && at % n ? result[at - at % n] : 255.0);
  return result;
}

void expectNear(const Bytes &got, const std::vector<double> &expected, double tolerance) {
  ASSERT_EQ(got.size(), expected.size());
  for (size_t i = 0; i < got.size(); ++i) ASSERT_NEAR(got[i], expected[i], tolerance) << "byte " << i;
}

void expectColourWithinAlpha(const Bytes &bytes, size_t components) {
  for (size_t i = 0; i < bytes.size(); ++i) ASSERT_LE(bytes[i], bytes[i - i % components]) << "byte " << i;
}

constexpr Shape kSources[] = {{1, 1, 4}, {2, 3, 4}, {17, 11, 4}, {40, 33, 4}, {23, 19, 1}, {21, 18, 2}};
constexpr size_t kSides[] = {1, 2, 5, 9, 16, 31, 67};

TEST(Resample, LiesWithinOneStepOfTheModel) {
  std::mt19937 random(3);
  for (const Shape &from : kSources) {
    const Bytes bytes = test::randomPixels(random, from.width * from.height, from.components);
    for (FilterShape filter : {FilterShape::triangle, FilterShape::lanczos3}) {
      for (size_t side : kSides) {
        const Shape to{side, kSides[random() % std::size(kSides)], from.components};
        const Axes axes = between(from, to);
        expectNear(resampled(bytes, from, to, axes, filter), model(bytes, from, to, axes, filter), 0.6);
      }
    }
  }
}

TEST(Resample, PartsAndFlippedAxesLieWithinOneStepOfTheModel) {
  std::mt19937 random(4);
  const Shape from{31, 27, 4}, to{20, 22, 4};
  const Bytes bytes = test::randomPixels(random, from.width * from.height, 4);
  for (const Axes &axes :
       {Axes{{-0.66, 20.4}, {2.25, -7.5}}, Axes{{1, 0.25}, {-0.83, 22.3}}, Axes{{3, -20.5}, {-3, 75}}})
    expectNear(resampled(bytes, from, to, axes, FilterShape::triangle),
               model(bytes, from, to, axes, FilterShape::triangle), 0.6);
}

TEST(Resample, VeryWideFiltersLieWithinOneStepOfTheModel) {
  std::mt19937 random(5);
  for (const Shape &from : {Shape{700, 5, 4}, Shape{9, 640, 4}, Shape{800, 300, 1}, Shape{500, 400, 2}}) {
    const Bytes bytes = test::randomPixels(random, from.width * from.height, from.components);
    for (FilterShape filter : {FilterShape::triangle, FilterShape::lanczos3}) {
      const Shape to{3, 2, from.components};
      const Axes axes = between(from, to);
      expectNear(resampled(bytes, from, to, axes, filter), model(bytes, from, to, axes, filter), 0.6);
    }
  }
}

TEST(Resample, RowsReadAndRowsInPlaceGiveTheSame) {
  std::mt19937 random(6);
  const Shape from{29, 31, 4};
  const Bytes bytes = test::randomPixels(random, from.width * from.height, 4);
  for (const Shape &to : {Shape{9, 10, 4}, Shape{60, 70, 4}, Shape{7, 64, 4}, Shape{66, 5, 4}}) {
    for (const Axes &axes : {between(from, to), Axes{{-0.3, 9}, {-0.4, 12}}, Axes{{2, 0}, {-2, 62}}})
      EXPECT_EQ(resampled(bytes, from, to, axes, FilterShape::triangle, true),
                resampled(bytes, from, to, axes, FilterShape::triangle, false));
  }
}

TEST(Resample, AnEvenAreaStaysAsItIs) {
  const Shape from{130, 150, 1};
  for (int value = 0; value < 256; value += 5) {
    const Bytes bytes(from.bytes(), static_cast<uint8_t>(value));
    for (const Shape &to : {Shape{13, 11, 1}, Shape{1, 1, 1}, Shape{170, 201, 1}, Shape{65, 75, 1}}) {
      for (FilterShape filter : {FilterShape::triangle, FilterShape::lanczos3})
        ASSERT_EQ(resampled(bytes, from, to, between(from, to), filter),
                  Bytes(to.bytes(), static_cast<uint8_t>(value)));
    }
  }
}

TEST(Resample, ColourStaysWithinAlpha) {
  std::mt19937 random(7);
  for (const Shape &from : {Shape{50, 60, 4}, Shape{47, 400, 2}, Shape{600, 20, 4}}) {
    const Bytes bytes = test::randomPixels(random, from.width * from.height, from.components);
    for (size_t side : kSides) {
      for (FilterShape filter : {FilterShape::triangle, FilterShape::lanczos3}) {
        const Shape to{side, kSides[random() % std::size(kSides)], from.components};
        expectColourWithinAlpha(resampled(bytes, from, to, between(from, to), filter), from.components);
      }
    }
  }
}

}  // namespace
}  // namespace cg
