// What a string is made of.
#pragma once

#include <CoreFoundation/CFString.h>

#include <span>

#include "foundation/buffer.h"
#include "foundation/object.h"

// Always UTF-16 units, so that lengths and positions are what the interface counts in.
struct __CFString : cf::ObjectOf<__CFString> {
  static constexpr const char *kName = "CFString";
  bool operator==(const __CFString &other) const noexcept;
  CFHashCode hash() const noexcept;
  std::string describe() const;

  [[nodiscard]] std::span<const UniChar> text() const noexcept { return {units.data(), units.size()}; }

  cf::Buffer<UniChar> units;
  bool isMutable = false;
  std::size_t maxLength = 0;      // of a mutable string; 0: no limit
  const char *literal = nullptr;  // UTF-8 of a constant string that is ASCII, never freed
};

namespace cf {

// An empty string with its storage on its own allocator, to be filled before anyone else sees it.
Ref<__CFString> newString(CFAllocatorRef allocator) noexcept;

// A string with these units; empty when memory runs out.
Ref<__CFString> newString(CFAllocatorRef allocator, std::span<const UniChar> units) noexcept;

// A string that takes over units which live on the allocator already.
Ref<__CFString> newString(CFAllocatorRef allocator, Buffer<UniChar> &&units) noexcept;

// The text in UTF-8; half surrogates become question marks. Throws when memory runs out.
std::string utf8(std::span<const UniChar> units);

}  // namespace cf
