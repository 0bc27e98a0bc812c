// Reading an image of any layout as rows of one working form, in the colour space asked for.
#pragma once

#include <CoreGraphics/CoreGraphics.h>

#include <cstddef>
#include <cstdint>
#include <memory>

namespace cg {

// The working forms. Colour pixels are four bytes in memory order; opaque pixels have alpha 255.
enum class RowForm : uint8_t {
  gray,               // one byte; alpha is dropped without composing: for images without alpha
  grayAlphaStraight,  // alpha, grey
  grayAlphaPremultiplied,
  argbStraight,  // alpha, red, green, blue
  argbPremultiplied,
  rgbaStraight,  // red, green, blue, alpha: what encoders take
};

constexpr size_t bytesPerPixel(RowForm form) noexcept {
  switch (form) {
    case RowForm::gray:
      return 1;
    case RowForm::grayAlphaStraight:
    case RowForm::grayAlphaPremultiplied:
      return 2;
    default:
      return 4;
  }
}

// Whether any pixel can be less than opaque, going by the layout.
bool imageHasAlpha(CGImageRef image) noexcept;

// Everything that reading needs is set up once; reading a row then allocates nothing.
class RowReader {
 public:
  // space  the one to convert into: RGB for colour forms, grey for grey forms; NULL keeps the image's own
  //        where its kind fits the form (RGB image for colour, grey image for grey), else is the device's.
  // Gives  a reader; NULL if memory runs out or there is no way from the image's space into the other.
  static std::unique_ptr<RowReader> make(CGImageRef image, CGColorSpaceRef space, RowForm form) noexcept;
  virtual ~RowReader() = default;

  // Where the image's bytes are already in this form and space, the row itself; else NULL.
  virtual const uint8_t *rowInPlace(size_t row) const noexcept = 0;

  // Pixels [first, first + count) of a row, top row first, into count * bytesPerPixel(form) bytes.
  virtual void read(size_t row, size_t first, size_t count, uint8_t *out) noexcept = 0;
};

}  // namespace cg
