// Reading TIFF: libtiff unpacks strips and tiles, what the samples mean is worked out here.

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>
#include <vector>

#include "media/codecs/frame.h"
#include "media/codecs/grey_profile.h"
#include "media/codecs/icc.h"
#include "media/codecs/orientation.h"
#include "media/codecs/tiff.h"
#include "media/codecs/tiff_directory.h"
#include "media/codecs/tiff_library.h"
#include "media/codecs/tiff_pixels.h"

namespace codecs {
namespace {

constexpr double kCentimetresPerInch = 2.54;

// Strips up to this size are unpacked whole: they stay in the caches, and deflate is twice as fast.
constexpr uint64_t kSmallChunkBytes = uint64_t{4} << 20;

struct Reading {
  Bytes file;
  const CGImageDecodeLimits &limits;
  TiffDirectory directory;
  TiffMessages messages;
  TiffInput input;
  TiffHandle tiff;
  DecodedImage image;

  Reading(Bytes bytes, const CGImageDecodeLimits &bounds, const TiffDirectory &found) noexcept
      : file(bytes), limits(bounds), directory(found), input{bytes} {
    tiff = openTiff(input, messages, bounds.memoryBytes);
  }

  template <class Number>
  Number field(uint32_t tag, Number otherwise) const noexcept {
    Number value = otherwise;
    return TIFFGetFieldDefaulted(tiff.get(), tag, &value) ? value : otherwise;
  }
  uint64_t memoryLeft() const noexcept {
    return limits.memoryBytes - std::min<uint64_t>(limits.memoryBytes, image.pixels.size());
  }
};

// libtiff mends what it finds odd; a directory that it reads in another way than we do is not trusted.
bool isReadAlike(const Reading &reading) noexcept {
  const TiffDirectory &directory = reading.directory;
  const bool tiled = TIFFIsTiled(reading.tiff.get()) != 0;
  if (reading.field<uint32_t>(TIFFTAG_IMAGEWIDTH, 0) != directory.width ||
      reading.field<uint32_t>(TIFFTAG_IMAGELENGTH, 0) != directory.height ||
      reading.field<uint16_t>(TIFFTAG_SAMPLESPERPIXEL, 1) != directory.samples ||
      reading.field<uint16_t>(TIFFTAG_BITSPERSAMPLE, 1) != directory.bits ||
      reading.field<uint16_t>(TIFFTAG_COMPRESSION, 1) != static_cast<uint16_t>(directory.compression) ||
      tiled != directory.tiled)
    return false;
  const uint32_t chunks =
      tiled ? TIFFNumberOfTiles(reading.tiff.get()) : TIFFNumberOfStrips(reading.tiff.get());
  return chunks == directory.chunkCount();
}

// Every chunk inside the file, and together no longer than it.
Fault checkChunks(const Reading &reading) noexcept {
  uint64_t left = reading.file.size();
  const auto count = static_cast<uint32_t>(reading.directory.chunkCount());
  for (uint32_t chunk = 0; chunk < count; ++chunk) {
    const uint64_t at = TIFFGetStrileOffset(reading.tiff.get(), chunk);
    const uint64_t bytes = TIFFGetStrileByteCount(reading.tiff.get(), chunk);
    if (bytes == 0) return Fault::damaged;
    if (at > reading.file.size() || bytes > reading.file.size() - at) return Fault::truncated;
    if (bytes > left) return Fault::damaged;
    left -= bytes;
  }
  return Fault::none;
}

Bytes embeddedProfile(const Reading &reading) noexcept {
  uint32_t size = 0;
  const uint8_t *bytes = nullptr;
  if (!TIFFGetField(reading.tiff.get(), TIFFTAG_ICCPROFILE, &size, &bytes) || !bytes) return {};
  return {bytes, size};
}

// The first sample that is said to be alpha. Colours with one sample too many and no word about it come
// from programs that forgot to say that it is alpha; samples said to be something else are left alone.
void findAlpha(const Reading &reading, TiffColours &colours) noexcept {
  const unsigned own = colours.colourSamples();
  uint16_t count = 0;
  const uint16_t *kinds = nullptr;
  if (!TIFFGetField(reading.tiff.get(), TIFFTAG_EXTRASAMPLES, &count, &kinds) || count == 0 || !kinds) {
    if (colours.photometric != TiffPhotometric::rgb || colours.samples != own + 1) return;
    colours.alpha = TiffAlpha::straight;
    colours.alphaAt = own;
    return;
  }
  for (unsigned i = 0; i < count && own + i < colours.samples; ++i) {
    if (kinds[i] != EXTRASAMPLE_ASSOCALPHA && kinds[i] != EXTRASAMPLE_UNASSALPHA) continue;
    colours.alpha = kinds[i] == EXTRASAMPLE_ASSOCALPHA ? TiffAlpha::premultiplied : TiffAlpha::straight;
    colours.alphaAt = own + i;
    return;
  }
}

// Entries have 16 bits, though some programs filled only the lower or only the upper eight.
Fault readPalette(const Reading &reading, TiffColours &colours) {
  const size_t entries = size_t{1} << colours.bits;
  const uint16_t *channels[3] = {};
  if (!TIFFGetField(reading.tiff.get(), TIFFTAG_COLORMAP, &channels[0], &channels[1], &channels[2]))
    return Fault::damaged;
  unsigned all = 0, lower = 0;
  for (const uint16_t *channel : channels) {
    if (!channel) return Fault::damaged;
    for (size_t i = 0; i < entries; ++i) {
      all |= channel[i];
      lower |= channel[i] & 0xFFu;
    }
  }
  colours.palette.resize(3 * entries);
  for (size_t i = 0; i < 3 * entries; ++i) {
    const unsigned value = channels[i % 3][i / 3];
    colours.palette[i] = static_cast<uint8_t>(all < 256    ? value
                                              : lower == 0 ? value >> 8
                                                           : (value + 128) / 257);
  }
  return Fault::none;
}

Fault readColours(const Reading &reading, TiffColours &colours) {
  const uint16_t format = reading.field<uint16_t>(TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT);
  if (format != SAMPLEFORMAT_UINT && format != SAMPLEFORMAT_VOID) return Fault::unsupported;
  colours.photometric = reading.directory.photometric;
  colours.bits = reading.directory.bits;
  colours.samples = reading.directory.samples;
  if (colours.samples < colours.colourSamples()) return Fault::damaged;
  if (colours.photometric == TiffPhotometric::cmyk &&
      reading.field<uint16_t>(TIFFTAG_INKSET, INKSET_CMYK) != INKSET_CMYK)
    return Fault::unsupported;
  findAlpha(reading, colours);
  return colours.photometric == TiffPhotometric::palette ? readPalette(reading, colours) : Fault::none;
}

// Chunks of all planes that lie over one another, unpacked whole.
class WholeChunks {
 public:
  static bool areWanted(const Reading &reading) noexcept {
    const TiffDirectory &directory = reading.directory;
    const uint64_t bytes = bytesOf(directory);
    const bool deflate = directory.compression == TiffCompression::deflate ||
                         directory.compression == TiffCompression::oldDeflate;
    return directory.tiled || directory.planes || bytes <= kSmallChunkBytes ||
           (deflate && bytes <= reading.memoryLeft() / 2);
  }

