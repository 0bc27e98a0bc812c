// Rows of every layout, against a reader that takes one pixel at a time, in fractions, from the definition.
#include "graphics/image_rows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "graphics/spaces.h"

namespace {

using cg::RowForm;
using testing_support::Space;
using Image = cf::Ref<CGImageRef>;
using Bytes = std::vector<uint8_t>;

constexpr std::array kForms = {
    RowForm::gray,         RowForm::grayAlphaStraight, RowForm::grayAlphaPremultiplied,
    RowForm::argbStraight, RowForm::argbPremultiplied, RowForm::rgbaStraight};

// An image's description with its pixels.
struct Sample {
  size_t width = 0, height = 0, depth = 8, bits = 8, rowBytes = 0;
  CGBitmapInfo info = 0;
  CGColorSpaceRef space = nullptr;
  std::vector<CGFloat> decode;
  Bytes bytes;

  [[nodiscard]] Image image() const {
    const auto provider =
        cf::adopt(CGDataProviderCreateWithData(nullptr, bytes.data(), bytes.size(), nullptr));
    return Image::adopt(CGImageCreate(width, height, depth, bits, rowBytes, space, info, provider.get(),
                                      decode.empty() ? nullptr : decode.data(), false,
                                      kCGRenderingIntentDefault));
  }
  [[nodiscard]] CGImageAlphaInfo alpha() const { return info & kCGBitmapAlphaInfoMask; }
  [[nodiscard]] size_t colors() const {
    return alpha() == kCGImageAlphaOnly ? 0 : CGColorSpaceGetNumberOfComponents(space);
  }
};

// The component as a number, most significant bit first in words of the stated order.
uint32_t stored(const Sample &s, size_t x, size_t y, size_t component) {
  const CGBitmapInfo order = s.info & kCGBitmapByteOrderMask;
  const size_t word = order == kCGBitmapByteOrder16Little ? 2 : order == kCGBitmapByteOrder32Little ? 4 : 1;
  uint32_t value = 0;
  for (size_t b = 0; b < s.depth; ++b) {
    const size_t bit = x * s.bits + component * s.depth + b;
    const size_t byte = bit / 8 / word * word + (word - 1 - bit / 8 % word);
    value = 2 * value + (s.bytes[y * s.rowBytes + byte] >> (7 - bit % 8) & 1U);
  }
  return value;
}

struct Fractions {
  double c[4] = {0, 0, 0, 0};
  double a = 1;
  bool hasAlpha = false, isPremultiplied = false;
};

Fractions fractionsOf(const Sample &s, size_t x, size_t y) {
  Fractions f;
  const CGImageAlphaInfo info = s.alpha();
  const bool first = info == 2 || info == 4 || info == 6;
  f.hasAlpha = info == 1 || info == 2 || info == 3 || info == 4 || info == 7;
  f.isPremultiplied = info == 1 || info == 2;
  const double most = std::pow(2.0, static_cast<double>(s.depth)) - 1;
  for (size_t i = 0; i < s.colors(); ++i) {
    f.c[i] = stored(s, x, y, i + (first ? 1 : 0)) / most;
    if (!s.decode.empty())
      f.c[i] = s.decode[2 * i] + f.c[i] * (static_cast<double>(s.decode[2 * i + 1]) - s.decode[2 * i]);
    f.c[i] = std::clamp(f.c[i], 0.0, 1.0);
  }
  if (f.hasAlpha) f.a = stored(s, x, y, first ? 0 : s.colors()) / most;
  return f;
}

double eighths(double v) { return std::floor(v * 255 + 0.5 + 1e-9) / 255; }

// Colour as the form wants it, rounded to 8 bits where a source of 16 first could not be: once.
double stepped(double c, const Fractions &f, bool wantsPremultiplied) {
  if (!f.hasAlpha || f.isPremultiplied == wantsPremultiplied) return eighths(c);
  if (wantsPremultiplied) return eighths(c * f.a);
  return f.a == 0 ? 0 : eighths(std::min(c / f.a, 1.0));
}

double mixed(double r, double g, double b) {
  const double sum = 30 * std::round(r * 255) + 59 * std::round(g * 255) + 11 * std::round(b * 255);
  return std::floor((sum + 50) / 100) / 255;
}

uint8_t byteOf(double v) { return static_cast<uint8_t>(std::lround(v * 255)); }

// What one pixel should read as, for device spaces.
Bytes expected(const Sample &s, size_t x, size_t y, RowForm form) {
  Fractions f = fractionsOf(s, x, y);
  const bool premultiplied = form == RowForm::grayAlphaPremultiplied || form == RowForm::argbPremultiplied;
  const bool isGrayForm = cg::bytesPerPixel(form) < 4;
  if (s.depth < 16)  // nothing is lost before the step
    for (double &c : f.c) c = eighths(c);
  double r = 0, g = 0, b = 0, gray = 0;
  if (s.colors() == 4) {
    double k[4];
    for (size_t i = 0; i < 4; ++i) k[i] = eighths(f.c[i]);
    r = eighths((1 - k[0]) * (1 - k[3]));
    g = eighths((1 - k[1]) * (1 - k[3]));
    b = eighths((1 - k[2]) * (1 - k[3]));
    gray = mixed(r, g, b);
  } else if (s.colors() == 3 && isGrayForm) {
    // Weighed as stored; only what is to lose its alpha is made straight before.
    Fractions kept = f;
    const bool divides = form == RowForm::gray;
    const double stage[3] = {stepped(f.c[0], f, divides ? false : f.isPremultiplied),
                             stepped(f.c[1], f, divides ? false : f.isPremultiplied),
                             stepped(f.c[2], f, divides ? false : f.isPremultiplied)};
    kept.a = eighths(f.a);
    gray = mixed(stage[0], stage[1], stage[2]);
    if (!divides) gray = stepped(gray, kept, premultiplied);
  } else if (s.colors() == 3) {
    r = stepped(f.c[0], f, premultiplied);
    g = stepped(f.c[1], f, premultiplied);
    b = stepped(f.c[2], f, premultiplied);
  } else {
    r = g = b = gray = s.colors() == 0 ? 0 : stepped(f.c[0], f, premultiplied);
  }
  const uint8_t a = byteOf(eighths(f.a));
  switch (form) {
    case RowForm::gray:
      return {byteOf(gray)};
    case RowForm::grayAlphaStraight:
    case RowForm::grayAlphaPremultiplied:
      return {a, byteOf(gray)};
    case RowForm::rgbaStraight:
      return {byteOf(r), byteOf(g), byteOf(b), a};
    default:
      return {a, byteOf(r), byteOf(g), byteOf(b)};
  }
}

std::string nameOf(const Sample &s, RowForm form) {
  return "depth " + std::to_string(s.depth) + ", bits " + std::to_string(s.bits) + ", info " +
         std::to_string(s.info) + ", colours " + std::to_string(s.colors()) + ", form " +
         std::to_string(static_cast<int>(form)) + (s.decode.empty() ? "" : ", decode");
}

void expectRows(const Sample &s, RowForm form) {
  const Image image = s.image();
  ASSERT_TRUE(image) << nameOf(s, form);
  const auto reader = cg::RowReader::make(image.get(), nullptr, form);
  ASSERT_TRUE(reader) << nameOf(s, form);
  const size_t pixelBytes = cg::bytesPerPixel(form);
  for (size_t y = 0; y < s.height; ++y)
    for (const size_t first : {size_t{0}, s.width / 3}) {
      const size_t count = s.width - first;
      Bytes out(count * pixelBytes + 8, 0xA5);
      reader->read(y, first, count, out.data());
      for (size_t b = 0; b < 8; ++b) ASSERT_EQ(out[count * pixelBytes + b], 0xA5) << nameOf(s, form);
      for (size_t x = 0; x < count; ++x) {
        const Bytes pixel(out.begin() + static_cast<long>(x * pixelBytes),
                          out.begin() + static_cast<long>((x + 1) * pixelBytes));
        ASSERT_EQ(pixel, expected(s, first + x, y, form))
            << nameOf(s, form) << " at " << first + x << ", " << y;
      }
      const uint8_t *inPlace = reader->rowInPlace(y);
      if (inPlace && first == 0) {
        ASSERT_TRUE(std::equal(out.begin(), out.begin() + static_cast<long>(count * pixelBytes), inPlace));
      }
    }
}

class ImageRows : public testing::Test {
 protected:
  // Fills in the sizes and random pixels.
  void fill(Sample &s, size_t width, size_t height) {
    s.width = width;
    s.height = height;
    s.rowBytes = (width * s.bits + 7) / 8 + (random_() % 3) * 4;
    s.bytes.resize(s.rowBytes * height);
    for (uint8_t &byte : s.bytes) byte = static_cast<uint8_t>(random_());
    // Full and no alpha have paths of their own.
    for (size_t i = 0; i < s.bytes.size(); ++i)
      if (random_() % 8 == 0) s.bytes[i] = random_() % 2 ? 255 : 0;
  }
  [[nodiscard]] CGColorSpaceRef spaceOf(size_t colors) const {
    return (colors == 1 ? gray_ : colors == 3 ? rgb_ : cmyk_).get();
  }
  // Every combination that CGImageCreate takes of the sizes given.
  template <class Check>
  void forEachLayout(Check check) {
    for (const size_t colors : {1, 3, 4})
      for (CGImageAlphaInfo info = 0; info <= kCGImageAlphaOnly; ++info)
        for (const CGBitmapInfo order : {0, 1, 2, 3, 4})
          for (const size_t depth : {1, 2, 4, 8, 16})
            for (const size_t extra : {0, 1, 2}) {
              if (colors == 4 && info != kCGImageAlphaNone) continue;
              Sample s;
              s.info = info | order << 12;
              s.depth = depth;
              s.space = spaceOf(colors);
              const size_t parts = s.colors() + (info == kCGImageAlphaNone ? 0 : 1);
              s.bits = depth * (parts + extra);
              if (depth < 8 && extra == 2) s.bits = depth * parts + 3;
              if (s.bits > 64 || (order == 1 && s.bits % 16) || (order == 2 && s.bits % 32)) continue;
              check(s);
            }
  }

