#include "graphics/profile.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <vector>

#include "foundation/ref.h"
#include "graphics/spaces.h"

namespace {

CMProfileLocation locationOf(char **handle, long size) {
  CMProfileLocation location{};
  location.locType = cmHandleBasedProfile;
  location.u.handleLoc = {handle, size};
  return location;
}

TEST(Profile, TheDisplaysIsAnSRGBProfileWithAFixedDate) {
  CMProfileRef profile = nullptr;
  ASSERT_EQ(CMGetSystemProfile(&profile), 0);
  const UInt8 *bytes = CFDataGetBytePtr(CMProfileGetData(profile));
  ASSERT_GT(CFDataGetLength(CMProfileGetData(profile)), 128);
  EXPECT_EQ(std::memcmp(bytes + 16, "RGB XYZ ", 8), 0);
  const UInt8 date[12] = {0x07, 0xD0, 0, 1, 0, 1};
  EXPECT_EQ(std::memcmp(bytes + 24, date, 12), 0);
  Boolean valid = 0, missing = 1;
  EXPECT_EQ(CMValidateProfile(profile, &valid, &missing), 0);
  EXPECT_EQ(valid, 1);
  EXPECT_EQ(missing, 0);
  EXPECT_EQ(CMCloseProfile(profile), 0);
}

TEST(Profile, TheDisplaysHasTheSameBytesForEverybody) {
  CMProfileRef first = nullptr, second = nullptr;
  CMGetSystemProfile(&first);
  CMGetSystemProfile(&second);
  EXPECT_TRUE(CFEqual(CMProfileGetData(first), CMProfileGetData(second)));
  CMCloseProfile(first);
  CMCloseProfile(second);
}

TEST(Profile, MakingOneTwiceAtDifferentTimesGivesTheSameBytes) {
  const auto before = testing_support::gammaProfile(2.0);
  ::sleep(1);
  const auto after = testing_support::gammaProfile(2.0);
  EXPECT_TRUE(CFEqual(before.get(), after.get()));
}

TEST(Profile, OpensOverACopyOfAHandlesBytes) {
  const auto data = testing_support::gammaProfile(1.8);
  std::vector<char> bytes(static_cast<size_t>(CFDataGetLength(data.get())));
  std::memcpy(bytes.data(), CFDataGetBytePtr(data.get()), bytes.size());
  char *block = bytes.data();
  const auto location = locationOf(&block, static_cast<long>(bytes.size()));
  CMProfileRef profile = nullptr;
  ASSERT_EQ(CMOpenProfile(&profile, &location), 0);
  bytes.assign(bytes.size(), 0);
  EXPECT_TRUE(CFEqual(CMProfileGetData(profile), data.get()));
  CMCloseProfile(profile);
}

TEST(Profile, OneThatMakesNoSenseOpensButIsNotValid) {
  char text[] = "not a profile at all";
  char *block = text;
  const auto location = locationOf(&block, sizeof text);
  CMProfileRef profile = nullptr;
  ASSERT_EQ(CMOpenProfile(&profile, &location), 0);
  Boolean valid = 1, missing = 1;
  EXPECT_NE(CMValidateProfile(profile, &valid, &missing), 0);
  EXPECT_EQ(valid, 0);
  EXPECT_EQ(missing, 0);
  EXPECT_EQ(CGColorSpaceCreateWithPlatformColorSpace(profile), nullptr);
  CMCloseProfile(profile);
}

TEST(Profile, LocationsWithoutBytesAreRefused) {
  CMProfileRef profile = nullptr;
  char *none = nullptr;
  char byte = 0, *block = &byte;
  auto location = locationOf(&none, 5);
  EXPECT_NE(CMOpenProfile(&profile, &location), 0);
  location = locationOf(&block, 0);
  EXPECT_NE(CMOpenProfile(&profile, &location), 0);
  location = locationOf(nullptr, 1);
  EXPECT_NE(CMOpenProfile(&profile, &location), 0);
  location = locationOf(&block, 1);
  location.locType = 1;
  EXPECT_NE(CMOpenProfile(&profile, &location), 0);
  EXPECT_NE(CMOpenProfile(&profile, nullptr), 0);
  EXPECT_NE(CMOpenProfile(nullptr, &location), 0);
  EXPECT_EQ(profile, nullptr);
  EXPECT_NE(CMCloseProfile(nullptr), 0);
  EXPECT_NE(CMGetSystemProfile(nullptr), 0);
  EXPECT_NE(CMValidateProfile(nullptr, nullptr, nullptr), 0);
}

}  // namespace
