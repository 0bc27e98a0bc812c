#include "media/codecs/tiff.h"

#include <algorithm>
#include <array>

#include "media/codecs/registry.h"

namespace codecs {
namespace {

constexpr std::array<uint32_t, 1> kImporterCodes{fourCharacterCode("TIFF")};

bool startsWith(Bytes head, const std::array<uint8_t, 4> &start) noexcept {
  return head.size() >= start.size() && std::equal(start.begin(), start.end(), head.begin());
}

}  // namespace

int scoreTiff(Bytes head) noexcept {
  static constexpr std::array<std::array<uint8_t, 4>, 4> kStarts{
      {{'I', 'I', 42, 0}, {'M', 'M', 0, 42}, {'I', 'I', 43, 0}, {'M', 'M', 0, 43}}};
  return std::ranges::any_of(kStarts, [&](const auto &start) { return startsWith(head, start); }) ? 90 : 0;
}

constinit const CodecRecord kTiffCodec{
    .name = "TIFF",
    .extensions = "tif|tiff",
    .importerCodes = kImporterCodes,
    .exporterCode = fourCharacterCode("TIFF"),
    .score = scoreTiff,
    .decode = decodeTiff,
    .encode = encodeTiff,
    .alphaSupport = AlphaSupport::asStored,
    .reads = "the first page, 1 to 16 bits: grey, colour, palettes, CMYK, alpha",
    .writes = "8 bits, deflated: grey or colour, alpha",
};

}  // namespace codecs
