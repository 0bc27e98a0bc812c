#include "failing_new.h"

#include <cstdlib>
#include <new>

namespace {

thread_local long granted = -1;
thread_local bool failed = false;

void *take(size_t size) {
  if (granted == 0) {
    failed = true;
    throw std::bad_alloc();
  }
  if (granted > 0) --granted;
  if (void *block = std::malloc(size ? size : 1)) return block;
  throw std::bad_alloc();
}

}  // namespace

void grantRequests(long count) noexcept {
  granted = count;
  failed = false;
}

bool hasRequestFailed() noexcept { return failed; }

void *operator new(size_t size) { return take(size); }
void *operator new[](size_t size) { return take(size); }
void operator delete(void *block) noexcept { std::free(block); }
void operator delete[](void *block) noexcept { std::free(block); }
void operator delete(void *block, size_t) noexcept { std::free(block); }
void operator delete[](void *block, size_t) noexcept { std::free(block); }
