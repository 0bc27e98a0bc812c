#include "composite/clipping.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>

namespace {

using drav::clippedToImage;

void expectRect(CGRect found, float x, float y, float width, float height) {
  EXPECT_EQ(found.origin.x, x);
  EXPECT_EQ(found.origin.y, y);
  EXPECT_EQ(found.size.width, width);
  EXPECT_EQ(found.size.height, height);
}

TEST(Clipping, ARectangleInsideStays) {
  expectRect(clippedToImage(CGRectMake(1, 2, 3, 4), 10, 10), 1, 2, 3, 4);
}

TEST(Clipping, AnOriginBeforeTheImageMovesToZeroWithoutShortening) {
  expectRect(clippedToImage(CGRectMake(-5, -3, 8, 6), 10, 10), 0, 0, 8, 6);
}

TEST(Clipping, AMovedRectangleIsCutWhereItNowReachesPastTheEdge) {
  expectRect(clippedToImage(CGRectMake(-5, 0, 14, 1), 10, 10), 0, 0, 10, 1);
}

TEST(Clipping, ARectanglePastTheEdgesIsCut) {
  expectRect(clippedToImage(CGRectMake(7, 8, 5, 5), 10, 10), 7, 8, 3, 2);
}

TEST(Clipping, ANegativeSizeIsStandardisedFirst) {
  expectRect(clippedToImage(CGRectMake(10, 10, -5, 5), 20, 20), 5, 10, 5, 5);
}

TEST(Clipping, FractionsGrowToWholePixels) {
  expectRect(clippedToImage(CGRectMake(1.5f, 1.2f, 1, 1), 10, 10), 1, 1, 2, 2);
}

TEST(Clipping, ARectangleBeyondTheImageHasNoPixels) {
  EXPECT_FALSE(drav::hasPixels(clippedToImage(CGRectMake(10, 0, 5, 5), 10, 10)));
  EXPECT_FALSE(drav::hasPixels(clippedToImage(CGRectMake(0, 12, 5, 5), 10, 10)));
}

TEST(Clipping, NoAreaComesOfNumbersThatAreNoPixels) {
  const float infinity = std::numeric_limits<float>::infinity();
  for (float odd : {std::nanf(""), infinity, -infinity, 3e38f, -3e38f}) {
    for (int field = 0; field < 4; ++field) {
      CGRect rect = CGRectMake(0, 0, 4, 4);
      (field == 0   ? rect.origin.x
       : field == 1 ? rect.origin.y
       : field == 2 ? rect.size.width
                    : rect.size.height) = odd;
      const CGRect cut = clippedToImage(rect, 10, 10);
      drav::PixelArea area{};
      if (drav::hasPixels(cut) && drav::pixelArea(cut, area)) {
        EXPECT_LE(area.x, size_t{INT32_MAX});
        EXPECT_TRUE(std::isfinite(cut.origin.x + cut.origin.y + cut.size.width + cut.size.height));
      }
    }
  }
}

TEST(Clipping, AWalkFitsUpToTheLastByteAndNoFurther) {
  const drav::PixelArea area{2, 1, 3, 4};  // the last row is row 4, and ends with pixel 4
  EXPECT_TRUE(drav::walkFits(area, 4, 20, 4 * 20 + 20));
  EXPECT_FALSE(drav::walkFits(area, 4, 20, 4 * 20 + 19));
  EXPECT_TRUE(drav::walkFits(area, 4, 0, 20)) << "rows one upon the other";
  EXPECT_FALSE(drav::walkFits(area, 4, 0, 19));
  EXPECT_FALSE(drav::walkFits(area, SIZE_MAX / 2, 20, SIZE_MAX));
  EXPECT_FALSE(drav::walkFits(area, 4, SIZE_MAX / 2, SIZE_MAX));
}

}  // namespace
