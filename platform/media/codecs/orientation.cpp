#include "media/codecs/orientation.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "media/codecs/frame.h"

namespace codecs {
namespace {

// Where the pixels of the file go, in steps of the picture.
struct Turn {
  bool transposed;
  bool mirrored;    // left and right changed, after transposing
  bool upsideDown;  // top and bottom
};

Turn turnOf(unsigned orientation) noexcept {
  switch (orientation) {
    case 2:
      return {false, true, false};
    case 3:
      return {false, true, true};
    case 4:
      return {false, false, true};
    case 5:
      return {true, false, false};
    case 6:
      return {true, true, false};
    case 7:
      return {true, true, true};
    case 8:
      return {true, false, true};
    default:
      return {false, false, false};
  }
}

template <class Pixel>
void mirrorRow(uint8_t *row, uint32_t width) noexcept {
  for (size_t left = 0, right = width - 1; left < right; ++left, --right) {
    Pixel a, b;
    std::memcpy(&a, row + left * sizeof a, sizeof a);
    std::memcpy(&b, row + right * sizeof b, sizeof b);
    std::memcpy(row + left * sizeof a, &b, sizeof b);
    std::memcpy(row + right * sizeof b, &a, sizeof a);
  }
}

void mirror(DecodedImage &image) noexcept {
  for (uint32_t y = 0; y < image.height; ++y) {
    if (image.layout == PixelLayout::grey8) {
      mirrorRow<uint8_t>(image.row(y), image.width);
    } else {
      mirrorRow<uint32_t>(image.row(y), image.width);
    }
  }
}

void turnUpsideDown(DecodedImage &image) noexcept {
  for (uint32_t top = 0, bottom = image.height - 1; top < bottom; ++top, --bottom) {
    std::swap_ranges(image.row(top), image.row(top) + image.rowBytes, image.row(bottom));
  }
}

// A square at a time, so that neither side runs through the caches.
template <class Pixel>
void transposeInto(const DecodedImage &from, DecodedImage &to) noexcept {
  constexpr uint32_t kSide = 32;
  for (uint32_t top = 0; top < from.height; top += kSide) {
    for (uint32_t left = 0; left < from.width; left += kSide) {
      const uint32_t bottom = std::min(top + kSide, from.height), right = std::min(left + kSide, from.width);
      for (uint32_t x = left; x < right; ++x) {
        uint8_t *const row = to.row(x);
        for (uint32_t y = top; y < bottom; ++y) {
          std::memcpy(row + y * sizeof(Pixel), from.row(y) + x * sizeof(Pixel), sizeof(Pixel));
        }
      }
    }
  }
}

Fault transpose(DecodedImage &image, const CGImageDecodeLimits &limits) noexcept {
  CGImageDecodeLimits rest = limits;
  rest.memoryBytes -= std::min<uint64_t>(rest.memoryBytes, image.pixels.size());
  DecodedImage turned;
  const Fault fault = makeFrame(turned, image.height, image.width, image.layout, rest);
  if (fault != Fault::none) return fault;
  if (image.layout == PixelLayout::grey8) {
    transposeInto<uint8_t>(image, turned);
  } else {
    transposeInto<uint32_t>(image, turned);
  }
  image.width = turned.width;
  image.height = turned.height;
  image.rowBytes = turned.rowBytes;
  image.pixels = std::move(turned.pixels);
  std::swap(image.resolution.x, image.resolution.y);
  return Fault::none;
}

}  // namespace

Fault applyOrientation(DecodedImage &image, unsigned orientation,
                       const CGImageDecodeLimits &limits) noexcept {
  const Turn turn = turnOf(orientation);
  if (turn.transposed) {
    if (const Fault fault = transpose(image, limits); fault != Fault::none) return fault;
  }
  if (turn.mirrored) mirror(image);
  if (turn.upsideDown) turnUpsideDown(image);
  return Fault::none;
}

}  // namespace codecs
