#include "foundation/format.h"

#include <CoreFoundation/CFRuntime.h>
#include <locale.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "foundation/ref.h"
#include "foundation/string_object.h"
#include "foundation/text_coding.h"

namespace cf {
namespace {

using Text = std::span<const UniChar>;

// Wider than any table, and narrow enough that a hostile format cannot ask for the machine's whole memory.
constexpr int kMostPadding = 4096;

enum class Length : std::uint8_t { plain, charSized, shortSized, longSized, widest, longDouble };

// One conversion: %[flags][width][.precision][length]conversion
struct Conversion {
  static constexpr std::string_view kFlags = "-+ #0'";
  static constexpr int kFromArgument = -2;  // '*'
  static constexpr int kAbsent = -1;

  std::array<bool, kFlags.size()> flags{};
  int width = kAbsent, precision = kAbsent;
  Length length = Length::plain;
  char letter = 0;
  std::size_t units = 0;  // its length in the format, the percent sign included

  [[nodiscard]] bool alignsLeft() const noexcept { return flags[0]; }
};

// Reads a conversion off the front of a format. What is none, or is cut off by the format's end, has letter
// 0.
class ConversionParser {
 public:
  explicit ConversionParser(Text format) noexcept : format_(format) {}

  Conversion parse() noexcept {
    Conversion result;
    ++at_;  // the percent sign
    for (std::size_t flag; (flag = Conversion::kFlags.find(peek())) != std::string_view::npos; ++at_)
      result.flags[flag] = true;
    result.width = number(Conversion::kAbsent);
    if (take('.')) result.precision = number(0);
    result.length = length();
    if (isLetter(peek(), result.length)) result.letter = peek();
    result.units = at_ + 1;
    return result;
  }

 private:
  [[nodiscard]] char peek() const noexcept {
    return at_ < format_.size() && format_[at_] > 0 && format_[at_] < 0x80 ? static_cast<char>(format_[at_])
                                                                           : '\1';
  }

  bool take(char expected) noexcept {
    if (peek() != expected) return false;
    ++at_;
    return true;
  }

  int number(int absent) noexcept {
    if (take('*')) return Conversion::kFromArgument;
    if (peek() < '0' || peek() > '9') return absent;
    int value = 0;
    for (; peek() >= '0' && peek() <= '9'; ++at_) value = std::min(value * 10 + (peek() - '0'), 100'000'000);
    return value;
  }

  Length length() noexcept {
    if (take('h')) return take('h') ? Length::charSized : Length::shortSized;
    if (take('l')) return take('l') ? Length::widest : Length::longSized;
    if (take('L')) return Length::longDouble;
    return take('q') || take('j') || take('t') || take('z') ? Length::widest : Length::plain;
  }

  // Wide C characters are none of ours: "%ls" is refused.
  static bool isLetter(char letter, Length length) noexcept {
    constexpr std::string_view kWhole = "dioxXun", kFloating = "aAeEfFgG", kOther = "@%cCsSp";
    if (kWhole.find(letter) != std::string_view::npos) return length != Length::longDouble;
    if (kFloating.find(letter) != std::string_view::npos)
      return length == Length::plain || length == Length::longSized || length == Length::longDouble;
    return length == Length::plain && kOther.find(letter) != std::string_view::npos;
  }

  Text format_;
  std::size_t at_ = 0;
};

// Numbers look the same whatever locale the process has set.
class PlainLocale {
 public:
  PlainLocale() noexcept {
    static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
    previous_ = plain ? uselocale(plain) : nullptr;
  }
  ~PlainLocale() {
    if (previous_) uselocale(previous_);
  }
  PlainLocale(const PlainLocale &) = delete;
  PlainLocale &operator=(const PlainLocale &) = delete;

 private:
  locale_t previous_;
};

// An array type as a parameter is a pointer to its element; as a field it can be handed on.
struct Arguments {
  std::va_list list;
};

class Formatter {
 public:
  Formatter(Buffer<UniChar> &output, CFDictionaryRef options, Arguments &arguments) noexcept
      : output_(output), options_(options), arguments_(arguments) {}

  bool run(Text format) noexcept {
    while (!format.empty()) {
      const auto percent = static_cast<std::size_t>(std::ranges::find(format, UniChar{'%'}) - format.begin());
      if (!output_.append(format.data(), percent)) return false;
      format = format.subspan(percent);
      if (format.empty()) break;
      Conversion conversion = ConversionParser(format).parse();
      // Not a conversion: the percent sign stands for itself, and so does what follows.
      const bool done = conversion.letter ? convert(conversion) : output_.append('%');
      if (!done) return false;
      format = format.subspan(conversion.letter ? conversion.units : 1);
    }
    return true;
  }

 private:
  template <class T>
  T next() noexcept {
    return va_arg(arguments_.list,
                  T);  // NOLINT(clang-analyzer-valist.Uninitialized): formatTo copies into it
  }

