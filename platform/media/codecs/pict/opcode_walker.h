// A picture as a sequence of opcodes with their operands, cut out exactly.
#pragma once

#include "media/codecs/pict/picture.h"

namespace codecs::pict {

struct Opcode {
  uint16_t code = 0;
  bool wordOpcodes = true;  // version 2
  Bytes operands;
};

class OpcodeWalker {
 public:
  explicit OpcodeWalker(const Picture &picture) noexcept
      : bytes_(picture.bytes), at_(picture.firstOpcode), wordOpcodes_(picture.version == 2) {}

  // None at the end of the picture and from the first fault on.
  std::optional<Opcode> next() noexcept;

  Fault fault() const noexcept { return fault_; }
  bool metEndOpcode() const noexcept { return metEnd_; }
  uint64_t count() const noexcept { return count_; }  // opcodes given so far

  // Leaves out bytes that follow the opcode given last.
  void skip(size_t bytes) noexcept;

 private:
  std::optional<uint16_t> readOpcode() noexcept;
  void align() noexcept;

  Bytes bytes_;
  size_t at_;
  bool wordOpcodes_;
  bool metEnd_ = false;
  Fault fault_ = Fault::none;
  uint64_t count_ = 0;
};

}  // namespace codecs::pict
