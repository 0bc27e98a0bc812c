// A small font for labels.
#pragma once

#include <string_view>

#include "drawing.h"

// Pixels from the top of a capital to the foot of a "g", before enlarging.
inline constexpr long kLineHeight = 9;

// ASCII; any other byte shows as a question mark. Each pixel of a letter becomes a square of `scale` pixels.
long textWidth(std::string_view text, long scale);
void drawText(const Pixels &pixels, const Place &topLeft, std::string_view text, Ink ink, long scale);
