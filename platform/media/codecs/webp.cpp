#include "media/codecs/webp.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "media/codecs/registry.h"

namespace codecs {
namespace {

constexpr std::array<uint32_t, 1> kImporterCodes{fourCharacterCode("WEBP")};

bool holdsAt(Bytes head, size_t at, std::string_view text) noexcept {
  return head.size() >= at + text.size() &&
         std::equal(text.begin(), text.end(), head.begin() + static_cast<std::ptrdiff_t>(at));
}

}  // namespace

// The container holds sounds and films as well; before its kind is told it may be any of them.
int scoreWebp(Bytes head) noexcept {
  if (!holdsAt(head, 0, "RIFF")) return 0;
  if (head.size() < 12) return 20;
  return holdsAt(head, 8, "WEBP") ? 100 : 0;
}

constinit const CodecRecord kWebpCodec{
    .name = "WebP",
    .extensions = "webp",
    .importerCodes = kImporterCodes,
    .exporterCode = 0,
    .score = scoreWebp,
    .decode = decodeWebp,
    .encode = nullptr,
    .alphaSupport = AlphaSupport::none,
    .reads = "lossy and lossless, alpha; the first frame of an animation",
};

}  // namespace codecs
