// Writing JPEG.

#include <array>
#include <cmath>
#include <new>

#include "media/codecs/jpeg.h"
#include "media/codecs/jpeg_library.h"

namespace codecs {
namespace {

constexpr int kQuality = 90;

// Tables made for the image need its coefficients in memory, three bytes a pixel or so; above this
// many pixels the standard tables do.
constexpr uint64_t kMaxPixelsForOwnTables = uint64_t{1} << 26;

struct Writing {
  JpegErrors errors;
  jpeg_compress_struct codec{};
  jpeg_destination_mgr destination{};
  const EncodeSource &source;
  std::vector<uint8_t> &file;
  std::vector<uint8_t> row;
  std::array<JOCTET, 1 << 16> block;  // what libjpeg has not handed over yet

  Writing(const EncodeSource &image, std::vector<uint8_t> &out) noexcept : source(image), file(out) {}
  Writing(const Writing &) = delete;
  Writing &operator=(const Writing &) = delete;
  ~Writing() { jpeg_destroy_compress(&codec); }

  void append(size_t count) noexcept {
    if (!tryAppend(count)) errors.fail(Fault::noMemory);
  }
  void renewBlock() noexcept {
    destination.next_output_byte = block.data();
    destination.free_in_buffer = block.size();
  }
  static Writing &of(j_compress_ptr codec) noexcept { return *static_cast<Writing *>(codec->client_data); }

 private:
  bool tryAppend(size_t count) noexcept {
    try {
      file.insert(file.end(), block.data(), block.data() + count);
      return true;
    } catch (const std::bad_alloc &) {
      return false;
    }
  }
};

extern "C" {

static void startDestination(j_compress_ptr codec) { Writing::of(codec).renewBlock(); }

static boolean takeBlock(j_compress_ptr codec) {
  Writing &writing = Writing::of(codec);
  writing.append(writing.block.size());
  writing.renewBlock();
  return TRUE;
}

static void endDestination(j_compress_ptr codec) {
  Writing &writing = Writing::of(codec);
  writing.append(writing.block.size() - writing.destination.free_in_buffer);
}
}

J_COLOR_SPACE inputOf(RowLayout layout) noexcept {
  switch (layout) {
    case RowLayout::grey:
      return JCS_GRAYSCALE;
    case RowLayout::rgbx:
    case RowLayout::rgba:
      return JCS_EXT_RGBX;
  }
  return JCS_EXT_RGBX;
}

void setUp(Writing &writing) {
  writing.codec.err = writing.errors.setUp();
  writing.codec.client_data = &writing;
  jpeg_create_compress(&writing.codec);
  writing.destination.init_destination = startDestination;
  writing.destination.empty_output_buffer = takeBlock;
  writing.destination.term_destination = endDestination;
  writing.codec.dest = &writing.destination;
}

void setResolution(Writing &writing) {
  const Resolution &resolution = writing.source.resolution;
  if (!(resolution.x > 0 && resolution.y > 0)) return;
  const auto whole = [](double dpi) {
    return static_cast<UINT16>(std::fmin(std::fmax(std::round(dpi), 1), 65535));
  };
  writing.codec.density_unit = 1;
  writing.codec.X_density = whole(resolution.x);
  writing.codec.Y_density = whole(resolution.y);
}

void setParameters(Writing &writing) {
  const EncodeSource &source = writing.source;
  writing.codec.image_width = source.width;
  writing.codec.image_height = source.height;
  writing.codec.input_components = static_cast<int>(bytesPerPixel(source.layout));
  writing.codec.in_color_space = inputOf(source.layout);
  jpeg_set_defaults(&writing.codec);
  jpeg_set_quality(&writing.codec, kQuality, TRUE);
  writing.codec.optimize_coding = uint64_t{source.width} * source.height <= kMaxPixelsForOwnTables;
  setResolution(writing);
}

void writeAll(Writing &writing) {
  const EncodeSource &source = writing.source;
  setUp(writing);
  setParameters(writing);
  jpeg_start_compress(&writing.codec, TRUE);
  if (!source.profile.empty()) {
    jpeg_write_icc_profile(&writing.codec, source.profile.data(),
                           static_cast<unsigned>(source.profile.size()));
  }
  for (uint32_t y = 0; y < source.height; ++y) {
    if (!source.copyRow(source.context, y, writing.row.data())) writing.errors.fail(Fault::noMemory);
    JSAMPROW row = writing.row.data();
    jpeg_write_scanlines(&writing.codec, &row, 1);
  }
  jpeg_finish_compress(&writing.codec);
}

bool runToEnd(Writing &writing, void (*steps)(Writing &)) noexcept {
  if (setjmp(writing.errors.jump)) return false;
  steps(writing);
  return true;
}

}  // namespace

Fault encodeJpeg(const EncodeSource &source, std::vector<uint8_t> &file) noexcept {
  try {
    Writing writing(source, file);
    writing.row.resize(source.width * bytesPerPixel(source.layout));
    return runToEnd(writing, writeAll) ? Fault::none : writing.errors.fault;
  } catch (const std::bad_alloc &) {
    return Fault::noMemory;
  }
}

}  // namespace codecs
