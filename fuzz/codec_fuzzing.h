// What the codec fuzzers share.
#pragma once

#include <cstdlib>

#include "media/codecs/codec.h"

// Small enough that a fuzzer spends its time on the file's structure, not on zeroing pixels.
inline CGImageDecodeLimits fuzzingLimits() {
  CGImageDecodeLimits limits = CGImageGetDefaultDecodeLimits();
  limits.pixels = uint64_t{1} << 20;
  limits.memoryBytes = uint64_t{64} << 20;
  limits.workFree = uint64_t{1} << 24;
  limits.workPerByte = 16;
  return limits;
}

// Decodes, and holds a success to what every decoded image promises.
inline int fuzzDecoder(codecs::Result<codecs::DecodedImage> (*decode)(codecs::Bytes,
                                                                      const CGImageDecodeLimits &) noexcept,
                       const uint8_t *bytes, size_t size) {
  const auto decoded = decode(codecs::Bytes(bytes, size), fuzzingLimits());
  if (!decoded) return 0;
  const codecs::DecodedImage &image = decoded.value;
  if (image.rowBytes != image.width * bytesPerPixel(image.layout)) std::abort();
  if (image.pixels.size() != image.rowBytes * image.height) std::abort();
  if (image.layout == codecs::PixelLayout::xrgb32) {
    for (size_t i = 0; i < image.pixels.size(); i += 4) {
      if (image.pixels.data()[i] != 255) std::abort();
    }
  }
  return 0;
}
