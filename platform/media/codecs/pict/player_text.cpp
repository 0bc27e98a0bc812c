// Playing the opcodes that draw text and say how.

#include <cmath>

#include "media/codecs/pict/opcode.h"
#include "media/codecs/pict/player.h"

namespace codecs::pict {
namespace {

enum FaceBit : unsigned {
  kBold = 1,
  kItalic = 2,
  kUnderline = 4,
  kOutline = 8,
  kShadow = 16,
  kCondense = 32,
  kExtend = 64,
};

constexpr double kDefaultSize = 12;
constexpr size_t kMostFonts = 1024;  // named by one picture

double fixedToDouble(int32_t fixed) noexcept { return fixed / 65536.0; }

// Equal numbers mean no scaling, whatever they are.
double ratio(int32_t numerator, int32_t denominator) noexcept {
  if (numerator == denominator || denominator == 0) return 1;
  return std::clamp(static_cast<double>(numerator) / denominator, 1.0 / 256, 256.0);
}

// What making a pixel of hollow letters costs, against visiting it.
constexpr uint64_t kHollowingEffort = 8;

// The box that letters stand in.
Box groundOf(const TextPlace &place) noexcept {
  const auto edge = [](double at) { return keepNear(std::lround(std::clamp(at, -1e6, 1e6))); };
  return {edge(place.left), edge(place.top), edge(place.right), edge(place.bottom)};
}

}  // namespace

void Player::handleText(const Opcode &opcode) {
  ByteReader reader(opcode.operands);
  switch (opcode.code) {
    case op::textFont:
      text_.font = reader.i16();
      break;
    case op::textFace:
      text_.face = reader.u8();
      break;
    case op::textMode:
      text_.mode = transferOf(reader.u16());
      break;
    case op::textSize:
      text_.size = reader.i16();
      break;
    case op::spaceExtra:
      text_.spaceExtra = fixedToDouble(reader.i32());
      break;
    case op::characterExtra:
      text_.characterExtra = reader.i16() / 4096.0;
      break;
    case op::textRatio: {
      const Point numerator = readPoint(reader), denominator = readPoint(reader);
      text_.across = ratio(numerator.h, denominator.h);
      text_.down = ratio(numerator.v, denominator.v);
      break;
    }
    case op::lineJustify:
      reader.skip(2);
      text_.justification = fixedToDouble(reader.i32());
      break;
    case op::glyphState:
      reader.skip(4);
      text_.hasFractionalWidths = reader.u8() != 0;
      break;
    case op::fontName:
      nameFont(opcode.operands);
      break;
    default:
      break;
  }
}

// Ties a number to a name, for this picture.
void Player::nameFont(Bytes operands) {
  ByteReader reader(operands);
  reader.skip(2);
  const int16_t number = reader.i16();
  const Bytes name = reader.take(reader.u8());
  if (name.empty() || fontNames_.size() >= kMostFonts) return;
  fontNames_[number].assign(name.begin(), name.end());
}

TextStyle Player::textStyle() const {
  TextStyle style;
  const auto named = fontNames_.find(text_.font);
  style.family =
      familyNamed(named == fontNames_.end() ? familyNumbered(text_.font) : std::string_view(named->second));
  style.isBold = (text_.face & kBold) != 0;
  style.isItalic = (text_.face & kItalic) != 0;
  style.isUnderlined = (text_.face & kUnderline) != 0;
  style.size = text_.size > 0 ? text_.size : kDefaultSize;
  const int widened = (text_.face & kExtend ? 1 : 0) - (text_.face & kCondense ? 1 : 0);
  style.characterExtra = text_.characterExtra * style.size + text_.justification + widened;
  style.spaceExtra = text_.spaceExtra;
  style.hasFractionalWidths = text_.hasFractionalWidths;
  style.across = text_.across * mapping_.acrossScale();
  style.down = text_.down * mapping_.downScale();
  return style;
}

// Offsets count from where the text before started, not from where it ended.
Fault Player::drawText(const Opcode &opcode) {
  ByteReader reader(opcode.operands);
  if (opcode.code == op::longText) {
    textAt_ = readPoint(reader);
  } else {
    const uint8_t dh = opcode.code == op::dvText ? uint8_t{0} : reader.u8();
    const uint8_t dv = opcode.code == op::dhText ? uint8_t{0} : reader.u8();
    textAt_ = textAt_ + Point{dh, dv};
  }
  const Bytes letters = reader.take(reader.u8());
  return setText(letters) ? Fault::none : Fault::tooLarge;
}

bool Player::setText(Bytes letters) {
  noteShape(Pattern::solid());
  const Transfer mode = port_.takeHighlight(text_.mode);
  if (port_.clip().isEmpty() || mode == Transfer::none) return true;
  const Point start = mapping_(textAt_);
  const TextRun run{letters, static_cast<double>(start.h), static_cast<double>(start.v),
                    port_.clip().bounds()};
  TextPlace place;
  Coverage coverage = typesetter_.typeset(textStyle(), run, port_.budget(), place);
  if (port_.budget().spent()) return false;
  const bool isShadowed = (text_.face & kShadow) != 0;
  if (!coverage.values.empty() && (isShadowed || (text_.face & kOutline))) {
    if (!port_.budget().work(kHollowingEffort * coverage.values.size())) return false;
    coverage = hollowed(coverage, isShadowed ? 1 : 0);
  }
  return port_.text(coverage, groundOf(place), mode);
}

}  // namespace codecs::pict
