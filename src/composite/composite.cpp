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
  const auto from = [&](uint32_t i) { return sourceRects ? sourceRects[i] : wholeSource; };
  const auto to = [&](uint32_t i) { return destinationRects ? destinationRects[i] : wholeDestination; };
  // Fitting changes the source. Pixels of its own are had before the first is drawn, or nothing is.
  for (uint32_t i = 0; i < pairs; ++i) {
    if (!drav::needsFitting(job, from(i), to(i))) continue;
    if (!work.own()) return;
    break;
  }
  for (uint32_t i = 0; i < pairs; ++i) drav::compositeOne(job, work.get(), from(i), to(i));
}
