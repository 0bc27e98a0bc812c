#include "media/codecs/pict/video_codecs.h"

#include <algorithm>
#include <new>

#include "media/codecs/frame.h"

namespace codecs::pict {
namespace {

struct Named {
  uint32_t codec;
  FrameDecoder decode;
};

constexpr std::array kDecoders = std::to_array<Named>({
    {fourCharacterCode("raw "), decodeRaw},
    {fourCharacterCode("rle "), decodeRle},
    {fourCharacterCode("rpza"), decodeRpza},
    {fourCharacterCode("cvid"), decodeCvid},
    {fourCharacterCode("smc "), decodeSmc},
    {fourCharacterCode("WRLE"), decodeWrle},
    {fourCharacterCode("8BPS"), decode8bps},
    {fourCharacterCode("yuv2"), decodeYuv2},
    {fourCharacterCode("PNTG"), decodePntg},
});

FrameDecoder decoderOf(uint32_t codec) noexcept {
  const auto *found = std::ranges::find(kDecoders, codec, &Named::codec);
  return found == kDecoders.end() ? nullptr : found->decode;
}

Fault decodeInto(FrameDecoder decode, const ImageDescription &description, Bytes data,
                 DecodedImage &image) noexcept {
  try {
    std::fill_n(pixelRow(image, 0), size_t{image.width} * image.height, kBlack);
    return decode(description, data, image);
  } catch (const std::bad_alloc &) {
    return Fault::noMemory;
  }
}

}  // namespace

bool isVideoCodec(uint32_t codec) noexcept { return decoderOf(codec) != nullptr; }

Result<DecodedImage> decodeVideoFrame(const ImageDescription &description, Bytes data,
                                      const CGImageDecodeLimits &limits) noexcept {
  const FrameDecoder decode = decoderOf(description.codec);
  if (!decode) return Fault::unsupported;
  DecodedImage image;
  Fault fault = makeFrame(image, description.width, description.height, PixelLayout::xrgb32, limits);
  if (fault == Fault::none) fault = decodeInto(decode, description, data, image);
  if (fault != Fault::none) return fault;
  image.depth = 24;
  return image;
}

}  // namespace codecs::pict
