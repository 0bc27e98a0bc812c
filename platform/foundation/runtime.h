// What the parts of the object runtime know of each other.
#pragma once

#include <CoreFoundation/CFRuntime.h>

#include <cstdint>

namespace cf {

// Counts of objects that are never freed have the top bit set and never change. While an object is finalized
// its count starts from kDying, so that balanced retains and releases in there do not finalize it again.
inline constexpr std::uint64_t kImmortal = std::uint64_t{1} << 63;
inline constexpr std::uint64_t kDying = std::uint64_t{1} << 62;

// Allocators are needed before any class can be registered, as constants; so their class has a fixed place.
inline constexpr CFTypeID kAllocatorTypeID = 1;
extern const CFRuntimeClass kAllocatorClass;

// For a new object that nobody else has seen yet.
void makeImmortal(CFTypeRef object) noexcept;

// The allocator that NULL stands for, or the given one.
inline CFAllocatorRef allocatorOrDefault(CFAllocatorRef allocator) noexcept {
  return allocator ? allocator : CFAllocatorGetDefault();
}

}  // namespace cf
