// The rows of a TGA as they would lie in the file without runs.
#pragma once

#include <vector>

#include "media/codecs/codec.h"

namespace codecs {

class TgaRows {
 public:
  // May throw std::bad_alloc.
  TgaRows(Bytes data, bool runs, uint32_t width, size_t pixelBytes);

  // The next row; null when the data ends before it does. Valid until the next call.
  const uint8_t *next() noexcept;

 private:
  const uint8_t *nextPlain() noexcept;
  bool startPacket() noexcept;
  bool take(size_t pixels, uint8_t *out) noexcept;

  Bytes data_;
  size_t at_ = 0;
  bool runs_;
  uint32_t width_;
  size_t pixelBytes_;
  size_t left_ = 0;                 // pixels of the packet, which may go on in the next row
  bool repeats_ = false;            // the packet is one pixel many times
  const uint8_t *pixel_ = nullptr;  // that one
  std::vector<uint8_t> row_;
};

}  // namespace codecs
