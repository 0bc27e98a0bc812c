#include "path/path_conversion.h"

#include <gtest/gtest.h>

#include "foundation/ref.h"
#include "path/platform_path.h"
#include "path/tracing.h"

namespace drav::path {
namespace {

cf::Ref<CGMutablePathRef> converted(const SubpathList &list) {
  CGMutablePathRef path = nullptr;
  const std::string text =
      textOf([&](TextOutput &output) { EXPECT_TRUE(ConvertSubpathsToPath(list, path, output)); });
  EXPECT_EQ("", text);
  return cf::adopt(path);
}

TEST(ConvertSubpathsToPath, AnEmptyListGivesAnEmptyPath) {
  const auto path = converted({});
  ASSERT_TRUE(path);
  EXPECT_TRUE(CGPathIsEmpty(path.get()));
}

TEST(ConvertSubpathsToPath, KeepsEverySubpathAndElementInOrder) {
  const Lines lines = {"M0,2 L2,2 L2,0 L0,0 Z", "M3,1 L3,1 Z", "M5,5 Z", "M70000,1 L1,65535 Z"};
  EXPECT_EQ(lines, written(converted(listOf(lines)).get()));
}

void convertOver(CGMutablePathRef path) {
  TextOutput output(stderr);
  ConvertSubpathsToPath({}, path, output);
}

TEST(ConvertSubpathsToPathDeathTest, AssertsThatThereIsNoPathYet) {
  const cf::Ref path = cf::adopt(CGPathCreateMutable());
  EXPECT_DEATH(convertOver(path.get()), assertionLine("path_conversion.cpp", "path == NULL"));
}

void convertElement(PathElement element) {
  TextOutput output(stderr);
  CGMutablePathRef path = nullptr;
  ConvertSubpathsToPath({{MoveTo({0, 0}), element}}, path, output);
}

TEST(ConvertSubpathsToPathDeathTest, NamesATypeItDoesNotSupportInHexadecimal) {
  EXPECT_DEATH(convertElement({0x2A, {1, 2}}),
               "^unsupported type 2a\n" + assertionLine("path_conversion.cpp", "false"));
  EXPECT_DEATH(convertElement({-1, {1, 2}}), "^unsupported type ffffffff\n");
}

}  // namespace
}  // namespace drav::path
