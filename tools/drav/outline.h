// The outline of what is opaque in an image.
#pragma once

#include <vector>

#include "geometry.h"
#include "image.h"

// One closed line. Its corners are pixels, counted from the top left, and stand for the pixels' centres.
using Loop = std::vector<Place>;

struct Outline {
  long width = 0, height = 0;  // of the image
  std::vector<Loop> loops;
};

// Around the pixels whose alpha exceeds the threshold, 0 to 1. Promotes the image. Throws Failure.
Outline traceOutline(DRAVCFImageRef image, float threshold);
