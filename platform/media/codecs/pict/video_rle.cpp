// Run lengths of pixels, line by line, with skips.

#include <optional>

#include "media/codecs/pict/video_codecs.h"
#include "media/codecs/pict/video_pixels.h"

namespace codecs::pict {
namespace {

constexpr uint16_t kSomeLines = 1 << 3;

// What codes count: one deep pixel, or as many shallow ones as fill two or four bytes.
struct Unit {
  size_t bytes = 0;
  size_t pixels = 0;
};

std::optional<Unit> unitOf(int bits) noexcept {
  switch (bits) {
    case 1:
      return Unit{2, 16};
    case 2:
      return Unit{4, 16};
    case 4:
      return Unit{4, 8};
    case 8:
      return Unit{4, 4};
    case 16:
      return Unit{2, 1};
    case 24:
      return Unit{3, 1};
    case 32:
      return Unit{4, 1};
    default:
      return std::nullopt;
  }
}

class LineWriter {
 public:
  LineWriter(const ImageDescription &description, Unit unit)
      : unit_(unit), bits_(description.bits()), palette_(paletteOf(description)) {}

  void start(Pixel *row, size_t width) noexcept {
    row_ = row;
    width_ = width;
    at_ = 0;
  }
  void skip(size_t units) noexcept { at_ += units * unit_.pixels; }

  // What reaches beyond the line is left out.
  void put(const uint8_t *unit) noexcept {
    if (at_ < width_) expandPixels(unit, bits_, palette_, row_ + at_, std::min(unit_.pixels, width_ - at_));
    at_ += unit_.pixels;
  }

 private:
  const Unit unit_;
  const int bits_;
  const Palette palette_;
  Pixel *row_ = nullptr;
  size_t width_ = 0;
  size_t at_ = 0;
};

// One line's codes, up to its end.
Fault readLine(ByteReader &reader, Unit unit, LineWriter &line) noexcept {
  for (;;) {
    const int8_t code = reader.i8();
    if (reader.failed()) return Fault::damaged;
    if (code == -1) return Fault::none;
    if (code == 0) {
      const uint8_t skipped = reader.u8();
      if (skipped > 0) line.skip(skipped - size_t{1});
    } else if (code > 0) {
      const Bytes units = reader.take(static_cast<size_t>(code) * unit.bytes);
      for (size_t at = 0; at < units.size(); at += unit.bytes) line.put(units.data() + at);
    } else {
      const Bytes repeated = reader.take(unit.bytes);
      for (int i = 0; !repeated.empty() && i < -code; ++i) line.put(repeated.data());
    }
  }
}

}  // namespace

Fault decodeRle(const ImageDescription &description, Bytes data, DecodedImage &image) {
  const auto unit = unitOf(description.bits());
  if (!unit) return Fault::unsupported;
  ByteReader reader(data);
  reader.skip(4);
  const bool someLines = (reader.u16() & kSomeLines) != 0;
  const uint32_t first = someLines ? reader.u16() : 0;
  if (someLines) reader.skip(2);
  uint32_t end = image.height;
  if (someLines) {
    end = std::min<uint32_t>(first + reader.u16(), image.height);
    reader.skip(2);
  }
  if (reader.failed()) return Fault::damaged;
  LineWriter line(description, *unit);
  for (uint32_t y = first; y < end; ++y) {
    const uint8_t skipped = reader.u8();
    if (skipped == 0) return reader.failed() ? Fault::damaged : Fault::none;
    line.start(pixelRow(image, y), image.width);
    line.skip(skipped - size_t{1});
    if (const Fault fault = readLine(reader, *unit, line); fault != Fault::none) return fault;
  }
  return Fault::none;
}

}  // namespace codecs::pict
