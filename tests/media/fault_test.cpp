#include "media/codecs/fault.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>

namespace {

using codecs::Fault;

TEST(Fault, EachReasonHasAPhraseOfItsOwn) {
  std::set<std::string> phrases;
  for (const Fault fault : {Fault::unknownFormat, Fault::truncated, Fault::damaged, Fault::unsupported,
                            Fault::tooLarge, Fault::noMemory}) {
    ASSERT_NE(codecs::describe(fault), nullptr);
    EXPECT_TRUE(phrases.insert(codecs::describe(fault)).second);
  }
  EXPECT_EQ(codecs::describe(Fault::none), nullptr);
}

TEST(Fault, AResultHoldsAValueOrAReason) {
  const codecs::Result<std::unique_ptr<int>> made(std::make_unique<int>(3));
  EXPECT_TRUE(made);
  EXPECT_EQ(*made.value, 3);
  const codecs::Result<std::unique_ptr<int>> failed(Fault::damaged);
  EXPECT_FALSE(failed);
  EXPECT_EQ(failed.value, nullptr);
}

}  // namespace
