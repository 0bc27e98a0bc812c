// What a list prints as.
#include <iterator>

#include "colormatch/color_match_list.h"
#include "foundation/object.h"
#include "foundation/ref.h"

namespace drav::colormatch {
namespace {

using String = cf::Ref<CFMutableStringRef>;

struct OptionName {
  uint32_t bit;
  const char *name;
};
constexpr OptionName kListOptionNames[] = {{AllEntriesMustMatch, "AllEntriesMustMatch"}};
constexpr OptionName kEntryOptionNames[] = {{IgnoringAlpha, "IgnoringAlpha"},
                                            {IgnoringIntensities, "IgnoringIntensities"},
                                            {AllComponentsMustMatch, "AllComponentsMustMatch"},
                                            {ConvertToHSB, "ConvertToHSB"}};

// In the order of the modes' numbers.
constexpr const char *kModeNames[] = {
    "ProportionallyIfWithinRange", "ProportionallyIfNotWithinRange", "AbsolutelyIfWithinRange",
    "AbsolutelyIfNotWithinRange",  "ProportionallyIfGreaterThan",    "ProportionallyIfLessThan",
    "AbsolutelyIfGreaterThan",     "AbsolutelyIfLessThan",           "AlwaysMatches"};
static_assert(std::size(kModeNames) == AlwaysMatches + 1);

String newString(CFAllocatorRef allocator) { return cf::adopt(CFStringCreateMutable(allocator, 0)); }

// Both give false if memory runs out: appending tells so only by a length that stays. No text here is empty.
bool append(const String &string, const char *text) {
  const CFIndex before = CFStringGetLength(string.get());
  CFStringAppendCString(string.get(), text, kCFStringEncodingASCII);
  return CFStringGetLength(string.get()) > before;
}

template <class... Arguments>
bool appendFormat(const String &string, CFDictionaryRef formatOptions, CFStringRef format,
                  Arguments... arguments) {
  const CFIndex before = CFStringGetLength(string.get());
  CFStringAppendFormat(string.get(), formatOptions, format, arguments...);
  return CFStringGetLength(string.get()) > before;
}

// The names of the bits that are set and known, in the order of the table.
template <size_t kCount>
CFMutableStringRef copyNames(const OptionName (&names)[kCount], uint32_t options) {
  String result = newString(kCFAllocatorDefault);
  if (!result) return nullptr;
  for (const OptionName &option : names) {
    if (!(options & option.bit)) continue;
    if (CFStringGetLength(result.get()) > 0 && !append(result, " | ")) return nullptr;
    if (!append(result, option.name)) return nullptr;
  }
  return result.give();
}

// NULL, which prints as "(null)", for what is no mode.
CFStringRef modeName(uint32_t mode) {
  return mode < std::size(kModeNames) ? __CFStringMakeConstantString(kModeNames[mode]) : nullptr;
}

bool appendEntry(const String &description, CFDictionaryRef formatOptions, const DRAVCFColorMatchEntry &entry,
                 uint32_t componentCount) {
  const String options = cf::adopt(CopyOptionsString(entry.options));
  const String tests =
      cf::adopt(CopyFindComponentsString(entry.findComponents, FindComponentCountForEntry(entry)));
  const String replacement = cf::adopt(CopyReplaceComponentsString(entry.replaceComponents, componentCount));
  return options && tests && replacement &&
         appendFormat(description, formatOptions, CFSTR(" %@\n { %@ }\n => {%@}\n"), options.get(),
                      tests.get(), replacement.get());
}

}  // namespace

CFMutableStringRef CopyListOptionsString(const __DRAVCFColorMatchList &list) {
  return copyNames(kListOptionNames, list.options);
}

CFMutableStringRef CopyOptionsString(DRAVCFColorMatchEntryOptions options) {
  return copyNames(kEntryOptionNames, options);
}

CFMutableStringRef CopyFindComponentsString(const DRAVCFColorMatchComponent *components, uint32_t count) {
  String result = newString(kCFAllocatorDefault);
  for (uint32_t i = 0; result && i < count; ++i) {
    const DRAVCFColorMatchComponent &test = components[i];
    if (i > 0 && !append(result, "\n   ")) return nullptr;
    if (!appendFormat(result, nullptr, CFSTR("%@ %f %f"), modeName(test.matchMode),
                      static_cast<double>(test.target), static_cast<double>(test.range))) {
      return nullptr;
    }
  }
  return result.give();
}

CFMutableStringRef CopyReplaceComponentsString(const float *values, uint32_t count) {
  String result = newString(kCFAllocatorDefault);
  for (uint32_t i = 0; result && i < count; ++i) {
    if (!appendFormat(result, nullptr, CFSTR("%f"), static_cast<double>(values[i]))) return nullptr;
    if (i != count - 1 && !append(result, ", ")) return nullptr;
  }
  return result.give();
}

CFStringRef DRAVCFColorMatchListCopyFormattingDesc(CFTypeRef object, CFDictionaryRef formatOptions) {
  const auto &list = cf::objectIn<__DRAVCFColorMatchList>(object);
  String result = newString(CFGetAllocator(object));
  const String options = cf::adopt(CopyListOptionsString(list));
  if (!result || !options) return nullptr;
  if (!appendFormat(result, formatOptions, CFSTR("%@ {\n"), options.get())) return nullptr;
  for (uint32_t i = 0; i < list.entryCount; ++i) {
    if (!appendEntry(result, formatOptions, list.entries[i], list.componentCount)) return nullptr;
  }
  return appendFormat(result, formatOptions, CFSTR("}")) ? result.give() : nullptr;
}

CFStringRef DRAVCFColorMatchListCopyDebugDesc(CFTypeRef list) {
  return DRAVCFColorMatchListCopyFormattingDesc(list, nullptr);
}

}  // namespace drav::colormatch
