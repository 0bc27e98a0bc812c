#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "failing_allocator.h"
#include "foundation/ref.h"

namespace {

using testing_support::FailingAllocator;

TEST(Allocator, AZeroByteRequestYieldsABlockWithTailRoom) {
  FailingAllocator allocator;
  void *block = CFAllocatorAllocate(allocator.get(), 0, 0);
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(allocator.lastSize(), 32);
  std::memset(block, 1, 32);
  CFAllocatorDeallocate(allocator.get(), block);

  block = CFAllocatorAllocate(nullptr, 0, 0);
  ASSERT_NE(block, nullptr);
  std::memset(block, 1, 32);
  CFAllocatorDeallocate(nullptr, block);
}

TEST(Allocator, EveryBlockHasTailRoom) {
  FailingAllocator allocator;
  void *block = CFAllocatorAllocate(allocator.get(), 100, 0);
  EXPECT_EQ(allocator.lastSize(), 132);
  block = CFAllocatorReallocate(allocator.get(), block, 200, 0);
  EXPECT_EQ(allocator.lastSize(), 232);
  std::memset(block, 1, 232);
  CFAllocatorDeallocate(allocator.get(), block);
}

TEST(Allocator, SizesThatNoBlockCanHaveGiveNull) {
  FailingAllocator allocator;
  for (const CFIndex size : {CFIndex{-1}, LONG_MIN, LONG_MAX, LONG_MAX - 31}) {
    EXPECT_EQ(CFAllocatorAllocate(nullptr, size, 0), nullptr);
    EXPECT_EQ(CFAllocatorAllocate(allocator.get(), size, 0), nullptr);
    EXPECT_EQ(CFAllocatorReallocate(allocator.get(), nullptr, size, 0), nullptr);
  }
  EXPECT_EQ(allocator.requests(), 0);
}

TEST(Allocator, ReallocateKeepsContents) {
  for (CFAllocatorRef builtIn : {kCFAllocatorSystemDefault, kCFAllocatorMalloc}) {
    auto *block = static_cast<char *>(CFAllocatorReallocate(builtIn, nullptr, 4, 0));
    std::memcpy(block, "abcd", 4);
    block = static_cast<char *>(CFAllocatorReallocate(builtIn, block, 100000, 0));
    EXPECT_EQ(std::memcmp(block, "abcd", 4), 0);
    EXPECT_EQ(CFAllocatorReallocate(builtIn, block, 0, 0), nullptr);
  }
}

TEST(Allocator, AFailedReallocateLeavesTheBlock) {
  FailingAllocator allocator(2);
  auto *block = static_cast<char *>(CFAllocatorAllocate(allocator.get(), 4, 0));
  std::memcpy(block, "abcd", 4);
  EXPECT_EQ(CFAllocatorReallocate(allocator.get(), block, 8, 0), nullptr);
  EXPECT_EQ(CFAllocatorReallocate(allocator.get(), block, -8, 0), nullptr);
  EXPECT_EQ(std::memcmp(block, "abcd", 4), 0);
  CFAllocatorDeallocate(allocator.get(), block);
}

TEST(Allocator, ReallocateToNothingReturnsTheBlock) {
  FailingAllocator allocator;
  void *block = CFAllocatorAllocate(allocator.get(), 4, 0);
  EXPECT_EQ(CFAllocatorReallocate(allocator.get(), block, 0, 0), nullptr);
  EXPECT_EQ(allocator.liveBlocks(), 0);
}

TEST(Allocator, DeallocateIgnoresNull) {
  FailingAllocator allocator;
  CFAllocatorDeallocate(allocator.get(), nullptr);
  CFAllocatorDeallocate(nullptr, nullptr);
  EXPECT_EQ(allocator.deallocations(), 0);
}

TEST(Allocator, TheNullAllocatorGivesNothing) {
  EXPECT_EQ(CFAllocatorAllocate(kCFAllocatorNull, 1, 0), nullptr);
  EXPECT_EQ(CFAllocatorReallocate(kCFAllocatorNull, nullptr, 1, 0), nullptr);
  int somebodys = 0;
  EXPECT_EQ(CFAllocatorReallocate(kCFAllocatorNull, &somebodys, 1, 0), nullptr);
  CFAllocatorDeallocate(kCFAllocatorNull, &somebodys);
}

TEST(Allocator, BuiltInAllocatorsAreNeverFreed) {
  EXPECT_EQ(kCFAllocatorDefault, nullptr);
  for (CFAllocatorRef builtIn : {kCFAllocatorSystemDefault, kCFAllocatorMalloc, kCFAllocatorNull}) {
    EXPECT_EQ(CFGetTypeID(builtIn), CFAllocatorGetTypeID());
    EXPECT_EQ(CFGetRetainCount(builtIn), LONG_MAX);
    CFRelease(builtIn);
    CFRelease(builtIn);
    EXPECT_EQ(CFGetRetainCount(builtIn), LONG_MAX);
  }
}

struct Info {
  int retained = 0, released = 0;
};

CFAllocatorContext countingContext(Info &info) {
  CFAllocatorContext context{};
  context.info = &info;
  context.retain = [](const void *seen) {
    ++static_cast<Info *>(const_cast<void *>(seen))->retained;
    return seen;
  };
  context.release = [](const void *seen) { ++static_cast<Info *>(const_cast<void *>(seen))->released; };
  context.copyDescription = [](const void *) { return CFStringCreateCopy(nullptr, CFSTR("mine")); };
  return context;
}

TEST(Allocator, ACustomAllocatorRetainsItsInfoAndGivesItBack) {
  Info info;
  const CFAllocatorContext context = countingContext(info);
  {
    const auto allocator = cf::adopt(CFAllocatorCreate(nullptr, &context));
    EXPECT_EQ(info.retained, 1);
    CFAllocatorContext seen{};
    CFAllocatorGetContext(allocator.get(), &seen);
    EXPECT_EQ(seen.info, &info);
    EXPECT_EQ(seen.release, context.release);
    EXPECT_EQ(info.released, 0);
  }
  EXPECT_EQ(info.released, 1);
}

TEST(Allocator, WithoutCallbacksNothingIsAllocated) {
  Info info;
  const CFAllocatorContext context = countingContext(info);
  const auto allocator = cf::adopt(CFAllocatorCreate(nullptr, &context));
  EXPECT_EQ(CFAllocatorAllocate(allocator.get(), 1, 0), nullptr);
  EXPECT_EQ(CFAllocatorReallocate(allocator.get(), &info, 1, 0), nullptr);
  CFAllocatorDeallocate(allocator.get(), &info);
}

TEST(Allocator, ADescriptionNamesTheContexts) {
  Info info;
  const CFAllocatorContext context = countingContext(info);
  const auto allocator = cf::adopt(CFAllocatorCreate(nullptr, &context));
  const auto text = cf::adopt(CFCopyDescription(allocator.get()));
  EXPECT_TRUE(CFStringHasPrefix(text.get(), CFSTR("<CFAllocator 0x")));
  EXPECT_TRUE(CFStringHasSuffix(text.get(), CFSTR(">{mine}")));
}

TEST(Allocator, AContextOfAnUnknownVersionMakesNone) {
  CFAllocatorContext context{};
  context.version = 1;
  EXPECT_EQ(CFAllocatorCreate(nullptr, &context), nullptr);
  EXPECT_EQ(CFAllocatorCreate(nullptr, nullptr), nullptr);
}

TEST(Allocator, AnAllocatorThatCannotBeAllocatedIsNull) {
  Info info;
  const CFAllocatorContext context = countingContext(info);
  EXPECT_EQ(CFAllocatorCreate(kCFAllocatorNull, &context), nullptr);
  EXPECT_EQ(info.retained, 0);
}

TEST(Allocator, ThePreferredSizeLeavesOutTheTailRoom) {
  EXPECT_EQ(CFAllocatorGetPreferredSizeForSize(nullptr, 10, 0), 10);
  CFAllocatorContext context{};
  context.preferredSize = [](CFIndex size, CFOptionFlags, void *) { return (size + 63) / 64 * 64; };
  const auto allocator = cf::adopt(CFAllocatorCreate(nullptr, &context));
  EXPECT_EQ(CFAllocatorGetPreferredSizeForSize(allocator.get(), 10, 0), 32);
}

TEST(Allocator, TheDefaultIsTheThreadsOwn) {
  FailingAllocator allocator;
  std::thread([&] {
    EXPECT_EQ(CFAllocatorGetDefault(), kCFAllocatorSystemDefault);
    CFAllocatorSetDefault(allocator.get());
    EXPECT_EQ(CFAllocatorGetDefault(), allocator.get());
    const auto data = cf::adopt(CFDataCreateMutable(kCFAllocatorDefault, 0));
    EXPECT_EQ(CFGetAllocator(data.get()), allocator.get());
    CFAllocatorSetDefault(nullptr);
  }).join();
  EXPECT_EQ(CFAllocatorGetDefault(), kCFAllocatorSystemDefault);
}

// The flags of the mapping that an address lies in; empty where the system does not tell.
std::string mappingFlags(const void *address) {
  const auto at = reinterpret_cast<uintptr_t>(address);
  std::ifstream mappings("/proc/self/smaps");
  bool isInside = false;
  for (std::string line; std::getline(mappings, line);) {
    uintptr_t begin = 0, end = 0;
    if (std::sscanf(line.c_str(), "%lx-%lx ", &begin, &end) == 2) isInside = at >= begin && at < end;
    if (isInside && line.rfind("VmFlags:", 0) == 0) return line + " ";
  }
  return "";
}

TEST(Allocator, LargeBlocksAreToLieInLargePages) {
  if (!std::filesystem::exists("/sys/kernel/mm/transparent_hugepage"))
    GTEST_SKIP() << "there are no large pages";
  constexpr CFIndex size = 16 << 20;
  auto *block = static_cast<char *>(CFAllocatorAllocate(kCFAllocatorDefault, size, 0));
  ASSERT_NE(block, nullptr);
  std::fill(block, block + size, 7);
  EXPECT_NE(mappingFlags(block + size / 2).find(" hg "), std::string::npos);
  EXPECT_TRUE(std::all_of(block, block + size, [](char byte) { return byte == 7; }));
  CFAllocatorDeallocate(kCFAllocatorDefault, block);
}

}  // namespace
