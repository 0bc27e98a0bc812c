#include "media/codecs/frame.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using codecs::Fault;
using codecs::PixelLayout;

const CGImageDecodeLimits kLimits = CGImageGetDefaultDecodeLimits();

TEST(Frame, IsZeroedAndPackedTight) {
  codecs::DecodedImage image;
  ASSERT_EQ(codecs::makeFrame(image, 7, 5, PixelLayout::argb32, kLimits), Fault::none);
  EXPECT_EQ(image.rowBytes, 28u);
  ASSERT_EQ(image.pixels.size(), 140u);
  EXPECT_TRUE(
      std::all_of(image.pixels.data(), image.pixels.data() + 140, [](uint8_t value) { return value == 0; }));
}

TEST(Frame, WithoutPixelsIsDamage) {
  EXPECT_EQ(codecs::checkFrame(0, 5, 4, kLimits), Fault::damaged);
  EXPECT_EQ(codecs::checkFrame(5, 0, 4, kLimits), Fault::damaged);
}

TEST(Frame, SidesPixelsAndBytesAreEachLimited) {
  EXPECT_EQ(codecs::checkFrame(65535, 1, 4, kLimits), Fault::none);
  EXPECT_EQ(codecs::checkFrame(65536, 1, 4, kLimits), Fault::tooLarge);
  EXPECT_EQ(codecs::checkFrame(1, 65536, 4, kLimits), Fault::tooLarge);
  EXPECT_EQ(codecs::checkFrame(16384, 16384, 4, kLimits), Fault::none);
  EXPECT_EQ(codecs::checkFrame(16384, 16385, 4, kLimits), Fault::tooLarge);
  EXPECT_EQ(codecs::checkFrame(16384, 16384, 5, kLimits), Fault::tooLarge);
  EXPECT_EQ(codecs::checkFrame(UINT64_MAX, UINT64_MAX, 4, kLimits), Fault::tooLarge);
}

TEST(PixelBuffer, GivesItsBlockAwayOnce) {
  codecs::PixelBuffer buffer = codecs::PixelBuffer::zeroed(16);
  ASSERT_TRUE(buffer);
  codecs::PixelBuffer moved = std::move(buffer);
  EXPECT_FALSE(buffer);  // NOLINT(bugprone-use-after-move): that is the point
  EXPECT_EQ(moved.size(), 16u);
  uint8_t *block = moved.give();
  EXPECT_FALSE(moved);
  EXPECT_EQ(moved.size(), 0u);
  std::free(block);
}

TEST(PixelBuffer, OfNoBytesIsNotAFailure) { EXPECT_TRUE(codecs::PixelBuffer::zeroed(0)); }

}  // namespace
