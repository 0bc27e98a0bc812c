// Short ways to write strings in tests.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>
#include <string_view>

#include "foundation/ref.h"

namespace testing_support {

inline cf::Ref<CFStringRef> stringOf(std::string_view utf8, CFAllocatorRef allocator = nullptr) {
  return cf::adopt(CFStringCreateWithBytes(allocator, reinterpret_cast<const UInt8 *>(utf8.data()),
                                           static_cast<CFIndex>(utf8.size()), kCFStringEncodingUTF8, false));
}

// The text in UTF-8; "(none)" for no string, so that a missing one differs from an empty one.
inline std::string textOf(CFStringRef string) {
  if (!string) return "(none)";
  const CFRange all = CFRangeMake(0, CFStringGetLength(string));
  CFIndex used = 0;
  CFStringGetBytes(string, all, kCFStringEncodingUTF8, '?', false, nullptr, 0, &used);
  std::string text(static_cast<size_t>(used), '\0');
  CFStringGetBytes(string, all, kCFStringEncodingUTF8, '?', false, reinterpret_cast<UInt8 *>(text.data()),
                   used, &used);
  return text;
}
inline std::string textOf(const cf::Ref<CFStringRef> &string) { return textOf(string.get()); }

}  // namespace testing_support
