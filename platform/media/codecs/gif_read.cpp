// Reading GIF: giflib unpacks lines of indices, everything else is done here. It is never asked for more than
// one line, so that it takes no memory by what a header says.

#include <gif_lib.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>
#include <utility>
#include <vector>

#include "media/codecs/frame.h"
#include "media/codecs/gif.h"
#include "media/codecs/icc.h"

namespace codecs {
namespace {

// A string of 4,096 pixels from a code of twelve bits.
constexpr uint64_t kMostPixelsPerByte = 2731;

constexpr std::string_view kProfileName = "ICCRGBG1012";

struct CloseGif {
  void operator()(GifFileType *gif) const noexcept { DGifCloseFile(gif, nullptr); }
};
using GifHandle = std::unique_ptr<GifFileType, CloseGif>;

struct Input {
  Bytes file;
  size_t at = 0;
  bool ranOut = false;  // more was asked for than there is
};

extern "C" {
static int readInput(GifFileType *gif, GifByteType *out, int count) {
  Input &input = *static_cast<Input *>(gif->UserData);
  const auto wanted = static_cast<size_t>(std::max(count, 0));
  const size_t got = std::min(wanted, input.file.size() - input.at);
  input.ranOut = input.ranOut || got < wanted;
  std::memcpy(out, input.file.data() + input.at, got);
  input.at += got;
  return static_cast<int>(got);
}
}

// giflib has many names for the end of a file.
Fault faultOf(int error, const Input &input) noexcept {
  if (input.ranOut) return Fault::truncated;
  return error == D_GIF_ERR_NOT_ENOUGH_MEM ? Fault::noMemory : Fault::damaged;
}

// The frame on the canvas; it may stick out to the right and at the bottom.
struct Place {
  uint32_t left, top, width, height;
  bool interlaced;
};

struct Reading {
  const CGImageDecodeLimits &limits;
  Input input;
  GifHandle gif;
  int transparent = NO_TRANSPARENT_COLOR;
  std::vector<uint8_t> profile;
  std::array<uint32_t, 256> colours{};  // pixels as they go into memory, by index
  DecodedImage image;

  Fault fault() const noexcept { return faultOf(gif->Error, input); }
};

uint32_t pixelOf(uint8_t alpha, const GifColorType &colour) noexcept {
  const uint8_t bytes[4] = {alpha, colour.Red, colour.Green, colour.Blue};
  uint32_t pixel;
  std::memcpy(&pixel, bytes, sizeof pixel);
  return pixel;
}

// Blocks start with their length. May throw std::bad_alloc.
Fault readProfile(Reading &reading) {
  for (;;) {
    GifByteType *block = nullptr;
    if (DGifGetExtensionNext(reading.gif.get(), &block) == GIF_ERROR) return reading.fault();
    if (!block) return Fault::none;
    const bool fits = reading.profile.size() + block[0] <= reading.limits.profileBytes;
    if (fits) reading.profile.insert(reading.profile.end(), block + 1, block + 1 + block[0]);
  }
}

Fault skipBlocks(Reading &reading) noexcept {
  GifByteType *block = nullptr;
  do {
    if (DGifGetExtensionNext(reading.gif.get(), &block) == GIF_ERROR) return reading.fault();
  } while (block);
  return Fault::none;
}

// May throw std::bad_alloc.
Fault readExtension(Reading &reading) {
  int code = 0;
  GifByteType *block = nullptr;
  if (DGifGetExtension(reading.gif.get(), &code, &block) == GIF_ERROR) return reading.fault();
  if (!block) return Fault::none;
  if (code == GRAPHICS_EXT_FUNC_CODE) {
    GraphicsControlBlock control;
    if (DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK)
      reading.transparent = control.TransparentColor;
  }
  const bool isProfile =
      code == APPLICATION_EXT_FUNC_CODE && block[0] == kProfileName.size() &&
      std::equal(kProfileName.begin(), kProfileName.end(), reinterpret_cast<const char *>(block + 1));
  return isProfile && reading.profile.empty() ? readProfile(reading) : skipBlocks(reading);
}

// Up to the description of the first frame. May throw std::bad_alloc.
Fault findFrame(Reading &reading) {
  for (;;) {
    GifRecordType record = UNDEFINED_RECORD_TYPE;
    if (DGifGetRecordType(reading.gif.get(), &record) == GIF_ERROR) return reading.fault();
    if (record == TERMINATE_RECORD_TYPE) return Fault::damaged;  // sounds, perhaps, but no picture
    if (record == IMAGE_DESC_RECORD_TYPE)
      return DGifGetImageDesc(reading.gif.get()) == GIF_ERROR ? reading.fault() : Fault::none;
    if (const Fault fault = readExtension(reading); fault != Fault::none) return fault;
  }
}

Fault readColours(Reading &reading) noexcept {
  const ColorMapObject *map =
      reading.gif->Image.ColorMap ? reading.gif->Image.ColorMap : reading.gif->SColorMap;
  if (!map) return Fault::damaged;
  reading.colours.fill(pixelOf(255, {0, 0, 0}));
  for (size_t i = 0; i < static_cast<size_t>(map->ColorCount) && i < reading.colours.size(); ++i)
    reading.colours[i] = pixelOf(255, map->Colors[i]);
  if (reading.transparent == NO_TRANSPARENT_COLOR) return Fault::none;
  uint8_t none[4];
  uint32_t &clear = reading.colours[static_cast<size_t>(reading.transparent)];
  std::memcpy(none, &clear, sizeof none);
  none[0] = 0;
  std::memcpy(&clear, none, sizeof none);
  return Fault::none;
}

Place placeOf(const Reading &reading) noexcept {
  const GifImageDesc &frame = reading.gif->Image;
  return {static_cast<uint32_t>(frame.Left), static_cast<uint32_t>(frame.Top),
          static_cast<uint32_t>(frame.Width), static_cast<uint32_t>(frame.Height), frame.Interlace};
}

// A canvas without a size is as large as its frame.
Fault makeCanvas(Reading &reading, const Place &place) noexcept {
  Fault fault = checkFrame(place.width, place.height, 4, reading.limits);
  if (fault != Fault::none) return fault;
  auto width = static_cast<uint32_t>(reading.gif->SWidth);
  auto height = static_cast<uint32_t>(reading.gif->SHeight);
  if (width == 0) width = place.left + place.width;
  if (height == 0) height = place.top + place.height;
  fault = checkFrame(width, height, 4, reading.limits);
  if (fault != Fault::none) return fault;
  const uint64_t bytes = reading.input.file.size();
  const uint64_t framePixels = uint64_t{place.width} * place.height;
  if (framePixels / kMostPixelsPerByte > bytes) return Fault::truncated;
  fault = checkPromise(uint64_t{width} * height, bytes, kMostPixelsPerByte);
  if (fault != Fault::none) return fault;
  const bool covered = place.left == 0 && place.top == 0 && place.width >= width && place.height >= height;
  const bool alpha = !covered || reading.transparent != NO_TRANSPARENT_COLOR;
  reading.image.depth = alpha ? 32 : 24;
  return makeFrame(reading.image, width, height, alpha ? PixelLayout::argb32 : PixelLayout::xrgb32,
                   reading.limits);
}

class Lines {
 public:
  // May throw std::bad_alloc.
  Lines(Reading &reading, const Place &place) : reading_(reading), place_(place), line_(place.width) {
    const uint32_t room = reading.image.width - std::min(place.left, reading.image.width);
    shown_ = std::min(place.width, room);
  }

