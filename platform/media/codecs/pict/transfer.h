// Transfer modes: how what is drawn and what is there become what will be there.
#pragma once

#include <array>
#include <cstddef>

#include "media/codecs/pict/pixel.h"

namespace codecs::pict {

enum class Transfer : uint8_t {
  copy,
  paintOr,
  paintXor,
  bic,
  notCopy,
  notOr,
  notXor,
  notBic,
  blend,
  addPin,
  addOver,
  subPin,
  transparent,
  addMax,
  subOver,
  adMin,
  hilite,
  dimmedOr,  // text only: half way between the colours
  over,      // by the source's alpha; no mode of pictures, but of images inside them that have one
  none,      // draws nothing
};

// The mode behind a file's number: pattern and source numbers mean the same, dithering is not needed, and
// numbers without a meaning draw nothing.
Transfer transferOf(int mode) noexcept;

// The same for compressed images, which have modes of their own for sources with alpha.
Transfer transferOfCompressed(int mode) noexcept;

constexpr bool isBoolean(Transfer mode) noexcept { return mode <= Transfer::notBic; }

// What a pixel costs that is painted so, against one that is stored.
constexpr uint64_t paintWeight(Transfer mode) noexcept { return isBoolean(mode) ? 1 : 16; }

// The colours that modes work with.
struct Ink {
  Pixel fore = kBlack;
  Pixel back = kWhite;
  std::array<uint16_t, 3>
      weights{};  // red, green, blue: how much of the source a blend takes, or where sums end
  Pixel hilite = opaque(0xCC, 0xCC, 0xFF);

  bool isBlackOnWhite() const noexcept { return fore == kBlack && back == kWhite; }
};

// Combines `count` pixels of colour with those of the canvas; never called for none.
using TransferRow = void (*)(Pixel *to, const Pixel *from, size_t count, const Ink &ink) noexcept;
TransferRow transferRow(Transfer mode, const Ink &ink) noexcept;

// What one bit of a pattern does in a Boolean mode: to' = ((to & keep) ^ flip) | cover.
struct BitEffect {
  Pixel keep;
  Pixel flip;
  Pixel cover;
};
BitEffect bitEffect(Transfer mode, bool isOn, const Ink &ink) noexcept;

}  // namespace codecs::pict
