// Files named by a path.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include "foundation/ref.h"

namespace drav {

// The URL of a file; empty for a NULL path, and for one that makes no URL.
inline cf::Ref<CFURLRef> urlForPath(CFStringRef path, CFAllocatorRef allocator = kCFAllocatorDefault) {
  if (!path) return nullptr;
  return cf::adopt(CFURLCreateWithFileSystemPath(allocator, path, kCFURLPOSIXPathStyle, false));
}

}  // namespace drav
