// WebP files made with libwebp itself, in containers made here.
#pragma once

#include <webp/encode.h>

#include <cstdlib>

#include "little_maker.h"

struct WebpRecipe {
  uint32_t width = 0;
  uint32_t height = 0;
  bool lossless = true;
  std::vector<uint32_t> samples{};  // width * height of 0xAARRGGBB
  std::vector<uint8_t> profile{};
  bool animated = false;  // the frame twice
  uint32_t canvasWidth = 0;
  uint32_t canvasHeight = 0;
  uint32_t left = 0;  // even
  uint32_t top = 0;   // even
};

namespace webp_maker {

inline void check(int result) {
  if (!result) std::abort();
}

// A file without anything around it: the mark of the container, and one chunk.
inline std::vector<uint8_t> encoded(const WebpRecipe &recipe) {
  WebPConfig config;
  check(WebPConfigInit(&config));
  config.lossless = recipe.lossless ? 1 : 0;
  config.exact = 1;
  config.quality = 90;
  WebPPicture picture;
  check(WebPPictureInit(&picture));
  picture.use_argb = 1;
  picture.width = static_cast<int>(recipe.width);
  picture.height = static_cast<int>(recipe.height);
  check(WebPPictureAlloc(&picture));
  for (uint32_t y = 0; y < recipe.height; ++y) {
    for (uint32_t x = 0; x < recipe.width; ++x)
      picture.argb[y * static_cast<size_t>(picture.argb_stride) + x] = recipe.samples[y * recipe.width + x];
  }
  std::vector<uint8_t> file;
  picture.custom_ptr = &file;
  picture.writer = [](const uint8_t *bytes, size_t count, const WebPPicture *to) {
    auto &out = *static_cast<std::vector<uint8_t> *>(to->custom_ptr);
    out.insert(out.end(), bytes, bytes + count);
    return 1;
  };
  check(WebPEncode(&config, &picture));
  WebPPictureFree(&picture);
  return file;
}

inline void addChunk(LittleMaker &out, std::string_view name, const std::vector<uint8_t> &bytes) {
  out.text(name).u32(static_cast<uint32_t>(bytes.size())).add(bytes).zeros(bytes.size() % 2);
}

// The chunks of the pixels, without what libwebp puts around them.
inline std::vector<uint8_t> pixelChunks(const std::vector<uint8_t> &file) {
  const bool extended = file[15] == 'X';
  return {file.begin() + (extended ? 30 : 12), file.end()};
}

}  // namespace webp_maker

inline std::vector<uint8_t> makeWebp(const WebpRecipe &recipe) {
  using namespace webp_maker;
  const std::vector<uint8_t> file = encoded(recipe);
  if (recipe.profile.empty() && !recipe.animated) return file;
  constexpr uint32_t kAnimation = 2, kAlpha = 16, kProfile = 32;
  const uint32_t flags =
      kAlpha | (recipe.profile.empty() ? 0 : kProfile) | (recipe.animated ? kAnimation : 0);
  const uint32_t width = recipe.canvasWidth ? recipe.canvasWidth : recipe.width;
  const uint32_t height = recipe.canvasHeight ? recipe.canvasHeight : recipe.height;
  LittleMaker body;
  body.text("WEBP");
  addChunk(body, "VP8X", LittleMaker{}.u32(flags).u24(width - 1).u24(height - 1).bytes);
  if (!recipe.profile.empty()) addChunk(body, "ICCP", recipe.profile);
  if (recipe.animated) {
    addChunk(body, "ANIM", LittleMaker{}.u32(0xFFFFFFFF).u16(0).bytes);
    LittleMaker frame;
    frame.u24(recipe.left / 2)
        .u24(recipe.top / 2)
        .u24(recipe.width - 1)
        .u24(recipe.height - 1)
        .u24(100)
        .u8(0);
    frame.add(pixelChunks(file));
    addChunk(body, "ANMF", frame.bytes);
    addChunk(body, "ANMF", frame.bytes);
  } else {
    body.add(pixelChunks(file));
  }
  LittleMaker out;
  addChunk(out, "RIFF", body.bytes);
  return out.bytes;
}
