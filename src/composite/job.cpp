#include "composite/job.h"

#include <algorithm>

#include "composite/clipping.h"
#include "core/image.h"
#include "foundation/sizes.h"

namespace drav {
namespace {

// Whether the image's buffer has room for all its pixels without counting padding.
bool pixelsFit(DRAVCFImageRef image, size_t bytesPerPixel) noexcept {
  const cf::Size row = cf::product(image->width, bytesPerPixel);
  const cf::Size whole = row ? cf::product(*row, image->height) : std::nullopt;
  return image->buffer && whole && *whole <= image->bufferSize;
}

}  // namespace

CompositeJob prepareJob(DRAVCFImageRef work, DRAVCFImageRef destination, DRAVCFBlendMode mode) noexcept {
  DRAVCFImageUnifyImageFormats(work, destination);
  CGColorSpaceRef space = DRAVCFImageGetColorSpace(work);
  if (!space) return {};
  const auto components = static_cast<uint32_t>(CGColorSpaceGetNumberOfComponents(space));
  CompositeJob job;
  job.compositor = DRAVCFImageCompositorForParameters(components, DRAVCFImageGetAlphaInfo(work), mode);
  job.destinationBuffer = DRAVCFImageGetImageBuffer(destination);
  // The record describes the buffers; a cached platform image may have rows of another length.
  job.bytesPerPixel = work->bitsPerPixel >> 3;
  if (!pixelsFit(work, job.bytesPerPixel) || !pixelsFit(destination, job.bytesPerPixel)) return {};
  job.sourceWidth = work->width;
  job.sourceHeight = work->height;
  job.sourceBytesPerRow = work->bytesPerRow;
  job.destinationWidth = destination->width;
  job.destinationHeight = destination->height;
  job.destinationBytesPerRow = destination->bytesPerRow;
  return job;
}

bool unificationKeeps(DRAVCFImageRef work, DRAVCFImageRef destination) noexcept {
  if (!work->buffer || !work->colorSpace) return false;
  // A destination without a buffer gets a colour one, or stays as it is if memory runs out; whether it has
  // alpha stays in any case.
  const size_t shown = CGColorSpaceGetNumberOfComponents(DRAVCFImageGetColorSpace(destination));
  const size_t components = destination->buffer ? shown : std::max<size_t>(shown, 3);
  if (CGColorSpaceGetNumberOfComponents(work->colorSpace) < components) return false;
  if (hasAlpha(work->alphaInfo)) return work->alphaInfo == kCGImageAlphaPremultipliedFirst;
  return !hasAlpha(DRAVCFImageGetAlphaInfo(destination));
}

bool needsFitting(const CompositeJob &job, const CGRect &sourceRect, const CGRect &destinationRect) noexcept {
  const CGRect from = clippedToImage(sourceRect, job.sourceWidth, job.sourceHeight);
  const CGRect to = clippedToImage(destinationRect, job.destinationWidth, job.destinationHeight);
  return hasPixels(from) && hasPixels(to) && !CGSizeEqualToSize(from.size, to.size);
}

void compositeOne(const CompositeJob &job, DRAVCFImageRef work, const CGRect &sourceRect,
                  const CGRect &destinationRect) noexcept {
  DRAVCFImageCompositeRect(work, &sourceRect, job.sourceWidth, job.sourceHeight, job.sourceBytesPerRow,
                           job.destinationBuffer, &destinationRect, job.destinationWidth,
                           job.destinationHeight, job.destinationBytesPerRow, job.bytesPerPixel,
                           job.compositor);
}

}  // namespace drav
