// Reading PNG: libpng's rows land in the final buffer, already in the final layout, so that no
// second pass over the pixels is needed.

#include <png.h>

#include <algorithm>
#include <csetjmp>
#include <new>

#include "media/codecs/frame.h"
#include "media/codecs/grey_profile.h"
#include "media/codecs/icc.h"
#include "media/codecs/png.h"

namespace codecs {
namespace {

// deflate spends two bits at least on 258 bytes, so no file unpacks to more than this many times its size.
constexpr uint64_t kMaxInflation = 1032;

constexpr double kInchesPerMetre = 0.0254;

// Everything that needs freeing when libpng jumps out of the reading steps: it lives in the caller of
// the function that calls setjmp.
struct Reading {
  Bytes file;
  const CGImageDecodeLimits &limits;
  size_t at = 0;
  Fault fault = Fault::none;
  png_structp png = nullptr;
  png_infop info = nullptr;
  DecodedImage image;
  bool greyWithAlpha = false;

  Reading(Bytes bytes, const CGImageDecodeLimits &bounds) noexcept : file(bytes), limits(bounds) {}
  Reading(const Reading &) = delete;
  Reading &operator=(const Reading &) = delete;
  ~Reading() { png_destroy_read_struct(&png, &info, nullptr); }

  // The first reason counts: what libpng says afterwards follows from it.
  void blame(Fault reason) noexcept {
    if (fault == Fault::none) fault = reason;
  }
};

extern "C" {

[[noreturn]] static void onError(png_structp png, png_const_charp) {
  static_cast<Reading *>(png_get_error_ptr(png))->blame(Fault::damaged);
  png_longjmp(png, 1);
}

static void onWarning(png_structp, png_const_charp) {}

static void readBytes(png_structp png, png_bytep out, size_t count) {
  auto &reading = *static_cast<Reading *>(png_get_io_ptr(png));
  if (count > reading.file.size() - reading.at) {
    reading.blame(Fault::truncated);
    png_error(png, "end of data");
  }
  std::copy_n(reading.file.data() + reading.at, count, out);
  reading.at += count;
}

static png_voidp takeMemory(png_structp png, png_alloc_size_t size) {
  void *block = std::malloc(size);
  if (!block) static_cast<Reading *>(png_get_mem_ptr(png))->blame(Fault::noMemory);
  return block;
}

static void giveMemory(png_structp, png_voidp block) { std::free(block); }
}

[[noreturn]] void fail(Reading &reading, Fault fault) {
  reading.blame(fault);
  png_error(reading.png, "refused");
}

// Gamma, chromaticities and texts are never looked at: nothing is gained from letting libpng judge
// them, and a contradiction among them would cost the image its profile.
void ignoreUnusedChunks(Reading &reading) {
  static constexpr png_byte kUsed[] = "iCCP\0pHYs";
  png_set_keep_unknown_chunks(reading.png, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
  png_set_keep_unknown_chunks(reading.png, PNG_HANDLE_CHUNK_AS_DEFAULT, kUsed, 2);
}

void setUp(Reading &reading) {
  png_set_read_fn(reading.png, &reading, readBytes);
  png_set_benign_errors(reading.png, 1);
  png_set_user_limits(reading.png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);  // judged by checkFrame
  png_set_chunk_malloc_max(reading.png, reading.limits.profileBytes);
  ignoreUnusedChunks(reading);
}

bool hasTransparentEntry(const Reading &reading) {
  png_bytep alpha = nullptr;
  int count = 0;
  png_color_16p key = nullptr;
  if (!png_get_tRNS(reading.png, reading.info, &alpha, &count, &key)) return false;
  return std::any_of(alpha, alpha + count, [](png_byte value) { return value != 255; });
}

// What the file's pixels become. A palette whose tRNS is opaque throughout has no alpha.
PixelLayout layoutOf(const Reading &reading) {
  const int type = png_get_color_type(reading.png, reading.info);
  const bool keyed = png_get_valid(reading.png, reading.info, PNG_INFO_tRNS) != 0;
  if (type == PNG_COLOR_TYPE_PALETTE)
    return hasTransparentEntry(reading) ? PixelLayout::argb32 : PixelLayout::xrgb32;
  if ((type & PNG_COLOR_MASK_ALPHA) || keyed) return PixelLayout::argb32;
  return type & PNG_COLOR_MASK_COLOR ? PixelLayout::xrgb32 : PixelLayout::grey8;
}

void askForLayout(Reading &reading) {
  const png_structp png = reading.png;
  const int type = png_get_color_type(png, reading.info);
  const bool keyed = png_get_valid(png, reading.info, PNG_INFO_tRNS) != 0;
  png_set_scale_16(png);
  png_set_expand(png);
  if (reading.image.layout == PixelLayout::grey8) return;
  png_set_gray_to_rgb(png);
  if ((type & PNG_COLOR_MASK_ALPHA) || keyed) {
    png_set_swap_alpha(png);
  } else {
    png_set_filler(png, 255, PNG_FILLER_BEFORE);
  }
}

void refuseWhatCannotBeThere(Reading &reading, uint64_t width, uint64_t height) {
  const uint64_t bits =
      uint64_t{png_get_bit_depth(reading.png, reading.info)} * png_get_channels(reading.png, reading.info);
  const uint64_t packedRow = width * bits / 8;
  if (packedRow > kMaxInflation * reading.file.size() / height) fail(reading, Fault::truncated);
}

void readHeader(Reading &reading) {
  png_read_info(reading.png, reading.info);
  const uint32_t width = png_get_image_width(reading.png, reading.info);
  const uint32_t height = png_get_image_height(reading.png, reading.info);
  const PixelLayout layout = layoutOf(reading);
  Fault fault = checkFrame(width, height, bytesPerPixel(layout), reading.limits);
  if (fault != Fault::none) fail(reading, fault);
  refuseWhatCannotBeThere(reading, width, height);
  fault = makeFrame(reading.image, width, height, layout, reading.limits);
  if (fault != Fault::none) fail(reading, fault);
  reading.image.depth = layout == PixelLayout::grey8 ? 8 : layout == PixelLayout::xrgb32 ? 24 : 32;
  reading.greyWithAlpha = layout == PixelLayout::argb32 &&
                          !(png_get_color_type(reading.png, reading.info) & PNG_COLOR_MASK_COLOR);
}

// Checksums of the last image chunk are verified with the last row; what follows the pixels cannot
// change them and is not read, so a file that merely lost its end mark still loads.
void readPixels(Reading &reading) {
  const int passes = png_set_interlace_handling(reading.png);
  askForLayout(reading);
  png_read_update_info(reading.png, reading.info);
  if (png_get_rowbytes(reading.png, reading.info) != reading.image.rowBytes) fail(reading, Fault::damaged);
  for (int pass = 0; pass < passes; ++pass) {
    for (uint32_t y = 0; y < reading.image.height; ++y) {
      png_read_row(reading.png, reading.image.row(y), nullptr);
    }
  }
}

void readResolution(Reading &reading) {
  png_uint_32 x = 0, y = 0;
  int unit = PNG_RESOLUTION_UNKNOWN;
  if (!png_get_pHYs(reading.png, reading.info, &x, &y, &unit) || unit != PNG_RESOLUTION_METER) return;
  reading.image.resolution = {x * kInchesPerMetre, y * kInchesPerMetre};
}

void readAll(Reading &reading) {
  setUp(reading);
  readHeader(reading);
  readPixels(reading);
  readResolution(reading);
}

// Nothing in here or below has a destructor that a jump would skip.
bool runToEnd(Reading &reading, void (*steps)(Reading &)) noexcept {
  if (setjmp(png_jmpbuf(reading.png))) return false;
  steps(reading);
  return true;
}

void keepProfile(Reading &reading) {
  png_charp name = nullptr;
  int method = 0;
  png_bytep bytes = nullptr;
  png_uint_32 size = 0;
  if (!png_get_iCCP(reading.png, reading.info, &name, &method, &bytes, &size)) return;
  const Bytes profile(bytes, size);
  DecodedImage &image = reading.image;
  if (reading.greyWithAlpha) {
    bringGreyToSrgb(image, profile, reading.limits);
  } else if (isProfileFor(profile,
                          image.layout == PixelLayout::grey8 ? ProfileColours::grey : ProfileColours::rgb,
                          reading.limits)) {
    image.profile.assign(profile.begin(), profile.end());
  }
}

bool begin(Reading &reading) noexcept {
  reading.png = png_create_read_struct_2(PNG_LIBPNG_VER_STRING, &reading, onError, onWarning, &reading,
                                         takeMemory, giveMemory);
  if (reading.png) reading.info = png_create_info_struct(reading.png);
  return reading.info != nullptr;
}

}  // namespace

Result<DecodedImage> decodePng(Bytes file, const CGImageDecodeLimits &limits) noexcept {
  if (scorePng(file) == 0) return Fault::unknownFormat;
  Reading reading(file, limits);
  if (!begin(reading)) return Fault::noMemory;
  // Without memory for a profile libpng goes on; an image in the wrong colours is no result.
  if (!runToEnd(reading, readAll) || reading.fault != Fault::none) return reading.fault;
  try {
    keepProfile(reading);
  } catch (const std::bad_alloc &) {
    return Fault::noMemory;
  }
  return std::move(reading.image);
}

}  // namespace codecs
