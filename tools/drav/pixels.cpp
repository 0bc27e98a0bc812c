#include "pixels.h"

#include "failure.h"
#include "media/codecs/limits.h"

namespace {

// An indexed space has one component as well.
bool isGray(CGColorSpaceRef space) {
  const int32_t kind = CGColorSpaceGetType(space);
  return kind == 0 || kind == 3;
}

// What the decoders deliver: every operation of the library works on such a buffer.
bool isWorkable(CGImageRef image) {
  if ((CGImageGetBitmapInfo(image) & kCGBitmapByteOrderMask) != kCGBitmapByteOrderDefault) return false;
  if (CGImageGetBitsPerComponent(image) != 8 || CGImageGetDecode(image)) return false;
  const CGImageAlphaInfo alpha = CGImageGetAlphaInfo(image);
  if (CGImageGetBitsPerPixel(image) == 8)
    return alpha == kCGImageAlphaNone && isGray(CGImageGetColorSpace(image));
  return CGImageGetBitsPerPixel(image) == 32 &&
         (alpha == kCGImageAlphaFirst || alpha == kCGImageAlphaPremultipliedFirst ||
          alpha == kCGImageAlphaNoneSkipFirst);
}

// An image of these bytes with the layout of another.
Image imageOf(const uint8_t *bytes, DRAVCFImageRef layout, CGImageAlphaInfo alpha) {
  Image made = cf::adopt(DRAVCFImageCreateWithBuffer(
      nullptr, bytes, DRAVCFImageGetWidth(layout), DRAVCFImageGetHeight(layout),
      DRAVCFImageGetBitsPerComponent(layout), DRAVCFImageGetBitsPerPixel(layout),
      DRAVCFImageGetBytesPerRow(layout), DRAVCFImageGetColorSpace(layout), alpha));
  if (!made) throw Failure("out of memory");
  return made;
}

Image imageOf(const uint8_t *bytes, DRAVCFImageRef layout) {
  return imageOf(bytes, layout, DRAVCFImageGetAlphaInfo(layout));
}

}  // namespace

Area boundsOf(DRAVCFImageRef image) noexcept {
  return {0, 0, static_cast<long>(DRAVCFImageGetWidth(image)),
          static_cast<long>(DRAVCFImageGetHeight(image))};
}

std::string sizeText(DRAVCFImageRef image) {
  return std::to_string(DRAVCFImageGetWidth(image)) + " x " + std::to_string(DRAVCFImageGetHeight(image)) +
         " pixels";
}

void requireBuffer(DRAVCFImageRef image) {
  if (!DRAVCFImageGetImageBuffer(image)) throw Failure("out of memory");
}

void checkSize(double width, double height) {
  const CGImageDecodeLimits limits = CGImageGetDecodeLimits();
  if (width > limits.side || height > limits.side || width * height > static_cast<double>(limits.pixels))
    throw Failure("would become too large: see --limits");
}

Pixels pixelsOf(DRAVCFImageRef image) {
  requireBuffer(image);
  return {DRAVCFImageGetImageBuffer(image), DRAVCFImageGetWidth(image), DRAVCFImageGetHeight(image),
          DRAVCFImageGetBytesPerRow(image)};
}

Pixels premultipliedPixels(DRAVCFImageRef image) {
  DRAVCFImagePromoteImage(image, true, true);
  return pixelsOf(image);
}

Image asRead(Image image) {
  CGImageRef read = DRAVCFImageGetCGImage(image.get());
  if (!read) throw Failure("out of memory");
  if (!isWorkable(read)) {
    requireBuffer(image.get());
    return image;
  }
  const auto bytes = cf::adopt(CGDataProviderCopyData(CGImageGetDataProvider(read)));
  const size_t size = CGImageGetBytesPerRow(read) * CGImageGetHeight(read);
  if (!bytes) throw Failure("out of memory");
  if (bytesOf(bytes.get()).size() < size) throw Failure("has fewer pixels than its size needs");
  return imageOf(CFDataGetBytePtr(bytes.get()), image.get());
}

Image relabelled(DRAVCFImageRef image, CGImageAlphaInfo alpha) {
  return imageOf(pixelsOf(image).bytes, image, alpha);
}
