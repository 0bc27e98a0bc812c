// The name of a colour profile.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace media {

// The description that ICC profile bytes carry, in UTF-8; "unnamed" where they carry none.
std::string profileName(std::span<const uint8_t> profile);

}  // namespace media
