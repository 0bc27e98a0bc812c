// Reading numbers whose top byte comes first.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace codecs {

// REQUIRES: at + 2 (or + 4) bytes are there.
inline uint16_t readBig16(std::span<const uint8_t> bytes, size_t at) noexcept {
  return static_cast<uint16_t>(bytes[at] << 8 | bytes[at + 1]);
}

inline uint32_t readBig32(std::span<const uint8_t> bytes, size_t at) noexcept {
  return uint32_t{readBig16(bytes, at)} << 16 | readBig16(bytes, at + 2);
}

}  // namespace codecs
