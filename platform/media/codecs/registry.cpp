#include "media/codecs/registry.h"

#include <algorithm>
#include <array>

namespace codecs {
namespace {

constexpr std::array<const CodecRecord *, 4> kCodecs{&kPngCodec, &kJpegCodec, &kPictCodec, &kTiffCodec};

}  // namespace

std::span<const CodecRecord *const> all() noexcept { return kCodecs; }

const CodecRecord *recognise(Bytes file) noexcept {
  const Bytes head = file.first(std::min(file.size(), kHeadBytes));
  const CodecRecord *best = nullptr;
  int bestScore = 0;
  for (const CodecRecord *codec : kCodecs) {
    if (const int score = codec->score(head); score > bestScore) {
      best = codec;
      bestScore = score;
    }
  }
  return best;
}

const CodecRecord *forImporter(uint32_t code) noexcept {
  for (const CodecRecord *codec : kCodecs) {
    if (std::ranges::find(codec->importerCodes, code) != codec->importerCodes.end()) return codec;
  }
  return nullptr;
}

const CodecRecord *forExporter(uint32_t code) noexcept {
  for (const CodecRecord *codec : kCodecs) {
    if (codec->encode && codec->exporterCode == code) return codec;
  }
  return nullptr;
}

Result<DecodedImage> decodeAny(Bytes file, const CGImageDecodeLimits &limits) noexcept {
  const CodecRecord *codec = recognise(file);
  if (!codec) return Fault::unknownFormat;
  return codec->decode(file, limits);
}

}  // namespace codecs
