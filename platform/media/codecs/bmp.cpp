#include "media/codecs/bmp.h"

#include <array>

#include "media/codecs/bmp_header.h"
#include "media/codecs/little_endian.h"
#include "media/codecs/registry.h"

namespace codecs {
namespace {

constexpr std::array<uint32_t, 1> kImporterCodes{fourCharacterCode("BMPf")};

}  // namespace

// Two letters are not much: the size of the second header has to be one that there is.
int scoreBmp(Bytes head) noexcept {
  if (head.size() < 2 || head[0] != 'B' || head[1] != 'M') return 0;
  if (head.size() < kBmpFileHeaderBytes + 4) return 10;
  return isBmpHeaderSize(readLittle32(head, kBmpFileHeaderBytes)) ? 80 : 0;
}

constinit const CodecRecord kBmpCodec{
    .name = "BMP",
    .extensions = "bmp|dib",
    .importerCodes = kImporterCodes,
    .exporterCode = 0,
    .score = scoreBmp,
    .decode = decodeBmp,
    .encode = nullptr,
    .alphaSupport = AlphaSupport::none,
    .reads = "1 to 32 bits: palettes, masks, alpha, runs; headers of every version",
};

}  // namespace codecs
