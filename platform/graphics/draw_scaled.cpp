// Drawing at another size, or off the grid of pixels, with rows staying rows.
#include <algorithm>
#include <cstring>

#include "graphics/draw.h"
#include "graphics/resample.h"
#include "graphics/route.h"
#include "graphics/source_rows.h"

namespace cg {
namespace {

AxisMap acrossOf(const Matrix &map) noexcept { return {map.a, map.tx}; }
AxisMap downOf(const Matrix &map) noexcept { return {map.d, map.ty}; }

class SurfaceSink final : public RowSink {
 public:
  SurfaceSink(const Surface &surface, const Route &route, const PixelRect &target)
      : target_(target), store_(surface, route, static_cast<size_t>(target.width())) {}

  uint8_t *rowFor(size_t i) noexcept override { return store_.rowAt(target_.left, rowOf(i)); }
  void finish(size_t i) noexcept override { store_.finish(target_.left, rowOf(i)); }

 private:
  [[nodiscard]] int64_t rowOf(size_t i) const noexcept { return target_.top + static_cast<int64_t>(i); }

  PixelRect target_;
  RowStore store_;
};

// The source sample that each output pixel takes unfiltered.
std::vector<uint32_t> nearestSamples(const AxisMap &map, size_t length, int64_t first, int64_t end) {
  const double last = static_cast<double>(length - 1);
  std::vector<uint32_t> samples;
  samples.reserve(static_cast<size_t>(end - first));
  for (int64_t i = first; i < end; ++i) {
    const double at = std::floor(map.toSource(static_cast<double>(i) + 0.5));
    samples.push_back(static_cast<uint32_t>(std::clamp(at, 0.0, last)));
  }
  return samples;
}

template <size_t kComponents>
void pickPixels(const uint8_t *row, const std::vector<uint32_t> &columns, uint8_t *out) noexcept {
  for (const uint32_t column : columns) {
    std::memcpy(out, row + size_t{column} * kComponents, kComponents);
    out += kComponents;
  }
}

void pick(const uint8_t *row, const std::vector<uint32_t> &columns, size_t components,
          uint8_t *out) noexcept {
  if (components == 4) return pickPixels<4>(row, columns, out);
  components == 2 ? pickPixels<2>(row, columns, out) : pickPixels<1>(row, columns, out);
}

PixelRect coveredBy(const Matrix &map, CGImageRef image) noexcept {
  const auto width = static_cast<double>(CGImageGetWidth(image));
  const auto height = static_cast<double>(CGImageGetHeight(image));
  const auto [left, right] = std::minmax({map.tx, map.tx + map.a * width});
  const auto [top, bottom] = std::minmax({map.ty, map.ty + map.d * height});
  return pixelsBetween(left, top, right, bottom);
}

void drawNearest(const Surface &surface, CGImageRef image, const Matrix &map, const PixelRect &target) {
  const Route route = routeFor(surface, image, false);
  const auto reader = openRows(surface, image, route.form);
  std::vector<uint32_t> columns =
      nearestSamples(acrossOf(map), CGImageGetWidth(image), target.left, target.right);
  const std::vector<uint32_t> rows =
      nearestSamples(downOf(map), CGImageGetHeight(image), target.top, target.bottom);
  const auto [least, greatest] = std::minmax_element(columns.begin(), columns.end());
  const size_t first = *least, components = bytesPerPixel(route.form);
  SourceRows source(*reader, first, *greatest - first + 1, components);
  for (uint32_t &column : columns) column -= static_cast<uint32_t>(first);
  std::vector<uint8_t> room(source.samples());
  SurfaceSink sink(surface, route, target);
  for (size_t i = 0; i < rows.size(); ++i) {
    pick(source.row(rows[i], room.data()), columns, components, sink.rowFor(i));
    sink.finish(i);
  }
}

void drawFiltered(const Surface &surface, CGImageRef image, const Matrix &map, const PixelRect &target,
                  FilterShape shape) {
  const Route route = routeFor(surface, image, true);
  const auto reader = openRows(surface, image, route.form);
  const Resampling plan{makeAxisFilter(shape, acrossOf(map), CGImageGetWidth(image), target.left,
                                       static_cast<size_t>(target.width())),
                        makeAxisFilter(shape, downOf(map), CGImageGetHeight(image), target.top,
                                       static_cast<size_t>(target.height())),
                        bytesPerPixel(route.form), shape == FilterShape::lanczos3 && !route.isFinal};
  SurfaceSink sink(surface, route, target);
  resample(*reader, plan, sink);
}

}  // namespace

void drawScaled(const Surface &surface, CGImageRef image, const Matrix &map, const PixelRect &clip,
                Sampling sampling) {
  const PixelRect target = intersection(coveredBy(map, image), clip);
  if (target.isEmpty()) return;
  if (sampling == Sampling::nearest) return drawNearest(surface, image, map, target);
  drawFiltered(surface, image, map, target,
               sampling == Sampling::sharp ? FilterShape::lanczos3 : FilterShape::triangle);
}

}  // namespace cg
