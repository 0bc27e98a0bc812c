#include "graphics/color_space.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "failing_allocator.h"
#include "graphics/profile.h"
#include "graphics/spaces.h"

namespace {

using testing_support::Space;
constexpr CGFloat kWhite[] = {0.9505F, 1, 1.089F};
constexpr CGFloat kBlack[] = {0, 0, 0};
constexpr CGFloat kMatrix[] = {0.4124F, 0.2126F, 0.0193F, 0.3576F, 0.7152F,
                               0.1192F, 0.1805F, 0.0722F, 0.9505F};
constexpr CGFloat kGammas[] = {1.8F, 1.8F, 1.8F};

TEST(ColorSpace, DeviceSpacesHaveTheirKindsAndComponents) {
  const Space gray(CGColorSpaceCreateDeviceGray()), rgb(CGColorSpaceCreateDeviceRGB()),
      cmyk(CGColorSpaceCreateDeviceCMYK());
  EXPECT_EQ(CGColorSpaceGetType(gray.get()), 0);
  EXPECT_EQ(CGColorSpaceGetType(rgb.get()), 1);
  EXPECT_EQ(CGColorSpaceGetType(cmyk.get()), 2);
  EXPECT_EQ(CGColorSpaceGetNumberOfComponents(gray.get()), 1U);
  EXPECT_EQ(CGColorSpaceGetNumberOfComponents(rgb.get()), 3U);
  EXPECT_EQ(CGColorSpaceGetNumberOfComponents(cmyk.get()), 4U);
  EXPECT_EQ(CGColorSpaceCopyICCProfile(rgb.get()), nullptr);
}

TEST(ColorSpace, TwoOfOneDeviceAreEqualAndOthersAreNot) {
  const Space gray(CGColorSpaceCreateDeviceGray()), again(CGColorSpaceCreateDeviceGray()),
      rgb(CGColorSpaceCreateDeviceRGB()), cmyk(CGColorSpaceCreateDeviceCMYK());
  EXPECT_TRUE(CFEqual(gray.get(), again.get()));
  EXPECT_EQ(CFHash(gray.get()), CFHash(again.get()));
  EXPECT_FALSE(CFEqual(gray.get(), rgb.get()));
  EXPECT_FALSE(CFEqual(cmyk.get(), rgb.get()));
}

TEST(ColorSpace, TwoProfilesWithTheSameBytesAreEqual) {
  const auto first = testing_support::gammaProfile(1.8), second = testing_support::gammaProfile(1.8),
             other = testing_support::gammaProfile(2.6);
  const Space a(CGColorSpaceCreateWithICCProfile(first.get())),
      b(CGColorSpaceCreateWithICCProfile(second.get())), c(CGColorSpaceCreateWithICCProfile(other.get()));
  ASSERT_TRUE(a && b && c);
  EXPECT_TRUE(CFEqual(a.get(), b.get()));
  EXPECT_EQ(CFHash(a.get()), CFHash(b.get()));
  EXPECT_FALSE(CFEqual(a.get(), c.get()));
  EXPECT_EQ(CGColorSpaceGetType(a.get()), 6);
  const auto bytes = cf::adopt(CGColorSpaceCopyICCProfile(a.get()));
  EXPECT_TRUE(CFEqual(bytes.get(), first.get()));
}

TEST(ColorSpace, AGrayProfileIsNotColor) {
  const auto profile = testing_support::grayProfile(2.2);
  const Space space(CGColorSpaceCreateWithICCProfile(profile.get()));
  EXPECT_EQ(CGColorSpaceGetType(space.get()), 3);
  EXPECT_EQ(CGColorSpaceGetNumberOfComponents(space.get()), 1U);
}

TEST(ColorSpace, ACMYKProfileHasFourComponents) {
  const auto profile = testing_support::inkProfile();
  const Space space(CGColorSpaceCreateWithICCProfile(profile.get()));
  ASSERT_TRUE(space);
  EXPECT_EQ(CGColorSpaceGetType(space.get()), 6);
  EXPECT_EQ(CGColorSpaceGetNumberOfComponents(space.get()), 4U);
}

TEST(ColorSpace, BytesThatAreNoProfileMakeNoSpace) {
  const auto profile = testing_support::gammaProfile(2.2);
  const auto length = CFDataGetLength(profile.get());
  EXPECT_EQ(CGColorSpaceCreateWithICCProfile(nullptr), nullptr);
  for (CFIndex kept = 0; kept < length; kept += 13) {
    const auto cut = cf::adopt(CFDataCreate(nullptr, CFDataGetBytePtr(profile.get()), kept));
    const Space space(CGColorSpaceCreateWithICCProfile(cut.get()));
    if (kept < 128) {
      EXPECT_FALSE(space) << kept;
    }
  }
  const auto lab = testing_support::labProfile();
  EXPECT_EQ(CGColorSpaceCreateWithICCProfile(lab.get()), nullptr);
}

TEST(ColorSpace, ProfilesWithAnyByteChangedDoNoHarm) {
  const auto profile = testing_support::gammaProfile(2.2);
  const auto length = static_cast<size_t>(CFDataGetLength(profile.get()));
  std::vector<uint8_t> bytes(length);
  for (size_t at = 0; at < length; ++at) {
    std::memcpy(bytes.data(), CFDataGetBytePtr(profile.get()), length);
    bytes[at] = static_cast<uint8_t>(bytes[at] ^ 0xFF);
    const auto data = cf::adopt(CFDataCreate(nullptr, bytes.data(), static_cast<CFIndex>(length)));
    const Space space(CGColorSpaceCreateWithICCProfile(data.get()));
    if (space) {
      EXPECT_GT(CGColorSpaceGetNumberOfComponents(space.get()), 0U);
    }
  }
}

TEST(ColorSpace, CalibratedSpacesAreEqualWithTheSameParameters) {
  const Space a(CGColorSpaceCreateCalibratedGray(kWhite, kBlack, 1.8F)),
      b(CGColorSpaceCreateCalibratedGray(kWhite, kBlack, 1.8F)),
      c(CGColorSpaceCreateCalibratedGray(kWhite, kBlack, 2.2F));
  EXPECT_EQ(CGColorSpaceGetType(a.get()), 3);
  EXPECT_TRUE(CFEqual(a.get(), b.get()));
  EXPECT_FALSE(CFEqual(a.get(), c.get()));
  const Space d(CGColorSpaceCreateCalibratedRGB(kWhite, kBlack, kGammas, kMatrix)),
      e(CGColorSpaceCreateCalibratedRGB(kWhite, kBlack, kGammas, kMatrix));
  EXPECT_EQ(CGColorSpaceGetType(d.get()), 4);
  EXPECT_EQ(CGColorSpaceGetNumberOfComponents(d.get()), 3U);
  EXPECT_TRUE(CFEqual(d.get(), e.get()));
  EXPECT_EQ(CFHash(d.get()), CFHash(e.get()));
}

TEST(ColorSpace, ParametersThatDescribeNoColorMakeNoSpace) {
  const CGFloat nan = std::numeric_limits<CGFloat>::quiet_NaN();
  const CGFloat dark[] = {0.9F, 0, 1}, broken[] = {nan, 1, 1};
  const CGFloat flat[9] = {};
  EXPECT_EQ(CGColorSpaceCreateCalibratedGray(kWhite, kBlack, 0), nullptr);
  EXPECT_EQ(CGColorSpaceCreateCalibratedGray(kWhite, kBlack, nan), nullptr);
  EXPECT_EQ(CGColorSpaceCreateCalibratedGray(dark, kBlack, 1), nullptr);
  EXPECT_EQ(CGColorSpaceCreateCalibratedGray(broken, kBlack, 1), nullptr);
  EXPECT_EQ(CGColorSpaceCreateCalibratedGray(nullptr, kBlack, 1), nullptr);
  EXPECT_EQ(CGColorSpaceCreateCalibratedRGB(kWhite, kBlack, kGammas, flat), nullptr);
  EXPECT_EQ(CGColorSpaceCreateCalibratedRGB(kWhite, kBlack, nullptr, kMatrix), nullptr);
}

TEST(ColorSpace, IndexedSpacesAreEqualWithTheSameBaseAndTable) {
  const Space rgb(CGColorSpaceCreateDeviceRGB());
  const uint8_t table[] = {1, 2, 3, 4, 5, 6}, other[] = {1, 2, 3, 4, 5, 7};
  const Space a(CGColorSpaceCreateIndexed(rgb.get(), 1, table)),
      b(CGColorSpaceCreateIndexed(rgb.get(), 1, table)), c(CGColorSpaceCreateIndexed(rgb.get(), 1, other)),
      d(CGColorSpaceCreateIndexed(rgb.get(), 0, table));
  EXPECT_EQ(CGColorSpaceGetType(a.get()), 7);
  EXPECT_EQ(CGColorSpaceGetNumberOfComponents(a.get()), 1U);
  EXPECT_EQ(CGColorSpaceGetBaseColorSpace(a.get()), rgb.get());
  EXPECT_TRUE(CFEqual(a.get(), b.get()));
  EXPECT_FALSE(CFEqual(a.get(), c.get()));
  EXPECT_FALSE(CFEqual(a.get(), d.get()));
}

TEST(ColorSpace, IndexedSpacesNeedATableAndABaseThatIsNone) {
  const Space rgb(CGColorSpaceCreateDeviceRGB());
  const uint8_t table[256 * 3] = {};
  const Space indexed(CGColorSpaceCreateIndexed(rgb.get(), 255, table));
  EXPECT_TRUE(indexed);
  EXPECT_EQ(CGColorSpaceCreateIndexed(rgb.get(), 256, table), nullptr);
  EXPECT_EQ(CGColorSpaceCreateIndexed(rgb.get(), 0, nullptr), nullptr);
  EXPECT_EQ(CGColorSpaceCreateIndexed(nullptr, 0, table), nullptr);
  EXPECT_EQ(CGColorSpaceCreateIndexed(indexed.get(), 0, table), nullptr);
}

TEST(ColorSpace, DeviceRGBMeansTheColorsOfTheDisplay) {
  CMProfileRef profile = nullptr;
  ASSERT_EQ(CMGetSystemProfile(&profile), 0);
  const Space display(CGColorSpaceCreateWithPlatformColorSpace(profile)),
      device(CGColorSpaceCreateDeviceRGB());
  CMCloseProfile(profile);
  EXPECT_EQ(CGColorSpaceGetType(display.get()), 6);
  EXPECT_FALSE(CFEqual(display.get(), device.get()));
  EXPECT_TRUE(cg::sameColors(display.get(), device.get()));
}

TEST(ColorSpace, NullIsTakenEverywhere) {
  EXPECT_EQ(CGColorSpaceGetType(nullptr), -1);
  EXPECT_EQ(CGColorSpaceGetNumberOfComponents(nullptr), 0U);
  EXPECT_EQ(CGColorSpaceCopyICCProfile(nullptr), nullptr);
  EXPECT_EQ(CGColorSpaceGetBaseColorSpace(nullptr), nullptr);
  EXPECT_EQ(CGColorSpaceCreateWithPlatformColorSpace(nullptr), nullptr);
  EXPECT_EQ(CGColorSpaceRetain(nullptr), nullptr);
  CGColorSpaceRelease(nullptr);
}

TEST(ColorSpace, SurvivesEveryFailedAllocation) {
  const auto profile = testing_support::gammaProfile(1.8);
  testing_support::forEachFailedAllocation([&](CFAllocatorRef allocator, long) {
    CFAllocatorSetDefault(allocator);
    {
      const uint8_t table[] = {1, 2, 3};
      const Space rgb(CGColorSpaceCreateDeviceRGB()), icc(CGColorSpaceCreateWithICCProfile(profile.get())),
          gray(CGColorSpaceCreateCalibratedGray(kWhite, kBlack, 1.8F)),
          indexed(CGColorSpaceCreateIndexed(rgb.get(), 0, table));
      EXPECT_TRUE(rgb || !indexed);
    }
    CFAllocatorSetDefault(nullptr);
  });
}

}  // namespace
