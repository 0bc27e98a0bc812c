// Reading JPEG: libjpeg's rows land in the final buffer; only CMYK takes a detour through one row.

#include <algorithm>
#include <new>
#include <optional>

#include "media/codecs/cmyk_rows.h"
#include "media/codecs/frame.h"
#include "media/codecs/icc.h"
#include "media/codecs/jpeg.h"
#include "media/codecs/jpeg_library.h"
#include "media/codecs/jpeg_profile.h"

namespace codecs {
namespace {

constexpr double kCentimetresPerInch = 2.54;
constexpr JDIMENSION kRowsAtOnce = 16;

// Everything that needs freeing when libjpeg jumps: it lives in the caller of the function that calls
// setjmp.
struct Reading {
  JpegErrors errors;
  jpeg_decompress_struct codec{};
  jpeg_source_mgr source{};
  jpeg_progress_mgr progress{};
  Bytes file;
  const CGImageDecodeLimits &limits;
  bool ended = false;     // libjpeg has asked for more bytes than there are
  uint64_t workLeft = 0;  // pixel visits
  DecodedImage image;
  std::vector<uint8_t> profile;
  std::optional<CmykRows> cmyk;
  std::vector<uint8_t> cmykRow;

  Reading(Bytes bytes, const CGImageDecodeLimits &bounds) noexcept : file(bytes), limits(bounds) {}
  Reading(const Reading &) = delete;
  Reading &operator=(const Reading &) = delete;
  ~Reading() { jpeg_destroy_decompress(&codec); }

