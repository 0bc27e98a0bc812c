#include "graphics/alpha_math.h"

#include <gtest/gtest.h>

namespace {

TEST(AlphaMath, MultiplyEqualsTheRoundedFractionForEveryPair) {
  for (int c = 0; c < 256; ++c)
    for (int a = 0; a < 256; ++a)
      ASSERT_EQ(cg::multiply(static_cast<uint8_t>(c), static_cast<uint8_t>(a)), (2 * c * a + 255) / 510)
          << c << " * " << a;
}

TEST(AlphaMath, MultiplyEqualsTheFloatFormForEveryPair) {
  for (int c = 0; c < 256; ++c)
    for (int a = 0; a < 256; ++a) {
      const double product = (c / 255.0) * (a / 255.0);
      ASSERT_EQ(cg::multiply(static_cast<uint8_t>(c), static_cast<uint8_t>(a)),
                static_cast<int>(product * 255.0 + 0.5))
          << c << " * " << a;
    }
}

TEST(AlphaMath, DivideEqualsTheRoundedFractionForEveryPair) {
  for (int c = 0; c < 256; ++c)
    for (int a = 1; a < 256; ++a) {
      const int exact = (2 * c * 255 + a) / (2 * a);
      ASSERT_EQ(cg::divide(static_cast<uint8_t>(c), static_cast<uint8_t>(a)), exact > 255 ? 255 : exact)
          << c << " / " << a;
    }
}

TEST(AlphaMath, NothingDividedByNoAlphaIsNothing) {
  for (int c = 0; c < 256; ++c) ASSERT_EQ(cg::divide(static_cast<uint8_t>(c), 0), 0);
}

TEST(AlphaMath, FullAlphaChangesNothing) {
  for (int c = 0; c < 256; ++c) {
    ASSERT_EQ(cg::multiply(static_cast<uint8_t>(c), 255), c);
    ASSERT_EQ(cg::divide(static_cast<uint8_t>(c), 255), c);
  }
}

TEST(AlphaMath, MultiplyingAfterDividingGivesPremultipliedColourBack) {
  for (int a = 0; a < 256; ++a)
    for (int c = 0; c <= a; ++c) {
      const auto alpha = static_cast<uint8_t>(a);
      ASSERT_EQ(cg::multiply(cg::divide(static_cast<uint8_t>(c), alpha), alpha), c) << c << " of " << a;
    }
}

}  // namespace
