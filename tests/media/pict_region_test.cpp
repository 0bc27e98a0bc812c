#include "media/codecs/pict/region.h"

#include <gtest/gtest.h>

#include "media/codecs/pict/region_data.h"
#include "picture_grid.h"
#include "picture_maker.h"

namespace codecs::pict {
namespace {

constexpr int kEnd = 0x7FFF;

ByteMaker regionOf(Box box, std::initializer_list<int> scan) {
  ByteMaker out;
  out.u16({static_cast<int>(10 + 2 * scan.size())}).box(box.top, box.left, box.bottom, box.right).u16(scan);
  return out;
}

Fault parse(Bytes record, Region &region, uint64_t workFree = kPictureLimits.workFree) {
  CGImageDecodeLimits limits = kPictureLimits;
  limits.workFree = workFree;
  Budget budget(0, 0, limits);
  return parseRegion(record, budget, region);
}

Region parsed(const ByteMaker &bytes) {
  Region region;
  EXPECT_EQ(parse(bytes.bytes, region), Fault::none);
  return region;
}

Grid gridOfRegion(const Region &region, int width, int height) {
  Grid grid;
  for (int v = 0; v < height; ++v) {
    grid.emplace_back();
    for (int h = 0; h < width; ++h) grid.back() += region.contains({h, v}) ? '#' : '.';
  }
  return grid;
}

TEST(PictRegion, WithoutScanDataItIsItsBox) {
  EXPECT_EQ(gridOfRegion(parsed(regionOf({1, 1, 3, 2}, {})), 4, 3), (Grid{"....", ".##.", "...."}));
  EXPECT_TRUE(parsed(regionOf({5, 5, 5, 9}, {})).isEmpty());
  EXPECT_TRUE(parsed(regionOf({5, 5, 2, 2}, {})).isEmpty());
}

TEST(PictRegion, RowsListTheChangesToTheRowAbove) {
  const Region region = parsed(regionOf({0, 0, 4, 4}, {0, 0, 2, kEnd, 2, 2, 4, kEnd, 4, 0, 4, kEnd, kEnd}));
  EXPECT_EQ(gridOfRegion(region, 5, 5), (Grid{"##...", "##...", "####.", "####.", "....."}));
  EXPECT_EQ(region.bounds(), (Box{0, 0, 4, 4}));
}

TEST(PictRegion, ARowCanHaveManyEdgesAndHoles) {
  const Region region = parsed(
      regionOf({0, 0, 6, 3}, {0, 0, 6, kEnd, 1, 1, 2, 4, 5, kEnd, 2, 1, 2, 4, 5, kEnd, 3, 0, 6, kEnd, kEnd}));
  EXPECT_EQ(gridOfRegion(region, 6, 3), (Grid{"######", "#.##.#", "######"}));
}

TEST(PictRegion, UnsortedAndOddRowsArePutRight) {
  const Region region = parsed(regionOf({0, 0, 4, 1}, {0, 4, 1, 9, kEnd, 1, 1, 4, kEnd, kEnd}));
  EXPECT_EQ(gridOfRegion(region, 5, 2), (Grid{".###.", "....."}));
}

TEST(PictRegion, RowsThatGoUpwardsAreDamaged) {
  Region region;
  EXPECT_EQ(parse(regionOf({0, 0, 4, 4}, {2, 0, 4, kEnd, 0, 0, 4, kEnd, kEnd}).bytes, region),
            Fault::damaged);
}

TEST(PictRegion, ScanDataMayStopAnywhere) {
  const ByteMaker whole = regionOf({0, 0, 4, 4}, {0, 0, 2, kEnd, 2, 2, 4, kEnd, 4, 0, 4, kEnd, kEnd});
  for (size_t size = 10; size < whole.bytes.size(); ++size) {
    Region region;
    EXPECT_EQ(parse(Bytes(whole.bytes).first(size), region), Fault::none);
  }
}

TEST(PictRegion, SizesThatCannotBeAreDamaged) {
  EXPECT_EQ(regionBytes(ByteMaker().u16({8, 0, 0, 0, 0}).bytes).fault, Fault::damaged);
  EXPECT_EQ(regionBytes(ByteMaker().u16({11, 0, 0, 0, 0, 0}).bytes).fault, Fault::damaged);
  EXPECT_EQ(regionBytes(ByteMaker().u16({12, 0, 0, 0, 0}).bytes).fault, Fault::truncated);
  EXPECT_EQ(regionBytes(ByteMaker().u8({0}).bytes).fault, Fault::truncated);
  EXPECT_EQ(regionBytes(ByteMaker().u16({0x8000 | 10, 0, 0, 0, 0}).bytes).value, 10u);
}

// One row of edges that is repeated for as many rows as there are points to flip back and forth.
TEST(PictRegion, RowsThatWouldTakeGigabytesInFullAreRefused) {
  ByteMaker out;
  out.u16({0}).box(0, 0, 32000, 32000).u16({0});
  for (int h = 0; h < 6000; ++h) out.u16({2 * h});
  out.u16({kEnd});
  for (int v = 1; v < 2400; ++v) out.u16({v, 30000, 30000 + v, kEnd});
  out.u16({kEnd});
  out.bytes[0] = static_cast<uint8_t>(out.bytes.size() >> 8);
  out.bytes[1] = static_cast<uint8_t>(out.bytes.size());
  Region region;
  EXPECT_EQ(parse(out.bytes, region), Fault::tooLarge);
}

TEST(PictRegion, EveryEdgeCostsWork) {
  const ByteMaker whole = regionOf({0, 0, 4, 4}, {0, 0, 2, kEnd, 2, 2, 4, kEnd, 4, 0, 4, kEnd, kEnd});
  Region region;
  EXPECT_EQ(parse(whole.bytes, region, 10), Fault::none);
  EXPECT_EQ(parse(whole.bytes, region, 9), Fault::tooLarge);
}

TEST(PictRegion, RowsWithoutChangesGoOnAsTheOneAbove) {
  const Region region = parsed(regionOf({0, 0, 4, 1}, {0, 1, 3, kEnd, 1, kEnd, 2, 3, kEnd, kEnd}));
  EXPECT_EQ(gridOfRegion(region, 4, 3), (Grid{".##.", ".##.", "...."}));
  EXPECT_EQ(region.bands().size(), 1u);
}

TEST(PictRegion, EqualRowsAreOneBand) {
  Region region;
  const int32_t edges[] = {1, 3};
  region.addRows(0, 2, edges);
  region.addRows(2, 5, edges);
  EXPECT_EQ(region.bands().size(), 1u);
  EXPECT_TRUE(region == Region(Box{1, 0, 3, 5}));
}

TEST(PictRegion, EdgesThatMeetVanish) {
  Region region;
  const int32_t touching[] = {1, 3, 3, 4}, nothing[] = {2, 2};
  region.addRows(0, 1, touching);
  region.addRows(1, 2, nothing);
  EXPECT_TRUE(region == Region(Box{1, 0, 4, 1}));
}

TEST(PictRegion, ListsOfEdgesCombine) {
  const int32_t a[] = {0, 4, 6, 10}, b[] = {2, 7};
  std::vector<int32_t> out;
  intersectEdges(a, b, out);
  EXPECT_EQ(out, (std::vector<int32_t>{2, 4, 6, 7}));
  toggleEdges(a, b, out);
  EXPECT_EQ(out, (std::vector<int32_t>{0, 2, 4, 6, 7, 10}));
  toggleEdges(a, a, out);
  EXPECT_TRUE(out.empty());
}

TEST(PictRegion, MovesWithEverythingInIt) {
  Region region(Box{0, 0, 2, 2});
  region.move({3, 4});
  EXPECT_EQ(region.bounds(), (Box{3, 4, 5, 6}));
  EXPECT_TRUE(region.contains({4, 5}));
  EXPECT_FALSE(region.contains({1, 1}));
}

}  // namespace
}  // namespace codecs::pict
