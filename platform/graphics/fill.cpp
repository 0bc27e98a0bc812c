// Rectangles: clipping to them, filling and clearing them.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "foundation/guard.h"
#include "graphics/alpha_math.h"
#include "graphics/context.h"

namespace {

// The pixels whose centres lie in the bounds of the rectangle after the matrix, cut to the clip.
cg::PixelRect pixelsOf(CGContextRef context, CGRect rect) {
  const CGRect r = CGRectStandardize(rect);
  const cg::Matrix &m = context->state().matrix;
  const double left = r.origin.x, bottom = r.origin.y;
  const double right = left + static_cast<double>(r.size.width),
               top = bottom + static_cast<double>(r.size.height);
  const double xs[] = {m.x(left, bottom), m.x(right, bottom), m.x(left, top), m.x(right, top)};
  const double ys[] = {m.y(left, bottom), m.y(right, bottom), m.y(left, top), m.y(right, top)};
  for (double v : xs)
    if (std::isnan(v)) return {};
  for (double v : ys)
    if (std::isnan(v)) return {};
  const auto [leastX, greatestX] = std::minmax_element(std::begin(xs), std::end(xs));
  const auto [leastY, greatestY] = std::minmax_element(std::begin(ys), std::end(ys));
  const auto height = static_cast<double>(context->surface.height);
  return intersection(cg::pixelsBetween(*leastX, height - *greatestY, *greatestX, height - *leastY),
                      context->state().clip);
}

uint8_t byteOf(float component) {
  // Written so that NaN is 0.
  return component > 0 ? static_cast<uint8_t>(std::lround(std::min(component, 1.0f) * 255.0f)) : uint8_t{0};
}

// One pixel of the fill colour, in the form that composes onto the surface.
std::vector<uint8_t> fillRow(const cg::FillColor &fill, cg::RowForm form, size_t pixels) {
  const uint8_t a = byteOf(fill.a), r = byteOf(fill.r), g = byteOf(fill.g), b = byteOf(fill.b);
  std::vector<uint8_t> pixel;
  if (form == cg::RowForm::grayAlphaPremultiplied) {
    const auto gray = static_cast<uint8_t>((30 * r + 59 * g + 11 * b + 50) / 100);
    pixel = {a, cg::multiply(gray, a)};
  } else if (form == cg::RowForm::argbStraight) {
    pixel = {a, r, g, b};
  } else {
    pixel = {a, cg::multiply(r, a), cg::multiply(g, a), cg::multiply(b, a)};
  }
  std::vector<uint8_t> row(pixels * pixel.size());
  for (size_t i = 0; i < row.size(); ++i) row[i] = pixel[i % pixel.size()];
  return row;
}

}  // namespace

void CGContextClipToRect(CGContextRef context, CGRect rect) {
  if (context) context->state().clip = pixelsOf(context, rect);
}

CGRect CGContextGetClipBoundingBox(CGContextRef context) {
  if (!context || context->state().clip.isEmpty()) return CGRectNull;
  const cg::PixelRect &clip = context->state().clip;
  const auto bottom = static_cast<CGFloat>(static_cast<int64_t>(context->surface.height) - clip.bottom);
  const CGRect device = CGRectMake(static_cast<CGFloat>(clip.left), bottom,
                                   static_cast<CGFloat>(clip.width()), static_cast<CGFloat>(clip.height()));
  return CGRectApplyAffineTransform(device, CGAffineTransformInvert(CGContextGetCTM(context)));
}

void CGContextFillRect(CGContextRef context, CGRect rect) {
  if (!context) return;
  const cg::PixelRect target = pixelsOf(context, rect);
  if (target.isEmpty()) return;
  cf::guarded([&] {
    const cg::Surface &surface = context->surface;
    const cg::RowForm form = cg::sourceForm(surface.layout, false);
    const auto pixels = static_cast<size_t>(target.width());
    const std::vector<uint8_t> row = fillRow(context->state().fill, form, pixels);
    const cg::ComposeRow compose = cg::composeRowFor(surface.layout, form);
    for (int64_t y = target.top; y < target.bottom; ++y)
      compose(row.data(), surface.at(target.left, y), pixels);
  });
}

void CGContextClearRect(CGContextRef context, CGRect rect) {
  if (!context) return;
  const cg::PixelRect target = pixelsOf(context, rect);
  if (target.isEmpty()) return;
  const cg::Surface &surface = context->surface;
  const size_t bytes = static_cast<size_t>(target.width()) * surface.bytesPerPixel();
  for (int64_t y = target.top; y < target.bottom; ++y) std::memset(surface.at(target.left, y), 0, bytes);
}
