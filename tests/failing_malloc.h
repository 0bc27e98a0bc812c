// Makes malloc, calloc and realloc of this thread fail on request, as this project's own code calls them:
// operator new comes down to them, the default allocator and the media handles use them directly. Shared
// libraries go on having memory.
#pragma once

namespace testing_support {

class FailingMalloc {
 public:
  // The request to fail, counted from 1 for the first one from now on.
  explicit FailingMalloc(long failAt) noexcept;
  ~FailingMalloc();
  FailingMalloc(const FailingMalloc &) = delete;
  FailingMalloc &operator=(const FailingMalloc &) = delete;

  bool failed() const noexcept;
};

}  // namespace testing_support
