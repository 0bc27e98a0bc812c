// Crop, scale and flip. Nothing is resampled here: each draws the platform image into a new store, and the
// image keeps its old one if that cannot be had.
#include <cstring>

#include "core/block.h"
#include "core/image.h"
#include "core/whole_pixels.h"
#include "foundation/ref.h"

namespace {

constexpr size_t kRowAlignment = 32;

// The layout of a new store for an image's pixels at another size. Colour rows are padded, and colour
// without a byte to spare gets one: no context draws into 24 bits.
struct StoreLayout {
  size_t bitsPerComponent, bitsPerPixel;
  CGImageAlphaInfo alphaInfo;
  cf::Size bytesPerRow, bufferSize;
};

StoreLayout layoutFor(DRAVCFImageRef image, size_t width, size_t height) {
  StoreLayout layout{DRAVCFImageGetBitsPerComponent(image), DRAVCFImageGetBitsPerPixel(image),
                     DRAVCFImageGetAlphaInfo(image), std::nullopt, std::nullopt};
  if (layout.bitsPerPixel == 24 || layout.bitsPerPixel == 32) {
    if (layout.bitsPerPixel == 24) layout.alphaInfo = kCGImageAlphaNoneSkipLast;
    layout.bitsPerPixel = 32;
    const cf::Size padded = cf::sum(width * 4, kRowAlignment - 1);
    if (padded) layout.bytesPerRow = *padded / kRowAlignment * kRowAlignment;
  } else {
    layout.bytesPerRow = cf::rowBytes(width, layout.bitsPerPixel);
  }
  if (layout.bytesPerRow) layout.bufferSize = cf::bitmapBytes(*layout.bytesPerRow, height);
  return layout;
}

// Replaces the image's pixels by width x height new ones, with the platform image drawn into a rectangle.
void redraw(DRAVCFImageRef image, size_t width, size_t height, CGRect rect) {
  cf::Ref space = cf::share(DRAVCFImageGetColorSpace(image));
  if (!space) return;
  CFAllocatorRef allocator = CFGetAllocator(image);
  const StoreLayout layout = layoutFor(image, width, height);
  drav::Block buffer(allocator, layout.bufferSize);
  if (!layout.bufferSize || !buffer) return;
  std::memset(buffer.get(), 0, *layout.bufferSize);
  const cf::Ref context =
      cf::adopt(DRAVCFContextCreate(allocator, width, height, buffer.get(), layout.bitsPerComponent,
                                    *layout.bytesPerRow, space.get(), layout.alphaInfo));
  CGContextRef drawing = context ? DRAVCFContextGetCGContext(context.get()) : nullptr;
  if (!drawing || !CGContextTryDrawImage(drawing, rect, DRAVCFImageGetCGImage(image))) return;
  drav::installBuffer(image, {buffer.give(), *layout.bufferSize, width, height, layout.bitsPerComponent,
                              layout.bitsPerPixel, *layout.bytesPerRow, space.give(), layout.alphaInfo});
}

CGFloat widthOf(DRAVCFImageRef image) { return static_cast<CGFloat>(DRAVCFImageGetWidth(image)); }
CGFloat heightOf(DRAVCFImageRef image) { return static_cast<CGFloat>(DRAVCFImageGetHeight(image)); }

CGRect wholeNumbered(CGRect rect) { return CGRectIntegral(CGRectStandardize(rect)); }

// An origin below 0 moves to 0 and takes the rectangle's width with it: what is cut off on that side is
// not taken off the width.
CGRect clipped(CGRect rect, CGFloat width, CGFloat height) {
  if (rect.origin.x < 0) rect.origin.x = 0;
  if (CGRectGetMaxX(rect) > width) rect.size.width = width - rect.origin.x;
  if (rect.origin.y < 0) rect.origin.y = 0;
  if (CGRectGetMaxY(rect) > height) rect.size.height = height - rect.origin.y;
  return rect;
}

// Makes the buffer, and sees to it that a platform image beside it has its very layout: bytes drawn in the
// one's layout shall go into the other. False if there is no buffer to be had.
bool alignRepresentations(DRAVCFImageRef image) {
  if (!DRAVCFImageGetImageBuffer(image)) return false;
  CGImageRef cgImage = image->cgImage;
  if (cgImage && (CGImageGetBytesPerRow(cgImage) != image->bytesPerRow ||
                  CGImageGetBitsPerComponent(cgImage) != image->bitsPerComponent ||
                  CGImageGetBitsPerPixel(cgImage) != image->bitsPerPixel)) {
    DRAVCFImageInvalidateImage(image);
  }
  return true;
}

}  // namespace

void DRAVCFImageCropToRect(DRAVCFImageRef image, CGRect rect) {
  rect = wholeNumbered(rect);
  const CGFloat width = widthOf(image);
  const CGFloat height = heightOf(image);
  if (CGRectEqualToRect(rect, CGRectMake(0, 0, width, height))) return;
  rect = wholeNumbered(clipped(rect, width, height));
  if (!DRAVCFImageGetCGImage(image)) return;
  const cf::Size newWidth = drav::wholePixels(rect.size.width);
  const cf::Size newHeight = drav::wholePixels(rect.size.height);
  if (!newWidth || !newHeight) return;
  redraw(image, *newWidth, *newHeight, CGRectMake(-rect.origin.x, -rect.origin.y, width, height));
}

void DRAVCFImageScaleToSize(DRAVCFImageRef image, CGSize size) {
  if (size.width < 0 || size.height < 0) return;
  const cf::Size width = drav::wholePixels(size.width);
  const cf::Size height = drav::wholePixels(size.height);
  if (!width || !height) return;
  if (*width == DRAVCFImageGetWidth(image) && *height == DRAVCFImageGetHeight(image)) return;
  if (!DRAVCFImageGetCGImage(image)) return;
  redraw(image, *width, *height,
         CGRectMake(0, 0, static_cast<CGFloat>(*width), static_cast<CGFloat>(*height)));
}

void DRAVCFImageFlipVertically(DRAVCFImageRef image) {
  if (!alignRepresentations(image)) return;
  CGImageRef cgImage = DRAVCFImageGetCGImage(image);
  if (!cgImage) return;
  const CGFloat width = widthOf(image);
  const CGFloat height = heightOf(image);
  const cf::Ref context = cf::adopt(DRAVCFContextCreateForImage(CFGetAllocator(image), image, nullptr));
  CGContextRef drawing = context ? DRAVCFContextGetCGContext(context.get()) : nullptr;
  if (!drawing) return;
  CGContextTranslateCTM(drawing, 0, height);
  CGContextScaleCTM(drawing, 1, -1);
  if (!CGContextTryDrawImage(drawing, CGRectMake(0, 0, width, height), cgImage)) return;
  DRAVCFImageInvalidateImage(image);
  std::memmove(image->buffer, DRAVCFContextGetBuffer(context.get()), image->bufferSize);
}