  WholeChunks(Reading &reading, TiffPixels &pixels) noexcept
      : reading_(reading), directory_(reading.directory), pixels_(pixels) {}

  // May throw std::bad_alloc.
  Fault read() {
    const uint64_t planes = directory_.planeCount(), chunk = bytesOf(directory_);
    if (chunk > reading_.memoryLeft() / planes) return Fault::tooLarge;
    chunkBytes_ = chunk;
    buffer_.resize((planes * chunkBytes_ + 1) / 2);
    rows_.resize(planes);
    for (uint32_t top = 0; top < directory_.height; top += directory_.chunkHeight) {
      for (uint32_t left = 0; left < directory_.width; left += directory_.chunkWidth) {
        if (!unpack(left, top)) return Fault::damaged;
        put(left, top);
      }
    }
    return Fault::none;
  }

 private:
  // Rounded up to two, so that planes of 16-bit samples stay aligned.
  static uint64_t bytesOf(const TiffDirectory &directory) noexcept {
    return (directory.chunkRowBytes() * directory.chunkHeight + 1) & ~uint64_t{1};
  }

  uint8_t *plane(uint32_t number) noexcept {
    return reinterpret_cast<uint8_t *>(buffer_.data()) + number * chunkBytes_;
  }

  bool unpack(uint32_t left, uint32_t top) noexcept {
    TIFF *const tiff = reading_.tiff.get();
    const uint64_t rows =
        directory_.tiled ? directory_.chunkHeight : std::min(directory_.chunkHeight, directory_.height - top);
    const auto wanted = static_cast<tmsize_t>(directory_.chunkRowBytes() * rows);
    for (uint32_t number = 0; number < directory_.planeCount(); ++number) {
      const auto sample = static_cast<uint16_t>(number);
      const tmsize_t got =
          directory_.tiled
              ? TIFFReadEncodedTile(tiff, TIFFComputeTile(tiff, left, top, 0, sample), plane(number), wanted)
              : TIFFReadEncodedStrip(tiff, TIFFComputeStrip(tiff, top, sample), plane(number), wanted);
      if (got != wanted) return false;
    }
    return true;
  }

