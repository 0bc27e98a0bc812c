#include "graphics/color_engine.h"

#include <gtest/gtest.h>

#include <random>
#include <thread>
#include <vector>

#include "failing_allocator.h"
#include "graphics/image_rows.h"
#include "graphics/spaces.h"

namespace {

using cg::ColorModel;
using cg::PixelOrder;
using testing_support::Space;
using Bytes = std::vector<uint8_t>;

cf::Ref<CFDataRef> dataOf(const Bytes &bytes) {
  return cf::adopt(CFDataCreate(nullptr, bytes.data(), static_cast<CFIndex>(bytes.size())));
}

Bytes bytesOf(CFDataRef data) {
  return {CFDataGetBytePtr(data), CFDataGetBytePtr(data) + CFDataGetLength(data)};
}

TEST(ColorEngine, TellsTheModelOfAProfile) {
  EXPECT_EQ(cg::profileModel(cg::sharedSRGBProfile()), ColorModel::rgb);
  EXPECT_EQ(cg::profileModel(testing_support::gammaProfile(1.8).get()), ColorModel::rgb);
  EXPECT_EQ(cg::profileModel(testing_support::grayProfile(1.8).get()), ColorModel::gray);
  EXPECT_EQ(cg::profileModel(testing_support::inkProfile().get()), ColorModel::cmyk);
  EXPECT_FALSE(cg::profileModel(testing_support::labProfile().get()));
  EXPECT_FALSE(cg::profileModel(dataOf({}).get()));
  EXPECT_FALSE(cg::profileModel(nullptr));
}

TEST(ColorEngine, DamagedTablesDoNoHarm) {
  const auto whole = testing_support::inkProfile();
  const Bytes bytes = bytesOf(whole.get());
  std::mt19937 random(7);
  for (int round = 0; round < 60; ++round) {
    Bytes damaged = bytes;
    // The header, the directory of tags and the head of the table are what leads a reader astray.
    for (int change = 0; change < 3; ++change)
      damaged[random() % std::min<size_t>(damaged.size(), 400)] = static_cast<uint8_t>(random());
    if (round % 5 == 0) damaged.resize(random() % damaged.size());
    const auto data = dataOf(damaged);
    if (cg::profileModel(data.get()) != ColorModel::cmyk) continue;
    const auto transform =
        cg::colorTransform({data.get(), PixelOrder::cmyk}, {cg::sharedSRGBProfile(), PixelOrder::argb},
                           kCGRenderingIntentRelativeColorimetric);
    uint8_t pixels[8] = {0, 50, 100, 150, 200, 250, 5, 10};
    if (transform) transform->convert(pixels, pixels, 2);
  }
}

TEST(ColorEngine, IntentsLeadToDifferentTransforms) {
  const auto wide = testing_support::gammaProfile(1.8);
  const cg::ColorEnd from{wide.get(), PixelOrder::rgb}, to{cg::sharedSRGBProfile(), PixelOrder::rgb};
  const auto first = cg::colorTransform(from, to, kCGRenderingIntentPerceptual);
  EXPECT_EQ(first, cg::colorTransform(from, to, kCGRenderingIntentDefault));
  EXPECT_NE(first, cg::colorTransform(from, to, kCGRenderingIntentSaturation));
  EXPECT_NE(first, cg::colorTransform(from, to, kCGRenderingIntentRelativeColorimetric));
  EXPECT_NE(first, cg::colorTransform(from, to, kCGRenderingIntentAbsoluteColorimetric));
}

TEST(ColorEngine, OneTransformServesManyThreads) {
  const auto wide = testing_support::gammaProfile(1.8);
  Bytes in(3 * 4096);
  for (size_t i = 0; i < in.size(); ++i) in[i] = static_cast<uint8_t>(i * 31);
  const auto convert = [&] {
    Bytes out(in.size());
    const auto transform =
        cg::colorTransform({wide.get(), PixelOrder::rgb}, {cg::sharedSRGBProfile(), PixelOrder::rgb}, 0);
    transform->convert(in.data(), out.data(), in.size() / 3);
    return out;
  };
  const Bytes expected = convert();
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([&] {
      for (int round = 0; round < 20; ++round) EXPECT_EQ(convert(), expected);
    });
  for (std::thread &thread : threads) thread.join();
}

TEST(ColorEngine, ThreadsThatMeetANewProfileAtOnceAgree) {
  std::vector<std::thread> threads;
  std::vector<Bytes> results(4, Bytes(3));
  for (size_t t = 0; t < 4; ++t)
    threads.emplace_back([&results, t] {
      const auto profile = testing_support::gammaProfile(1.37);
      const Space space(CGColorSpaceCreateWithICCProfile(profile.get()));
      const auto transform =
          cg::colorTransform({profile.get(), PixelOrder::rgb}, {cg::sharedSRGBProfile(), PixelOrder::rgb}, 0);
      const uint8_t pixel[3] = {40, 90, 160};
      transform->convert(pixel, results[t].data(), 1);
    });
  for (std::thread &thread : threads) thread.join();
  for (const Bytes &result : results) EXPECT_EQ(result, results[0]);
}

TEST(ColorEngine, ATransformOutlivesTheSpacesAndTheirAllocator) {
  Bytes first(4), second(4);
  for (Bytes *out : {&first, &second}) {
    testing_support::FailingAllocator allocator;
    CFAllocatorSetDefault(allocator.get());
    {
      const auto profile = testing_support::gammaProfile(1.61);
      const Space space(CGColorSpaceCreateWithICCProfile(profile.get())), rgb(CGColorSpaceCreateDeviceRGB());
      const uint8_t pixel[3] = {40, 90, 160};
      const auto provider = cf::adopt(CGDataProviderCreateWithData(nullptr, pixel, 3, nullptr));
      const auto image = cf::adopt(
          CGImageCreate(1, 1, 8, 24, 3, space.get(), kCGImageAlphaNone, provider.get(), nullptr, false, 0));
      cg::RowReader::make(image.get(), rgb.get(), cg::RowForm::argbStraight)->read(0, 0, 1, out->data());
    }
    CFAllocatorSetDefault(nullptr);
  }
  EXPECT_EQ(first, second);
  EXPECT_NE(first[1], 40);
}

TEST(ColorEngine, ReadersSurviveEveryFailedAllocation) {
  const uint8_t pixel[4] = {1, 2, 3, 4};
  const Space cmyk(CGColorSpaceCreateDeviceCMYK());
  const auto provider = cf::adopt(CGDataProviderCreateWithData(nullptr, pixel, 4, nullptr));
  const auto image = cf::adopt(
      CGImageCreate(1, 1, 8, 32, 4, cmyk.get(), kCGImageAlphaNone, provider.get(), nullptr, false, 0));
  testing_support::forEachFailedAllocation([&](CFAllocatorRef allocator, long) {
    CFAllocatorSetDefault(allocator);
    const auto reader = cg::RowReader::make(image.get(), nullptr, cg::RowForm::argbStraight);
    Bytes out(4);
    if (reader) {
      reader->read(0, 0, 1, out.data());
      EXPECT_EQ(out[0], 255);
    }
    CFAllocatorSetDefault(nullptr);
  });
}

}  // namespace
