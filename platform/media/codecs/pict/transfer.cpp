#include "media/codecs/pict/transfer.h"

#include <algorithm>
#include <cstring>

namespace codecs::pict {
namespace {

constexpr int kDither = 64;

template <class Bits>
void combineBits(Pixel *to, const Pixel *from, size_t count, Bits bits) noexcept {
  for (size_t i = 0; i < count; ++i) to[i] = bits(from[i], to[i]) | kAlphaBits;
}

template <class Channel>
void combineChannels(Pixel *to, const Pixel *from, size_t count, Channel channel) noexcept {
  for (size_t i = 0; i < count; ++i) {
    const auto source = bytesOf(from[i]), there = bytesOf(to[i]);
    std::array<uint8_t, 4> made{255, 0, 0, 0};
    for (size_t k = 1; k < 4; ++k) made[k] = static_cast<uint8_t>(channel(source[k], there[k], k - 1));
    to[i] = std::bit_cast<Pixel>(made);
  }
}

void copyRow(Pixel *to, const Pixel *from, size_t count, const Ink &) noexcept {
  std::memcpy(to, from, count * sizeof *to);
}

// Black takes the foreground colour and white the background's; alpha stays the source's.
void colourRow(Pixel *to, const Pixel *from, size_t count, const Ink &ink) noexcept {
  for (size_t i = 0; i < count; ++i) {
    const Pixel s = from[i];
    to[i] = (((s & ink.back) | (~s & ink.fore)) & kColourBits) | (s & kAlphaBits);
  }
}

void orRow(Pixel *to, const Pixel *from, size_t count, const Ink &ink) noexcept {
  combineBits(to, from, count, [fore = ink.fore](Pixel s, Pixel d) { return (~s & fore) | (s & d); });
}

void xorRow(Pixel *to, const Pixel *from, size_t count, const Ink &) noexcept {
  combineBits(to, from, count, [](Pixel s, Pixel d) { return d ^ ~s; });
}

void bicRow(Pixel *to, const Pixel *from, size_t count, const Ink &ink) noexcept {
  combineBits(to, from, count, [back = ink.back](Pixel s, Pixel d) { return (~s & back) | (s & d); });
}

void notCopyRow(Pixel *to, const Pixel *from, size_t count, const Ink &ink) noexcept {
  combineBits(to, from, count, [ink](Pixel s, Pixel) { return (~s & ink.back) | (s & ink.fore); });
}

void notOrRow(Pixel *to, const Pixel *from, size_t count, const Ink &ink) noexcept {
  combineBits(to, from, count, [fore = ink.fore](Pixel s, Pixel d) { return (s & fore) | (~s & d); });
}

void notXorRow(Pixel *to, const Pixel *from, size_t count, const Ink &) noexcept {
  combineBits(to, from, count, [](Pixel s, Pixel d) { return d ^ s; });
}

void notBicRow(Pixel *to, const Pixel *from, size_t count, const Ink &ink) noexcept {
  combineBits(to, from, count, [back = ink.back](Pixel s, Pixel d) { return (s & back) | (~s & d); });
}

void blendRow(Pixel *to, const Pixel *from, size_t count, const Ink &ink) noexcept {
  combineChannels(to, from, count, [&](unsigned s, unsigned d, size_t k) {
    const unsigned weight = ink.weights[k];
    return (s * weight + d * (65536 - weight)) >> 16;
  });
}

void addPinRow(Pixel *to, const Pixel *from, size_t count, const Ink &ink) noexcept {
  combineChannels(to, from, count, [&](unsigned s, unsigned d, size_t k) {
    return std::min<unsigned>(s + d, ink.weights[k] >> 8);
  });
}

void addOverRow(Pixel *to, const Pixel *from, size_t count, const Ink &) noexcept {
  combineChannels(to, from, count, [](unsigned s, unsigned d, size_t) { return s + d; });
}

void subPinRow(Pixel *to, const Pixel *from, size_t count, const Ink &ink) noexcept {
  combineChannels(to, from, count,
                  [&](int s, int d, size_t k) { return std::max<int>(d - s, ink.weights[k] >> 8); });
}

void subOverRow(Pixel *to, const Pixel *from, size_t count, const Ink &) noexcept {
  combineChannels(to, from, count, [](unsigned s, unsigned d, size_t) { return d - s; });
}

void addMaxRow(Pixel *to, const Pixel *from, size_t count, const Ink &) noexcept {
  combineChannels(to, from, count, [](unsigned s, unsigned d, size_t) { return std::max(s, d); });
}

void adMinRow(Pixel *to, const Pixel *from, size_t count, const Ink &) noexcept {
  combineChannels(to, from, count, [](unsigned s, unsigned d, size_t) { return std::min(s, d); });
}

constexpr bool sameColour(Pixel a, Pixel b) noexcept { return ((a ^ b) & kColourBits) == 0; }

void transparentRow(Pixel *to, const Pixel *from, size_t count, const Ink &ink) noexcept {
  for (size_t i = 0; i < count; ++i) to[i] = sameColour(from[i], ink.back) ? to[i] : from[i];
}

void hiliteRow(Pixel *to, const Pixel *from, size_t count, const Ink &ink) noexcept {
  for (size_t i = 0; i < count; ++i) {
    if (sameColour(from[i], ink.back)) continue;
    if (sameColour(to[i], ink.back)) {
      to[i] = ink.hilite;
    } else if (sameColour(to[i], ink.hilite)) {
      to[i] = ink.back;
    }
  }
}

// value * alpha / 255, rounded to nearest; exact for all bytes.
constexpr unsigned times(unsigned value, unsigned alpha) noexcept {
  const unsigned product = value * alpha + 128;
  return (product + (product >> 8)) >> 8;
}

void overRow(Pixel *to, const Pixel *from, size_t count, const Ink &) noexcept {
  for (size_t i = 0; i < count; ++i) {
    const auto source = bytesOf(from[i]), there = bytesOf(to[i]);
    const unsigned alpha = source[0];
    std::array<uint8_t, 4> made{255, 0, 0, 0};
    for (size_t k = 1; k < 4; ++k)
      made[k] = static_cast<uint8_t>(times(source[k], alpha) + times(there[k], 255 - alpha));
    to[i] = std::bit_cast<Pixel>(made);
  }
}

// What a bit does, for the eight Boolean modes in order.
enum class Effect : uint8_t { fore, back, leave, invert };
constexpr struct {
  Effect on, off;
} kBitEffects[] = {
    {Effect::fore, Effect::back},    {Effect::fore, Effect::leave}, {Effect::invert, Effect::leave},
    {Effect::back, Effect::leave},   {Effect::back, Effect::fore},  {Effect::leave, Effect::fore},
    {Effect::leave, Effect::invert}, {Effect::leave, Effect::back},
};

}  // namespace

Transfer transferOfCompressed(int mode) noexcept {
  if (mode >= 256 && mode <= 260) return Transfer::copy;  // which keeps the alpha
  return transferOf(mode);
}

Transfer transferOf(int mode) noexcept {
  mode &= ~kDither;
  if (mode >= 0 && mode < 16) return static_cast<Transfer>(mode % 8);
  switch (mode < 48 ? mode & ~8 : mode) {
    case 32:
      return Transfer::blend;
    case 33:
      return Transfer::addPin;
    case 34:
      return Transfer::addOver;
    case 35:
      return Transfer::subPin;
    case 36:
      return Transfer::transparent;
    case 37:
      return Transfer::addMax;
    case 38:
      return Transfer::subOver;
    case 39:
      return Transfer::adMin;
    case 49:
      return Transfer::dimmedOr;
    case 50:
    case 58:
      return Transfer::hilite;
    default:
      return Transfer::none;
  }
}

TransferRow transferRow(Transfer mode, const Ink &ink) noexcept {
  switch (mode) {
    case Transfer::copy:
      return ink.isBlackOnWhite() ? copyRow : colourRow;
    case Transfer::paintOr:
    case Transfer::dimmedOr:
      return orRow;
    case Transfer::paintXor:
      return xorRow;
    case Transfer::bic:
      return bicRow;
    case Transfer::notCopy:
      return notCopyRow;
    case Transfer::notOr:
      return notOrRow;
    case Transfer::notXor:
      return notXorRow;
    case Transfer::notBic:
      return notBicRow;
    case Transfer::blend:
      return blendRow;
    case Transfer::addPin:
      return addPinRow;
    case Transfer::addOver:
      return addOverRow;
    case Transfer::subPin:
      return subPinRow;
    case Transfer::transparent:
      return transparentRow;
    case Transfer::addMax:
      return addMaxRow;
    case Transfer::subOver:
      return subOverRow;
    case Transfer::adMin:
      return adMinRow;
    case Transfer::hilite:
      return hiliteRow;
    case Transfer::over:
      return overRow;
    case Transfer::none:
      break;
  }
  return nullptr;
}

BitEffect bitEffect(Transfer mode, bool isOn, const Ink &ink) noexcept {
  const auto &effects = kBitEffects[static_cast<size_t>(mode)];
  switch (isOn ? effects.on : effects.off) {
    case Effect::fore:
      return {0, ink.fore, kAlphaBits};
    case Effect::back:
      return {0, ink.back, kAlphaBits};
    case Effect::invert:
      return {~Pixel{0}, kColourBits, kAlphaBits};
    case Effect::leave:
      break;
  }
  return {~Pixel{0}, 0, 0};
}

}  // namespace codecs::pict
