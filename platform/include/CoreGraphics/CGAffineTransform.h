/* Affine transforms: x' = a x + c y + tx, y' = b x + d y + ty. */
#ifndef COREGRAPHICS_CGAFFINETRANSFORM_H
#define COREGRAPHICS_CGAFFINETRANSFORM_H

#include <CoreGraphics/CGGeometry.h>

CG_EXTERN_C_BEGIN

typedef struct CGAffineTransform {
  CGFloat a, b, c, d, tx, ty;
} CGAffineTransform;

CG_EXPORT const CGAffineTransform CGAffineTransformIdentity;

CG_EXPORT CGAffineTransform CGAffineTransformMake(CGFloat a, CGFloat b, CGFloat c, CGFloat d, CGFloat tx,
                                                  CGFloat ty);
CG_EXPORT CGAffineTransform CGAffineTransformMakeTranslation(CGFloat tx, CGFloat ty);
CG_EXPORT CGAffineTransform CGAffineTransformMakeScale(CGFloat sx, CGFloat sy);
CG_EXPORT CGAffineTransform CGAffineTransformMakeRotation(CGFloat angleRadians);

/* The step first, then the transform. */
CG_EXPORT CGAffineTransform CGAffineTransformTranslate(CGAffineTransform t, CGFloat tx, CGFloat ty);
CG_EXPORT CGAffineTransform CGAffineTransformScale(CGAffineTransform t, CGFloat sx, CGFloat sy);
CG_EXPORT CGAffineTransform CGAffineTransformRotate(CGAffineTransform t, CGFloat angleRadians);
/* t1 first, then t2. */
CG_EXPORT CGAffineTransform CGAffineTransformConcat(CGAffineTransform t1, CGAffineTransform t2);
/* The transform back; one that has none is given unchanged. */
CG_EXPORT CGAffineTransform CGAffineTransformInvert(CGAffineTransform t);

CG_EXPORT bool CGAffineTransformIsIdentity(CGAffineTransform t);
CG_EXPORT bool CGAffineTransformEqualToTransform(CGAffineTransform t1, CGAffineTransform t2);

CG_EXPORT CGPoint CGPointApplyAffineTransform(CGPoint point, CGAffineTransform t);
CG_EXPORT CGSize CGSizeApplyAffineTransform(CGSize size, CGAffineTransform t);
/* The smallest rectangle that contains the transformed one. */
CG_EXPORT CGRect CGRectApplyAffineTransform(CGRect rect, CGAffineTransform t);

CG_EXTERN_C_END

#endif
