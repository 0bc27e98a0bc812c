#include "recoloring.h"

#include <array>
#include <cmath>

#include "color_memory.h"
#include "failure.h"
#include "hush.h"
#include "pixels.h"

namespace {

constexpr size_t kRowsBetweenNews = 16;
constexpr uint32_t kOpaque = 0xFF000000U;

// A straight colour as one number: alpha in the top byte, then red, green, blue.
uint32_t colorAt(const uint8_t *pixel) noexcept {
  return uint32_t{pixel[0]} << 24 | uint32_t{pixel[1]} << 16 | uint32_t{pixel[2]} << 8 | uint32_t{pixel[3]};
}

void store(uint8_t *pixel, uint32_t color) noexcept {
  for (int i = 0; i < 4; ++i) pixel[i] = static_cast<uint8_t>(color >> (24 - 8 * i));
}

float component(uint32_t color, int shift) noexcept {
  return static_cast<float>(color >> shift & 0xFF) / 255.0F;
}

// Replacements may leave 0 to 1; what is no number counts as 0.
uint32_t byteOf(float value) noexcept {
  if (!(value > 0)) return 0;
  return value < 1 ? static_cast<uint32_t>(std::lround(value * 255.0F)) : 255;
}

// Replaces colours, and knows those that it has seen.
class Painter {
 public:
  explicit Painter(DRAVCFColorMatchListRef rules) noexcept : rules_(rules) {}

  uint32_t operator()(uint32_t color) {
    // Neighbours are often equal.
    if (color != last_ || !started_) {
      result_ = memory_.resultFor(color, [this](uint32_t asked) { return replacement(asked); });
      last_ = color;
      started_ = true;
    }
    return result_;
  }

 private:
  uint32_t replacement(uint32_t color) const {
    const std::array<float, 4> found = {component(color, 16), component(color, 8), component(color, 0),
                                        component(color, 24)};
    std::array<float, 4> result = {};
    if (!DRAVCFColorMatchListFindMatch(rules_, found.data(), result.data())) return color;
    return byteOf(result[3]) << 24 | byteOf(result[0]) << 16 | byteOf(result[1]) << 8 | byteOf(result[2]);
  }

  DRAVCFColorMatchListRef rules_;
  ColorMemory memory_;
  uint32_t last_ = 0, result_ = 0;
  bool started_ = false;
};

// Calls `paint` for every pixel.
template <class Paint>
void forEachPixel(const Pixels &pixels, const Watch &watch, const Paint &paint) {
  for (size_t y = 0; y < pixels.height; ++y) {
    if (y % kRowsBetweenNews == 0) watch(static_cast<double>(y) / static_cast<double>(pixels.height));
    uint8_t *pixel = pixels.row(y);
    for (size_t x = 0; x < pixels.width; ++x, pixel += 4) paint(pixel);
  }
}

void paintStraight(const Pixels &pixels, Painter &painter, const Watch &watch) {
  forEachPixel(pixels, watch, [&](uint8_t *pixel) { store(pixel, painter(colorAt(pixel))); });
}

// Gives whether something became transparent. The first byte is without meaning before and holds the alpha
// after.
bool paintOpaque(const Pixels &pixels, Painter &painter, const Watch &watch) {
  uint32_t all = kOpaque;
  forEachPixel(pixels, watch, [&](uint8_t *pixel) {
    const uint32_t result = painter(colorAt(pixel) | kOpaque);
    all &= result;
    store(pixel, result);
  });
  return (all & kOpaque) != kOpaque;
}

// Pixels whose colour stays keep their bytes: dividing by alpha and multiplying again need not give them
// back.
void paintPremultiplied(const Pixels &pixels, Painter &painter, const Watch &watch) {
  const Hush hush;
  forEachPixel(pixels, watch, [&](uint8_t *pixel) {
    std::array<uint8_t, 4> straight = {pixel[0], pixel[1], pixel[2], pixel[3]};
    DRAVCFUnpremultiplyARGBBuffer(straight.data(), straight.size());
    const uint32_t before = colorAt(straight.data()), after = painter(before);
    if (after == before) return;
    store(pixel, after);
    DRAVCFPremultiplyARGBBuffer(pixel, 4);
  });
}

Image inColor(Image image) {
  DRAVCFImageConvertToColor(image.get());
  if (!DRAVCFImageIsColor(image.get())) throw Failure("out of memory");
  return asRead(std::move(image));
}

}  // namespace

Image recolored(Image image, DRAVCFColorMatchListRef rules, const Watch &watch) {
  const Image held = inColor(std::move(image));
  const Pixels pixels = pixelsOf(held.get());
  const CGImageAlphaInfo alpha = DRAVCFImageGetAlphaInfo(held.get());
  Painter painter(rules);
  bool translucent = false;
  if (alpha == kCGImageAlphaFirst) paintStraight(pixels, painter, watch);
  if (alpha == kCGImageAlphaPremultipliedFirst) paintPremultiplied(pixels, painter, watch);
  if (alpha == kCGImageAlphaNoneSkipFirst) translucent = paintOpaque(pixels, painter, watch);
  DRAVCFImageInvalidateImage(held.get());
  return translucent ? relabelled(held.get(), kCGImageAlphaFirst) : held;
}
