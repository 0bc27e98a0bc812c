// The exported call: traces the outline of an image's alpha into a path.
#include <optional>

#include "core/block.h"
#include "core/image.h"
#include "foundation/guard.h"
#include "foundation/ref.h"
#include "path/path_conversion.h"
#include "path/path_finder.h"

namespace drav::path {
namespace {

// The walk trusts its image, so everything it trusts in is looked at here: alpha first in pixels of four
// bytes, rows without padding, and no more pixels than an index can name.
std::optional<ImageInfo> pixelsOf(DRAVCFImageRef image, float alphaThreshold) noexcept {
  if (!bufferHas32BitPixels(image)) return std::nullopt;
  if (image->alphaInfo != kCGImageAlphaPremultipliedFirst) return std::nullopt;
  if (cf::product(image->width, 4) != image->bytesPerRow) return std::nullopt;
  const auto width = cf::sidePixels(image->width);
  const auto height = cf::sidePixels(image->height);
  const auto pixels = cf::product(image->width, image->height);
  if (!width || !height || !pixels || *pixels > kNoPixel) return std::nullopt;
  return ImageInfo{image->buffer, static_cast<std::int32_t>(*width), static_cast<std::int32_t>(*height),
                   alphaThreshold};
}

CGMutablePathRef copyAlphaPath(DRAVCFImageRef image, float alphaThreshold) {
  DRAVCFImagePromoteImage(image, true, true);
  const auto info = pixelsOf(image, alphaThreshold);
  if (!info) return nullptr;
  const Block visited(CFGetAllocator(image), cf::product(image->width, image->height));
  if (!visited) return nullptr;
  TextOutput output(stdout);
  const SubpathList list = TraceSubpaths(*info, reinterpret_cast<bool *>(visited.get()), output);
  CGMutablePathRef path = nullptr;
  const bool isConverted = ConvertSubpathsToPath(list, path, output);
  cf::Ref owner = cf::adopt(path);
  return isConverted ? owner.give() : nullptr;
}

}  // namespace
}  // namespace drav::path

CGMutablePathRef DRAVCFImageCopyAlphaPath(DRAVCFImageRef image, float alphaThreshold) {
  if (DRAVCFImageHasAlpha(image) != 1) return CGPathCreateMutable();
  return cf::guarded([&] { return drav::path::copyAlphaPath(image, alphaThreshold); });
}
