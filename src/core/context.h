// The drawing context record.
#pragma once

#include <CoreFoundation/CFRuntime.h>
#include <DravKit/DravKit.h>

struct __DRAVCFContext {
  CFRuntimeBase base;
  CGContextRef cgContext;  // owned
  uint8_t *buffer;         // what cgContext draws into, or for a copy memory of its own
  uint32_t ownsBuffer;     // 1: bufferAllocator gave buffer and gets it back
  // Owned while ownsBuffer is set. A context made without a buffer takes it from the default allocator, a
  // copy from the allocator it was asked for; giving it back to another one would be wrong for either.
  CFAllocatorRef bufferAllocator;
};

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
