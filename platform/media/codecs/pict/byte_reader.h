// Reading the fields of a picture in order. Reading past the end gives zeros and is remembered, so that a
// record can be read whole and judged once.
#pragma once

#include "media/codecs/big_endian.h"
#include "media/codecs/codec.h"

namespace codecs::pict {

class ByteReader {
 public:
  explicit ByteReader(Bytes bytes) noexcept : bytes_(bytes) {}

  bool failed() const noexcept { return failed_; }
  size_t at() const noexcept { return at_; }
  size_t left() const noexcept { return bytes_.size() - at_; }
  Bytes rest() const noexcept { return bytes_.subspan(at_); }

  // The next `count` bytes; none of them when fewer are left.
  Bytes take(uint64_t count) noexcept {
    if (count > left()) {
      failed_ = true;
      at_ = bytes_.size();
      return {};
    }
    const Bytes taken = bytes_.subspan(at_, static_cast<size_t>(count));
    at_ += static_cast<size_t>(count);
    return taken;
  }
  void skip(uint64_t count) noexcept { take(count); }

  uint8_t u8() noexcept {
    const Bytes taken = take(1);
    return taken.empty() ? uint8_t{0} : taken[0];
  }
  uint16_t u16() noexcept {
    const Bytes taken = take(2);
    return taken.empty() ? uint16_t{0} : readBig16(taken, 0);
  }
  uint32_t u32() noexcept {
    const Bytes taken = take(4);
    return taken.empty() ? 0 : readBig32(taken, 0);
  }
  int8_t i8() noexcept { return static_cast<int8_t>(u8()); }
  int16_t i16() noexcept { return static_cast<int16_t>(u16()); }
  int32_t i32() noexcept { return static_cast<int32_t>(u32()); }

 private:
  Bytes bytes_;
  size_t at_ = 0;
  bool failed_ = false;
};

}  // namespace codecs::pict
