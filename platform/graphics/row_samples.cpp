#include "graphics/row_samples.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "graphics/alpha_math.h"
#include "graphics/color_space.h"

namespace cg {
namespace {

constexpr bool alphaIsFirst(CGImageAlphaInfo info) noexcept {
  return info == kCGImageAlphaPremultipliedFirst || info == kCGImageAlphaFirst ||
         info == kCGImageAlphaNoneSkipFirst;
}

constexpr bool alphaCounts(CGImageAlphaInfo info) noexcept {
  return info != kCGImageAlphaNone && info != kCGImageAlphaNoneSkipFirst && info != kCGImageAlphaNoneSkipLast;
}

constexpr std::size_t byteFlipOf(CGBitmapInfo order) noexcept {
  return order == kCGBitmapByteOrder16Little ? 1 : order == kCGBitmapByteOrder32Little ? 3 : 0;
}

// A value of a range between two others, as a whole number from 0 to limit.
uint32_t scaled(double least, double greatest, double portion, uint32_t limit) noexcept {
  const double value = least + portion * (greatest - least);
  return static_cast<uint32_t>(std::clamp(std::floor(value + 0.5), 0.0, static_cast<double>(limit)));
}

// A component of 16 bits as one of 8, rounded once.
uint32_t narrowed(uint32_t value) noexcept { return (value + 128) / 257; }

template <AlphaStep kStep>
uint32_t stepped(uint32_t value, uint32_t alpha) noexcept {
  if constexpr (kStep == AlphaStep::multiply) {
    constexpr uint64_t kWhole = uint64_t{65535} * 65535;
    return static_cast<uint32_t>((uint64_t{value} * alpha * 255 + kWhole / 2) / kWhole);
  } else if constexpr (kStep == AlphaStep::divide) {
    return alpha == 0 ? 0 : std::min((value * 510 + alpha) / (2 * alpha), 255U);
  } else {
    return narrowed(value);
  }
}

// The same where both are 8 bits already.
template <std::size_t kColors>
void stepBytes(AlphaStep step, uint8_t *colors, std::size_t stride, const uint8_t *alpha,
               std::size_t alphaStride, std::size_t count) noexcept {
  for (std::size_t i = 0; i < count; ++i, colors += stride, alpha += alphaStride)
    for (std::size_t c = 0; c < kColors; ++c)
      colors[c] = step == AlphaStep::multiply ? multiply(colors[c], *alpha) : divide(colors[c], *alpha);
}

}  // namespace

bool SampleLayout::hasAlpha(const ImageLayout &layout) noexcept { return alphaCounts(layout.alphaInfo()); }

SampleLayout::SampleLayout(const CGImage &image) noexcept
    : bitsPerComponent_(image.layout.bitsPerComponent),
      bitsPerPixel_(image.layout.bitsPerPixel),
      byteFlip_(byteFlipOf(image.layout.byteOrder())),
      straddlesBytes_(bitsPerPixel_ % bitsPerComponent_ != 0),
      hasDecode_(image.hasDecode),
      decode_(image.decode) {
  const CGImageAlphaInfo info = image.layout.alphaInfo();
  colors_ = info == kCGImageAlphaOnly ? 0 : CGColorSpaceGetNumberOfComponents(image.space.get());
  firstColor_ = alphaIsFirst(info) ? 1 : 0;
  alphaAt_ = alphaIsFirst(info) ? 0 : colors_;
  hasAlpha_ = hasAlpha(image.layout);
  isPremultiplied_ = info == kCGImageAlphaPremultipliedFirst || info == kCGImageAlphaPremultipliedLast;
  isPlainBytes_ = bitsPerComponent_ == 8 && !hasDecode_;
  if (bitsPerComponent_ <= 8) fillMeanings(image);
}

// An index means itself unless a decode array says otherwise, and never more than the last entry.
void SampleLayout::fillMeanings(const CGImage &image) noexcept {
  const CGColorSpaceRef space = image.space.get();
  const bool isIndexed = colors_ > 0 && space->base;
  const auto greatest = static_cast<uint32_t>((1U << bitsPerComponent_) - 1);
  const auto limit = isIndexed ? static_cast<uint32_t>(space->colors - 1) : 255U;
  if (isIndexed) isPlainBytes_ = isPlainBytes_ && limit == 255;
  for (std::size_t c = 0; c < std::max<std::size_t>(colors_, 1); ++c) {
    const double unit = isIndexed ? 1.0 : 255.0;
    const double least = hasDecode_ ? unit * static_cast<double>(decode_[2 * c]) : 0.0;
    const double most = hasDecode_  ? unit * static_cast<double>(decode_[2 * c + 1])
                        : isIndexed ? greatest
                                    : 255.0;
    for (uint32_t value = 0; value <= greatest; ++value)
      meanings_[c][value] = static_cast<uint8_t>(scaled(least, most, double(value) / greatest, limit));
  }
}

uint32_t SampleLayout::bitsAt(const uint8_t *row, std::size_t bit) const noexcept {
  if (!straddlesBytes_) {
    const uint32_t byte = row[(bit / 8) ^ byteFlip_];
    return byte >> (8 - bitsPerComponent_ - bit % 8) & ((1U << bitsPerComponent_) - 1);
  }
  uint32_t value = 0;
  for (std::size_t at = bit; at < bit + bitsPerComponent_; ++at)
    value = value << 1 | (row[(at / 8) ^ byteFlip_] >> (7 - at % 8) & 1U);
  return value;
}

uint32_t SampleLayout::wordAt(const uint8_t *row, std::size_t byte) const noexcept {
  return static_cast<uint32_t>(row[byte ^ byteFlip_] << 8 | row[(byte + 1) ^ byteFlip_]);
}

uint32_t SampleLayout::decodedWord(std::size_t color, uint32_t value) const noexcept {
  if (!hasDecode_) return value;
  return scaled(65535.0 * static_cast<double>(decode_[2 * color]),
                65535.0 * static_cast<double>(decode_[2 * color + 1]), value / 65535.0, 65535);
}

template <std::size_t kColors>
void SampleLayout::readBytes(const uint8_t *row, std::size_t first, std::size_t count,
                             Target to) const noexcept {
  const std::size_t pixelBytes = bytesPerPixel();
  for (std::size_t i = 0; i < count; ++i, to.colors += to.stride, to.alpha += to.alphaStride) {
    const std::size_t pixel = (first + i) * pixelBytes;
    for (std::size_t c = 0; c < kColors; ++c)
      to.colors[c] = meanings_[c][row[(pixel + firstColor_ + c) ^ byteFlip_]];
    *to.alpha = hasAlpha_ ? row[(pixel + alphaAt_) ^ byteFlip_] : uint8_t{255};
  }
}

// Pixels that are one component each.
template <std::size_t kDepth>
void SampleLayout::readPacked(const uint8_t *row, std::size_t first, std::size_t count,
                              uint8_t *values) const noexcept {
  constexpr std::size_t kPixels = 8 / kDepth;
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t x = first + i;
    const uint32_t byte = row[(x / kPixels) ^ byteFlip_];
    values[i] = meanings_[0][byte >> (8 - kDepth - x % kPixels * kDepth) & ((1U << kDepth) - 1)];
  }
}

