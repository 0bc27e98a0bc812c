// Compressed images inside pictures, written byte by byte.
#pragma once

#include "picture_grid.h"

namespace codecs::pict {

struct Described {
  const char *codec;
  int width;
  int height;
  int depth = 24;
  int paletteId = -1;
  std::vector<uint8_t> extra{};  // behind the fixed part: colour table, extensions
};

inline std::vector<uint8_t> description(const Described &image) {
  ByteMaker out;
  out.u32({static_cast<uint32_t>(86 + image.extra.size())}).text(image.codec).u32({0, 0, 0, 0, 0, 0});
  out.u16({image.width, image.height}).u32({72 << 16, 72 << 16, 0}).u16({1}).add(std::vector<uint8_t>(32, 0));
  out.u16({image.depth, image.paletteId}).add(image.extra);
  return out.bytes;
}

struct Placed {
  Box source;
  int left = 0;
  int top = 0;
  int mode = 64;
  std::vector<uint8_t> matte{};
  std::vector<uint8_t> mask{};
};

inline std::vector<uint8_t> operands(const Described &image, const std::vector<uint8_t> &data,
                                     const Placed &placed) {
  ByteMaker out;
  out.u16({0}).u32({0x10000, 0, 0, 0, 0x10000, 0}).u16({placed.left, 0, placed.top, 0}).u32({0x40000000});
  out.u32({static_cast<uint32_t>(placed.matte.size())}).box(0, 0, 0, 0).u16({placed.mode});
  const Box &s = placed.source;
  out.box(s.top, s.left, s.bottom, s.right).u32({0, static_cast<uint32_t>(placed.mask.size())});
  out.add(placed.matte).add(placed.mask).add(description(image)).add(data);
  return out.bytes;
}

inline void addCompressed(PictureMaker &picture, const Described &image, const std::vector<uint8_t> &data,
                          const Placed &placed) {
  const std::vector<uint8_t> bytes = operands(image, data, placed);
  picture.op(0x8200).u32({static_cast<uint32_t>(bytes.size())}).add(bytes);
}

// One image alone, as a picture of its size shows it.
inline Grid gridOfImage(const Described &image, const std::vector<uint8_t> &data,
                        const Letters &letters = kPlainLetters) {
  PictureMaker picture(image.height, image.width);
  addCompressed(picture, image, data, {{0, 0, image.width, image.height}});
  return drawn(picture.end(), letters);
}

inline Fault faultOfImage(const Described &image, const std::vector<uint8_t> &data) {
  PictureMaker picture(image.height, image.width);
  addCompressed(picture, image, data, {{0, 0, image.width, image.height}});
  return decodeBytes(picture.end()).fault;
}

}  // namespace codecs::pict
