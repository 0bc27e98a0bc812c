#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "media/codecs/big_endian.h"
#include "picture_grid.h"
#include "picture_maker.h"
#include "profiles.h"

namespace codecs::pict {
namespace {

using Vector = std::vector<uint8_t>;

struct Source {
  RowLayout layout = RowLayout::rgbx;
  uint32_t width = 1;
  uint32_t height = 1;
  Vector bytes;

  EncodeSource source() const {
    EncodeSource made;
    made.width = width;
    made.height = height;
    made.layout = layout;
    made.context = const_cast<Source *>(this);
    made.copyRow = [](void *self, uint32_t y, uint8_t *out) noexcept {
      const auto &from = *static_cast<const Source *>(self);
      const size_t rowBytes = from.width * bytesPerPixel(from.layout);
      std::copy_n(from.bytes.data() + y * rowBytes, rowBytes, out);
      return true;
    };
    return made;
  }

  // Red, green, blue and alpha as the file should have them.
  Pixel pixel(uint32_t x, uint32_t y) const {
    const uint8_t *at = bytes.data() + (size_t{y} * width + x) * bytesPerPixel(layout);
    if (layout == RowLayout::grey) return opaque(at[0], at[0], at[0]);
    return pixelOf(layout == RowLayout::rgba ? at[3] : uint8_t{255}, at[0], at[1], at[2]);
  }
};

// Neither flat nor noise: runs of all lengths.
Source randomSource(RowLayout layout, uint32_t width, uint32_t height) {
  Source source{layout, width, height, {}};
  std::mt19937 random(width * 31 + height);
  const size_t size = size_t{width} * height * bytesPerPixel(layout);
  while (source.bytes.size() < size) {
    const Vector pixel{static_cast<uint8_t>(random() % 3 * 100), static_cast<uint8_t>(random() % 7), 200,
                       static_cast<uint8_t>(random())};
    for (size_t run = random() % 9; run > 0; --run)
      source.bytes.insert(source.bytes.end(), pixel.begin(),
                          pixel.begin() + static_cast<long>(bytesPerPixel(layout)));
  }
  source.bytes.resize(size);
  return source;
}

Vector encoded(const EncodeSource &source) {
  Vector file;
  EXPECT_EQ(encodePict(source, file), Fault::none);
  return file;
}

void expectRoundTrip(const Source &source) {
  const auto decoded = decodeBytes(encoded(source.source()));
  ASSERT_EQ(decoded.fault, Fault::none);
  ASSERT_EQ(decoded.value.width, source.width);
  ASSERT_EQ(decoded.value.height, source.height);
  for (uint32_t y = 0; y < source.height; ++y) {
    for (uint32_t x = 0; x < source.width; ++x) {
      ASSERT_EQ(pixelAt(decoded.value, x, y), source.pixel(x, y)) << source.width << ": " << x << ", " << y;
    }
  }
}

// Around the widths where rows stop being raw, counts grow and a second map begins.
TEST(PictWrite, EveryWidthComesBack) {
  for (const uint32_t width : {1u, 2u, 3u, 50u, 62u, 63u, 64u, 250u, 4095u, 4096u, 4097u, 8191u, 9000u}) {
    for (const RowLayout layout : {RowLayout::grey, RowLayout::rgbx, RowLayout::rgba})
      expectRoundTrip(randomSource(layout, width, 3));
  }
}

TEST(PictWrite, TheBytesOfTheWorkedExample) {
  const Source source{RowLayout::rgbx, 3, 2, {255, 0,  0,  9, 255, 0,  0,  9, 0,  0,  255, 9,
                                              16,  32, 48, 9, 16,  32, 48, 9, 16, 32, 48,  9}};
  const Vector file = encoded(source.source());
  ASSERT_GT(file.size(), 512u);
  EXPECT_EQ(Vector(file.begin(), file.begin() + 512), Vector(512, 0));
  ByteMaker expected;
  expected.u16({142})
      .box(0, 0, 2, 3)
      .u32({0x001102FF})
      .u16({0x0C00, -2, 0, 72, 0, 72, 0})
      .box(0, 0, 2, 3)
      .u32({0});
  expected.u16({0x001E, 0x0001, 10}).box(0, 0, 2, 3).u16({0x009A}).u32({0xFF});
  addMap(expected, {12, {0, 0, 3, 2}, 4, 32, 3});
  addBoxes(expected, {0, 0, 3, 2}, {0, 0, 3, 2});
  expected.u8({7, 0x01, 0xFF, 0xFF, 0xFB, 0x00, 0x00, 0xFF});
  expected.u8({6, 0xFE, 0x10, 0xFE, 0x20, 0xFE, 0x30, 0});
  expected.u16({0x00FF});
  const Vector picture(file.begin() + 512, file.end());
  EXPECT_EQ(picture, expected.bytes);
}

TEST(PictWrite, AlphaThatMeansNothingIsReadAsOpaque) {
  Source source = randomSource(RowLayout::rgba, 5, 5);
  for (size_t i = 3; i < source.bytes.size(); i += 4) source.bytes[i] = 255;
  const auto decoded = decodeBytes(encoded(source.source()));
  EXPECT_EQ(decoded.value.layout, PixelLayout::xrgb32);
}

TEST(PictWrite, TheProfileComesBackFromAsManyPartsAsItTakes) {
  Vector profile = swappedRgbProfile();
  const Vector small = profile;
  profile.resize(100000, 0x5A);
  const auto size = static_cast<uint32_t>(profile.size());
  for (int i = 0; i < 4; ++i) profile[static_cast<size_t>(i)] = static_cast<uint8_t>(size >> (24 - 8 * i));
  for (const Vector &wanted : {small, profile}) {
    const Source pixels = randomSource(RowLayout::rgbx, 4, 4);
    EncodeSource source = pixels.source();
    source.profile = wanted;
    const auto decoded = decodeBytes(encoded(source));
    ASSERT_EQ(decoded.fault, Fault::none);
    EXPECT_EQ(decoded.value.profile, wanted);
  }
}

TEST(PictWrite, TheProfileOfGreysDoesNotGoWithColours) {
  const Source pixels = randomSource(RowLayout::grey, 4, 4);
  EncodeSource source = pixels.source();
  const Vector profile = greyProfile(2.2);
  source.profile = profile;
  EXPECT_TRUE(decodeBytes(encoded(source)).value.profile.empty());
}

TEST(PictWrite, TheResolutionIsKeptAndTheFrameFollowsIt) {
  const Source pixels = randomSource(RowLayout::rgbx, 300, 150);
  EncodeSource source = pixels.source();
  source.resolution = {300, 150};
  const Vector file = encoded(source);
  EXPECT_EQ(readBig16(file, 512 + 6), 72u);
  EXPECT_EQ(readBig16(file, 512 + 8), 72u);
  const auto decoded = decodeBytes(file);
  EXPECT_EQ(decoded.value.width, 300u);
  EXPECT_EQ(decoded.value.resolution.x, 300);
  EXPECT_EQ(decoded.value.resolution.y, 150);
}

TEST(PictWrite, OddResolutionsBecomeTheScreens) {
  const Source pixels = randomSource(RowLayout::rgbx, 3, 3);
  for (const double odd : {0.0, -5.0, 1e9, std::nan("")}) {
    EncodeSource source = pixels.source();
    source.resolution = {odd, odd};
    EXPECT_EQ(decodeBytes(encoded(source)).value.resolution.x, 72);
  }
}

TEST(PictWrite, SidesBeyondCoordinatesAreRefused) {
  Source source{RowLayout::grey, 32768, 1, Vector(32768)};
  Vector file;
  EXPECT_EQ(encodePict(source.source(), file), Fault::unsupported);
  source.width = 0;
  EXPECT_EQ(encodePict(source.source(), file), Fault::unsupported);
  source.width = 32767;
  expectRoundTrip(source);
}

TEST(PictWrite, ARowThatCannotBeHadEndsTheWriting) {
  EncodeSource source = randomSource(RowLayout::grey, 3, 3).source();
  source.copyRow = [](void *, uint32_t, uint8_t *) noexcept { return false; };
  Vector file;
  EXPECT_EQ(encodePict(source, file), Fault::noMemory);
}

}  // namespace
}  // namespace codecs::pict
