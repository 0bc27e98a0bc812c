// Drawing through any map: each surface pixel looks up where it came from.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>
#include <vector>

#include "graphics/draw.h"
#include "graphics/resample.h"
#include "graphics/route.h"

namespace cg {
namespace {

// The pixels to look up in: a part of the image in a working form, made smaller where the map makes it
// smaller.
struct Texture {
  std::vector<uint8_t> bytes;
  size_t width = 0, height = 0;
  Matrix fromImage;  // from image space to the texture's
};

// The largest image that is loaded fits. Beyond it, a small file of single bits could ask for all of memory.
constexpr double kMostTextureBytes = 1073741824.0;

struct Bounds {
  double left, top, right, bottom;
};

// What a map makes of a rectangle, from corner to corner.
Bounds boundsOf(const Matrix &map, const Bounds &r) noexcept {
  const auto xs = {map.x(r.left, r.top), map.x(r.right, r.top), map.x(r.left, r.bottom),
                   map.x(r.right, r.bottom)};
  const auto ys = {map.y(r.left, r.top), map.y(r.right, r.top), map.y(r.left, r.bottom),
                   map.y(r.right, r.bottom)};
  return {std::min(xs), std::min(ys), std::max(xs), std::max(ys)};
}

Bounds boundsOf(CGImageRef image) noexcept {
  return {0, 0, static_cast<double>(CGImageGetWidth(image)), static_cast<double>(CGImageGetHeight(image))};
}

// The part of one axis of the image that is looked at, and how many samples the texture has there.
struct AxisPart {
  double begin, scale;
  size_t samples;
};

AxisPart axisPart(double begin, double end, double length, double scale) noexcept {
  const double first = std::clamp(std::floor(begin) - 1, 0.0, length - 1);
  const double last = std::clamp(std::ceil(end) + 1, first + 1, length);
  const double samples = std::max(std::ceil((last - first) * std::min(scale, 1.0)), 1.0);
  return {first, samples / (last - first), static_cast<size_t>(samples)};
}

class TextureSink final : public RowSink {
 public:
  TextureSink(Texture &texture, size_t rowBytes) noexcept : texture_(texture), rowBytes_(rowBytes) {}
  uint8_t *rowFor(size_t i) noexcept override { return texture_.bytes.data() + i * rowBytes_; }
  void finish(size_t) noexcept override {}

 private:
  Texture &texture_;
  size_t rowBytes_;
};

Texture makeTexture(CGImageRef image, RowReader &reader, size_t components, const Matrix &map,
                    const Bounds &seen, bool reduces) {
  const Bounds whole = boundsOf(image);
  const AxisPart x = axisPart(seen.left, seen.right, whole.right, reduces ? std::hypot(map.a, map.b) : 1);
  const AxisPart y = axisPart(seen.top, seen.bottom, whole.bottom, reduces ? std::hypot(map.c, map.d) : 1);
  Texture texture;
  if (static_cast<double>(x.samples) * static_cast<double>(y.samples * components) > kMostTextureBytes)
    throw std::bad_alloc();
  texture.width = x.samples;
  texture.height = y.samples;
  texture.bytes.resize(x.samples * y.samples * components);
  texture.fromImage = {x.scale, 0, 0, y.scale, -x.begin * x.scale, -y.begin * y.scale};
  TextureSink sink(texture, x.samples * components);
  if (x.scale == 1 && y.scale == 1) {
    for (size_t i = 0; i < y.samples; ++i)
      reader.read(static_cast<size_t>(y.begin) + i, static_cast<size_t>(x.begin), x.samples, sink.rowFor(i));
    return texture;
  }
  const auto filter = [](const AxisPart &part, double length) {
    return makeAxisFilter(FilterShape::triangle, {part.scale, -part.begin * part.scale},
                          static_cast<size_t>(length), 0, part.samples);
  };
  resample(reader, {filter(x, whole.right), filter(y, whole.bottom), components, false}, sink);
  return texture;
}

// The pixels of a row whose coordinate start + pixel * step lies within [0, length), as far as the span goes.
struct Span {
  int64_t begin, end;
};

Span within(Span span, double start, double step, double length) noexcept {
  const double toBegin = -start / step, toEnd = (length - start) / step;
  if (!std::isfinite(toBegin) || !std::isfinite(toEnd)) {
    return start >= 0 && start < length ? span : Span{0, 0};
  }
  // firstCentreFrom counts from pixel edges; here the centre is the pixel's number.
  return {std::max(span.begin, firstCentreFrom(std::min(toBegin, toEnd) + 0.5)),
          std::min(span.end, firstCentreFrom(std::max(toBegin, toEnd) + 0.5))};
}

// A walk along a row of the surface, in texture space.
struct Walk {
  double u, v, du, dv;
};

template <size_t kComponents>
void lookUpNearest(const Texture &texture, Walk at, int64_t begin, int64_t end, uint8_t *out) noexcept {
  const double right = static_cast<double>(texture.width - 1),
               bottom = static_cast<double>(texture.height - 1);
  for (int64_t i = begin; i < end; ++i, out += kComponents) {
    const double u = std::clamp(at.u + static_cast<double>(i) * at.du, 0.0, right);
    const double v = std::clamp(at.v + static_cast<double>(i) * at.dv, 0.0, bottom);
    const size_t pixel = static_cast<size_t>(v) * texture.width + static_cast<size_t>(u);
    std::memcpy(out, texture.bytes.data() + pixel * kComponents, kComponents);
  }
}

// Where between two samples a coordinate lies, in steps of 1/256, held within the texture.
struct Between {
  size_t low, high;
  uint32_t lowWeight, highWeight;

