// Affine transforms.
#include <CoreGraphics/CGAffineTransform.h>

#include <algorithm>
#include <cmath>

const CGAffineTransform CGAffineTransformIdentity = {1, 0, 0, 1, 0, 0};

CGAffineTransform CGAffineTransformMake(CGFloat a, CGFloat b, CGFloat c, CGFloat d, CGFloat tx, CGFloat ty) {
  return {a, b, c, d, tx, ty};
}

CGAffineTransform CGAffineTransformMakeTranslation(CGFloat tx, CGFloat ty) { return {1, 0, 0, 1, tx, ty}; }
CGAffineTransform CGAffineTransformMakeScale(CGFloat sx, CGFloat sy) { return {sx, 0, 0, sy, 0, 0}; }
CGAffineTransform CGAffineTransformMakeRotation(CGFloat angleRadians) {
  const CGFloat sine = std::sin(angleRadians), cosine = std::cos(angleRadians);
  return {cosine, sine, -sine, cosine, 0, 0};
}

CGAffineTransform CGAffineTransformTranslate(CGAffineTransform t, CGFloat tx, CGFloat ty) {
  return CGAffineTransformConcat(CGAffineTransformMakeTranslation(tx, ty), t);
}
CGAffineTransform CGAffineTransformScale(CGAffineTransform t, CGFloat sx, CGFloat sy) {
  return CGAffineTransformConcat(CGAffineTransformMakeScale(sx, sy), t);
}
CGAffineTransform CGAffineTransformRotate(CGAffineTransform t, CGFloat angleRadians) {
  return CGAffineTransformConcat(CGAffineTransformMakeRotation(angleRadians), t);
}

CGAffineTransform CGAffineTransformConcat(CGAffineTransform t1, CGAffineTransform t2) {
  return {t1.a * t2.a + t1.b * t2.c,           t1.a * t2.b + t1.b * t2.d,
          t1.c * t2.a + t1.d * t2.c,           t1.c * t2.b + t1.d * t2.d,
          t1.tx * t2.a + t1.ty * t2.c + t2.tx, t1.tx * t2.b + t1.ty * t2.d + t2.ty};
}

// In double: the determinant of a nearly degenerate single-precision matrix would be all rounding error.
CGAffineTransform CGAffineTransformInvert(CGAffineTransform t) {
  const double a = t.a, b = t.b, c = t.c, d = t.d, tx = t.tx, ty = t.ty;
  const double determinant = a * d - b * c;
  if (determinant == 0 || !std::isfinite(determinant)) return t;
  return {static_cast<CGFloat>(d / determinant),
          static_cast<CGFloat>(-b / determinant),
          static_cast<CGFloat>(-c / determinant),
          static_cast<CGFloat>(a / determinant),
          static_cast<CGFloat>((c * ty - d * tx) / determinant),
          static_cast<CGFloat>((b * tx - a * ty) / determinant)};
}

bool CGAffineTransformIsIdentity(CGAffineTransform t) {
  return CGAffineTransformEqualToTransform(t, CGAffineTransformIdentity);
}
bool CGAffineTransformEqualToTransform(CGAffineTransform t1, CGAffineTransform t2) {
  return t1.a == t2.a && t1.b == t2.b && t1.c == t2.c && t1.d == t2.d && t1.tx == t2.tx && t1.ty == t2.ty;
}

CGPoint CGPointApplyAffineTransform(CGPoint point, CGAffineTransform t) {
  return CGPointMake(t.a * point.x + t.c * point.y + t.tx, t.b * point.x + t.d * point.y + t.ty);
}

CGSize CGSizeApplyAffineTransform(CGSize size, CGAffineTransform t) {
  return CGSizeMake(t.a * size.width + t.c * size.height, t.b * size.width + t.d * size.height);
}

CGRect CGRectApplyAffineTransform(CGRect rect, CGAffineTransform t) {
  if (CGRectIsNull(rect)) return rect;
  const CGFloat left = CGRectGetMinX(rect), right = CGRectGetMaxX(rect);
  const CGFloat bottom = CGRectGetMinY(rect), top = CGRectGetMaxY(rect);
  const CGPoint corners[] = {CGPointApplyAffineTransform(CGPointMake(left, bottom), t),
                             CGPointApplyAffineTransform(CGPointMake(right, bottom), t),
                             CGPointApplyAffineTransform(CGPointMake(right, top), t),
                             CGPointApplyAffineTransform(CGPointMake(left, top), t)};
  const auto x = std::ranges::minmax(corners, {}, &CGPoint::x);
  const auto y = std::ranges::minmax(corners, {}, &CGPoint::y);
  return CGRectMake(x.min.x, y.min.y, x.max.x - x.min.x, y.max.y - y.min.y);
}
