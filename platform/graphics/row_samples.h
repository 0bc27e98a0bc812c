// Getting the components of any layout out of a row's bytes, brought to 8 bits.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "graphics/alpha_rows.h"
#include "graphics/image.h"

namespace cg {

// Where the components of a pixel stand, and what their stored values mean.
class SampleLayout {
 public:
  explicit SampleLayout(const CGImage &image) noexcept;

  [[nodiscard]] std::size_t colors() const noexcept { return colors_; }
  [[nodiscard]] bool hasAlpha() const noexcept { return hasAlpha_; }
  static bool hasAlpha(const ImageLayout &layout) noexcept;
  [[nodiscard]] bool isPremultiplied() const noexcept { return isPremultiplied_; }
  // Whether each component is a byte that means itself.
  [[nodiscard]] bool isPlainBytes() const noexcept { return isPlainBytes_; }
  [[nodiscard]] std::size_t bytesPerPixel() const noexcept { return bitsPerPixel_ / 8; }
  // Within a pixel of whole bytes; of a plain layout only.
  [[nodiscard]] std::size_t colorByte(std::size_t color) const noexcept {
    return byteOf(firstColor_ + color);
  }
  [[nodiscard]] std::size_t alphaByte() const noexcept { return byteOf(alphaAt_); }

  // Pixels [first, first + count): color c of pixel i to colors[i * stride + c], its alpha to
  // alpha[i * alphaStride], 255 where the layout has none. The step is taken at the stored precision.
  void read(const uint8_t *row, std::size_t first, std::size_t count, AlphaStep step, uint8_t *colors,
            std::size_t stride, uint8_t *alpha, std::size_t alphaStride) const noexcept;

  // The values of pixels that are one component of up to 8 bits each; false for any other layout.
  [[nodiscard]] bool readPackedValues(const uint8_t *row, std::size_t first, std::size_t count,
                                      uint8_t *values) const noexcept;

 private:
  // Where the samples of a run of pixels go.
  struct Target {
    uint8_t *colors;
    std::size_t stride;
    uint8_t *alpha;
    std::size_t alphaStride;
  };
  template <std::size_t kColors>
  void readBytes(const uint8_t *row, std::size_t first, std::size_t count, Target to) const noexcept;
  template <std::size_t kColors>
  void readBits(const uint8_t *row, std::size_t first, std::size_t count, Target to) const noexcept;
  template <std::size_t kDepth>
  void readPacked(const uint8_t *row, std::size_t first, std::size_t count, uint8_t *values) const noexcept;
  template <std::size_t kColors, AlphaStep kStep>
  void readWords(const uint8_t *row, std::size_t first, std::size_t count, Target to) const noexcept;
  template <std::size_t kColors>
  void readColors(const uint8_t *row, std::size_t first, std::size_t count, AlphaStep step,
                  Target to) const noexcept;
  [[nodiscard]] std::size_t byteOf(std::size_t component) const noexcept { return component ^ byteFlip_; }
  [[nodiscard]] uint32_t bitsAt(const uint8_t *row, std::size_t bit) const noexcept;
  [[nodiscard]] uint32_t wordAt(const uint8_t *row, std::size_t byte) const noexcept;
  [[nodiscard]] uint32_t decodedWord(std::size_t color, uint32_t value) const noexcept;
  void fillMeanings(const CGImage &image) noexcept;

  std::size_t bitsPerComponent_, bitsPerPixel_;
  std::size_t colors_ = 0, firstColor_ = 0, alphaAt_ = 0;
  std::size_t byteFlip_ = 0;     // what turns the place of a big-endian byte into that of the stored one
  bool straddlesBytes_ = false;  // whether a component may lie across two bytes
  bool hasAlpha_ = false, isPremultiplied_ = false, isPlainBytes_ = false, hasDecode_ = false;
  std::array<CGFloat, 8> decode_{};
  std::array<std::array<uint8_t, 256>, 4> meanings_{};  // of stored values of up to 8 bits, for each color
};

}  // namespace cg
