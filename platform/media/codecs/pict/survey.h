// A picture's opcodes without its pixels.
#pragma once

#include "media/codecs/pict/opcode_walker.h"

namespace codecs::pict {

// Told of every opcode in turn.
struct OpcodeVisitor {
  void (*visit)(void *context, uint16_t code, size_t operandBytes) = nullptr;
  void *context = nullptr;
};

struct Survey {
  Picture picture;
  uint64_t opcodes = 0;       // the end mark not counted
  bool mayHaveAlpha = false;  // some opcode brings a fourth component or a matte
};

// Goes over all opcodes without drawing, so that a damaged picture costs no canvas.
Result<Survey> surveyPicture(Bytes file, const CGImageDecodeLimits &limits,
                             const OpcodeVisitor &visitor = {}) noexcept;

}  // namespace codecs::pict
