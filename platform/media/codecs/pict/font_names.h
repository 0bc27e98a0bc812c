// Which family of today stands for one of those days.
#pragma once

#include <string>
#include <string_view>

#include "media/codecs/pict/character_set.h"

namespace codecs::pict {

struct FontFamily {
  std::string name;        // as the picture has it
  std::string substitute;  // one with like letters and widths, where the first is not installed
  CharacterSet characters = CharacterSet::macRoman;
  bool isAlwaysBold = false;
};

// The family of a number that no picture gave a name.
std::string_view familyNumbered(int number) noexcept;

FontFamily familyNamed(std::string_view name);

}  // namespace codecs::pict
