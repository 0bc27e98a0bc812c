// Compositing a rectangle of an image into a rectangle of pixels, called directly.
#include <gtest/gtest.h>

#include <cmath>

#include "core/images.h"

namespace {

using namespace test;

struct Rows {
  size_t width, height, bytesPerRow;
};

// Onto the pixels of `destination`, one byte each.
void compose(DRAVCFImageRef source, CGRect from, Rows sourceRows, Bytes &destination, CGRect to,
             Rows destinationRows, uint32_t mode) {
  DRAVCFImageCompositeRect(source, &from, sourceRows.width, sourceRows.height, sourceRows.bytesPerRow,
                           destination.data(), &to, destinationRows.width, destinationRows.height,
                           destinationRows.bytesPerRow, 1, DRAVCFImageCompositorForParameters(1, 0, mode));
}

TEST(CompositeRect, CountsRowsFromTheTop) {
  const cf::Ref source = makeGrayImage(2, 3, {1, 2, 3, 4, 5, 6});
  Bytes destination(6, 0);
  compose(source.get(), CGRectMake(0, 0, 2, 1), {2, 3, 2}, destination, CGRectMake(0, 1, 2, 1), {2, 3, 2},
          kDRAVCFBlendModeCopySrc);
  EXPECT_EQ(destination, (Bytes{0, 0, 1, 2, 0, 0}));
}

TEST(CompositeRect, TheDestinationIsMovedInLikeTheSource) {
  const cf::Ref source = makeGrayImage(2, 2, {1, 2, 3, 4});
  Bytes destination(9, 0);
  compose(source.get(), CGRectMake(-7, -7, 2, 2), {2, 2, 2}, destination, CGRectMake(-5, -1, 2, 2), {3, 3, 3},
          kDRAVCFBlendModeCopySrc);
  EXPECT_EQ(destination, (Bytes{1, 2, 0, 3, 4, 0, 0, 0, 0}));
}

TEST(CompositeRect, ANegativeSizeMeansItsStandardisedForm) {
  const cf::Ref source = makeGrayImage(2, 2, {1, 2, 3, 4});
  Bytes destination(9, 0);
  compose(source.get(), CGRectMake(2, 2, -2, -2), {2, 2, 2}, destination, CGRectMake(3, 3, -2, -2), {3, 3, 3},
          kDRAVCFBlendModeCopySrc);
  EXPECT_EQ(destination, (Bytes{0, 0, 0, 0, 1, 2, 0, 3, 4}));
}

TEST(CompositeRect, BesideEitherImageDrawsNothingAndLeavesTheSource) {
  const CGRect inside = CGRectMake(0, 0, 1, 1);
  for (const CGRect beside : {CGRectMake(2, 0, 1, 1), CGRectMake(0, 2, 1, 1), CGRectMake(9, 0, 5, 1),
                              CGRectMake(0, 9, 1, 5), CGRectMake(0, 0, 0, 1), CGRectMake(0, 0, 1, 0)}) {
    const cf::Ref source = makeGrayImage(2, 2, {1, 2, 3, 4});
    Bytes destination(4, 0);
    compose(source.get(), beside, {2, 2, 2}, destination, inside, {2, 2, 2}, kDRAVCFBlendModeClear);
    compose(source.get(), inside, {2, 2, 2}, destination, beside, {2, 2, 2}, kDRAVCFBlendModeClear);
    EXPECT_EQ(destination, Bytes(4, 0)) << beside.origin.x << " " << beside.origin.y;
    EXPECT_EQ(bufferOf(source.get()), (Bytes{1, 2, 3, 4}));
  }
}

TEST(CompositeRect, ByNumbersThatAreNoPixelsDrawsNothingAndLeavesTheSource) {
  const CGRect good = CGRectMake(0, 0, 1, 1);
  for (const float odd : {std::nanf(""), -HUGE_VALF, HUGE_VALF})
    for (int field = 0; field < 2; ++field) {
      const CGRect bad = field == 0 ? CGRectMake(odd, 0, 2, 1) : CGRectMake(0, odd, 1, 2);
      const cf::Ref source = makeGrayImage(2, 2, {1, 2, 3, 4});
      Bytes destination(4, 0);
      compose(source.get(), bad, {2, 2, 2}, destination, good, {2, 2, 2}, kDRAVCFBlendModeClear);
      compose(source.get(), good, {2, 2, 2}, destination, bad, {2, 2, 2}, kDRAVCFBlendModeClear);
      EXPECT_EQ(destination, Bytes(4, 0)) << odd << " " << field;
      EXPECT_EQ(bufferOf(source.get()), (Bytes{1, 2, 3, 4}));
    }
}

TEST(CompositeRect, OfHugeSizesCoversWhatThereIs) {
  const cf::Ref source = makeGrayImage(2, 2, {1, 2, 3, 4});
  for (const CGRect huge : {CGRectMake(0, 0, 3e38f, 3e38f), CGRectMake(-1e30f, -1e30f, 2e30f, 2e30f),
                            CGRectMake(0, 0, HUGE_VALF, HUGE_VALF), CGRectInfinite}) {
    Bytes destination(4, 0);
    compose(source.get(), huge, {2, 2, 2}, destination, huge, {2, 2, 2}, kDRAVCFBlendModeCopySrc);
    EXPECT_EQ(destination, (Bytes{1, 2, 3, 4})) << huge.size.width;
  }
}

TEST(CompositeRect, CropsFromTheBottomWhereItFits) {
  // The upper half counted from the top is asked for, and cropping takes the lower one.
  const cf::Ref source = makeGrayImage(2, 4, {1, 1, 1, 1, 7, 7, 7, 7});
  Bytes destination(2, 0);
  compose(source.get(), CGRectMake(0, 0, 2, 2), {2, 4, 2}, destination, CGRectMake(0, 0, 2, 1), {2, 1, 2},
          kDRAVCFBlendModeCopySrc);
  EXPECT_EQ(destination, (Bytes{7, 7}));
  EXPECT_EQ(bufferOf(source.get()), (Bytes{7, 7}));
}

TEST(CompositeRect, OfASourceThatCannotBeScaledDrawsNothing) {
  const Bytes wide{1, 2, 3, 4, 5, 6, 7, 8};
  const cf::Ref source = cf::adopt(DRAVCFImageCreateWithBuffer(nullptr, wide.data(), 4, 1, 16, 16, 8,
                                                               graySpace().get(), kCGImageAlphaNone));
  Bytes destination(2, 0);
  compose(source.get(), CGRectMake(0, 0, 4, 1), {4, 1, 8}, destination, CGRectMake(0, 0, 2, 1), {2, 1, 2},
          kDRAVCFBlendModeCopySrc);
  EXPECT_EQ(destination, Bytes(2, 0));
  EXPECT_EQ(bufferOf(source.get()), wide);
}

TEST(CompositeRect, ADestinationOfFewerBytesThanItsSizeClaimsIsLeft) {
  const cf::Ref source = makeGrayImage(4, 2, Bytes(8, 9));
  Bytes destination(6, 1);
  const CGRect whole = CGRectMake(0, 0, 4, 2);
  compose(source.get(), whole, {4, 2, 4}, destination, whole, {4, 2, 3}, kDRAVCFBlendModeCopySrc);
  EXPECT_EQ(destination, Bytes(6, 1));
}

TEST(CompositeRect, ASourceOfFewerBytesThanItsSizeClaimsIsNotRead) {
  const cf::Ref source = makeGrayImage(4, 2, Bytes(8, 9));
  Bytes destination(8, 1);
  const CGRect whole = CGRectMake(0, 0, 4, 2);
  compose(source.get(), whole, {4, 2, 5}, destination, whole, {4, 2, 4}, kDRAVCFBlendModeCopySrc);
  EXPECT_EQ(destination, Bytes(8, 1));
}

TEST(CompositeRect, ASourceStrideOfZeroRepeatsItsRow) {
  const cf::Ref source = makeGrayImage(2, 1, {3, 4});
  Bytes destination(6, 0);
  const CGRect whole = CGRectMake(0, 0, 2, 3);
  compose(source.get(), whole, {2, 3, 0}, destination, whole, {2, 3, 2}, kDRAVCFBlendModeCopySrc);
  EXPECT_EQ(destination, (Bytes{3, 4, 3, 4, 3, 4}));
}

}  // namespace
