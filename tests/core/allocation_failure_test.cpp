// Every allocation of every creating or changing operation fails once: the documented result, nothing leaked.
#include <gtest/gtest.h>

#include "core/context.h"
#include "failing_allocator.h"
#include "failing_new.h"
#include "images.h"

namespace {

using namespace test;
using testing_support::forEachFailedAllocation;

const Bytes kPixels{255, 1, 2, 3, 128, 4, 5, 6};

TEST(AllocationFailure, OfEveryCreationGivesNothing) {
  const cf::Ref space = displaySpace();
  forEachFailedAllocation(
      [&](CFAllocatorRef allocator, long) { const cf::Ref image = cf::adopt(DRAVCFImageCreate(allocator)); });
  forEachFailedAllocation([&](CFAllocatorRef allocator, long) { makeARGBImage(2, 1, kPixels, allocator); });
  forEachFailedAllocation([&](CFAllocatorRef allocator, long) {
    const cf::Ref made = cf::adopt(DRAVCFImageCreateWithSize(allocator, CGSizeMake(4, 4), 1));
  });
  forEachFailedAllocation([&](CFAllocatorRef allocator, long) {
    const cf::Ref made = cf::adopt(
        DRAVCFContextCreate(allocator, 2, 2, nullptr, 8, 0, space.get(), kCGImageAlphaPremultipliedFirst));
  });
}

TEST(AllocationFailure, OfACopyGivesNothingAndLeavesTheSource) {
  const cf::Ref source = makeARGBImage(2, 1, kPixels);
  forEachFailedAllocation([&](CFAllocatorRef allocator, long n) {
    const cf::Ref copy = cf::adopt(DRAVCFImageCreateCopy(allocator, source.get()));
    if (copy) {
      EXPECT_EQ(bufferOf(copy.get()), kPixels) << n;
    }
    EXPECT_EQ(bufferOf(source.get()), kPixels);
  });
}

TEST(AllocationFailure, OfACopyOfAPlatformImageNeverGivesOneWithoutPixels) {
  const cf::Ref space = displaySpace();
  const cf::Ref cgImage =
      makeCGImage({2, 1, 8, 32, 8, space.get(), kCGImageAlphaPremultipliedFirst}, kPixels);
  const cf::Ref source = cf::adopt(DRAVCFImageCreateWithImage(nullptr, cgImage.get()));
  forEachFailedAllocation([&](CFAllocatorRef allocator, long n) {
    const cf::Ref copy = cf::adopt(DRAVCFImageCreateCopy(allocator, source.get()));
    if (copy) {
      EXPECT_EQ(bufferOf(copy.get()), kPixels) << n;
    }
  });
}

TEST(AllocationFailure, OfPromotionFromAPlatformImageLeavesItAndNoBuffer) {
  const cf::Ref space = displaySpace();
  const cf::Ref cgImage = makeCGImage({2, 1, 8, 32, 8, space.get(), kCGImageAlphaNoneSkipFirst}, kPixels);
  bool failedOnce = false;
  forEachFailedAllocation([&](CFAllocatorRef allocator, long n) {
    const cf::Ref image = cf::adopt(DRAVCFImageCreateWithImage(allocator, cgImage.get()));
    if (!image) return;
    DRAVCFImagePromoteImage(image.get(), 1, 1);
    if (image->buffer) {
      EXPECT_EQ(bufferOf(image.get()), (Bytes{255, 1, 2, 3, 255, 4, 5, 6})) << n;
      return;
    }
    failedOnce = true;
    EXPECT_EQ(image->cgImage, cgImage.get()) << n;
    EXPECT_EQ(image->width, 0u);
    EXPECT_EQ(image->colorSpace, nullptr);
    EXPECT_EQ(image->alphaInfo, kCGImageAlphaPremultipliedFirst);
  });
  EXPECT_TRUE(failedOnce);
}

TEST(AllocationFailure, OfDrawingFailsThePromotionToo) {
  const cf::Ref space = deviceRGBSpace();
  const cf::Ref cgImage =
      makeCGImage({2, 1, 8, 32, 8, space.get(), kCGImageAlphaLast}, {1, 2, 3, 255, 4, 5, 6, 51});
  bool failed = true;
  int failures = 0;
  for (long n = 1; failed; ++n) {
    const cf::Ref image = cf::adopt(DRAVCFImageCreateWithImage(nullptr, cgImage.get()));
    {
      const testing_support::FailingNew failing(n);
      DRAVCFImagePromoteImage(image.get(), 1, 1);
      failed = failing.failed();
    }
    if (image->buffer) {
      EXPECT_EQ(bufferOf(image.get()), (Bytes{255, 1, 2, 3, 51, 1, 1, 1})) << n;
      continue;
    }
    ++failures;
    EXPECT_EQ(image->cgImage, cgImage.get()) << n;
  }
  EXPECT_GT(failures, 0);
}

TEST(AllocationFailure, OfPromotionFromABufferLosesThePixelsOnlyWithoutAPlatformImage) {
  forEachFailedAllocation([&](CFAllocatorRef allocator, long n) {
    const cf::Ref image = makeGrayImage(2, 1, {10, 20}, allocator);
    if (!image) return;
    DRAVCFImagePromoteImage(image.get(), 1, 0);
    if (image->buffer) {
      EXPECT_EQ(bufferOf(image.get()), (Bytes{255, 10, 10, 10, 255, 20, 20, 20})) << n;
    } else {
      EXPECT_EQ(DRAVCFImageGetWidth(image.get()), image->cgImage ? 2u : 0u) << n;
    }
  });
}

TEST(AllocationFailure, OfThePlatformImageGivesNoneAndKeepsTheBuffer) {
  forEachFailedAllocation([&](CFAllocatorRef allocator, long n) {
    const cf::Ref image = makeARGBImage(2, 1, kPixels, allocator);
    if (!image) return;
    if (!DRAVCFImageGetCGImage(image.get())) {
      EXPECT_EQ(bufferOf(image.get()), kPixels) << n;
    }
  });
}

TEST(AllocationFailure, OfUnificationLeavesNoHalfPromotedImage) {
  forEachFailedAllocation([&](CFAllocatorRef allocator, long) {
    const cf::Ref a = makeGrayImage(2, 1, {10, 20}, allocator);
    const cf::Ref b = a ? makeARGBImage(2, 1, kPixels, allocator) : nullptr;
    if (!b) return;
    DRAVCFImageUnifyImageFormats(a.get(), b.get());
    for (const auto &image : {a, b}) {
      if (image->buffer) {
        EXPECT_TRUE(drav::bufferIsWhole(image.get()));
      }
    }
  });
}

TEST(AllocationFailure, OfTheSharedContextGivesNone) {
  forEachFailedAllocation([&](CFAllocatorRef allocator, long) {
    const cf::Ref image = makeARGBImage(2, 1, kPixels, allocator);
    if (!image) return;
    const bool made = DRAVCFImageRetainContext(image.get()) != nullptr;
    EXPECT_EQ(image->context != nullptr, made);
    if (made) DRAVCFImageReleaseContext(image.get());
  });
}

TEST(AllocationFailure, OfAContextsCopyGivesNothing) {
  forEachFailedAllocation([&](CFAllocatorRef allocator, long) {
    const cf::Ref context = cf::adopt(
        DRAVCFContextCreate(nullptr, 2, 2, nullptr, 8, 0, nullptr, kCGImageAlphaPremultipliedFirst));
    const cf::Ref<CFTypeRef> copy = cf::adopt(DRAVCFContextCopy(allocator, context.get()));
  });
}

TEST(AllocationFailure, OfADescriptionGivesNone) {
  const cf::Ref probe = makeARGBImage(2, 1, kPixels);
  forEachFailedAllocation([&](CFAllocatorRef allocator, long) {
    const cf::Ref image = makeARGBImage(2, 1, kPixels, allocator);
    const cf::Ref made = cf::adopt(image ? DRAVCFImageCopyDebugDesc(image.get()) : nullptr);
  });
}

}  // namespace
