// Every operation on images whose buffers end at a page that nobody may touch.
#include <gtest/gtest.h>

#include "core/images.h"
#include "guarded_memory.h"

namespace {

using namespace test;

using InPlace = void (*)(DRAVCFImageRef);
using Copy = DRAVCFImageRef (*)(CFAllocatorRef, DRAVCFImageRef);

constexpr InPlace kInPlace[] = {
    DRAVCFImageConvertToGrayscale,
    DRAVCFImageConvertToColor,
    DRAVCFImageMakeGrayscale,
    DRAVCFImageAddAlphaChannel,
    DRAVCFImageRemoveAlphaChannel,
    DRAVCFImageInvert,
    DRAVCFImageClear,
    DRAVCFImageFlipVertically,
    [](DRAVCFImageRef image) { DRAVCFImageIsOpaque(image); },
    [](DRAVCFImageRef image) { DRAVCFImageCropToRect(image, CGRectMake(1, 1, 99, 99)); },
    [](DRAVCFImageRef image) { DRAVCFImageScaleToSize(image, CGSizeMake(4, 7)); },
    [](DRAVCFImageRef image) { DRAVCFImageScaleToSize(image, CGSizeMake(16, 1)); },
};
constexpr Copy kCopies[] = {
    DRAVCFImageCopyOpaqueImage,
    DRAVCFImageCopyPremultipliedOpaqueImage,
    DRAVCFImageCopyAlphaChannel,
    [](CFAllocatorRef allocator, DRAVCFImageRef image) {
      return DRAVCFImageCreateWithImageAndMask(allocator, image, image, 0);
    },
};

struct Form {
  size_t bitsPerPixel;
  bool isGray;
  CGImageAlphaInfo alpha;
};
constexpr Form kForms[] = {{8, true, kCGImageAlphaNone},
                           {8, true, kCGImageAlphaOnly},
                           {16, true, kCGImageAlphaLast},
                           {24, false, kCGImageAlphaNone},
                           {32, false, kCGImageAlphaNoneSkipFirst},
                           {32, false, kCGImageAlphaNoneSkipLast},
                           {32, false, kCGImageAlphaPremultipliedFirst},
                           {32, false, kCGImageAlphaPremultipliedLast},
                           {32, false, kCGImageAlphaFirst},
                           {8, false, kCGImageAlphaPremultipliedFirst}};

// Whole multiples of 16 bytes, which end exactly at the guard.
constexpr size_t kWidths[] = {1, 4, 16}, kHeight = 16;

TEST(Guarded, NoOperationTouchesAByteBesideTheBuffer) {
  const testing_support::GuardedAllocator guarded;
  for (const Form &form : kForms)
    for (const size_t width : kWidths) {
      const Bytes bytes(width * kHeight * form.bitsPerPixel / 8, 3);
      const cf::Ref space = form.isGray ? graySpace() : displaySpace();
      const auto make = [&] {
        return makeBufferImage(width, kHeight, form.bitsPerPixel, space.get(), form.alpha, bytes,
                               guarded.get());
      };
      for (const InPlace operation : kInPlace) operation(make().get());
      for (const Copy copy : kCopies) {
        const cf::Ref image = make();
        const cf::Ref made = cf::adopt(copy(guarded.get(), image.get()));
        EXPECT_EQ(bufferOf(image.get()), bytes) << form.bitsPerPixel << " bits, alpha " << form.alpha;
        if (made) {
          EXPECT_TRUE(drav::bufferIsWhole(made.get()));
        }
      }
    }
}

TEST(Guarded, NoOperationLeavesABufferShorterThanItsRowsClaim) {
  // Rows of 4 bytes that claim four pixels of 4 bytes each.
  const testing_support::GuardedAllocator guarded;
  const Bytes bytes(16, 255);
  for (const auto alpha : {kCGImageAlphaNoneSkipFirst, kCGImageAlphaPremultipliedFirst}) {
    const auto make = [&] {
      return cf::adopt(DRAVCFImageCreateWithBuffer(guarded.get(), bytes.data(), 4, 4, 8, 32, 4,
                                                   displaySpace().get(), alpha));
    };
    for (const InPlace operation : kInPlace) operation(make().get());
    for (const Copy copy : kCopies) {
      const cf::Ref image = make();
      const cf::Ref made = cf::adopt(copy(guarded.get(), image.get()));
    }
    EXPECT_EQ(DRAVCFImageIsOpaque(make().get()), 1);
    EXPECT_EQ(DRAVCFImageCopyAlphaChannel(guarded.get(), make().get()), nullptr);
    EXPECT_EQ(DRAVCFImageCreateWithImageAndMask(guarded.get(), make().get(), make().get(), 1), nullptr);
  }
}

}  // namespace
