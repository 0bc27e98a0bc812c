#include "foundation/string_object.h"

#include <algorithm>
#include <cstdio>

#include "foundation/runtime.h"
#include "foundation/text_coding.h"

bool __CFString::operator==(const __CFString &other) const noexcept {
  return std::ranges::equal(text(), other.text());
}

CFHashCode __CFString::hash() const noexcept {
  CFHashCode hash = 0xCBF29CE484222325;
  for (const UniChar unit : text()) hash = (hash ^ unit) * 0x100000001B3;
  return hash;
}

std::string __CFString::describe() const {
  char address[32];
  std::snprintf(address, sizeof address, "%p", static_cast<const void *>(this));
  return "<CFString " + std::string(address) + ">{contents = \"" + cf::utf8(text()) + "\"}";
}

namespace cf {

Ref<__CFString> newString(CFAllocatorRef allocator) noexcept {
  auto made = make<__CFString>(allocator);
  if (made) made->units = Buffer<UniChar>(made->allocator());
  return made;
}

Ref<__CFString> newString(CFAllocatorRef allocator, std::span<const UniChar> units) noexcept {
  auto made = newString(allocator);
  if (!made || !made->units.reserve(units.size()) || !made->units.append(units.data(), units.size()))
    return nullptr;
  return made;
}

Ref<__CFString> newString(CFAllocatorRef allocator, Buffer<UniChar> &&units) noexcept {
  auto made = make<__CFString>(allocator);
  if (made) made->units = std::move(units);
  return made;
}

std::string utf8(std::span<const UniChar> units) {
  std::string result;
  result.reserve(units.size());
  while (!units.empty()) {
    const Character next = firstCharacter(units);
    const Encoded encoded = encode(next.code, kCFStringEncodingUTF8);
    for (std::size_t i = 0; i < encoded.count; ++i) result.push_back(static_cast<char>(encoded.bytes[i]));
    if (encoded.count == 0) result.push_back('?');
    units = units.subspan(next.units);
  }
  return result;
}

}  // namespace cf
