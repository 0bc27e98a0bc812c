#include "media/codecs/pict/survey.h"

#include "media/codecs/pict/opcode.h"

namespace codecs::pict {
namespace {

constexpr size_t kComponentsAt = 34;  // of a direct bitmap's operands

bool bringsAlpha(const Opcode &opcode) noexcept {
  switch (opcode.code) {
    case op::directBitsRect:
    case op::directBitsRegion:
      return readBig16(opcode.operands, kComponentsAt) == 4;
    case op::compressedImage:
    case op::matte:
      return true;
    default:
      return false;
  }
}

}  // namespace

Result<Survey> surveyPicture(Bytes file, const CGImageDecodeLimits &limits,
                             const OpcodeVisitor &visitor) noexcept {
  const auto picture = findPicture(file);
  if (!picture) return Fault::unknownFormat;
  Survey survey{*picture};
  OpcodeWalker walker(*picture);
  while (const auto opcode = walker.next()) {
    if (walker.count() > limits.pictOpcodes) return Fault::tooLarge;
    survey.mayHaveAlpha = survey.mayHaveAlpha || bringsAlpha(*opcode);
    if (visitor.visit) visitor.visit(visitor.context, opcode->code, opcode->operands.size());
  }
  if (walker.fault() != Fault::none) return walker.fault();
  survey.opcodes = walker.count();
  return survey;
}

}  // namespace codecs::pict
