#include "media/drawings.h"

#include "foundation/guard.h"
#include "media/codecs/pict/opcode.h"
#include "media/codecs/pict/survey.h"
#include "media/codecs/registry.h"
#include "media/decode_fault.h"
#include "media/decoded_image.h"

namespace {

struct Listing {
  CGPictureOpcodeCallback callback;
  void *context;

  // Names are literals, so that what follows them is the end of the text.
  static void visit(void *self, uint16_t code, size_t bytes) {
    const auto &listing = *static_cast<const Listing *>(self);
    listing.callback(listing.context, code, codecs::pict::opcodeName(code).data(), bytes);
  }
};

Rect rectOf(const codecs::pict::Box &box) noexcept {
  return {static_cast<int16_t>(box.top), static_cast<int16_t>(box.left), static_cast<int16_t>(box.bottom),
          static_cast<int16_t>(box.right)};
}

CGPictureInfo infoOf(const codecs::pict::Survey &survey) noexcept {
  const codecs::pict::Picture &picture = survey.picture;
  return {.version = picture.version,
          .isExtended = picture.isExtended,
          .frame = rectOf(picture.frame),
          .drawing = rectOf(picture.drawing),
          .dotsPerInchX = picture.resolution.x,
          .dotsPerInchY = picture.resolution.y,
          .opcodes = survey.opcodes};
}

codecs::Bytes spanOf(const void *bytes, size_t length) noexcept {
  return {static_cast<const uint8_t *>(bytes), bytes ? length : 0};
}

}  // namespace

Boolean CGImageInspectPicture(const void *bytes, size_t length, CGPictureInfo *info,
                              CGPictureOpcodeCallback callback, void *context) {
  Listing listing{callback, context};
  const codecs::pict::OpcodeVisitor visitor{callback ? Listing::visit : nullptr, &listing};
  const auto survey = codecs::pict::surveyPicture(spanOf(bytes, length), CGImageGetDecodeLimits(), visitor);
  media::noteDecode(survey.fault);
  if (survey && info) *info = infoOf(survey.value);
  return static_cast<bool>(survey);
}

CGImageRef CGImageCreateDrawingAtSize(const void *bytes, size_t length, uint32_t width, uint32_t height) {
  return cf::guarded([&]() -> CGImageRef {
    const codecs::Bytes file = spanOf(bytes, length);
    const codecs::CodecRecord *codec = codecs::recognise(file);
    const codecs::Fault refused = codec ? codecs::Fault::unsupported : codecs::Fault::unknownFormat;
    media::noteDecode(refused);
    if (!codec || !codec->decodeAtSize) return nullptr;
    auto decoded = codec->decodeAtSize(file, width, height, CGImageGetDecodeLimits());
    media::noteDecode(decoded.fault);
    return decoded ? media::makeImage(decoded.value).give() : nullptr;
  });
}
