// The characters behind the bytes of old texts.
#pragma once

#include <cstdint>

namespace codecs::pict {

enum class CharacterSet : uint8_t { macRoman, symbol, dingbats };

// The character's code point; 0 for control characters, which draw nothing.
char32_t characterOf(uint8_t byte, CharacterSet set) noexcept;

}  // namespace codecs::pict
