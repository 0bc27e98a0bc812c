// A growing array in a CFAllocator's memory, for what objects store. It reports failure by its results, and
// leaves its contents alone then.
#pragma once

#include <CoreFoundation/CFBase.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <type_traits>
#include <utility>

#include "foundation/sizes.h"

namespace cf {

template <class T>
class Buffer {
  static_assert(std::is_trivially_copyable_v<T>);

 public:
  Buffer() noexcept = default;
  // The allocator is borrowed: it must outlive the buffer, as an object's own allocator does.
  explicit Buffer(CFAllocatorRef allocator) noexcept : allocator_(allocator) {}
  Buffer(Buffer &&other) noexcept { *this = std::move(other); }
  Buffer &operator=(Buffer &&other) noexcept {
    std::swap(allocator_, other.allocator_);
    std::swap(items_, other.items_);
    std::swap(size_, other.size_);
    std::swap(capacity_, other.capacity_);
    return *this;
  }
  ~Buffer() {
    if (items_) CFAllocatorDeallocate(allocator_, items_);
  }

  [[nodiscard]] T *data() noexcept { return items_; }
  [[nodiscard]] const T *data() const noexcept { return items_; }
  [[nodiscard]] std::size_t size() const noexcept { return size_; }

  // Room for exactly count items altogether, unless there is as much already.
  [[nodiscard]] bool reserve(std::size_t count) noexcept { return count <= capacity_ || moveTo(count); }

  // Adds count items with undefined contents and gives the first of them; NULL when memory runs out. Room
  // grows by half at least, so that many small additions cost as much as one large one.
  [[nodiscard]] T *grow(std::size_t count) noexcept {
    const Size needed = sum(size_, count);
    if (!needed) return nullptr;
    if (*needed > capacity_ || !items_) {
      const std::size_t generous = std::max({*needed, capacity_ + capacity_ / 2, kFewest});
      if (!moveTo(generous) && !moveTo(*needed)) return nullptr;
    }
    return items_ + std::exchange(size_, *needed);
  }

  // items may lie in the buffer itself.
  [[nodiscard]] bool append(const T *items, std::size_t count) noexcept {
    if (count == 0) return true;
    const bool inside =
        !std::less<const T *>()(items, items_) && std::less<const T *>()(items, items_ + size_);
    const std::size_t offset = inside ? static_cast<std::size_t>(items - items_) : 0;
    T *added = grow(count);
    if (!added) return false;
    std::memmove(added, inside ? items_ + offset : items, count * sizeof(T));
    return true;
  }
  [[nodiscard]] bool append(T item) noexcept { return append(&item, 1); }

  void truncate(std::size_t count) noexcept { size_ = std::min(size_, count); }

 private:
  static constexpr std::size_t kFewest = 64 / sizeof(T);

  bool moveTo(std::size_t capacity) noexcept {
    const Size bytes = blockBytes(capacity, sizeof(T));
    if (!bytes || *bytes == 0) return bytes.has_value();
    void *moved = CFAllocatorReallocate(allocator_, items_, static_cast<CFIndex>(*bytes), 0);
    if (!moved) return false;
    items_ = static_cast<T *>(moved);
    capacity_ = capacity;
    return true;
  }

  CFAllocatorRef allocator_ = nullptr;
  T *items_ = nullptr;
  std::size_t size_ = 0, capacity_ = 0;
};

}  // namespace cf
