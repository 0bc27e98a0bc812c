// Reading numbers whose lowest byte comes first.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace codecs {

// REQUIRES: at + 2 (or + 4) bytes are there.
inline uint16_t readLittle16(std::span<const uint8_t> bytes, size_t at) noexcept {
  return static_cast<uint16_t>(bytes[at] | bytes[at + 1] << 8);
}

inline uint32_t readLittle32(std::span<const uint8_t> bytes, size_t at) noexcept {
  return readLittle16(bytes, at) | uint32_t{readLittle16(bytes, at + 2)} << 16;
}

}  // namespace codecs
