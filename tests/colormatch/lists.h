// Lists and entries for tests.
#pragma once

#include <DravKit/DravKit.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <vector>

#include "foundation/ref.h"

namespace test {

using List = cf::Ref<DRAVCFColorMatchListRef>;
using Test = DRAVCFColorMatchComponent;
using Floats = std::vector<float>;

inline constexpr Test kAlways{AlwaysMatches, 0, 0};
inline constexpr Test kNever{AlwaysMatches + 1, 0, 0};

// An entry that owns its arrays.
struct Entry {
  uint32_t options = 0;
  std::vector<Test> tests;
  Floats replacement;

  // For a call: the library reads the arrays and keeps copies.
  [[nodiscard]] DRAVCFColorMatchEntry record() const {
    return {options, const_cast<Test *>(tests.data()), const_cast<float *>(replacement.data())};
  }
};

inline List newList(uint32_t options, uint32_t componentCount, CFAllocatorRef allocator = nullptr) {
  return cf::adopt(DRAVCFColorMatchListCreate(allocator, options, componentCount));
}

inline int32_t add(const List &list, const Entry &entry) {
  const DRAVCFColorMatchEntry record = entry.record();
  return DRAVCFColorMatchListAddEntry(list.get(), &record);
}

inline List listOf(uint32_t options, uint32_t componentCount, const std::vector<Entry> &entries,
                   CFAllocatorRef allocator = nullptr) {
  List list = newList(options, componentCount, allocator);
  for (const Entry &entry : entries) {
    if (!list || !add(list, entry)) return nullptr;
  }
  return list;
}

// The copy callback, reached as any class's is.
inline List copyOf(CFAllocatorRef allocator, const List &list) {
  const CFRuntimeClass *record = _CFRuntimeGetClassWithTypeID(DRAVCFColorMatchListGetTypeID());
  return cf::adopt(
      static_cast<DRAVCFColorMatchListRef>(const_cast<void *>(record->copy(allocator, list.get()))));
}

// The replacement of a colour; empty where nothing matches, the result then checked to be untouched.
inline Floats match(const List &list, const Floats &color) {
  const float untouched = -1234.5F;
  Floats result(color.size(), untouched);
  if (DRAVCFColorMatchListFindMatch(list.get(), color.data(), result.data())) return result;
  return result == Floats(color.size(), untouched) ? Floats{} : Floats{untouched};
}

// The same bits, or both NaN, whose sign and payload are the processor's affair.
inline bool same(float a, float b) {
  return std::bit_cast<uint32_t>(a) == std::bit_cast<uint32_t>(b) || (std::isnan(a) && std::isnan(b));
}

}  // namespace test
