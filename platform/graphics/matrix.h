// Affine maps in double precision: a context's matrix is the product of many floats, and where pixels fall
// on pixels must still be seen after all of them.
#pragma once

#include <CoreGraphics/CGAffineTransform.h>

#include <cmath>
#include <optional>

namespace cg {

struct Matrix {
  double a = 1, b = 0, c = 0, d = 1, tx = 0, ty = 0;

  static Matrix from(const CGAffineTransform &t) noexcept { return {t.a, t.b, t.c, t.d, t.tx, t.ty}; }
  [[nodiscard]] CGAffineTransform toTransform() const noexcept {
    return {static_cast<CGFloat>(a), static_cast<CGFloat>(b),  static_cast<CGFloat>(c),
            static_cast<CGFloat>(d), static_cast<CGFloat>(tx), static_cast<CGFloat>(ty)};
  }

  [[nodiscard]] double x(double px, double py) const noexcept { return a * px + c * py + tx; }
  [[nodiscard]] double y(double px, double py) const noexcept { return b * px + d * py + ty; }
  [[nodiscard]] bool isFinite() const noexcept {
    return std::isfinite(a) && std::isfinite(b) && std::isfinite(c) && std::isfinite(d) &&
           std::isfinite(tx) && std::isfinite(ty);
  }
  [[nodiscard]] bool isAxisAligned() const noexcept { return b == 0 && c == 0; }
};

// first, then second.
inline Matrix then(const Matrix &first, const Matrix &second) noexcept {
  return {first.a * second.a + first.b * second.c,
          first.a * second.b + first.b * second.d,
          first.c * second.a + first.d * second.c,
          first.c * second.b + first.d * second.d,
          first.tx * second.a + first.ty * second.c + second.tx,
          first.tx * second.b + first.ty * second.d + second.ty};
}

inline std::optional<Matrix> inverse(const Matrix &m) noexcept {
  const double determinant = m.a * m.d - m.b * m.c;
  if (!std::isnormal(determinant)) return std::nullopt;
  const Matrix result{m.d / determinant,
                      -m.b / determinant,
                      -m.c / determinant,
                      m.a / determinant,
                      (m.c * m.ty - m.d * m.tx) / determinant,
                      (m.b * m.tx - m.a * m.ty) / determinant};
  if (!result.isFinite()) return std::nullopt;
  return result;
}

}  // namespace cg
