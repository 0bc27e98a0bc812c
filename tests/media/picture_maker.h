// Pictures written byte by byte.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "media/codecs/pict/geometry.h"

namespace codecs::pict {

// Numbers of a file, in order.
class ByteMaker {
 public:
  ByteMaker &u8(std::initializer_list<unsigned> values) {
    for (const unsigned value : values) bytes.push_back(static_cast<uint8_t>(value));
    return *this;
  }
  ByteMaker &u16(std::initializer_list<int> values) {
    for (const int value : values) u8({static_cast<unsigned>(value) >> 8, static_cast<unsigned>(value)});
    return *this;
  }
  ByteMaker &u32(std::initializer_list<uint32_t> values) {
    for (const uint32_t value : values) u8({value >> 24, value >> 16, value >> 8, value});
    return *this;
  }
  // In the order of files.
  ByteMaker &box(int top, int left, int bottom, int right) { return u16({top, left, bottom, right}); }
  ByteMaker &text(const std::string &letters) {
    for (const char letter : letters) bytes.push_back(static_cast<uint8_t>(letter));
    return *this;
  }
  ByteMaker &add(const std::vector<uint8_t> &more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
    return *this;
  }

  std::vector<uint8_t> bytes;
};

// A version 2 picture without a file header: the frame, then opcodes.
class PictureMaker : public ByteMaker {
 public:
  PictureMaker(int top, int left, int bottom, int right) {
    u16({0}).box(top, left, bottom, right).u32({0x001102FF});
  }
  PictureMaker(int bottom, int right) : PictureMaker(0, 0, bottom, right) {}

  // An opcode at an even offset; operands go behind it.
  PictureMaker &op(int code) {
    if (bytes.size() % 2) bytes.push_back(0);
    u16({code});
    return *this;
  }
  PictureMaker &header(int version, int dotsPerInch, int top, int left, int bottom, int right) {
    op(0x0C00).u16({version, 0, dotsPerInch, 0, dotsPerInch, 0}).box(top, left, bottom, right).u32({0});
    return *this;
  }
  std::vector<uint8_t> end() {
    op(0x00FF);
    return bytes;
  }
};

// The fields of a pixel map from row bytes on.
struct MapFields {
  int rowBytes;
  Box bounds;
  int packType;
  int pixelSize;
  int components;
};

inline void addMap(ByteMaker &out, const MapFields &map) {
  const Box &b = map.bounds;
  out.u16({map.rowBytes | 0x8000}).box(b.top, b.left, b.bottom, b.right).u16({0, map.packType}).u32({0});
  out.u32({72 << 16, 72 << 16}).u16({map.pixelSize > 8 ? 16 : 0, map.pixelSize, map.components});
  out.u16({map.pixelSize > 8 ? (map.pixelSize == 16 ? 5 : 8) : map.pixelSize}).u32({0, 0, 0});
}

inline void addBoxes(ByteMaker &out, const Box &source, const Box &destination, int mode = 0) {
  out.box(source.top, source.left, source.bottom, source.right);
  out.box(destination.top, destination.left, destination.bottom, destination.right).u16({mode});
}

}  // namespace codecs::pict
