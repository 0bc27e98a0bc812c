// Pictures, which hold a drawing rather than pixels: what they are, and drawing them at another size.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "geometry.h"
#include "image.h"

struct OpcodeFact {
  uint32_t code = 0;
  const char *name = nullptr;  // constant
  size_t operandBytes = 0;
};

struct PictureFacts {
  int version = 0;          // 1 or 2
  bool isExtended = false;  // version 2 with a resolution of its own
  Area frame;               // as the file has it
  Area drawing;             // in units of the drawing, each one a pixel
  uint64_t opcodes = 0;     // the end mark not counted
  std::vector<OpcodeFact> list;
};

enum class Opcodes { counted, listed };

// Nothing for a file that is no picture. Throws Failure for a damaged one.
std::optional<PictureFacts> pictureFactsOf(CFDataRef file, Opcodes opcodes);

// The image in a file at another size. A drawing that becomes larger is drawn anew, with lines, shapes and
// letters as fine as the pixels then are; pixels are scaled. Throws Failure.
Image decodeImageAtSize(CFDataRef file, const TargetSize &target);
