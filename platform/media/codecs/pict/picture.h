// Where a picture starts in a file, and what its first bytes say.
#pragma once

#include <optional>

#include "media/codecs/pict/geometry.h"

namespace codecs::pict {

struct Picture {
  Bytes bytes;      // from the picture's size word on, to the end of the file
  Box frame;        // at 72 dots per inch, in principle
  int version = 2;  // 1 or 2
  bool isExtended = false;
  Box drawing;  // the rectangle that drawing coordinates refer to
  Resolution resolution;
  size_t firstOpcode = 0;  // behind the version; a header opcode still counts as an opcode
};

// How sure it is that a file starting so holds a picture; 0: it does not.
int scorePicture(Bytes head) noexcept;

// Pictures start at the file's first byte, behind 512 bytes that belong to the program that wrote the
// file, or behind twice as many where somebody put blank ones in front of such a file; all that possibly
// inside a MacBinary wrapping. None when no place looks like a picture.
std::optional<Picture> findPicture(Bytes file) noexcept;

}  // namespace codecs::pict
