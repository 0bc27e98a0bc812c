#include <DravKit/DravKit.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "guarded_memory.h"
#include "pixel/instruction_sets.h"
#include "pixel/plain_form.h"

namespace {

using plain::Layout;
using testing_support::forEachInstructionSet;
using Buffer = std::vector<uint8_t>;

constexpr Layout kLayouts[] = {Layout::argb, Layout::rgba};
constexpr size_t kMostLanes = 16;  // pixels in the widest vector
const std::string kARGBMessage = "DRAVCFUnpremultiplyARGBBuffer - invalid unpremultiplication\n";
const std::string kRGBAMessage = "DRAVCFUnpremultiplyRGBABuffer - invalid unpremultiplication\n";

void callPremultiply(uint8_t *buffer, size_t size, Layout layout) {
  layout == Layout::argb ? DRAVCFPremultiplyARGBBuffer(buffer, size)
                         : DRAVCFPremultiplyRGBABuffer(buffer, size);
}

void unpremultiplyOnly(uint8_t *buffer, size_t size, Layout layout) {
  layout == Layout::argb ? DRAVCFUnpremultiplyARGBBuffer(buffer, size)
                         : DRAVCFUnpremultiplyRGBABuffer(buffer, size);
}

// Gives what was written to standard error.
std::string callUnpremultiply(uint8_t *buffer, size_t size, Layout layout) {
  testing::internal::CaptureStderr();
  unpremultiplyOnly(buffer, size, layout);
  return testing::internal::GetCapturedStderr();
}

std::string messageOf(Layout layout) { return layout == Layout::argb ? kARGBMessage : kRGBAMessage; }

Buffer premultiplied(Buffer pixels, Layout layout) {
  callPremultiply(pixels.data(), pixels.size(), layout);
  return pixels;
}

Buffer unpremultiplied(Buffer pixels, Layout layout) {
  callUnpremultiply(pixels.data(), pixels.size(), layout);
  return pixels;
}

Buffer pixel(Layout layout, uint8_t alpha, uint8_t red, uint8_t green, uint8_t blue) {
  return layout == Layout::argb ? Buffer{alpha, red, green, blue} : Buffer{red, green, blue, alpha};
}

// Every pair of alpha and colour in every channel.
Buffer everyPair(Layout layout) {
  Buffer pixels(size_t{4} * 65536);
  for (unsigned pair = 0; pair < 65536; ++pair) {
    uint8_t *pixel = &pixels[4 * pair];
    pixel[plain::alphaIndex(layout)] = static_cast<uint8_t>(pair >> 8);
    for (int channel = 0; channel < 3; ++channel) {
      pixel[plain::colourIndex(layout, channel)] =
          static_cast<uint8_t>(pair + 85U * static_cast<unsigned>(channel));
    }
  }
  return pixels;
}

// Calls operate(buffer, size, layout) on every pair in every lane of a vector, with every instruction set.
template <class Plain, class Operate>
void comparePairs(Plain &&plainForm, Operate &&operate) {
  for (const Layout layout : kLayouts) {
    const Buffer pairs = everyPair(layout);
    Buffer expected = pairs;
    plainForm(expected.data(), expected.size(), layout);
    forEachInstructionSet([&] {
      for (size_t lane = 0; lane < kMostLanes; ++lane) {
        Buffer pixels(4 * lane);
        pixels.insert(pixels.end(), pairs.begin(), pairs.end());
        operate(pixels.data(), pixels.size(), layout);
        ASSERT_TRUE(
            std::equal(expected.begin(), expected.end(), pixels.begin() + static_cast<long>(4 * lane)))
            << "from lane " << lane;
      }
    });
  }
}

Buffer randomBytes(size_t size, unsigned seed) {
  std::mt19937 random(seed);
  Buffer bytes(size);
  std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<uint8_t>(random()); });
  return bytes;
}

