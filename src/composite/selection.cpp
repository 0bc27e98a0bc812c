// Which kernel belongs to a pixel layout and a blend mode.
#include "composite/kernels.h"

namespace {

DRAVCFCompositeFunction kernelFor(drav::PixelFormat format, uint32_t mode) noexcept {
  return mode < drav::kBlendModeCount ? drav::kKernels[static_cast<size_t>(format)][mode] : nullptr;
}

}  // namespace

DRAVCFCompositeFunction DRAVCFImageCompositorForParameters(uint32_t componentCount, uint32_t alphaInfo,
                                                           uint32_t mode) {
  using drav::PixelFormat;
  if (componentCount == 1 && alphaInfo == kCGImageAlphaNone) return kernelFor(PixelFormat::grey, mode);
  if (componentCount == 3 && alphaInfo == kCGImageAlphaNoneSkipFirst)
    return kernelFor(PixelFormat::xrgb, mode);
  if (componentCount == 3 && alphaInfo == kCGImageAlphaPremultipliedFirst)
    return kernelFor(PixelFormat::argb, mode);
  return nullptr;
}
