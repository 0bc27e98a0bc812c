// The walk over two areas of pixels, by rows or pixel by pixel.
#include <gtest/gtest.h>

#include <cstring>

#include "composite/blend_support.h"
#include "composite/rows.h"

namespace {

using namespace drav;
using drav_test::blendName;
using Bytes = std::vector<uint8_t>;

struct Area {
  size_t width, height, sourceRowBytes, destinationRowBytes, pixelBytes;
};

void walk(DRAVCFCompositeFunction kernel, const uint8_t *source, uint8_t *destination, const Area &area) {
  for (size_t y = 0; y < area.height; ++y)
    for (size_t x = 0; x < area.width; ++x)
      kernel(source + y * area.sourceRowBytes + x * area.pixelBytes,
             destination + y * area.destinationRowBytes + x * area.pixelBytes);
}
void compose(DRAVCFCompositeFunction kernel, const uint8_t *source, uint8_t *destination, const Area &area) {
  compositeRows(kernel, source, area.sourceRowBytes, destination, area.destinationRowBytes, area.width,
                area.height, area.pixelBytes);
}

Bytes pixels(size_t count, uint64_t seed) {
  return drav_test::randomPixels(count, drav_test::Pixels::valid, seed);
}

TEST(CompositeRows, PaddedRowsGiveWhatTheWalkGivesAndKeepTheirPadding) {
  for (size_t format = 0; format < kPixelFormatCount; ++format)
    for (size_t mode = 0; mode < kBlendModeCount; ++mode) {
      const size_t step = bytesPerPixel(static_cast<PixelFormat>(format));
      const Area area{37, 5, 37 * step + 11, 37 * step + 24, step};
      const Bytes source = pixels(400, 1);
      Bytes made = pixels(400, 2), expected = made;
      walk(kKernels[format][mode], source.data(), expected.data(), area);
      compose(kKernels[format][mode], source.data(), made.data(), area);
      EXPECT_EQ(made, expected) << blendName(format, mode);
    }
}

TEST(CompositeRows, RowsWithoutGapsGiveWhatTheWalkGives) {
  const Area area{33, 7, 132, 132, 4};
  const Bytes source = pixels(33 * 7, 3);
  Bytes made = pixels(33 * 7, 4), expected = made;
  walk(Composite_ARGB_8888_Overlay, source.data(), expected.data(), area);
  compose(Composite_ARGB_8888_Overlay, source.data(), made.data(), area);
  EXPECT_EQ(made, expected);
}

// The source lies `shift` bytes before or behind the destination, in one buffer.
void expectTheWalksBytesWhenShifted(size_t format, size_t mode, ptrdiff_t shift, const Area &area) {
  Bytes made = pixels(600, 5), expected = made;
  const ptrdiff_t middle = 800;
  walk(kKernels[format][mode], expected.data() + middle + shift, expected.data() + middle, area);
  compose(kKernels[format][mode], made.data() + middle + shift, made.data() + middle, area);
  EXPECT_EQ(made, expected) << blendName(format, mode) << " shifted by " << shift;
}

TEST(CompositeRows, OverlappingAreasAreCombinedInTheOrderOfTheirAddresses) {
  for (const size_t format : {size_t{0}, size_t{2}})
    for (const size_t mode : {size_t{kDRAVCFBlendModeCopySrc}, size_t{kDRAVCFBlendModeSrcOver},
                              size_t{kDRAVCFBlendModePlus}, size_t{kDRAVCFBlendModeSoftLight}}) {
      const size_t step = bytesPerPixel(static_cast<PixelFormat>(format)), row = 40 * step;
      for (const ptrdiff_t shift : {0, -4, 4, -1, 1, -64, 64, -200, 200, -800, 800}) {
        expectTheWalksBytesWhenShifted(format, mode, shift, {40, 5, row, row, step});
        expectTheWalksBytesWhenShifted(format, mode, shift, {33, 4, row, row, step});
      }
    }
}

TEST(CompositeRows, ACallersFunctionIsCalledForEachPixelInOrder) {
  static std::vector<std::pair<const uint8_t *, uint8_t *>> calls;
  calls.clear();
  const Bytes source(64);
  Bytes destination(64);
  compose([](const uint8_t *s, uint8_t *d) { calls.emplace_back(s, d); }, source.data(), destination.data(),
          {2, 2, 10, 16, 3});
  const uint8_t *s = source.data();
  uint8_t *d = destination.data();
  EXPECT_EQ(calls, (std::vector<std::pair<const uint8_t *, uint8_t *>>{
                       {s, d}, {s + 3, d + 3}, {s + 10, d + 16}, {s + 13, d + 19}}));
}

TEST(CompositeRows, AnotherStepThanTheFormatsGoesPixelByPixel) {
  const Area area{9, 3, 70, 70, 6};
  const Bytes source = pixels(60, 6);
  Bytes made = pixels(60, 7), expected = made;
  walk(Composite_ARGB_8888_Screen, source.data(), expected.data(), area);
  compose(Composite_ARGB_8888_Screen, source.data(), made.data(), area);
  EXPECT_EQ(made, expected);
}

TEST(CompositeRows, NoWidthOrNoHeightTouchesNothing) {
  const Bytes source(16), before(16, 7);
  Bytes destination = before;
  compose(Composite_S_8_Clear, source.data(), destination.data(), {0, 2, 8, 8, 1});
  compose(Composite_S_8_Clear, source.data(), destination.data(), {5, 0, 8, 8, 1});
  EXPECT_EQ(destination, before);
}

TEST(RowForKernel, OnlyOurOwnKernelsHaveOne) {
  EXPECT_EQ(rowForKernel([](const uint8_t *, uint8_t *) {}), nullptr);
  EXPECT_EQ(rowForKernel(Composite_ARGB_8888_Plus), rowTable().rows[2][kDRAVCFBlendModePlus]);
}

}  // namespace
