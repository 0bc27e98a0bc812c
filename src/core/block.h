// A block of memory that is ours until it moves into a record.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <cstddef>
#include <cstdint>
#include <utility>

#include "foundation/sizes.h"

namespace drav {

// Takes a size that could not be computed, or that no allocator can be asked for, as memory that ran out.
inline uint8_t *allocateBytes(CFAllocatorRef allocator, cf::Size size) noexcept {
  if (!size || *size > cf::kMaxBlockBytes) return nullptr;
  return static_cast<uint8_t *>(CFAllocatorAllocate(allocator, static_cast<CFIndex>(*size), 0));
}

class Block {
 public:
  Block() = default;
  Block(CFAllocatorRef allocator, cf::Size size) noexcept
      : allocator_(allocator), bytes_(allocateBytes(allocator, size)) {}
  Block(Block &&other) noexcept : allocator_(other.allocator_), bytes_(other.give()) {}
  Block &operator=(Block &&other) noexcept {
    std::swap(allocator_, other.allocator_);
    std::swap(bytes_, other.bytes_);
    return *this;
  }
  ~Block() {
    if (bytes_) CFAllocatorDeallocate(allocator_, bytes_);
  }

  [[nodiscard]] uint8_t *get() const noexcept { return bytes_; }
  [[nodiscard]] uint8_t *give() noexcept { return std::exchange(bytes_, nullptr); }
  explicit operator bool() const noexcept { return bytes_ != nullptr; }

 private:
  CFAllocatorRef allocator_ = nullptr;
  uint8_t *bytes_ = nullptr;
};

}  // namespace drav
