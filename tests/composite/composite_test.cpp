// Composite and tile of whole images: known cases by hand, and thousands of random ones against the
// plain form.
#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "core/images.h"
#include "failing_allocator.h"
#include "guarded_memory.h"
#include "plain_composite.h"

namespace {

using namespace test;

#if defined(__SANITIZE_ADDRESS__)
constexpr int kCases = 1500;
#else
constexpr int kCases = 10000;
#endif

enum class Kind {
  gray,
  rgb,
  argb,
  rgbaLast,
  paddedARGB,
  platformARGB,
  platformGray,
  paddedGray,
  skipLast,
  straightARGB,
  deviceARGB,
  deviceRGB,
  cmyk,
  platformCMYK
};
constexpr int kKinds = 14;

class Random {
 public:
  explicit Random(unsigned seed) : engine_(seed) {}
  int upTo(int most) { return static_cast<int>(engine_() % static_cast<unsigned>(most + 1)); }
  int between(int least, int most) { return least + upTo(most - least); }
  uint8_t byte() { return static_cast<uint8_t>(engine_()); }
  float place() {
    return static_cast<float>(between(-24, 64)) + (upTo(3) == 0 ? 0.25f * static_cast<float>(upTo(3)) : 0.0f);
  }
  CGRect rect() {
    const float width = static_cast<float>(between(-20, 40)), height = static_cast<float>(between(-20, 40));
    return CGRectMake(place(), place(), width, height);
  }

