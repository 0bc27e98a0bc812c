// The bytes of RGB and CMYK images as four-byte pixels, colours not yet converted.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "graphics/row_samples.h"

namespace cg {

class PixelUnpacker {
 public:
  // alphaFirst  the order of RGB pixels; inks are four bytes without alpha.
  // step        what is done to colour on the way, where there is alpha.
  PixelUnpacker(const SampleLayout &layout, const ImageLayout &image, bool alphaFirst,
                AlphaStep step) noexcept;

  // Whether the bytes of a row are the pixels already.
  [[nodiscard]] bool changesNothing() const noexcept { return route_ == Route::none; }

  void unpack(const uint8_t *row, std::size_t first, std::size_t count, uint8_t *out) const noexcept;

 private:
  enum class Route : uint8_t { none, shuffle, widen, samples, inks };

  [[nodiscard]] Route chooseRoute(std::size_t bitsPerPixel) noexcept;

  SampleLayout layout_;
  bool alphaFirst_;
  AlphaStep step_;
  std::array<uint8_t, 4> from_{};  // which byte of a stored pixel each byte comes from
  Route route_;                    // behind what choosing it fills in
};

}  // namespace cg
