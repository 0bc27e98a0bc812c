// The pixels being traced: where they lie, which ones are neighbours, which belong to the region.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>

namespace drav::path {

// Index of a pixel in row order, the top row first.
using PixelIndex = std::uint32_t;
inline constexpr PixelIndex kNoPixel = std::numeric_limits<PixelIndex>::max();

// Pixels of 4 bytes, alpha first, in rows of exactly 4 * width bytes. width * height fits a PixelIndex.
struct ImageInfo {
  const std::uint8_t *buffer;
  std::int32_t width;
  std::int32_t height;
  float alphaThreshold;  // 0 to 1; the region is where alpha exceeds it
};

// A pixel with its position, so that a walk need not divide at every step.
struct Pixel {
  PixelIndex index;
  int row;
  int column;
};

enum ProcessingDirection {
  ProcessingDirectionNone,
  ProcessingDirectionHorizontal,  // west or east
  ProcessingDirectionVertical,    // north or south
  ProcessingDirectionRising,      // north-east or south-west
  ProcessingDirectionFalling      // north-west or south-east
};

// An identifier names a neighbour by its remainder by 8: 0 is west, and counting up turns clockwise. Walks
// count on without reducing it. The remainder has the sign of the identifier: one that is negative and no
// multiple of 8 names no neighbour.
inline constexpr int kDirections = 8;

struct Step {
  int rows, columns;
};
inline constexpr Step kSteps[kDirections] = {{0, -1}, {-1, -1}, {-1, 0}, {-1, 1},
                                             {0, 1},  {1, 1},   {1, 0},  {1, -1}};

inline void PositionForIndex(const ImageInfo &info, PixelIndex index, int *row, int *column) noexcept {
  const auto width = static_cast<PixelIndex>(info.width);
  *row = static_cast<int>(index / width);
  *column = static_cast<int>(index % width);
}

inline Pixel PixelForIndex(const ImageInfo &info, PixelIndex index) noexcept {
  Pixel pixel{index, 0, 0};
  PositionForIndex(info, index, &pixel.row, &pixel.column);
  return pixel;
}

// Whether the neighbour that identifier names exists. It is written also when it lies outside the image, and
// left alone when the identifier names none.
inline bool IsValidPixel(const ImageInfo &info, const Pixel &pixel, int identifier,
                         Pixel *neighbour) noexcept {
  const int remainder = identifier % kDirections;
  if (remainder < 0) return false;
  const Step step = kSteps[remainder];
  neighbour->row = pixel.row + step.rows;
  neighbour->column = pixel.column + step.columns;
  neighbour->index = pixel.index + static_cast<PixelIndex>(step.rows * info.width + step.columns);
  return static_cast<std::uint32_t>(neighbour->row) < static_cast<std::uint32_t>(info.height) &&
         static_cast<std::uint32_t>(neighbour->column) < static_cast<std::uint32_t>(info.width);
}

// Whether a pixel of this alpha is background: at or below the threshold. The name says the reverse of what a
// reader expects; it is the name the tracer has always had for it.
inline bool IsAlphaOpaque(const ImageInfo &info, std::uint8_t alpha) noexcept {
  return info.alphaThreshold >= static_cast<float>(alpha) / 255.0F;
}
inline bool IsPixelOpaque(const ImageInfo &info, PixelIndex index) noexcept {
  return IsAlphaOpaque(info, info.buffer[std::size_t{index} * 4]);
}

// Whether all eight neighbours exist and none is background. The pixel itself is not looked at.
// This is the definition; boundary.h finds the same for whole rows at once.
bool IsPixelFloating(const ImageInfo &info, PixelIndex index) noexcept;

ProcessingDirection DirectionForIdentifier(int identifier) noexcept;

}  // namespace drav::path
