// Reading PICT.

#include <new>

#include "media/codecs/frame.h"
#include "media/codecs/pict/opcode_walker.h"
#include "media/codecs/pict/pict.h"
#include "media/codecs/pict/player.h"

namespace codecs {
namespace {

using namespace pict;

// Goes over all opcodes without drawing, so that a damaged picture costs no canvas.
Fault survey(const Picture &picture, const CGImageDecodeLimits &limits) noexcept {
  OpcodeWalker walker(picture);
  while (walker.next()) {
    if (walker.count() > limits.pictOpcodes) return Fault::tooLarge;
  }
  return walker.fault();
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

Fault draw(const Picture &picture, size_t fileBytes, const CGImageDecodeLimits &limits, DecodedImage &image) {
  const Box &drawing = picture.drawing;
  if (drawing.isEmpty()) return Fault::damaged;
  Fault fault = makeFrame(image, static_cast<uint64_t>(drawing.width()),
                          static_cast<uint64_t>(drawing.height()), PixelLayout::argb32, limits);
  if (fault != Fault::none) return fault;
  const Canvas canvas{reinterpret_cast<Pixel *>(image.pixels.data()), image.width, image.height};
  const uint64_t area = uint64_t{image.width} * image.height;
  std::fill_n(canvas.pixels, area, kClear);
  Budget budget(area, fileBytes, limits);
  Port port(canvas, budget);
  Player player(picture, port, limits);
  fault = player.play();
  if (fault != Fault::none) return fault;
  Findings findings = std::move(player).findings();
  fault = judge(findings, player.metEnd());
  if (fault != Fault::none) return fault;
  image.depth = findings.hasAlpha ? 32 : findings.depth ? findings.depth : 24;
  if (!findings.hasAlpha) {
    image.layout = PixelLayout::xrgb32;
    fillAlpha(image);
  }
  image.profile = std::move(findings.profile);
  image.resolution = picture.resolution;
  return Fault::none;
}

}  // namespace

Result<DecodedImage> decodePict(Bytes file, const CGImageDecodeLimits &limits) noexcept {
  try {
    const auto picture = findPicture(file);
    if (!picture) return Fault::unknownFormat;
    if (const Fault fault = survey(*picture, limits); fault != Fault::none) return fault;
    DecodedImage image;
    if (const Fault fault = draw(*picture, file.size(), limits, image); fault != Fault::none) return fault;
    return image;
  } catch (const std::bad_alloc &) {
    return Fault::noMemory;
  }
}

}  // namespace codecs
