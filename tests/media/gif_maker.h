// GIF files made with giflib itself.
#pragma once

#include <gif_lib.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <vector>

struct GifRecipe {
  uint32_t canvasWidth = 0;
  uint32_t canvasHeight = 0;
  uint32_t left = 0;
  uint32_t top = 0;
  uint32_t width = 0;  // of the frame
  uint32_t height = 0;
  bool interlaced = false;
  bool localColours = false;
  int transparent = NO_TRANSPARENT_COLOR;
  std::vector<uint32_t> palette{};  // 0xRRGGBB; 2, 4, 8 ... 256 of them
  std::vector<uint8_t> profile{};
  int frames = 1;
  std::vector<uint8_t> samples{};  // width * height indices, the top row first
};

namespace gif_maker {

inline void check(int result) {
  if (result == GIF_ERROR) std::abort();
}

inline void addExtensions(GifFileType *gif, const GifRecipe &recipe) {
  check(EGifPutComment(gif, "a comment"));
  if (!recipe.profile.empty()) {
    check(EGifPutExtensionLeader(gif, APPLICATION_EXT_FUNC_CODE));
    check(EGifPutExtensionBlock(gif, 11, "ICCRGBG1012"));
    for (size_t at = 0; at < recipe.profile.size(); at += 255) {
      const size_t count = std::min<size_t>(255, recipe.profile.size() - at);
      check(EGifPutExtensionBlock(gif, static_cast<int>(count), recipe.profile.data() + at));
    }
    check(EGifPutExtensionTrailer(gif));
  }
  if (recipe.transparent == NO_TRANSPARENT_COLOR) return;
  const GraphicsControlBlock control{0, false, 0, recipe.transparent};
  std::array<GifByteType, 4> bytes{};
  EGifGCBToExtension(&control, bytes.data());
  check(EGifPutExtension(gif, GRAPHICS_EXT_FUNC_CODE, 4, bytes.data()));
}

inline void addFrame(GifFileType *gif, const GifRecipe &recipe, ColorMapObject *colours) {
  check(EGifPutImageDesc(gif, static_cast<int>(recipe.left), static_cast<int>(recipe.top),
                         static_cast<int>(recipe.width), static_cast<int>(recipe.height), recipe.interlaced,
                         recipe.localColours ? colours : nullptr));
  std::vector<uint8_t> samples = recipe.samples;
  const auto put = [&](uint32_t first, uint32_t step) {
    for (uint32_t y = first; y < recipe.height; y += step)
      check(EGifPutLine(gif, samples.data() + size_t{y} * recipe.width, static_cast<int>(recipe.width)));
  };
  if (!recipe.interlaced) return put(0, 1);
  put(0, 8);
  put(4, 8);
  put(2, 4);
  put(1, 2);
}

}  // namespace gif_maker

inline std::vector<uint8_t> makeGif(const GifRecipe &recipe) {
  std::vector<uint8_t> file;
  const auto write = [](GifFileType *gif, const GifByteType *bytes, int count) {
    auto &out = *static_cast<std::vector<uint8_t> *>(gif->UserData);
    out.insert(out.end(), bytes, bytes + count);
    return count;
  };
  GifFileType *gif = EGifOpen(&file, write, nullptr);
  ColorMapObject *colours = GifMakeMapObject(static_cast<int>(recipe.palette.size()), nullptr);
  if (!gif || !colours) std::abort();
  for (size_t i = 0; i < recipe.palette.size(); ++i) {
    const uint32_t colour = recipe.palette[i];
    colours->Colors[i] = {static_cast<GifByteType>(colour >> 16), static_cast<GifByteType>(colour >> 8),
                          static_cast<GifByteType>(colour)};
  }
  EGifSetGifVersion(gif, true);
  gif_maker::check(EGifPutScreenDesc(gif, static_cast<int>(recipe.canvasWidth),
                                     static_cast<int>(recipe.canvasHeight), 8, 0,
                                     recipe.localColours ? nullptr : colours));
  gif_maker::addExtensions(gif, recipe);
  for (int i = 0; i < recipe.frames; ++i) gif_maker::addFrame(gif, recipe, colours);
  gif_maker::check(EGifCloseFile(gif, nullptr));
  GifFreeMapObject(colours);
  return file;
}
