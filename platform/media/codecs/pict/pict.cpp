#include "media/codecs/pict/pict.h"

#include <array>

#include "media/codecs/pict/picture.h"
#include "media/codecs/registry.h"

namespace codecs {
namespace {

constexpr std::array<uint32_t, 2> kImporterCodes{fourCharacterCode("PICT"), fourCharacterCode("PCT ")};

}  // namespace

int scorePict(Bytes head) noexcept { return pict::scorePicture(head); }

constinit const CodecRecord kPictCodec{
    .name = "PICT",
    .extensions = "pict|pct|pic",
    .importerCodes = kImporterCodes,
    .exporterCode = fourCharacterCode("PICT"),
    .score = scorePict,
    .decode = decodePict,
    .encode = encodePict,
    .alphaSupport = AlphaSupport::asStored,
    .decodeAtSize = decodePictAtSize,
    .reads = "versions 1 and 2: images, lines, shapes, text, alpha; drawn at any size",
    .writes = "version 2, one image: colour, alpha",
    .mostSide = kMostPictSide,
};

}  // namespace codecs
