#include "media/codecs/pict/standard_palettes.h"

namespace codecs::pict {
namespace {

constexpr Pixel colour(uint32_t rgb) noexcept {
  return opaque(static_cast<uint8_t>(rgb >> 16), static_cast<uint8_t>(rgb >> 8), static_cast<uint8_t>(rgb));
}

constexpr std::array<uint32_t, 16> kSixteen{0xFFFFFF, 0xFBF305, 0xFF6403, 0xDD0907, 0xF20884, 0x4700A5,
                                            0x0000D3, 0x02ABEA, 0x1FB714, 0x006412, 0x562C05, 0x90713A,
                                            0xC0C0C0, 0x808080, 0x404040, 0x000000};

// Of the 256: what the cube leaves out, in each of red, green, blue and grey.
constexpr std::array<uint8_t, 10> kRamp{0xEE, 0xDD, 0xBB, 0xAA, 0x88, 0x77, 0x55, 0x44, 0x22, 0x11};

void fillGreys(Palette &palette, size_t count) noexcept {
  for (size_t i = 0; i < count; ++i) {
    const auto grey = static_cast<uint8_t>(255 - i * 255 / (count - 1));
    palette[i] = opaque(grey, grey, grey);
  }
}

void fillCubeAndRamps(Palette &palette) noexcept {
  size_t at = 0;
  for (int red = 255; red >= 0; red -= 51) {
    for (int green = 255; green >= 0; green -= 51) {
      for (int blue = 255; blue >= 0; blue -= 51) {
        palette[at++] =
            opaque(static_cast<uint8_t>(red), static_cast<uint8_t>(green), static_cast<uint8_t>(blue));
      }
    }
  }
  --at;  // the cube's black is the table's last entry
  for (const uint8_t value : kRamp) palette[at++] = opaque(value, 0, 0);
  for (const uint8_t value : kRamp) palette[at++] = opaque(0, value, 0);
  for (const uint8_t value : kRamp) palette[at++] = opaque(0, 0, value);
  for (const uint8_t value : kRamp) palette[at++] = opaque(value, value, value);
  palette[at] = kBlack;
}

}  // namespace

Palette standardPalette(int id) noexcept {
  Palette palette;
  palette.fill(kBlack);
  if (id == 1) palette[0] = kWhite;
  if (id == 2) fillGreys(palette, 4);
  if (id == 4) {
    for (size_t i = 0; i < kSixteen.size(); ++i) palette[i] = colour(kSixteen[i]);
  }
  if (id == 8) fillCubeAndRamps(palette);
  if (id > 32 && id <= 40) fillGreys(palette, size_t{1} << (id - 32));
  if (id == 2) palette[1] = opaque(0xAC, 0xAC, 0xAC);
  return palette;
}

}  // namespace codecs::pict
