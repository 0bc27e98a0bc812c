// Classes of the object runtime, in few words. A type brings a name and what it has of ==, hash() and
// describe(); the record that the runtime works from writes itself, and is registered when the first instance
// is made or its type identifier asked for:
//
//   struct CGPath : cf::ObjectOf<CGPath> {              // CGPathRef is a CGPath *
//     static constexpr const char *kName = "CGPath";
//     bool operator==(const CGPath &other) const noexcept;   // absent: compared by address
//     CFHashCode hash() const noexcept;                      // absent: the address
//     std::string describe() const;                          // absent: "<CGPath 0x...>"; UTF-8
//     std::vector<Element> elements;                         // fields; the destructor frees them
//   };
//
//   cf::Ref<CGPath> path = cf::make<CGPath>(allocator);   // empty when memory runs out
//   path->elements.push_back(...);
//   return path.give();
#pragma once

#include <CoreFoundation/CFRuntime.h>
#include <CoreFoundation/CFString.h>

#include <concepts>
#include <cstddef>
#include <new>
#include <string>
#include <type_traits>

#include "foundation/guard.h"
#include "foundation/ref.h"

namespace cf {

// What a type of the runtime derives from, first and alone.
template <class T>
struct ObjectOf {
  // Registers the class at the first call; 0 only if there are too many classes. Any thread may call.
  static CFTypeID typeID() noexcept;

  [[nodiscard]] CFAllocatorRef allocator() const noexcept { return CFGetAllocator(this); }

  ObjectOf(const ObjectOf &) = delete;
  ObjectOf &operator=(const ObjectOf &) = delete;

 protected:
  // Leaves the runtime's fields alone: constructIn carries them over, a constant object sets them itself.
  ObjectOf() noexcept = default;
  constexpr explicit ObjectOf(const CFRuntimeBase &base) noexcept : runtime_(base) {}
  ~ObjectOf() = default;

 private:
  template <class U>
  friend void constructIn(CFTypeRef object) noexcept;

  CFRuntimeBase runtime_;
};

template <class T>
concept ComparesContent = requires(const T &a, const T &b) {
  { a == b } -> std::convertible_to<bool>;
};
template <class T>
concept HashesContent = requires(const T &object) {
  { object.hash() } -> std::convertible_to<CFHashCode>;
};
template <class T>
concept DescribesItself = requires(const T &object) {
  { object.describe() } -> std::convertible_to<std::string>;
};

template <class T>
const T &objectIn(CFTypeRef object) noexcept {
  return *static_cast<const T *>(object);
}

// The handle type says const where the interface does; the memory was never const.
template <class T>
T *mutableIn(CFTypeRef object) noexcept {
  return static_cast<T *>(const_cast<void *>(object));
}

template <class T>
void constructIn(CFTypeRef object) noexcept {
  static_assert(std::is_nothrow_default_constructible_v<T>,
                "an instance is made first and filled afterwards");
  static_assert(std::is_base_of_v<ObjectOf<T>, T> && alignof(T) <= alignof(std::max_align_t));
  // A constructor makes all earlier bytes of its object meaningless, so what the runtime wrote is carried
  // across.
  const CFRuntimeBase kept = *static_cast<const CFRuntimeBase *>(object);
  ObjectOf<T> *made = ::new (mutableIn<T>(object)) T();
  made->runtime_ = kept;
}

template <class T>
void destroyIn(CFTypeRef object) noexcept {
  mutableIn<T>(object)->~T();
}

template <class T>
Boolean equalOf(CFTypeRef a, CFTypeRef b) noexcept {
  return objectIn<T>(a) == objectIn<T>(b);
}

template <class T>
CFHashCode hashOf(CFTypeRef object) noexcept {
  return objectIn<T>(object).hash();
}

template <class T>
CFStringRef describeOf(CFTypeRef object) noexcept {
  return guarded([&]() -> CFStringRef {
    const std::string text = objectIn<T>(object).describe();
    return CFStringCreateWithBytes(CFGetAllocator(object), reinterpret_cast<const UInt8 *>(text.data()),
                                   static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8, false);
  });
}

template <class T>
constexpr CFRuntimeClass recordOf() noexcept {
  CFRuntimeClass record{0,       T::kName, constructIn<T>, nullptr, destroyIn<T>,
                        nullptr, nullptr,  nullptr,        nullptr};
  if constexpr (ComparesContent<T>) record.equal = equalOf<T>;
  if constexpr (HashesContent<T>) record.hash = hashOf<T>;
  if constexpr (DescribesItself<T>) record.copyDebugDesc = describeOf<T>;
  return record;
}
template <class T>
inline constexpr CFRuntimeClass classRecord = recordOf<T>();

template <class T>
CFTypeID ObjectOf<T>::typeID() noexcept {
  static const CFTypeID registered = _CFRuntimeRegisterClass(&classRecord<T>);
  return registered;
}

// A zeroed instance of a class with a plain record, whose first field is a CFRuntimeBase; owned by the
// caller, NULL when memory runs out.
template <class Record>
[[nodiscard]] Record *newInstance(CFAllocatorRef allocator, CFTypeID typeID) noexcept {
  static_assert(sizeof(Record) >= sizeof(CFRuntimeBase));
  static_assert(alignof(Record) <= alignof(std::max_align_t), "allocators align as malloc does");
  constexpr auto extraBytes = static_cast<CFIndex>(sizeof(Record) - sizeof(CFRuntimeBase));
  return mutableIn<Record>(_CFRuntimeCreateInstance(allocator, typeID, extraBytes, nullptr));
}

// A new T in its first state; empty when memory runs out.
template <class T>
[[nodiscard]] Ref<T> make(CFAllocatorRef allocator) noexcept {
  return Ref<T>::adopt(newInstance<T>(allocator, T::typeID()));
}

}  // namespace cf
