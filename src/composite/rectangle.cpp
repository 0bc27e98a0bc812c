// Compositing one rectangle of an image into one rectangle of pixels.
#include "composite/clipping.h"
#include "composite/rows.h"
#include "core/image.h"

namespace {

// Crops and scales an image to the size of a destination. Its rectangle counts rows from the top and crop
// counts them from the bottom, and both are left so. False if the image did not come out at that size.
bool fitSource(DRAVCFImageRef image, const CGRect &sourceRect, const CGRect &destinationRect) {
  const CGSize size = CGSizeMake(CGRectGetWidth(destinationRect), CGRectGetHeight(destinationRect));
  DRAVCFImageCropToRect(image, sourceRect);
  DRAVCFImageScaleToSize(image, size);
  return static_cast<CGFloat>(DRAVCFImageGetWidth(image)) == size.width &&
         static_cast<CGFloat>(DRAVCFImageGetHeight(image)) == size.height;
}

// Whether a function of our own would reach beyond a step of that size; and nothing moves in steps of none.
bool stepIsTooSmall(DRAVCFCompositeFunction compositor, size_t bytesPerPixel) {
  const drav::KernelPlace place = drav::placeOfKernel(compositor);
  return bytesPerPixel == 0 || (place.ours && bytesPerPixel < drav::bytesPerPixel(place.format));
}

// Fitting replaces the source's buffer: a destination inside it would be gone.
bool lieWithin(const uint8_t *address, DRAVCFImageRef image) {
  const auto at = reinterpret_cast<uintptr_t>(address), begin = reinterpret_cast<uintptr_t>(image->buffer);
  return image->buffer && at >= begin && at - begin < image->bufferSize;
}

}  // namespace

void DRAVCFImageCompositeRect(DRAVCFImageRef sourceImage, const CGRect *sourceRect, size_t sourceWidth,
                              size_t sourceHeight, size_t sourceBytesPerRow, uint8_t *destinationBuffer,
                              const CGRect *destinationRect, size_t destinationWidth,
                              size_t destinationHeight, size_t destinationBytesPerRow, size_t bytesPerPixel,
                              DRAVCFCompositeFunction compositor) {
  if (!sourceRect || !destinationRect || !destinationBuffer || !compositor) return;
  if (stepIsTooSmall(compositor, bytesPerPixel)) return;
  CGRect from = drav::clippedToImage(*sourceRect, sourceWidth, sourceHeight);
  const CGRect to = drav::clippedToImage(*destinationRect, destinationWidth, destinationHeight);
  if (!drav::hasPixels(from) || !drav::hasPixels(to)) return;
  if (!CGSizeEqualToSize(from.size, to.size)) {
    if (lieWithin(destinationBuffer, sourceImage) || !fitSource(sourceImage, from, to)) return;
    if (!DRAVCFImageGetImageBuffer(sourceImage)) return;
    sourceBytesPerRow = sourceImage->bytesPerRow;
    from = CGRectMake(0, 0, CGRectGetWidth(to), CGRectGetHeight(to));
  }
  const uint8_t *source = DRAVCFImageGetImageBuffer(sourceImage);
  drav::Walk walk{};
  if (!source || !drav::makeWalk({source, sourceImage->bufferSize, sourceBytesPerRow, destinationBuffer,
                                  destinationBytesPerRow, destinationHeight, bytesPerPixel},
                                 from, to, walk)) {
    return;
  }
  drav::compositeRows(compositor, walk.source, walk.sourceBytesPerRow, walk.destination,
                      walk.destinationBytesPerRow, walk.written.width, walk.written.height, bytesPerPixel);
}
