// Grey and colour.
#include <bit>
#include <cstring>

#include "core/block.h"
#include "core/image.h"
#include "foundation/ref.h"
#include "ops/pixel_words.h"

namespace {

// The mean of three bytes, rounded. The float arithmetic that defines it, a sum of v / 255 in single
// precision divided by 3, agrees for all 2^24 colours: a third is never close to a half. The factor is a hair
// above a third, so that whole numbers stay whole; a multiplication keeps the loop in vectors.
constexpr uint32_t mean(uint32_t red, uint32_t green, uint32_t blue) noexcept {
  return static_cast<uint32_t>(static_cast<float>(static_cast<int32_t>(red + green + blue + 1)) *
                               0.33333334F);
}

// The pixel as a word whose order is the machine's: byte n of memory in bits shiftOf(n) on.
constexpr unsigned shiftOf(unsigned byte) noexcept {
  return 8 * (std::endian::native == std::endian::little ? byte : 3 - byte);
}

constexpr uint32_t grayWord(uint32_t word) noexcept {
  const auto byte = [word](unsigned n) { return word >> shiftOf(n) & 255U; };
  const uint32_t gray = mean(byte(1), byte(2), byte(3));
  return byte(0) << shiftOf(0) | gray << shiftOf(1) | gray << shiftOf(2) | gray << shiftOf(3);
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
    uint32_t word;
    std::memcpy(&word, pixels + drav::kPixelBytes * i, sizeof word);
    word = grayWord(word);
    std::memcpy(pixels + drav::kPixelBytes * i, &word, sizeof word);
  }
  DRAVCFImageInvalidateImage(image);
}
