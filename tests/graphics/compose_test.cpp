#include "graphics/compose.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "buffer_reader.h"

namespace cg {
namespace {

using test::Bytes;

constexpr SurfaceLayout kLayouts[] = {SurfaceLayout::gray,
                                      SurfaceLayout::rgbaPremultiplied,
                                      SurfaceLayout::argbPremultiplied,
                                      SurfaceLayout::rgba,
                                      SurfaceLayout::argb,
                                      SurfaceLayout::rgbx,
                                      SurfaceLayout::xrgb,
                                      SurfaceLayout::alpha};

int nearest(double value) { return static_cast<int>(std::floor(value + 0.5)); }

int overByHand(int s, int sa, int d) { return s + nearest(d * (255 - sa) / 255.0); }

// All forms of a row function: plain, and in every kind of vector.
std::vector<ComposeRow> formsOf(SurfaceLayout layout, RowForm form) {
  std::vector<ComposeRow> forms{plainComposeRow(layout, form)};
  for (const VectorComposeRows *rows : allVectorComposeRows())
    if (const ComposeRow row = rows->rowFor(layout, form)) forms.push_back(row);
  return forms;
}

// Every source component and alpha meets every destination byte, in rows of 256 pixels.
TEST(Compose, PremultipliedOverIsRoundedOnceForEveryTriple) {
  for (ComposeRow compose : formsOf(SurfaceLayout::argbPremultiplied, RowForm::argbPremultiplied)) {
    Bytes source(4 * 256), destination(4 * 256);
    for (int sa = 0; sa < 256; ++sa) {
      for (int c = 0; c <= sa; ++c) {
        for (int d = 0; d < 256; ++d) {
          const auto at = static_cast<size_t>(4 * d);
          const uint8_t s[] = {static_cast<uint8_t>(sa), static_cast<uint8_t>(c), 0, static_cast<uint8_t>(c)};
          std::copy_n(s, 4, &source[at]);
          std::fill_n(&destination[at], 4, static_cast<uint8_t>(d));
        }
        compose(source.data(), destination.data(), 256);
        for (int d = 0; d < 256; ++d) {
          const auto at = static_cast<size_t>(4 * d);
          ASSERT_EQ(destination[at], overByHand(sa, sa, d)) << sa << ' ' << c << ' ' << d;
          ASSERT_EQ(destination[at + 1], overByHand(c, sa, d)) << sa << ' ' << c << ' ' << d;
          ASSERT_EQ(destination[at + 2], overByHand(0, sa, d)) << sa << ' ' << c << ' ' << d;
        }
      }
    }
  }
}

TEST(Compose, GrayOverIsRoundedOnceForEveryTriple) {
  for (ComposeRow compose : formsOf(SurfaceLayout::gray, RowForm::grayAlphaPremultiplied)) {
    Bytes source(2 * 256), destination(256);
    for (int sa = 0; sa < 256; ++sa) {
      for (int c = 0; c <= sa; ++c) {
        for (int d = 0; d < 256; ++d) {
          source[static_cast<size_t>(2 * d)] = static_cast<uint8_t>(sa);
          source[static_cast<size_t>(2 * d + 1)] = static_cast<uint8_t>(c);
          destination[static_cast<size_t>(d)] = static_cast<uint8_t>(d);
        }
        compose(source.data(), destination.data(), 256);
        for (int d = 0; d < 256; ++d)
          ASSERT_EQ(destination[static_cast<size_t>(d)], overByHand(c, sa, d)) << sa << ' ' << c << ' ' << d;
      }
    }
  }
}

// Pixels with runs of opaque, transparent and mixed ones, as images have them.
Bytes patchyPixels(std::mt19937 &random, size_t pixels, size_t components) {
  Bytes bytes = test::randomPixels(random, pixels, components);
  for (size_t i = 0; i < pixels;) {
    const size_t run = std::min<size_t>(1 + random() % 40, pixels - i);
    const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(i * components);
    const auto kind = random() % 4;
    if (kind == 0) std::fill(begin, begin + static_cast<std::ptrdiff_t>(run * components), uint8_t{0});
    for (size_t j = i; kind == 1 && j < i + run; ++j) bytes[j * components] = 255;
    i += run;
  }
  return bytes;
}

// In the byte order of a surface with alpha last.
Bytes alphaLast(Bytes bytes) {
  for (size_t i = 0; i < bytes.size(); i += 4) std::rotate(&bytes[i], &bytes[i + 1], &bytes[i] + 4);
  return bytes;
}

bool hasAlphaLast(SurfaceLayout layout) {
  return layout == SurfaceLayout::rgba || layout == SurfaceLayout::rgbaPremultiplied ||
         layout == SurfaceLayout::rgbx;
}

TEST(Compose, VectorsGiveTheBytesOfPlainCodeAtEveryWidth) {
  std::mt19937 random(11);
  for (SurfaceLayout layout : kLayouts) {
    for (RowForm form : {sourceForm(layout, false), sourceForm(layout, true)}) {
      const size_t step = layout == SurfaceLayout::gray || layout == SurfaceLayout::alpha ? 1 : 4;
      for (size_t pixels = 0; pixels < 300; ++pixels) {
        const Bytes source = patchyPixels(random, pixels, bytesPerPixel(form));
        Bytes before = patchyPixels(random, pixels, step);
        if (hasAlphaLast(layout)) before = alphaLast(before);
        Bytes expected = before;
        plainComposeRow(layout, form)(source.data(), expected.data(), pixels);
        for (ComposeRow compose : formsOf(layout, form)) {
          Bytes got = before;
          compose(source.data(), got.data(), pixels);
          ASSERT_EQ(got, expected) << "layout " << static_cast<int>(layout) << ", " << pixels << " pixels";
        }
      }
    }
  }
}

TEST(Compose, EveryColorLayoutHoldsTheSameColors) {
  std::mt19937 random(12);
  const Bytes source = patchyPixels(random, 500, 4), before = patchyPixels(random, 500, 4);
  const auto compose = [&](SurfaceLayout layout, Bytes destination) {
    composeRowFor(layout, RowForm::argbPremultiplied)(source.data(), destination.data(), 500);
    return destination;
  };
  EXPECT_EQ(compose(SurfaceLayout::rgbaPremultiplied, alphaLast(before)),
            alphaLast(compose(SurfaceLayout::argbPremultiplied, before)));
  EXPECT_EQ(compose(SurfaceLayout::rgba, alphaLast(before)), alphaLast(compose(SurfaceLayout::argb, before)));
  EXPECT_EQ(compose(SurfaceLayout::rgbx, alphaLast(before)), alphaLast(compose(SurfaceLayout::xrgb, before)));
}

TEST(Compose, ASkippedByteBecomesFull) {
  for (SurfaceLayout layout : {SurfaceLayout::xrgb, SurfaceLayout::rgbx}) {
    const Bytes source(4 * 33);  // transparent
    Bytes destination(4 * 33, 7);
    composeRowFor(layout, RowForm::argbPremultiplied)(source.data(), destination.data(), 33);
    const size_t skipped = layout == SurfaceLayout::xrgb ? 0 : 3;
    for (size_t i = 0; i < destination.size(); ++i) ASSERT_EQ(destination[i], i % 4 == skipped ? 255 : 7);
  }
}

// The exact result in doubles, to be met within the steps that alpha leaves to straight colour.
TEST(Compose, StraightSurfacesHoldTheColorDividedByAlpha) {
  std::mt19937 random(13);
  const ComposeRow compose = composeRowFor(SurfaceLayout::argb, RowForm::argbStraight);
  for (int i = 0; i < 200000; ++i) {
    uint8_t s[4], d[4], got[4];
    for (uint8_t &byte : s) byte = static_cast<uint8_t>(random());
    for (uint8_t &byte : d) byte = static_cast<uint8_t>(random());
    std::copy_n(d, 4, got);
    compose(s, got, 1);
    const double sa = s[0] / 255.0, left = d[0] / 255.0 * (1 - sa);
    ASSERT_NEAR(got[0], 255 * (sa + left), 0.5 + 1e-9);
    if (got[0] == 0) continue;
    for (int c = 1; c < 4; ++c) {
      const double exact = (s[c] * sa + d[c] * left) / (sa + left);
      ASSERT_NEAR(got[c], exact, 0.5 + 255 * 2.0 / got[0]) << "pixel " << i;
    }
  }
}

TEST(Compose, StraightPixelsOverNothingAreKeptAsTheyAre) {
  std::mt19937 random(14);
  for (SurfaceLayout layout : {SurfaceLayout::argb, SurfaceLayout::rgba}) {
    Bytes source(4 * 100), destination(4 * 100);
    for (uint8_t &byte : source) byte = static_cast<uint8_t>(random());
    composeRowFor(layout, RowForm::argbStraight)(source.data(), destination.data(), 100);
    EXPECT_EQ(destination, layout == SurfaceLayout::argb ? source : alphaLast(source));
  }
}

TEST(Compose, TransparentPixelsLeaveStraightOnesUntouched) {
  const uint8_t source[] = {0, 9, 9, 9};
  uint8_t destination[] = {3, 200, 7, 99};
  composeRowFor(SurfaceLayout::argb, RowForm::argbStraight)(source, destination, 1);
  EXPECT_EQ(Bytes(destination, destination + 4), (Bytes{3, 200, 7, 99}));
}

TEST(Compose, PremultipliedOverNothingIsTheSource) {
  std::mt19937 random(15);
  const Bytes source = test::randomPixels(random, 77, 4);
  Bytes destination(source.size());
  composeRowFor(SurfaceLayout::argbPremultiplied, RowForm::argbPremultiplied)(source.data(),
                                                                              destination.data(), 77);
  EXPECT_EQ(destination, source);
}

TEST(Compose, ColorStaysWithinAlpha) {
  std::mt19937 random(16);
  const Bytes source = test::randomPixels(random, 5000, 4);
  Bytes destination = test::randomPixels(random, 5000, 4);
  composeRowFor(SurfaceLayout::argbPremultiplied, RowForm::argbPremultiplied)(source.data(),
                                                                              destination.data(), 5000);
  for (size_t i = 0; i < destination.size(); ++i) ASSERT_LE(destination[i], destination[i - i % 4]);
}

TEST(Compose, MoreColorThanAlphaIsHeldNotWrapped) {
  const uint8_t source[] = {10, 250, 250, 250};
  Bytes destination{255, 200, 200, 200};
  for (ComposeRow compose : formsOf(SurfaceLayout::argbPremultiplied, RowForm::argbPremultiplied)) {
    Bytes many, wide;
    for (int i = 0; i < 64; ++i) {
      many.insert(many.end(), source, source + 4);
      wide.insert(wide.end(), destination.begin(), destination.end());
    }
    compose(many.data(), wide.data(), 64);
    for (size_t i = 0; i < wide.size(); ++i) ASSERT_EQ(wide[i], 255);
  }
}

TEST(Compose, AlphaAloneTakesTheSourcesAlpha) {
  const uint8_t source[] = {128, 1, 2, 3, 255, 0, 0, 0, 0, 0, 0, 0};
  uint8_t destination[] = {100, 100, 100};
  composeRowFor(SurfaceLayout::alpha, RowForm::argbPremultiplied)(source, destination, 3);
  EXPECT_EQ(Bytes(destination, destination + 3),
            (Bytes{static_cast<uint8_t>(overByHand(128, 128, 100)), 255, 100}));
}

}  // namespace
}  // namespace cg
