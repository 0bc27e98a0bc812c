// TGA files, byte by byte.
#pragma once

#include <algorithm>

#include "little_maker.h"

struct TgaRecipe {
  uint32_t width = 0;
  uint32_t height = 0;
  unsigned type = 2;  // 1 palette, 2 colour, 3 grey; 8 more with runs
  unsigned bits = 24;
  unsigned descriptor = 0x20;  // bits of alpha, 0x10: from the right, 0x20: from the top
  std::string_view id = "";
  unsigned firstEntry = 0;
  unsigned entryBits = 24;
  std::vector<uint32_t> palette{};
  std::vector<uint32_t> samples{};  // width * height pixels, the top row first, from the left
  bool footer = false;
  int alphaKind = -1;  // of the extension; -1: there is none

  bool isFromTheRight() const { return (descriptor & 0x10) != 0; }
  bool isFromTheTop() const { return (descriptor & 0x20) != 0; }
};

namespace tga_maker {

inline std::vector<uint32_t> inFileOrder(const TgaRecipe &recipe) {
  std::vector<uint32_t> samples;
  for (uint32_t i = 0; i < recipe.height; ++i) {
    const size_t y = recipe.isFromTheTop() ? i : recipe.height - 1 - i;
    for (uint32_t j = 0; j < recipe.width; ++j)
      samples.push_back(
          recipe.samples[y * recipe.width + (recipe.isFromTheRight() ? recipe.width - 1 - j : j)]);
  }
  return samples;
}

inline size_t equalFrom(const std::vector<uint32_t> &samples, size_t at) {
  size_t end = at + 1;
  while (end < samples.size() && end - at < 128 && samples[end] == samples[at]) ++end;
  return end - at;
}

// Packets that run on over the ends of rows.
inline void addRuns(LittleMaker &out, const std::vector<uint32_t> &samples, unsigned bits) {
  for (size_t at = 0; at < samples.size();) {
    if (const size_t equal = equalFrom(samples, at); equal > 1) {
      out.u8(static_cast<uint32_t>(0x7F + equal)).packed(&samples[at], 1, bits);
      at += equal;
      continue;
    }
    size_t end = at + 1;
    while (end < samples.size() && end - at < 128 && equalFrom(samples, end) == 1) ++end;
    out.u8(static_cast<uint32_t>(end - at - 1)).packed(&samples[at], end - at, bits);
    at = end;
  }
}

}  // namespace tga_maker

inline std::vector<uint8_t> makeTga(const TgaRecipe &recipe) {
  const unsigned storedBits = recipe.bits == 15 ? 16 : recipe.bits;
  const unsigned storedEntryBits = recipe.entryBits == 15 ? 16 : recipe.entryBits;
  LittleMaker out;
  out.u8(static_cast<uint32_t>(recipe.id.size())).u8(recipe.palette.empty() ? 0 : 1).u8(recipe.type);
  out.u16(recipe.firstEntry).u16(static_cast<uint32_t>(recipe.palette.size()));
  out.u8(recipe.palette.empty() ? 0 : recipe.entryBits).u32(0).u16(recipe.width).u16(recipe.height);
  out.u8(recipe.bits).u8(recipe.descriptor).text(recipe.id);
  out.packed(recipe.palette.data(), recipe.palette.size(), storedEntryBits);
  const std::vector<uint32_t> samples = tga_maker::inFileOrder(recipe);
  if (recipe.type > 8) {
    tga_maker::addRuns(out, samples, storedBits);
  } else {
    out.packed(samples.data(), samples.size(), storedBits);
  }
  if (!recipe.footer && recipe.alphaKind < 0) return out.bytes;
  const auto extensionAt = static_cast<uint32_t>(out.bytes.size());
  if (recipe.alphaKind >= 0) out.u16(495).zeros(492).u8(static_cast<uint32_t>(recipe.alphaKind));
  out.u32(recipe.alphaKind >= 0 ? extensionAt : 0).u32(0).text("TRUEVISION-XFILE.").u8(0);
  return out.bytes;
}
