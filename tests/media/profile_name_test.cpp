#include "media/profile_name.h"

#include <gtest/gtest.h>
#include <lcms2.h>

#include <vector>

#include "profiles.h"

namespace {

std::vector<uint8_t> profileNamed(const wchar_t *name) {
  cmsHPROFILE profile = cmsCreate_sRGBProfile();
  cmsMLU *text = cmsMLUalloc(nullptr, 1);
  cmsMLUsetWide(text, "en", "US", name);
  cmsWriteTag(profile, cmsSigProfileDescriptionTag, text);
  cmsMLUfree(text);
  return profileBytes(profile);
}

}  // namespace

TEST(ProfileName, IsTheDescriptionInTheProfile) {
  EXPECT_EQ(media::profileName(profileNamed(L"Paper, uncoated")), "Paper, uncoated");
}

TEST(ProfileName, KeepsLettersOfEveryLength) {
  EXPECT_EQ(media::profileName(profileNamed(L"Zürich 東京")), "Z\xc3\xbcrich \xe6\x9d\xb1\xe4\xba\xac");
}

TEST(ProfileName, OfBytesThatAreNoProfileIsUnnamed) {
  EXPECT_EQ(media::profileName(std::vector<uint8_t>(200, 0x20)), "unnamed");
  EXPECT_EQ(media::profileName({}), "unnamed");
}

TEST(ProfileName, OfAProfileThatIsCutOffIsWholeOrUnnamed) {
  const std::vector<uint8_t> profile = profileNamed(L"Paper");
  for (size_t length = 0; length < profile.size(); length += 7) {
    const std::string name = media::profileName(std::span(profile).first(length));
    EXPECT_TRUE(name == "unnamed" || name == "Paper") << length << " bytes: " << name;
  }
  EXPECT_EQ(media::profileName(std::span(profile).first(128)), "unnamed");
}
