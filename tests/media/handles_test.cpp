#include "media/handles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <thread>

namespace {

TEST(Handles, ANewHandleIsZeroed) {
  Handle handle = NewHandle(100);
  ASSERT_NE(handle, nullptr);
  EXPECT_EQ(MemError(), noErr);
  EXPECT_EQ(GetHandleSize(handle), 100);
  EXPECT_TRUE(std::all_of(*handle, *handle + 100, [](char byte) { return byte == 0; }));
  DisposeHandle(handle);
}

TEST(Handles, AnEmptyHandleHasAMasterPointer) {
  Handle handle = NewHandle(0);
  ASSERT_NE(handle, nullptr);
  EXPECT_NE(*handle, nullptr);
  EXPECT_EQ(GetHandleSize(handle), 0);
  DisposeHandle(handle);
}

TEST(Handles, ResizingKeepsTheSharedBytesAndZeroesNewOnes) {
  Handle handle = nullptr;
  ASSERT_EQ(PtrToHand("abcd", &handle, 4), noErr);
  SetHandleSize(handle, 2);
  SetHandleSize(handle, 5000);
  EXPECT_EQ(MemError(), noErr);
  EXPECT_EQ(GetHandleSize(handle), 5000);
  EXPECT_EQ(std::memcmp(*handle, "ab\0\0\0", 5), 0);
  EXPECT_EQ((*handle)[4999], 0);
  DisposeHandle(handle);
}

TEST(Handles, AFailedResizeLeavesTheHandleAsItWas) {
  Handle handle = nullptr;
  ASSERT_EQ(PtrToHand("abcd", &handle, 4), noErr);
  SetHandleSize(handle, std::numeric_limits<Size>::max());
  EXPECT_EQ(MemError(), memFullErr);
  SetHandleSize(handle, -1);
  EXPECT_EQ(MemError(), paramErr);
  EXPECT_EQ(GetHandleSize(handle), 4);
  EXPECT_EQ(std::memcmp(*handle, "abcd", 4), 0);
  DisposeHandle(handle);
}

TEST(Handles, SizesThatNobodyHasFail) {
  EXPECT_EQ(NewHandle(-1), nullptr);
  EXPECT_EQ(MemError(), paramErr);
  EXPECT_EQ(NewHandle(std::numeric_limits<Size>::max()), nullptr);
  EXPECT_EQ(MemError(), memFullErr);
  Handle handle = NewHandle(1);
  EXPECT_EQ(MemError(), noErr);
  DisposeHandle(handle);
}

TEST(Handles, PtrToHandCopies) {
  char source[] = "xyz";
  Handle handle = nullptr;
  ASSERT_EQ(PtrToHand(source, &handle, 3), noErr);
  source[0] = 'q';
  EXPECT_EQ((*handle)[0], 'x');
  DisposeHandle(handle);
  EXPECT_EQ(PtrToHand(nullptr, &handle, 3), paramErr);
  EXPECT_EQ(handle, nullptr);
  EXPECT_EQ(PtrToHand(source, nullptr, 3), paramErr);
  EXPECT_EQ(PtrToHand(source, &handle, -3), paramErr);
  ASSERT_EQ(PtrToHand(nullptr, &handle, 0), noErr);
  DisposeHandle(handle);
}

TEST(Handles, NullIsAnErrorAndNotACrash) {
  DisposeHandle(nullptr);
  EXPECT_EQ(MemError(), nilHandleErr);
  EXPECT_EQ(GetHandleSize(nullptr), 0);
  SetHandleSize(nullptr, 4);
  HLock(nullptr);
  HUnlock(nullptr);
  EXPECT_EQ(MemError(), nilHandleErr);
}

TEST(Handles, MemErrorBelongsToItsThread) {
  GetHandleSize(nullptr);
  std::thread([] { EXPECT_EQ(MemError(), noErr); }).join();
  EXPECT_EQ(MemError(), nilHandleErr);
}

}  // namespace
