// Memory between pages that nobody may touch: a step outside it ends the test, with and without a sanitizer.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>

namespace testing_support {

class GuardedMemory {
 public:
  enum class Edge { first, last };  // which byte of the memory lies beside a guard page

  GuardedMemory(size_t size, Edge edge) : size_(size) {
    const auto page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
    const size_t whole = (size + page - 1) / page * page;
    mapped_ = whole + 2 * page;
    void *pages = mmap(nullptr, mapped_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED) {
      ADD_FAILURE() << "no pages to guard";
      return;
    }
    base_ = static_cast<uint8_t *>(pages);
    mprotect(base_, page, PROT_NONE);
    mprotect(base_ + page + whole, page, PROT_NONE);
    data_ = base_ + page + (edge == Edge::last ? whole - size : 0);
  }
  ~GuardedMemory() {
    if (base_) munmap(base_, mapped_);
  }
  GuardedMemory(const GuardedMemory &) = delete;
  GuardedMemory &operator=(const GuardedMemory &) = delete;

  [[nodiscard]] uint8_t *data() const { return data_; }
  [[nodiscard]] size_t size() const { return size_; }

 private:
  size_t size_, mapped_ = 0;
  uint8_t *base_ = nullptr, *data_ = nullptr;
};

// An allocator whose blocks lie beside a guard page. Those that end there are aligned to 16 bytes unless
// another alignment is asked for, so only those of a multiple of it end exactly there.
class GuardedAllocator {
 public:
  using Edge = GuardedMemory::Edge;

  explicit GuardedAllocator(Edge edge = Edge::last, size_t alignment = 16)
      : edge_(edge), alignment_(alignment) {
    CFAllocatorContext context{};
    context.info = this;
    context.allocate = [](CFIndex size, CFOptionFlags, void *info) { return self(info).allocate(size); };
    context.deallocate = [](void *block, void *info) { self(info).blocks_.erase(block); };
    allocator_ = CFAllocatorCreate(kCFAllocatorSystemDefault, &context);
  }
  ~GuardedAllocator() {
    CFRelease(allocator_);
    EXPECT_TRUE(blocks_.empty()) << "blocks were not returned to the allocator";
  }
  GuardedAllocator(const GuardedAllocator &) = delete;
  GuardedAllocator &operator=(const GuardedAllocator &) = delete;

  [[nodiscard]] CFAllocatorRef get() const { return allocator_; }

 private:
  // Every request comes with this much more than was asked for, which pixels have no business in.
  static constexpr size_t kTailBytes = 32;

  static GuardedAllocator &self(void *info) { return *static_cast<GuardedAllocator *>(info); }

  void *allocate(CFIndex size) {
    const size_t asked = (static_cast<size_t>(size) - kTailBytes + alignment_ - 1) / alignment_ * alignment_;
    auto memory = std::make_unique<GuardedMemory>(asked == 0 ? alignment_ : asked, edge_);
    void *block = memory->data();
    blocks_.emplace(block, std::move(memory));
    return block;
  }

  Edge edge_;
  size_t alignment_;
  CFAllocatorRef allocator_ = nullptr;
  std::map<void *, std::unique_ptr<GuardedMemory>> blocks_;
};

}  // namespace testing_support
