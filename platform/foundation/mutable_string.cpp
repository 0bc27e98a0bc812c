// Strings that change.
#include <cstring>

#include "foundation/format.h"
#include "foundation/string_object.h"
#include "foundation/text_coding.h"

namespace cf {
namespace {

// Whether so many more units may be added.
bool accepts(CFMutableStringRef string, std::size_t more) noexcept {
  if (!string || !string->isMutable) return false;
  const Size length = sum(string->units.size(), more);
  return length && (string->maxLength == 0 || *length <= string->maxLength);
}

void append(CFMutableStringRef string, std::span<const UniChar> units) noexcept {
  // Appending all or nothing is what the buffer promises; there is nobody to tell about nothing.
  if (accepts(string, units.size())) static_cast<void>(string->units.append(units.data(), units.size()));
}

Ref<__CFString> mutableCopy(CFAllocatorRef allocator, CFIndex maxLength,
                            std::span<const UniChar> units) noexcept {
  if (maxLength < 0) return nullptr;
  const auto most = static_cast<std::size_t>(maxLength);
  if (most != 0 && units.size() > most) return nullptr;
  auto made = newString(allocator, units);
  if (!made) return nullptr;
  made->isMutable = true;
  made->maxLength = most;
  return made;
}

}  // namespace
}  // namespace cf

using namespace cf;

CFMutableStringRef CFStringCreateMutable(CFAllocatorRef allocator, CFIndex maxLength) {
  return mutableCopy(allocator, maxLength, {}).give();
}

CFMutableStringRef CFStringCreateMutableCopy(CFAllocatorRef allocator, CFIndex maxLength,
                                             CFStringRef string) {
  return string ? mutableCopy(allocator, maxLength, string->text()).give() : nullptr;
}

void CFStringAppend(CFMutableStringRef string, CFStringRef appended) {
  if (appended) append(string, appended->text());
}

void CFStringAppendCharacters(CFMutableStringRef string, const UniChar *characters, CFIndex length) {
  if (characters && length > 0) append(string, {characters, static_cast<std::size_t>(length)});
}

void CFStringAppendCString(CFMutableStringRef string, const char *cString, CFStringEncoding encoding) {
  if (!cString || !suitsCStrings(encoding)) return;
  const std::span bytes{reinterpret_cast<const UInt8 *>(cString), std::strlen(cString)};
  const auto length = decodedLength(bytes, encoding);
  if (!length || !accepts(string, *length)) return;
  if (UniChar *added = string->units.grow(*length)) decode(bytes, encoding, added);
}

void CFStringAppendFormat(CFMutableStringRef string, CFDictionaryRef formatOptions, CFStringRef format, ...) {
  va_list arguments;
  va_start(arguments, format);
  CFStringAppendFormatAndArguments(string, formatOptions, format, arguments);
  va_end(arguments);
}

void CFStringAppendFormatAndArguments(CFMutableStringRef string, CFDictionaryRef formatOptions,
                                      CFStringRef format, va_list arguments) {
  if (!string || !format) return;
  // Not written straight into the string: it may be one of the arguments.
  Buffer<UniChar> text(string->allocator());
  if (formatTo(text, format->text(), formatOptions, arguments)) append(string, {text.data(), text.size()});
}
