// Which file of the system's holds a font.
#pragma once

#include <string>

#include "media/codecs/pict/font_names.h"

namespace codecs::pict {

struct FontFile {
  std::string path;  // empty: no font at all
  int index = 0;     // within the file
  bool isBold = false;
  bool isItalic = false;
};

// The best there is for a family and style; what the file lacks in style is left to be made up for.
// Remembered for the process's life.
FontFile findFontFile(const FontFamily &family, bool isBold, bool isItalic);

}  // namespace codecs::pict
