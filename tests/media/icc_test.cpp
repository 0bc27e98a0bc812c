#include "media/codecs/icc.h"

#include <gtest/gtest.h>

#include "profiles.h"

namespace {

using codecs::isProfileFor;
using codecs::ProfileColours;

const CGImageDecodeLimits kLimits = CGImageGetDefaultDecodeLimits();

TEST(IccHeader, TellsTheColoursOfAProfile) {
  EXPECT_TRUE(isProfileFor(swappedRgbProfile(), ProfileColours::rgb, kLimits));
  EXPECT_FALSE(isProfileFor(swappedRgbProfile(), ProfileColours::grey, kLimits));
  EXPECT_TRUE(isProfileFor(greyProfile(2.2), ProfileColours::grey, kLimits));
  EXPECT_TRUE(isProfileFor(blackInkProfile(), ProfileColours::cmyk, kLimits));
}

TEST(IccHeader, RefusesWhatIsShortTooLongOrNotAProfile) {
  std::vector<uint8_t> profile = swappedRgbProfile();
  EXPECT_FALSE(isProfileFor({}, ProfileColours::rgb, kLimits));
  EXPECT_FALSE(isProfileFor(codecs::Bytes(profile.data(), 127), ProfileColours::rgb, kLimits));
  EXPECT_FALSE(isProfileFor(codecs::Bytes(profile.data(), profile.size() - 1), ProfileColours::rgb, kLimits));
  CGImageDecodeLimits limits = kLimits;
  limits.profileBytes = static_cast<uint32_t>(profile.size()) - 1;
  EXPECT_FALSE(isProfileFor(profile, ProfileColours::rgb, limits));
  profile[36] = 'x';
  EXPECT_FALSE(isProfileFor(profile, ProfileColours::rgb, kLimits));
}

}  // namespace
