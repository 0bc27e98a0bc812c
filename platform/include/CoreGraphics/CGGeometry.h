/* Points, sizes and rectangles.
 *
 * A rectangle may have a negative width or height; every function but the plain field access works on its
 * standardised form. */
#ifndef COREGRAPHICS_CGGEOMETRY_H
#define COREGRAPHICS_CGGEOMETRY_H

#include <CoreGraphics/CGBase.h>

CG_EXTERN_C_BEGIN

typedef struct CGPoint {
  CGFloat x, y;
} CGPoint;

typedef struct CGSize {
  CGFloat width, height;
} CGSize;

typedef struct CGRect {
  CGPoint origin;
  CGSize size;
} CGRect;

CG_EXPORT const CGPoint CGPointZero;
CG_EXPORT const CGSize CGSizeZero;
CG_EXPORT const CGRect CGRectZero;
/* What the intersection of rectangles apart is: origin at infinity, size 0. */
CG_EXPORT const CGRect CGRectNull;
/* Contains every point: origin -FLT_MAX / 2, size FLT_MAX. */
CG_EXPORT const CGRect CGRectInfinite;

static inline CGPoint CGPointMake(CGFloat x, CGFloat y) {
  CGPoint point;
  point.x = x;
  point.y = y;
  return point;
}

static inline CGSize CGSizeMake(CGFloat width, CGFloat height) {
  CGSize size;
  size.width = width;
  size.height = height;
  return size;
}

static inline CGRect CGRectMake(CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
  CGRect rect;
  rect.origin = CGPointMake(x, y);
  rect.size = CGSizeMake(width, height);
  return rect;
}

/* Of the standardised rectangle. */
CG_EXPORT CGFloat CGRectGetMinX(CGRect rect);
CG_EXPORT CGFloat CGRectGetMidX(CGRect rect);
CG_EXPORT CGFloat CGRectGetMaxX(CGRect rect);
CG_EXPORT CGFloat CGRectGetMinY(CGRect rect);
CG_EXPORT CGFloat CGRectGetMidY(CGRect rect);
CG_EXPORT CGFloat CGRectGetMaxY(CGRect rect);
CG_EXPORT CGFloat CGRectGetWidth(CGRect rect);
CG_EXPORT CGFloat CGRectGetHeight(CGRect rect);

CG_EXPORT bool CGPointEqualToPoint(CGPoint a, CGPoint b);
CG_EXPORT bool CGSizeEqualToSize(CGSize a, CGSize b);
CG_EXPORT bool CGRectEqualToRect(CGRect a, CGRect b);

/* The same area with a width and height that are not negative: a negative one is folded into the origin. */
CG_EXPORT CGRect CGRectStandardize(CGRect rect);
/* The smallest rectangle with whole-numbered edges that contains it; the null rectangle stays itself. */
CG_EXPORT CGRect CGRectIntegral(CGRect rect);
/* Moves the edges inward by dx and dy (outward where negative); null if nothing is left. */
CG_EXPORT CGRect CGRectInset(CGRect rect, CGFloat dx, CGFloat dy);
CG_EXPORT CGRect CGRectOffset(CGRect rect, CGFloat dx, CGFloat dy);
CG_EXPORT CGRect CGRectUnion(CGRect a, CGRect b);
/* What both share; CGRectNull where they are apart. */
CG_EXPORT CGRect CGRectIntersection(CGRect a, CGRect b);

CG_EXPORT bool CGRectIsEmpty(CGRect rect); /* null, or without width or height */
CG_EXPORT bool CGRectIsNull(CGRect rect);
CG_EXPORT bool CGRectIsInfinite(CGRect rect);
/* Whether the point lies inside or on the edges of least x and least y. */
CG_EXPORT bool CGRectContainsPoint(CGRect rect, CGPoint point);
CG_EXPORT bool CGRectContainsRect(CGRect outer, CGRect inner);
CG_EXPORT bool CGRectIntersectsRect(CGRect a, CGRect b);

CG_EXTERN_C_END

#endif
