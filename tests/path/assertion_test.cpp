#include "path/assertion.h"

#include <gtest/gtest.h>

#include <csignal>

#include "path/tracing.h"

namespace drav::path {
namespace {

TEST(PathAssertionDeathTest, NamesFileLineAndTextAndAborts) {
  EXPECT_EXIT(DRAV_PATH_ASSERT(1 > 2, "one > two"), testing::KilledBySignal(SIGABRT),
              "^assertion_test.cpp:[0-9]+: failed assertion `one > two'\n$");
}

TEST(PathAssertionDeathTest, WritesOutTheCommentaryFirst) {
  EXPECT_DEATH(
      {
        TextOutput output(stderr);
        output << "commentary\n";
        DRAV_PATH_ASSERT(false, "false");
      },
      "^commentary\n.*failed assertion `false'\n$");
}

TEST(PathAssertion, DoesNothingWhereItHolds) { DRAV_PATH_ASSERT(2 > 1, "two > one"); }

}  // namespace
}  // namespace drav::path
