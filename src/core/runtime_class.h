// What repeats around the library's classes.
#pragma once

#include <CoreFoundation/CFRuntime.h>
#include <CoreFoundation/CoreFoundation.h>

#include "foundation/object.h"

namespace drav {

// Makes an instance of a class that registers itself when its first instance is made. The flag is not
// guarded: first instances must not race.
template <class Record>
[[nodiscard]] Record *createInstance(CFAllocatorRef allocator, Boolean &inited, void (*initializeClass)(),
                                     const CFTypeID &typeID) noexcept {
  if (!inited) {
    initializeClass();
    inited = 1;
  }
  return cf::newInstance<Record>(allocator, typeID);
}

// Clears a record behind its runtime header.
template <class Record>
Record *cleared(CFTypeRef object) noexcept {
  auto *record = cf::mutableIn<Record>(object);
  const CFRuntimeBase base = record->base;
  *record = Record{};
  record->base = base;
  return record;
}

}  // namespace drav
