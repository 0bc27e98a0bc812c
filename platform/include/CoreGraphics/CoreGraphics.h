/* Drawing: geometry, colour spaces, images, bitmap contexts, paths.
 *
 * Conventions of the whole interface:
 *  1. Ownership: what a function with Create or Copy in its name gives is the caller's to release; what a
 *     Get function gives is borrowed. Retain and release functions of a type take NULL and do nothing.
 *  2. NULL where an object is needed gives NULL or 0, or does nothing.
 *  3. Creation gives NULL for what cannot be made, and if memory runs out. Drawing that cannot be done
 *     leaves the pixels as they were.
 *  4. Coordinates are single-precision floats, x to the right, y up, the origin at the bottom left;
 *     row 0 of pixel memory is the top row. */
#ifndef COREGRAPHICS_COREGRAPHICS_H
#define COREGRAPHICS_COREGRAPHICS_H

#include <CoreGraphics/CGAffineTransform.h>
#include <CoreGraphics/CGBase.h>
#include <CoreGraphics/CGBitmapContext.h>
#include <CoreGraphics/CGColorSpace.h>
#include <CoreGraphics/CGContext.h>
#include <CoreGraphics/CGDataProvider.h>
#include <CoreGraphics/CGGeometry.h>
#include <CoreGraphics/CGImage.h>
#include <CoreGraphics/CGPath.h>

#endif
