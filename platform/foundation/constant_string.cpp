// Constant strings, made at their first use and kept for good.
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

#include "foundation/runtime.h"
#include "foundation/string_object.h"
#include "foundation/text_coding.h"

namespace cf {
namespace {

struct Interned {
  std::mutex lock;
  std::unordered_map<std::string, Ref<__CFString>> strings;
};

// Never destroyed: constant strings are used until the very end of the process.
Interned &interned() {
  static auto &table = *new Interned;
  return table;
}

Ref<__CFString> newConstant(std::string_view text) {
  const std::span bytes{reinterpret_cast<const UInt8 *>(text.data()), text.size()};
  // A source file in another encoding than UTF-8 still gives a string.
  const auto encoding =
      decodedLength(bytes, kCFStringEncodingUTF8) ? kCFStringEncodingUTF8 : kCFStringEncodingISOLatin1;
  auto made = Ref<__CFString>::adopt(const_cast<__CFString *>(CFStringCreateWithBytes(
      kCFAllocatorSystemDefault, bytes.data(), static_cast<CFIndex>(bytes.size()), encoding, false)));
  if (made) makeImmortal(made.get());
  return made;
}

CFStringRef intern(const char *text) {
  Interned &table = interned();
  const std::scoped_lock locked(table.lock);
  const auto [entry, isNew] = table.strings.try_emplace(text);
  if (isNew) {
    entry->second = newConstant(entry->first);
    if (!entry->second) throw std::bad_alloc();
    if (decodedLength({reinterpret_cast<const UInt8 *>(text), entry->first.size()}, kCFStringEncodingASCII))
      entry->second->literal = entry->first.c_str();
  }
  return entry->second.get();
}

}  // namespace
}  // namespace cf

CFStringRef __CFStringMakeConstantString(const char *cString) {
  const CFStringRef found = cf::guarded([&] { return cf::intern(cString); });
  if (found) return found;
  // Nobody expects a literal to be missing.
  std::fputs("CFSTR - out of memory\n", stderr);
  std::abort();
}
