// A context's state: matrix, clip, fill colour, quality.
#include "graphics/context.h"

#include <cmath>
#include <cstdio>

#include "foundation/guard.h"

namespace {

// Steps on user space come before what the matrix did so far. A step that is no number is left out, so that
// the matrix can always be drawn with.
void prepend(CGContextRef context, const cg::Matrix &step) {
  if (!context) return;
  const cg::Matrix product = then(step, context->state().matrix);
  if (product.isFinite()) context->state().matrix = product;
}

// Of sine and cosine, the small one at a multiple of a quarter turn. Such an angle in single precision misses
// the true one by up to this much; taken at its word it would move the far corner of a large image, and rows
// would no longer fall on columns.
bool isNought(double component) { return std::fabs(component) < 2.5e-7; }

}  // namespace

std::string CGContext::describe() const {
  char text[96];
  std::snprintf(text, sizeof text, "<CGContext %p bitmap %zux%zu>", static_cast<const void *>(this),
                surface.width, surface.height);
  return text;
}

CFTypeID CGContextGetTypeID(void) { return CGContext::typeID(); }

CGContextRef CGContextRetain(CGContextRef context) {
  if (context) CFRetain(context);
  return context;
}

void CGContextRelease(CGContextRef context) {
  if (context) CFRelease(context);
}

void CGContextSaveGState(CGContextRef context) {
  if (!context) return;
  cf::guarded([&] { context->states.push_back(cg::GraphicsState(context->state())); });
}

void CGContextRestoreGState(CGContextRef context) {
  if (context && context->states.size() > 1) context->states.pop_back();
}

void CGContextTranslateCTM(CGContextRef context, CGFloat tx, CGFloat ty) {
  prepend(context, {1, 0, 0, 1, tx, ty});
}

void CGContextScaleCTM(CGContextRef context, CGFloat sx, CGFloat sy) {
  prepend(context, {sx, 0, 0, sy, 0, 0});
}

void CGContextRotateCTM(CGContextRef context, CGFloat angleRadians) {
  double cosine = std::cos(static_cast<double>(angleRadians));
  double sine = std::sin(static_cast<double>(angleRadians));
  if (isNought(sine) || isNought(cosine)) {
    cosine = std::round(cosine);
    sine = std::round(sine);
  }
  prepend(context, {cosine, sine, -sine, cosine, 0, 0});
}

void CGContextConcatCTM(CGContextRef context, CGAffineTransform transform) {
  prepend(context, cg::Matrix::from(transform));
}

CGAffineTransform CGContextGetCTM(CGContextRef context) {
  return context ? context->state().matrix.toTransform() : CGAffineTransformIdentity;
}

void CGContextSetInterpolationQuality(CGContextRef context, CGInterpolationQuality quality) {
  if (context) context->state().quality = quality;
}

CGInterpolationQuality CGContextGetInterpolationQuality(CGContextRef context) {
  return context ? context->state().quality : kCGInterpolationDefault;
}

void CGContextSetRGBFillColor(CGContextRef context, CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha) {
  if (context) context->state().fill = {red, green, blue, alpha};
}

void CGContextSetGrayFillColor(CGContextRef context, CGFloat gray, CGFloat alpha) {
  if (context) context->state().fill = {gray, gray, gray, alpha};
}

void CGContextFlush(CGContextRef) {}
