#include "media/codecs/pict/packbits.h"

#include <gtest/gtest.h>

#include <random>

namespace codecs::pict {
namespace {

using Vector = std::vector<uint8_t>;

Vector unpackedTo(const Vector &packed, size_t size, decltype(unpackBytes) unpack = unpackBytes) {
  Vector out(size, 0xEE);
  unpack(packed, out);
  return out;
}

TEST(PackBits, RunsLiteralsAndTheFlagThatDoesNothing) {
  EXPECT_EQ(unpackedTo({0xFD, 0x11, 0x01, 0x22, 0x33, 0x80, 0xFF, 0x44, 0x00, 0x55}, 9),
            (Vector{0x11, 0x11, 0x11, 0x11, 0x22, 0x33, 0x44, 0x44, 0x55}));
}

TEST(PackBits, WordsRepeatInPairs) {
  EXPECT_EQ(unpackedTo({0xFE, 0x12, 0x34, 0x00, 0xAB, 0xCD}, 8, unpackWords),
            (Vector{0x12, 0x34, 0x12, 0x34, 0x12, 0x34, 0xAB, 0xCD}));
}

TEST(PackBits, StopsAtTheRowsEnd) {
  EXPECT_EQ(unpackedTo({0x81, 7}, 3), (Vector{7, 7, 7}));
  EXPECT_EQ(unpackedTo({0x04, 1, 2, 3, 4, 5}, 3), (Vector{1, 2, 3}));
  EXPECT_EQ(unpackedTo({0xFE, 1, 2}, 3, unpackWords), (Vector{1, 2, 1}));
}

TEST(PackBits, WhatIsMissingIsZero) {
  EXPECT_EQ(unpackedTo({}, 2), (Vector{0, 0}));
  EXPECT_EQ(unpackedTo({0x04, 1, 2}, 4), (Vector{1, 2, 0, 0}));
  EXPECT_EQ(unpackedTo({0xFE}, 2), (Vector{0, 0}));
  EXPECT_EQ(unpackedTo({0xFE, 1}, 3, unpackWords), (Vector{0, 0, 0}));
}

TEST(PackBits, CountsWithoutUnpacking) {
  EXPECT_EQ(unpackedBytes(Vector{0xFD, 0x11, 0x01, 0x22, 0x33, 0x80}, 100), 6u);
  EXPECT_GT(unpackedBytes(Vector{0x04, 1, 2}, 100), 100u);
  EXPECT_GT(unpackedBytes(Vector{0x81, 1, 0x81, 1}, 100), 100u);
}

TEST(PackBits, PacksRunsOfThreeAndLeavesPairs) {
  const Vector bytes{9, 9, 9, 1, 1, 2};
  Vector packed(mostPackedBytes(bytes.size()));
  packed.resize(packBytes(bytes, packed.data()));
  EXPECT_EQ(packed, (Vector{0xFE, 9, 0x02, 1, 1, 2}));
}

// Runs and literals of all lengths, in rows of all lengths.
TEST(PackBits, WhateverIsPackedComesBack) {
  std::mt19937 random(7);
  for (size_t size = 0; size < 700; ++size) {
    Vector bytes;
    while (bytes.size() < size)
      bytes.insert(bytes.end(), 1 + random() % (random() % 3 ? 4 : 300), static_cast<uint8_t>(random()));
    bytes.resize(size);
    Vector packed(mostPackedBytes(size) + 1, 0xEE);
    const size_t taken = packBytes(bytes, packed.data());
    ASSERT_LE(taken, mostPackedBytes(size));
    ASSERT_EQ(packed.back(), 0xEE);
    packed.resize(taken);
    for (size_t at = 0; at < taken; at += packed[at] < 128 ? packed[at] + 2 : 2) ASSERT_NE(packed[at], 0x80);
    ASSERT_EQ(unpackedTo(packed, size), bytes);
    ASSERT_EQ(unpackedBytes(packed, size), size);
  }
}

// The worst that a row can do to the packer: never two bytes alike.
TEST(PackBits, NoiseGrowsByOneByteIn128) {
  for (const size_t size : {1u, 127u, 128u, 129u, 256u, 1000u}) {
    Vector bytes(size);
    for (size_t i = 0; i < size; ++i) bytes[i] = static_cast<uint8_t>(i * 37 + i / 3);
    Vector packed(mostPackedBytes(size));
    EXPECT_LE(packBytes(bytes, packed.data()), size + (size + 127) / 128);
  }
}

}  // namespace
}  // namespace codecs::pict
