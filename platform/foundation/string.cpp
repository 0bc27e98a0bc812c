// Making and reading strings.
#include <algorithm>
#include <climits>
#include <cstring>

#include "foundation/case_folding.h"
#include "foundation/runtime.h"
#include "foundation/string_object.h"
#include "foundation/text_coding.h"

namespace cf {
namespace {

bool holds(std::size_t size, CFRange range) noexcept {
  const auto length = static_cast<CFIndex>(size);
  return range.location >= 0 && range.length >= 0 && range.location <= length &&
         range.length <= length - range.location;
}

std::span<const UniChar> part(CFStringRef string, CFRange range) noexcept {
  return string->text().subspan(static_cast<std::size_t>(range.location),
                                static_cast<std::size_t>(range.length));
}

Ref<__CFString> decoded(CFAllocatorRef allocator, std::span<const UInt8> bytes,
                        CFStringEncoding encoding) noexcept {
  const auto length = decodedLength(bytes, encoding);
  if (!length) return nullptr;
  auto made = newString(allocator);
  if (!made || !made->units.reserve(*length)) return nullptr;
  if (*length != 0) decode(bytes, encoding, made->units.grow(*length));
  return made;
}

CFComparisonResult order(char32_t a, char32_t b) noexcept {
  if (a == b) return kCFCompareEqualTo;
  return a < b ? kCFCompareLessThan : kCFCompareGreaterThan;
}

CFComparisonResult compareFolded(std::span<const UniChar> a, std::span<const UniChar> b) noexcept {
  while (!a.empty() && !b.empty()) {
    const Character left = firstCharacter(a), right = firstCharacter(b);
    if (const auto found = order(foldCase(left.code), foldCase(right.code))) return found;
    a = a.subspan(left.units);
    b = b.subspan(right.units);
  }
  return order(!a.empty(), !b.empty());
}

CFComparisonResult compareUnits(std::span<const UniChar> a, std::span<const UniChar> b) noexcept {
  const auto [left, right] = std::ranges::mismatch(a, b);
  if (left != a.end() && right != b.end()) return order(*left, *right);
  return order(left != a.end(), right != b.end());
}

// Fills a buffer with whole characters; without a buffer it only counts.
struct ByteSink {
  UInt8 *bytes;
  std::size_t room;
  std::size_t used = 0;

  bool put(const Encoded &encoded) noexcept {
    if (encoded.count == 0 || (bytes && encoded.count > room - used)) return false;
    if (bytes) std::memcpy(bytes + used, encoded.bytes.data(), encoded.count);
    used += encoded.count;
    return true;
  }
};

}  // namespace
}  // namespace cf

using namespace cf;

CFTypeID CFStringGetTypeID(void) { return __CFString::typeID(); }

CFStringRef CFStringCreateWithCString(CFAllocatorRef allocator, const char *cString,
                                      CFStringEncoding encoding) {
  if (!cString || !suitsCStrings(encoding)) return nullptr;
  return decoded(allocator, {reinterpret_cast<const UInt8 *>(cString), std::strlen(cString)}, encoding)
      .give();
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef allocator, const UInt8 *bytes, CFIndex length,
                                    CFStringEncoding encoding, Boolean isExternalRepresentation) {
  if (length < 0 || (!bytes && length > 0)) return nullptr;
  std::span<const UInt8> rest{bytes, static_cast<std::size_t>(length)};
  const CFStringEncoding actual = isExternalRepresentation ? obeyByteOrderMark(rest, encoding) : encoding;
  return decoded(allocator, rest, actual).give();
}

CFStringRef CFStringCreateWithCharacters(CFAllocatorRef allocator, const UniChar *characters,
                                         CFIndex length) {
  if (length < 0 || (!characters && length > 0)) return nullptr;
  return newString(allocator, {characters, static_cast<std::size_t>(length)}).give();
}

CFStringRef CFStringCreateWithSubstring(CFAllocatorRef allocator, CFStringRef string, CFRange range) {
  if (!string || !holds(string->units.size(), range)) return nullptr;
  return newString(allocator, part(string, range)).give();
}

CFStringRef CFStringCreateCopy(CFAllocatorRef allocator, CFStringRef string) {
  if (!string) return nullptr;
  if (!string->isMutable && string->allocator() == allocatorOrDefault(allocator)) return share(string).give();
  return newString(allocator, string->text()).give();
}

