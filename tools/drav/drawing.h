// Drawing into pixels of four bytes, alpha first, that are opaque.
#pragma once

#include <string_view>

#include "pixels.h"

struct Ink {
  uint8_t red = 0, green = 0, blue = 0;
};

// All of them draw what lies within the pixels and leave out the rest.

void fill(const Pixels &pixels, const Area &area, Ink ink) noexcept;

// Squares of `side` pixels in two colours by turns.
void fillChecks(const Pixels &pixels, const Area &area, long side, Ink first, Ink second) noexcept;

// Covers a part of one pixel, 0 to 1; what is there shows through the rest.
void cover(const Pixels &pixels, long x, long y, Ink ink, double part) noexcept;
