#include "media/codecs/pict/opcode_walker.h"

#include "media/codecs/pict/opcode.h"
#include "media/codecs/pict/operands.h"

namespace codecs::pict {

// Words start at even offsets from the picture's first byte.
void OpcodeWalker::align() noexcept {
  if (wordOpcodes_) at_ = std::min(at_ + at_ % 2, bytes_.size());
}

void OpcodeWalker::skip(size_t bytes) noexcept {
  at_ = std::min(bytes, bytes_.size() - at_) + at_;
  align();
}

// A single byte behind the last opcode is padding.
std::optional<uint16_t> OpcodeWalker::readOpcode() noexcept {
  const size_t size = wordOpcodes_ ? 2 : 1;
  if (bytes_.size() - at_ < size) return std::nullopt;
  const uint16_t code = wordOpcodes_ ? readBig16(bytes_, at_) : bytes_[at_];
  at_ += size;
  return code;
}

std::optional<Opcode> OpcodeWalker::next() noexcept {
  if (metEnd_ || fault_ != Fault::none) return std::nullopt;
  const auto code = readOpcode();
  if (!code) return std::nullopt;
  if (*code == op::endOfPicture) {
    metEnd_ = true;
    return std::nullopt;
  }
  const auto size = operandBytes(*code, bytes_.subspan(at_), wordOpcodes_);
  if (!size) {
    fault_ = size.fault;
    return std::nullopt;
  }
  const Opcode opcode{*code, wordOpcodes_, bytes_.subspan(at_, size.value)};
  at_ += size.value;
  if (*code == op::version) wordOpcodes_ = opcode.operands[0] != 1;
  align();
  ++count_;
  return opcode;
}

}  // namespace codecs::pict
