#include "media/decoded_image.h"

#include <cstdlib>

#include "graphics/image.h"
#include "media/decoded_spaces.h"

namespace media {
namespace {

using codecs::PixelLayout;

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

}  // namespace

cf::Ref<CGImageRef> makeImage(codecs::DecodedImage &image, const Presentation &presentation) noexcept {
  const auto space = spaceOf(image);
  const auto provider = providerOver(image.pixels);
  if (!space || !provider) return nullptr;
  auto made =
      cf::adopt(CGImageCreate(image.width, image.height, 8, 8 * bytesPerPixel(image.layout), image.rowBytes,
                              space.get(), alphaInfoOf(image.layout), provider.get(), presentation.decode,
                              presentation.shouldInterpolate, presentation.intent));
  if (made) cg::setImageResolution(made.get(), {image.resolution.x, image.resolution.y});
  return made;
}

}  // namespace media
