#include "geometry.h"

#include <gtest/gtest.h>

#include "failure.h"

namespace {

TEST(Geometry, AreasAreFourWholeNumbers) {
  EXPECT_EQ(parseArea("1,-2,30,40"), (Area{1, -2, 30, 40}));
  for (const char *text : {"", "1,2,3", "1,2,3,4,5", "1,2,0,4", "1,2,3,-4", "1,2,3,4 ", " 1,2,3,4", "1,,3,4",
                           "1.5,2,3,4", "16777217,0,1,1", "0,0,1,99999999999999999999"})
    EXPECT_THROW(parseArea(text), UsageError) << text;
}

TEST(Geometry, PlacesAreTwoWholeNumbers) {
  EXPECT_EQ(parsePlace("-7,8").x, -7);
  EXPECT_EQ(parsePlace("-7,8").y, 8);
  for (const char *text : {"", "1", "1,2,3", "a,b", "1;2"})
    EXPECT_THROW(parsePlace(text), UsageError) << text;
}

TEST(Geometry, IntersectionsAreWhatBothShareAndEmptyWhereThatIsNothing) {
  EXPECT_EQ(intersection({0, 0, 10, 10}, {-5, 4, 10, 10}), (Area{0, 4, 5, 6}));
  EXPECT_TRUE(intersection({0, 0, 10, 10}, {10, 0, 5, 5}).empty());
  EXPECT_TRUE(intersection({0, 0, 10, 10}, {0, -5, 5, 5}).empty());
}

TEST(Geometry, RowsAreTurnedRoundForWhatCountsFromTheBottom) {
  const CGRect rect = fromBottom({3, 2, 10, 20}, 100);
  EXPECT_EQ(rect.origin.x, 3.0F);
  EXPECT_EQ(rect.origin.y, 78.0F);
  EXPECT_EQ(rect.size.width, 10.0F);
  EXPECT_EQ(rect.size.height, 20.0F);
  EXPECT_EQ(fromTop({3, 2, 10, 20}).origin.y, 2.0F);
}

TEST(Geometry, SizesAreGivenOrFollowFromTheImage) {
  const CGSize given = TargetSize("640x480").of(10, 10);
  EXPECT_EQ(given.width, 640.0F);
  EXPECT_EQ(given.height, 480.0F);
  const CGSize half = TargetSize("50%").of(31, 1);
  EXPECT_EQ(half.width, 16.0F);
  EXPECT_EQ(half.height, 1.0F);
  EXPECT_EQ(TargetSize("12.5%").of(80, 16).width, 10.0F);
  for (const char *text : {"", "%", "0%", "-1%", "nan%", "inf%", "1e999%", "5x", "x5", "0x5", "5x5x5", "5"})
    EXPECT_THROW(TargetSize{text}, UsageError) << text;
}

}  // namespace