  Fault read() noexcept {
    if (!place_.interlaced) return readEvery(0, 1);
    static constexpr struct { uint32_t first, step; } kPasses[] = {{0, 8}, {4, 8}, {2, 4}, {1, 2}};
    for (const auto &pass : kPasses) {
      if (const Fault fault = readEvery(pass.first, pass.step); fault != Fault::none) return fault;
    }
    return Fault::none;
  }

 private:
  Fault readEvery(uint32_t first, uint32_t step) noexcept {
    for (uint32_t y = first; y < place_.height; y += step) {
      if (DGifGetLine(reading_.gif.get(), line_.data(), static_cast<int>(place_.width)) == GIF_ERROR)
        return reading_.fault();
      if (place_.top + y < reading_.image.height) put(reading_.image.row(place_.top + y));
    }
    return Fault::none;
  }

  void put(uint8_t *row) const noexcept {
    uint8_t *const out = row + 4 * size_t{place_.left};
    for (size_t x = 0; x < shown_; ++x) std::memcpy(out + 4 * x, &reading_.colours[line_[x]], 4);
  }

  Reading &reading_;
  const Place place_;
  uint32_t shown_ = 0;  // pixels of a line that are on the canvas
  std::vector<GifPixelType> line_;
};

// May throw std::bad_alloc.
Fault read(Reading &reading) {
  if (const Fault fault = findFrame(reading); fault != Fault::none) return fault;
  const Place place = placeOf(reading);
  if (const Fault fault = readColours(reading); fault != Fault::none) return fault;
  if (const Fault fault = makeCanvas(reading, place); fault != Fault::none) return fault;
  if (const Fault fault = Lines(reading, place).read(); fault != Fault::none) return fault;
  if (isProfileFor(reading.profile, ProfileColours::rgb, reading.limits))
    reading.image.profile = std::move(reading.profile);
  return Fault::none;
}

}  // namespace

Result<DecodedImage> decodeGif(Bytes file, const CGImageDecodeLimits &limits) noexcept {
  if (scoreGif(file) == 0) return Fault::unknownFormat;
  Reading reading{limits, {file}, nullptr, NO_TRANSPARENT_COLOR, {}, {}, {}};
  int error = D_GIF_SUCCEEDED;
  reading.gif.reset(DGifOpen(&reading.input, readInput, &error));
  if (!reading.gif) return faultOf(error, reading.input);
  try {
    if (const Fault fault = read(reading); fault != Fault::none) return fault;
  } catch (const std::bad_alloc &) {
    return Fault::noMemory;
  }
  return std::move(reading.image);
}

}  // namespace codecs
