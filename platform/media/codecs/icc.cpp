#include "media/codecs/icc.h"

#include "media/codecs/big_endian.h"

namespace codecs {
namespace {

constexpr size_t kHeaderBytes = 128;

ProfileColours coloursOf(uint32_t code) noexcept {
  if (code == fourCharacterCode("GRAY")) return ProfileColours::grey;
  if (code == fourCharacterCode("RGB ")) return ProfileColours::rgb;
  if (code == fourCharacterCode("CMYK")) return ProfileColours::cmyk;
  return ProfileColours::other;
}

}  // namespace

bool isProfileFor(Bytes profile, ProfileColours colours, const CGImageDecodeLimits &limits) noexcept {
  if (profile.size() < kHeaderBytes || profile.size() > limits.profileBytes) return false;
  const uint32_t size = readBig32(profile, 0);
  return size >= kHeaderBytes && size <= profile.size() &&
         readBig32(profile, 36) == fourCharacterCode("acsp") && coloursOf(readBig32(profile, 16)) == colours;
}

}  // namespace codecs