  void put(uint32_t left, uint32_t top) noexcept {
    DecodedImage &image = reading_.image;
    const uint32_t columns = std::min(directory_.chunkWidth, image.width - left);
    const uint32_t rows = std::min(directory_.chunkHeight, image.height - top);
    for (uint32_t y = 0; y < rows; ++y) {
      for (uint32_t number = 0; number < directory_.planeCount(); ++number) {
        rows_[number] = plane(number) + y * directory_.chunkRowBytes();
      }
      pixels_.put(rows_.data(), !directory_.planes, columns,
                  image.row(top + y) + left * bytesPerPixel(image.layout));
    }
  }

  Reading &reading_;
  const TiffDirectory &directory_;
  TiffPixels &pixels_;
  uint64_t chunkBytes_ = 0;
  std::vector<uint16_t> buffer_;
  std::vector<const uint8_t *> rows_;
};

// Long strips row by row, so that they need no memory of their own.
Fault readScanlines(Reading &reading, TiffPixels &pixels) {
  const uint64_t rowBytes = reading.directory.chunkRowBytes();
  if (static_cast<uint64_t>(TIFFScanlineSize64(reading.tiff.get())) != rowBytes) return Fault::unsupported;
  std::vector<uint16_t> row((rowBytes + 1) / 2);
  auto *const bytes = reinterpret_cast<uint8_t *>(row.data());
  for (uint32_t y = 0; y < reading.image.height; ++y) {
    if (TIFFReadScanline(reading.tiff.get(), bytes, y, 0) != 1) return Fault::damaged;
    const uint8_t *const planes[1] = {bytes};
    pixels.put(planes, true, reading.image.width, reading.image.row(y));
  }
  return Fault::none;
}

// May throw std::bad_alloc.
Fault readSamples(Reading &reading, TiffColours colours) {
  const TiffDirectory &directory = reading.directory;
  const uint64_t chunk = directory.tiled ? TIFFTileSize64(reading.tiff.get())
                                         : TIFFVStripSize64(reading.tiff.get(), directory.chunkHeight);
  if (chunk != directory.chunkRowBytes() * directory.chunkHeight) return Fault::unsupported;
  TiffPixels pixels(std::move(colours), std::min(directory.chunkWidth, directory.width),
                    embeddedProfile(reading), reading.limits);
  if (WholeChunks::areWanted(reading)) return WholeChunks(reading, pixels).read();
  return readScanlines(reading, pixels);
}

// Luma and chroma that are not inside JPEG are rare enough to leave them to libtiff.
Fault readThroughRgba(Reading &reading) noexcept {
  TIFFRGBAImage rgba;
  char reason[1024];
  TIFF *const tiff = reading.tiff.get();
  if (static_cast<uint64_t>(reading.directory.tiled ? TIFFTileSize64(tiff) : TIFFStripSize64(tiff)) >
      reading.memoryLeft())
    return Fault::tooLarge;
  if (!TIFFRGBAImageOK(tiff, reason) || !TIFFRGBAImageBegin(&rgba, tiff, 1, reason))
    return Fault::unsupported;
  DecodedImage &image = reading.image;
  rgba.req_orientation = rgba.orientation;
  const int done =
      TIFFRGBAImageGet(&rgba, reinterpret_cast<uint32_t *>(image.pixels.data()), image.width, image.height);
  TIFFRGBAImageEnd(&rgba);
  if (!done) return Fault::damaged;
  uint8_t *const end = image.pixels.data() + image.pixels.size();
  for (uint8_t *pixel = image.pixels.data(); pixel != end; pixel += 4) {
    uint32_t packed;
    std::memcpy(&packed, pixel, sizeof packed);
    pixel[0] = 255;
    pixel[1] = static_cast<uint8_t>(TIFFGetR(packed));
    pixel[2] = static_cast<uint8_t>(TIFFGetG(packed));
    pixel[3] = static_cast<uint8_t>(TIFFGetB(packed));
  }
  return Fault::none;
}

// JPEG unpacks to RGB by itself where its samples lie together.
bool unpacksToRgb(const TiffDirectory &directory) noexcept {
  return directory.photometric == TiffPhotometric::yCbCr && directory.compression == TiffCompression::jpeg &&
         !directory.planes && directory.samples == 3 && directory.bits == 8;
}

bool isLeftToLibrary(const TiffDirectory &directory) noexcept {
  return directory.photometric == TiffPhotometric::yCbCr && !unpacksToRgb(directory);
}

Fault readPixels(Reading &reading, TiffColours &colours) {
  if (isLeftToLibrary(reading.directory)) return readThroughRgba(reading);
  if (unpacksToRgb(reading.directory)) {
    TIFFSetField(reading.tiff.get(), TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
    colours.photometric = TiffPhotometric::rgb;
  }
  return readSamples(reading, std::move(colours));
}

void keepProfile(Reading &reading, TiffPhotometric photometric) {
  const Bytes profile = embeddedProfile(reading);
  DecodedImage &image = reading.image;
  const bool grey =
      photometric == TiffPhotometric::whiteIsZero || photometric == TiffPhotometric::blackIsZero;
  if (grey && image.layout == PixelLayout::argb32) return bringGreyToSrgb(image, profile, reading.limits);
  if (photometric == TiffPhotometric::cmyk) return;
  if (isProfileFor(profile, grey ? ProfileColours::grey : ProfileColours::rgb, reading.limits))
    image.profile.assign(profile.begin(), profile.end());
}

void readResolution(Reading &reading) noexcept {
  const uint16_t unit = reading.field<uint16_t>(TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
  if (unit != RESUNIT_INCH && unit != RESUNIT_CENTIMETER) return;
  const double perInch = unit == RESUNIT_CENTIMETER ? kCentimetresPerInch : 1.0;
  const double x = reading.field<float>(TIFFTAG_XRESOLUTION, 0) * perInch;
  const double y = reading.field<float>(TIFFTAG_YRESOLUTION, 0) * perInch;
  if (x > 0 && y > 0) reading.image.resolution = {x, y};
}

// May throw std::bad_alloc.
Fault readAll(Reading &reading) {
  if (!isReadAlike(reading)) return Fault::damaged;
  TiffColours colours;
  if (const Fault fault = readColours(reading, colours); fault != Fault::none) return fault;
  const TiffDirectory &directory = reading.directory;
  const PixelLayout layout = colours.layout();
  if (const Fault fault = checkChunks(reading); fault != Fault::none) return fault;
  Fault fault = makeFrame(reading.image, directory.width, directory.height, layout, reading.limits);
  if (fault != Fault::none) return fault;
  reading.image.depth = layout == PixelLayout::grey8 ? 8 : layout == PixelLayout::xrgb32 ? 24 : 32;
  fault = readPixels(reading, colours);
  if (fault != Fault::none) return fault;
  if (reading.messages.error || reading.messages.lostPixels) return Fault::damaged;
  keepProfile(reading, directory.photometric);
  readResolution(reading);
  return applyOrientation(reading.image, reading.field<uint16_t>(TIFFTAG_ORIENTATION, 1), reading.limits);
}

}  // namespace

Result<DecodedImage> decodeTiff(Bytes file, const CGImageDecodeLimits &limits) noexcept {
  if (scoreTiff(file) == 0) return Fault::unknownFormat;
  const auto directory = inspectTiff(file, limits);
  if (!directory) return directory.fault;
  Reading reading(file, limits, directory.value);
  if (!reading.tiff) return Fault::damaged;
  reading.messages = {};  // opening complains about tags that nobody looks at
  try {
    if (const Fault fault = readAll(reading); fault != Fault::none) return fault;
  } catch (const std::bad_alloc &) {
    return Fault::noMemory;
  }
  return std::move(reading.image);
}

}  // namespace codecs
