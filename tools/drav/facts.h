// What can be said about an encoded image.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "picture.h"

struct Facts {
  std::string format;
  size_t width = 0, height = 0;  // pixels
  size_t bitsPerComponent = 8;   // as read: files of 16 are rounded, fewer are spread
  size_t bitsPerPixel = 0;       // likewise, alpha included
  std::string color;             // "gray" or "RGB"
  bool hasAlpha = false;
  std::optional<std::string> profile;         // its name; none: the file carries none that fits its colours
  double dotsPerInchX = 0, dotsPerInchY = 0;  // 0: the file does not say
  size_t fileBytes = 0;
  std::optional<PictureFacts> picture;  // for formats that hold drawings
};

// Decodes the image whole, so that a damaged one is found out. Throws Failure.
Facts factsOf(CFDataRef file, Opcodes opcodes);
