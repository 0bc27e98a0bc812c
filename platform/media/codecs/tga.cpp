#include "media/codecs/tga.h"

#include <array>

#include "media/codecs/registry.h"
#include "media/codecs/tga_header.h"

namespace codecs {
namespace {

constexpr std::array<uint32_t, 1> kImporterCodes{fourCharacterCode("TPIC")};

}  // namespace

int scoreTga(Bytes file) noexcept {
  if (!readTgaHeader(file)) return 0;
  if (hasTgaFooter(file)) return 70;
  return isStrictTgaHeader(file) ? 5 : 0;
}

constinit const CodecRecord kTgaCodec{
    .name = "TGA",
    .extensions = "tga|targa|vda|icb",
    .importerCodes = kImporterCodes,
    .exporterCode = 0,
    .score = scoreTga,
    .decode = decodeTga,
    .encode = nullptr,
    .alphaSupport = AlphaSupport::none,
    .reads = "palettes, grey, colour of 15 to 32 bits, alpha, runs",
};

}  // namespace codecs
