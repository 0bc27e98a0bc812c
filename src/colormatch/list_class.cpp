// The class of colour match lists and its callbacks.
#include <cstring>

#include "colormatch/color_match_list.h"
#include "core/runtime_class.h"
#include "foundation/ref.h"
#include "foundation/sizes.h"

namespace drav::colormatch {

CFRuntimeClass _kDRAVCFColorMatchListClass;
CFTypeID _kDRAVCFColorMatchListID = 0;
Boolean gDRAVCFColorMatchListInited = 0;

namespace {

using cf::objectIn;
using List = __DRAVCFColorMatchList;

// Room for as many entries, without arrays yet, so that a list that is released half copied frees only what
// it has.
DRAVCFColorMatchEntry *allocateEntries(CFAllocatorRef allocator, uint32_t count) {
  const cf::Size bytes = cf::blockBytes(count, sizeof(DRAVCFColorMatchEntry));
  void *entries = bytes ? CFAllocatorAllocate(allocator, static_cast<CFIndex>(*bytes), 0) : nullptr;
  if (entries) std::memset(entries, 0, *bytes);
  return static_cast<DRAVCFColorMatchEntry *>(entries);
}

// Bytes decide: 0.0 and -0.0 differ, and a NaN equals itself.
template <class Item>
bool sameBytes(const Item *a, const Item *b, uint32_t count) {
  return count == 0 || std::memcmp(a, b, size_t{count} * sizeof(Item)) == 0;
}

bool equalEntries(const DRAVCFColorMatchEntry &a, const DRAVCFColorMatchEntry &b, uint32_t replacementCount) {
  return a.options == b.options && sameBytes(a.replaceComponents, b.replaceComponents, replacementCount) &&
         sameBytes(a.findComponents, b.findComponents, FindComponentCountForEntry(a));
}

}  // namespace

void DRAVCFColorMatchListClassInitialize() {
  _kDRAVCFColorMatchListClass = {0,
                                 "DRAVCFColorMatchList",
                                 DRAVCFColorMatchListInit,
                                 DRAVCFColorMatchListCopy,
                                 DRAVCFColorMatchListFinalize,
                                 DRAVCFColorMatchListEqual,
                                 DRAVCFColorMatchListHash,
                                 DRAVCFColorMatchListCopyFormattingDesc,
                                 DRAVCFColorMatchListCopyDebugDesc};
  _kDRAVCFColorMatchListID = _CFRuntimeRegisterClass(&_kDRAVCFColorMatchListClass);
}

DRAVCFColorMatchListRef ColorMatchListCreatePrivate(CFAllocatorRef allocator) {
  return createInstance<List>(allocator, gDRAVCFColorMatchListInited, DRAVCFColorMatchListClassInitialize,
                              _kDRAVCFColorMatchListID);
}

void DRAVCFColorMatchListInit(CFTypeRef list) { cleared<List>(list); }

CFTypeRef DRAVCFColorMatchListCopy(CFAllocatorRef allocator, CFTypeRef source) {
  if (!source) return nullptr;
  const List &from = objectIn<List>(source);
  auto copy = cf::adopt(ColorMatchListCreatePrivate(allocator));
  if (!copy) return nullptr;
  copy->options = from.options;
  copy->componentCount = from.componentCount;
  copy->entries = allocateEntries(allocator, from.entryCount);
  if (!copy->entries) return nullptr;
  copy->entryCount = from.entryCount;
  for (uint32_t i = 0; i < from.entryCount; ++i) {
    if (!CopyEntry(allocator, &copy->entries[i], from.entries[i], from.componentCount)) return nullptr;
  }
  return copy.give();
}

void DRAVCFColorMatchListFinalize(CFTypeRef list) {
  const List &ending = objectIn<List>(list);
  if (!ending.entries) return;
  CFAllocatorRef allocator = CFGetAllocator(list);
  for (uint32_t i = 0; i < ending.entryCount; ++i) {
    const DRAVCFColorMatchEntry &entry = ending.entries[i];
    if (entry.findComponents) CFAllocatorDeallocate(allocator, entry.findComponents);
    if (entry.replaceComponents) CFAllocatorDeallocate(allocator, entry.replaceComponents);
  }
  CFAllocatorDeallocate(allocator, ending.entries);
}

Boolean DRAVCFColorMatchListEqual(CFTypeRef first, CFTypeRef second) {
  if (first == second) return true;
  const List &a = objectIn<List>(first), &b = objectIn<List>(second);
  if (a.options != b.options || a.componentCount != b.componentCount || a.entryCount != b.entryCount)
    return false;
  for (uint32_t i = 0; i < a.entryCount; ++i) {
    if (!equalEntries(a.entries[i], b.entries[i], a.componentCount)) return false;
  }
  return true;
}

// The address, although lists compare by what they hold: equal lists have different hash codes.
CFHashCode DRAVCFColorMatchListHash(CFTypeRef list) { return reinterpret_cast<CFHashCode>(list); }

}  // namespace drav::colormatch

CFTypeID DRAVCFColorMatchListGetTypeID(void) { return drav::colormatch::_kDRAVCFColorMatchListID; }
