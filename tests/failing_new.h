// Makes operator new of this thread fail on request.
#pragma once

namespace testing_support {

class FailingNew {
 public:
  // The allocation to fail, counted from 1 for the first one from now on.
  explicit FailingNew(long failAt) noexcept;
  ~FailingNew();
  FailingNew(const FailingNew &) = delete;
  FailingNew &operator=(const FailingNew &) = delete;

  bool failed() const noexcept;
};

}  // namespace testing_support
