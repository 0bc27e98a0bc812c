#include "media/codecs/jpeg.h"

#include <array>

#include "media/codecs/jpeg_library.h"
#include "media/codecs/registry.h"

namespace codecs {
namespace {

constexpr std::array<uint32_t, 1> kImporterCodes{fourCharacterCode("JPEG")};

}  // namespace

// A start mark with the first byte of another mark; the start mark alone is a file cut short.
int scoreJpeg(Bytes head) noexcept {
  if (head.size() < 2 || head[0] != 0xFF || head[1] != 0xD8) return 0;
  if (head.size() == 2) return 50;
  return head[2] == 0xFF ? 100 : 0;
}

constinit const CodecRecord kJpegCodec{
    .name = "JPEG",
    .extensions = "jpg|jpeg|jpe|jfif",
    .importerCodes = kImporterCodes,
    .exporterCode = fourCharacterCode("JPEG"),
    .score = scoreJpeg,
    .decode = decodeJpeg,
    .encode = encodeJpeg,
    .alphaSupport = AlphaSupport::none,
    .reads = "baseline and progressive: grey, colour, CMYK",
    .writes = "grey or colour; what is transparent becomes white",
    .mostSide = JPEG_MAX_DIMENSION,
};

}  // namespace codecs
