// Reading PICT.

#include <new>

#include "media/codecs/frame.h"
#include "media/codecs/pict/pict.h"
#include "media/codecs/pict/player.h"
#include "media/codecs/pict/survey.h"

namespace codecs {
namespace {

using namespace pict;

struct Size {
  uint64_t width;
  uint64_t height;
};

Size sizeOf(const Box &box) noexcept {
  return {static_cast<uint64_t>(box.width()), static_cast<uint64_t>(box.height())};
}

void fillAlpha(DecodedImage &image) noexcept {
  auto *const pixels = reinterpret_cast<Pixel *>(image.pixels.data());
  for (size_t i = 0; i < size_t{image.width} * image.height; ++i) pixels[i] |= kAlphaBits;
}

// Nothing on the canvas is a sound picture if it ends as pictures do; without an end, or with an image
// that could not be read, it would pass for one.
Fault judge(const Findings &findings, bool hasEnd) noexcept {
  if (findings.drewAnything) return Fault::none;
  if (findings.leftOutImage) return Fault::unsupported;
  return hasEnd ? Fault::none : Fault::truncated;
}

Fault draw(const Survey &survey, size_t fileBytes, Size size, const CGImageDecodeLimits &limits,
           DecodedImage &image) {
  const Picture &picture = survey.picture;
  Fault fault = makeFrame(image, size.width, size.height, PixelLayout::argb32, limits);
  if (fault != Fault::none) return fault;
  const Canvas canvas{reinterpret_cast<Pixel *>(image.pixels.data()), image.width, image.height};
  const uint64_t area = uint64_t{image.width} * image.height;
  std::fill_n(canvas.pixels, area, survey.mayHaveAlpha ? kClear : kWhite);
  Budget budget(area, fileBytes, limits);
  Port port(canvas, budget);
  Player player(picture, port, limits);
  fault = player.play();
  if (fault != Fault::none) return fault;
  const bool metEnd = player.metEnd();
  Findings findings = std::move(player).findings();
  fault = judge(findings, metEnd);
  if (fault != Fault::none) return fault;
  image.depth = findings.hasAlpha ? 32 : findings.depth ? findings.depth : 24;
  if (!findings.hasAlpha) {
    image.layout = PixelLayout::xrgb32;
    if (survey.mayHaveAlpha) fillAlpha(image);
  }
  image.profile = std::move(findings.profile);
  const Size natural = sizeOf(picture.drawing);
  image.resolution = {
      picture.resolution.x * static_cast<double>(size.width) / static_cast<double>(natural.width),
      picture.resolution.y * static_cast<double>(size.height) / static_cast<double>(natural.height)};
  return Fault::none;
}

// `size` none: the picture's own.
Result<DecodedImage> decode(Bytes file, std::optional<Size> size,
                            const CGImageDecodeLimits &limits) noexcept {
  const auto survey = surveyPicture(file, limits);
  if (!survey) return survey.fault;
  const Picture &picture = survey.value.picture;
  if (picture.drawing.isEmpty()) return Fault::damaged;
  try {
    DecodedImage image;
    const Fault fault =
        draw(survey.value, file.size(), size.value_or(sizeOf(picture.drawing)), limits, image);
    if (fault != Fault::none) return fault;
    return image;
  } catch (const std::bad_alloc &) {
    return Fault::noMemory;
  }
}

}  // namespace

Result<DecodedImage> decodePict(Bytes file, const CGImageDecodeLimits &limits) noexcept {
  return decode(file, std::nullopt, limits);
}

Result<DecodedImage> decodePictAtSize(Bytes file, uint32_t width, uint32_t height,
                                      const CGImageDecodeLimits &limits) noexcept {
  return decode(file, Size{width, height}, limits);
}

}  // namespace codecs
