#include "media/codecs/tga_rows.h"

#include <algorithm>
#include <cstring>

namespace codecs {
namespace {

constexpr uint8_t kRepeats = 0x80;

void repeat(const uint8_t *pixel, size_t pixelBytes, size_t count, uint8_t *out) noexcept {
  if (pixelBytes == 1) return void(std::memset(out, *pixel, count));
  for (size_t i = 0; i < count; ++i, out += pixelBytes) std::memcpy(out, pixel, pixelBytes);
}

}  // namespace

TgaRows::TgaRows(Bytes data, bool runs, uint32_t width, size_t pixelBytes)
    : data_(data), runs_(runs), width_(width), pixelBytes_(pixelBytes) {
  if (runs) row_.resize(width * pixelBytes);
}

const uint8_t *TgaRows::nextPlain() noexcept {
  const size_t bytes = width_ * pixelBytes_;
  if (bytes > data_.size() - at_) return nullptr;
  const uint8_t *const row = data_.data() + at_;
  at_ += bytes;
  return row;
}

bool TgaRows::startPacket() noexcept {
  if (at_ == data_.size()) return false;
  const uint8_t start = data_[at_++];
  left_ = size_t{start} % kRepeats + 1;
  repeats_ = (start & kRepeats) != 0;
  if (!repeats_) return true;
  if (pixelBytes_ > data_.size() - at_) return false;
  pixel_ = data_.data() + at_;
  at_ += pixelBytes_;
  return true;
}

bool TgaRows::take(size_t pixels, uint8_t *out) noexcept {
  left_ -= pixels;
  if (repeats_) {
    repeat(pixel_, pixelBytes_, pixels, out);
    return true;
  }
  const size_t bytes = pixels * pixelBytes_;
  if (bytes > data_.size() - at_) return false;
  std::memcpy(out, data_.data() + at_, bytes);
  at_ += bytes;
  return true;
}

const uint8_t *TgaRows::next() noexcept {
  if (!runs_) return nextPlain();
  for (size_t x = 0; x < width_;) {
    if (left_ == 0 && !startPacket()) return nullptr;
    const size_t pixels = std::min(left_, width_ - x);
    if (!take(pixels, row_.data() + x * pixelBytes_)) return nullptr;
    x += pixels;
  }
  return row_.data();
}

}  // namespace codecs
