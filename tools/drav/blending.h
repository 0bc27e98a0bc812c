// Blending one image into another, cut where they end.
#pragma once

#include "geometry.h"
#include "pixels.h"

// The image as the library's compositing takes it: grey stays grey, colour comes into the space that all
// images share. Throws Failure.
Image forBlending(Image image);

// A part of the image as one of its own, at another size if `width` and `height` differ from the part's.
// The part lies within the image. Throws Failure.
Image partOf(DRAVCFImageRef image, const Area &part);
Image resized(Image image, long width, long height);

// Blends the source into the destination with its top left corner at a place. What lies outside of the
// destination is cut off. Gives false if nothing is left. The destination may be promoted to another layout.
bool blendAt(DRAVCFImageRef source, DRAVCFImageRef destination, const Place &at, DRAVCFBlendMode mode);

// A transparent image, or a white one without alpha where grey is wanted. Throws Failure.
Image blankImage(const Area &size, bool isColor);