  bool convert(Conversion &conversion) noexcept {
    takeStars(conversion);
    switch (conversion.letter) {
      case '%':
        return output_.append('%');
      case 'n':
        return static_cast<void>(next<void *>()), true;
      case 'd':
      case 'i':
        return number(conversion, "j", nextSigned(conversion.length));
      case 'o':
      case 'u':
      case 'x':
      case 'X':
        return number(conversion, "j", nextUnsigned(conversion.length));
      case 'p':
        return pointer(conversion);
      case 'c':
        return character(conversion, static_cast<UniChar>(next<int>() & 0xFF));
      case 'C':
        return character(conversion, static_cast<UniChar>(next<int>()));
      case 's':
        return narrow(conversion, next<const char *>());
      case 'S':
        return wide(conversion, next<const UniChar *>());
      case '@':
        return object(conversion, next<CFTypeRef>());
      default:
        break;
    }
    if (conversion.length == Length::longDouble) return number(conversion, "L", next<long double>());
    return number(conversion, "", next<double>());
  }

  void takeStars(Conversion &conversion) noexcept {
    if (conversion.width == Conversion::kFromArgument) {
      const int width = next<int>();
      if (width < 0) conversion.flags[0] = true;
      conversion.width = width < 0 ? -std::max(width, -kMostPadding) : width;
    }
    conversion.width = std::min(conversion.width, kMostPadding);
    if (conversion.precision == Conversion::kFromArgument)
      conversion.precision = std::max(next<int>(), Conversion::kAbsent);
  }

  // long and everything longer is passed alike on a 64-bit machine.
  std::intmax_t nextSigned(Length length) noexcept {
    static_assert(sizeof(long) == sizeof(std::intmax_t) && sizeof(std::size_t) == sizeof(std::intmax_t));
    if (length == Length::charSized) return static_cast<signed char>(next<int>());
    if (length == Length::shortSized) return static_cast<short>(next<int>());
    return length == Length::plain ? next<int>() : next<std::intmax_t>();
  }

  std::uintmax_t nextUnsigned(Length length) noexcept {
    if (length == Length::charSized) return static_cast<unsigned char>(next<int>());
    if (length == Length::shortSized) return static_cast<unsigned short>(next<int>());
    return length == Length::plain ? next<unsigned int>() : next<std::uintmax_t>();
  }

  // Digits are the C library's affair: one conversion at a time, with width and precision of ours.
  template <class Number>
  bool number(const Conversion &conversion, std::string_view lengthLetters, Number value) noexcept {
    std::array<char, 16> printfText{};
    char *end = printfText.data();
    *end++ = '%';
    for (std::size_t i = 0; i < conversion.flags.size(); ++i)
      if (conversion.flags[i]) *end++ = Conversion::kFlags[i];
    for (const char letter : {'*', '.', '*'}) *end++ = letter;
    end = std::ranges::copy(lengthLetters, end).out;
    *end = conversion.letter;

    // The longest number has 4,933 digits before the point, or the most padding.
    std::array<char, 4933 + kMostPadding + 64> digits;
    const int width = std::max(conversion.width, 0), precision = std::min(conversion.precision, kMostPadding);
    const PlainLocale plain;
    const int length =
        std::snprintf(digits.data(), digits.size(), printfText.data(), width, precision, value);
    if (length < 0) return true;
    return ascii({digits.data(), std::min(static_cast<std::size_t>(length), digits.size() - 1)});
  }

  bool pointer(Conversion conversion) noexcept {
    std::array<char, 24> digits;
    const int length = std::snprintf(digits.data(), digits.size(), "0x%jx",
                                     reinterpret_cast<std::uintmax_t>(next<void *>()));
    std::array<UniChar, 24> units;
    std::copy_n(digits.begin(), length, units.begin());
    conversion.precision = Conversion::kAbsent;
    return padded(conversion, {units.data(), static_cast<std::size_t>(length)});
  }

  bool character(Conversion conversion, UniChar unit) noexcept {
    conversion.precision = Conversion::kAbsent;
    return padded(conversion, {&unit, 1});
  }

  bool ascii(std::string_view text) noexcept {
    UniChar *units = output_.grow(text.size());
    if (units) std::ranges::copy(text, units);
    return units != nullptr;
  }

  // The precision limits the bytes that are looked at.
  bool narrow(Conversion conversion, const char *text) noexcept {
    if (!text) return null(conversion);
    const bool limited = conversion.precision != Conversion::kAbsent;
    const std::size_t length =
        limited ? strnlen(text, static_cast<std::size_t>(conversion.precision)) : std::strlen(text);
    const std::span bytes{reinterpret_cast<const UInt8 *>(text), length};
    conversion.precision = Conversion::kAbsent;
    const std::span whole = limited ? withoutCutCharacter(bytes) : bytes;
    if (const auto units = decodedLength(whole, kCFStringEncodingUTF8))
      return decoded(conversion, whole, kCFStringEncodingUTF8, *units);
    // Some other encoding: each byte is shown as a character rather than none.
    return decoded(conversion, bytes, kCFStringEncodingISOLatin1, length);
  }

