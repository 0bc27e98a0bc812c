#include "media/codecs/pict/opcode.h"

#include <algorithm>
#include <array>

namespace codecs::pict {
namespace {

struct Named {
  uint16_t opcode;
  std::string_view name;
};

constexpr std::string_view kReserved = "reserved";

// Shapes apart, in ascending order.
constexpr std::array kNames = std::to_array<Named>({
    {op::nop, "nop"},
    {op::clipRegion, "clipRgn"},
    {op::backPattern, "bkPat"},
    {op::textFont, "txFont"},
    {op::textFace, "txFace"},
    {op::textMode, "txMode"},
    {op::spaceExtra, "spExtra"},
    {op::penSize, "pnSize"},
    {op::penMode, "pnMode"},
    {op::penPattern, "pnPat"},
    {op::fillPattern, "fillPat"},
    {op::ovalSize, "ovSize"},
    {op::origin, "origin"},
    {op::textSize, "txSize"},
    {op::foreColour, "fgColor"},
    {op::backColour, "bkColor"},
    {op::textRatio, "txRatio"},
    {op::version, "version"},
    {op::backPixelPattern, "bkPixPat"},
    {op::penPixelPattern, "pnPixPat"},
    {op::fillPixelPattern, "fillPixPat"},
    {op::penFraction, "pnLocHFrac"},
    {op::characterExtra, "chExtra"},
    {op::rgbForeColour, "rgbFgCol"},
    {op::rgbBackColour, "rgbBkCol"},
    {op::hiliteMode, "hiliteMode"},
    {op::hiliteColour, "hiliteColor"},
    {op::defaultHilite, "defHilite"},
    {op::opColour, "opColor"},
    {op::line, "line"},
    {op::lineFrom, "lineFrom"},
    {op::shortLine, "shortLine"},
    {op::shortLineFrom, "shortLineFrom"},
    {op::longText, "longText"},
    {op::dhText, "dhText"},
    {op::dvText, "dvText"},
    {op::dhdvText, "dhdvText"},
    {op::fontName, "fontName"},
    {op::lineJustify, "lineJustify"},
    {op::glyphState, "glyphState"},
    {op::bitsRect, "bitsRect"},
    {op::bitsRegion, "bitsRgn"},
    {op::packBitsRect, "packBitsRect"},
    {op::packBitsRegion, "packBitsRgn"},
    {op::directBitsRect, "directBitsRect"},
    {op::directBitsRegion, "directBitsRgn"},
    {op::shortComment, "shortComment"},
    {op::longComment, "longComment"},
    {op::endOfPicture, "endPic"},
    {op::header, "header"},
    {op::compressedImage, "compressedImage"},
    {op::matte, "matte"},
});

constexpr size_t kVerbs = 5;

// By kind of shape, bit 3, and verb.
constexpr std::string_view kShapeNames[6][2][kVerbs] = {
    {{"frameRect", "paintRect", "eraseRect", "invertRect", "fillRect"},
     {"frameSameRect", "paintSameRect", "eraseSameRect", "invertSameRect", "fillSameRect"}},
    {{"frameRRect", "paintRRect", "eraseRRect", "invertRRect", "fillRRect"},
     {"frameSameRRect", "paintSameRRect", "eraseSameRRect", "invertSameRRect", "fillSameRRect"}},
    {{"frameOval", "paintOval", "eraseOval", "invertOval", "fillOval"},
     {"frameSameOval", "paintSameOval", "eraseSameOval", "invertSameOval", "fillSameOval"}},
    {{"frameArc", "paintArc", "eraseArc", "invertArc", "fillArc"},
     {"frameSameArc", "paintSameArc", "eraseSameArc", "invertSameArc", "fillSameArc"}},
    {{"framePoly", "paintPoly", "erasePoly", "invertPoly", "fillPoly"},
     {"frameSamePoly", "paintSamePoly", "eraseSamePoly", "invertSamePoly", "fillSamePoly"}},
    {{"frameRgn", "paintRgn", "eraseRgn", "invertRgn", "fillRgn"},
     {"frameSameRgn", "paintSameRgn", "eraseSameRgn", "invertSameRgn", "fillSameRgn"}},
};

}  // namespace

std::string_view opcodeName(uint16_t opcode) noexcept {
  if (opcode >= op::firstRect && opcode <= op::lastShape) {
    const size_t verb = opcode & 7u;
    return verb < kVerbs ? kShapeNames[(opcode >> 4) - 3][opcode >> 3 & 1][verb] : kReserved;
  }
  const auto *found = std::ranges::lower_bound(kNames, opcode, {}, &Named::opcode);
  return found != kNames.end() && found->opcode == opcode ? found->name : kReserved;
}

bool isKnownOpcode(uint16_t opcode) noexcept { return opcodeName(opcode) != kReserved; }

}  // namespace codecs::pict
