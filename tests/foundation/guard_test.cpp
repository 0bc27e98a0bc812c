#include "foundation/guard.h"

#include <gtest/gtest.h>

#include <new>

namespace {

TEST(Guard, GivesWhatTheWorkGives) {
  EXPECT_EQ(cf::guarded([] { return 42; }), 42);
  int ran = 0;
  cf::guarded([&] { ++ran; });
  EXPECT_EQ(ran, 1);
}

TEST(Guard, AnExceptionBecomesTheTypesZero) {
  EXPECT_EQ(cf::guarded([]() -> const char * { throw std::bad_alloc(); }), nullptr);
  EXPECT_FALSE(cf::guarded([]() -> bool { throw std::bad_alloc(); }));
  cf::guarded([] { throw std::bad_alloc(); });
}

TEST(Guard, OrTheFailureThatWasNamed) {
  EXPECT_EQ(cf::guardedOr(-1, []() -> int { throw std::bad_alloc(); }), -1);
  EXPECT_EQ(cf::guardedOr(-1, [] { return 3; }), 3);
}

}  // namespace