  Between(double coordinate, size_t samples) noexcept {
    const double centred = std::clamp(coordinate - 0.5, 0.0, static_cast<double>(samples - 1));
    low = static_cast<size_t>(centred);
    high = std::min(low + 1, samples - 1);
    highWeight = (static_cast<uint32_t>((centred - static_cast<double>(low)) * 512) + 1) / 2;
    lowWeight = 256 - highWeight;
  }
};

template <size_t kComponents>
void lookUpBetween(const Texture &texture, Walk at, int64_t begin, int64_t end, uint8_t *out) noexcept {
  for (int64_t i = begin; i < end; ++i, out += kComponents) {
    const Between x(at.u + static_cast<double>(i) * at.du, texture.width);
    const Between y(at.v + static_cast<double>(i) * at.dv, texture.height);
    const uint8_t *upper = texture.bytes.data() + y.low * texture.width * kComponents;
    const uint8_t *lower = texture.bytes.data() + y.high * texture.width * kComponents;
    for (size_t c = 0; c < kComponents; ++c) {
      const uint32_t above =
          upper[x.low * kComponents + c] * x.lowWeight + upper[x.high * kComponents + c] * x.highWeight;
      const uint32_t below =
          lower[x.low * kComponents + c] * x.lowWeight + lower[x.high * kComponents + c] * x.highWeight;
      out[c] = static_cast<uint8_t>((above * y.lowWeight + below * y.highWeight + (1 << 15)) >> 16);
    }
  }
}

using LookUp = void (*)(const Texture &, Walk, int64_t begin, int64_t end, uint8_t *out) noexcept;

LookUp lookUpFor(size_t components, bool isNearest) noexcept {
  if (components == 4) return isNearest ? lookUpNearest<4> : lookUpBetween<4>;
  if (components == 2) return isNearest ? lookUpNearest<2> : lookUpBetween<2>;
  return isNearest ? lookUpNearest<1> : lookUpBetween<1>;
}

}  // namespace

void drawMapped(const Surface &surface, CGImageRef image, const Matrix &map, const PixelRect &clip,
                Sampling sampling) {
  const auto toImage = inverse(map);
  if (!toImage) return;
  const Bounds whole = boundsOf(image), box = boundsOf(map, whole);
  const PixelRect target = intersection(pixelsBetween(box.left, box.top, box.right, box.bottom), clip);
  if (target.isEmpty()) return;
  const bool isNearest = sampling == Sampling::nearest;
  const Route route = routeFor(surface, image, !isNearest);
  const auto reader = openRows(surface, image, route.form);
  const size_t components = bytesPerPixel(route.form);
  const Bounds seen =
      boundsOf(*toImage, {static_cast<double>(target.left), static_cast<double>(target.top),
                          static_cast<double>(target.right), static_cast<double>(target.bottom)});
  const Texture texture = makeTexture(image, *reader, components, map, seen, !isNearest);
  const Matrix toTexture = then(*toImage, texture.fromImage);
  const LookUp lookUp = lookUpFor(components, isNearest);
  const ComposeRow compose = composeRowFor(surface.layout, route.form);
  std::vector<uint8_t> row(static_cast<size_t>(target.width()) * components);
  for (int64_t y = target.top; y < target.bottom; ++y) {
    const double cx = 0.5, cy = static_cast<double>(y) + 0.5;
    Span span{target.left, target.right};
    span = within(span, toImage->x(cx, cy), toImage->a, whole.right);
    span = within(span, toImage->y(cx, cy), toImage->b, whole.bottom);
    if (span.begin >= span.end) continue;
    lookUp(texture, {toTexture.x(cx, cy), toTexture.y(cx, cy), toTexture.a, toTexture.b}, span.begin,
           span.end, row.data());
    compose(row.data(), surface.at(span.begin, y), static_cast<size_t>(span.end - span.begin));
  }
}

}  // namespace cg
