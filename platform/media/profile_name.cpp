#include "media/profile_name.h"

#include <lcms2.h>

#include <memory>
#include <type_traits>
#include <vector>

namespace media {
namespace {

void appendUtf8(std::string &text, char32_t c) {
  const auto tail = [c](int shift) { return static_cast<char>(0x80 | (c >> shift & 0x3f)); };
  if (c < 0x80) {
    text += static_cast<char>(c);
  } else if (c < 0x800) {
    text += {static_cast<char>(0xc0 | c >> 6), tail(0)};
  } else if (c < 0x10000) {
    text += {static_cast<char>(0xe0 | c >> 12), tail(6), tail(0)};
  } else {
    text += {static_cast<char>(0xf0 | (c >> 18 & 7)), tail(12), tail(6), tail(0)};
  }
}

// The colour engine hands out UTF-16 units, one to a wide character.
std::string utf8(const std::vector<wchar_t> &units) {
  std::string text;
  for (size_t i = 0; i < units.size() && units[i] != 0; ++i) {
    auto c = static_cast<char32_t>(units[i]);
    const bool high = c >= 0xd800 && c < 0xdc00;
    if (high && i + 1 < units.size() && units[i + 1] >= 0xdc00 && units[i + 1] < 0xe000) {
      c = 0x10000 + ((c - 0xd800) << 10) + (static_cast<char32_t>(units[++i]) - 0xdc00);
    } else if (c >= 0xd800 && c < 0xe000) {
      c = 0xfffd;
    }
    appendUtf8(text, c);
  }
  return text;
}

}  // namespace

std::string profileName(std::span<const uint8_t> profile) {
  // A context of our own, so that the engine's complaints reach no handler of somebody else's.
  const std::unique_ptr<std::remove_pointer_t<cmsContext>, void (*)(cmsContext)> engine(
      cmsCreateContext(nullptr, nullptr), cmsDeleteContext);
  const std::unique_ptr<void, cmsBool (*)(cmsHPROFILE)> opened(
      cmsOpenProfileFromMemTHR(engine.get(), profile.data(), static_cast<cmsUInt32Number>(profile.size())),
      cmsCloseProfile);
  std::string name;
  if (opened) {
    const cmsUInt32Number bytes = cmsGetProfileInfo(opened.get(), cmsInfoDescription, "en", "US", nullptr, 0);
    std::vector<wchar_t> units(bytes / sizeof(wchar_t) + 1);
    cmsGetProfileInfo(opened.get(), cmsInfoDescription, "en", "US", units.data(), bytes);
    name = utf8(units);
  }
  return name.empty() ? "unnamed" : name;
}

}  // namespace media
