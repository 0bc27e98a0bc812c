#include "graphics/matrix.h"

#include <gtest/gtest.h>

#include <limits>

namespace cg {
namespace {

void expectSame(const Matrix &got, const Matrix &expected) {
  const double g[] = {got.a, got.b, got.c, got.d, got.tx, got.ty};
  const double e[] = {expected.a, expected.b, expected.c, expected.d, expected.tx, expected.ty};
  for (int i = 0; i < 6; ++i) EXPECT_NEAR(g[i], e[i], 1e-12);
}

TEST(Matrix, ThenAppliesTheFirstFirst) {
  const Matrix scale{2, 0, 0, 3, 0, 0}, move{1, 0, 0, 1, 10, 20};
  const Matrix both = then(scale, move);
  EXPECT_EQ(both.x(1, 1), 12);
  EXPECT_EQ(both.y(1, 1), 23);
}

TEST(Matrix, TheInverseLeadsBack) {
  const Matrix m{1.5, 0.25, -2, 3, 7, -9};
  expectSame(then(m, *inverse(m)), {});
}

TEST(Matrix, WhatFlattensHasNoInverse) {
  EXPECT_FALSE(inverse({1, 2, 2, 4, 0, 0}));
  EXPECT_FALSE(inverse({0, 0, 0, 0, 1, 1}));
}

TEST(Matrix, NumbersOutOfRangeHaveNoInverse) {
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_FALSE(inverse({infinity, 0, 0, 1, 0, 0}));
  EXPECT_FALSE(inverse({1e-200, 0, 0, 1e-200, 0, 0}));
  EXPECT_FALSE(inverse({1e-300, 0, 0, 1, 1e300, 0}));
}

TEST(Matrix, InfinityAndNaNAreNotFinite) {
  EXPECT_TRUE(Matrix{}.isFinite());
  EXPECT_FALSE((Matrix{1, 0, 0, 1, std::numeric_limits<double>::infinity(), 0}.isFinite()));
  EXPECT_FALSE((Matrix{1, std::numeric_limits<double>::quiet_NaN(), 0, 1, 0, 0}.isFinite()));
}

}  // namespace
}  // namespace cg
