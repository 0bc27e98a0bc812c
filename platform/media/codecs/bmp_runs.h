// The runs of a compressed BMP, row by row.
#pragma once

#include "media/codecs/codec.h"

namespace codecs {

class BmpRuns {
 public:
  // `bits` is 4, 8 or 24.
  BmpRuns(Bytes data, unsigned bits, uint32_t width, uint32_t height) noexcept
      : data_(data), bits_(bits), width_(width), height_(height), room_(roomFor(bits, width)) {}

  size_t rowBytes() const noexcept { return unitBytes() * room_; }

  // Fills the next row of the file, rowBytes() long: a byte for each index, or three for each pixel. What the
  // file steps over is 0. Runs that leave their row, or the image, are damage.
  Fault nextRow(uint8_t *row) noexcept;

 private:
  // Some programs pack the padding that a row would have without runs along with its pixels.
  static uint32_t roomFor(unsigned bits, uint32_t width) noexcept {
    const uint32_t step = bits == 4 ? 8 : 4;
    return (width + step - 1) / step * step;
  }
  size_t unitBytes() const noexcept { return bits_ == 24 ? 3 : 1; }
  bool has(size_t count) const noexcept { return count <= data_.size() - at_; }
  Fault readRun(uint8_t count, uint8_t *row) noexcept;
  Fault readEscape(uint8_t *row) noexcept;
  Fault readPixels(uint8_t count, uint8_t *row) noexcept;
  Fault skip() noexcept;

  Bytes data_;
  unsigned bits_;
  uint32_t width_;
  uint32_t height_;
  uint32_t room_;  // pixels of a row with its padding
  size_t at_ = 0;
  uint32_t x_ = 0;  // where the next pixel goes
  uint32_t y_ = 0;
  uint32_t row_ = 0;  // that is asked for next
  bool ended_ = false;
};

}  // namespace codecs