// Random bytes of every length, at every distance from a vector's boundary, in memory that ends where the
// buffer does.
template <class Plain, class Operate>
void compareLengths(Plain &&plainForm, Operate &&operate) {
  const Buffer bytes = randomBytes(1024, 11);
  forEachInstructionSet([&] {
    for (const Layout layout : kLayouts) {
      for (size_t offset = 0; offset < 67; ++offset) {
        for (size_t size = 0; size < 4 * (2 * kMostLanes + 2); ++size) {
          Buffer memory(bytes.begin(), bytes.begin() + static_cast<long>(offset + size));
          Buffer expected = memory;
          plainForm(expected.data() + offset, size, layout);
          operate(memory.data() + offset, size, layout);
          ASSERT_EQ(memory, expected) << size << " bytes at offset " << offset;
        }
      }
    }
  });
}

// Discards the messages of a test that checks bytes only.
template <class Test>
void withoutMessages(Test &&test) {
  testing::internal::CaptureStderr();
  test();
  testing::internal::GetCapturedStderr();
}

TEST(Premultiply, EveryPairInEveryLaneGivesThePlainResult) {
  comparePairs(plain::premultiply, callPremultiply);
}

TEST(Unpremultiply, EveryPairInEveryLaneGivesThePlainResult) {
  withoutMessages([] { comparePairs(plain::unpremultiply, unpremultiplyOnly); });
}

TEST(Premultiply, EveryLengthAtEveryAddressGivesThePlainResultAndTouchesNothingElse) {
  compareLengths(plain::premultiply, callPremultiply);
}

TEST(Unpremultiply, EveryLengthAtEveryAddressGivesThePlainResultAndTouchesNothingElse) {
  withoutMessages([] { compareLengths(plain::unpremultiply, unpremultiplyOnly); });
}

TEST(Premultiply, HalfAlphaHalvesAndRoundsFullRed) {
  for (const Layout layout : kLayouts) {
    EXPECT_EQ(premultiplied(pixel(layout, 128, 255, 0, 0), layout), pixel(layout, 128, 128, 0, 0));
  }
}

TEST(Premultiply, AlphaZeroGivesBlack) {
  for (const Layout layout : kLayouts) {
    EXPECT_EQ(premultiplied(pixel(layout, 0, 255, 128, 1), layout), pixel(layout, 0, 0, 0, 0));
  }
}

TEST(Premultiply, FullAlphaLeavesColoursAsTheyAre) {
  for (const Layout layout : kLayouts) {
    EXPECT_EQ(premultiplied(pixel(layout, 255, 255, 128, 1), layout), pixel(layout, 255, 255, 128, 1));
  }
}

TEST(Unpremultiply, AHalfIsRoundedUp) {
  for (const Layout layout : kLayouts) {
    EXPECT_EQ(unpremultiplied(pixel(layout, 128, 64, 0, 128), layout), pixel(layout, 128, 128, 0, 255));
  }
}

// 7 / 14 is a half as well, but the single-precision quotient lies a little below it.
TEST(Unpremultiply, AHalfThatSinglePrecisionMissesIsRoundedDown) {
  for (const Layout layout : kLayouts) {
    EXPECT_EQ(unpremultiplied(pixel(layout, 14, 7, 0, 14), layout), pixel(layout, 14, 127, 0, 255));
  }
}

TEST(Unpremultiply, AColourUnderAlphaZeroBecomesBlackWithOneMessage) {
  for (const Layout layout : kLayouts) {
    Buffer pixels = pixel(layout, 0, 1, 128, 255);
    EXPECT_EQ(callUnpremultiply(pixels.data(), 4, layout), messageOf(layout));
    EXPECT_EQ(pixels, pixel(layout, 0, 0, 0, 0));
  }
}

TEST(Unpremultiply, BlackUnderAlphaZeroIsValid) {
  for (const Layout layout : kLayouts) {
    Buffer pixels = pixel(layout, 0, 0, 0, 0);
    EXPECT_EQ(callUnpremultiply(pixels.data(), 4, layout), "");
    EXPECT_EQ(pixels, pixel(layout, 0, 0, 0, 0));
  }
}

TEST(Unpremultiply, AColourAboveItsAlphaIsClampedWithOneMessage) {
  for (const Layout layout : kLayouts) {
    Buffer pixels = pixel(layout, 100, 101, 50, 0);
    EXPECT_EQ(callUnpremultiply(pixels.data(), 4, layout), messageOf(layout));
    EXPECT_EQ(pixels, pixel(layout, 100, 255, 128, 0));
  }
}

