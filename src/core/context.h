// The drawing context record.
#pragma once

#include <CoreFoundation/CFRuntime.h>
#include <DravKit/DravKit.h>

#include "foundation/ref.h"
#include "foundation/sizes.h"

struct __DRAVCFContext {
  CFRuntimeBase base;
  CGContextRef cgContext;  // owned
  uint8_t *buffer;         // what cgContext draws into, or for a copy memory of its own
  uint32_t ownsBuffer;     // 1: buffer is in ownMemory
  // Owned. Gives buffer back to the allocator that it came from: the default one for a context made without
  // a buffer, for a copy the one it was asked for.
  CFDataRef ownMemory;
  // Owned. What cgContext draws into, where a context owns that: a copy draws there still when its source
  // is gone.
  CFDataRef drawnMemory;
};

namespace drav {

// Memory that an allocator gave, counted, so that contexts can share it; empty if memory runs out.
cf::Ref<CFDataRef> allocateMemory(CFAllocatorRef allocator, cf::Size size) noexcept;

inline uint8_t *bytesOf(CFDataRef memory) noexcept { return const_cast<uint8_t *>(CFDataGetBytePtr(memory)); }

}  // namespace drav

// Class callbacks and private creation; the class keeps their names.
DRAVCFContextRef DRAVCFContextCreatePrivate(CFAllocatorRef allocator);
void DRAVCFContextClassInitialize();
void DRAVCFContextInit(CFTypeRef context);
CFTypeRef DRAVCFContextCopy(CFAllocatorRef allocator, CFTypeRef source);
void DRAVCFContextFinalize(CFTypeRef context);
Boolean DRAVCFContextEqual(CFTypeRef a, CFTypeRef b);
CFHashCode DRAVCFContextHash(CFTypeRef context);
CFStringRef DRAVCFContextCopyFormattingDesc(CFTypeRef context, CFDictionaryRef formatOptions);
CFStringRef DRAVCFContextCopyDebugDesc(CFTypeRef context);
