#include "media/decoded_spaces.h"

#include "graphics/profile.h"

namespace media {
namespace {

cf::Ref<CGColorSpaceRef> embeddedSpace(const codecs::DecodedImage &image) noexcept {
  if (image.profile.empty()) return nullptr;
  const auto data = cf::adopt(
      CFDataCreate(kCFAllocatorDefault, image.profile.data(), static_cast<CFIndex>(image.profile.size())));
  if (!data) return nullptr;
  auto space = cf::adopt(CGColorSpaceCreateWithICCProfile(data.get()));
  const size_t wanted = image.layout == codecs::PixelLayout::grey8 ? 1 : 3;
  if (space && CGColorSpaceGetNumberOfComponents(space.get()) != wanted) space.reset();
  return space;
}

cf::Ref<CGColorSpaceRef> makeDisplaySpace() noexcept {
  CMProfileRef profile = nullptr;
  if (CMGetSystemProfile(&profile) != 0) return nullptr;
  auto space = cf::adopt(CGColorSpaceCreateWithPlatformColorSpace(profile));
  CMCloseProfile(profile);
  return space;
}

}  // namespace

cf::Ref<CGColorSpaceRef> displaySpace() noexcept {
  static const cf::Ref<CGColorSpaceRef> shared = makeDisplaySpace();
  return shared ? shared : makeDisplaySpace();
}

cf::Ref<CGColorSpaceRef> spaceOf(const codecs::DecodedImage &image) noexcept {
  if (auto space = embeddedSpace(image)) return space;
  if (image.layout == codecs::PixelLayout::grey8) return cf::adopt(CGColorSpaceCreateDeviceGray());
  return displaySpace();
}

}  // namespace media
