// Pictures made by other programs, where DRAV_SAMPLES says they are.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "media/codecs/pict/opcode.h"
#include "media/codecs/pict/survey.h"
#include "picture_grid.h"

namespace codecs::pict {
namespace {

namespace fs = std::filesystem;
using Vector = std::vector<uint8_t>;

class PictSamples : public testing::Test {
 protected:
  void SetUp() override {
    const char *const folder = std::getenv("DRAV_SAMPLES");
    if (folder) folder_ = fs::path(folder) / "pict";
    if (!fs::is_directory(folder_)) GTEST_SKIP() << "DRAV_SAMPLES names no folder of sample pictures";
  }

  Vector file(const std::string &name) const { return fileAt(folder_ / name); }
  static Vector fileAt(const fs::path &path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  std::vector<fs::path> all() const {
    std::vector<fs::path> paths;
    for (const auto &entry : fs::directory_iterator(folder_)) paths.push_back(entry.path());
    return paths;
  }
  DecodedImage decoded(const std::string &name) const {
    auto result = decodeBytes(file(name));
    EXPECT_EQ(result.fault, Fault::none) << name;
    return std::move(result.value);
  }
  static std::vector<std::pair<uint16_t, size_t>> opcodesOf(const Vector &bytes) {
    std::vector<std::pair<uint16_t, size_t>> found;
    const OpcodeVisitor visitor{[](void *context, uint16_t code, size_t size) {
                                  static_cast<decltype(found) *>(context)->emplace_back(code, size);
                                },
                                &found};
    EXPECT_TRUE(surveyPicture(bytes, kPictureLimits, visitor));
    return found;
  }

  fs::path folder_;
};

TEST_F(PictSamples, EveryOneLoads) {
  for (const fs::path &path : all()) {
    const auto result = decodeBytes(fileAt(path));
    EXPECT_EQ(result.fault, Fault::none) << path;
    uint64_t inked = 0;
    for (uint32_t y = 0; result && y < result.value.height; ++y) {
      for (uint32_t x = 0; x < result.value.width; ++x) inked += pixelAt(result.value, x, y) != kWhite;
    }
    EXPECT_GT(inked, 100u) << path;
  }
}

// Only the picture that was made to hold reserved opcodes has any.
TEST_F(PictSamples, NoOpcodeIsUnknown) {
  for (const fs::path &path : all()) {
    if (path.filename() == "8.pict") continue;
    for (const auto &[code, size] : opcodesOf(fileAt(path)))
      EXPECT_TRUE(isKnownOpcode(code)) << path << " " << std::hex << code;
  }
}

TEST_F(PictSamples, EveryReservedRangeIsPassedOver) {
  const auto opcodes = opcodesOf(file("8.pict"));
  EXPECT_GT(std::ranges::count_if(opcodes, [](const auto &one) { return !isKnownOpcode(one.first); }), 10);
  EXPECT_EQ(decoded("8.pict").width, 300u);
}

TEST_F(PictSamples, SizesDepthsAndResolutions) {
  const struct {
    const char *name;
    uint32_t width, height;
    int depth;
    double dotsPerInch;
  } kFacts[] = {{"16bit.pict", 269, 269, 24, 96},        {"CatDV__2.0_1_.pict", 375, 165, 32, 72},
                {"FC10.PCT", 2265, 2593, 8, 72},         {"J19.pict", 640, 480, 24, 72},
                {"P564B1400.pict", 1745, 1022, 32, 360}, {"RED.PCT", 200, 144, 32, 72},
                {"VENUS.PCT", 300, 150, 8, 72},          {"cow.pict", 787, 548, 24, 288},
                {"demo.pict", 435, 264, 24, 72},         {"foo.pict", 128, 128, 24, 72},
                {"mire16.pict", 64, 64, 24, 72},         {"mire32.pict", 64, 64, 32, 72}};
  for (const auto &fact : kFacts) {
    const DecodedImage image = decoded(fact.name);
    EXPECT_EQ(image.width, fact.width) << fact.name;
    EXPECT_EQ(image.height, fact.height) << fact.name;
    EXPECT_EQ(image.depth, fact.depth) << fact.name;
    EXPECT_EQ(image.resolution.x, fact.dotsPerInch) << fact.name;
  }
}

TEST_F(PictSamples, TheTwoTestCardsAreTheSame) {
  const DecodedImage deep = decoded("mire32.pict"), shallow = decoded("mire16.pict");
  for (uint32_t y = 0; y < 64; ++y) {
    for (uint32_t x = 0; x < 64; ++x) {
      const auto a = bytesOf(pixelAt(deep, x, y)), b = bytesOf(pixelAt(shallow, x, y));
      for (size_t k = 0; k < 4; ++k) EXPECT_NEAR(a[k], b[k], 8) << x << ", " << y;
    }
  }
}

TEST_F(PictSamples, RedIsRedThroughout) {
  const DecodedImage image = decoded("RED.PCT");
  for (uint32_t y = 0; y < image.height; ++y) {
    for (uint32_t x = 0; x < image.width; ++x) {
      const auto pixel = bytesOf(pixelAt(image, x, y));
      ASSERT_GT(pixel[1], 160) << x << ", " << y;
      ASSERT_LT(pixel[2], 48) << x << ", " << y;
      ASSERT_LT(pixel[3], 48) << x << ", " << y;
    }
  }
}

TEST_F(PictSamples, DrawingsAreDrawnAtAnySize) {
  const Vector cow = file("cow.pict");
  const auto large = decodePictAtSize(cow, 1574, 1096, kPictureLimits);
  ASSERT_EQ(large.fault, Fault::none);
  const DecodedImage small = decoded("cow.pict");
  uint64_t different = 0;
  for (uint32_t y = 0; y < small.height; ++y) {
    for (uint32_t x = 0; x < small.width; ++x)
      different += pixelAt(small, x, y) != pixelAt(large.value, 2 * x, 2 * y);
  }
  EXPECT_LT(different, small.width * small.height / 20);
}

TEST_F(PictSamples, CutOffAnywhereTheyFailOrLoad) {
  for (const fs::path &path : all()) {
    const Vector whole = fileAt(path);
    for (size_t i = 1; i < 24; ++i) {
      const Vector cut(whole.begin(), whole.begin() + static_cast<long>(whole.size() * i / 24));
      const auto result = decodeBytes(cut);
      EXPECT_EQ(static_cast<bool>(result), static_cast<bool>(result.value.pixels)) << path;
    }
  }
}

}  // namespace
}  // namespace codecs::pict
