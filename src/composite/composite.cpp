// Compositing one image into another.
#include "composite/job.h"
#include "composite/work_image.h"

namespace {

CGRect wholeOf(size_t width, size_t height) {
  return CGRectMake(0, 0, static_cast<CGFloat>(width), static_cast<CGFloat>(height));
}

}  // namespace

void DRAVCFImageComposite(DRAVCFImageRef sourceImage, DRAVCFImageRef destinationImage,
                          const CGRect *sourceRects, const CGRect *destinationRects, uint32_t count,
                          DRAVCFBlendMode mode) {
  drav::WorkImage work = drav::WorkImage::forReading(sourceImage, destinationImage);
  if (!work) return;
  const drav::CompositeJob job = drav::prepareJob(work.get(), destinationImage, mode);
  if (!job.compositor) return;
  const CGRect wholeSource = wholeOf(job.sourceWidth, job.sourceHeight);
  const CGRect wholeDestination = wholeOf(job.destinationWidth, job.destinationHeight);
  const uint32_t pairs = count == 0 ? 1 : count;
  for (uint32_t i = 0; i < pairs; ++i) {
    const CGRect &from = sourceRects ? sourceRects[i] : wholeSource;
    const CGRect &to = destinationRects ? destinationRects[i] : wholeDestination;
    if (drav::needsFitting(job, from, to) && !work.own()) return;
    drav::compositeOne(job, work.get(), from, to);
  }
}
