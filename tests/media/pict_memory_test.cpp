// Memory that runs out while a picture is read or written: a fault, whichever request it was.

#include <gtest/gtest.h>

#include "compressed_maker.h"
#include "failing_new.h"

namespace codecs::pict {
namespace {

using Vector = std::vector<uint8_t>;

// A bit of everything that needs memory.
Vector busyPicture() {
  PictureMaker picture(20, 40);
  picture.op(0x0001).u16({28}).box(0, 0, 20, 40).u16({0, 0, 39, 0x7FFF, 20, 0, 39, 0x7FFF, 0x7FFF});
  picture.op(0x0014).u16({1}).u32({0, 0});
  addMap(picture, {2, {0, 0, 2, 2}, 0, 8, 1});
  picture.u32({0}).u16({-0x8000, 1, 0, -1, 0, 0, 0, 0, 0, -1}).u8({0, 1, 1, 0});
  picture.op(0x0054).box(0, 0, 20, 20);
  picture.op(0x0068).u16({0, 90});
  picture.op(0x0072).u16({26}).box(0, 0, 9, 9).u16({0, 0, 9, 0, 9, 9, 0, 9});
  picture.op(0x0080).u16({36}).box(0, 0, 20, 20);
  picture.u16({0, 0, 10, 0x7FFF, 10, 10, 20, 0x7FFF, 20, 0, 20, 0x7FFF, 0x7FFF});
  picture.op(0x002C).u16({8, 300}).u8({5}).text("Times");
  picture.op(0x0003).u16({300});
  picture.op(0x0004).u8({8});
  picture.op(0x0028).u16({15, 3}).u8({4}).text("Text");
  addCompressed(picture, {"raw ", 2, 2}, Vector(12, 99), {{0, 0, 2, 2}});
  picture.op(0x009A).u32({0xFF});
  addMap(picture, {12, {0, 0, 3, 1}, 4, 32, 3});
  addBoxes(picture, {0, 0, 3, 1}, {0, 0, 2, 1});
  picture.u8({10, 8, 255, 0, 0, 0, 255, 0, 0, 0, 255});
  return picture.end();
}

TEST(PictMemory, ReadingSurvivesEveryFailedRequest) {
  const Vector file = busyPicture();
  ASSERT_EQ(decodeBytes(file).fault, Fault::none);
  bool failed = true;
  long request = 1;
  for (; failed; ++request) {
    ASSERT_LT(request, 10000);
    const auto result = [&] {
      const testing_support::FailingNew failing(request);
      auto read = decodePict(file, kPictureLimits);
      failed = failing.failed();
      return read;
    }();
    ASSERT_EQ(result.fault, failed ? Fault::noMemory : Fault::none) << request;
  }
  EXPECT_GT(request, 20);
}

TEST(PictMemory, WritingSurvivesEveryFailedRequest) {
  EncodeSource source;
  source.width = 5000;
  source.height = 3;
  source.copyRow = [](void *, uint32_t y, uint8_t *out) noexcept {
    std::fill_n(out, 20000, static_cast<uint8_t>(y));
    return true;
  };
  bool failed = true;
  long request = 1;
  for (; failed; ++request) {
    ASSERT_LT(request, 1000);
    Vector file;
    const Fault fault = [&] {
      const testing_support::FailingNew failing(request);
      const Fault written = encodePict(source, file);
      failed = failing.failed();
      return written;
    }();
    ASSERT_EQ(fault, failed ? Fault::noMemory : Fault::none) << request;
  }
  EXPECT_GT(request, 5);
}

}  // namespace
}  // namespace codecs::pict
