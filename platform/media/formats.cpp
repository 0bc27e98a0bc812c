#include "media/formats.h"

#include <algorithm>

#include "foundation/guard.h"
#include "media/codecs/registry.h"
#include "media/decode_fault.h"
#include "media/decoded_image.h"

namespace {

codecs::Bytes spanOf(const void *bytes, size_t length) noexcept {
  return {static_cast<const uint8_t *>(bytes), bytes ? length : 0};
}

// The record's texts are literals, so that what follows them is the end of the text.
CGImageFormatInfo infoOf(const codecs::CodecRecord &codec) noexcept {
  return {.name = codec.name.data(),
          .extensions = codec.extensions.data(),
          .reads = codec.reads.data(),
          .writes = codec.writes.data(),
          .exporter = codec.encode ? codec.exporterCode : 0,
          .mostSide = codec.mostSide,
          .holdsDrawings = codec.decodeAtSize != nullptr};
}

}  // namespace

size_t CGImageGetFormatCount(void) { return codecs::all().size(); }

Boolean CGImageGetFormat(size_t index, CGImageFormatInfo *info) {
  if (!info || index >= codecs::all().size()) return 0;
  *info = infoOf(*codecs::all()[index]);
  return 1;
}

size_t CGImageRecogniseFormat(const void *bytes, size_t length) {
  const auto formats = codecs::all();
  const auto found = std::ranges::find(formats, codecs::recognise(spanOf(bytes, length)));
  return static_cast<size_t>(found - formats.begin());
}

CGImageRef CGImageCreateWithEncodedData(const void *bytes, size_t length) {
  return cf::guarded([&]() -> CGImageRef {
    auto decoded = codecs::decodeAny(spanOf(bytes, length), CGImageGetDecodeLimits());
    media::noteDecode(decoded.fault);
    if (!decoded) return nullptr;
    auto image = media::makeImage(decoded.value);
    if (!image) media::noteDecode(codecs::Fault::noMemory);
    return image.give();
  });
}
