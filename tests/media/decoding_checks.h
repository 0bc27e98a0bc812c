// What every decoder is held to, whatever its format.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <vector>

#include "media/codecs/codec.h"

namespace decoding_checks {

using Decode = codecs::Result<codecs::DecodedImage> (*)(codecs::Bytes, const CGImageDecodeLimits &) noexcept;
using Argb = std::array<uint8_t, 4>;

// Row by row; grey as opaque colour.
inline std::vector<Argb> pixelsOf(const codecs::DecodedImage &image) {
  std::vector<Argb> pixels;
  const uint8_t *at = image.pixels.data();
  for (size_t i = 0; i < size_t{image.width} * image.height; ++i, at += bytesPerPixel(image.layout)) {
    if (image.layout == codecs::PixelLayout::grey8)
      pixels.push_back({255, at[0], at[0], at[0]});
    else
      pixels.push_back({at[0], at[1], at[2], at[3]});
  }
  return pixels;
}

inline int depthOf(codecs::PixelLayout layout) {
  return layout == codecs::PixelLayout::grey8 ? 8 : layout == codecs::PixelLayout::xrgb32 ? 24 : 32;
}

// What holds for every image that a decoder gives.
inline void expectSound(const codecs::DecodedImage &image) {
  ASSERT_EQ(image.rowBytes, image.width * bytesPerPixel(image.layout));
  ASSERT_EQ(image.pixels.size(), image.rowBytes * image.height);
  ASSERT_EQ(image.depth, depthOf(image.layout));
  if (image.layout != codecs::PixelLayout::xrgb32) return;
  for (size_t i = 0; i < image.pixels.size(); i += 4) ASSERT_EQ(image.pixels.data()[i], 255) << i;
}

inline void expectImage(const codecs::Result<codecs::DecodedImage> &decoded, uint32_t width, uint32_t height,
                        codecs::PixelLayout layout, const std::vector<Argb> &pixels) {
  ASSERT_EQ(decoded.fault, codecs::Fault::none);
  ASSERT_EQ(decoded.value.width, width);
  ASSERT_EQ(decoded.value.height, height);
  ASSERT_EQ(decoded.value.layout, layout);
  expectSound(decoded.value);
  const std::vector<Argb> found = pixelsOf(decoded.value);
  ASSERT_EQ(found.size(), pixels.size());
  for (size_t i = 0; i < found.size(); ++i)
    ASSERT_EQ(found[i], pixels[i]) << "at " << i % width << ", " << i / width;
}

// Cut before any of the first `needed` bytes the file is refused; `named` are those without which nobody can
// tell what it was to be. A block of its own for each, so that reading past its end shows.
inline void expectEveryTruncationFails(Decode decode, const std::vector<uint8_t> &file, size_t named,
                                       size_t needed) {
  const CGImageDecodeLimits limits = CGImageGetDefaultDecodeLimits();
  for (size_t length = 0; length < file.size(); ++length) {
    const std::vector<uint8_t> cut(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(length));
    const codecs::Fault fault = decode(cut, limits).fault;
    if (length < named) {
      ASSERT_EQ(fault, codecs::Fault::unknownFormat) << length;
    } else if (length < needed) {
      ASSERT_EQ(fault, codecs::Fault::truncated) << length;
    } else {
      ASSERT_EQ(fault, codecs::Fault::none) << length;
    }
  }
}

// Without check sums another picture may come out, but never half of one.
inline void expectFlippedBytesAreHarmless(Decode decode, const std::vector<uint8_t> &file) {
  CGImageDecodeLimits limits = CGImageGetDefaultDecodeLimits();
  limits.pixels = uint64_t{1} << 20;  // so that blank images of any size do not take all the time
  for (size_t at = 0; at < file.size(); ++at) {
    for (const int flip : {0x01, 0x02, 0x10, 0x80, 0xFF}) {
      std::vector<uint8_t> damaged = file;
      damaged[at] = static_cast<uint8_t>(damaged[at] ^ flip);
      const auto decoded = decode(damaged, limits);
      if (decoded) expectSound(decoded.value);
    }
  }
}

// The file's image has that size, in four bytes a pixel.
inline void expectLimitsAreHeld(Decode decode, const std::vector<uint8_t> &file, uint32_t width,
                                uint32_t height) {
  CGImageDecodeLimits limits = CGImageGetDefaultDecodeLimits();
  ASSERT_EQ(decode(file, limits).fault, codecs::Fault::none);
  limits.side = std::max(width, height) - 1;
  EXPECT_EQ(decode(file, limits).fault, codecs::Fault::tooLarge);
  limits.side = std::max(width, height);
  EXPECT_EQ(decode(file, limits).fault, codecs::Fault::none);
  limits.pixels = uint64_t{width} * height - 1;
  EXPECT_EQ(decode(file, limits).fault, codecs::Fault::tooLarge);
  limits.pixels = uint64_t{width} * height;
  limits.memoryBytes = uint64_t{width} * height * 4 - 1;
  EXPECT_EQ(decode(file, limits).fault, codecs::Fault::tooLarge);
}

}  // namespace decoding_checks
