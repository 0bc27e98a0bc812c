// libtiff over bytes in memory, silent, each handle with messages of its own.
#pragma once

#include <tiffio.h>

#include <memory>
#include <vector>

#include "media/codecs/codec.h"

namespace codecs {

struct CloseTiff {
  void operator()(TIFF *tiff) const noexcept { TIFFClose(tiff); }
};
using TiffHandle = std::unique_ptr<TIFF, CloseTiff>;

// What libtiff complained about while a handle was in use.
struct TiffMessages {
  bool error = false;       // something failed, though libtiff may have gone on
  bool lostPixels = false;  // a warning that says that pixels are missing or invented
};

// The file as libtiff sees it.
struct TiffInput {
  Bytes file;
  uint64_t at = 0;
};

// Where libtiff writes; running out of memory once is for ever.
struct TiffOutput {
  std::vector<uint8_t> &file;
  size_t start;  // of this TIFF in the vector
  uint64_t at = 0;
  bool ranOut = false;
};

// Empty on failure. What is passed is borrowed until the handle is closed.
TiffHandle openTiff(TiffInput &input, TiffMessages &messages, uint64_t mostBytesAtOnce) noexcept;
TiffHandle createTiff(TiffOutput &output, TiffMessages &messages) noexcept;

}  // namespace codecs
