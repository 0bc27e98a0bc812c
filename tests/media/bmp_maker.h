// BMP files, byte by byte.
#pragma once

#include "little_maker.h"

struct BmpRecipe {
  uint32_t width = 0;
  uint32_t height = 0;
  bool topDown = false;
  unsigned bits = 24;
  uint32_t headerBytes = 40;
  uint32_t compression = 0;
  std::vector<uint32_t> masks{};    // red, green, blue, alpha; in newer headers inside, else behind
  std::vector<uint32_t> palette{};  // 0xRRGGBB
  uint32_t coloursUsed = 0;         // what the header says
  uint32_t dotsPerMetre = 0;
  std::vector<uint8_t> profile{};   // behind the pixels; of the newest header
  std::vector<uint32_t> samples{};  // width * height pixels, the top row first
  std::vector<uint8_t> runs{};      // instead of samples

  uint32_t sample(size_t x, size_t y) const { return samples[y * width + x]; }
};

namespace bmp_maker {

inline std::vector<uint8_t> rowsOf(const BmpRecipe &recipe) {
  if (!recipe.runs.empty()) return recipe.runs;
  LittleMaker out;
  for (uint32_t i = 0; i < recipe.height; ++i) {
    const size_t y = recipe.topDown ? i : recipe.height - 1 - i;
    out.packed(&recipe.samples[y * recipe.width], recipe.width, recipe.bits);
    out.zeros((4 - out.bytes.size() % 4) % 4);
  }
  return out.bytes;
}

inline std::vector<uint8_t> headerOf(const BmpRecipe &recipe, size_t profileAt) {
  LittleMaker out;
  out.u32(recipe.headerBytes);
  if (recipe.headerBytes == 12) {
    return out.u16(recipe.width).u16(recipe.height).u16(1).u16(recipe.bits).bytes;
  }
  out.u32(recipe.width).u32(recipe.topDown ? 0u - recipe.height : recipe.height).u16(1).u16(recipe.bits);
  out.u32(recipe.compression).u32(0).u32(recipe.dotsPerMetre).u32(recipe.dotsPerMetre);
  out.u32(recipe.coloursUsed).u32(0);
  if (recipe.headerBytes != 64) {
    for (const uint32_t mask : recipe.masks) out.u32(mask);
  }
  if (recipe.headerBytes >= 108) {
    out.zeros(56 - out.bytes.size());
    out.text(recipe.profile.empty() ? "BGRs" : "DEBM").zeros(108 - 60);
  }
  if (recipe.headerBytes == 124) {
    out.u32(4).u32(static_cast<uint32_t>(profileAt)).u32(static_cast<uint32_t>(recipe.profile.size())).u32(0);
  }
  const bool masksBehind = recipe.headerBytes == 40;
  if (!masksBehind) out.bytes.resize(recipe.headerBytes);
  return out.bytes;
}

}  // namespace bmp_maker

inline std::vector<uint8_t> makeBmp(const BmpRecipe &recipe) {
  LittleMaker colours;
  for (const uint32_t colour : recipe.palette) {
    colours.u24(colour);
    if (recipe.headerBytes != 12) colours.u8(0);
  }
  const std::vector<uint8_t> rows = bmp_maker::rowsOf(recipe);
  const size_t pixelsAt = 14 + bmp_maker::headerOf(recipe, 0).size() + colours.bytes.size();
  const size_t end = pixelsAt + rows.size();
  LittleMaker out;
  out.text("BM")
      .u32(static_cast<uint32_t>(end + recipe.profile.size()))
      .u32(0)
      .u32(static_cast<uint32_t>(pixelsAt));
  out.add(bmp_maker::headerOf(recipe, end - 14)).add(colours.bytes).add(rows).add(recipe.profile);
  return out.bytes;
}