TEST(Unpremultiply, ColoursUpToTheirAlphaAreValid) {
  for (const Layout layout : kLayouts) {
    Buffer pixels;
    for (int alpha = 0; alpha < 256; ++alpha) {
      const auto a = static_cast<uint8_t>(alpha);
      const Buffer next = pixel(layout, a, a, a, a);
      pixels.insert(pixels.end(), next.begin(), next.end());
    }
    EXPECT_EQ(callUnpremultiply(pixels.data(), pixels.size(), layout), "");
  }
}

TEST(Unpremultiply, ManyInvalidPixelsGiveOneMessageAndAllAreDone) {
  for (const Layout layout : kLayouts) {
    Buffer pixels = randomBytes(size_t{4} * 1000, 7), expected = pixels;
    plain::unpremultiply(expected.data(), expected.size(), layout);
    EXPECT_EQ(callUnpremultiply(pixels.data(), pixels.size(), layout), messageOf(layout));
    EXPECT_EQ(pixels, expected);
  }
}

TEST(Unpremultiply, EachCallWritesItsOwnMessage) {
  testing::internal::CaptureStderr();
  for (int call = 0; call < 3; ++call) {
    uint8_t argb[] = {0, 1, 1, 1}, rgba[] = {1, 1, 1, 0};
    DRAVCFUnpremultiplyARGBBuffer(argb, 4);
    DRAVCFUnpremultiplyRGBABuffer(rgba, 4);
  }
  const std::string both = kARGBMessage + kRGBAMessage;
  EXPECT_EQ(testing::internal::GetCapturedStderr(), both + both + both);
}

TEST(Unpremultiply, OneInvalidByteAnywhereGivesTheMessage) {
  forEachInstructionSet([] {
    for (const Layout layout : kLayouts) {
      for (size_t count = 1; count < 2 * kMostLanes + 2; ++count) {
        for (size_t at = 0; at < count; ++at) {
          Buffer pixels(4 * count, 200);
          pixels[4 * at + static_cast<size_t>(plain::colourIndex(layout, static_cast<int>(at % 3)))] = 201;
          ASSERT_EQ(callUnpremultiply(pixels.data(), pixels.size(), layout), messageOf(layout))
              << "pixel " << at << " of " << count;
        }
      }
    }
  });
}

TEST(Unpremultiply, BytesThatMakeNoWholePixelGiveNoMessage) {
  for (const Layout layout : kLayouts) {
    Buffer pixels = {9, 9, 9, 9, 0, 255, 255};
    EXPECT_EQ(callUnpremultiply(pixels.data(), pixels.size(), layout), "");
    EXPECT_EQ(pixels, (layout == Layout::argb ? Buffer{9, 255, 255, 255, 0, 255, 255}
                                              : Buffer{255, 255, 255, 9, 0, 255, 255}));
  }
}

TEST(Premultiply, SevenBytesAreOnePixel) {
  for (const Layout layout : kLayouts) {
    Buffer pixels = pixel(layout, 128, 255, 255, 255);
    pixels.insert(pixels.end(), {128, 255, 255});
    Buffer expected = pixel(layout, 128, 128, 128, 128);
    expected.insert(expected.end(), {128, 255, 255});
    EXPECT_EQ(premultiplied(pixels, layout), expected);
  }
}

TEST(Premultiply, NoBufferIsNothingToDo) {
  for (const Layout layout : kLayouts) {
    callPremultiply(nullptr, 0, layout);
    callPremultiply(nullptr, 4, layout);
    EXPECT_EQ(callUnpremultiply(nullptr, 4, layout), "");
  }
}

TEST(AlphaBuffers, NoByteBesideTheBufferIsTouched) {
  using testing_support::GuardedMemory;
  forEachInstructionSet([] {
    for (const Layout layout : kLayouts)
      for (const auto edge : {GuardedMemory::Edge::first, GuardedMemory::Edge::last})
        for (size_t size = 0; size < 300; size += size < 10 ? 1 : 13) {
          const GuardedMemory memory(size, edge);
          callPremultiply(memory.data(), size, layout);
          unpremultiplyOnly(memory.data(), size, layout);
        }
  });
}

}  // namespace
