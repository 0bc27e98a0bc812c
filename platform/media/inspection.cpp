#include "media/inspection.h"

#include <algorithm>

#include "media/codecs/registry.h"
#include "media/decode_fault.h"

namespace {

void fill(CGImageFileInfo &info, const codecs::CodecRecord &codec,
          const codecs::DecodedImage &image) noexcept {
  info = {};
  codec.name.copy(info.format, std::min(codec.name.size(), sizeof info.format - 1));
  info.width = image.width;
  info.height = image.height;
  info.depth = image.depth;
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
