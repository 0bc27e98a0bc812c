// Blocks of four by four pixels with one, four or sixteen colours of 15 bits.

#include "media/codecs/pict/video_blocks.h"
#include "media/codecs/pict/video_codecs.h"
#include "media/codecs/pict/video_pixels.h"

namespace codecs::pict {
namespace {

constexpr uint8_t kMark = 0xE1;

// Between the two colours lie two more, a third of the way each, by 5-bit component.
std::array<Pixel, 4> fourColours(unsigned a, unsigned b) noexcept {
  unsigned near = 0, far = 0;
  for (const int shift : {10, 5, 0}) {
    const unsigned ca = a >> shift & 31, cb = b >> shift & 31;
    near |= (11 * ca + 21 * cb) >> 5 << shift;
    far |= (21 * ca + 11 * cb) >> 5 << shift;
  }
  return {pixelOf555(b), pixelOf555(near), pixelOf555(far), pixelOf555(a)};
}

void readFourColourBlock(ByteReader &reader, const std::array<Pixel, 4> &colours,
                         BlockWriter &blocks) noexcept {
  Block block;
  for (size_t y = 0; y < 4; ++y) {
    const unsigned indices = reader.u8();
    for (size_t x = 0; x < 4; ++x) block[4 * y + x] = colours[indices >> (6 - 2 * x) & 3];
  }
  blocks.put(block);
}

void readSixteenColourBlock(ByteReader &reader, unsigned first, BlockWriter &blocks) noexcept {
  Block block;
  block[0] = pixelOf555(first);
  for (size_t i = 1; i < block.size(); ++i) block[i] = pixelOf555(reader.u16());
  blocks.put(block);
}

// A block of its own starts with a colour, whose top bit is clear; so does a second colour's if it has one.
void readSingleBlock(ByteReader &reader, unsigned opcode, BlockWriter &blocks) noexcept {
  const unsigned colour = opcode << 8 | reader.u8();
  if (reader.left() > 0 && (reader.rest()[0] & 0x80)) {
    readFourColourBlock(reader, fourColours(colour, reader.u16()), blocks);
  } else {
    readSixteenColourBlock(reader, colour, blocks);
  }
}

}  // namespace

Fault decodeRpza(const ImageDescription &, Bytes data, DecodedImage &image) {
  ByteReader reader(data);
  if (reader.u8() != kMark) return Fault::damaged;
  reader.skip(3);
  BlockWriter blocks(image);
  while (!blocks.isFull()) {
    const unsigned opcode = reader.u8();
    unsigned count = (opcode & 31) + 1;
    if (reader.failed()) return Fault::damaged;
    if (!(opcode & 0x80)) {
      readSingleBlock(reader, opcode, blocks);
      continue;
    }
    switch (opcode & 0xE0) {
      case 0x80:
        blocks.skip(count);
        break;
      case 0xA0:
        blocks.fill(pixelOf555(reader.u16()), count);
        break;
      case 0xC0: {
        const unsigned a = reader.u16();
        const auto colours = fourColours(a, reader.u16());
        for (; count > 0 && !blocks.isFull(); --count) readFourColourBlock(reader, colours, blocks);
        break;
      }
      default:
        return Fault::damaged;
    }
  }
  return reader.failed() ? Fault::damaged : Fault::none;
}

}  // namespace codecs::pict
