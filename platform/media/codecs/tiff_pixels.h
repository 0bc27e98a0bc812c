// What the samples of a TIFF mean, and rows of them brought to the layout of a decoded image.
#pragma once

#include <optional>
#include <vector>

#include "media/codecs/cmyk_rows.h"
#include "media/codecs/codec.h"
#include "media/codecs/tiff_directory.h"

namespace codecs {

enum class TiffAlpha : uint8_t { none, straight, premultiplied };

// The colours of a TIFF, without where they lie.
struct TiffColours {
  TiffPhotometric photometric = TiffPhotometric::blackIsZero;
  unsigned bits = 8;
  unsigned samples = 1;
  TiffAlpha alpha = TiffAlpha::none;
  unsigned alphaAt = 0;          // which sample
  std::vector<uint8_t> palette;  // 3 << bits bytes: red, green, blue of each entry

  // Samples of the colour itself.
  unsigned colourSamples() const noexcept;
  PixelLayout layout() const noexcept;
};

class TiffPixels {
 public:
  // May throw std::bad_alloc. `cmykProfile` is used for CMYK alone.
  TiffPixels(TiffColours colours, uint32_t longestRow, Bytes cmykProfile, const CGImageDecodeLimits &limits);

  // Brings one row of pixels to its place. `planes` holds the row of each plane: a single one when the
  // samples lie together, else one for each sample. REQUIRES: count is at most longestRow; rows of
  // 16-bit samples are aligned.
  void put(const uint8_t *const *planes, bool together, size_t count, uint8_t *out) noexcept;

 private:
  template <class Sample>
  void finish(const Sample *samples, size_t count, uint8_t *out) noexcept;
  template <class Sample>
  void finishGrey(const Sample *samples, size_t count, uint8_t *out) const noexcept;
  template <class Sample>
  void finishColour(const Sample *samples, size_t count, uint8_t *out) const noexcept;
  template <class Sample>
  void finishPalette(const Sample *samples, size_t count, uint8_t *out) const noexcept;
  template <class Sample>
  void finishCmyk(const Sample *samples, size_t count, uint8_t *out) noexcept;
  template <class Sample>
  void straighten(const Sample *samples, size_t count, uint8_t *out, size_t outSamples) const noexcept;
  void gather(const uint8_t *const *planes, bool together, size_t count) noexcept;

  TiffColours colours_;
  std::vector<uint8_t> bytes_;   // each value that a sample can have, as a byte
  std::vector<uint16_t> wide_;   // one row, samples together
  std::vector<uint8_t> narrow_;  // the same for samples of 8 bits
  std::vector<uint8_t> inks_;    // one row of CMYK
  std::optional<CmykRows> cmyk_;
};

}  // namespace codecs
