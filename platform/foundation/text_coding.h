// Text as bytes of some encoding, and as UTF-16 units.
#pragma once

#include <CoreFoundation/CFString.h>

#include <array>
#include <optional>
#include <span>

namespace cf {

bool knowsEncoding(CFStringEncoding encoding) noexcept;

// One byte a character, or a run of bytes without zeros among them: what a zero-terminated string can hold.
bool suitsCStrings(CFStringEncoding encoding) noexcept;

// Where there is a byte order mark of the encoding at the start: drops it, and says in what order the rest
// is.
CFStringEncoding obeyByteOrderMark(std::span<const UInt8> &bytes, CFStringEncoding encoding) noexcept;

// The UTF-16 units that bytes decode to; no value if they are not valid in the encoding.
std::optional<std::size_t> decodedLength(std::span<const UInt8> bytes, CFStringEncoding encoding) noexcept;

// Decodes bytes whose decodedLength is known, into as many units.
void decode(std::span<const UInt8> bytes, CFStringEncoding encoding, UniChar *units) noexcept;

// The character at the front of units, which are not empty, and how many units it takes. A surrogate without
// its other half counts as a character of its own.
struct Character {
  char32_t code;
  std::size_t units;
};
Character firstCharacter(std::span<const UniChar> units) noexcept;

constexpr bool isSurrogate(char32_t code) noexcept { return code >= 0xD800 && code < 0xE000; }

// The bytes of one character; none where the encoding lacks it.
struct Encoded {
  std::array<UInt8, 4> bytes;
  std::size_t count = 0;
};
Encoded encode(char32_t code, CFStringEncoding encoding) noexcept;

}  // namespace cf
