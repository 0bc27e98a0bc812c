// What a file format is to the rest of the platform: a record of functions over plain bytes. Codecs
// know neither images nor colour spaces, so that each can be run, and fuzzed, on its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "media/codecs/fault.h"
#include "media/codecs/limits.h"
#include "media/codecs/pixel_buffer.h"

namespace codecs {

using Bytes = std::span<const uint8_t>;

// Dots per inch; 0 where a file does not say.
struct Resolution {
  double x = 0;
  double y = 0;
};

enum class PixelLayout : uint8_t {
  grey8,   // one byte, 0 black
  xrgb32,  // 255, red, green, blue
  argb32,  // alpha, red, green, blue, not premultiplied
};

constexpr size_t bytesPerPixel(PixelLayout layout) noexcept { return layout == PixelLayout::grey8 ? 1 : 4; }

// A decoded image. Whole or not at all: every byte of `pixels` comes from the file.
struct DecodedImage {
  uint32_t width = 0;
  uint32_t height = 0;
  PixelLayout layout = PixelLayout::grey8;
  int depth = 0;                 // what an importer reports: 8, 24, 32 or 40
  size_t rowBytes = 0;           // width * bytesPerPixel(layout)
  PixelBuffer pixels;            // top row first
  std::vector<uint8_t> profile;  // ICC bytes for the colours of this layout; empty: none
  Resolution resolution;

  uint8_t *row(uint32_t y) noexcept { return pixels.data() + y * rowBytes; }
  const uint8_t *row(uint32_t y) const noexcept { return pixels.data() + y * rowBytes; }
};

// 8 bits each; the fourth byte of rgbx is ignored.
enum class RowLayout : uint8_t { grey, rgbx, rgba };

constexpr size_t bytesPerPixel(RowLayout layout) noexcept { return layout == RowLayout::grey ? 1 : 4; }

// The image to encode, row by row.
struct EncodeSource {
  uint32_t width = 0;
  uint32_t height = 0;
  RowLayout layout = RowLayout::rgbx;
  bool premultiplied = false;  // the colours of rgba; only where alpha comes as stored
  Bytes profile;               // ICC bytes to embed; empty: none
  Resolution resolution;

  // Writes row y (from the top; asked for once each, in order) to `out`; false ends the encoding.
  bool (*copyRow)(void *context, uint32_t y, uint8_t *out) noexcept = nullptr;
  void *context = nullptr;
};

// What an encoder can take; the exporter brings the image into that form.
enum class AlphaSupport : uint8_t {
  straight,  // writes alpha beside straight colour
  asStored,  // writes alpha beside colour, in whichever way the image has them
  none,      // the image is composed over white first
};

struct CodecRecord {
  std::string_view name;                    // for people: "PNG"
  std::string_view extensions;              // "jpg|jpeg"
  std::span<const uint32_t> importerCodes;  // four-character codes that open this decoder
  uint32_t exporterCode;                    // likewise for the encoder; 0: read only

  // How sure the codec is that the file is its own; 0: it is not. Looks at a few bytes, however long it is.
  int (*score)(Bytes file) noexcept;
  Result<DecodedImage> (*decode)(Bytes file, const CGImageDecodeLimits &limits) noexcept;

  // Appends the file to `file`; on a fault what was appended means nothing.
  Fault (*encode)(const EncodeSource &source, std::vector<uint8_t> &file) noexcept;
  AlphaSupport alphaSupport;

  // Formats that hold drawings can be decoded at any size; null for those of pixels alone.
  Result<DecodedImage> (*decodeAtSize)(Bytes file, uint32_t width, uint32_t height,
                                       const CGImageDecodeLimits &limits) noexcept = nullptr;

  // For people: what of the format is read and written, as phrases.
  std::string_view reads = "";
  std::string_view writes = "";
  uint32_t mostSide = 65535;  // pixels that the encoder takes; formats have limits of their own
};

constexpr uint32_t fourCharacterCode(const char (&text)[5]) noexcept {
  uint32_t code = 0;
  for (int i = 0; i < 4; ++i) code = code << 8 | static_cast<uint8_t>(text[i]);
  return code;
}

}  // namespace codecs
