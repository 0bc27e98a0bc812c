// What can be said about an encoded image.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

struct Facts {
  std::string format;
  size_t width = 0, height = 0;  // pixels
  size_t bitsPerComponent = 0;   // as loaded; the file itself may hold more
  size_t bitsPerPixel = 0;       // likewise, 32 also where the alpha byte means nothing
  std::string color;             // "gray", "RGB", ...
  bool hasAlpha = false;
  std::optional<std::string> profile;         // its description; none: the file has no profile
  double dotsPerInchX = 0, dotsPerInchY = 0;  // 0: the file does not say
  size_t fileBytes = 0;
};

// Decodes the image whole, so that a damaged one is found out. Throws Failure.
Facts factsOf(CFDataRef file);
