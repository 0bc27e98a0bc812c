// Strings of the platform as strings of the language, for comparing in tests.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>

namespace test {

// UTF-8; "(no string)" for NULL.
inline std::string text(CFStringRef string) {
  if (!string) return "(no string)";
  const CFIndex most =
      CFStringGetMaximumSizeForEncoding(CFStringGetLength(string), kCFStringEncodingUTF8) + 1;
  std::string bytes(static_cast<size_t>(most), '\0');
  if (!CFStringGetCString(string, bytes.data(), most, kCFStringEncodingUTF8)) return "(no UTF-8)";
  return bytes.c_str();
}

}  // namespace test
