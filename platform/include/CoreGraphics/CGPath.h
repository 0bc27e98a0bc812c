/* Paths of lines and curves. Where a transform is taken, NULL is the identity. A line, curve or close without
 * a current point adds nothing; nor does anything once memory runs out. */
#ifndef COREGRAPHICS_CGPATH_H
#define COREGRAPHICS_CGPATH_H

#include <CoreGraphics/CGAffineTransform.h>

CG_EXTERN_C_BEGIN

typedef int32_t CGPathElementType;
enum {
  kCGPathElementMoveToPoint = 0,
  kCGPathElementAddLineToPoint = 1,
  kCGPathElementAddQuadCurveToPoint = 2,
  kCGPathElementAddCurveToPoint = 3,
  kCGPathElementCloseSubpath = 4
};

typedef struct CGPathElement {
  CGPathElementType type;
  CGPoint *points; /* 1 for a move or line, 2 for a quadratic, 3 for a cubic, none for a close */
} CGPathElement;

typedef void (*CGPathApplierFunction)(void *info, const CGPathElement *element);

CG_EXPORT CFTypeID CGPathGetTypeID(void);
CG_EXPORT CGMutablePathRef CGPathCreateMutable(void);
CG_EXPORT CGPathRef CGPathCreateCopy(CGPathRef path);
CG_EXPORT CGMutablePathRef CGPathCreateMutableCopy(CGPathRef path);
CG_EXPORT CGPathRef CGPathRetain(CGPathRef path);
CG_EXPORT void CGPathRelease(CGPathRef path);

CG_EXPORT void CGPathMoveToPoint(CGMutablePathRef path, const CGAffineTransform *m, CGFloat x, CGFloat y);
CG_EXPORT void CGPathAddLineToPoint(CGMutablePathRef path, const CGAffineTransform *m, CGFloat x, CGFloat y);
CG_EXPORT void CGPathAddQuadCurveToPoint(CGMutablePathRef path, const CGAffineTransform *m, CGFloat cpx,
                                         CGFloat cpy, CGFloat x, CGFloat y);
CG_EXPORT void CGPathAddCurveToPoint(CGMutablePathRef path, const CGAffineTransform *m, CGFloat cp1x,
                                     CGFloat cp1y, CGFloat cp2x, CGFloat cp2y, CGFloat x, CGFloat y);
CG_EXPORT void CGPathCloseSubpath(CGMutablePathRef path);
CG_EXPORT void CGPathAddRect(CGMutablePathRef path, const CGAffineTransform *m, CGRect rect);

CG_EXPORT bool CGPathIsEmpty(CGPathRef path);
CG_EXPORT bool CGPathEqualToPath(CGPathRef a, CGPathRef b);
/* The end of the last element; (0, 0) in an empty path. */
CG_EXPORT CGPoint CGPathGetCurrentPoint(CGPathRef path);
/* Contains every point, control points included; CGRectNull for an empty path. */
CG_EXPORT CGRect CGPathGetBoundingBox(CGPathRef path);
/* Calls the function for each element, in order. */
CG_EXPORT void CGPathApply(CGPathRef path, void *info, CGPathApplierFunction function);

CG_EXTERN_C_END

#endif
