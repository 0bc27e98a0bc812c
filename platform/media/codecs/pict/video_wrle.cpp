// Rows as in Windows bitmaps: bottom up, blue first, padded to four bytes; indices may be run-length coded.

#include "media/codecs/pict/video_codecs.h"
#include "media/codecs/pict/video_pixels.h"

namespace codecs::pict {
namespace {

// Behind plain rows. Runs of noise are longer than its rows.
constexpr size_t kMostPadding = 4;

enum Escape : uint8_t { kEndOfRow = 0, kEndOfImage = 1, kMove = 2 };

void expandRow(const uint8_t *from, int bits, const Palette &palette, Pixel *out, size_t count) noexcept {
  switch (bits) {
    case 16:
      for (size_t i = 0; i < count; ++i, from += 2)
        out[i] = pixelOf555(static_cast<unsigned>(from[1] << 8 | from[0]));
      return;
    case 24:
    case 32:
      for (size_t i = 0; i < count; ++i, from += bits / 8) out[i] = opaque(from[2], from[1], from[0]);
      return;
    default:
      expandPixels(from, bits, palette, out, count);
  }
}

// Where the next index goes.
class IndexWriter {
 public:
  IndexWriter(DecodedImage &image, const Palette &palette) noexcept : image_(image), palette_(palette) {}

  void put(uint8_t index) noexcept {
    if (x_ < image_.width && !isDone()) pixelRow(image_, image_.height - 1 - y_)[x_] = palette_[index];
    ++x_;
  }
  void move(uint32_t across, uint32_t up) noexcept {
    x_ += across;
    y_ += up;
  }
  void endRow() noexcept {
    x_ = 0;
    ++y_;
  }
  bool isDone() const noexcept { return y_ >= image_.height; }

 private:
  DecodedImage &image_;
  const Palette &palette_;
  uint32_t x_ = 0;
  uint32_t y_ = 0;  // from the bottom
};

Fault readRuns(ByteReader reader, IndexWriter writer) noexcept {
  while (!writer.isDone()) {
    const uint8_t count = reader.u8(), value = reader.u8();
    if (reader.failed()) return Fault::damaged;
    if (count > 0) {
      for (uint8_t i = 0; i < count; ++i) writer.put(value);
    } else if (value == kEndOfRow) {
      writer.endRow();
    } else if (value == kEndOfImage) {
      return Fault::none;
    } else if (value == kMove) {
      const uint8_t across = reader.u8();
      writer.move(across, reader.u8());
    } else {
      for (const uint8_t index : reader.take(value)) writer.put(index);
      reader.skip(value % 2);
    }
  }
  return Fault::none;
}

}  // namespace

Fault decodeWrle(const ImageDescription &description, Bytes data, DecodedImage &image) {
  const int bits = description.bits();
  if (bits != 1 && bits != 4 && bits != 8 && bits != 16 && bits != 24 && bits != 32)
    return Fault::unsupported;
  const Palette palette = paletteOf(description);
  const size_t rowBytes = (size_t{image.width} * static_cast<size_t>(bits) + 31) / 32 * 4;
  const size_t whole = rowBytes * image.height;
  if (bits == 8 && (data.size() < whole || data.size() >= whole + kMostPadding)) {
    const Fault fault = readRuns(ByteReader(data), IndexWriter(image, palette));
    if (fault == Fault::none || data.size() < whole) return fault;
  }
  if (data.size() < whole) return Fault::damaged;
  for (uint32_t y = 0; y < image.height; ++y)
    expandRow(data.data() + y * rowBytes, bits, palette, pixelRow(image, image.height - 1 - y), image.width);
  return Fault::none;
}

}  // namespace codecs::pict
