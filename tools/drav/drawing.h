// Drawing into pixels of four bytes, alpha first, that are opaque.
#pragma once

#include "ink.h"
#include "pixels.h"

// All of them draw what lies within the pixels and leave out the rest.

void fill(const Pixels &pixels, const Area &area, Ink ink) noexcept;

// Squares of `side` pixels in two colours by turns.
void fillChecks(const Pixels &pixels, const Area &area, long side, Ink first, Ink second) noexcept;
