#include "media/offscreen.h"

#include <gtest/gtest.h>

namespace {

OSErr make(GWorldPtr *world, uint32_t format, Rect bounds, int32_t rowBytes) {
  static char buffer[4096];
  return NewGWorldFromPtr(world, format, &bounds, nullptr, nullptr, 0, buffer, rowBytes);
}

TEST(OffscreenWorld, DescribesTheCallersBuffer) {
  char buffer[64] = {};
  const Rect bounds{0, 0, 4, 3};
  GWorldPtr world = nullptr;
  ASSERT_EQ(NewGWorldFromPtr(&world, 32, &bounds, nullptr, nullptr, 0, buffer, 16), noErr);
  EXPECT_EQ(world->pixels, reinterpret_cast<uint8_t *>(buffer));
  EXPECT_EQ(world->rowBytes, 16u);
  EXPECT_EQ(world->bounds.right, 3);
  DisposeGWorld(world);
}

TEST(OffscreenWorld, TakesOnlyFormatsAndSizesThatFit) {
  GWorldPtr world = nullptr;
  EXPECT_EQ(make(&world, 32, {0, 0, 4, 3}, 11), paramErr);
  EXPECT_EQ(make(&world, 24, {0, 0, 4, 3}, 64), paramErr);
  EXPECT_EQ(make(&world, 32, {0, 0, 0, 3}, 64), paramErr);
  EXPECT_EQ(make(&world, 32, {0, 5, 4, 3}, 64), paramErr);
  EXPECT_EQ(make(&world, 40, {0, 0, 4, 3}, 2), paramErr);
  EXPECT_EQ(make(&world, 32, {0, 0, 4, 3}, -64), paramErr);
  EXPECT_EQ(world, nullptr);
  ASSERT_EQ(make(&world, 40, {0, 0, 4, 3}, 3), noErr);
  DisposeGWorld(world);
}

TEST(OffscreenWorld, NullArgumentsAreErrors) {
  char buffer[64];
  const Rect bounds{0, 0, 1, 1};
  GWorldPtr world = nullptr;
  EXPECT_EQ(NewGWorldFromPtr(nullptr, 32, &bounds, nullptr, nullptr, 0, buffer, 16), paramErr);
  EXPECT_EQ(NewGWorldFromPtr(&world, 32, nullptr, nullptr, nullptr, 0, buffer, 16), paramErr);
  EXPECT_EQ(NewGWorldFromPtr(&world, 32, &bounds, nullptr, nullptr, 0, nullptr, 16), paramErr);
  DisposeGWorld(nullptr);
}

}  // namespace
