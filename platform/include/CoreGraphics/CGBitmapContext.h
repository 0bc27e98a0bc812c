/* Contexts that draw into pixel memory. */
#ifndef COREGRAPHICS_CGBITMAPCONTEXT_H
#define COREGRAPHICS_CGBITMAPCONTEXT_H

#include <CoreGraphics/CGContext.h>

CG_EXTERN_C_BEGIN

/* Makes a context over memory.
 *
 * data              height * bytesPerRow bytes of the caller's that outlive the context; NULL: the context
 *                   makes its own, zeroed.
 * bitsPerComponent  8.
 * bytesPerRow       at least a row's pixels; with data NULL, 0 means just that.
 * space             RGB with alpha info 1 to 6; grey with kCGImageAlphaNone; NULL or any with
 *                   kCGImageAlphaOnly.
 * bitmapInfo        the alpha info; byte order default, or 32-bit big-endian. Un-premultiplied pixels
 *                   (kCGImageAlphaLast, kCGImageAlphaFirst) are composed in premultiplied arithmetic and
 *                   stored straight. The skipped byte of every pixel drawn on becomes 255.
 * Gives             a new context; NULL for any other combination, or if memory runs out. */
CG_EXPORT CGContextRef CGBitmapContextCreate(void *data, size_t width, size_t height, size_t bitsPerComponent,
                                             size_t bytesPerRow, CGColorSpaceRef space,
                                             CGBitmapInfo bitmapInfo);

CG_EXPORT void *CGBitmapContextGetData(CGContextRef context);
CG_EXPORT size_t CGBitmapContextGetWidth(CGContextRef context);
CG_EXPORT size_t CGBitmapContextGetHeight(CGContextRef context);
CG_EXPORT size_t CGBitmapContextGetBitsPerComponent(CGContextRef context);
CG_EXPORT size_t CGBitmapContextGetBitsPerPixel(CGContextRef context);
CG_EXPORT size_t CGBitmapContextGetBytesPerRow(CGContextRef context);
CG_EXPORT CGColorSpaceRef CGBitmapContextGetColorSpace(CGContextRef context);
CG_EXPORT CGImageAlphaInfo CGBitmapContextGetAlphaInfo(CGContextRef context);
CG_EXPORT CGBitmapInfo CGBitmapContextGetBitmapInfo(CGContextRef context);

/* An image with a copy of the pixels as they are now. */
CG_EXPORT CGImageRef CGBitmapContextCreateImage(CGContextRef context);

CG_EXTERN_C_END

#endif
