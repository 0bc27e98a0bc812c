#include "media/codecs/tiff_pixels.h"

#include <cstring>
#include <utility>

#include "media/codecs/straight_alpha.h"
#include "media/codecs/tiff_samples.h"

namespace codecs {
namespace {

// Every value of that many bits as a byte, rounded to nearest.
std::vector<uint8_t> bytesFor(unsigned bits, bool inverted) {
  const uint32_t most = (1u << bits) - 1;
  std::vector<uint8_t> bytes(size_t{most} + 1);
  for (uint32_t value = 0; value <= most; ++value) {
    const auto byte = static_cast<uint8_t>((value * 255 + most / 2) / most);
    bytes[value] = static_cast<uint8_t>(inverted ? 255 - byte : byte);
  }
  return bytes;
}

// Red, green and blue of 8 bits with nothing beside them, or with straight alpha: what most files are.
void expandRgb(const uint8_t *rgb, size_t count, uint8_t *out) noexcept {
  for (size_t i = 0; i < count; ++i, rgb += 3, out += 4) {
    out[0] = 255;
    out[1] = rgb[0];
    out[2] = rgb[1];
    out[3] = rgb[2];
  }
}

void turnRgba(const uint8_t *rgba, size_t count, uint8_t *out) noexcept {
  for (size_t i = 0; i < count; ++i, rgba += 4, out += 4) {
    out[0] = rgba[3];
    out[1] = rgba[0];
    out[2] = rgba[1];
    out[3] = rgba[2];
  }
}

}  // namespace

unsigned TiffColours::colourSamples() const noexcept {
  switch (photometric) {
    case TiffPhotometric::rgb:
    case TiffPhotometric::yCbCr:
      return 3;
    case TiffPhotometric::cmyk:
      return 4;
    default:
      return 1;
  }
}

PixelLayout TiffColours::layout() const noexcept {
  if (alpha != TiffAlpha::none) return PixelLayout::argb32;
  const bool grey =
      photometric == TiffPhotometric::whiteIsZero || photometric == TiffPhotometric::blackIsZero;
  return grey ? PixelLayout::grey8 : PixelLayout::xrgb32;
}

TiffPixels::TiffPixels(TiffColours colours, uint32_t longestRow, Bytes cmykProfile,
                       const CGImageDecodeLimits &limits)
    : colours_(std::move(colours)) {
  bytes_ = bytesFor(colours_.bits, colours_.photometric == TiffPhotometric::whiteIsZero);
  if (colours_.bits == 8) {
    narrow_.resize(size_t{longestRow} * colours_.samples);
  } else {
    wide_.resize(size_t{longestRow} * colours_.samples);
  }
  if (colours_.photometric != TiffPhotometric::cmyk) return;
  inks_.resize(size_t{longestRow} * 4);
  cmyk_.emplace(cmykProfile, false, limits);
}

void TiffPixels::put(const uint8_t *const *planes, bool together, size_t count, uint8_t *out) noexcept {
  if (colours_.bits == 8 && together) return finish(planes[0], count, out);
  if (colours_.bits == 16 && together)
    return finish(reinterpret_cast<const uint16_t *>(planes[0]), count, out);
  gather(planes, together, count);
  if (colours_.bits == 8) {
    finish(narrow_.data(), count, out);
  } else {
    finish(wide_.data(), count, out);
  }
}

void TiffPixels::gather(const uint8_t *const *planes, bool together, size_t count) noexcept {
  const size_t step = colours_.samples;
  if (together) return unpackSamples(planes[0], colours_.bits, count * step, wide_.data(), 1);
  for (size_t sample = 0; sample < step; ++sample) {
    const uint8_t *plane = planes[sample];
    if (colours_.bits == 8) {
      for (size_t i = 0; i < count; ++i) narrow_[i * step + sample] = plane[i];
    } else if (colours_.bits == 16) {
      const auto *values = reinterpret_cast<const uint16_t *>(plane);
      for (size_t i = 0; i < count; ++i) wide_[i * step + sample] = values[i];
    } else {
      unpackSamples(plane, colours_.bits, count, wide_.data() + sample, step);
    }
  }
}

template <class Sample>
void TiffPixels::finish(const Sample *samples, size_t count, uint8_t *out) noexcept {
  switch (colours_.photometric) {
    case TiffPhotometric::palette:
      return finishPalette(samples, count, out);
    case TiffPhotometric::cmyk:
      return finishCmyk(samples, count, out);
    case TiffPhotometric::whiteIsZero:
    case TiffPhotometric::blackIsZero:
      return finishGrey(samples, count, out);
    default:
      return finishColour(samples, count, out);
  }
}

// The colour samples of each pixel as straight bytes, `outSamples` apart.
template <class Sample>
void TiffPixels::straighten(const Sample *samples, size_t count, uint8_t *out,
                            size_t outSamples) const noexcept {
  const size_t step = colours_.samples, colourSamples = colours_.colourSamples();
  const uint8_t *const bytes = bytes_.data();
  if (colours_.alpha != TiffAlpha::premultiplied) {
    for (size_t i = 0; i < count; ++i, samples += step, out += outSamples) {
      for (size_t s = 0; s < colourSamples; ++s) out[s] = bytes[samples[s]];
    }
    return;
  }
  const bool inverted = colours_.photometric == TiffPhotometric::whiteIsZero;
  for (size_t i = 0; i < count; ++i, samples += step, out += outSamples) {
    const uint32_t alpha = samples[colours_.alphaAt];
    for (size_t s = 0; s < colourSamples; ++s) {
      const uint8_t value = straightByte(samples[s], alpha);
      out[s] = static_cast<uint8_t>(inverted ? 255 - value : value);
    }
  }
}

template <class Sample>
void TiffPixels::finishGrey(const Sample *samples, size_t count, uint8_t *out) const noexcept {
  if (colours_.alpha == TiffAlpha::none) {
    if constexpr (sizeof(Sample) == 1) {
      const bool asTheyAre = colours_.samples == 1 && colours_.photometric == TiffPhotometric::blackIsZero;
      if (asTheyAre) return void(std::memcpy(out, samples, count));
    }
    return straighten(samples, count, out, 1);
  }
  straighten(samples, count, out + 1, 4);
  const bool inverted = colours_.photometric == TiffPhotometric::whiteIsZero;
  for (size_t i = 0; i < count; ++i, samples += colours_.samples, out += 4) {
    const uint8_t alpha = bytes_[samples[colours_.alphaAt]];
    out[0] = static_cast<uint8_t>(inverted ? 255 - alpha : alpha);
    out[2] = out[3] = out[1];
  }
}

template <class Sample>
void TiffPixels::finishColour(const Sample *samples, size_t count, uint8_t *out) const noexcept {
  if constexpr (sizeof(Sample) == 1) {
    if (colours_.samples == 3) return expandRgb(samples, count, out);
    if (colours_.samples == 4 && colours_.alpha == TiffAlpha::straight) return turnRgba(samples, count, out);
  }
  straighten(samples, count, out + 1, 4);
  for (size_t i = 0; i < count; ++i, samples += colours_.samples, out += 4) {
    out[0] = colours_.alpha == TiffAlpha::none ? uint8_t{255} : bytes_[samples[colours_.alphaAt]];
  }
}

template <class Sample>
void TiffPixels::finishPalette(const Sample *samples, size_t count, uint8_t *out) const noexcept {
  for (size_t i = 0; i < count; ++i, samples += colours_.samples, out += 4) {
    out[0] = colours_.alpha == TiffAlpha::none ? uint8_t{255} : bytes_[samples[colours_.alphaAt]];
    std::memcpy(out + 1, colours_.palette.data() + 3 * size_t{samples[0]}, 3);
  }
}

template <class Sample>
void TiffPixels::finishCmyk(const Sample *samples, size_t count, uint8_t *out) noexcept {
  straighten(samples, count, inks_.data(), 4);
  cmyk_->convert(inks_.data(), out, count);
  if (colours_.alpha == TiffAlpha::none) return;
  for (size_t i = 0; i < count; ++i) out[4 * i] = bytes_[samples[i * colours_.samples + colours_.alphaAt]];
}

}  // namespace codecs
