// Which operands each of the bitmap opcodes has.
#pragma once

#include "media/codecs/pict/opcode.h"
#include "media/codecs/pict/pixel_record.h"

namespace codecs::pict {

// REQUIRES: isBitmapOpcode(opcode). Moves the reader behind the operands.
inline Fault readBitmapOpcode(uint16_t opcode, ByteReader &reader, bool wordOpcodes,
                              PixelRecord &record) noexcept {
  const PixelOperands operands{
      .hasBaseAddress = opcode == op::directBitsRect || opcode == op::directBitsRegion,
      .hasMask = (opcode & 1) != 0,
      .isPublishedRaw = opcode == op::bitsRect || opcode == op::bitsRegion,
  };
  return readPixelRecord(reader, operands, wordOpcodes, record);
}

}  // namespace codecs::pict
