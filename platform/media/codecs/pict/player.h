// Plays a picture: walks its opcodes, keeps the state they set, and has a port draw what they draw. It
// knows the file format; how drawing works is the port's business.
#pragma once

#include <map>

#include "media/codecs/pict/compressed_image.h"
#include "media/codecs/pict/mapping.h"
#include "media/codecs/pict/opcode_walker.h"
#include "media/codecs/pict/port.h"
#include "media/codecs/pict/profile_comment.h"
#include "media/codecs/pict/typesetter.h"

namespace codecs::pict {

// What playing a picture brought to light.
struct Findings {
  bool drewAnything = false;
  bool leftOutImage = false;  // one in a format that is not read
  int depth = 0;              // 8, 24 or 32; 0 when nothing was drawn
  bool hasAlpha = false;      // some pixels are not opaque, and not all of them transparent
  std::vector<uint8_t> profile;
};

class Player {
 public:
  // Borrows the port and the limits.
  Player(const Picture &picture, Port &port, const CGImageDecodeLimits &limits);

  Fault play();
  Findings findings() &&;
  bool metEnd() const noexcept { return walker_.metEndOpcode(); }

 private:
  // An alpha channel that waits for the bitmap it belongs to.
  struct Matte {
    uint32_t width = 0;
    uint32_t height = 0;
    std::vector<uint8_t> alpha;

    bool isThere() const noexcept { return !alpha.empty(); }
    uint8_t at(uint32_t x, uint32_t y) const noexcept { return alpha[size_t{y} * width + x]; }
  };

  // What a pen size of a certain height means: behind a compressed image it is a mark in front of the
  // drawing that stands in for it, which is skipped where the image was drawn.
  enum class PenMark : uint8_t { isSize, isMark, skips };

  // How text is set, in the file's terms.
  struct TextState {
    int font = 0;
    unsigned face = 0;
    Transfer mode = Transfer::paintOr;
    int size = 0;  // 0: the default
    double spaceExtra = 0;
    double characterExtra = 0;  // for each unit of size
    double justification = 0;
    double across = 1;
    double down = 1;
    bool hasFractionalWidths = false;
  };

  Fault handle(const Opcode &opcode);
  Fault handleState(const Opcode &opcode);
  void handleColour(const Opcode &opcode);
  void handlePen(const Opcode &opcode);
  Fault setPattern(const Opcode &opcode);
  Fault setClip(Bytes record);
  void takeComment(Bytes operands);

  // player_shapes.cpp
  Fault drawLine(const Opcode &opcode);
  Fault drawShape(const Opcode &opcode);
  void readPolygon(Bytes record);
  bool playShape(int kind, Verb verb, ByteReader &reader);
  void noteShape(const Pattern &pattern) noexcept;

  // player_text.cpp
  void handleText(const Opcode &opcode);
  void nameFont(Bytes operands);
  TextStyle textStyle() const;
  Fault drawText(const Opcode &opcode);
  bool setText(Bytes letters);

  // player_images.cpp
  Fault drawBitmap(const Opcode &opcode);
  Fault drawRecord(const PixelRecord &record);
  Fault drawCompressed(Bytes operands);
  Fault drawDecoded(const CompressedRecord &record, const DecodedImage &image, const Matte &matte);
  Fault takeMatte(const Opcode &opcode);
  Fault decodeMatte(Bytes bytes, Matte &matte);
  Result<DecodedImage> decodeInside(const ImageDescription &description, Bytes data);
  void applyMatte(const Matte &matte, const Box &source, int32_t y, int32_t left, Pixel *row,
                  size_t count) noexcept;
  void noteAlpha(const Pixel *row, size_t count) noexcept;
  void noteDrawn(int depth) noexcept;
  bool isStandIn(const Opcode &opcode);
  CGImageDecodeLimits limitsInside() const noexcept;

  OpcodeWalker walker_;
  Port &port_;
  const CGImageDecodeLimits &limits_;
  Mapping mapping_;
  ProfileCollector profiles_;
  Findings findings_;
  Point penAt_;
  Point textAt_;
  TextState text_;
  std::map<int, std::string> fontNames_;
  Typesetter typesetter_;
  Point ovalSize_;
  Box lastBox_;  // of rectangles, round rectangles, ovals and arcs alike
  std::vector<Point> lastPolygon_;
  Region lastRegion_;
  Pixel alphasSeen_ = 0;             // all alphas, or-ed
  Pixel alphasShared_ = kAlphaBits;  // and-ed
  Matte matte_;
  Box standIn_;  // where the image went that the next opcodes may stand in for; empty without
  PenMark penMark_ = PenMark::isSize;
};

// The colour of one of the eight old constants, or `other` for numbers that mean none.
Pixel oldColour(uint32_t constant, Pixel other) noexcept;

}  // namespace codecs::pict
