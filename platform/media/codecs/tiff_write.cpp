// Writing TIFF.

#include <algorithm>
#include <new>

#include "media/codecs/tiff.h"
#include "media/codecs/tiff_library.h"

namespace codecs {
namespace {

// Long enough for deflate to find what repeats, short enough for the caches.
constexpr size_t kStripBytes = size_t{256} << 10;
constexpr int kCompressionLevel = 4;

uint16_t samplesOf(RowLayout layout) noexcept {
  switch (layout) {
    case RowLayout::grey:
      return 1;
    case RowLayout::rgbx:
      return 3;
    case RowLayout::rgba:
      return 4;
  }
  return 3;
}

void packRgb(uint8_t *row, uint32_t width) noexcept {
  const uint8_t *from = row;
  for (uint32_t x = 0; x < width; ++x, from += 4, row += 3) {
    row[0] = from[0];
    row[1] = from[1];
    row[2] = from[2];
  }
}

// False when a tag is refused or memory runs out.
bool describe(TIFF *tiff, const EncodeSource &source, uint32_t stripRows) noexcept {
  bool done = TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, source.width) &&
              TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, source.height) &&
              TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8) &&
              TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, samplesOf(source.layout)) &&
              TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) &&
              TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC,
                           source.layout == RowLayout::grey ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB) &&
              TIFFSetField(tiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT) &&
              TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, stripRows) &&
              TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_ADOBE_DEFLATE) &&
              TIFFSetField(tiff, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL) &&
              TIFFSetField(tiff, TIFFTAG_ZIPQUALITY, kCompressionLevel);
  if (source.layout == RowLayout::rgba) {
    const uint16_t kind = source.premultiplied ? EXTRASAMPLE_ASSOCALPHA : EXTRASAMPLE_UNASSALPHA;
    done = done && TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &kind);
  }
  if (!source.profile.empty()) {
    done = done && TIFFSetField(tiff, TIFFTAG_ICCPROFILE, static_cast<uint32_t>(source.profile.size()),
                                source.profile.data());
  }
  if (source.resolution.x > 0 && source.resolution.y > 0) {
    done = done && TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH) &&
           TIFFSetField(tiff, TIFFTAG_XRESOLUTION, source.resolution.x) &&
           TIFFSetField(tiff, TIFFTAG_YRESOLUTION, source.resolution.y);
  }
  return done;
}

// May throw std::bad_alloc.
Fault writeStrips(TIFF *tiff, const EncodeSource &source, uint32_t stripRows) {
  const size_t rowBytes = source.width * size_t{samplesOf(source.layout)};
  const size_t slack = source.width * bytesPerPixel(source.layout) - rowBytes;  // of the row being packed
  std::vector<uint8_t> strip(rowBytes * stripRows + slack);
  for (uint32_t y = 0; y < source.height; y += stripRows) {
    const uint32_t rows = std::min(stripRows, source.height - y);
    for (uint32_t i = 0; i < rows; ++i) {
      uint8_t *const row = strip.data() + i * rowBytes;
      if (!source.copyRow(source.context, y + i, row)) return Fault::noMemory;
      if (source.layout == RowLayout::rgbx) packRgb(row, source.width);
    }
    if (TIFFWriteEncodedStrip(tiff, y / stripRows, strip.data(), static_cast<tmsize_t>(rows * rowBytes)) < 0)
      return Fault::unsupported;
  }
  return TIFFWriteDirectory(tiff) ? Fault::none : Fault::unsupported;
}

Fault write(const EncodeSource &source, TiffOutput &output) {
  TiffMessages messages;
  const TiffHandle tiff = createTiff(output, messages);
  if (!tiff) return Fault::noMemory;
  const size_t rowBytes = source.width * size_t{samplesOf(source.layout)};
  const auto stripRows = static_cast<uint32_t>(std::clamp<size_t>(kStripBytes / rowBytes, 1, source.height));
  if (!describe(tiff.get(), source, stripRows)) return Fault::unsupported;
  return writeStrips(tiff.get(), source, stripRows);
}

}  // namespace

Fault encodeTiff(const EncodeSource &source, std::vector<uint8_t> &file) noexcept {
  TiffOutput output{file, file.size()};
  try {
    const Fault fault = write(source, output);
    return fault != Fault::none && output.ranOut ? Fault::noMemory : fault;
  } catch (const std::bad_alloc &) {
    return Fault::noMemory;
  }
}

}  // namespace codecs
