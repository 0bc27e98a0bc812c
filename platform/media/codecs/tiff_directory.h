// The first directory of a TIFF, looked at before libtiff sees the file: libtiff allocates what a
// directory claims, entry by entry, and has no cap on the sum.
#pragma once

#include "media/codecs/codec.h"

namespace codecs {

enum class TiffCompression : uint16_t {
  none = 1,
  ccittRle = 2,
  ccittFax3 = 3,
  ccittFax4 = 4,
  lzw = 5,
  jpeg = 7,
  deflate = 8,
  packBits = 32773,
  oldDeflate = 32946,
  zstandard = 50000,
};

enum class TiffPhotometric : uint16_t {
  whiteIsZero = 0,
  blackIsZero = 1,
  rgb = 2,
  palette = 3,
  cmyk = 5,
  yCbCr = 6,
};

// How the pixels lie in the file. A chunk is a strip or a tile.
struct TiffDirectory {
  uint32_t width = 0;
  uint32_t height = 0;
  uint32_t samples = 1;  // of a pixel
  uint32_t bits = 1;     // of a sample
  TiffCompression compression = TiffCompression::none;
  TiffPhotometric photometric = TiffPhotometric::blackIsZero;
  bool planes = false;  // a chunk holds one sample of each pixel, not all
  bool tiled = false;
  uint32_t chunkWidth = 0;
  uint32_t chunkHeight = 0;

  uint32_t planeCount() const noexcept { return planes ? samples : 1; }
  uint32_t samplesTogether() const noexcept { return planes ? 1 : samples; }
  uint64_t chunkColumns() const noexcept { return (uint64_t{width} + chunkWidth - 1) / chunkWidth; }
  uint64_t chunkRows() const noexcept { return (uint64_t{height} + chunkHeight - 1) / chunkHeight; }
  uint64_t chunkCount() const noexcept { return chunkColumns() * chunkRows() * planeCount(); }
  uint64_t chunkRowBytes() const noexcept {
    return (uint64_t{chunkWidth} * samplesTogether() * bits + 7) / 8;
  }
};

// Checks the frame against the limits, the number of entries, that what they point to lies in the file
// and is not used over and over, that there are as many chunks as the frame needs, and that the file is
// long enough to hold the pixels. REQUIRES: scoreTiff(file) is not 0.
Result<TiffDirectory> inspectTiff(Bytes file, const CGImageDecodeLimits &limits) noexcept;

}  // namespace codecs
