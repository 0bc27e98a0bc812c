// The colour match list: its record, its class and what works on its entries.
#pragma once

#include <CoreFoundation/CFRuntime.h>
#include <DravKit/DravKit.h>

#include <cstdint>

struct __DRAVCFColorMatchList {
  CFRuntimeBase base;
  DRAVCFColorMatchListOptions options;
  uint32_t componentCount;  // of each colour given, of each result and of each entry's replacement
  uint32_t entryCount;
  // In order of addition. The array, and both arrays of each entry, belong to the list and come from its
  // allocator.
  DRAVCFColorMatchEntry *entries;
};

namespace drav::colormatch {

// The most components that a colour can be matched by: red, green, blue, alpha.
inline constexpr uint32_t kMostComponents = 4;

extern CFRuntimeClass _kDRAVCFColorMatchListClass;
extern CFTypeID _kDRAVCFColorMatchListID;
extern Boolean gDRAVCFColorMatchListInited;

void DRAVCFColorMatchListClassInitialize();
void DRAVCFColorMatchListInit(CFTypeRef list);
CFTypeRef DRAVCFColorMatchListCopy(CFAllocatorRef allocator, CFTypeRef source);
void DRAVCFColorMatchListFinalize(CFTypeRef list);
Boolean DRAVCFColorMatchListEqual(CFTypeRef a, CFTypeRef b);
CFHashCode DRAVCFColorMatchListHash(CFTypeRef list);
CFStringRef DRAVCFColorMatchListCopyFormattingDesc(CFTypeRef list, CFDictionaryRef formatOptions);
CFStringRef DRAVCFColorMatchListCopyDebugDesc(CFTypeRef list);

// A list of nothing, not even an array for its entries. NULL if memory runs out.
DRAVCFColorMatchListRef ColorMatchListCreatePrivate(CFAllocatorRef allocator);

// How many components an entry tests, from the first on: 1, 3 or 4. It says nothing about how many there are.
uint32_t FindComponentCountForEntry(const DRAVCFColorMatchEntry &entry);

// Copies an entry and its arrays. Gives false if memory runs out; the destination then owns what it points
// to.
bool CopyEntry(CFAllocatorRef allocator, DRAVCFColorMatchEntry *destination,
               const DRAVCFColorMatchEntry &source, uint32_t replacementCount);

// The parts of a description: new strings, NULL if memory runs out.
CFMutableStringRef CopyListOptionsString(const __DRAVCFColorMatchList &list);
CFMutableStringRef CopyOptionsString(DRAVCFColorMatchEntryOptions options);
CFMutableStringRef CopyFindComponentsString(const DRAVCFColorMatchComponent *components, uint32_t count);
CFMutableStringRef CopyReplaceComponentsString(const float *values, uint32_t count);

// Tests one component. On a match writes the replacement, scaled by how well the component matched; otherwise
// writes nothing and gives false.
bool GetReplacementComponent(float value, const DRAVCFColorMatchComponent &test, float replacement,
                             DRAVCFColorMatchEntryOptions entryOptions, float *destination);

// Tests a colour of four components. Gives whether the entry matches; its replacement is then in workColor,
// where components that the entry does not set keep what they were.
//
// findCount, componentCount  of the entry's tests and of the list's colours. Components of the replacement
// that the
//                            list does not have count as 0.
bool ReplaceColorForEntry(const float *testedColor, const DRAVCFColorMatchEntry &entry,
                          DRAVCFColorMatchListOptions listOptions, uint32_t findCount,
                          uint32_t componentCount, float *workColor);

}  // namespace drav::colormatch
