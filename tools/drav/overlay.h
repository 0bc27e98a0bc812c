// An outline over its picture.
#pragma once

#include "ink.h"
#include "outline.h"

// Draws the outline with lines that many pixels wide. Throws Failure.
Image withOutline(Image picture, const Outline &outline, Ink ink, double width);
