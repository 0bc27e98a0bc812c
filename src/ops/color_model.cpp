// Grey and colour.
#include <cstring>

#include "core/block.h"
#include "core/image.h"
#include "foundation/ref.h"
#include "ops/pixel_words.h"

namespace {

// The mean of three bytes, rounded. The float arithmetic that defines it, a sum of v / 255 in single
// precision divided by 3, agrees for all 2^24 colours: a third is never close to a half.
constexpr uint8_t mean(unsigned red, unsigned green, unsigned blue) noexcept {
  return static_cast<uint8_t>((red + green + blue + 1) / 3);
}

}  // namespace

void DRAVCFImageConvertToColor(DRAVCFImageRef image) {
  if (!DRAVCFImageIsColor(image)) DRAVCFImagePromoteImage(image, 1, 0);
}

void DRAVCFImageConvertToGrayscale(DRAVCFImageRef image) {
  if (!DRAVCFImageIsColor(image)) return;
  CGImageRef cgImage = DRAVCFImageGetCGImage(image);
  if (!cgImage) return;
  const size_t width = DRAVCFImageGetWidth(image);
  const size_t height = DRAVCFImageGetHeight(image);
  CFAllocatorRef allocator = CFGetAllocator(image);
  cf::Ref gray = cf::adopt(CGColorSpaceCreateDeviceGray());
  const cf::Size size = cf::bitmapBytes(width, height);
  drav::Block buffer(allocator, size);
  if (!gray || !size || !buffer) return;
  std::memset(buffer.get(), 0, *size);
  const cf::Ref context = cf::adopt(
      DRAVCFContextCreate(allocator, width, height, buffer.get(), 8, width, gray.get(), kCGImageAlphaNone));
  CGContextRef drawing = context ? DRAVCFContextGetCGContext(context.get()) : nullptr;
  const CGRect whole = CGRectMake(0, 0, static_cast<CGFloat>(width), static_cast<CGFloat>(height));
  if (!drawing || !CGContextTryDrawImage(drawing, whole, cgImage)) return;
  drav::installBuffer(image,
                      {buffer.give(), *size, width, height, 8, 8, width, gray.give(), kCGImageAlphaNone});
}

void DRAVCFImageMakeGrayscale(DRAVCFImageRef image) {
  if (!DRAVCFImageIsColor(image) || !DRAVCFImageGetImageBuffer(image) || image->bitsPerPixel != 32) return;
  uint8_t *pixels = image->buffer;
  const size_t count = image->bufferSize / drav::kPixelBytes;
  for (size_t i = 0; i < count; ++i) {
    uint8_t *pixel = pixels + drav::kPixelBytes * i;
    const uint8_t gray = mean(pixel[1], pixel[2], pixel[3]);
    pixel[1] = gray;
    pixel[2] = gray;
    pixel[3] = gray;
  }
  DRAVCFImageInvalidateImage(image);
}
