// Runs a test's body once with each instruction set that the loops are compiled for and this machine has.
#pragma once

#include <gtest/gtest.h>
#include <hwy/highway.h>

#include <cstdint>

namespace testing_support {

// Limits the loops to some instruction sets for as long as it lives.
class OnlyInstructionSets {
 public:
  explicit OnlyInstructionSets(int64_t targets) { choose(targets); }
  ~OnlyInstructionSets() { choose(0); }  // 0: whatever the machine has
  OnlyInstructionSets(const OnlyInstructionSets &) = delete;
  OnlyInstructionSets &operator=(const OnlyInstructionSets &) = delete;

 private:
  static void choose(int64_t targets) {
    hwy::SetSupportedTargetsForTest(targets);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
  }
};

template <class Body>
void forEachInstructionSet(Body &&body) {
  for (int64_t left = hwy::SupportedTargets() & HWY_TARGETS; left != 0; left &= left - 1) {
    const int64_t target = left & -left;
    SCOPED_TRACE(hwy::TargetName(target));
    const OnlyInstructionSets only(target);
    body();
  }
}

}  // namespace testing_support
