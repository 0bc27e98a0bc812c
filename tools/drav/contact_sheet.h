// All blend modes of two images on one sheet.
#pragma once

#include <string>

#include "image.h"

struct SheetText {
  std::string source, destination;  // what the two images are called
};

// An opaque image: the two images above, then a cell for each mode with its name, over a checkerboard where
// it is transparent. `cellSide` bounds each picture's longer side, in pixels. Throws Failure.
Image makeContactSheet(Image source, Image destination, const SheetText &text, long cellSide);
