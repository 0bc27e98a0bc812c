// The headers of a BMP, whichever version wrote them, brought to one form.
#pragma once

#include <array>

#include "media/codecs/codec.h"
#include "media/codecs/masked_pixels.h"

namespace codecs {

inline constexpr size_t kBmpFileHeaderBytes = 14;

enum class BmpPacking : uint8_t { plain, masked, runs };

struct BmpHeader {
  uint32_t width = 0;
  uint32_t height = 0;
  bool topDown = false;
  unsigned bits = 0;  // of a pixel
  BmpPacking packing = BmpPacking::plain;
  PixelMasks masks;                     // red, green, blue, alpha; of 16 and 32 bits
  std::array<uint32_t, 256> colours{};  // of 1 to 8 bits: pixels as they go into memory; the rest is black
  Bytes pixels;                         // from their first byte to the end of the file
  Bytes profile;                        // empty without
  Resolution resolution;

  // From the first row to the next, padding included.
  uint64_t rowBytes() const noexcept { return (uint64_t{width} * bits + 31) / 32 * 4; }
};

// Whether there is a version whose header has that many bytes.
bool isBmpHeaderSize(uint32_t bytes) noexcept;

Result<BmpHeader> readBmpHeader(Bytes file, const CGImageDecodeLimits &limits) noexcept;

}  // namespace codecs