template <std::size_t kColors>
void SampleLayout::readBits(const uint8_t *row, std::size_t first, std::size_t count,
                            Target to) const noexcept {
  const std::size_t depth = bitsPerComponent_;
  const uint32_t toByte = 255U / ((1U << depth) - 1);
  for (std::size_t i = 0; i < count; ++i, to.colors += to.stride, to.alpha += to.alphaStride) {
    const std::size_t pixel = (first + i) * bitsPerPixel_;
    for (std::size_t c = 0; c < kColors; ++c)
      to.colors[c] = meanings_[c][bitsAt(row, pixel + (firstColor_ + c) * depth)];
    *to.alpha =
        hasAlpha_ ? static_cast<uint8_t>(bitsAt(row, pixel + alphaAt_ * depth) * toByte) : uint8_t{255};
  }
}

template <std::size_t kColors, AlphaStep kStep>
void SampleLayout::readWords(const uint8_t *row, std::size_t first, std::size_t count,
                             Target to) const noexcept {
  const std::size_t pixelBytes = bytesPerPixel();
  for (std::size_t i = 0; i < count; ++i, to.colors += to.stride, to.alpha += to.alphaStride) {
    const std::size_t pixel = (first + i) * pixelBytes;
    const uint32_t alpha = hasAlpha_ ? wordAt(row, pixel + 2 * alphaAt_) : 65535U;
    for (std::size_t c = 0; c < kColors; ++c) {
      const uint32_t value = decodedWord(c, wordAt(row, pixel + 2 * (firstColor_ + c)));
      to.colors[c] = static_cast<uint8_t>(stepped<kStep>(value, alpha));
    }
    *to.alpha = static_cast<uint8_t>(narrowed(alpha));
  }
}

template <std::size_t kColors>
void SampleLayout::readColors(const uint8_t *row, std::size_t first, std::size_t count, AlphaStep step,
                              Target to) const noexcept {
  if (bitsPerComponent_ == 16) {
    if (step == AlphaStep::multiply) return readWords<kColors, AlphaStep::multiply>(row, first, count, to);
    if (step == AlphaStep::divide) return readWords<kColors, AlphaStep::divide>(row, first, count, to);
    return readWords<kColors, AlphaStep::keep>(row, first, count, to);
  }
  if (bitsPerComponent_ == 8)
    readBytes<kColors>(row, first, count, to);
  else
    readBits<kColors>(row, first, count, to);
  if (step != AlphaStep::keep)
    stepBytes<kColors>(step, to.colors, to.stride, to.alpha, to.alphaStride, count);
}

void SampleLayout::read(const uint8_t *row, std::size_t first, std::size_t count, AlphaStep step,
                        uint8_t *colors, std::size_t stride, uint8_t *alpha,
                        std::size_t alphaStride) const noexcept {
  const Target to{colors, stride, alpha, alphaStride};
  if (!hasAlpha_) step = AlphaStep::keep;
  switch (colors_) {
    case 0:
      return readColors<0>(row, first, count, step, to);
    case 1:
      return readColors<1>(row, first, count, step, to);
    case 3:
      return readColors<3>(row, first, count, step, to);
    default:
      return readColors<4>(row, first, count, step, to);
  }
}

bool SampleLayout::readPackedValues(const uint8_t *row, std::size_t first, std::size_t count,
                                    uint8_t *values) const noexcept {
  if (bitsPerPixel_ != bitsPerComponent_ || colors_ != 1) return false;
  switch (bitsPerComponent_) {
    case 1:
      readPacked<1>(row, first, count, values);
      return true;
    case 2:
      readPacked<2>(row, first, count, values);
      return true;
    case 4:
      readPacked<4>(row, first, count, values);
      return true;
    case 8:
      readPacked<8>(row, first, count, values);
      return true;
    default:
      return false;
  }
}

}  // namespace cg
