// Images straight from encoded bytes.

#include <CoreGraphics/CoreGraphics.h>

#include "foundation/guard.h"
#include "graphics/data_provider.h"
#include "media/codecs/registry.h"
#include "media/decode_fault.h"
#include "media/decoded_image.h"

namespace {

using codecs::Fault;
using media::Presentation;

CGImageRef decode(const codecs::CodecRecord &codec, CGDataProviderRef source,
                  const Presentation &presentation) {
  return cf::guarded([&]() -> CGImageRef {
    if (!source) return nullptr;
    auto decoded = codec.decode(cg::providerBytes(source), CGImageGetDecodeLimits());
    media::noteDecode(decoded.fault);
    if (!decoded) return nullptr;
    auto image = media::makeImage(decoded.value, presentation);
    if (!image) media::noteDecode(Fault::noMemory);
    return image.give();
  });
}

}  // namespace

CGImageRef CGImageCreateWithPNGDataProvider(CGDataProviderRef source, const CGFloat decodeArray[],
                                            bool shouldInterpolate, CGColorRenderingIntent intent) {
  return decode(codecs::kPngCodec, source, {decodeArray, shouldInterpolate, intent});
}

CGImageRef CGImageCreateWithJPEGDataProvider(CGDataProviderRef source, const CGFloat decodeArray[],
                                             bool shouldInterpolate, CGColorRenderingIntent intent) {
  return decode(codecs::kJpegCodec, source, {decodeArray, shouldInterpolate, intent});
}
