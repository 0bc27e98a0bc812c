// What a URL is made of.
#pragma once

#include <CoreFoundation/CFURL.h>

#include <string_view>

#include "foundation/buffer.h"
#include "foundation/object.h"

struct __CFURL : cf::ObjectOf<__CFURL> {
  static constexpr const char *kName = "CFURL";
  bool operator==(const __CFURL &other) const noexcept { return CFEqual(text.get(), other.text.get()); }
  CFHashCode hash() const noexcept { return CFHash(text.get()); }
  std::string describe() const;

  // The path's bytes as the file system takes them, without escapes and without a slash at the end.
  [[nodiscard]] std::string_view pathBytes() const noexcept { return {path.data(), path.size() - 1}; }

  cf::Ref<CFStringRef> text;
  cf::Buffer<char> path;  // a zero at its end
  bool isFile = false;
  bool isDirectory = false;
};
