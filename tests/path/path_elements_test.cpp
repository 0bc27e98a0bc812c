#include "path/path_elements.h"

#include <gtest/gtest.h>

#include "path/tracing.h"

namespace drav::path {
namespace {

template <class Value>
std::string dumped(const Value &value) {
  return textOf([&](TextOutput &output) { output << value; });
}

TEST(PathElements, ANewSubpathHoldsOneMoveTo) {
  SubpathList list;
  CreateNewSubpath(&list, 3, 4);
  EXPECT_EQ(Lines({"M3,4"}), written(list));
}

TEST(PathElements, LinesAndTheCloseGoToTheLastSubpath) {
  SubpathList list;
  CreateNewSubpath(&list, 1, 1);
  CreateNewSubpath(&list, 5, 5);
  AddLineToCurrentSubpath(&list, 7, 5);
  CloseCurrentSubpath(&list);
  EXPECT_EQ(Lines({"M1,1", "M5,5 L7,5 Z"}), written(list));
}

TEST(PathElements, TypesHaveTheNumbersOfThePlatform) {
  EXPECT_EQ(0, MoveTo({1, 2}).type);
  EXPECT_EQ(1, LineTo({1, 2}).type);
  EXPECT_EQ(4, Close().type);
}

TEST(PathElements, ACloseHasThePointZero) {
  EXPECT_EQ(0.0F, Close().point.x);
  EXPECT_EQ(0.0F, Close().point.y);
}

TEST(PathElements, ASubpathDumpsOneLineForEachElement) {
  EXPECT_EQ(
      "\tMoveToPoint:  (3, 4)\n"
      "\tAddLineToPoint:  (65535, 0)\n"
      "\tCloseSubpath\n",
      dumped(subpathOf("M3,4 L65535,0 Z")));
}

TEST(PathElements, AnElementOfAnotherTypeDumpsAsUnrecognized) {
  EXPECT_EQ("UNRECOGNIZED TYPE\n", dumped(Subpath{{2, CGPoint{1, 2}}}));
}

TEST(PathElements, AListDumpCountsSubpathsFromZero) {
  EXPECT_EQ(
      "Path 0\n"
      "\tMoveToPoint:  (1, 2)\n"
      "Path 1\n"
      "\tMoveToPoint:  (3, 4)\n"
      "\tCloseSubpath\n",
      dumped(listOf({"M1,2", "M3,4 Z"})));
}

TEST(PathElements, AnEmptyListDumpsNothing) { EXPECT_EQ("", dumped(SubpathList())); }

TEST(PathElements, CoordinatesFromAMillionOnDumpWithAnExponent) {
  EXPECT_EQ("\tMoveToPoint:  (1e+06, 1.23457e+06)\n", dumped(subpathOf("M1000000,1234567")));
}

}  // namespace
}  // namespace drav::path
