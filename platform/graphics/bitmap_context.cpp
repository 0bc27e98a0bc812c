// Contexts over pixel memory: creation and what they tell about themselves.
#include <climits>
#include <cstring>
#include <new>
#include <optional>

#include "foundation/guard.h"
#include "foundation/sizes.h"
#include "graphics/context.h"

namespace {

using cg::SurfaceLayout;

// Which layout a bitmap info asks for; no value for what cannot be drawn into.
std::optional<SurfaceLayout> layoutFor(CGColorSpaceRef space, CGBitmapInfo info) {
  const CGBitmapInfo order = info & kCGBitmapByteOrderMask;
  if (order != kCGBitmapByteOrderDefault && order != kCGBitmapByteOrder32Big) return std::nullopt;
  const CGBitmapInfo alpha = info & kCGBitmapAlphaInfoMask;
  if (alpha == kCGImageAlphaOnly) return SurfaceLayout::alpha;
  if (!space || CGColorSpaceGetType(space) == kCGColorSpaceTypeIndexed) return std::nullopt;
  const size_t components = CGColorSpaceGetNumberOfComponents(space);
  if (components == 1 && alpha == kCGImageAlphaNone) return SurfaceLayout::gray;
  if (components != 3 || CGColorSpaceGetType(space) == kCGColorSpaceTypeLab) return std::nullopt;
  switch (alpha) {
    case kCGImageAlphaPremultipliedLast:
      return SurfaceLayout::rgbaPremultiplied;
    case kCGImageAlphaPremultipliedFirst:
      return SurfaceLayout::argbPremultiplied;
    case kCGImageAlphaLast:
      return SurfaceLayout::rgba;
    case kCGImageAlphaFirst:
      return SurfaceLayout::argb;
    case kCGImageAlphaNoneSkipLast:
      return SurfaceLayout::rgbx;
    case kCGImageAlphaNoneSkipFirst:
      return SurfaceLayout::xrgb;
    default:
      return std::nullopt;
  }
}

// Gives the surface zeroed memory of the context's own where the caller brought none.
bool providePixels(CGContextRef context, void *data) {
  cg::Surface &surface = context->surface;
  const cf::Size size = cf::bitmapBytes(surface.bytesPerRow, surface.height);
  if (!size) return false;
  if (!data) context->ownPixels.reset(new (std::nothrow) uint8_t[*size]());
  surface.pixels = data ? static_cast<uint8_t *>(data) : context->ownPixels.get();
  return surface.pixels != nullptr;
}

bool describeSurface(cg::Surface &surface, size_t width, size_t height, size_t bytesPerRow,
                     bool mayChooseRow) {
  if (width == 0 || height == 0 || !cf::sidePixels(width) || !cf::sidePixels(height)) return false;
  const cf::Size packed = cf::rowBytes(width, 8 * surface.bytesPerPixel());
  if (!packed) return false;
  surface.width = width;
  surface.height = height;
  surface.bytesPerRow = bytesPerRow == 0 && mayChooseRow ? *packed : bytesPerRow;
  return surface.bytesPerRow >= *packed;
}

}  // namespace

CGContextRef CGBitmapContextCreate(void *data, size_t width, size_t height, size_t bitsPerComponent,
                                   size_t bytesPerRow, CGColorSpaceRef space, CGBitmapInfo bitmapInfo) {
  const auto layout = layoutFor(space, bitmapInfo);
  if (!layout || bitsPerComponent != 8) return nullptr;
  return cf::guarded([&]() -> CGContextRef {
    cf::Ref<CGContextRef> context = cf::adopt(cf::make<CGContext>(kCFAllocatorDefault).give());
    if (!context) return nullptr;
    context->surface.layout = *layout;
    context->bitmapInfo = bitmapInfo;
    if (*layout != SurfaceLayout::alpha) context->space = cf::share(space);
    context->surface.space = context->space.get();
    if (!describeSurface(context->surface, width, height, bytesPerRow, data == nullptr)) return nullptr;
    if (!providePixels(context.get(), data)) return nullptr;
    cg::GraphicsState state;
    state.clip = {0, 0, static_cast<int64_t>(width), static_cast<int64_t>(height)};
    context->states.push_back(state);
    return context.give();
  });
}

void *CGBitmapContextGetData(CGContextRef context) { return context ? context->surface.pixels : nullptr; }

size_t CGBitmapContextGetWidth(CGContextRef context) { return context ? context->surface.width : 0; }

size_t CGBitmapContextGetHeight(CGContextRef context) { return context ? context->surface.height : 0; }

size_t CGBitmapContextGetBitsPerComponent(CGContextRef context) { return context ? 8 : 0; }

size_t CGBitmapContextGetBitsPerPixel(CGContextRef context) {
  return context ? 8 * context->surface.bytesPerPixel() : 0;
}

size_t CGBitmapContextGetBytesPerRow(CGContextRef context) {
  return context ? context->surface.bytesPerRow : 0;
}

CGColorSpaceRef CGBitmapContextGetColorSpace(CGContextRef context) {
  return context ? context->space.get() : nullptr;
}

CGImageAlphaInfo CGBitmapContextGetAlphaInfo(CGContextRef context) {
  return context ? context->bitmapInfo & kCGBitmapAlphaInfoMask : 0;
}

CGBitmapInfo CGBitmapContextGetBitmapInfo(CGContextRef context) { return context ? context->bitmapInfo : 0; }

CGImageRef CGBitmapContextCreateImage(CGContextRef context) {
  if (!context) return nullptr;
  const cg::Surface &surface = context->surface;
  const auto size = static_cast<CFIndex>(surface.bytesPerRow * surface.height);
  const cf::Ref pixels = cf::adopt(CFDataCreate(kCFAllocatorDefault, surface.pixels, size));
  const cf::Ref provider = cf::adopt(CGDataProviderCreateWithCFData(pixels.get()));
  return CGImageCreate(surface.width, surface.height, 8, 8 * surface.bytesPerPixel(), surface.bytesPerRow,
                       surface.space, context->bitmapInfo, provider.get(), nullptr, true,
                       kCGRenderingIntentDefault);
}
