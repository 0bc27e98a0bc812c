#include "media/codecs/png.h"

#include <algorithm>
#include <array>

#include "media/codecs/registry.h"

namespace codecs {
namespace {

constexpr std::array<uint8_t, 8> kSignature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
constexpr std::array<uint32_t, 1> kImporterCodes{fourCharacterCode("PNGf")};

}  // namespace

// Four bytes of the signature are enough to tell a PNG that was cut short from something else.
int scorePng(Bytes head) noexcept {
  const size_t seen = std::min(head.size(), kSignature.size());
  if (seen < 4 ||
      !std::equal(head.begin(), head.begin() + static_cast<std::ptrdiff_t>(seen), kSignature.begin()))
    return 0;
  return seen == kSignature.size() ? 100 : 50;
}

constinit const CodecRecord kPngCodec{
    .name = "PNG",
    .extensions = "png",
    .importerCodes = kImporterCodes,
    .exporterCode = fourCharacterCode("PNGf"),
    .score = scorePng,
    .decode = decodePng,
    .encode = encodePng,
    .alphaSupport = AlphaSupport::straight,
    .reads = "1 to 16 bits: grey, colour, palettes, alpha; interlaced, too",
    .writes = "8 bits: grey or colour, alpha",
};

}  // namespace codecs
