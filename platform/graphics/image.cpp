#include "graphics/image.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "foundation/sizes.h"
#include "graphics/data_provider.h"

namespace cg {
namespace {

constexpr CGBitmapInfo kKnownBits = kCGBitmapAlphaInfoMask | kCGBitmapByteOrderMask;

bool isOneOf(std::size_t value, std::initializer_list<std::size_t> values) noexcept {
  return std::ranges::find(values, value) != values.end();
}

bool isSide(std::size_t pixels) noexcept { return pixels > 0 && cf::sidePixels(pixels).has_value(); }

// Colour components that the bytes hold: an index is one, alpha alone none.
std::size_t storedColors(CGColorSpaceRef space, CGImageAlphaInfo alpha) noexcept {
  return alpha == kCGImageAlphaOnly ? 0 : CGColorSpaceGetNumberOfComponents(space);
}

bool alphaFits(CGColorSpaceRef space, CGImageAlphaInfo alpha) noexcept {
  if (alpha == kCGImageAlphaOnly) return true;
  if (!space || alpha > kCGImageAlphaOnly) return false;
  const bool takesAlpha = isOneOf(CGColorSpaceGetNumberOfComponents(space), {1, 3}) &&
                          CGColorSpaceGetType(space) != kCGColorSpaceTypeIndexed;
  return alpha == kCGImageAlphaNone || takesAlpha;
}

bool depthFits(const ImageLayout &layout, CGColorSpaceRef space) noexcept {
  const std::size_t depth = layout.bitsPerComponent, bits = layout.bitsPerPixel;
  if (!isOneOf(depth, {1, 2, 4, 8, 16}) || bits > 64) return false;
  const bool hasExtra =
      layout.alphaInfo() != kCGImageAlphaNone;  // alpha, or a component in its place that is ignored
  if (bits < (storedColors(space, layout.alphaInfo()) + hasExtra) * depth) return false;
  if (depth >= 8 && bits % depth != 0) return false;
  // An index of 16 bits would have no table.
  return CGColorSpaceGetType(space) != kCGColorSpaceTypeIndexed || depth <= 8;
}

// Little-endian words hold whole pixels or whole components, never parts of two pixels.
bool orderFits(const ImageLayout &layout) noexcept {
  switch (layout.byteOrder()) {
    case kCGBitmapByteOrderDefault:
    case kCGBitmapByteOrder16Big:
    case kCGBitmapByteOrder32Big:
      return true;
    case kCGBitmapByteOrder16Little:
      return layout.bitsPerPixel % 16 == 0;
    case kCGBitmapByteOrder32Little:
      return layout.bitsPerPixel % 32 == 0;
    default:
      return false;
  }
}

bool rowsFit(const ImageLayout &layout, std::size_t available) noexcept {
  const cf::Size row = cf::rowBytes(layout.width, layout.bitsPerPixel);
  if (!row || layout.bytesPerRow < *row) return false;
  const cf::Size above = cf::product(layout.height - 1, layout.bytesPerRow);
  const cf::Size all = above ? cf::sum(*above, *row) : std::nullopt;
  return all && *all <= available;
}

bool isConsistent(const ImageLayout &layout, CGColorSpaceRef space) noexcept {
  return isSide(layout.width) && isSide(layout.height) && (layout.bitmapInfo & ~kKnownBits) == 0 &&
         alphaFits(space, layout.alphaInfo()) && depthFits(layout, space) && orderFits(layout);
}

bool isIntent(CGColorRenderingIntent intent) noexcept {
  return intent >= kCGRenderingIntentDefault && intent <= kCGRenderingIntentSaturation;
}

// False for numbers that are none.
bool copyDecode(CGImage &image, const CGFloat *decode) noexcept {
  const std::size_t values = 2 * storedColors(image.space.get(), image.layout.alphaInfo());
  if (!decode || values == 0) return true;
  image.hasDecode = true;
  std::copy_n(decode, values, image.decode.begin());
  return std::all_of(decode, decode + values, [](CGFloat value) { return std::isfinite(value); });
}

cf::Ref<CGImage> copyOf(const CGImage &image) noexcept {
  auto copy = cf::make<CGImage>(nullptr);
  if (!copy) return nullptr;
  copy->layout = image.layout;
  copy->space = image.space;
  copy->provider = image.provider;
  copy->offset = image.offset;
  copy->hasDecode = image.hasDecode;
  copy->shouldInterpolate = image.shouldInterpolate;
  copy->decode = image.decode;
  copy->intent = image.intent;
  copy->resolution = image.resolution;
  return copy;
}

// A range of whole pixels along one side, cut off at the image's edges; empty for nothing.
struct Range {
  std::size_t first = 0, count = 0;
};
Range clipped(CGFloat least, CGFloat greatest, std::size_t side) noexcept {
  const auto limit = static_cast<double>(side);
  const double from = std::clamp(std::floor(static_cast<double>(least)), 0.0, limit);
  const double to = std::clamp(std::ceil(static_cast<double>(greatest)), 0.0, limit);
  if (!(from < to)) return {};  // nor for NaN
  return {static_cast<std::size_t>(from), static_cast<std::size_t>(to - from)};
}

}  // namespace

const uint8_t *imageRow(CGImageRef image, std::size_t row) noexcept {
  return providerBytes(image->provider.get()).data() + image->offset + row * image->layout.bytesPerRow;
}

Resolution imageResolution(CGImageRef image) noexcept { return image ? image->resolution : Resolution{}; }

void setImageResolution(CGImageRef image, Resolution resolution) noexcept {
  if (image) image->resolution = resolution;
}

}  // namespace cg

