#include "media/codecs/pict/operands.h"

#include <gtest/gtest.h>

#include "media/codecs/pict/opcode.h"

namespace codecs::pict {
namespace {

// Bytes that make every counted length 258 or 1, whichever size of count an opcode has.
std::vector<uint8_t> filler() {
  std::vector<uint8_t> bytes(2000, 0);
  for (size_t i = 0; i < 12; ++i) bytes[i] = 1;
  return bytes;
}

size_t length(unsigned opcode, const std::vector<uint8_t> &rest = filler()) {
  const auto size = operandBytes(static_cast<uint16_t>(opcode), rest, true);
  EXPECT_EQ(size.fault, Fault::none) << std::hex << opcode;
  return size.value;
}

TEST(PictOperands, StateOpcodesHaveFixedLengths) {
  const struct {
    uint16_t opcode;
    size_t bytes;
  } kLengths[] = {{0x00, 0}, {0x02, 8}, {0x03, 2}, {0x04, 1}, {0x05, 2}, {0x06, 4}, {0x07, 4},
                  {0x08, 2}, {0x09, 8}, {0x0A, 8}, {0x0B, 4}, {0x0C, 4}, {0x0D, 2}, {0x0E, 4},
                  {0x0F, 4}, {0x10, 8}, {0x11, 1}, {0x15, 2}, {0x16, 2}, {0x17, 0}, {0x18, 0},
                  {0x19, 0}, {0x1A, 6}, {0x1B, 6}, {0x1C, 0}, {0x1D, 6}, {0x1E, 0}, {0x1F, 6},
                  {0x20, 8}, {0x21, 4}, {0x22, 6}, {0x23, 2}, {0xA0, 2}};
  for (const auto &row : kLengths) EXPECT_EQ(length(row.opcode), row.bytes) << std::hex << row.opcode;
}

TEST(PictOperands, ShapesAreAsLongAsTheirKind) {
  for (unsigned verb = 0; verb < 8; ++verb) {
    for (const unsigned kind : {0x30, 0x40, 0x50}) {
      EXPECT_EQ(length(kind + verb), 8u);
      EXPECT_EQ(length(kind + 8 + verb), 0u);
    }
    EXPECT_EQ(length(0x60 + verb), 12u);
    EXPECT_EQ(length(0x68 + verb), 4u);
    std::vector<uint8_t> sized(40);
    sized[1] = 26;
    for (const unsigned kind : {0x70, 0x80}) {
      EXPECT_EQ(length(kind + verb, sized), 26u);
      EXPECT_EQ(length(kind + 8 + verb), 0u);
    }
  }
}

TEST(PictOperands, TextAndCommentsCountTheirBytes) {
  EXPECT_EQ(length(0x28), 6u);
  EXPECT_EQ(length(0x29), 3u);
  EXPECT_EQ(length(0x2A), 3u);
  EXPECT_EQ(length(0x2B), 4u);
  EXPECT_EQ(length(0x2C), 2u + 0x101);
  EXPECT_EQ(length(0x2D), 2u + 0x101);
  EXPECT_EQ(length(0x2E), 2u + 0x101);
  EXPECT_EQ(length(0xA1), 4u + 0x101);
}

TEST(PictOperands, EveryReservedOpcodeCanBeSkipped) {
  for (unsigned code = 0; code <= 0xFFFF; ++code) {
    const auto opcode = static_cast<uint16_t>(code);
    if (isKnownOpcode(opcode)) continue;
    std::vector<uint8_t> rest(0x20000, 0);
    rest[1] = 16;  // a count of 16, or 1,048,576 as one of 32 bits
    rest[3] = 16;
    const auto size = operandBytes(opcode, rest, true);
    if (code >= 0x24 && code <= 0x2F) {
      ASSERT_EQ(size.value, 18u) << std::hex << code;
    } else if (code >= 0x92 && code <= 0x9F) {
      ASSERT_EQ(size.value, 18u) << std::hex << code;
    } else if (code >= 0xA2 && code <= 0xAF) {
      ASSERT_EQ(size.value, 18u) << std::hex << code;
    } else if (code >= 0xB0 && code <= 0xCF) {
      ASSERT_EQ(size.value, 0u) << std::hex << code;
    } else if ((code >= 0xD0 && code <= 0xFE) || code >= 0x8100) {
      ASSERT_EQ(size.fault, Fault::truncated) << std::hex << code;
      rest[1] = 0;
      ASSERT_EQ(operandBytes(opcode, rest, true).value, 20u) << std::hex << code;
    } else if (code >= 0x100 && code <= 0x7FFF) {
      ASSERT_EQ(size.value, 2u * (code >> 8)) << std::hex << code;
    } else if (code >= 0x8000) {
      ASSERT_EQ(size.value, 0u) << std::hex << code;
    } else {
      ASSERT_EQ(size.fault, Fault::none) << std::hex << code;
    }
  }
}

TEST(PictOperands, NothingIsReadBehindTheEnd) {
  for (unsigned code = 0; code <= 0x1FF; ++code) {
    const std::vector<uint8_t> full = filler();
    for (size_t size = 0; size < 300; ++size) {
      const std::vector<uint8_t> rest(full.begin(), full.begin() + static_cast<long>(size));
      const auto found = operandBytes(static_cast<uint16_t>(code), rest, true);
      ASSERT_TRUE(!found || found.value <= size);
    }
  }
}

TEST(PictOperands, ALengthOfFourGigabytesIsTruncated) {
  EXPECT_EQ(operandBytes(0x8200, std::vector<uint8_t>(8, 0xFF), true).fault, Fault::truncated);
}

TEST(PictOperands, OpcodesHaveNames) {
  EXPECT_EQ(opcodeName(0x31), "paintRect");
  EXPECT_EQ(opcodeName(0x7C), "fillSamePoly");
  EXPECT_EQ(opcodeName(0x9A), "directBitsRect");
  EXPECT_EQ(opcodeName(0x35), "reserved");
  EXPECT_EQ(opcodeName(0x7FFF), "reserved");
}

}  // namespace
}  // namespace codecs::pict
