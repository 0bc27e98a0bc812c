// The choice of a kernel for a pixel layout and a mode.
#include <gtest/gtest.h>

#include <limits>
#include <set>

#include "composite/kernels.h"

namespace {

using drav::kBlendModeCount;
using drav::kKernels;

TEST(Selection, EveryModeOfEveryFormatHasItsOwnKernel) {
  std::set<DRAVCFCompositeFunction> seen;
  for (uint32_t mode = 0; mode < kBlendModeCount; ++mode) {
    const auto grey = DRAVCFImageCompositorForParameters(1, kCGImageAlphaNone, mode);
    const auto colour = DRAVCFImageCompositorForParameters(3, kCGImageAlphaNoneSkipFirst, mode);
    const auto alpha = DRAVCFImageCompositorForParameters(3, kCGImageAlphaPremultipliedFirst, mode);
    EXPECT_EQ(grey, kKernels[0][mode]);
    EXPECT_EQ(colour, kKernels[1][mode]);
    EXPECT_EQ(alpha, kKernels[2][mode]);
    seen.insert({grey, colour, alpha});
  }
  EXPECT_EQ(seen.size(), 3 * kBlendModeCount);
  EXPECT_EQ(seen.count(nullptr), 0U);
}

TEST(Selection, ModeThreeOfGreyIsSourceOver) {
  EXPECT_EQ(DRAVCFImageCompositorForParameters(1, 0, 3), &drav::Composite_S_8_SrcOver);
  EXPECT_EQ(DRAVCFImageCompositorForParameters(3, 6, 21), &drav::Composite_RGB_888_SoftLight);
  EXPECT_EQ(DRAVCFImageCompositorForParameters(3, 2, 11), &drav::Composite_ARGB_8888_XOR);
}

TEST(Selection, ModesFromTwentyFourOnHaveNoKernel) {
  for (const uint32_t mode : {24U, 25U, 255U, 256U, std::numeric_limits<uint32_t>::max()}) {
    EXPECT_EQ(DRAVCFImageCompositorForParameters(1, 0, mode), nullptr);
    EXPECT_EQ(DRAVCFImageCompositorForParameters(3, 6, mode), nullptr);
    EXPECT_EQ(DRAVCFImageCompositorForParameters(3, 2, mode), nullptr);
  }
}

TEST(Selection, OtherLayoutsHaveNoKernel) {
  for (uint32_t components = 0; components < 8; ++components)
    for (uint32_t alphaInfo = 0; alphaInfo < 10; ++alphaInfo) {
      const bool known =
          (components == 1 && alphaInfo == 0) || (components == 3 && (alphaInfo == 2 || alphaInfo == 6));
      for (uint32_t mode = 0; mode < 26; ++mode)
        EXPECT_EQ(DRAVCFImageCompositorForParameters(components, alphaInfo, mode) != nullptr,
                  known && mode < 24)
            << components << " components, alpha info " << alphaInfo << ", mode " << mode;
    }
}

}  // namespace
