#include "graphics/color_engine_cache.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace {

using cg::PixelOrder;
using cg::TransformCache;

struct Nothing final : cg::ColorTransform {
  void convert(const uint8_t *, uint8_t *, std::size_t) const noexcept override {}
};

cf::Ref<CFDataRef> bytes(size_t count, uint8_t value) {
  const std::vector<uint8_t> content(count, value);
  return cf::adopt(CFDataCreate(nullptr, content.data(), static_cast<CFIndex>(count)));
}

class Transforms : public testing::Test {
 protected:
  auto find(CFDataRef from, uint32_t intent = 0, PixelOrder order = PixelOrder::argb) {
    return cache_.find({from, order, target_.get(), PixelOrder::argb, intent}, [&] {
      ++made_;
      return std::make_shared<Nothing>();
    });
  }

  cf::Ref<CFDataRef> target_ = bytes(10, 1);
  TransformCache cache_;
  int made_ = 0;
};

TEST_F(Transforms, AreMadeOnceForTheSameBytes) {
  const auto first = find(bytes(20, 2).get()), second = find(bytes(20, 2).get());
  EXPECT_EQ(first, second);
  EXPECT_EQ(made_, 1);
}

TEST_F(Transforms, DifferByBytesIntentAndOrder) {
  find(bytes(20, 2).get());
  find(bytes(20, 3).get());
  find(bytes(21, 2).get());
  find(bytes(20, 2).get(), 1);
  find(bytes(20, 2).get(), 0, PixelOrder::rgba);
  EXPECT_EQ(made_, 5);
  EXPECT_EQ(cache_.size(), 5U);
}

TEST_F(Transforms, TheOneNotUsedForLongestIsForgottenFirst) {
  const auto kept = bytes(4, 200);
  find(kept.get());
  for (uint8_t i = 0; i < 3 * TransformCache::kMostEntries; ++i) {
    find(bytes(4, i).get());
    find(kept.get());
  }
  EXPECT_EQ(made_, 1 + static_cast<int>(3 * TransformCache::kMostEntries));
  EXPECT_EQ(cache_.size(), TransformCache::kMostEntries);
  find(bytes(4, 0).get());
  EXPECT_EQ(made_, 2 + static_cast<int>(3 * TransformCache::kMostEntries));
}

TEST_F(Transforms, LargeProfilesDoNotPileUp) {
  for (uint8_t i = 0; i < 6; ++i) find(bytes(TransformCache::kMostKeyBytes / 3, i).get());
  EXPECT_LE(cache_.size(), 3U);
  find(bytes(2 * TransformCache::kMostKeyBytes, 9).get());
  EXPECT_EQ(cache_.size(), 1U);
}

TEST_F(Transforms, OneThatCannotBeMadeIsNotKept) {
  const auto from = bytes(4, 1);
  const TransformCache::Key key{from.get(), PixelOrder::argb, target_.get(), PixelOrder::argb, 0};
  EXPECT_FALSE(cache_.find(key, [] { return std::shared_ptr<Nothing>(); }));
  EXPECT_FALSE(cache_.find(key, []() -> std::shared_ptr<Nothing> { throw std::bad_alloc(); }));
  EXPECT_EQ(cache_.size(), 0U);
}

TEST_F(Transforms, OutliveTheirPlaceInTheCache) {
  std::vector<std::shared_ptr<const cg::ColorTransform>> kept;
  for (uint8_t i = 0; i < 40; ++i) kept.push_back(find(bytes(4, i).get()));
  for (const auto &transform : kept) transform->convert(nullptr, nullptr, 0);
}

TEST(TransformCache, ServesManyThreads) {
  TransformCache cache;
  const auto target = bytes(10, 1);
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([&] {
      for (int i = 0; i < 500; ++i) {
        const auto from = bytes(8, static_cast<uint8_t>(i % 24));
        EXPECT_TRUE(cache.find({from.get(), PixelOrder::argb, target.get(), PixelOrder::argb, 0},
                               [] { return std::make_shared<Nothing>(); }));
      }
    });
  for (std::thread &thread : threads) thread.join();
  EXPECT_EQ(cache.size(), TransformCache::kMostEntries);
}

}  // namespace
