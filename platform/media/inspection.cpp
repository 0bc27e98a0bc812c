#include "media/inspection.h"

#include <algorithm>

#include "foundation/guard.h"
#include "media/codecs/registry.h"
#include "media/decode_fault.h"
#include "media/profile_name.h"

namespace {

// As much of the text as fits, whole characters only, and a zero.
template <size_t N>
void copyText(std::string_view text, char (&to)[N]) noexcept {
  size_t length = std::min(text.size(), N - 1);
  while (length < text.size() && length > 0 && (static_cast<uint8_t>(text[length]) & 0xC0) == 0x80) --length;
  to[text.copy(to, length)] = 0;
}

void fill(CGImageFileInfo &info, const codecs::CodecRecord &codec,
          const codecs::DecodedImage &image) noexcept {
  info = {};
  copyText(codec.name, info.format);
  info.width = image.width;
  info.height = image.height;
  info.depth = image.depth;
  info.colorComponents = image.layout == codecs::PixelLayout::grey8 ? 1 : 3;
  info.hasAlpha = image.layout == codecs::PixelLayout::argb32;
  if (!image.profile.empty()) {
    copyText(cf::guarded([&] { return media::profileName(image.profile); }), info.profileName);
  }
  info.dotsPerInchX = image.resolution.x;
  info.dotsPerInchY = image.resolution.y;
}

codecs::Fault inspect(codecs::Bytes file, CGImageFileInfo &info) noexcept {
  const codecs::CodecRecord *codec = codecs::recognise(file);
  if (!codec) return codecs::Fault::unknownFormat;
  const auto decoded = codec->decode(file, CGImageGetDecodeLimits());
  if (decoded) fill(info, *codec, decoded.value);
  return decoded.fault;
}

}  // namespace

Boolean CGImageInspectData(const void *bytes, size_t length, CGImageFileInfo *info) {
  CGImageFileInfo ignored;
  const codecs::Bytes file(static_cast<const uint8_t *>(bytes), bytes ? length : 0);
  const codecs::Fault fault = inspect(file, info ? *info : ignored);
  media::noteDecode(fault);
  return fault == codecs::Fault::none;
}
