// An allocator for tests: it counts its live blocks, fails the allocation it is told to fail, and notices who
// writes behind a block.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>

namespace testing_support {

class FailingAllocator {
 public:
  // failAt: which allocation or reallocation fails, counted from 1; 0: none does.
  explicit FailingAllocator(long failAt = 0) : failAt_(failAt) {
    CFAllocatorContext context{};
    context.info = this;
    context.allocate = [](CFIndex size, CFOptionFlags, void *info) { return self(info).allocate(size); };
    context.reallocate = [](void *block, CFIndex size, CFOptionFlags, void *info) {
      return self(info).reallocate(block, size);
    };
    context.deallocate = [](void *block, void *info) { self(info).deallocate(block); };
    allocator_ = CFAllocatorCreate(kCFAllocatorSystemDefault, &context);
  }
  // Objects that outlive their test's allocator would call into freed memory: that is reported as the leak it
  // is.
  ~FailingAllocator() {
    EXPECT_EQ(liveBlocks_, 0) << "blocks were not returned to the allocator";
    EXPECT_EQ(CFGetRetainCount(allocator_), 1) << "something still holds the allocator";
    CFRelease(allocator_);
  }
  FailingAllocator(const FailingAllocator &) = delete;
  FailingAllocator &operator=(const FailingAllocator &) = delete;

  [[nodiscard]] CFAllocatorRef get() const { return allocator_; }
  [[nodiscard]] long liveBlocks() const { return liveBlocks_; }
  [[nodiscard]] long requests() const { return requests_; }     // allocations and reallocations so far
  [[nodiscard]] bool failed() const { return failures_ > 0; }   // whether one was refused
  [[nodiscard]] CFIndex lastSize() const { return lastSize_; }  // what the last callback was asked for
  [[nodiscard]] long deallocations() const { return deallocations_; }
  // The next so-and-so-manieth request fails; 0: none does.
  void failAfter(long more) { failAt_ = more == 0 ? 0 : requests_ + more; }

 private:
  struct Header {
    CFIndex size;
    unsigned long mark;
  };
  static constexpr unsigned long kMark = 0x5AFEB10C5AFEB10CUL;
  static constexpr size_t kGuardBytes = 32;
  static constexpr unsigned char kGuardByte = 0xA5;
  static constexpr unsigned char kFreshByte = 0xCD;  // so that nobody relies on zeroed memory
  static_assert(sizeof(Header) % alignof(max_align_t) == 0);

  static FailingAllocator &self(void *info) { return *static_cast<FailingAllocator *>(info); }
  static Header *headerOf(void *block) { return static_cast<Header *>(block) - 1; }
  static unsigned char *endOf(Header *header) {
    return reinterpret_cast<unsigned char *>(header + 1) + header->size;
  }

  bool refuses(CFIndex size) {
    ++requests_;
    lastSize_ = size;
    if (requests_ != failAt_) return false;
    ++failures_;
    return true;
  }

  void *allocate(CFIndex size) { return refuses(size) ? nullptr : newBlock(size); }

  void *newBlock(CFIndex size) {
    auto *header =
        static_cast<Header *>(std::malloc(sizeof(Header) + static_cast<size_t>(size) + kGuardBytes));
    if (!header) return nullptr;
    *header = {size, kMark};
    std::memset(header + 1, kFreshByte, static_cast<size_t>(size));
    std::memset(endOf(header), kGuardByte, kGuardBytes);
    ++liveBlocks_;
    return header + 1;
  }

  // Always moves the block, so that a stale pointer shows.
  void *reallocate(void *block, CFIndex size) {
    if (refuses(size)) return nullptr;
    void *moved = newBlock(size);
    if (!moved) return nullptr;
    const CFIndex kept = headerOf(block)->size < size ? headerOf(block)->size : size;
    std::memcpy(moved, block, static_cast<size_t>(kept));
    free(block);
    return moved;
  }

  void deallocate(void *block) {
    ++deallocations_;
    free(block);
  }

  void free(void *block) {
    Header *header = headerOf(block);
    if (header->mark != kMark) {
      ADD_FAILURE() << "a block was returned that this allocator did not give, or returned twice";
      return;
    }
    for (size_t i = 0; i < kGuardBytes; ++i) {
      if (endOf(header)[i] != kGuardByte) {
        ADD_FAILURE() << "byte " << i << " behind a block of " << header->size << " bytes was overwritten";
        break;
      }
    }
    header->mark = 0;
    --liveBlocks_;
    std::free(header);
  }

  CFAllocatorRef allocator_ = nullptr;
  long failAt_ = 0, requests_ = 0, failures_ = 0, liveBlocks_ = 0, deallocations_ = 0;
  CFIndex lastSize_ = 0;
};

// Runs body(allocator, n) with the n-th allocation failing, for n = 1, 2, ... until a run asks for fewer than
// n. After each run every block must be back. body(CFAllocatorRef, long).
template <class Body>
void forEachFailedAllocation(Body &&body, long mostRuns = 100000) {
  for (long n = 1; n <= mostRuns; ++n) {
    FailingAllocator allocator(n);
    body(allocator.get(), n);
    EXPECT_EQ(allocator.liveBlocks(), 0) << "with allocation " << n << " failing";
    if (!allocator.failed()) return;
    if (::testing::Test::HasFailure()) {
      ADD_FAILURE() << "stopped at the run whose allocation " << n << " fails";
      return;
    }
  }
  ADD_FAILURE() << "there was always one more allocation to fail";
}

}  // namespace testing_support
