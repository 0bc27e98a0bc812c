// How long each opcode's operands are, whether or not anything is done with them.
#pragma once

#include "media/codecs/codec.h"

namespace codecs::pict {

// The operands' bytes, without padding. `rest` is what follows the opcode; `wordOpcodes` tells version 2
// from version 1. Every opcode has a length; truncated when it is more than `rest`, damaged when the
// operands cannot be what they claim.
Result<size_t> operandBytes(uint16_t opcode, Bytes rest, bool wordOpcodes) noexcept;

}  // namespace codecs::pict
