// Blocks of four by four palette indices, with caches of the colour sets used last.

#include "media/codecs/pict/video_blocks.h"
#include "media/codecs/pict/video_codecs.h"

namespace codecs::pict {
namespace {

constexpr size_t kCached = 256;

// Sets of two, four or eight indices; new ones take the oldest's place.
template <size_t colours>
class SetCache {
 public:
  using Set = std::array<uint8_t, colours>;

  Set add(ByteReader &reader) noexcept {
    Set &set = sets_[next_++ % kCached];
    for (uint8_t &index : set) index = reader.u8();
    return set;
  }
  Set at(uint8_t index) const noexcept { return sets_[index]; }

 private:
  std::array<Set, kCached> sets_{};
  size_t next_ = 0;
};

class Frame {
 public:
  Frame(const ImageDescription &description, Bytes data, DecodedImage &image)
      : reader_(data), palette_(paletteOf(description)), blocks_(image) {
    reader_.skip(4);
  }

  Fault decode() noexcept {
    while (!blocks_.isFull()) {
      const unsigned opcode = reader_.u8();
      if (reader_.failed() || !readBlocks(opcode)) return Fault::damaged;
    }
    return reader_.failed() ? Fault::damaged : Fault::none;
  }

 private:
  bool readBlocks(unsigned opcode) noexcept {
    const unsigned kind = opcode >> 4;
    if (kind < 8) return readRepeats(kind / 2, kind % 2 ? reader_.u8() + 1u : (opcode & 15) + 1);
    const unsigned count = (opcode & 15) + 1;
    switch (kind) {
      case 8:
      case 9:
        readSets<2>(kind == 8 ? pairs_.add(reader_) : pairs_.at(reader_.u8()), count);
        return true;
      case 10:
      case 11:
        readSets<4>(kind == 10 ? quads_.add(reader_) : quads_.at(reader_.u8()), count);
        return true;
      case 12:
      case 13:
        readSets<8>(kind == 12 ? octets_.add(reader_) : octets_.at(reader_.u8()), count);
        return true;
      case 14:
        readRaw(count);
        return true;
      default:
        return false;
    }
  }

  // Blocks that are left out, repeated singly or in pairs, or of one colour.
  bool readRepeats(unsigned kind, size_t count) noexcept {
    const size_t needed = kind == 1 ? 1 : kind == 2 ? 2 : 0;
    if (blocks_.written() < needed) return false;
    switch (kind) {
      case 0:
        blocks_.skip(count);
        break;
      case 3:
        blocks_.fill(palette_[reader_.u8()], count);
        break;
      default:
        for (size_t i = 0; i < count * needed && !blocks_.isFull(); ++i)
          blocks_.put(blocks_.at(blocks_.written() - needed));
    }
    return true;
  }

  template <size_t colours>
  void readSets(const std::array<uint8_t, colours> &set, unsigned count) noexcept {
    for (; count > 0 && !blocks_.isFull(); --count) {
      Block block;
      for (size_t half = 0; half < 2; ++half) {
        // Indices of eight pixels, from the top bit.
        constexpr unsigned bits = colours == 2 ? 1 : colours == 4 ? 2 : 3;
        const uint32_t flags = readFlags<bits>(half);
        for (size_t i = 0; i < 8; ++i)
          block[8 * half + i] = palette_[set[flags >> (bits * (7 - i)) & (colours - 1)]];
      }
      blocks_.put(block);
    }
  }

  template <unsigned bits>
  uint32_t readFlags(size_t half) noexcept {
    if constexpr (bits == 1) return reader_.u8();
    if constexpr (bits == 2) return reader_.u16();
    if (half == 0) {
      for (uint32_t &word : words_) word = reader_.u16();
      return (words_[0] & 0xFFF0) << 8 | words_[1] >> 4;
    }
    return (words_[2] & 0xFFF0) << 8 | (words_[0] & 15) << 8 | (words_[1] & 15) << 4 | (words_[2] & 15);
  }

  void readRaw(unsigned count) noexcept {
    for (; count > 0 && !blocks_.isFull(); --count) {
      Block block;
      for (Pixel &pixel : block) pixel = palette_[reader_.u8()];
      blocks_.put(block);
    }
  }

  ByteReader reader_;
  const Palette palette_;
  BlockWriter blocks_;
  SetCache<2> pairs_;
  SetCache<4> quads_;
  SetCache<8> octets_;
  std::array<uint32_t, 3> words_{};  // of which the low four bits wait for the second half
};

}  // namespace

Fault decodeSmc(const ImageDescription &description, Bytes data, DecodedImage &image) {
  if (description.bits() != 8) return Fault::unsupported;
  return Frame(description, data, image).decode();
}

}  // namespace codecs::pict