 private:
  std::mt19937 engine_;
};

// Premultiplied pixels with alpha first.
Bytes premultipliedPixels(Random &random, size_t count) {
  Bytes pixels;
  for (size_t i = 0; i < count; ++i) {
    const uint8_t alpha = random.upTo(3) == 0 ? uint8_t{255} : random.byte();
    pixels.push_back(alpha);
    for (int c = 0; c < 3; ++c) pixels.push_back(static_cast<uint8_t>(random.upTo(alpha)));
  }
  return pixels;
}

Bytes anyBytes(Random &random, size_t count) {
  Bytes bytes(count);
  for (uint8_t &byte : bytes) byte = random.byte();
  return bytes;
}

cf::Ref<DRAVCFImageRef> makeImage(Random &random, Kind kind, size_t width, size_t height,
                                  CFAllocatorRef allocator = nullptr) {
  const size_t count = width * height;
  const cf::Ref display = displaySpace();
  const cf::Ref cmykSpace = cf::adopt(CGColorSpaceCreateDeviceCMYK());
  switch (kind) {
    case Kind::gray:
      return makeGrayImage(width, height, anyBytes(random, count), allocator);
    case Kind::rgb:
      return makeBufferImage(width, height, 32, display.get(), kCGImageAlphaNoneSkipFirst,
                             anyBytes(random, 4 * count), allocator);
    case Kind::argb:
      return makeARGBImage(width, height, premultipliedPixels(random, count), allocator);
    case Kind::rgbaLast: {
      Bytes pixels = premultipliedPixels(random, count);
      for (size_t i = 0; i < count; ++i) std::rotate(&pixels[4 * i], &pixels[4 * i + 1], &pixels[4 * i] + 4);
      return makeBufferImage(width, height, 32, display.get(), kCGImageAlphaPremultipliedLast, pixels,
                             allocator);
    }
    case Kind::paddedARGB: {
      const size_t row = 4 * width + 12;
      Bytes padded(row * height, 0);
      for (size_t y = 0; y < height; ++y) {
        const Bytes pixels = premultipliedPixels(random, width);
        std::copy(pixels.begin(), pixels.end(), padded.begin() + static_cast<long>(y * row));
      }
      return cf::adopt(DRAVCFImageCreateWithBuffer(allocator, padded.data(), width, height, 8, 32, row,
                                                   display.get(), kCGImageAlphaPremultipliedFirst));
    }
    case Kind::platformARGB: {
      const cf::Ref cgImage =
          makeCGImage({width, height, 8, 32, 4 * width, display.get(), kCGImageAlphaPremultipliedFirst},
                      premultipliedPixels(random, count));
      return cf::adopt(DRAVCFImageCreateWithImage(allocator, cgImage.get()));
    }
    case Kind::platformGray: {
      const cf::Ref space = graySpace();
      const cf::Ref cgImage =
          makeCGImage({width, height, 8, 8, width, space.get(), kCGImageAlphaNone}, anyBytes(random, count));
      return cf::adopt(DRAVCFImageCreateWithImage(allocator, cgImage.get()));
    }
    case Kind::paddedGray: {
      const Bytes padded = anyBytes(random, (width + 5) * height);
      return cf::adopt(DRAVCFImageCreateWithBuffer(allocator, padded.data(), width, height, 8, 8, width + 5,
                                                   graySpace().get(), kCGImageAlphaNone));
    }
    case Kind::skipLast:
      return makeBufferImage(width, height, 32, display.get(), kCGImageAlphaNoneSkipLast,
                             anyBytes(random, 4 * count), allocator);
    case Kind::straightARGB:
      return makeBufferImage(width, height, 32, display.get(), kCGImageAlphaFirst,
                             anyBytes(random, 4 * count), allocator);
    case Kind::deviceARGB:
      return makeBufferImage(width, height, 32, deviceRGBSpace().get(), kCGImageAlphaPremultipliedFirst,
                             premultipliedPixels(random, count), allocator);
    case Kind::deviceRGB:
      return makeBufferImage(width, height, 32, deviceRGBSpace().get(), kCGImageAlphaNoneSkipFirst,
                             anyBytes(random, 4 * count), allocator);
    case Kind::cmyk:
      return makeBufferImage(width, height, 32, cmykSpace.get(), kCGImageAlphaNone,
                             anyBytes(random, 4 * count), allocator);
    case Kind::platformCMYK: {
      const cf::Ref cgImage = makeCGImage(
          {width, height, 8, 32, 4 * width, cmykSpace.get(), kCGImageAlphaNone}, anyBytes(random, 4 * count));
      return cf::adopt(DRAVCFImageCreateWithImage(allocator, cgImage.get()));
    }
  }
  return nullptr;
}

// A second image of the same content and form.
cf::Ref<DRAVCFImageRef> twin(DRAVCFImageRef image) {
  if (!image->buffer) return cf::adopt(DRAVCFImageCreateWithImage(nullptr, image->cgImage));
  return cf::adopt(DRAVCFImageCreateWithBuffer(nullptr, image->buffer, image->width, image->height,
                                               image->bitsPerComponent, image->bitsPerPixel,
                                               image->bytesPerRow, image->colorSpace, image->alphaInfo));
}

void expectSame(DRAVCFImageRef found, DRAVCFImageRef expected) {
  EXPECT_EQ(found->alphaInfo, expected->alphaInfo);
  EXPECT_EQ(found->bitsPerPixel, expected->bitsPerPixel);
  EXPECT_EQ(found->bytesPerRow, expected->bytesPerRow);
  EXPECT_EQ(found->cgImage != nullptr, expected->cgImage != nullptr);
  const Bytes a = bufferOf(found), b = bufferOf(expected);
  const auto at = std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin();
  EXPECT_EQ(a == b, true) << "from byte " << at << " of " << a.size() << " in rows of " << found->bytesPerRow
                          << " found " << (a == b ? 0 : a[static_cast<size_t>(at)]) << " not "
                          << (a == b ? 0 : b[static_cast<size_t>(at)]);
}

struct Pair {
  cf::Ref<DRAVCFImageRef> source, destination, expected;
};

Pair randomPair(Random &random) {
  Pair pair;
  pair.source =
      makeImage(random, static_cast<Kind>(random.upTo(kKinds - 1)),
                static_cast<size_t>(random.between(1, 40)), static_cast<size_t>(random.between(1, 40)));
  pair.destination =
      makeImage(random, static_cast<Kind>(random.upTo(kKinds - 1)),
                static_cast<size_t>(random.between(1, 40)), static_cast<size_t>(random.between(1, 40)));
  pair.expected = twin(pair.destination.get());
  return pair;
}

TEST(Composite, OfRandomImagesGivesTheBytesOfThePlainForm) {
  for (int i = 0; i < kCases; ++i) {
    Random random(static_cast<unsigned>(i));
    const Pair pair = randomPair(random);
    const Bytes sourceBefore = bufferOf(pair.source.get());
    const auto count = static_cast<uint32_t>(random.between(0, 3));
    std::vector<CGRect> from(3), to(3);
    const bool sameSizes = random.upTo(1) == 0;
    for (int k = 0; k < 3; ++k) {
      from[static_cast<size_t>(k)] = random.rect();
      to[static_cast<size_t>(k)] = random.rect();
      if (sameSizes) to[static_cast<size_t>(k)].size = from[static_cast<size_t>(k)].size;
    }
    const auto mode = static_cast<uint32_t>(random.upTo(24));
    const CGRect *sources = random.upTo(5) == 0 ? nullptr : from.data();
    const CGRect *destinations = random.upTo(5) == 0 ? nullptr : to.data();
    DRAVCFImageComposite(pair.source.get(), pair.destination.get(), sources, destinations, count, mode);
    plainComposite(pair.source.get(), pair.expected.get(), sources, destinations, count, mode);
    expectSame(pair.destination.get(), pair.expected.get());
    EXPECT_EQ(bufferOf(pair.source.get()), sourceBefore) << "the source is never changed";
    if (HasFailure()) FAIL() << "case " << i << " mode " << mode;
  }
}

TEST(Tile, OfRandomImagesGivesTheBytesOfThePlainForm) {
  for (int i = 0; i < kCases; ++i) {
    Random random(static_cast<unsigned>(i) + 77777u);
    const Pair pair = randomPair(random);
    CGRect from = random.rect();
    if (random.upTo(7) == 0) from.size.width += 0.5f;
    if (random.upTo(7) == 0) from.size.height += 0.5f;
    const CGRect to = random.rect();
    const auto mode = static_cast<uint32_t>(random.upTo(24));
    const auto corner = static_cast<uint32_t>(random.upTo(4));
    DRAVCFImageTile(pair.source.get(), pair.destination.get(), from, to, mode, corner);
    plainTile(pair.source.get(), pair.expected.get(), from, to, mode, corner);
    expectSame(pair.destination.get(), pair.expected.get());
    if (HasFailure()) FAIL() << "case " << i << " mode " << mode;
  }
}

TEST(Composite, OfAnImageWithItselfReadsWhatItWasBefore) {
  for (int i = 0; i < 500; ++i) {
    Random random(static_cast<unsigned>(i) + 555u);
    const cf::Ref image = makeImage(random, static_cast<Kind>(random.upTo(kKinds - 1)), 20, 20);
    const cf::Ref expected = twin(image.get());
    const CGRect from = random.rect(), to = {random.rect().origin, from.size};
    const auto mode = static_cast<uint32_t>(random.upTo(23));
    DRAVCFImageComposite(image.get(), image.get(), &from, &to, 1, mode);
    plainComposite(expected.get(), expected.get(), &from, &to, 1, mode);
    expectSame(image.get(), expected.get());
    DRAVCFImageTile(image.get(), image.get(), from, to, mode, 2);
    plainTile(expected.get(), expected.get(), from, to, mode, 2);
    expectSame(image.get(), expected.get());
    if (HasFailure()) FAIL() << "case " << i << " mode " << mode;
  }
}

// ---- by hand

cf::Ref<DRAVCFImageRef> grayRow(const Bytes &bytes) { return makeGrayImage(bytes.size(), 1, bytes); }

TEST(Composite, WithoutRectanglesAndCountZeroCoversTheWholeImageOnce) {
  const cf::Ref source = grayRow({10, 20}), destination = grayRow({100, 250});
  DRAVCFImageComposite(source.get(), destination.get(), nullptr, nullptr, 0, kDRAVCFBlendModePlus);
  EXPECT_EQ(bufferOf(destination.get()), (Bytes{110, 255}));
}

TEST(Composite, OfMode24ChangesNothing) {
  const cf::Ref source = grayRow({10, 20}), destination = grayRow({100, 250});
  DRAVCFImageComposite(source.get(), destination.get(), nullptr, nullptr, 1, 24);
  DRAVCFImageComposite(source.get(), destination.get(), nullptr, nullptr, 1, UINT32_MAX);
  EXPECT_EQ(bufferOf(destination.get()), (Bytes{100, 250}));
}

TEST(Composite, OfGreyOntoColourKeepsTheDestinationsLayout) {
  const cf::Ref source = grayRow({10}),
                destination =
                    makeBufferImage(1, 1, 32, displaySpace().get(), kCGImageAlphaNoneSkipFirst, {7, 1, 2, 3});
  DRAVCFImageComposite(source.get(), destination.get(), nullptr, nullptr, 1, kDRAVCFBlendModeCopySrc);
  EXPECT_EQ(bufferOf(destination.get()), (Bytes{7, 10, 10, 10}));
  EXPECT_EQ(source->bitsPerPixel, 8u);
}

TEST(Composite, OfAlphaOntoGreyPromotesTheDestination) {
  const cf::Ref source = makeARGBImage(1, 1, {128, 128, 0, 0}), destination = grayRow({255});
  DRAVCFImageComposite(source.get(), destination.get(), nullptr, nullptr, 1, kDRAVCFBlendModeSrcOver);
  EXPECT_EQ(bufferOf(destination.get()), (Bytes{255, 255, 127, 127}));
  EXPECT_EQ(destination->alphaInfo, kCGImageAlphaPremultipliedFirst);
}

TEST(Composite, LeavesAStalePlatformImageInPlace) {
  const cf::Ref space = displaySpace();
  const cf::Ref cgImage =
      makeCGImage({1, 1, 8, 32, 4, space.get(), kCGImageAlphaPremultipliedFirst}, {255, 1, 1, 1});
  const cf::Ref destination = cf::adopt(DRAVCFImageCreateWithImage(nullptr, cgImage.get()));
  const cf::Ref source = makeARGBImage(1, 1, {255, 9, 9, 9});
  DRAVCFImageComposite(source.get(), destination.get(), nullptr, nullptr, 1, kDRAVCFBlendModeCopySrc);
  EXPECT_EQ(DRAVCFImageGetCGImage(destination.get()), cgImage.get());
  EXPECT_EQ(bufferOf(destination.get()), (Bytes{255, 9, 9, 9}));
}

TEST(Composite, OfImagesThatHoldNothingDoesNothing) {
  const cf::Ref empty = cf::adopt(DRAVCFImageCreate(nullptr));
  const cf::Ref image = grayRow({5});
  DRAVCFImageComposite(empty.get(), image.get(), nullptr, nullptr, 1, 3);
  DRAVCFImageComposite(image.get(), empty.get(), nullptr, nullptr, 1, 3);
  EXPECT_EQ(bufferOf(image.get()), (Bytes{5}));
}

TEST(Composite, OfABufferSmallerThanItsSizeClaimsDoesNothing) {
  const cf::Ref source = grayRow({1, 2, 3, 4}), destination = grayRow({9, 9});
  source->bufferSize = 3;
  DRAVCFImageComposite(source.get(), destination.get(), nullptr, nullptr, 1, 1);
  EXPECT_EQ(bufferOf(destination.get()), (Bytes{9, 9}));
}

TEST(Composite, OfABufferTooSmallForItsImageDoesNothingEvenWhereThereArePixels) {
  const CGRect first = CGRectMake(0, 0, 1, 1);
  const cf::Ref whole = grayRow({1, 2, 3, 4}), part = grayRow({9, 8, 7, 6});
  part->bufferSize = 3;
  DRAVCFImageComposite(part.get(), whole.get(), &first, &first, 1, kDRAVCFBlendModeCopySrc);
  DRAVCFImageComposite(whole.get(), part.get(), &first, &first, 1, kDRAVCFBlendModeCopySrc);
  EXPECT_EQ(bufferOf(whole.get()), (Bytes{1, 2, 3, 4}));
  EXPECT_EQ(bufferOf(part.get()), (Bytes{9, 8, 7}));
}

TEST(Composite, WalksADestinationByItsBufferWhereThePlatformImageHasOtherRows) {
  Bytes rows(48, 0);
  const cf::Ref cgImage =
      makeCGImage({2, 3, 8, 32, 16, displaySpace().get(), kCGImageAlphaPremultipliedFirst}, rows);
  const cf::Ref destination = cf::adopt(DRAVCFImageCreateWithImage(nullptr, cgImage.get()));
  const cf::Ref source = makeARGBImage(2, 3, Bytes(24, 9));
  DRAVCFImageComposite(source.get(), destination.get(), nullptr, nullptr, 1, kDRAVCFBlendModeCopySrc);
  EXPECT_EQ(destination->cgImage, cgImage.get());
  EXPECT_EQ(bufferOf(destination.get()), Bytes(24, 9));
}

TEST(Composite, ARectangleAfterOneThatScaledReadsTheScaledSourceWithTheOldStride) {
  // Scaled to 2 x 2 the source has four bytes left.
  const cf::Ref source = makeGrayImage(4, 4, Bytes(16, 7)), destination = makeGrayImage(8, 2, Bytes(16, 0));
  const CGRect whole = CGRectMake(0, 0, 4, 4);
  const CGRect from[] = {whole, CGRectMake(0, 0, 3, 1), CGRectMake(0, 0, 3, 2)};
  const CGRect to[] = {CGRectMake(0, 0, 2, 2), CGRectMake(2, 0, 3, 1), CGRectMake(5, 0, 3, 2)};
  DRAVCFImageComposite(source.get(), destination.get(), from, to, 3, kDRAVCFBlendModeCopySrc);
  EXPECT_EQ(bufferOf(destination.get()), (Bytes{7, 7, 7, 7, 7, 0, 0, 0, 7, 7, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(bufferOf(source.get()), Bytes(16, 7));
}

TEST(Composite, OfSizesThatDifferScalesACopy) {
  const cf::Ref source = makeARGBImage(1, 1, {128, 64, 32, 16}),
                destination = makeARGBImage(3, 2, Bytes(24, 0));
  const uint8_t *before = source->buffer;
  DRAVCFImageComposite(source.get(), destination.get(), nullptr, nullptr, 1, kDRAVCFBlendModeSrcOver);
  for (size_t i = 0; i < 24; i += 4) EXPECT_EQ(bufferOf(destination.get())[i + 1], 64);
  EXPECT_EQ(source->buffer, before);
  EXPECT_EQ(bufferOf(source.get()), (Bytes{128, 64, 32, 16}));
}

TEST(Composite, CountZeroTakesTheFirstOfTheRectanglesGiven) {
  const cf::Ref source = grayRow({1, 2, 3}), destination = grayRow({7, 7, 7});
  const CGRect from = CGRectMake(2, 0, 1, 1), to = CGRectMake(1, 0, 1, 1);
  DRAVCFImageComposite(source.get(), destination.get(), &from, &to, 0, kDRAVCFBlendModeCopySrc);
  EXPECT_EQ(bufferOf(destination.get()), (Bytes{7, 3, 7}));
}

TEST(Composite, OneArrayOfRectanglesMayBeMissing) {
  const cf::Ref source = grayRow({1, 2, 3}), destination = grayRow({7});
  const CGRect one = CGRectMake(1, 0, 1, 1);
  DRAVCFImageComposite(source.get(), destination.get(), &one, nullptr, 1, kDRAVCFBlendModeCopySrc);
  EXPECT_EQ(bufferOf(destination.get()), (Bytes{2}));
  DRAVCFImageComposite(destination.get(), source.get(), nullptr, &one, 1, kDRAVCFBlendModeClear);
  EXPECT_EQ(bufferOf(source.get()), (Bytes{1, 255, 3}));
}

TEST(Composite, OfDeeperGreyCombinesTheFirstByteOfEachPixel) {
  const auto deep = [](const Bytes &bytes) {
    return cf::adopt(DRAVCFImageCreateWithBuffer(nullptr, bytes.data(), 2, 1, 16, 16, 4, graySpace().get(),
                                                 kCGImageAlphaNone));
  };
  const cf::Ref source = deep({1, 2, 3, 4}), destination = deep({9, 9, 9, 9}), tiled = deep({9, 9, 9, 9});
  DRAVCFImageComposite(source.get(), destination.get(), nullptr, nullptr, 1, kDRAVCFBlendModeCopySrc);
  EXPECT_EQ(bufferOf(destination.get()), (Bytes{1, 9, 3, 9}));
  const CGRect whole = CGRectMake(0, 0, 2, 1);
  DRAVCFImageTile(source.get(), tiled.get(), whole, whole, kDRAVCFBlendModeCopySrc, 2);
  EXPECT_EQ(bufferOf(tiled.get()), (Bytes{1, 9, 3, 9}));
}

TEST(Composite, OfFourComponentsHasNoKernel) {
  const cf::Ref cmyk = cf::adopt(CGColorSpaceCreateDeviceCMYK());
  const auto make = [&](const Bytes &bytes) {
    return makeBufferImage(1, 1, 32, cmyk.get(), kCGImageAlphaNone, bytes);
  };
  const cf::Ref source = make({1, 2, 3, 4}), destination = make({5, 6, 7, 8});
  DRAVCFImageComposite(source.get(), destination.get(), nullptr, nullptr, 1, kDRAVCFBlendModeCopySrc);
  EXPECT_EQ(bufferOf(destination.get()), (Bytes{5, 6, 7, 8}));
}

TEST(Composite, OfALayoutWithoutKernelsDoesNothing) {
  // The ignored byte is the last: three components, and no kernel.
  const auto skipLast = [](const Bytes &bytes) {
    return makeBufferImage(1, 1, 32, displaySpace().get(), kCGImageAlphaNoneSkipLast, bytes);
  };
  const cf::Ref source = skipLast({1, 2, 3, 4}), destination = skipLast({5, 6, 7, 8});
  DRAVCFImageComposite(source.get(), destination.get(), nullptr, nullptr, 1, kDRAVCFBlendModeCopySrc);
  EXPECT_EQ(bufferOf(destination.get()), (Bytes{5, 6, 7, 8}));
}

TEST(Composite, NoByteBesideTheBuffersIsTouched) {
  const testing_support::GuardedAllocator guarded;
  for (size_t width : {1, 4, 16})
    for (size_t height : {1, 4})
      for (int kind = 0; kind < 3; ++kind) {
        const auto make = [&](size_t w, size_t h) {
          if (kind == 0) return makeGrayImage(w, h, Bytes(w * h, 3), guarded.get());
          return makeBufferImage(w, h, 32, displaySpace().get(),
                                 kind == 1 ? kCGImageAlphaNoneSkipFirst : kCGImageAlphaPremultipliedFirst,
                                 Bytes(4 * w * h, 3), guarded.get());
        };
        const cf::Ref source = make(width, height), destination = make(16, 4);
        const CGRect corner = CGRectMake(static_cast<float>(width) - 1, static_cast<float>(height) - 1, 9, 9);
        const CGRect last = CGRectMake(15, 3, 9, 9), all = CGRectMake(-1, -1, 99, 99);
        for (uint32_t mode = 0; mode < 24; ++mode) {
          DRAVCFImageComposite(source.get(), destination.get(), nullptr, nullptr, 1, mode);
          DRAVCFImageComposite(source.get(), destination.get(), &corner, &last, 1, mode);
          DRAVCFImageTile(source.get(), destination.get(), corner, all, mode, mode % 4);
        }
      }
}

TEST(Composite, OfALongColumnReachesItsEnd) {
  const cf::Ref source = makeGrayImage(1, 40000, Bytes(40000, 3)),
                destination = makeGrayImage(1, 40000, Bytes(40000, 4));
  DRAVCFImageComposite(source.get(), destination.get(), nullptr, nullptr, 1, kDRAVCFBlendModePlus);
  EXPECT_EQ(bufferOf(destination.get()), Bytes(40000, 7));
}

TEST(Composite, ACallersOwnFunctionGetsEveryPixelInOrderOfAddress) {
  static std::vector<std::pair<const uint8_t *, uint8_t *>> calls;
  calls.clear();
  const cf::Ref source = makeGrayImage(3, 2, {1, 2, 3, 4, 5, 6});
  uint8_t destination[6] = {};
  const CGRect whole = CGRectMake(0, 0, 3, 2);
  DRAVCFImageCompositeRect(source.get(), &whole, 3, 2, 3, destination, &whole, 3, 2, 3, 1,
                           [](const uint8_t *s, uint8_t *d) { calls.emplace_back(s, d); });
  ASSERT_EQ(calls.size(), 6u);
  for (size_t i = 0; i < 6; ++i) {
    EXPECT_EQ(calls[i].first, source->buffer + i);
    EXPECT_EQ(calls[i].second, destination + i);
  }
}

TEST(CompositeRect, WithoutRectanglesBufferOrFunctionDrawsNothing) {
  const cf::Ref source = grayRow({1});
  uint8_t pixel = 9;
  const CGRect one = CGRectMake(0, 0, 1, 1);
  const auto copy = DRAVCFImageCompositorForParameters(1, 0, 1);
  DRAVCFImageCompositeRect(source.get(), nullptr, 1, 1, 1, &pixel, &one, 1, 1, 1, 1, copy);
  DRAVCFImageCompositeRect(source.get(), &one, 1, 1, 1, &pixel, nullptr, 1, 1, 1, 1, copy);
  DRAVCFImageCompositeRect(source.get(), &one, 1, 1, 1, nullptr, &one, 1, 1, 1, 1, copy);
  DRAVCFImageCompositeRect(source.get(), &one, 1, 1, 1, &pixel, &one, 1, 1, 1, 1, nullptr);
  EXPECT_EQ(pixel, 9);
}

TEST(CompositeRect, OfEqualSizesNeverChangesTheSource) {
  const cf::Ref source = makeGrayImage(3, 3, Bytes(9, 7));
  uint8_t destination[4] = {};
  const CGRect from = CGRectMake(1, 1, 2, 2), to = CGRectMake(0, 0, 2, 2);
  const uint8_t *before = source->buffer;
  DRAVCFImageCompositeRect(source.get(), &from, 3, 3, 3, destination, &to, 2, 2, 2, 1,
                           DRAVCFImageCompositorForParameters(1, 0, 1));
  EXPECT_EQ(source->buffer, before);
  EXPECT_EQ(Bytes(destination, destination + 4), Bytes(4, 7));
}

TEST(CompositeRect, OfOtherSizesCropsAndScalesTheSource) {
  const cf::Ref source = makeGrayImage(4, 4, Bytes(16, 7));
  uint8_t destination[4] = {};
  const CGRect from = CGRectMake(0, 0, 4, 4), to = CGRectMake(0, 0, 2, 2);
  DRAVCFImageCompositeRect(source.get(), &from, 4, 4, 4, destination, &to, 2, 2, 2, 1,
                           DRAVCFImageCompositorForParameters(1, 0, 1));
  EXPECT_EQ(source->width, 2u);
  EXPECT_EQ(source->height, 2u);
  EXPECT_EQ(Bytes(destination, destination + 4), Bytes(4, 7));
}

TEST(Tile, TheLastTileReachesBeyondItsRectangle) {
  const cf::Ref source = makeGrayImage(10, 10, Bytes(100, 50)),
                destination = makeGrayImage(40, 10, Bytes(400, 0));
  DRAVCFImageTile(source.get(), destination.get(), CGRectMake(0, 0, 10, 10), CGRectMake(2, 0, 25, 10),
                  kDRAVCFBlendModeCopySrc, 2);
  const Bytes row = bufferOf(destination.get());
  for (size_t x = 0; x < 40; ++x) EXPECT_EQ(row[x], x >= 2 && x < 32 ? 50 : 0) << x;
}

// The places of the top left pixels of all tiles of 4 x 4, row by row.
std::vector<std::pair<size_t, size_t>> tilePlaces(uint32_t corner, CGRect area) {
  Bytes tile(16, 1);
  tile[0] = 9;
  const cf::Ref source = makeGrayImage(4, 4, tile), destination = makeGrayImage(20, 20, Bytes(400, 0));
  DRAVCFImageTile(source.get(), destination.get(), CGRectMake(0, 0, 4, 4), area, kDRAVCFBlendModeCopySrc,
                  corner);
  std::vector<std::pair<size_t, size_t>> places;
  for (size_t i = 0; i < 400; ++i)
    if (destination->buffer[i] == 9) places.emplace_back(i % 20, i / 20);
  return places;
}

TEST(Tile, EachCornerBeginsThereAndOverhangsOppositeOfIt) {
  using Places = std::vector<std::pair<size_t, size_t>>;
  const CGRect area = CGRectMake(5, 6, 6, 6);  // two tiles each way, two pixels too long
  EXPECT_EQ(tilePlaces(0, area), (Places{{5, 4}, {9, 4}, {5, 8}, {9, 8}}));
  EXPECT_EQ(tilePlaces(1, area), (Places{{3, 4}, {7, 4}, {3, 8}, {7, 8}}));
  EXPECT_EQ(tilePlaces(2, area), (Places{{5, 6}, {9, 6}, {5, 10}, {9, 10}}));
  EXPECT_EQ(tilePlaces(3, area), (Places{{3, 6}, {7, 6}, {3, 10}, {7, 10}}));
}

TEST(Tile, OfASourceTallerThanFloatsCountGivesTheBytesOfThePlainForm) {
  constexpr size_t kTall = 16777219;
  const cf::Ref source = makeGrayImage(1, kTall, Bytes(kTall, 7));
  const cf::Ref destination = makeGrayImage(1, 10, Bytes(10, 1)),
                expected = makeGrayImage(1, 10, Bytes(10, 1));
  const CGRect from = CGRectMake(0, 0, 1, 16777220), to = CGRectMake(0, 0, 1, 10);
  DRAVCFImageTile(source.get(), destination.get(), from, to, kDRAVCFBlendModeCopySrc, 2);
  plainTile(source.get(), expected.get(), from, to, kDRAVCFBlendModeCopySrc, 2);
  EXPECT_EQ(bufferOf(destination.get()), bufferOf(expected.get()));
}

TEST(Composite, OfPixelsSmallerThanTheirLayoutSaysDrawsNothing) {
  for (size_t bits : {0u, 8u, 16u, 24u}) {
    const Bytes bytes(12, 5);
    const auto make = [&] {
      cf::Ref image = makeBufferImage(2, 1, 24, displaySpace().get(), kCGImageAlphaNoneSkipFirst, bytes);
      image->bitsPerPixel = bits;
      return image;
    };
    const cf::Ref source = make(), destination = make();
    DRAVCFImageComposite(source.get(), destination.get(), nullptr, nullptr, 1, kDRAVCFBlendModeClear);
    const CGRect one = CGRectMake(0, 0, 1, 1);
    DRAVCFImageTile(source.get(), destination.get(), one, CGRectMake(0, 0, 2, 1), kDRAVCFBlendModeClear, 2);
    EXPECT_EQ(bufferOf(destination.get()), Bytes(6, 5)) << bits;
  }
}

TEST(CompositeRect, OntoTheSourcesOwnBufferAtAnotherSizeDrawsNothing) {
  const cf::Ref image = makeGrayImage(4, 4, Bytes(16, 7));
  const CGRect from = CGRectMake(0, 0, 4, 4), to = CGRectMake(0, 0, 2, 2);
  DRAVCFImageCompositeRect(image.get(), &from, 4, 4, 4, image->buffer, &to, 4, 4, 4, 1,
                           DRAVCFImageCompositorForParameters(1, 0, 0));
  EXPECT_EQ(bufferOf(image.get()), Bytes(16, 7));
}

TEST(Composite, OfASourceThatCannotBeCopiedLeavesTheDestination) {
  const cf::Ref space = graySpace();
  const cf::Ref alphaOnly = makeCGImage({1, 1, 8, 8, 1, nullptr, kCGImageAlphaOnly}, {5});
  const cf::Ref source = cf::adopt(DRAVCFImageCreateWithImage(nullptr, alphaOnly.get()));
  const cf::Ref gray = makeCGImage({1, 1, 8, 8, 1, space.get(), kCGImageAlphaNone}, {6});
  const cf::Ref destination = cf::adopt(DRAVCFImageCreateWithImage(nullptr, gray.get()));
  DRAVCFImageComposite(source.get(), destination.get(), nullptr, nullptr, 1, kDRAVCFBlendModeCopySrc);
  EXPECT_EQ(destination->buffer, nullptr);
  EXPECT_EQ(destination->cgImage, gray.get());
}

TEST(Tile, OfAWidthBelowOneOrAnUnknownCornerDoesNothing) {
  const cf::Ref source = grayRow({5}), destination = grayRow({9});
  const CGRect one = CGRectMake(0, 0, 1, 1);
  DRAVCFImageTile(source.get(), destination.get(), CGRectMake(0, 0, 0.5f, 1), one, 1, 2);
  DRAVCFImageTile(source.get(), destination.get(), one, CGRectMake(0, 0, 1, 0.5f), 1, 2);
  DRAVCFImageTile(source.get(), destination.get(), one, one, 1, 4);
  EXPECT_EQ(bufferOf(destination.get()), (Bytes{9}));
}

TEST(Tile, OfRectanglesThatAreNoNumbersDoesNothing) {
  const cf::Ref source = grayRow({5}), destination = grayRow({9});
  const CGRect one = CGRectMake(0, 0, 1, 1);
  for (float odd : {std::nanf(""), HUGE_VALF, -HUGE_VALF, 3e38f}) {
    DRAVCFImageTile(source.get(), destination.get(), CGRectMake(0, 0, odd, 1), one, 1, 2);
    DRAVCFImageTile(source.get(), destination.get(), one, CGRectMake(0, 0, 1, odd), 1, 0);
    const CGRect strange = CGRectMake(odd, 0, 1, odd);
    DRAVCFImageComposite(source.get(), destination.get(), &strange, &one, 1, kDRAVCFBlendModeCopyDest);
  }
  EXPECT_EQ(bufferOf(destination.get()), (Bytes{9}));
}

TEST(CompositeAllocation, FailingForALaterRectangleDrawsNoneOfThem) {
  testing_support::forEachFailedAllocation([&](CFAllocatorRef allocator, long) {
    const cf::Ref source = makeGrayImage(4, 4, Bytes(16, 7), allocator);
    if (!source) return;
    const cf::Ref destination = makeGrayImage(6, 6, Bytes(36, 1));
    const CGRect from[] = {CGRectMake(0, 0, 2, 2), CGRectMake(0, 0, 4, 4)};
    const CGRect to[] = {CGRectMake(0, 0, 2, 2), CGRectMake(3, 3, 3, 3)};
    DRAVCFImageComposite(source.get(), destination.get(), from, to, 2, kDRAVCFBlendModeCopySrc);
    const Bytes drawn = bufferOf(destination.get());
    // A crop or scale that fails leaves its own rectangle out; memory for the copy must be had before.
    EXPECT_TRUE(drawn == Bytes(36, 1) || drawn[0] == 7);
  });
}

TEST(CompositeAllocation, FailingAnywhereLeavesTheSourceAndAWholeDestination) {
  for (uint32_t operation = 0; operation < 2; ++operation) {
    testing_support::forEachFailedAllocation([&](CFAllocatorRef allocator, long) {
      const cf::Ref source = makeGrayImage(4, 4, Bytes(16, 7), allocator);
      const cf::Ref destination = source ? makeARGBImage(5, 5, Bytes(100, 255), allocator) : nullptr;
      if (!destination) return;
      const CGRect from = CGRectMake(0, 0, 4, 4), to = CGRectMake(0, 0, 5, 5);
      if (operation == 0)
        DRAVCFImageComposite(source.get(), destination.get(), &from, &to, 1, 3);
      else
        DRAVCFImageTile(source.get(), destination.get(), from, to, 3, 2);
      EXPECT_EQ(bufferOf(source.get()), Bytes(16, 7));
      // Drawn or not, pixel by pixel: each tile is had or left out by itself.
      const Bytes pixels = bufferOf(destination.get());
      ASSERT_EQ(pixels.size(), 100u);
      for (size_t i = 0; i < 100; i += 4) {
        const uint8_t colour = operation == 0 ? pixels[1] : pixels[i + 1];
        EXPECT_TRUE(colour == 7 || colour == 255);
        EXPECT_EQ(Bytes(&pixels[i], &pixels[i] + 4), (Bytes{255, colour, colour, colour})) << i;
      }
    });
  }
}

// What each would do to its source on the way is foreseen, and must be so where memory runs out, too.
TEST(CompositeAllocation, FailingAnywhereLeavesTheSourceOfEveryPairOfLayouts) {
  for (int pair = 0; pair < kKinds * kKinds; ++pair) {
    const auto from = static_cast<Kind>(pair / kKinds), to = static_cast<Kind>(pair % kKinds);
    testing_support::forEachFailedAllocation([&](CFAllocatorRef allocator, long) {
      Random random(static_cast<unsigned>(pair));
      const cf::Ref source = makeImage(random, from, 3, 2, allocator),
                    destination = makeImage(random, to, 3, 3, allocator);
      if (!source || !destination) return;
      const Bytes before = bufferOf(source.get());
      CGImageRef shown = source->cgImage;
      const CGRect rect = CGRectMake(0, 0, 2, 2);
      DRAVCFImageComposite(source.get(), destination.get(), &rect, nullptr, 1, kDRAVCFBlendModeSrcOver);
      DRAVCFImageTile(source.get(), destination.get(), rect, CGRectMake(0, 0, 3, 3), kDRAVCFBlendModePlus, 2);
      EXPECT_EQ(bufferOf(source.get()), before);
      EXPECT_EQ(source->cgImage, shown);
      EXPECT_TRUE(!destination->buffer || drav::bufferIsWhole(destination.get()));
    });
    if (HasFailure()) FAIL() << "layout " << pair / kKinds << " onto " << pair % kKinds;
  }
}

}  // namespace
