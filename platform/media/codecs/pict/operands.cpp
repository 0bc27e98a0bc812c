#include "media/codecs/pict/operands.h"

#include <array>

#include "media/codecs/pict/bitmap_opcode.h"
#include "media/codecs/pict/opcode.h"
#include "media/codecs/pict/pixel_pattern.h"
#include "media/codecs/pict/region_data.h"

namespace codecs::pict {
namespace {

constexpr size_t kNone = 255;  // of the fixed lengths below: to be found out otherwise

// 0000 to 0023.
constexpr std::array<uint8_t, 0x24> kStateAndLineBytes{0, kNone, 8, 2, 1, 2, 4,     4,     2,     8, 8, 4,  //
                                                       4, 2,     4, 4, 8, 1, kNone, kNone, kNone, 2, 2, 0,  //
                                                       0, 0,     6, 6, 0, 6, 0,     6,     8,     4, 6, 2};

// By shape, from rectangles to regions; with operands, and "same" without the shape.
constexpr std::array<uint8_t, 6> kShapeBytes{8, 8, 8, 12, kNone, kNone};
constexpr std::array<uint8_t, 6> kSameShapeBytes{0, 0, 0, 4, 0, 0};

class Measure {
 public:
  Measure(Bytes rest, bool wordOpcodes) noexcept : rest_(rest), wordOpcodes_(wordOpcodes) {}

  Result<size_t> of(uint16_t opcode) const noexcept {
    if (opcode < kStateAndLineBytes.size()) return ofState(opcode);
    if (opcode <= 0x002F) return ofTextOrReserved(opcode);
    if (opcode <= op::lastShape) return ofShape(opcode);
    if (opcode <= 0x009F) return isBitmapOpcode(opcode) ? ofBitmap(opcode) : counted16(0);
    if (opcode <= 0x00AF) return ofComment(opcode);
    if (opcode <= 0x00CF || opcode == op::endOfPicture) return fixed(0);
    if (opcode <= 0x00FE) return counted32();
    if (opcode <= 0x7FFF) return fixed(2u * (opcode >> 8));
    return opcode <= 0x80FF ? fixed(0) : counted32();
  }

 private:
  Result<size_t> fixed(uint64_t bytes) const noexcept {
    if (bytes > rest_.size()) return Fault::truncated;
    return static_cast<size_t>(bytes);
  }

  // A count of that many bytes behind `before` others, then what it counts.
  Result<size_t> counted8(size_t before) const noexcept {
    if (rest_.size() <= before) return Fault::truncated;
    return fixed(before + 1 + rest_[before]);
  }
  Result<size_t> counted16(size_t before) const noexcept {
    if (rest_.size() < before + 2) return Fault::truncated;
    return fixed(before + 2 + readBig16(rest_, before));
  }
  Result<size_t> counted32() const noexcept {
    if (rest_.size() < 4) return Fault::truncated;
    return fixed(uint64_t{4} + readBig32(rest_, 0));
  }

  Result<size_t> ofState(uint16_t opcode) const noexcept {
    if (opcode == op::clipRegion) return regionBytes(rest_);
    if (opcode >= op::backPixelPattern && opcode <= op::fillPixelPattern) return pixelPatternBytes(rest_);
    return fixed(kStateAndLineBytes[opcode]);
  }

  Result<size_t> ofTextOrReserved(uint16_t opcode) const noexcept {
    switch (opcode) {
      case op::longText:
        return counted8(4);
      case op::dhText:
      case op::dvText:
        return counted8(1);
      case op::dhdvText:
        return counted8(2);
      default:
        return counted16(0);
    }
  }

  Result<size_t> ofShape(uint16_t opcode) const noexcept {
    const size_t shape = (opcode >> 4) - 3u;
    const size_t bytes = opcode & 8 ? kSameShapeBytes[shape] : kShapeBytes[shape];
    return bytes == kNone ? regionBytes(rest_) : fixed(bytes);  // polygons start like regions
  }

  Result<size_t> ofBitmap(uint16_t opcode) const noexcept {
    ByteReader reader(rest_);
    PixelRecord record;
    if (const Fault fault = readBitmapOpcode(opcode, reader, wordOpcodes_, record); fault != Fault::none)
      return fault;
    return reader.at();
  }

  Result<size_t> ofComment(uint16_t opcode) const noexcept {
    if (opcode == op::shortComment) return fixed(2);
    return counted16(opcode == op::longComment ? 2 : 0);
  }

  Bytes rest_;
  bool wordOpcodes_;
};

}  // namespace

Result<size_t> operandBytes(uint16_t opcode, Bytes rest, bool wordOpcodes) noexcept {
  return Measure(rest, wordOpcodes).of(opcode);
}

}  // namespace codecs::pict