CFIndex CFStringGetLength(CFStringRef string) {
  return string ? static_cast<CFIndex>(string->units.size()) : 0;
}

UniChar CFStringGetCharacterAtIndex(CFStringRef string, CFIndex index) {
  return index >= 0 && index < CFStringGetLength(string) ? string->units.data()[index] : UniChar{0};
}

void CFStringGetCharacters(CFStringRef string, CFRange range, UniChar *buffer) {
  if (string && buffer && holds(string->units.size(), range)) std::ranges::copy(part(string, range), buffer);
}

const UniChar *CFStringGetCharactersPtr(CFStringRef string) {
  return string ? string->units.data() : nullptr;
}

Boolean CFStringGetCString(CFStringRef string, char *buffer, CFIndex bufferSize, CFStringEncoding encoding) {
  if (!buffer || bufferSize < 1) return false;
  buffer[0] = 0;
  if (!string || !suitsCStrings(encoding)) return false;
  const CFIndex length = CFStringGetLength(string);
  CFIndex used = 0;
  const CFIndex done = CFStringGetBytes(string, CFRangeMake(0, length), encoding, 0, false,
                                        reinterpret_cast<UInt8 *>(buffer), bufferSize - 1, &used);
  buffer[done == length ? used : 0] = 0;
  return done == length;
}

const char *CFStringGetCStringPtr(CFStringRef string, CFStringEncoding encoding) {
  return string && suitsCStrings(encoding) ? string->literal : nullptr;
}

CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding, UInt8 lossByte,
                         Boolean isExternalRepresentation, UInt8 *buffer, CFIndex bufferSize,
                         CFIndex *usedBytes) {
  if (usedBytes) *usedBytes = 0;
  if (!string || bufferSize < 0 || !knowsEncoding(encoding) || !holds(string->units.size(), range)) return 0;
  ByteSink sink{buffer, static_cast<std::size_t>(bufferSize)};
  if (isExternalRepresentation && encoding == kCFStringEncodingUTF16 && !sink.put(encode(0xFEFF, encoding)))
    return 0;
  std::span<const UniChar> rest = part(string, range);
  while (!rest.empty()) {
    const Character next = firstCharacter(rest);
    Encoded encoded = encode(next.code, encoding);
    if (encoded.count == 0 && lossByte != 0) encoded = {{lossByte}, 1};
    if (!sink.put(encoded)) break;
    rest = rest.subspan(next.units);
  }
  if (usedBytes) *usedBytes = static_cast<CFIndex>(sink.used);
  return range.length - static_cast<CFIndex>(rest.size());
}

CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding) {
  if (length < 0 || !knowsEncoding(encoding) || length > (LONG_MAX - 2) / 3) return kCFNotFound;
  if (encoding == kCFStringEncodingUTF8) return length * 3;
  if (suitsCStrings(encoding)) return length;
  constexpr CFIndex kByteOrderMark = 2;
  return length * 2 + (encoding == kCFStringEncodingUTF16 ? kByteOrderMark : 0);
}

CFStringEncoding CFStringGetSystemEncoding(void) { return kCFStringEncodingUTF8; }

Boolean CFStringGetFileSystemRepresentation(CFStringRef string, char *buffer, CFIndex bufferSize) {
  if (!string || std::ranges::find(string->text(), UniChar{0}) != string->text().end()) return false;
  return CFStringGetCString(string, buffer, bufferSize, kCFStringEncodingUTF8);
}

CFComparisonResult CFStringCompare(CFStringRef string1, CFStringRef string2, CFStringCompareFlags options) {
  if (!string1 || !string2) return order(string1 != nullptr, string2 != nullptr);
  return (options & kCFCompareCaseInsensitive ? compareFolded : compareUnits)(string1->text(),
                                                                              string2->text());
}

Boolean CFStringHasPrefix(CFStringRef string, CFStringRef prefix) {
  if (!string || !prefix || prefix->units.size() > string->units.size()) return false;
  return std::ranges::equal(string->text().first(prefix->units.size()), prefix->text());
}

Boolean CFStringHasSuffix(CFStringRef string, CFStringRef suffix) {
  if (!string || !suffix || suffix->units.size() > string->units.size()) return false;
  return std::ranges::equal(string->text().last(suffix->units.size()), suffix->text());
}
