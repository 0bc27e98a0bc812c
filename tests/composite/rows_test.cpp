#include "composite/rows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <ostream>

#include "composite/blend_support.h"
#include "guarded_memory.h"

namespace drav {

// By its name: an address would be another in every run.
static void PrintTo(const RowTable *table, std::ostream *out) { *out << table->name; }

}  // namespace drav

namespace {

using namespace drav;
using drav_test::blendName;
using drav_test::kThinning;
using Bytes = std::vector<uint8_t>;

size_t step(size_t format) { return bytesPerPixel(static_cast<PixelFormat>(format)); }

void walk(size_t format, size_t mode, const uint8_t *source, uint8_t *destination, size_t pixels) {
  for (size_t i = 0; i < pixels; ++i)
    kKernels[format][mode](source + i * step(format), destination + i * step(format));
}

// Every table but the plain one, which is the kernel itself.
class Rows : public testing::TestWithParam<const RowTable *> {
 protected:
  void expectKernelsBytes(size_t format, size_t mode, const Bytes &source, const Bytes &destination) {
    Bytes expected = destination, made = destination;
    const size_t pixels = source.size() / step(format);
    walk(format, mode, source.data(), expected.data(), pixels);
    GetParam()->rows[format][mode](source.data(), made.data(), pixels);
    const auto [at, unused] = std::mismatch(made.begin(), made.end(), expected.begin());
    if (at == made.end()) return;
    const size_t byte = static_cast<size_t>(at - made.begin()), pixel = byte / 4 * 4;
    FAIL() << GetParam()->name << " " << blendName(format, mode) << " byte " << byte << ": " << int{*at}
           << " instead of " << int{expected[byte]} << ", source "
           << testing::PrintToString(Bytes(source.begin() + pixel, source.begin() + pixel + 4)) << " onto "
           << testing::PrintToString(Bytes(destination.begin() + pixel, destination.begin() + pixel + 4));
  }
};

INSTANTIATE_TEST_SUITE_P(EachProcessor, Rows, testing::ValuesIn(rowTables().begin(), rowTables().end()),
                         [](const auto &which) { return std::string(which.param->name); });

// All pairs of bytes, as grey pixels or as channels.
Bytes everyPair(bool first) {
  Bytes bytes(65536);
  for (size_t pair = 0; pair < bytes.size(); ++pair)
    bytes[pair] = static_cast<uint8_t>(first ? pair >> 8 : pair & 255);
  return bytes;
}

TEST_P(Rows, GreyGivesTheKernelsByteForEveryPair) {
  const Bytes s = everyPair(true), d = everyPair(false);
  for (size_t mode = 0; mode < kBlendModeCount; ++mode) expectKernelsBytes(0, mode, s, d);
}

TEST_P(Rows, EveryColourChannelGivesTheKernelsByteForEveryPair) {
  for (size_t shift = 0; shift < 4; ++shift) {
    // Pairs spread so that each one meets each of the four places of a pixel.
    Bytes s = everyPair(true), d = everyPair(false);
    std::rotate(s.begin(), s.begin() + shift, s.end());
    std::rotate(d.begin(), d.begin() + shift, d.end());
    for (size_t mode = 0; mode < kBlendModeCount; ++mode) expectKernelsBytes(1, mode, s, d);
  }
}

TEST_P(Rows, AlphaGivesTheKernelsPixelOnADenseGridOfValidPixels) {
  const int stride = kThinning > 1 ? 51 : 17;
  for (int sa = 0; sa < 256; sa += stride)
    for (int da = 0; da < 256; da += stride) {
      Bytes s, d;
      for (int sc = 0; sc <= sa; sc += kThinning > 1 ? 7 : 2)
        for (int dc = 0; dc <= da; dc += 3) {
          const int more = std::min(dc + 1, da), most = std::min(dc + 2, da);
          for (const int value : {sa, sc, sc, sc}) s.push_back(static_cast<uint8_t>(value));
          for (const int value : {da, dc, more, most}) d.push_back(static_cast<uint8_t>(value));
        }
      for (size_t mode = 0; mode < kBlendModeCount; ++mode) expectKernelsBytes(2, mode, s, d);
    }
}

TEST_P(Rows, AlphaGivesTheKernelsPixelForTenMillionRandomPixels) {
  // Spread over the modes and the three kinds of pixels; the kernel is what takes the time.
  const size_t share = 10'000'000 / (kBlendModeCount * 3) / kThinning;
  uint64_t seed = 1;
  for (size_t mode = 0; mode < kBlendModeCount; ++mode)
    for (const auto kind : {drav_test::Pixels::valid, drav_test::Pixels::any, drav_test::Pixels::mixed}) {
      const Bytes s = drav_test::randomPixels(share, kind, ++seed),
                  d = drav_test::randomPixels(share, kind, ++seed);
      expectKernelsBytes(2, mode, s, d);
    }
}

// Every alpha, source and destination colour there is, 2^32 of them, for every mode: up to an hour for each
// processor's rows. Run it when a formula or its vector form changes: --gtest_also_run_disabled_tests
// --gtest_filter=*EveryPixelThereIs*
TEST_P(Rows, DISABLED_AlphaGivesTheKernelsPixelForEveryPixelThereIs) {
  Bytes s, d;
  for (int sa = 0; sa < 256; ++sa)
    for (int da = 0; da < 256; ++da) {
      s.clear();
      d.clear();
      for (int sc = 0; sc < 256; ++sc)
        for (int dc = 0; dc < 256; dc += 3) {
          for (const int value : {sa, sc, sc, sc}) s.push_back(static_cast<uint8_t>(value));
          for (const int value : {da, dc, std::min(dc + 1, 255), std::min(dc + 2, 255)})
            d.push_back(static_cast<uint8_t>(value));
        }
      for (size_t mode = 3; mode < kBlendModeCount; ++mode) expectKernelsBytes(2, mode, s, d);
    }
}

TEST_P(Rows, AppliedAgainAndAgainAModeGivesTheKernelsPixels) {
  // Pixels come to rest just short of a half-way point between two bytes, where an estimate is of no use.
  const size_t pixels = 6000 / kThinning, rounds = 40;
  for (size_t format = 0; format < kPixelFormatCount; ++format)
    for (const DRAVCFBlendMode mode :
         {kDRAVCFBlendModeColorDodge, kDRAVCFBlendModeColorBurn, kDRAVCFBlendModeSoftLight}) {
      const Bytes s = drav_test::randomPixels(pixels, drav_test::Pixels::mixed, 31);
      Bytes d = drav_test::randomPixels(pixels, drav_test::Pixels::mixed, 32);
      for (size_t round = 0; round < rounds; ++round) {
        expectKernelsBytes(format, mode, s, d);
        walk(format, mode, s.data(), d.data(), d.size() / step(format));
      }
    }
}

TEST_P(Rows, EveryLengthStopsAtItsEnd) {
  constexpr size_t most = 130, guard = 70;
  for (size_t format = 0; format < kPixelFormatCount; ++format)
    for (size_t mode = 0; mode < kBlendModeCount; ++mode)
      for (size_t pixels = 0; pixels <= most; pixels += kThinning > 1 ? 7 : 1) {
        const Bytes s = drav_test::randomPixels(most + guard, drav_test::Pixels::mixed, pixels);
        Bytes made = drav_test::randomPixels(most + guard, drav_test::Pixels::mixed, pixels + 1000);
        Bytes expected = made;
        walk(format, mode, s.data(), expected.data(), pixels);
        GetParam()->rows[format][mode](s.data(), made.data(), pixels);
        ASSERT_EQ(made, expected) << blendName(format, mode) << ", " << pixels << " pixels";
      }
}

TEST_P(Rows, NoByteBeyondTheEndIsRead) {
  // Exactly as long as the row: the address sanitizer sees a step too far.
  for (size_t format = 0; format < kPixelFormatCount; ++format)
    for (size_t mode = 0; mode < kBlendModeCount; ++mode)
      for (const size_t pixels : {1U, 3U, 17U, 63U, 67U}) {
        Bytes s = drav_test::randomPixels(pixels, drav_test::Pixels::valid, 5);
        s.resize(pixels * step(format));
        s.shrink_to_fit();
        expectKernelsBytes(format, mode, s, s);
      }
}

TEST_P(Rows, NoByteBesideTheRowIsTouched) {
  using testing_support::GuardedMemory;
  for (size_t format = 0; format < kPixelFormatCount; ++format)
    for (size_t pixels = 1; pixels <= 70; pixels += pixels < 20 ? 1 : 5)
      for (const auto edge : {GuardedMemory::Edge::first, GuardedMemory::Edge::last}) {
        const GuardedMemory s(pixels * step(format), edge), d(pixels * step(format), edge);
        for (size_t mode = 0; mode < kBlendModeCount; ++mode)
          for (const auto kind : {drav_test::Pixels::valid, drav_test::Pixels::any}) {
            std::memcpy(s.data(), drav_test::randomPixels(pixels, kind, mode).data(), s.size());
            GetParam()->rows[format][mode](s.data(), d.data(), pixels);
          }
      }
}

TEST_P(Rows, EveryAlignmentOfSourceAndDestinationGivesTheSameBytes) {
  constexpr size_t pixels = 40, most = 4 * pixels, alignments = 64;
  const Bytes s = drav_test::randomPixels(pixels, drav_test::Pixels::mixed, 11);
  const Bytes d = drav_test::randomPixels(pixels, drav_test::Pixels::mixed, 12);
  alignas(64) uint8_t source[alignments + most], made[alignments + most];
  for (size_t format = 0; format < kPixelFormatCount; ++format)
    for (size_t mode = 0; mode < kBlendModeCount; ++mode) {
      const size_t bytes = pixels * step(format);
      Bytes expected = d;
      walk(format, mode, s.data(), expected.data(), pixels);
      for (size_t from = 0; from < alignments; ++from) {
        std::memcpy(source + from, s.data(), bytes);
        for (size_t at = 0; at<alignments; at += kThinning> 1 ? 9 : 1) {
          std::memcpy(made + at, d.data(), bytes);
          GetParam()->rows[format][mode](source + from, made + at, pixels);
          ASSERT_EQ(std::memcmp(made + at, expected.data(), bytes), 0)
              << blendName(format, mode) << ", source at " << from << ", destination at " << at;
        }
      }
    }
}

TEST_P(Rows, SourceAndDestinationMayBeTheSameRow) {
  for (size_t format = 0; format < kPixelFormatCount; ++format)
    for (size_t mode = 0; mode < kBlendModeCount; ++mode) {
      Bytes made = drav_test::randomPixels(150, drav_test::Pixels::mixed, 21), expected = made;
      const size_t pixels = made.size() / step(format);
      walk(format, mode, expected.data(), expected.data(), pixels);
      GetParam()->rows[format][mode](made.data(), made.data(), pixels);
      EXPECT_EQ(made, expected) << blendName(format, mode);
    }
}

TEST(RowTables, BestIsFirstAndPlainIsLast) {
  ASSERT_FALSE(rowTables().empty());
  EXPECT_EQ(&rowTable(), rowTables().front());
  EXPECT_STREQ(rowTables().back()->name, "plain");
}

TEST(RowTables, EveryTableIsFoundByItsName) {
  for (const RowTable *table : rowTables()) EXPECT_EQ(rowTableNamed(table->name), table);
  EXPECT_EQ(rowTableNamed("no such processor"), nullptr);
}

TEST(RowTables, EveryTableIsFull) {
  for (const RowTable *table : rowTables())
    for (const auto &format : table->rows)
      for (const RowFunction row : format) EXPECT_NE(row, nullptr) << table->name;
}

}  // namespace
