// Promotion: whatever an image holds becomes a buffer in a working layout.
#include <cstring>

#include "core/block.h"
#include "core/image.h"
#include "foundation/ref.h"

namespace {

// What the new buffer shall be, and whether it then shows something else than the platform image does.
struct Target {
  CGColorSpaceRef space;
  CGImageAlphaInfo alpha;
  bool changed;
};

Target chooseTarget(CGImageRef source, bool toColor, bool addAlpha) {
  Target target{CGImageGetColorSpace(source), CGImageGetAlphaInfo(source), false};
  if (toColor || !gDRAVCFNativeColorSpace || !CFEqual(target.space, gDRAVCFNativeColorSpace)) {
    target.space = gDRAVCFNativeColorSpace;
    target.changed = true;
  }
  const bool kept =
      target.alpha == kCGImageAlphaNoneSkipFirst || target.alpha == kCGImageAlphaPremultipliedFirst;
  if (!addAlpha && kept) return target;
  target.changed = true;
  const bool opaque = target.alpha == kCGImageAlphaNone || target.alpha == kCGImageAlphaNoneSkipLast ||
                      target.alpha == kCGImageAlphaNoneSkipFirst;
  target.alpha = !addAlpha && opaque ? kCGImageAlphaNoneSkipFirst : kCGImageAlphaPremultipliedFirst;
  return target;
}

// Describes a packed buffer of the target's layout in the record. False if its size cannot be computed.
bool describeBuffer(DRAVCFImageRef image, size_t width, size_t height, const Target &target) {
  image->width = width;
  image->height = height;
  image->bitsPerComponent = 8;
  image->bitsPerPixel = CGColorSpaceGetNumberOfComponents(target.space) == 3 ? 32 : 8;
  image->colorSpace = cf::share(target.space).give();
  image->alphaInfo = target.alpha;
  const cf::Size row = cf::rowBytes(width, image->bitsPerPixel);
  const cf::Size whole = row ? cf::bitmapBytes(*row, height) : std::nullopt;
  if (!whole) return false;
  image->bytesPerRow = *row;
  image->bufferSize = *whole;
  return true;
}

bool drawIntoBuffer(DRAVCFImageRef image) {
  CFAllocatorRef allocator = CFGetAllocator(image);
  image->buffer = drav::allocateBytes(allocator, image->bufferSize);
  if (!image->buffer) return false;
  std::memset(image->buffer, 0, image->bufferSize);
  cf::Ref context = cf::adopt(DRAVCFContextCreate(allocator, image->width, image->height, image->buffer,
                                                  image->bitsPerComponent, image->bytesPerRow,
                                                  image->colorSpace, image->alphaInfo));
  CGContextRef drawing = context ? DRAVCFContextGetCGContext(context.get()) : nullptr;
  if (!drawing) return false;
  const CGRect whole =
      CGRectMake(0, 0, static_cast<CGFloat>(image->width), static_cast<CGFloat>(image->height));
  return CGContextTryDrawImage(drawing, whole, image->cgImage);
}

// The record is clear of a buffer here. Gives false with the record half filled.
bool makeBuffer(DRAVCFImageRef image, bool toColor, bool addAlpha) {
  CGImageRef source = image->cgImage;
  if (!source || !CGImageGetColorSpace(source)) return false;
  const Target target = chooseTarget(source, toColor, addAlpha);
  if (!target.space) return false;
  if (!describeBuffer(image, CGImageGetWidth(source), CGImageGetHeight(source), target)) return false;
  if (!drawIntoBuffer(image)) return false;
  if (target.changed) DRAVCFImageInvalidateImage(image);
  return true;
}

// Whether making the buffer anew would give the very bytes it holds: premultiplied pixels in the native space
// with packed rows draw onto nothing as themselves. A platform image beside the buffer would be drawn
// instead, and may be another picture.
bool isItsOwnPromotion(DRAVCFImageRef image) {
  return !image->cgImage && drav::bufferHas32BitPixels(image) && image->bitsPerComponent == 8 &&
         image->alphaInfo == kCGImageAlphaPremultipliedFirst && image->bytesPerRow == 4 * image->width &&
         image->width > 0 && image->height > 0 && image->colorSpace && gDRAVCFNativeColorSpace &&
         CFEqual(image->colorSpace, gDRAVCFNativeColorSpace);
}

}  // namespace

void DRAVCFImagePromoteImage(DRAVCFImageRef image, Boolean toColor, Boolean addAlpha) {
  if (!toColor && !addAlpha && image->buffer) return;
  if (isItsOwnPromotion(image)) return;
  // The buffer is always made from the platform image. Where that cannot be had the old buffer goes all
  // the same, and the pixels with it: callers see a NULL buffer, never one in the wrong layout.
  DRAVCFImageGetCGImage(image);
  DRAVCFImageInvalidateBuffer(image);
  if (!makeBuffer(image, toColor, addAlpha)) DRAVCFImageInvalidateBuffer(image);
}

void DRAVCFImageUnifyImageFormats(DRAVCFImageRef a, DRAVCFImageRef b) {
  const auto spaceOf = [](DRAVCFImageRef image) {
    DRAVCFImageGetImageBuffer(image);
    return DRAVCFImageGetColorSpace(image);
  };
  CGColorSpaceRef spaceA = spaceOf(a);
  CGColorSpaceRef spaceB = spaceOf(b);
  if (!spaceA || !spaceB) return;

  const auto needsAlpha = [](DRAVCFImageRef image, DRAVCFImageRef other) {
    const CGImageAlphaInfo own = DRAVCFImageGetAlphaInfo(image);
    if (!drav::hasAlpha(own)) return drav::hasAlpha(DRAVCFImageGetAlphaInfo(other));
    return own != kCGImageAlphaPremultipliedFirst;
  };
  const size_t componentsA = CGColorSpaceGetNumberOfComponents(spaceA);
  const size_t componentsB = CGColorSpaceGetNumberOfComponents(spaceB);
  DRAVCFImagePromoteImage(a, componentsA < componentsB, needsAlpha(a, b));
  const size_t unifiedA = CGColorSpaceGetNumberOfComponents(DRAVCFImageGetColorSpace(a));
  DRAVCFImagePromoteImage(b, componentsB < unifiedA, needsAlpha(b, a));
}