using namespace cg;

std::string CGImage::describe() const {
  char text[128];
  std::snprintf(text, sizeof text, "<CGImage %p>{%zux%zu, %zu bits per pixel, alpha info %u}",
                static_cast<const void *>(this), layout.width, layout.height, layout.bitsPerPixel,
                static_cast<unsigned>(layout.alphaInfo()));
  return text;
}

CFTypeID CGImageGetTypeID(void) { return CGImage::typeID(); }

CGImageRef CGImageCreate(size_t width, size_t height, size_t bitsPerComponent, size_t bitsPerPixel,
                         size_t bytesPerRow, CGColorSpaceRef space, CGBitmapInfo bitmapInfo,
                         CGDataProviderRef provider, const CGFloat *decode, bool shouldInterpolate,
                         CGColorRenderingIntent intent) {
  const ImageLayout layout{width, height, bitsPerComponent, bitsPerPixel, bytesPerRow, bitmapInfo};
  if (!provider || !isIntent(intent) || !isConsistent(layout, space)) return nullptr;
  if (!rowsFit(layout, providerBytes(provider).size())) return nullptr;
  auto image = cf::make<CGImage>(nullptr);
  if (!image) return nullptr;
  image->layout = layout;
  image->space = cf::share(space);
  image->provider = cf::share(provider);
  image->shouldInterpolate = shouldInterpolate;
  image->intent = intent;
  return copyDecode(*image, decode) ? image.give() : nullptr;
}

CGImageRef CGImageCreateCopy(CGImageRef image) { return image ? copyOf(*image).give() : nullptr; }

CGImageRef CGImageCreateWithImageInRect(CGImageRef image, CGRect rect) {
  if (!image || CGRectIsNull(rect)) return nullptr;
  const ImageLayout &whole = image->layout;
  const Range columns = clipped(CGRectGetMinX(rect), CGRectGetMaxX(rect), whole.width);
  const Range rows = clipped(CGRectGetMinY(rect), CGRectGetMaxY(rect), whole.height);
  if (columns.count == 0 || rows.count == 0) return nullptr;
  const std::size_t skippedBits = columns.first * whole.bitsPerPixel;
  if (skippedBits % 8 != 0) return nullptr;
  auto part = copyOf(*image);
  if (!part) return nullptr;
  part->layout.width = columns.count;
  part->layout.height = rows.count;
  part->offset += rows.first * whole.bytesPerRow + skippedBits / 8;
  return part.give();
}

CGImageRef CGImageRetain(CGImageRef image) {
  if (image) CFRetain(image);
  return image;
}

void CGImageRelease(CGImageRef image) {
  if (image) CFRelease(image);
}

size_t CGImageGetWidth(CGImageRef image) { return image ? image->layout.width : 0; }
size_t CGImageGetHeight(CGImageRef image) { return image ? image->layout.height : 0; }
size_t CGImageGetBitsPerComponent(CGImageRef image) { return image ? image->layout.bitsPerComponent : 0; }
size_t CGImageGetBitsPerPixel(CGImageRef image) { return image ? image->layout.bitsPerPixel : 0; }
size_t CGImageGetBytesPerRow(CGImageRef image) { return image ? image->layout.bytesPerRow : 0; }
CGColorSpaceRef CGImageGetColorSpace(CGImageRef image) { return image ? image->space.get() : nullptr; }
CGImageAlphaInfo CGImageGetAlphaInfo(CGImageRef image) { return image ? image->layout.alphaInfo() : 0; }
CGBitmapInfo CGImageGetBitmapInfo(CGImageRef image) { return image ? image->layout.bitmapInfo : 0; }
CGDataProviderRef CGImageGetDataProvider(CGImageRef image) { return image ? image->provider.get() : nullptr; }
const CGFloat *CGImageGetDecode(CGImageRef image) {
  return image && image->hasDecode ? image->decode.data() : nullptr;
}
bool CGImageGetShouldInterpolate(CGImageRef image) { return image && image->shouldInterpolate; }
CGColorRenderingIntent CGImageGetRenderingIntent(CGImageRef image) {
  return image ? image->intent : kCGRenderingIntentDefault;
}
