#include "failing_new.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

thread_local long allocationsLeft = 0;  // 0: none fails
thread_local bool hasFailed = false;

bool mustFail() noexcept {
  if (allocationsLeft == 0 || --allocationsLeft != 0) return false;
  hasFailed = true;
  return true;
}

}  // namespace

void *operator new(std::size_t size) {
  void *block = mustFail() ? nullptr : std::malloc(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}
void *operator new[](std::size_t size) { return operator new(size); }
void *operator new(std::size_t size, const std::nothrow_t &) noexcept {
  return mustFail() ? nullptr : std::malloc(size == 0 ? 1 : size);
}
void *operator new[](std::size_t size, const std::nothrow_t &nothrow) noexcept {
  return operator new(size, nothrow);
}
void operator delete(void *block) noexcept { std::free(block); }
void operator delete(void *block, std::size_t) noexcept { std::free(block); }
void operator delete[](void *block) noexcept { std::free(block); }
void operator delete[](void *block, std::size_t) noexcept { std::free(block); }

namespace testing_support {

FailingNew::FailingNew(long failAt) noexcept {
  allocationsLeft = failAt;
  hasFailed = false;
}
FailingNew::~FailingNew() { allocationsLeft = 0; }
bool FailingNew::failed() const noexcept { return hasFailed; }

}  // namespace testing_support
