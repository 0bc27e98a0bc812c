// The opcodes by name, and what is known of each without reading its operands.
#pragma once

#include <cstdint>
#include <string_view>

namespace codecs::pict {

namespace op {
enum : uint16_t {
  nop = 0x0000,
  clipRegion = 0x0001,
  backPattern = 0x0002,
  textFont = 0x0003,
  textFace = 0x0004,
  textMode = 0x0005,
  spaceExtra = 0x0006,
  penSize = 0x0007,
  penMode = 0x0008,
  penPattern = 0x0009,
  fillPattern = 0x000A,
  ovalSize = 0x000B,
  origin = 0x000C,
  textSize = 0x000D,
  foreColour = 0x000E,
  backColour = 0x000F,
  textRatio = 0x0010,
  version = 0x0011,
  backPixelPattern = 0x0012,
  penPixelPattern = 0x0013,
  fillPixelPattern = 0x0014,
  penFraction = 0x0015,
  characterExtra = 0x0016,
  rgbForeColour = 0x001A,
  rgbBackColour = 0x001B,
  hiliteMode = 0x001C,
  hiliteColour = 0x001D,
  defaultHilite = 0x001E,
  opColour = 0x001F,
  line = 0x0020,
  lineFrom = 0x0021,
  shortLine = 0x0022,
  shortLineFrom = 0x0023,
  longText = 0x0028,
  dhText = 0x0029,
  dvText = 0x002A,
  dhdvText = 0x002B,
  fontName = 0x002C,
  lineJustify = 0x002D,
  glyphState = 0x002E,
  firstRect = 0x0030,
  firstRoundRect = 0x0040,
  firstOval = 0x0050,
  firstArc = 0x0060,
  firstPolygon = 0x0070,
  firstRegion = 0x0080,
  lastShape = 0x008F,
  bitsRect = 0x0090,
  bitsRegion = 0x0091,
  packBitsRect = 0x0098,
  packBitsRegion = 0x0099,
  directBitsRect = 0x009A,
  directBitsRegion = 0x009B,
  shortComment = 0x00A0,
  longComment = 0x00A1,
  endOfPicture = 0x00FF,
  header = 0x0C00,
  compressedImage = 0x8200,
  matte = 0x8201,
};
}  // namespace op

// Whether the opcode means something; the others are reserved, and skipped by their lengths.
bool isKnownOpcode(uint16_t opcode) noexcept;

constexpr bool isBitmapOpcode(uint16_t opcode) noexcept {
  return opcode == op::bitsRect || opcode == op::bitsRegion ||
         (opcode >= op::packBitsRect && opcode <= op::directBitsRegion);
}

// "paintRect"; "reserved" for reserved ones.
std::string_view opcodeName(uint16_t opcode) noexcept;

}  // namespace codecs::pict
