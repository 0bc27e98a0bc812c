#include "media/codecs/frame.h"

namespace codecs {
namespace {

constexpr uint64_t kBelievedPixels = uint64_t{1} << 24;

}  // namespace

Fault checkFrame(uint64_t width, uint64_t height, size_t pixelBytes,
                 const CGImageDecodeLimits &limits) noexcept {
  if (width == 0 || height == 0) return Fault::damaged;
  if (width > limits.side || height > limits.side) return Fault::tooLarge;
  const uint64_t pixels = width * height;  // cannot overflow: both fit 32 bits
  if (pixels > limits.pixels || pixels > limits.memoryBytes / pixelBytes) return Fault::tooLarge;
  return Fault::none;
}

Fault makeFrame(DecodedImage &image, uint64_t width, uint64_t height, PixelLayout layout,
                const CGImageDecodeLimits &limits) noexcept {
  const size_t pixelBytes = bytesPerPixel(layout);
  if (const Fault fault = checkFrame(width, height, pixelBytes, limits); fault != Fault::none) return fault;
  image.width = static_cast<uint32_t>(width);
  image.height = static_cast<uint32_t>(height);
  image.layout = layout;
  image.rowBytes = width * pixelBytes;
  image.pixels = PixelBuffer::zeroed(image.rowBytes * height);
  return image.pixels ? Fault::none : Fault::noMemory;
}

Fault checkPromise(uint64_t pixels, uint64_t fileBytes, uint64_t mostPixelsPerByte) noexcept {
  return pixels <= kBelievedPixels || pixels / mostPixelsPerByte <= fileBytes ? Fault::none
                                                                              : Fault::truncated;
}

}  // namespace codecs