  // Leaves out the character at the end that a limit in bytes cut in two.
  static std::span<const UInt8> withoutCutCharacter(std::span<const UInt8> bytes) noexcept {
    for (std::size_t cut = 1; cut <= 3 && cut <= bytes.size(); ++cut) {
      const UInt8 lead = bytes[bytes.size() - cut];
      if ((lead & 0xC0) == 0x80) continue;
      const std::size_t whole = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
      return whole > cut ? bytes.first(bytes.size() - cut) : bytes;
    }
    return bytes;
  }

  bool decoded(const Conversion &conversion, std::span<const UInt8> bytes, CFStringEncoding encoding,
               std::size_t units) noexcept {
    return withPadding(conversion, units, [&] {
      if (units == 0) return true;
      UniChar *added = output_.grow(units);
      if (added) decode(bytes, encoding, added);
      return added != nullptr;
    });
  }

  bool wide(const Conversion &conversion, const UniChar *text) noexcept {
    if (!text) return null(conversion);
    const std::size_t most = conversion.precision == Conversion::kAbsent
                                 ? SIZE_MAX
                                 : static_cast<std::size_t>(conversion.precision);
    std::size_t length = 0;
    while (length < most && text[length]) ++length;
    return padded(conversion, {text, length});
  }

  bool object(const Conversion &conversion, CFTypeRef object) noexcept {
    if (!object) return null(conversion);
    if (CFGetTypeID(object) == CFStringGetTypeID())
      return padded(conversion, static_cast<CFStringRef>(object)->text());
    const Ref text = adopt(describe(object));
    return text ? padded(conversion, text->text()) : null(conversion);
  }

  CFStringRef describe(CFTypeRef object) const noexcept {
    const CFRuntimeClass *cls = _CFRuntimeGetClassWithTypeID(CFGetTypeID(object));
    return cls->copyFormattingDesc ? cls->copyFormattingDesc(object, options_) : CFCopyDescription(object);
  }

  bool null(Conversion conversion) noexcept {
    static constexpr std::array<UniChar, 6> kNull{'(', 'n', 'u', 'l', 'l', ')'};
    conversion.precision = Conversion::kAbsent;
    return padded(conversion, kNull);
  }

  // The text, cut off at the precision, in a field of the width.
  bool padded(const Conversion &conversion, Text text) noexcept {
    if (conversion.precision != Conversion::kAbsent)
      text = text.first(std::min(text.size(), static_cast<std::size_t>(conversion.precision)));
    return withPadding(conversion, text.size(), [&] { return output_.append(text.data(), text.size()); });
  }

  template <class Put>
  bool withPadding(const Conversion &conversion, std::size_t units, Put &&put) noexcept {
    const std::size_t width = conversion.width > 0 ? static_cast<std::size_t>(conversion.width) : 0;
    const std::size_t missing = width > units ? width - units : 0;
    if (conversion.alignsLeft()) return put() && blanks(missing);
    return blanks(missing) && put();
  }

  bool blanks(std::size_t count) noexcept {
    if (count == 0) return true;
    UniChar *units = output_.grow(count);
    if (units) std::fill_n(units, count, UniChar{' '});
    return units != nullptr;
  }

  Buffer<UniChar> &output_;
  CFDictionaryRef options_;
  Arguments &arguments_;
};

}  // namespace

bool formatTo(Buffer<UniChar> &output, Text format, CFDictionaryRef formatOptions,
              std::va_list arguments) noexcept {
  Arguments own;
  va_copy(own.list, arguments);
  const bool done = Formatter(output, formatOptions, own).run(format);
  va_end(own.list);
  return done;
}

bool formatWithoutArgumentsTo(Buffer<UniChar> &output, Text format) noexcept {
  if (!output.reserve(format.size())) return false;
  for (std::size_t i = 0; i < format.size(); ++i) {
    if (!output.append(format[i])) return false;
    const bool isPair = format[i] == '%' && i + 1 < format.size() && format[i + 1] == '%';
    if (isPair) ++i;
  }
  return true;
}

}  // namespace cf

using namespace cf;

CFStringRef CFStringCreateWithFormat(CFAllocatorRef allocator, CFDictionaryRef formatOptions,
                                     CFStringRef format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const CFStringRef made = CFStringCreateWithFormatAndArguments(allocator, formatOptions, format, arguments);
  va_end(arguments);
  return made;
}

CFStringRef CFStringCreateWithFormatAndArguments(CFAllocatorRef allocator, CFDictionaryRef formatOptions,
                                                 CFStringRef format, va_list arguments) {
  auto made = format ? newString(allocator) : nullptr;
  if (!made || !formatTo(made->units, format->text(), formatOptions, arguments)) return nullptr;
  return made.give();
}

CFStringRef CFStringCreateWithFormatNoArguments(CFAllocatorRef allocator, CFDictionaryRef,
                                                CFStringRef format) {
  auto made = format ? newString(allocator) : nullptr;
  if (!made || !formatWithoutArgumentsTo(made->units, format->text())) return nullptr;
  return made.give();
}
