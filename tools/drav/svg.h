// An outline as a vector picture.
#pragma once

#include <optional>
#include <string>

#include "ink.h"
#include "outline.h"

struct LineStyle {
  std::optional<Ink> fill, stroke;
  double strokeWidth = 1;  // pixels
};

// One path, holes left open, in a picture of the image's size.
std::string svgOf(const Outline &outline, const LineStyle &style);