  [[noreturn]] void fail(Fault reason) noexcept { errors.fail(ended ? Fault::truncated : reason); }
  static Reading &of(void *codec) noexcept {
    return *static_cast<Reading *>(static_cast<jpeg_decompress_struct *>(codec)->client_data);
  }
};

constexpr JOCTET kEndMark[2] = {0xFF, JPEG_EOI};

extern "C" {

static void startSource(j_decompress_ptr) {}
static void endSource(j_decompress_ptr) {}

// An end mark in place of what is missing: libjpeg looks ahead, so that it may ask for bytes that a
// file without its end mark does not need.
static boolean feedEndMark(j_decompress_ptr codec) {
  Reading::of(codec).ended = true;
  codec->src->next_input_byte = kEndMark;
  codec->src->bytes_in_buffer = sizeof kEndMark;
  return TRUE;
}

static void skipBytes(j_decompress_ptr codec, long count) {
  if (count <= 0) return;
  if (static_cast<size_t>(count) > codec->src->bytes_in_buffer) {
    feedEndMark(codec);
    return;
  }
  codec->src->next_input_byte += count;
  codec->src->bytes_in_buffer -= static_cast<size_t>(count);
}

// Whatever goes wrong once the bytes have run out goes wrong because of that.
[[noreturn]] static void onError(j_common_ptr codec) {
  Reading::of(codec).fail(meaningOfJpegError(codec->err->msg_code));
}

// Warnings that say pixels are lost end the decoding; the others are about trifles.
static void onMessage(j_common_ptr codec, int level) {
  if (level >= 0) return;
  Reading &reading = Reading::of(codec);
  switch (codec->err->msg_code) {
    case JWRN_HIT_MARKER:
      reading.fail(reading.codec.unread_marker == JPEG_EOI ? Fault::truncated : Fault::damaged);
    case JWRN_HUFF_BAD_CODE:
    case JWRN_ARITH_BAD_CODE:
    case JWRN_MUST_RESYNC:
      reading.fail(Fault::damaged);
    default:
      return;
  }
}

// Called for every row of blocks of every scan while a file of several scans is taken in.
static void onProgress(j_common_ptr codec) {
  Reading &reading = Reading::of(codec);
  const auto &state = reading.codec;
  if (static_cast<uint32_t>(state.input_scan_number) > reading.limits.jpegScans)
    reading.fail(Fault::tooLarge);
  const uint64_t visits =
      uint64_t{state.image_width} * static_cast<uint64_t>(state.max_v_samp_factor * DCTSIZE);
  if (visits > reading.workLeft) reading.fail(Fault::tooLarge);
  reading.workLeft -= visits;
}
}

void setUp(Reading &reading) {
  reading.codec.err = reading.errors.setUp();
  reading.errors.manager.error_exit = onError;
  reading.errors.manager.emit_message = onMessage;
  reading.codec.client_data = &reading;
  jpeg_create_decompress(&reading.codec);
  reading.source = {reading.file.data(), reading.file.size(),    startSource, feedEndMark,
                    skipBytes,           jpeg_resync_to_restart, endSource};
  reading.codec.src = &reading.source;
  reading.progress.progress_monitor = onProgress;
  jpeg_save_markers(&reading.codec, kProfileMarker, 0xFFFF);
}

// The least number of bits that a file can spend on its blocks. Huffman codes have one bit at least:
// a sequential block takes two (the mean and the end of block), a progressive one the mean alone, its
// other scans can skip thousands of blocks. Arithmetic coding has no such floor; there the limits rule.
uint64_t leastBits(const jpeg_decompress_struct &codec) noexcept {
  if (codec.arith_code) return 0;
  uint64_t blocks = 0;
  for (int i = 0; i < codec.num_components; ++i) {
    blocks += uint64_t{codec.comp_info[i].width_in_blocks} * codec.comp_info[i].height_in_blocks;
  }
  return codec.progressive_mode ? blocks : 2 * blocks;
}

PixelLayout layoutOf(Reading &reading) {
  switch (reading.codec.jpeg_color_space) {
    case JCS_GRAYSCALE:
      return PixelLayout::grey8;
    case JCS_RGB:
    case JCS_YCbCr:
    case JCS_CMYK:
    case JCS_YCCK:
      return PixelLayout::xrgb32;
    default:
      reading.fail(Fault::unsupported);
  }
}

J_COLOR_SPACE outputOf(const jpeg_decompress_struct &codec) noexcept {
  if (codec.num_components == 1) return JCS_GRAYSCALE;
  return codec.num_components == 4 ? JCS_CMYK : JCS_EXT_ARGB;  // ARGB: the first byte is sure to be 255
}

void makeImage(Reading &reading) {
  const jpeg_decompress_struct &codec = reading.codec;
  const PixelLayout layout = layoutOf(reading);
  Fault fault = checkFrame(codec.image_width, codec.image_height, bytesPerPixel(layout), reading.limits);
  if (fault != Fault::none) reading.errors.fail(fault);
  if (leastBits(codec) / 8 > reading.file.size()) reading.errors.fail(Fault::truncated);
  fault = makeFrame(reading.image, codec.image_width, codec.image_height, layout, reading.limits);
  if (fault != Fault::none) reading.errors.fail(fault);
  reading.image.depth = layout == PixelLayout::grey8 ? 8 : 24;
}

// libjpeg takes 0 for no limit at all.
void limitMemory(Reading &reading) {
  const uint64_t left = reading.limits.memoryBytes - reading.image.pixels.size();
  reading.codec.mem->max_memory_to_use = static_cast<long>(std::clamp<uint64_t>(left, 1, INT64_MAX));
}

void readResolution(Reading &reading) {
  const jpeg_decompress_struct &codec = reading.codec;
  if (!codec.saw_JFIF_marker || codec.density_unit == 0) return;
  const double perInch = codec.density_unit == 2 ? kCentimetresPerInch : 1.0;
  reading.image.resolution = {codec.X_density * perInch, codec.Y_density * perInch};
}

void readHeader(Reading &reading) {
  setUp(reading);
  jpeg_read_header(&reading.codec, TRUE);
  makeImage(reading);
  readResolution(reading);
  limitMemory(reading);
  const CGImageDecodeLimits &limits = reading.limits;
  reading.workLeft =
      limits.workFree + limits.workPerByte * (reading.file.size() + reading.image.pixels.size());
}

// A file of several scans is only known to be whole by its end mark or, if it is progressive, by
// every coefficient having arrived in full.
bool hasEveryCoefficient(const jpeg_decompress_struct &codec) noexcept {
  if (!codec.coef_bits) return false;
  return std::all_of(codec.coef_bits, codec.coef_bits + codec.num_components, [](const int(&bits)[DCTSIZE2]) {
    return std::ranges::all_of(bits, [](int b) { return b == 0; });
  });
}

void start(Reading &reading) {
  reading.codec.out_color_space = outputOf(reading.codec);
  reading.codec.progress = &reading.progress;
  jpeg_start_decompress(&reading.codec);
  reading.codec.progress = nullptr;
  if (!jpeg_has_multiple_scans(&reading.codec) || !reading.ended) return;
  if (!hasEveryCoefficient(reading.codec)) reading.fail(Fault::truncated);
}

void readRows(Reading &reading) {
  jpeg_decompress_struct &codec = reading.codec;
  while (codec.output_scanline < codec.output_height) {
    JSAMPROW rows[kRowsAtOnce];
    const JDIMENSION count = std::min(kRowsAtOnce, codec.output_height - codec.output_scanline);
    for (JDIMENSION i = 0; i < count; ++i) rows[i] = reading.image.row(codec.output_scanline + i);
    jpeg_read_scanlines(&codec, rows, count);
  }
}

void readCmykRows(Reading &reading) {
  jpeg_decompress_struct &codec = reading.codec;
  while (codec.output_scanline < codec.output_height) {
    const JDIMENSION y = codec.output_scanline;
    JSAMPROW row = reading.cmykRow.data();
    jpeg_read_scanlines(&codec, &row, 1);
    reading.cmyk->convert(row, reading.image.row(y), reading.image.width);
  }
}

void readPixels(Reading &reading) {
  start(reading);
  if (reading.cmyk) {
    readCmykRows(reading);
  } else {
    readRows(reading);
  }
}

bool runToEnd(Reading &reading, void (*steps)(Reading &)) noexcept {
  if (setjmp(reading.errors.jump)) return false;
  steps(reading);
  return true;
}

bool isCmyk(const jpeg_decompress_struct &codec) noexcept { return codec.num_components == 4; }

// Between the header and the pixels, outside libjpeg's reach: what may throw.
void prepareColours(Reading &reading) {
  reading.profile = joinProfile(reading.codec.marker_list, reading.limits);
  if (isCmyk(reading.codec)) {
    reading.cmyk.emplace(reading.profile, reading.codec.saw_Adobe_marker != 0, reading.limits);
    reading.cmykRow.resize(size_t{4} * reading.image.width);
    return;
  }
  const auto colours =
      reading.image.layout == PixelLayout::grey8 ? ProfileColours::grey : ProfileColours::rgb;
  if (isProfileFor(reading.profile, colours, reading.limits))
    reading.image.profile = std::move(reading.profile);
}

}  // namespace

Result<DecodedImage> decodeJpeg(Bytes file, const CGImageDecodeLimits &limits) noexcept {
  if (scoreJpeg(file) == 0) return Fault::unknownFormat;
  Reading reading(file, limits);
  try {
    if (!runToEnd(reading, readHeader)) return reading.errors.fault;
    prepareColours(reading);
  } catch (const std::bad_alloc &) {
    return Fault::noMemory;
  }
  if (!runToEnd(reading, readPixels)) return reading.errors.fault;
  return std::move(reading.image);
}

}  // namespace codecs
