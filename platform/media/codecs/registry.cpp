#include "media/codecs/registry.h"

#include <algorithm>
#include <array>

namespace codecs {
namespace {

constexpr std::array<const CodecRecord *, 8> kCodecs{&kPngCodec, &kJpegCodec, &kPictCodec, &kTiffCodec,
                                                     &kGifCodec, &kBmpCodec,  &kTgaCodec,  &kWebpCodec};

}  // namespace

std::span<const CodecRecord *const> all() noexcept { return kCodecs; }

const CodecRecord *recognise(Bytes file) noexcept {
  const CodecRecord *best = nullptr;
  int bestScore = 0;
  for (const CodecRecord *codec : kCodecs) {
    if (const int score = codec->score(file); score > bestScore) {
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
