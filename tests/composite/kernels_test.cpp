#include "composite/kernels.h"

#include <gtest/gtest.h>

#include "composite/blend_model.h"
#include "composite/blend_support.h"

namespace {

using namespace drav;
using drav_test::blendName;
using drav_test::kThinning;
using drav_test::Pixel;

constexpr size_t kGrey = 0, kColour = 1, kAlpha = 2;

uint8_t grey(DRAVCFCompositeFunction kernel, uint8_t s, uint8_t d) {
  kernel(&s, &d);
  return d;
}
Pixel combined(DRAVCFCompositeFunction kernel, const Pixel &s, Pixel d) {
  kernel(s.data(), d.data());
  return d;
}

TEST(Kernels, GreyGivesTheModelsByteForEveryPair) {
  for (uint32_t mode = 0; mode < kBlendModeCount; ++mode)
    for (int pair = 0; pair < 65536; ++pair) {
      const auto s = static_cast<uint8_t>(pair >> 8), d = static_cast<uint8_t>(pair & 255);
      ASSERT_EQ(grey(kKernels[kGrey][mode], s, d), drav_test::modelOpaque(mode, s, d))
          << blendName(kGrey, mode) << " of " << int{s} << " onto " << int{d};
    }
}

TEST(Kernels, EveryColourChannelGivesTheModelsByteForEveryPair) {
  for (uint32_t mode = 0; mode < kBlendModeCount; ++mode)
    for (int pair = 0; pair < 65536; ++pair) {
      const auto s = static_cast<uint8_t>(pair >> 8), d = static_cast<uint8_t>(pair & 255);
      const Pixel source{1, s, d, 128}, destination{2, d, s, s};
      const Pixel expected{2, drav_test::modelOpaque(mode, s, d), drav_test::modelOpaque(mode, d, s),
                           drav_test::modelOpaque(mode, 128, s)};
      ASSERT_EQ(combined(kKernels[kColour][mode], source, destination), expected)
          << blendName(kColour, mode) << " of " << int{s} << " onto " << int{d};
    }
}

TEST(Kernels, ColourWithoutAlphaNeitherReadsNorWritesByteZero) {
  for (size_t mode = 0; mode < kBlendModeCount; ++mode)
    for (int ignored = 0; ignored < 256; ++ignored) {
      const auto byte = static_cast<uint8_t>(ignored);
      const Pixel one = combined(kKernels[kColour][mode], {byte, 10, 120, 240}, {7, 200, 90, 30});
      const Pixel other = combined(kKernels[kColour][mode], {3, 10, 120, 240}, {byte, 200, 90, 30});
      EXPECT_EQ(one[0], 7) << blendName(kColour, mode);
      EXPECT_EQ(other[0], byte) << blendName(kColour, mode);
      EXPECT_TRUE(std::equal(one.begin() + 1, one.end(), other.begin() + 1)) << blendName(kColour, mode);
    }
}

// Alphas and colours in steps that hit 0, 255 and both sides of every half.
constexpr int kGrid[] = {0,   1,   2,   3,   15,  31,  32,  50,  63,  64,  85,  100, 126,
                         127, 128, 129, 150, 170, 191, 192, 200, 223, 240, 253, 254, 255};

TEST(Kernels, AlphaGivesTheModelsPixelOnADenseGridOfValidPixels) {
  for (uint32_t mode = 0; mode < kBlendModeCount; ++mode)
    for (const int sa : kGrid)
      for (const int da : kGrid)
        for (const int sc : kGrid)
          for (const int dc : kGrid) {
            if (sc > sa || dc > da) continue;
            const auto s = static_cast<uint8_t>(sc), d = static_cast<uint8_t>(dc);
            const Pixel source{static_cast<uint8_t>(sa), s, 0, static_cast<uint8_t>(sa)};
            const Pixel destination{static_cast<uint8_t>(da), d, d, 0};
            ASSERT_EQ(combined(kKernels[kAlpha][mode], source, destination),
                      drav_test::modelARGB(mode, source, destination))
                << blendName(kAlpha, mode) << " sa " << sa << " sc " << sc << " da " << da << " dc " << dc;
          }
}

TEST(Kernels, AlphaGivesTheModelsPixelForRandomPixelsValidAndInvalid) {
  const size_t count = 200000 / kThinning;
  const auto s = drav_test::randomPixels(count, drav_test::Pixels::any, 1);
  const auto d = drav_test::randomPixels(count, drav_test::Pixels::any, 2);
  for (uint32_t mode = 0; mode < kBlendModeCount; ++mode)
    for (size_t i = 0; i < s.size(); i += 4) {
      const Pixel source{s[i], s[i + 1], s[i + 2], s[i + 3]};
      const Pixel destination{d[i], d[i + 1], d[i + 2], d[i + 3]};
      ASSERT_EQ(combined(kKernels[kAlpha][mode], source, destination),
                drav_test::modelARGB(mode, source, destination))
          << blendName(kAlpha, mode) << " pixel " << i / 4;
    }
}

TEST(Kernels, GreyClearedIsWhite) {
  for (const auto kernel :
       {&Composite_S_8_Clear, &Composite_S_8_SrcOut, &Composite_S_8_DestOut, &Composite_S_8_XOR})
    EXPECT_EQ(grey(kernel, 10, 20), 255);
}

TEST(Kernels, GreyKeepsTheDestinationWhereItIsOnTop) {
  for (const auto kernel :
       {&Composite_S_8_CopyDest, &Composite_S_8_DestOver, &Composite_S_8_DestIn, &Composite_S_8_DestAtop})
    EXPECT_EQ(grey(kernel, 10, 20), 20);
}

TEST(Kernels, GreyCopiesTheSourceWhereItIsOnTop) {
  for (const auto kernel :
       {&Composite_S_8_CopySrc, &Composite_S_8_SrcOver, &Composite_S_8_SrcIn, &Composite_S_8_SrcAtop})
    EXPECT_EQ(grey(kernel, 10, 20), 10);
}

TEST(Kernels, AlphaClearMakesAllFourBytesZero) {
  EXPECT_EQ(combined(Composite_ARGB_8888_Clear, {255, 1, 2, 3}, {9, 9, 9, 9}), (Pixel{0, 0, 0, 0}));
}

TEST(Kernels, GreyValuesWorkedOutByHand) {
  EXPECT_EQ(grey(Composite_S_8_Plus, 200, 100), 255);
  EXPECT_EQ(grey(Composite_S_8_Multiply, 255, 128), 128);
  EXPECT_EQ(grey(Composite_S_8_Screen, 0, 0), 0);
  EXPECT_EQ(grey(Composite_S_8_Overlay, 255, 64), 128);
  EXPECT_EQ(grey(Composite_S_8_ColorBurn, 200, 100), 57);
}

TEST(Kernels, SoftLightBrightensForDarkSources) { EXPECT_EQ(grey(Composite_S_8_SoftLight, 0, 128), 192); }

TEST(Kernels, SourceOverOfATransparentSourceLeavesTheDestination) {
  const Pixel destination{200, 100, 50, 200};
  EXPECT_EQ(combined(Composite_ARGB_8888_SrcOver, {0, 0, 0, 0}, destination), destination);
}

TEST(Kernels, SourceOverOfHalfRedOntoWhite) {
  EXPECT_EQ(combined(Composite_ARGB_8888_SrcOver, {128, 128, 0, 0}, {255, 255, 255, 255}),
            (Pixel{255, 255, 127, 127}));
}

TEST(Kernels, PorterDuffResultsOfInvalidPixelsWrap) {
  // 200 + 200 * 255 / 255 = 400, and 400 - 256 = 144.
  EXPECT_EQ(combined(Composite_ARGB_8888_SrcOver, {0, 200, 0, 0}, {255, 200, 0, 0}), (Pixel{255, 144, 0, 0}));
}

TEST(Kernels, BlendResultsOfInvalidPixelsClamp) {
  EXPECT_EQ(combined(Composite_ARGB_8888_Multiply, {0, 200, 0, 0}, {0, 200, 0, 0}), (Pixel{0, 255, 0, 0}));
}

TEST(Kernels, DivisionByZeroInColorBurnOfAnInvalidPixelClampsToWhite) {
  EXPECT_EQ(combined(Composite_ARGB_8888_ColorBurn, {255, 0, 0, 0}, {100, 200, 0, 0}),
            (Pixel{255, 255, 0, 0}));
}

TEST(Kernels, ColorDodgeOfATransparentSourceDividesNothing) {
  EXPECT_EQ(combined(Composite_ARGB_8888_ColorDodge, {0, 0, 0, 0}, {255, 10, 20, 30}),
            (Pixel{255, 10, 20, 30}));
}

TEST(Kernels, SoftLightWithFullAlphasIsTheOpaqueFormula) {
  for (int pair = 0; pair < 65536; ++pair) {
    const auto s = static_cast<uint8_t>(pair >> 8), d = static_cast<uint8_t>(pair & 255);
    ASSERT_EQ(combined(Composite_ARGB_8888_SoftLight, {255, s, 0, 0}, {255, d, 0, 0})[1],
              grey(Composite_S_8_SoftLight, s, d));
  }
}

TEST(Kernels, KernelMayReadAndWriteTheSamePixel) {
  for (size_t mode = 0; mode < kBlendModeCount; ++mode) {
    Pixel pixel{200, 150, 100, 50};
    const Pixel apart = combined(kKernels[kAlpha][mode], pixel, pixel);
    kKernels[kAlpha][mode](pixel.data(), pixel.data());
    EXPECT_EQ(pixel, apart) << blendName(kAlpha, mode);
  }
}

TEST(Kernels, PlaceOfAKernelIsWhereTheTableHasIt) {
  for (size_t format = 0; format < kPixelFormatCount; ++format)
    for (size_t mode = 0; mode < kBlendModeCount; ++mode) {
      const KernelPlace place = placeOfKernel(kKernels[format][mode]);
      EXPECT_TRUE(place.ours);
      EXPECT_EQ(static_cast<size_t>(place.format), format);
      EXPECT_EQ(place.mode, mode);
    }
}

TEST(Kernels, AFunctionOfTheCallersHasNoPlace) {
  EXPECT_FALSE(placeOfKernel([](const uint8_t *, uint8_t *) {}).ours);
}

}  // namespace