  std::mt19937 random_{20240501};
  Space gray_{CGColorSpaceCreateDeviceGray()}, rgb_{CGColorSpaceCreateDeviceRGB()},
      cmyk_{CGColorSpaceCreateDeviceCMYK()};
};

TEST_F(ImageRows, EveryLayoutReadsAsTheModelInEveryForm) {
  int layouts = 0;
  forEachLayout([&](Sample &s) {
    fill(s, 37, 2);
    for (const RowForm form : kForms) expectRows(s, form);
    ++layouts;
  });
  EXPECT_GT(layouts, 400);
}

TEST_F(ImageRows, DecodeArraysMapTheStoredRange) {
  forEachLayout([&](Sample &s) {
    if (s.info >> 12 > 2) return;
    for (size_t i = 0; i < s.colors(); ++i) {
      // Inverted, narrowed, and out of range, in eighths that single precision holds.
      static constexpr CGFloat kEnds[][2] = {{1, 0}, {0.25F, 0.75F}, {-0.5F, 1.5F}};
      const auto &ends = kEnds[random_() % 3];
      s.decode.insert(s.decode.end(), {ends[0], ends[1]});
    }
    fill(s, 19, 1);
    for (const RowForm form : kForms) {
      // A range that takes 16 bits to halves of a step has two roundings to choose from.
      if (s.depth == 16) continue;
      expectRows(s, form);
    }
  });
}

TEST_F(ImageRows, SixteenBitsCanBeInverted) {
  Sample s;
  s.depth = 16;
  s.bits = 48;
  s.space = rgb_.get();
  s.decode = {1, 0, 1, 0, 1, 0};
  fill(s, 200, 2);
  for (const RowForm form : kForms) expectRows(s, form);
}

TEST_F(ImageRows, RowsLongerThanAChunkReadTheSame) {
  for (const size_t colors : {1, 3, 4}) {
    Sample s;
    s.space = spaceOf(colors);
    s.bits = 8 * colors;
    fill(s, 1337, 1);
    for (const RowForm form : kForms) expectRows(s, form);
    if (colors == 4) continue;
    s.info = kCGImageAlphaPremultipliedLast;
    s.bits = 8 * (colors + 1);
    fill(s, 1337, 1);
    for (const RowForm form : kForms) expectRows(s, form);
  }
}

TEST_F(ImageRows, PartsOfImagesReadTheSamePixels) {
  forEachLayout([&](Sample &s) {
    if (s.depth * 8 % s.bits != 0 && s.bits % 8 != 0) return;
    fill(s, 48, 4);
    const Image image = s.image();
    const auto part = cf::adopt(CGImageCreateWithImageInRect(image.get(), CGRectMake(16, 1, 20, 2)));
    ASSERT_TRUE(part) << nameOf(s, RowForm::argbStraight);
    const auto whole = cg::RowReader::make(image.get(), nullptr, RowForm::argbStraight);
    const auto reader = cg::RowReader::make(part.get(), nullptr, RowForm::argbStraight);
    Bytes a(80), b(80);
    whole->read(2, 16, 20, a.data());
    reader->read(1, 0, 20, b.data());
    ASSERT_EQ(a, b) << nameOf(s, RowForm::argbStraight);
  });
}

TEST_F(ImageRows, IndicesBecomeTheColoursOfTheTable) {
  const uint8_t table[] = {10, 20, 30, 40, 50, 60, 70, 80, 90};
  const Space indexed(CGColorSpaceCreateIndexed(rgb_.get(), 2, table));
  Sample s;
  s.space = indexed.get();
  s.depth = s.bits = 2;
  s.width = 4;
  s.height = 1;
  s.rowBytes = 1;
  s.bytes = {0b00'01'10'11};  // the last one lies beyond the table
  const Image image = s.image();
  Bytes out(16);
  cg::RowReader::make(image.get(), nullptr, RowForm::argbStraight)->read(0, 0, 4, out.data());
  EXPECT_EQ(out, (Bytes{255, 10, 20, 30, 255, 40, 50, 60, 255, 70, 80, 90, 255, 70, 80, 90}));
  cg::RowReader::make(image.get(), nullptr, RowForm::rgbaStraight)->read(0, 0, 4, out.data());
  EXPECT_EQ(out, (Bytes{10, 20, 30, 255, 40, 50, 60, 255, 70, 80, 90, 255, 70, 80, 90, 255}));
  Bytes gray(4);
  cg::RowReader::make(image.get(), nullptr, RowForm::gray)->read(0, 0, 4, gray.data());
  EXPECT_EQ(gray, (Bytes{18, 48, 78, 78}));
}

TEST_F(ImageRows, IndicesOfGrayAndInkTablesAreConvertedToo) {
  const uint8_t grays[] = {7, 200}, inks[] = {255, 0, 0, 0, 0, 0, 0, 255};
  const Space ofGray(CGColorSpaceCreateIndexed(gray_.get(), 1, grays)),
      ofInks(CGColorSpaceCreateIndexed(cmyk_.get(), 1, inks));
  Sample s;
  s.depth = s.bits = 1;
  s.width = 2;
  s.height = 1;
  s.rowBytes = 1;
  s.bytes = {0b0100'0000};
  Bytes out(8);
  s.space = ofGray.get();
  cg::RowReader::make(s.image().get(), nullptr, RowForm::argbPremultiplied)->read(0, 0, 2, out.data());
  EXPECT_EQ(out, (Bytes{255, 7, 7, 7, 255, 200, 200, 200}));
  s.space = ofInks.get();
  cg::RowReader::make(s.image().get(), nullptr, RowForm::argbPremultiplied)->read(0, 0, 2, out.data());
  EXPECT_EQ(out, (Bytes{255, 0, 255, 255, 255, 0, 0, 0}));
}

TEST_F(ImageRows, ADecodeArrayOfIndicesPicksOtherEntries) {
  const uint8_t table[] = {1, 1, 1, 2, 2, 2, 3, 3, 3, 4, 4, 4};
  const Space indexed(CGColorSpaceCreateIndexed(rgb_.get(), 3, table));
  Sample s;
  s.space = indexed.get();
  s.depth = s.bits = 2;
  s.width = 4;
  s.height = 1;
  s.rowBytes = 1;
  s.bytes = {0b00'01'10'11};
  s.decode = {3, 0};
  Bytes gray(4);
  cg::RowReader::make(s.image().get(), nullptr, RowForm::gray)->read(0, 0, 4, gray.data());
  EXPECT_EQ(gray, (Bytes{4, 3, 2, 1}));
}

TEST_F(ImageRows, RowsInPlaceAreGivenExactlyWhereNothingChanges) {
  const auto inPlace = [&](CGColorSpaceRef space, size_t bits, CGBitmapInfo info, RowForm form,
                           std::vector<CGFloat> decode = {}) {
    Sample s;
    s.space = space;
    s.bits = bits;
    s.info = info;
    s.decode = std::move(decode);
    fill(s, 5, 2);
    const auto reader = cg::RowReader::make(s.image().get(), nullptr, form);
    return reader->rowInPlace(1) == s.bytes.data() + s.rowBytes;
  };
  EXPECT_TRUE(inPlace(rgb_.get(), 32, kCGImageAlphaFirst, RowForm::argbStraight));
  EXPECT_TRUE(inPlace(rgb_.get(), 32, kCGImageAlphaPremultipliedFirst, RowForm::argbPremultiplied));
  EXPECT_TRUE(inPlace(rgb_.get(), 32, kCGImageAlphaLast, RowForm::rgbaStraight));
  EXPECT_TRUE(inPlace(rgb_.get(), 32, kCGImageAlphaFirst | kCGBitmapByteOrder32Big, RowForm::argbStraight));
  EXPECT_TRUE(inPlace(gray_.get(), 8, kCGImageAlphaNone, RowForm::gray));
  EXPECT_FALSE(inPlace(rgb_.get(), 32, kCGImageAlphaFirst, RowForm::argbPremultiplied));
  EXPECT_FALSE(inPlace(rgb_.get(), 32, kCGImageAlphaPremultipliedFirst, RowForm::argbStraight));
  EXPECT_FALSE(inPlace(rgb_.get(), 32, kCGImageAlphaNoneSkipFirst, RowForm::argbStraight));
  EXPECT_FALSE(
      inPlace(rgb_.get(), 32, kCGImageAlphaFirst | kCGBitmapByteOrder32Little, RowForm::argbStraight));
  EXPECT_FALSE(inPlace(rgb_.get(), 32, kCGImageAlphaFirst, RowForm::argbStraight, {0, 1, 0, 1, 1, 0}));
  EXPECT_FALSE(inPlace(gray_.get(), 16, kCGImageAlphaNone, RowForm::gray));
}

TEST_F(ImageRows, AlphaIsFoundByTheLayout) {
  Sample s;
  s.space = rgb_.get();
  s.bits = 32;
  for (CGImageAlphaInfo info = 0; info <= kCGImageAlphaOnly; ++info) {
    s.info = info;
    fill(s, 1, 1);
    const bool hasAlpha = (info >= 1 && info <= 4) || info == kCGImageAlphaOnly;
    EXPECT_EQ(cg::imageHasAlpha(s.image().get()), hasAlpha) << info;
  }
  EXPECT_FALSE(cg::imageHasAlpha(nullptr));
}

TEST_F(ImageRows, ThereIsNoWayIntoASpaceOfAnotherKind) {
  Sample s;
  s.space = rgb_.get();
  s.bits = 24;
  fill(s, 1, 1);
  const Image image = s.image();
  const uint8_t table[3] = {};
  const Space indexed(CGColorSpaceCreateIndexed(rgb_.get(), 0, table));
  EXPECT_FALSE(cg::RowReader::make(image.get(), gray_.get(), RowForm::argbStraight));
  EXPECT_FALSE(cg::RowReader::make(image.get(), rgb_.get(), RowForm::gray));
  EXPECT_FALSE(cg::RowReader::make(image.get(), cmyk_.get(), RowForm::argbStraight));
  EXPECT_FALSE(cg::RowReader::make(image.get(), indexed.get(), RowForm::argbStraight));
  EXPECT_FALSE(cg::RowReader::make(nullptr, rgb_.get(), RowForm::argbStraight));
}

TEST_F(ImageRows, ColoursAreConvertedStraightAndAlphaIsLeftAlone) {
  const auto profile = testing_support::gammaProfile(1.8);
  const Space mine(CGColorSpaceCreateWithICCProfile(profile.get()));
  Sample straight;
  straight.space = mine.get();
  straight.bits = 32;
  straight.info = kCGImageAlphaFirst;
  fill(straight, 700, 1);
  Sample opaque = straight, premultiplied = straight;
  opaque.info = kCGImageAlphaNoneSkipFirst;
  premultiplied.info = kCGImageAlphaPremultipliedFirst;
  for (size_t x = 0; x < 700; ++x) {
    uint8_t *pixel = premultiplied.bytes.data() + 4 * x;
    for (int c = 1; c < 4; ++c) pixel[c] = static_cast<uint8_t>((pixel[c] * pixel[0] + 127) / 255);
  }
  Bytes fromStraight(2800), fromOpaque(2800), asPremultiplied(2800), last(2800);
  const auto read = [&](const Sample &s, RowForm form, Bytes &out) {
    cg::RowReader::make(s.image().get(), rgb_.get(), form)->read(0, 0, 700, out.data());
  };
  read(straight, RowForm::argbStraight, fromStraight);
  read(opaque, RowForm::argbStraight, fromOpaque);
  read(straight, RowForm::argbPremultiplied, asPremultiplied);
  read(straight, RowForm::rgbaStraight, last);
  int changed = 0;
  for (size_t x = 0; x < 700; ++x) {
    const uint8_t alpha = straight.bytes[4 * x];
    ASSERT_EQ(fromStraight[4 * x], alpha);
    ASSERT_EQ(fromOpaque[4 * x], 255);
    ASSERT_EQ(last[4 * x + 3], alpha);
    for (size_t c = 1; c < 4; ++c) {
      const uint8_t color = fromStraight[4 * x + c];
      ASSERT_EQ(color, fromOpaque[4 * x + c]);
      ASSERT_EQ(color, last[4 * x + c - 1]);
      ASSERT_EQ(asPremultiplied[4 * x + c], (2 * color * alpha + 255) / 510);
      // Linear light from gamma 1.8, then the sRGB curve.
      const double light = std::pow(straight.bytes[4 * x + c] / 255.0, 1.8);
      const double coded = light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
      ASSERT_NEAR(color, coded * 255, 2.5);
      changed += color != straight.bytes[4 * x + c];
    }
  }
  EXPECT_GT(changed, 1000);
  Bytes divided(2800);
  read(premultiplied, RowForm::argbPremultiplied, divided);
  for (size_t x = 0; x < 700; ++x)
    for (size_t c = 1; c < 4; ++c) ASSERT_LE(divided[4 * x + c], divided[4 * x]);
}

TEST_F(ImageRows, TheDisplaysProfileAndDeviceRGBNeedNoConversion) {
  const Space display(CGColorSpaceCreateWithICCProfile(cg::sharedSRGBProfile()));
  Sample s;
  s.space = display.get();
  s.bits = 32;
  s.info = kCGImageAlphaFirst;
  fill(s, 9, 1);
  const auto reader = cg::RowReader::make(s.image().get(), rgb_.get(), RowForm::argbStraight);
  EXPECT_EQ(reader->rowInPlace(0), s.bytes.data());
}

TEST_F(ImageRows, AGrayProfileIsConvertedIntoColours) {
  const auto profile = testing_support::grayProfile(1.0);
  const Space linear(CGColorSpaceCreateWithICCProfile(profile.get()));
  Sample s;
  s.space = linear.get();
  s.width = 256;
  s.height = 1;
  s.rowBytes = 256;
  for (int v = 0; v < 256; ++v) s.bytes.push_back(static_cast<uint8_t>(v));
  Bytes out(1024), gray(256);
  cg::RowReader::make(s.image().get(), nullptr, RowForm::argbStraight)->read(0, 0, 256, out.data());
  for (size_t v = 0; v < 256; ++v) {
    const double light = static_cast<double>(v) / 255;
    const double coded = light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
    EXPECT_EQ(out[4 * v], 255);
    for (size_t c = 1; c < 4; ++c) EXPECT_NEAR(out[4 * v + c], coded * 255, 2.5);
  }
  cg::RowReader::make(s.image().get(), nullptr, RowForm::gray)->read(0, 0, 256, gray.data());
  EXPECT_EQ(gray, s.bytes) << "its own space is kept";
}

TEST_F(ImageRows, InkProfilesAreConverted) {
  const auto profile = testing_support::inkProfile();
  const Space inks(CGColorSpaceCreateWithICCProfile(profile.get()));
  Sample s;
  s.space = inks.get();
  s.bits = 32;
  s.width = 3;
  s.height = 1;
  s.rowBytes = 12;
  s.bytes = {0, 0, 0, 0, 255, 0, 0, 0, 0, 0, 0, 255};
  Bytes out(12), gray(3);
  cg::RowReader::make(s.image().get(), rgb_.get(), RowForm::argbStraight)->read(0, 0, 3, out.data());
  const Bytes about = {255, 255, 255, 255, 255, 0, 255, 255, 255, 0, 0, 0};
  for (size_t i = 0; i < 12; ++i) EXPECT_NEAR(out[i], about[i], 3) << i;
  cg::RowReader::make(s.image().get(), gray_.get(), RowForm::gray)->read(0, 0, 3, gray.data());
  EXPECT_NEAR(gray[0], 255, 3);
  EXPECT_NEAR(gray[1], 179, 3);
  EXPECT_NEAR(gray[2], 0, 3);
}

}  // namespace
