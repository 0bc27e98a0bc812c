#include "media/codecs/bmp_runs.h"

#include <algorithm>
#include <cstring>

namespace codecs {
namespace {

enum Escape : uint8_t { kEndOfRow = 0, kEndOfImage = 1, kSkip = 2 };

uint8_t nibble(const uint8_t *bytes, size_t number) noexcept {
  const uint8_t both = bytes[number / 2];
  return number % 2 == 0 ? both >> 4 : both & 15;
}

}  // namespace

// A row that is full needs no mark that ends it, and the last one no mark that ends the image.
Fault BmpRuns::nextRow(uint8_t *row) noexcept {
  std::memset(row, 0, rowBytes());
  const uint32_t wanted = row_++;
  while (!ended_ && y_ == wanted) {
    if (!has(2)) return x_ >= width_ && wanted + 1 == height_ ? Fault::none : Fault::truncated;
    const uint8_t count = data_[at_++];
    const Fault fault = count == 0 ? readEscape(row) : readRun(count, row);
    if (fault != Fault::none) return fault;
  }
  return Fault::none;
}

Fault BmpRuns::readRun(uint8_t count, uint8_t *row) noexcept {
  if (!has(unitBytes())) return Fault::truncated;
  if (count > room_ - x_) return Fault::damaged;
  const uint8_t *const value = data_.data() + at_;
  at_ += unitBytes();
  uint8_t *const out = row + unitBytes() * x_;
  x_ += count;
  if (bits_ == 8) {
    std::memset(out, *value, count);
  } else if (bits_ == 4) {
    for (size_t i = 0; i < count; ++i) out[i] = nibble(value, i % 2);
  } else {
    for (size_t i = 0; i < count; ++i) std::memcpy(out + 3 * i, value, 3);
  }
  return Fault::none;
}

Fault BmpRuns::readEscape(uint8_t *row) noexcept {
  const uint8_t escape = data_[at_++];
  switch (escape) {
    case kEndOfRow:
      x_ = 0;
      ++y_;
      return Fault::none;
    case kEndOfImage:
      ended_ = true;
      return Fault::none;
    case kSkip:
      return skip();
    default:
      return readPixels(escape, row);
  }
}

Fault BmpRuns::skip() noexcept {
  if (!has(2)) return Fault::truncated;
  const uint32_t right = data_[at_], on = data_[at_ + 1];
  at_ += 2;
  if (right > room_ - x_ || on >= height_ - y_) return Fault::damaged;
  x_ += right;
  y_ += on;
  return Fault::none;
}

// Pixels one by one, padded to two bytes.
Fault BmpRuns::readPixels(uint8_t count, uint8_t *row) noexcept {
  const size_t bytes = (size_t{count} * bits_ + 7) / 8;
  if (!has(bytes)) return Fault::truncated;
  if (count > room_ - x_) return Fault::damaged;
  const uint8_t *const values = data_.data() + at_;
  at_ += std::min(bytes + bytes % 2, data_.size() - at_);
  uint8_t *const out = row + unitBytes() * x_;
  x_ += count;
  if (bits_ == 4) {
    for (size_t i = 0; i < count; ++i) out[i] = nibble(values, i);
  } else {
    std::memcpy(out, values, bytes);
  }
  return Fault::none;
}

}  // namespace codecs
