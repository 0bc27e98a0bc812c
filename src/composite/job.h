// What one compositing needs to know besides its rectangles; the same for every tile of a tiling.
#pragma once

#include <DravKit/DravKit.h>

#include <cstddef>
#include <cstdint>

namespace drav {

struct CompositeJob {
  DRAVCFCompositeFunction compositor = nullptr;  // NULL: nothing is to be drawn
  size_t bytesPerPixel = 0;                      // of both images
  size_t sourceWidth = 0, sourceHeight = 0, sourceBytesPerRow = 0;
  uint8_t *destinationBuffer = nullptr;
  size_t destinationWidth = 0, destinationHeight = 0, destinationBytesPerRow = 0;
};

// Brings both images to one layout, and looks up the function and the sizes.
CompositeJob prepareJob(DRAVCFImageRef work, DRAVCFImageRef destination, DRAVCFBlendMode mode) noexcept;

// Whether bringing both to one layout would leave the first as it is.
bool unificationKeeps(DRAVCFImageRef work, DRAVCFImageRef destination) noexcept;

// Whether the rectangles, clipped, differ in size, so that the source has to be cropped and scaled.
bool needsFitting(const CompositeJob &job, const CGRect &sourceRect, const CGRect &destinationRect) noexcept;

void compositeOne(const CompositeJob &job, DRAVCFImageRef work, const CGRect &sourceRect,
                  const CGRect &destinationRect) noexcept;

}  // namespace drav
