#include "media/codecs/pict/player.h"

#include "media/codecs/pict/opcode.h"
#include "media/codecs/pict/pixel_pattern.h"
#include "media/codecs/pict/pixel_rows.h"
#include "media/codecs/pict/region_data.h"

namespace codecs::pict {
namespace {

struct OldColour {
  uint32_t constant;
  Pixel colour;
};

constexpr std::array kOldColours = std::to_array<OldColour>({
    {33, kBlack},
    {30, kWhite},
    {205, opaque(0xDD, 0x08, 0x06)},
    {341, opaque(0x00, 0x80, 0x11)},
    {409, opaque(0x00, 0x00, 0xD4)},
    {273, opaque(0x02, 0xAB, 0xEA)},
    {137, opaque(0xF2, 0x08, 0x84)},
    {69, opaque(0xFC, 0xF3, 0x05)},
});

constexpr Pixel kDefaultHilite = Ink{}.hilite;

}  // namespace

Pixel oldColour(uint32_t constant, Pixel other) noexcept {
  const auto *found = std::ranges::find(kOldColours, constant, &OldColour::constant);
  return found == kOldColours.end() ? other : found->colour;
}

Player::Player(const Picture &picture, Port &port, const CGImageDecodeLimits &limits)
    : walker_(picture),
      port_(port),
      limits_(limits),
      mapping_(picture.drawing, port.canvas().width, port.canvas().height),
      profiles_(limits) {
  port_.pen.size = mapping_.size({1, 1});
}

Fault Player::play() {
  while (const auto opcode = walker_.next()) {
    Fault fault = handle(*opcode);
    if (fault == Fault::none && port_.budget().spent()) fault = Fault::tooLarge;
    if (fault != Fault::none) return fault;
  }
  return walker_.fault();
}

Findings Player::findings() && {
  findings_.profile = profiles_.take();
  findings_.hasAlpha = alphasSeen_ != 0 && alphasShared_ != kAlphaBits;
  return std::move(findings_);
}

Fault Player::handle(const Opcode &opcode) {
  if (isStandIn(opcode)) return Fault::none;
  if (isBitmapOpcode(opcode.code)) return drawBitmap(opcode);
  if (opcode.code >= op::line && opcode.code <= op::shortLineFrom) return drawLine(opcode);
  if (opcode.code >= op::longText && opcode.code <= op::dhdvText) return drawText(opcode);
  if (opcode.code >= op::firstRect && opcode.code <= op::lastShape) return drawShape(opcode);
  switch (opcode.code) {
    case op::compressedImage:
      return drawCompressed(opcode.operands);
    case op::matte:
      return takeMatte(opcode);
    case op::longComment:
      takeComment(opcode.operands);
      return Fault::none;
    default:
      return handleState(opcode);
  }
}

Fault Player::handleState(const Opcode &opcode) {
  ByteReader reader(opcode.operands);
  switch (opcode.code) {
    case op::clipRegion:
      return setClip(opcode.operands);
    case op::origin: {
      const int16_t dh = reader.i16();
      mapping_.moveOrigin({dh, reader.i16()});
      return Fault::none;
    }
    case op::ovalSize:
      ovalSize_ = readPoint(reader);
      return Fault::none;
    case op::penSize:
    case op::penMode:
      handlePen(opcode);
      return Fault::none;
    case op::backPattern:
    case op::penPattern:
    case op::fillPattern:
    case op::backPixelPattern:
    case op::penPixelPattern:
    case op::fillPixelPattern:
      return setPattern(opcode);
    default:
      handleColour(opcode);
      handleText(opcode);
      return Fault::none;
  }
}

void Player::handlePen(const Opcode &opcode) {
  ByteReader reader(opcode.operands);
  if (opcode.code == op::penMode) {
    port_.pen.mode = transferOf(reader.u16());
  } else {
    port_.pen.size = mapping_.size(readPoint(reader));
  }
}

Fault Player::setPattern(const Opcode &opcode) {
  Pattern pattern = Pattern::ofBits(opcode.operands);
  const bool hasPixels = opcode.code >= op::backPixelPattern;
  if (hasPixels) {
    const Fault fault = parsePixelPattern(opcode.operands, port_.budget(), pattern);
    if (fault != Fault::none) return fault;
  }
  switch (opcode.code) {
    case op::backPattern:
    case op::backPixelPattern:
      port_.backPattern = std::move(pattern);
      break;
    case op::penPattern:
    case op::penPixelPattern:
      port_.pen.pattern = std::move(pattern);
      break;
    default:
      port_.fillPattern = std::move(pattern);
  }
  return Fault::none;
}

void Player::handleColour(const Opcode &opcode) {
  ByteReader reader(opcode.operands);
  switch (opcode.code) {
    case op::foreColour:
      port_.ink.fore = oldColour(reader.u32(), kBlack);
      break;
    case op::backColour:
      port_.ink.back = oldColour(reader.u32(), kWhite);
      break;
    case op::rgbForeColour:
      port_.ink.fore = readColour(reader);
      break;
    case op::rgbBackColour:
      port_.ink.back = readColour(reader);
      break;
    case op::hiliteMode:
      port_.hiliteNext = true;
      break;
    case op::hiliteColour:
      port_.ink.hilite = readColour(reader);
      break;
    case op::defaultHilite:
      port_.ink.hilite = kDefaultHilite;
      break;
    case op::opColour:
      for (uint16_t &weight : port_.ink.weights) weight = reader.u16();
      break;
    default:
      break;
  }
}

// A new clip takes the old one's place; they do not add up.
Fault Player::setClip(Bytes record) {
  Region region;
  const Fault fault = parseRegion(record, port_.budget(), region);
  if (fault != Fault::none) return fault;
  if (!port_.budget().work(region.edgeCount())) return Fault::tooLarge;
  port_.setClip(mapping_(region));
  return Fault::none;
}

void Player::takeComment(Bytes operands) {
  ByteReader reader(operands);
  if (reader.u16() != kProfileComment) return;
  profiles_.add(reader.take(reader.u16()));
}

}  // namespace codecs::pict
