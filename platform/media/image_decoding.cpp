// Images straight from encoded bytes.

#include <CoreGraphics/CoreGraphics.h>

#include <cstdlib>

#include "foundation/guard.h"
#include "foundation/ref.h"
#include "graphics/data_provider.h"
#include "graphics/image.h"
#include "media/codecs/registry.h"
#include "media/decode_fault.h"
#include "media/decoded_spaces.h"

namespace {

using codecs::Fault;
using codecs::PixelLayout;

struct Presentation {
  const CGFloat *decode;
  bool shouldInterpolate;
  CGColorRenderingIntent intent;
};

CGImageAlphaInfo alphaInfoOf(PixelLayout layout) noexcept {
  switch (layout) {
    case PixelLayout::grey8:
      return kCGImageAlphaNone;
    case PixelLayout::xrgb32:
      return kCGImageAlphaNoneSkipFirst;
    case PixelLayout::argb32:
      return kCGImageAlphaFirst;
  }
  return kCGImageAlphaNone;
}

void freePixels(void *, const void *pixels, size_t) { std::free(const_cast<void *>(pixels)); }

// The pixels move into the provider; nothing is copied.
cf::Ref<CGDataProviderRef> providerOver(codecs::PixelBuffer &pixels) noexcept {
  auto provider = cf::adopt(CGDataProviderCreateWithData(nullptr, pixels.data(), pixels.size(), freePixels));
  if (provider) static_cast<void>(pixels.give());
  return provider;
}

cf::Ref<CGImageRef> wrap(codecs::DecodedImage &image, const Presentation &presentation) noexcept {
  const auto space = media::spaceOf(image);
  const auto provider = providerOver(image.pixels);
  if (!space || !provider) return nullptr;
  auto made =
      cf::adopt(CGImageCreate(image.width, image.height, 8, 8 * bytesPerPixel(image.layout), image.rowBytes,
                              space.get(), alphaInfoOf(image.layout), provider.get(), presentation.decode,
                              presentation.shouldInterpolate, presentation.intent));
  if (made) cg::setImageResolution(made.get(), {image.resolution.x, image.resolution.y});
  return made;
}

CGImageRef decode(const codecs::CodecRecord &codec, CGDataProviderRef source,
                  const Presentation &presentation) {
  return cf::guarded([&]() -> CGImageRef {
    if (!source) return nullptr;
    auto decoded = codec.decode(cg::providerBytes(source), CGImageGetDecodeLimits());
    media::noteDecode(decoded.fault);
    if (!decoded) return nullptr;
    auto image = wrap(decoded.value, presentation);
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
