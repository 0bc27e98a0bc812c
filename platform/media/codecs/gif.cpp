#include "media/codecs/gif.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "media/codecs/registry.h"

namespace codecs {
namespace {

constexpr std::array<uint32_t, 1> kImporterCodes{fourCharacterCode("GIFf")};

bool startsWith(Bytes head, std::string_view start) noexcept {
  return head.size() >= start.size() && std::equal(start.begin(), start.end(), head.begin());
}

}  // namespace

// Without the version's number it is a file cut short.
int scoreGif(Bytes head) noexcept {
  if (startsWith(head, "GIF87a") || startsWith(head, "GIF89a")) return 100;
  return head.size() < 6 && startsWith(head, "GIF8") ? 50 : 0;
}

constinit const CodecRecord kGifCodec{
    .name = "GIF",
    .extensions = "gif",
    .importerCodes = kImporterCodes,
    .exporterCode = 0,
    .score = scoreGif,
    .decode = decodeGif,
    .encode = nullptr,
    .alphaSupport = AlphaSupport::none,
    .reads = "the first frame: palettes, a transparent colour; interlaced, too",
};

}  // namespace codecs
