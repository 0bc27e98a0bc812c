// The built-in importers: a codec behind the component calls.

#include <cmath>
#include <limits>
#include <new>

#include "media/builtin_components.h"
#include "media/codecs/registry.h"
#include "media/decode_fault.h"
#include "media/world_rows.h"

namespace media {
namespace {

struct Importer {
  const ComponentTable *table;
  codecs::Bytes file{};
  bool decoded = false;  // tried, that is; `fault` tells how it went
  codecs::Fault fault = codecs::Fault::none;
  codecs::DecodedImage image{};

  const codecs::CodecRecord &codec() const noexcept {
    return *static_cast<const codecs::CodecRecord *>(table->context);
  }
};

Importer &stateOf(void *self) noexcept { return *static_cast<Importer *>(self); }

// 16 bits with a sign is all that a description has for a side.
bool canBeDescribed(const codecs::DecodedImage &image) noexcept {
  constexpr auto kMost = static_cast<uint32_t>(std::numeric_limits<int16_t>::max());
  return image.width <= kMost && image.height <= kMost;
}

codecs::Fault decodeOnce(Importer &importer) noexcept {
  if (!importer.decoded) {
    auto result = importer.codec().decode(importer.file, CGImageGetDecodeLimits());
    importer.decoded = true;
    importer.fault = result.fault;
    importer.image = std::move(result.value);
    if (result && !canBeDescribed(importer.image)) importer.fault = codecs::Fault::tooLarge;
  }
  noteDecode(importer.fault);
  return importer.fault;
}

// Pictures that make no sense have an error number of their own.
ComponentResult errorOf(const Importer &importer, codecs::Fault fault) noexcept {
  const ComponentResult error = errorFor(fault);
  return error == codecBadDataErr && &importer.codec() == &codecs::kPictCodec
             ? ComponentResult{pictureDataErr}
             : error;
}

Fixed toFixed(double dotsPerInch) noexcept {
  return dotsPerInch > 0 && dotsPerInch < 32767 ? static_cast<Fixed>(std::lround(dotsPerInch * 65536)) : 0;
}

OSErr open(const ComponentTable *table, void **self) {
  *self = new (std::nothrow) Importer{.table = table};
  return *self ? OSErr{noErr} : OSErr{memFullErr};
}

void close(void *self) { delete static_cast<Importer *>(self); }

int validate(const ComponentTable *table, const uint8_t *bytes, size_t size) {
  const auto &codec = *static_cast<const codecs::CodecRecord *>(table->context);
  return codec.score(codecs::Bytes(bytes, size));
}

ComponentResult setData(void *self, const uint8_t *bytes, size_t size) {
  Importer &importer = stateOf(self);
  importer.file = {bytes, size};
  importer.decoded = false;
  importer.image = {};
  return noErr;
}

ComponentResult getDescription(void *self, ImageDescription *description) {
  Importer &importer = stateOf(self);
  if (const codecs::Fault fault = decodeOnce(importer); fault != codecs::Fault::none)
    return errorOf(importer, fault);
  const codecs::DecodedImage &image = importer.image;
  description->width = static_cast<int16_t>(image.width);
  description->height = static_cast<int16_t>(image.height);
  description->depth = static_cast<int16_t>(image.depth);
  description->hRes = toFixed(image.resolution.x);
  description->vRes = toFixed(image.resolution.y);
  return noErr;
}

ComponentResult getProfile(void *self, Handle *profile) {
  Importer &importer = stateOf(self);
  if (const codecs::Fault fault = decodeOnce(importer); fault != codecs::Fault::none)
    return errorOf(importer, fault);
  const auto &bytes = importer.image.profile;
  if (bytes.empty()) return noErr;
  return PtrToHand(bytes.data(), profile, static_cast<Size>(bytes.size()));
}

// Pictures keep their pixels as they are stored; everything else is drawn premultiplied.
AlphaStyle alphaStyleOf(OSType subType) noexcept {
  if (subType == MEDIA_CODE('P', 'C', 'T', ' ')) return AlphaStyle::straight;
  if (subType == MEDIA_CODE('P', 'I', 'C', 'T')) return AlphaStyle::skipped;
  return AlphaStyle::premultiplied;
}

ComponentResult draw(void *self, const OffscreenWorld *world) {
  Importer &importer = stateOf(self);
  if (const codecs::Fault fault = decodeOnce(importer); fault != codecs::Fault::none)
    return errorOf(importer, fault);
  drawInto(*world, importer.image, alphaStyleOf(importer.table->subType));
  return noErr;
}

}  // namespace

constinit const ComponentTable kImporterFunctions{
    .type = GraphicsImporterComponentType,
    .subType = 0,
    .context = nullptr,
    .open = open,
    .close = close,
    .validate = validate,
    .setData = setData,
    .getDescription = getDescription,
    .getProfile = getProfile,
    .draw = draw,
    .encode = nullptr,
};

}  // namespace media
