// Compositing, tiling and geometry on images of odd sizes whose buffers begin or end at a page that nobody
// may touch, to the byte.
#include <gtest/gtest.h>

#include <string>

#include "composite/blend_support.h"
#include "core/images.h"
#include "guarded_memory.h"

namespace {

using namespace test;
using testing_support::GuardedAllocator;
using Edge = GuardedAllocator::Edge;

constexpr size_t kWidths[] = {1, 3, 17, 33}, kHeights[] = {1, 5};

cf::Ref<DRAVCFImageRef> makeImage(size_t format, size_t width, size_t height, uint64_t seed,
                                  CFAllocatorRef allocator) {
  Bytes bytes = drav_test::randomPixels(width * height, drav_test::Pixels::valid, seed);
  if (format == 0) {
    bytes.resize(width * height);
    return makeGrayImage(width, height, bytes, allocator);
  }
  return makeBufferImage(width, height, 32, displaySpace().get(),
                         format == 1 ? kCGImageAlphaNoneSkipFirst : kCGImageAlphaPremultipliedFirst, bytes,
                         allocator);
}

struct Pair {
  cf::Ref<DRAVCFImageRef> source, destination;
};

// Does the same to images between guard pages and to others. The bytes have to be the same.
template <class Operation>
void expectSameBetweenGuards(const std::string &what, Operation operation) {
  for (const Edge edge : {Edge::first, Edge::last})
    for (size_t format = 0; format < 3; ++format)
      for (const size_t width : kWidths)
        for (const size_t height : kHeights) {
          const GuardedAllocator guarded(edge, format == 0 ? 1 : 4);
          const auto result = [&](CFAllocatorRef allocator) {
            Pair images{makeImage(format, width, height, 1, allocator),
                        makeImage(format, width + 2, height + 1, 2, allocator)};
            operation(images);
            return bufferOf(images.destination.get());
          };
          EXPECT_EQ(result(guarded.get()), result(nullptr))
              << what << ", " << drav_test::kFormatNames[format] << ", " << width << " x " << height;
        }
}

CGRect rect(size_t width, size_t height) {
  return CGRectMake(0, 0, static_cast<CGFloat>(width), static_cast<CGFloat>(height));
}

TEST(BetweenGuards, CompositingReadsAndWritesItsPixelsOnly) {
  for (uint32_t mode = 0; mode < drav::kBlendModeCount; ++mode)
    expectSameBetweenGuards(drav_test::kModeNames[mode], [&](const Pair &images) {
      const CGRect from = rect(images.source->width, images.source->height);
      const CGRect to = CGRectOffset(from, 2, 1);
      DRAVCFImageComposite(images.source.get(), images.destination.get(), &from, &to, 1, mode);
    });
}

TEST(BetweenGuards, CompositingAtAnotherSizeDoes) {
  expectSameBetweenGuards("whole onto whole", [](const Pair &images) {
    DRAVCFImageComposite(images.source.get(), images.destination.get(), nullptr, nullptr, 1,
                         kDRAVCFBlendModeSrcOver);
  });
}

TEST(BetweenGuards, TilingDoes) {
  for (uint32_t corner = 0; corner < 4; ++corner)
    expectSameBetweenGuards("tiles", [&](const Pair &images) {
      DRAVCFImageTile(images.source.get(), images.destination.get(), rect(1 + images.source->width / 2, 1),
                      rect(images.destination->width, images.destination->height), kDRAVCFBlendModeMultiply,
                      corner);
    });
}

TEST(BetweenGuards, GeometryDoes) {
  expectSameBetweenGuards("flipped",
                          [](const Pair &images) { DRAVCFImageFlipVertically(images.destination.get()); });
  expectSameBetweenGuards("cropped", [](const Pair &images) {
    DRAVCFImageCropToRect(images.destination.get(), CGRectMake(1, 1, 100, 100));
  });
  for (const CGFloat scale : {0.3F, 0.5F, 2.0F, 2.7F})
    expectSameBetweenGuards("scaled", [&](const Pair &images) {
      const DRAVCFImageRef image = images.destination.get();
      DRAVCFImageScaleToSize(image, CGSizeMake(scale * static_cast<CGFloat>(image->width) + 1,
                                               scale * static_cast<CGFloat>(image->height) + 1));
    });
}

}  // namespace
