// Playing the opcodes that draw lines and shapes.

#include "media/codecs/pict/opcode.h"
#include "media/codecs/pict/player.h"
#include "media/codecs/pict/region_data.h"

namespace codecs::pict {
namespace {

constexpr unsigned kSame = 8;  // the bit of an opcode that takes the last shape again
constexpr unsigned kVerbs = 5;

enum Kind : int { kRect, kRoundRect, kOval, kArc, kPolygon, kRegion };

bool isColourful(const Pattern &pattern) noexcept {
  return std::ranges::any_of(pattern.tile, [](Pixel pixel) { return !isGrey(pixel); });
}

}  // namespace

// Black and white drawings are as shallow as the images of such pictures; colours are not.
void Player::noteShape(const Pattern &pattern) noexcept {
  const bool isGreyOnly = isGrey(port_.ink.fore) && isGrey(port_.ink.back) && !isColourful(pattern);
  noteDrawn(isGreyOnly ? 8 : 24);
}

Fault Player::drawLine(const Opcode &opcode) {
  ByteReader reader(opcode.operands);
  const bool hasStart = opcode.code == op::line || opcode.code == op::shortLine;
  const Point from = hasStart ? readPoint(reader) : penAt_;
  if (opcode.code == op::line || opcode.code == op::lineFrom) {
    penAt_ = readPoint(reader);
  } else {
    const int8_t dh = reader.i8();
    penAt_ = from + Point{dh, reader.i8()};
  }
  noteShape(port_.pen.pattern);
  return port_.line(mapping_(from), mapping_(penAt_)) ? Fault::none : Fault::tooLarge;
}

// One whose own box says that there is nothing in it is not drawn, whatever its points.
void Player::readPolygon(Bytes record) {
  ByteReader reader(record);
  reader.skip(2);
  lastPolygon_.clear();
  if (readBox(reader).isEmpty()) return;
  while (reader.left() >= 4) lastPolygon_.push_back(readPoint(reader));
}

Fault Player::drawShape(const Opcode &opcode) {
  const unsigned kind = (opcode.code >> 4) - 3u, verb = opcode.code & 7u;
  const bool isSame = (opcode.code & kSame) != 0;
  ByteReader reader(opcode.operands);
  if (verb >= kVerbs) return Fault::none;
  Fault fault = Fault::none;
  if (!isSame) {
    if (kind <= kArc) lastBox_ = readBox(reader);
    if (kind == kPolygon) readPolygon(opcode.operands);
    if (kind == kRegion) fault = parseRegion(opcode.operands, port_.budget(), lastRegion_);
  }
  if (fault != Fault::none) return fault;
  const auto what = static_cast<Verb>(verb);
  noteShape(what == Verb::fill    ? port_.fillPattern
            : what == Verb::erase ? port_.backPattern
                                  : port_.pen.pattern);
  return playShape(static_cast<int>(kind), what, reader) ? Fault::none : Fault::tooLarge;
}

bool Player::playShape(int kind, Verb verb, ByteReader &reader) {
  switch (kind) {
    case kRect:
      return port_.rect(verb, mapping_(lastBox_));
    case kRoundRect:
      return port_.roundRect(verb, mapping_(lastBox_), mapping_.size(ovalSize_));
    case kOval:
      return port_.oval(verb, mapping_(lastBox_));
    case kArc: {
      const int16_t start = reader.i16();
      return port_.arc(verb, mapping_(lastBox_), start, reader.i16());
    }
    case kPolygon: {
      if (!port_.budget().work(lastPolygon_.size())) return false;
      std::vector<Point> points(lastPolygon_);
      for (Point &point : points) point = mapping_(point);
      return port_.polygon(verb, points);
    }
    default:
      return port_.budget().work(lastRegion_.edgeCount()) && port_.region(verb, mapping_(lastRegion_));
  }
}

}  // namespace codecs::pict
