// Vectors: strips of four by four blocks that point into codebooks of two by two pixels.

#include "media/codecs/pict/video_codecs.h"

namespace codecs::pict {
namespace {

constexpr uint8_t kOwnBooks = 1;  // a flag: strips do not inherit

enum ChunkBit : unsigned {
  kUpdates = 0x0100,  // of a book: only some entries are there; of vectors: blocks may be left out
  kSmooth = 0x0200,   // of a book: for blocks of one entry; of vectors: all blocks are such
  kGreyEntries = 0x0400,
};

// Two by two pixels, in reading order.
using Entry = std::array<Pixel, 4>;

struct Books {
  std::array<Entry, 256> smooth;    // each pixel is enlarged to two by two
  std::array<Entry, 256> detailed;  // four of them make a block
};

uint8_t clampByte(int value) noexcept { return static_cast<uint8_t>(std::clamp(value, 0, 255)); }

// Bits of a chunk, from the top of one word after another, mixed with its bytes.
class MaskReader {
 public:
  explicit MaskReader(ByteReader &reader) noexcept : reader_(reader) {}

  bool next() noexcept {
    if (left_ == 0) {
      word_ = reader_.u32();
      left_ = 32;
    }
    return word_ >> --left_ & 1;
  }

 private:
  ByteReader &reader_;
  uint32_t word_ = 0;
  unsigned left_ = 0;
};

class Frame {
 public:
  Frame(const ImageDescription &description, DecodedImage &image)
      : image_(image), palette_(paletteOf(description)), isIndexed_(description.depth <= 8) {
    for (auto *book : {&books_.smooth, &books_.detailed}) book->fill({kBlack, kBlack, kBlack, kBlack});
  }

  Fault decode(Bytes data) noexcept {
    ByteReader reader(data);
    const uint8_t flags = reader.u8();
    reader.skip(3 + 2 + 2);
    const uint16_t strips = reader.u16();
    if (reader.failed()) return Fault::damaged;
    for (uint16_t i = 0; i < strips && top_ < image_.height; ++i) {
      if (const Fault fault = readStrip(reader, i > 0 && (flags & kOwnBooks)); fault != Fault::none)
        return fault;
    }
    return Fault::none;
  }

 private:
  Fault readStrip(ByteReader &reader, bool startsAnew) noexcept {
    reader.skip(2);
    const uint16_t size = reader.u16();
    const uint16_t top = reader.u16();
    reader.skip(2);
    const uint16_t bottom = reader.u16();
    reader.skip(2);
    if (reader.failed() || size < 12 || bottom < top) return Fault::damaged;
    ByteReader chunks(reader.take(std::min<size_t>(size - 12u, reader.left())));
    if (startsAnew) {
      for (auto *book : {&books_.smooth, &books_.detailed}) book->fill({kBlack, kBlack, kBlack, kBlack});
    }
    bottom_ = std::min<uint32_t>(top_ + (bottom - top), image_.height);
    while (chunks.left() >= 4) {
      const uint16_t id = chunks.u16(), length = chunks.u16();
      if (length < 4) return Fault::damaged;
      ByteReader chunk(chunks.take(length - 4u));
      if (chunks.failed()) return Fault::damaged;
      if (id >> 12 == 2) readBook(chunk, id);
      if (id >> 12 == 3) readVectors(chunk, id);
    }
    top_ = bottom_;
    return Fault::none;
  }

  void readBook(ByteReader &chunk, unsigned id) noexcept {
    auto &book = id & kSmooth ? books_.smooth : books_.detailed;
    MaskReader mask(chunk);
    for (Entry &entry : book) {
      if (id & kUpdates && !mask.next()) continue;
      if (chunk.left() < (id & kGreyEntries ? 4u : 6u)) return;
      readEntry(chunk, (id & kGreyEntries) != 0, entry);
    }
  }

  void readEntry(ByteReader &chunk, bool isGrey, Entry &entry) const noexcept {
    std::array<uint8_t, 4> lumas;
    for (uint8_t &luma : lumas) luma = chunk.u8();
    const int u = isGrey ? 0 : chunk.i8(), v = isGrey ? 0 : chunk.i8();
    for (size_t i = 0; i < lumas.size(); ++i) {
      const int y = lumas[i];
      entry[i] = isIndexed_ ? palette_[lumas[i]]
                            : opaque(clampByte(y + 2 * v), clampByte(y - u / 2 - v), clampByte(y + 2 * u));
    }
  }

  void readVectors(ByteReader &chunk, unsigned id) noexcept {
    MaskReader mask(chunk);
    for (uint32_t v = top_; v < bottom_; v += 4) {
      for (uint32_t h = 0; h < image_.width; h += 4) {
        if (id & kUpdates && !mask.next()) continue;
        const bool isDetailed = !(id & kSmooth) && mask.next();
        if (chunk.left() < (isDetailed ? 4u : 1u)) return;
        isDetailed ? putDetailed(chunk, h, v) : putSmooth(books_.smooth[chunk.u8()], h, v);
      }
    }
  }

  void put(uint32_t h, uint32_t v, Pixel pixel) noexcept {
    if (h < image_.width && v < image_.height) pixelRow(image_, v)[h] = pixel;
  }
  void putSmooth(const Entry &entry, uint32_t h, uint32_t v) noexcept {
    for (uint32_t i = 0; i < 16; ++i) put(h + i % 4, v + i / 4, entry[i / 8 * 2 + i % 4 / 2]);
  }
  void putDetailed(ByteReader &chunk, uint32_t h, uint32_t v) noexcept {
    for (uint32_t quarter = 0; quarter < 4; ++quarter) {
      const Entry &entry = books_.detailed[chunk.u8()];
      for (uint32_t i = 0; i < 4; ++i)
        put(h + quarter % 2 * 2 + i % 2, v + quarter / 2 * 2 + i / 2, entry[i]);
    }
  }

  DecodedImage &image_;
  const Palette palette_;
  const bool isIndexed_;  // lumas are palette indices; in greys they are the greys themselves
  Books books_;
  uint32_t top_ = 0;  // of the strip
  uint32_t bottom_ = 0;
};

}  // namespace

Fault decodeCvid(const ImageDescription &description, Bytes data, DecodedImage &image) {
  return Frame(description, image).decode(data);
}

}  // namespace codecs::pict
