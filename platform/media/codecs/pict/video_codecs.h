// The small codecs that compressed images inside pictures come in: one frame of each.
#pragma once

#include "media/codecs/pict/compressed_image.h"

namespace codecs::pict {

bool isVideoCodec(uint32_t codec) noexcept;

// unsupported: not one of these codecs, or a depth that it does not have.
Result<DecodedImage> decodeVideoFrame(const ImageDescription &description, Bytes data,
                                      const CGImageDecodeLimits &limits) noexcept;

// What a decoder of one codec is: fills `image`, which has the description's size and is black, opaque.
using FrameDecoder = Fault (*)(const ImageDescription &description, Bytes data, DecodedImage &image);

Fault decodeRaw(const ImageDescription &description, Bytes data, DecodedImage &image);
Fault decodeRle(const ImageDescription &description, Bytes data, DecodedImage &image);
Fault decodeRpza(const ImageDescription &description, Bytes data, DecodedImage &image);
Fault decodeCvid(const ImageDescription &description, Bytes data, DecodedImage &image);
Fault decodeSmc(const ImageDescription &description, Bytes data, DecodedImage &image);
Fault decodeWrle(const ImageDescription &description, Bytes data, DecodedImage &image);
Fault decode8bps(const ImageDescription &description, Bytes data, DecodedImage &image);
Fault decodePntg(const ImageDescription &description, Bytes data, DecodedImage &image);
Fault decodeYuv2(const ImageDescription &description, Bytes data, DecodedImage &image);

// Row y of an image that is being decoded.
inline Pixel *pixelRow(DecodedImage &image, uint32_t y) noexcept {
  return reinterpret_cast<Pixel *>(image.row(y));
}

}  // namespace codecs::pict
