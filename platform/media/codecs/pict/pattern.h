// What shapes are filled with.
#pragma once

#include <array>
#include <vector>

#include "media/codecs/codec.h"
#include "media/codecs/pict/pixel.h"

namespace codecs::pict {

// Either eight rows of eight bits, 1 for the foreground colour and 0 for the background's, or a tile of
// pixels that has its own colours.
struct Pattern {
  std::array<uint8_t, 8> bits{};
  uint32_t tileWidth = 0;  // 0: bits
  uint32_t tileHeight = 0;
  std::vector<Pixel> tile;

  bool isTile() const noexcept { return tileWidth != 0; }
  bool isSolid() const noexcept { return !isTile() && bits == kSolid; }

  static Pattern ofBits(Bytes eight) noexcept {
    Pattern pattern;
    for (size_t i = 0; i < 8 && i < eight.size(); ++i) pattern.bits[i] = eight[i];
    return pattern;
  }
  static Pattern solid() noexcept {
    Pattern pattern;
    pattern.bits = kSolid;
    return pattern;
  }

 private:
  static constexpr std::array<uint8_t, 8> kSolid{255, 255, 255, 255, 255, 255, 255, 255};
};

}  // namespace codecs::pict
