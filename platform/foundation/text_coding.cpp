#include "foundation/text_coding.h"

#include <algorithm>
#include <bit>

namespace cf {
namespace {

constexpr CFStringEncoding kNativeUTF16 =
    std::endian::native == std::endian::little ? kCFStringEncodingUTF16LE : kCFStringEncodingUTF16BE;

constexpr char32_t kInvalid = 0xFFFFFFFF;

bool isUTF16(CFStringEncoding encoding) noexcept {
  return encoding == kCFStringEncodingUTF16 || encoding == kCFStringEncodingUTF16BE ||
         encoding == kCFStringEncodingUTF16LE;
}

bool isBigEndian(CFStringEncoding encoding) noexcept {
  return (encoding == kCFStringEncodingUTF16 ? kNativeUTF16 : encoding) == kCFStringEncodingUTF16BE;
}

bool startsWith(std::span<const UInt8> bytes, std::span<const UInt8> start) noexcept {
  return bytes.size() >= start.size() && std::equal(start.begin(), start.end(), bytes.begin());
}

// Length of a UTF-8 sequence by its first byte; 0 where none begins so.
std::size_t sequenceLength(UInt8 lead) noexcept {
  if (lead < 0x80) return 1;
  if (lead < 0xC2) return 0;
  if (lead < 0xE0) return 2;
  if (lead < 0xF0) return 3;
  return lead < 0xF5 ? 4 : 0;
}

// Takes one character off bytes. Longer spellings than needed, surrogates and what lies above Unicode are
// invalid.
char32_t takeUTF8(std::span<const UInt8> &bytes) noexcept {
  constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  const std::size_t length = sequenceLength(bytes[0]);
  if (length == 0 || length > bytes.size()) return kInvalid;
  char32_t code = length == 1 ? bytes[0] : bytes[0] & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if ((bytes[i] & 0xC0) != 0x80) return kInvalid;
    code = code << 6 | (bytes[i] & 0x3FU);
  }
  if (code < kLeast[length] || isSurrogate(code) || code > 0x10FFFF) return kInvalid;
  bytes = bytes.subspan(length);
  return code;
}

template <class Sink>
void putUTF16(char32_t code, Sink &&sink) {
  if (code < 0x10000) return sink(static_cast<UniChar>(code));
  sink(static_cast<UniChar>(0xD7C0 + (code >> 10)));
  sink(static_cast<UniChar>(0xDC00 | (code & 0x3FF)));
}

// Hands every unit to sink; false at the first invalid byte.
template <class Sink>
bool decodeTo(std::span<const UInt8> bytes, CFStringEncoding encoding, Sink &&sink) {
  if (isUTF16(encoding)) {
    if (bytes.size() % 2 != 0) return false;
    const std::size_t high = isBigEndian(encoding) ? 0 : 1;
    for (std::size_t i = 0; i < bytes.size(); i += 2)
      sink(static_cast<UniChar>(bytes[i + high] << 8 | bytes[i + 1 - high]));
    return true;
  }
  if (encoding == kCFStringEncodingUTF8) {
    while (!bytes.empty()) {
      const char32_t code = takeUTF8(bytes);
      if (code == kInvalid) return false;
      putUTF16(code, sink);
    }
    return true;
  }
  const UInt8 most = encoding == kCFStringEncodingISOLatin1 ? 0xFF : 0x7F;
  for (const UInt8 byte : bytes) {
    if (byte > most) return false;
    sink(byte);
  }
  return true;
}

Encoded encodeUTF8(char32_t code) noexcept {
  if (isSurrogate(code)) return {};
  const auto tail = [code](int shift) { return static_cast<UInt8>(0x80 | (code >> shift & 0x3F)); };
  if (code < 0x80) return {{static_cast<UInt8>(code)}, 1};
  if (code < 0x800) return {{static_cast<UInt8>(0xC0 | code >> 6), tail(0)}, 2};
  if (code < 0x10000) return {{static_cast<UInt8>(0xE0 | code >> 12), tail(6), tail(0)}, 3};
  return {{static_cast<UInt8>(0xF0 | code >> 18), tail(12), tail(6), tail(0)}, 4};
}

Encoded encodeUTF16(char32_t code, bool bigEndian) noexcept {
  Encoded result{};
  putUTF16(code, [&](UniChar unit) {
    const auto high = static_cast<UInt8>(unit >> 8), low = static_cast<UInt8>(unit & 0xFF);
    result.bytes[result.count++] = bigEndian ? high : low;
    result.bytes[result.count++] = bigEndian ? low : high;
  });
  return result;
}

}  // namespace

bool knowsEncoding(CFStringEncoding encoding) noexcept {
  return isUTF16(encoding) || suitsCStrings(encoding);
}

bool suitsCStrings(CFStringEncoding encoding) noexcept {
  return encoding == kCFStringEncodingUTF8 || encoding == kCFStringEncodingASCII ||
         encoding == kCFStringEncodingISOLatin1;
}

CFStringEncoding obeyByteOrderMark(std::span<const UInt8> &bytes, CFStringEncoding encoding) noexcept {
  struct Mark {
    std::array<UInt8, 3> bytes;
    std::size_t length;
    CFStringEncoding encoding;
  };
  constexpr Mark kMarks[] = {{{0xEF, 0xBB, 0xBF}, 3, kCFStringEncodingUTF8},
                             {{0xFE, 0xFF}, 2, kCFStringEncodingUTF16BE},
                             {{0xFF, 0xFE}, 2, kCFStringEncodingUTF16LE}};
  for (const Mark &mark : kMarks) {
    const bool possible =
        mark.encoding == encoding || (encoding == kCFStringEncodingUTF16 && mark.length == 2);
    if (!possible || !startsWith(bytes, std::span(mark.bytes).first(mark.length))) continue;
    bytes = bytes.subspan(mark.length);
    return mark.encoding;
  }
  return encoding;
}

std::optional<std::size_t> decodedLength(std::span<const UInt8> bytes, CFStringEncoding encoding) noexcept {
  if (!knowsEncoding(encoding)) return std::nullopt;
  std::size_t units = 0;
  if (!decodeTo(bytes, encoding, [&](UniChar) { ++units; })) return std::nullopt;
  return units;
}

void decode(std::span<const UInt8> bytes, CFStringEncoding encoding, UniChar *units) noexcept {
  decodeTo(bytes, encoding, [&](UniChar unit) { *units++ = unit; });
}

Character firstCharacter(std::span<const UniChar> units) noexcept {
  const char32_t first = units[0];
  if (first < 0xD800 || first >= 0xDC00 || units.size() < 2) return {first, 1};
  const char32_t second = units[1];
  if (second < 0xDC00 || second >= 0xE000) return {first, 1};
  return {0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00), 2};
}

Encoded encode(char32_t code, CFStringEncoding encoding) noexcept {
  if (encoding == kCFStringEncodingUTF8) return encodeUTF8(code);
  if (isUTF16(encoding)) return encodeUTF16(code, isBigEndian(encoding));
  const char32_t most = encoding == kCFStringEncodingISOLatin1 ? 0xFF : 0x7F;
  return code <= most ? Encoded{{static_cast<UInt8>(code)}, 1} : Encoded{};
}

}  // namespace cf
