#include "foundation/sizes.h"

#include <gtest/gtest.h>

namespace {

TEST(Sizes, ProductsAndSumsHaveNoValueBeyondSizeT) {
  EXPECT_EQ(cf::product(3, 4), 12u);
  EXPECT_EQ(cf::product(SIZE_MAX, 1), SIZE_MAX);
  EXPECT_FALSE(cf::product(SIZE_MAX, 2));
  EXPECT_FALSE(cf::product(size_t{1} << 32, size_t{1} << 32));
  EXPECT_EQ(cf::sum(SIZE_MAX - 1, 1), SIZE_MAX);
  EXPECT_FALSE(cf::sum(SIZE_MAX, 1));
}

TEST(Sizes, ABlockIsNeverLargerThanAnAllocatorCanBeAskedFor) {
  EXPECT_EQ(cf::blockBytes(cf::kMaxBlockBytes, 1), cf::kMaxBlockBytes);
  EXPECT_FALSE(cf::blockBytes(cf::kMaxBlockBytes + 1, 1));
  EXPECT_FALSE(cf::blockBytes(SIZE_MAX, 4));
  EXPECT_FALSE(cf::bitmapBytes(size_t{1} << 40, size_t{1} << 40));
}

TEST(Sizes, RowsAreRoundedUpToBytes) {
  EXPECT_EQ(cf::rowBytes(0, 32), 0u);
  EXPECT_EQ(cf::rowBytes(1, 1), 1u);
  EXPECT_EQ(cf::rowBytes(8, 1), 1u);
  EXPECT_EQ(cf::rowBytes(9, 1), 2u);
  EXPECT_EQ(cf::rowBytes(3, 32), 12u);
  EXPECT_FALSE(cf::rowBytes(SIZE_MAX / 32 + 1, 32));
  EXPECT_FALSE(cf::rowBytes(SIZE_MAX, 1));
}

TEST(Sizes, ASideIsNeitherNegativeNorNaNNorTooLong) {
  EXPECT_EQ(cf::sidePixels(0.0f), 0u);
  EXPECT_EQ(cf::sidePixels(-0.0f), 0u);
  EXPECT_EQ(cf::sidePixels(2.9f), 2u);
  EXPECT_EQ(cf::sidePixels(2147483520.0f), 2147483520u);
  EXPECT_FALSE(cf::sidePixels(2147483648.0f));
  EXPECT_FALSE(cf::sidePixels(-0.5f));
  EXPECT_FALSE(cf::sidePixels(std::nanf("")));
  EXPECT_FALSE(cf::sidePixels(HUGE_VALF));
  EXPECT_EQ(cf::sidePixels(size_t{INT32_MAX}), 2147483647u);
  EXPECT_FALSE(cf::sidePixels(size_t{INT32_MAX} + 1));
}

}  // namespace
