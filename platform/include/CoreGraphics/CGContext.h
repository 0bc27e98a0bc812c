/* Drawing. Everything goes through the current matrix and is cut off by the clip rectangle. */
#ifndef COREGRAPHICS_CGCONTEXT_H
#define COREGRAPHICS_CGCONTEXT_H

#include <CoreGraphics/CGAffineTransform.h>
#include <CoreGraphics/CGGeometry.h>
#include <CoreGraphics/CGImage.h>

CG_EXTERN_C_BEGIN

typedef int32_t CGInterpolationQuality;
enum {
  kCGInterpolationDefault = 0, /* enlarging bilinear, reducing by a filter that covers every pixel */
  kCGInterpolationNone = 1,    /* the nearest pixel */
  kCGInterpolationLow = 2,     /* as the default */
  kCGInterpolationHigh = 3,    /* Lanczos-3 */
  kCGInterpolationMedium = 4   /* as the default */
};

CG_EXPORT CFTypeID CGContextGetTypeID(void);
CG_EXPORT CGContextRef CGContextRetain(CGContextRef context);
CG_EXPORT void CGContextRelease(CGContextRef context);

/* The state is matrix, clip, fill colour and interpolation quality. A restore without a save does nothing. */
CG_EXPORT void CGContextSaveGState(CGContextRef context);
CG_EXPORT void CGContextRestoreGState(CGContextRef context);

CG_EXPORT void CGContextTranslateCTM(CGContextRef context, CGFloat tx, CGFloat ty);
CG_EXPORT void CGContextScaleCTM(CGContextRef context, CGFloat sx, CGFloat sy);
CG_EXPORT void CGContextRotateCTM(CGContextRef context, CGFloat angleRadians);
CG_EXPORT void CGContextConcatCTM(CGContextRef context, CGAffineTransform transform);
CG_EXPORT CGAffineTransform CGContextGetCTM(CGContextRef context);

/* Narrows the clip to the pixels whose centres lie in the rectangle (after the matrix: in its bounds). */
CG_EXPORT void CGContextClipToRect(CGContextRef context, CGRect rect);
CG_EXPORT CGRect CGContextGetClipBoundingBox(CGContextRef context);

CG_EXPORT void CGContextSetInterpolationQuality(CGContextRef context, CGInterpolationQuality quality);
CG_EXPORT CGInterpolationQuality CGContextGetInterpolationQuality(CGContextRef context);

/* Draws the whole image into the rectangle, source over destination. Where pixels fall on pixels they are
 * copied exactly, flipped ones too; otherwise they are filtered in premultiplied form. Colours are converted
 * into the context's space. */
CG_EXPORT void CGContextDrawImage(CGContextRef context, CGRect rect, CGImageRef image);

/* The same, saying how it went. An extension.
 * Gives  true if all of it is drawn, be it that nothing was to be drawn; false without a context or an
 *        image, or if memory ran out: then no pixel has changed. */
CG_EXPORT bool CGContextTryDrawImage(CGContextRef context, CGRect rect, CGImageRef image);

/* The fill colour, straight, 0 to 1, in the context's own space or in grey. */
CG_EXPORT void CGContextSetRGBFillColor(CGContextRef context, CGFloat red, CGFloat green, CGFloat blue,
                                        CGFloat alpha);
CG_EXPORT void CGContextSetGrayFillColor(CGContextRef context, CGFloat gray, CGFloat alpha);
/* Pixels whose centres lie inside. Clear makes them transparent, or black where there is no alpha. */
CG_EXPORT void CGContextFillRect(CGContextRef context, CGRect rect);
CG_EXPORT void CGContextClearRect(CGContextRef context, CGRect rect);

/* Nothing is ever held back: does nothing. */
CG_EXPORT void CGContextFlush(CGContextRef context);

CG_EXTERN_C_END

#endif
