// The whole way from bytes to pixels that can be written to, with the format named and with it unknown.

#include <DravKit/DravKit.h>

#include "codec_fuzzing.h"
#include "foundation/ref.h"

namespace {

void load(CFDataRef data, DRAVCFImageFormat format) {
  const auto image = cf::adopt(DRAVCFImageCreateWithFormattedData(kCFAllocatorDefault, data, format));
  if (!image) return;
  const uint8_t *pixels = DRAVCFImageGetImageBuffer(image.get());
  const size_t size = DRAVCFImageGetImageBufferSize(image.get());
  if (!pixels || size != DRAVCFImageGetBytesPerRow(image.get()) * DRAVCFImageGetHeight(image.get()))
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *bytes, size_t size) {
  const CGImageDecodeLimits limits = fuzzingLimits();
  CGImageSetDecodeLimits(&limits);
  const auto data = cf::adopt(CFDataCreate(kCFAllocatorDefault, bytes, static_cast<CFIndex>(size)));
  for (const DRAVCFImageFormat format :
       {kDRAVCFImageFormatUnknown, kDRAVCFImageFormatPICT, kDRAVCFImageFormatPCT, kDRAVCFImageFormatPNG,
        kDRAVCFImageFormatJPEG}) {
    load(data.get(), format);
  }
  return 0;
}
