#include "media/codecs/pict/survey.h"

namespace codecs::pict {

Result<Survey> surveyPicture(Bytes file, const CGImageDecodeLimits &limits,
                             const OpcodeVisitor &visitor) noexcept {
  const auto picture = findPicture(file);
  if (!picture) return Fault::unknownFormat;
  OpcodeWalker walker(*picture);
  while (const auto opcode = walker.next()) {
    if (walker.count() > limits.pictOpcodes) return Fault::tooLarge;
    if (visitor.visit) visitor.visit(visitor.context, opcode->code, opcode->operands.size());
  }
  if (walker.fault() != Fault::none) return walker.fault();
  return Survey{*picture, walker.count()};
}

}  // namespace codecs::pict
