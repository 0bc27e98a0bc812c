#include "facts.h"

#include "failure.h"
#include "hush.h"
#include "image.h"
#include "media/inspection.h"
#include "profile_name.h"

namespace {

std::string colorName(CGColorSpaceRef space) {
  switch (space ? CGColorSpaceGetNumberOfComponents(space) : 0) {
    case 1:
      return "gray";
    case 3:
      return "RGB";
    case 4:
      return "CMYK";
    default:
      return "unknown";
  }
}

bool hasAlpha(CGImageAlphaInfo info) noexcept {
  return info != kCGImageAlphaNone && info != kCGImageAlphaNoneSkipLast && info != kCGImageAlphaNoneSkipFirst;
}

CGImageFileInfo inspect(CFDataRef file) {
  const Hush hush;
  CGImageFileInfo info = {};
  if (!CGImageInspectData(CFDataGetBytePtr(file), static_cast<size_t>(CFDataGetLength(file)), &info)) {
    throw Failure(decodeFault());
  }
  return info;
}

std::optional<std::string> profileOf(CGColorSpaceRef space) {
  const auto bytes = cf::adopt(space ? CGColorSpaceCopyICCProfile(space) : nullptr);
  if (!bytes) return std::nullopt;
  return profileName(bytesOf(bytes.get()));
}

}  // namespace

Facts factsOf(CFDataRef file) {
  const CGImageFileInfo info = inspect(file);
  const Image image = decodeImage(file);
  CGImageRef pixels = DRAVCFImageGetCGImage(image.get());
  Facts facts;
  facts.format = info.format;
  facts.width = CGImageGetWidth(pixels);
  facts.height = CGImageGetHeight(pixels);
  facts.bitsPerComponent = CGImageGetBitsPerComponent(pixels);
  facts.bitsPerPixel = CGImageGetBitsPerPixel(pixels);
  facts.color = colorName(CGImageGetColorSpace(pixels));
  facts.hasAlpha = hasAlpha(CGImageGetAlphaInfo(pixels));
  if (info.profileBytes > 0) facts.profile = profileOf(CGImageGetColorSpace(pixels));
  facts.dotsPerInchX = info.dotsPerInchX;
  facts.dotsPerInchY = info.dotsPerInchY;
  facts.fileBytes = static_cast<size_t>(CFDataGetLength(file));
  return facts;
}
