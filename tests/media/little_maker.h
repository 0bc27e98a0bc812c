// Bytes of formats whose numbers start with the lowest byte.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

struct LittleMaker {
  std::vector<uint8_t> bytes{};

  LittleMaker &u8(uint32_t value) {
    bytes.push_back(static_cast<uint8_t>(value));
    return *this;
  }
  LittleMaker &u16(uint32_t value) { return u8(value).u8(value >> 8); }
  LittleMaker &u24(uint32_t value) { return u16(value).u8(value >> 16); }
  LittleMaker &u32(uint32_t value) { return u16(value).u16(value >> 16); }
  LittleMaker &text(std::string_view text) {
    for (const char c : text) u8(static_cast<uint8_t>(c));
    return *this;
  }
  LittleMaker &add(const std::vector<uint8_t> &more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
    return *this;
  }
  LittleMaker &zeros(size_t count) {
    bytes.resize(bytes.size() + count);
    return *this;
  }
  // Appends the lowest `bits` bits of each value, the first value in the highest bits of its byte where it is
  // shorter than one.
  LittleMaker &packed(const uint32_t *values, size_t count, unsigned bits) {
    if (bits >= 8) {
      for (size_t i = 0; i < count; ++i) {
        for (unsigned shift = 0; shift < bits; shift += 8) u8(values[i] >> shift);
      }
      return *this;
    }
    const size_t start = bytes.size();
    zeros((count * bits + 7) / 8);
    for (size_t i = 0; i < count; ++i) {
      uint8_t &byte = bytes[start + i * bits / 8];
      byte = static_cast<uint8_t>(byte | values[i] << (8 - bits - i * bits % 8));
    }
    return *this;
  }
};
