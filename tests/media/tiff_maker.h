// TIFF files made with libtiff itself, in any layout that the format knows.
#pragma once

#include <tiffio.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

struct TiffRecipe {
  uint32_t width = 0;
  uint32_t height = 0;
  uint16_t samplesPerPixel = 1;
  uint16_t bits = 8;
  uint16_t photometric = PHOTOMETRIC_MINISBLACK;
  uint16_t compression = COMPRESSION_NONE;
  uint16_t predictor = 1;
  bool planes = false;
  uint32_t tileSide = 0;      // 0: strips
  uint32_t rowsPerStrip = 5;  // when there are no tiles
  const char *mode = "wl";    // b: big-endian, 8: 64-bit offsets
  uint16_t fillOrder = FILLORDER_MSB2LSB;
  std::vector<uint16_t> extraSamples{};
  std::vector<uint16_t> palette{};  // all reds, all greens, all blues
  std::vector<uint8_t> profile{};
  uint16_t orientation = ORIENTATION_TOPLEFT;
  double dotsPerUnit = 0;
  uint16_t resolutionUnit = RESUNIT_INCH;
  std::vector<uint16_t> samples{};  // width * height * samplesPerPixel values

  uint16_t sample(uint32_t x, uint32_t y, uint32_t channel) const {
    return samples[(size_t{y} * width + x) * samplesPerPixel + channel];
  }
};

namespace tiff_maker {

struct Sink {
  std::vector<uint8_t> bytes;
  size_t at = 0;
};

inline TIFF *open(Sink &sink, const char *mode) {
  TIFFSetWarningHandler(nullptr);
  return TIFFClientOpen(
      "made", mode, &sink,
      [](thandle_t to, void *out, tmsize_t count) -> tmsize_t {
        auto &from = *static_cast<Sink *>(to);
        if (from.at + static_cast<size_t>(count) > from.bytes.size()) return 0;
        std::memcpy(out, from.bytes.data() + from.at, static_cast<size_t>(count));
        from.at += static_cast<size_t>(count);
        return count;
      },
      [](thandle_t to, void *bytes, tmsize_t count) -> tmsize_t {
        auto &into = *static_cast<Sink *>(to);
        if (into.at + static_cast<size_t>(count) > into.bytes.size())
          into.bytes.resize(into.at + static_cast<size_t>(count));
        std::memcpy(into.bytes.data() + into.at, bytes, static_cast<size_t>(count));
        into.at += static_cast<size_t>(count);
        return count;
      },
      [](thandle_t to, toff_t offset, int whence) -> toff_t {
        auto &file = *static_cast<Sink *>(to);
        file.at = whence == SEEK_CUR   ? file.at + offset
                  : whence == SEEK_END ? file.bytes.size() + offset
                                       : offset;
        return file.at;
      },
      [](thandle_t) { return 0; },
      [](thandle_t to) -> toff_t { return static_cast<Sink *>(to)->bytes.size(); },
      [](thandle_t, void **, toff_t *) { return 0; }, [](thandle_t, void *, toff_t) {});
}

// Samples [left, left + columns) of a row, one channel or (channel < 0) all of them, packed.
inline std::vector<uint8_t> packRow(const TiffRecipe &recipe, uint32_t left, uint32_t columns, uint32_t y,
                                    int channel) {
  const uint32_t channels = channel < 0 ? recipe.samplesPerPixel : 1;
  std::vector<uint8_t> row((size_t{columns} * channels * recipe.bits + 7) / 8);
  size_t bit = 0;
  for (uint32_t x = left; x < left + columns; ++x) {
    for (uint32_t c = 0; c < channels; ++c) {
      const bool inside = x < recipe.width && y < recipe.height;
      const uint16_t value =
          inside ? recipe.sample(x, y, channel < 0 ? c : static_cast<uint32_t>(channel)) : uint16_t{0};
      if (recipe.bits == 16) {
        std::memcpy(row.data() + bit / 8, &value, 2);
        bit += 16;
        continue;
      }
      for (int at = recipe.bits - 1; at >= 0; --at, ++bit) {
        row[bit / 8] = static_cast<uint8_t>(row[bit / 8] | (value >> at & 1) << (7 - bit % 8));
      }
    }
  }
  return row;
}

inline void require(bool condition) {
  if (!condition) std::abort();
}

inline void writeTiles(TIFF *tiff, const TiffRecipe &recipe) {
  for (int channel = recipe.planes ? 0 : -1; channel < (recipe.planes ? recipe.samplesPerPixel : 0);
       ++channel) {
    for (uint32_t top = 0; top < recipe.height; top += recipe.tileSide) {
      for (uint32_t left = 0; left < recipe.width; left += recipe.tileSide) {
        std::vector<uint8_t> tile;
        for (uint32_t y = top; y < top + recipe.tileSide; ++y) {
          const auto row = packRow(recipe, left, recipe.tileSide, y, channel);
          tile.insert(tile.end(), row.begin(), row.end());
        }
        require(TIFFWriteTile(tiff, tile.data(), left, top, 0,
                              static_cast<uint16_t>(channel < 0 ? 0 : channel)) > 0);
      }
    }
  }
}

inline void writeRows(TIFF *tiff, const TiffRecipe &recipe) {
  for (int channel = recipe.planes ? 0 : -1; channel < (recipe.planes ? recipe.samplesPerPixel : 0);
       ++channel) {
    for (uint32_t y = 0; y < recipe.height; ++y) {
      auto row = packRow(recipe, 0, recipe.width, y, channel);
      require(TIFFWriteScanline(tiff, row.data(), y, static_cast<uint16_t>(channel < 0 ? 0 : channel)) == 1);
    }
  }
}

inline void describe(TIFF *tiff, const TiffRecipe &recipe) {
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, recipe.width);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, recipe.height);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, recipe.samplesPerPixel);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, recipe.bits);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, recipe.photometric);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, recipe.compression);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, recipe.planes ? PLANARCONFIG_SEPARATE : PLANARCONFIG_CONTIG);
  TIFFSetField(tiff, TIFFTAG_FILLORDER, recipe.fillOrder);
  TIFFSetField(tiff, TIFFTAG_ORIENTATION, recipe.orientation);
  if (recipe.predictor > 1) TIFFSetField(tiff, TIFFTAG_PREDICTOR, recipe.predictor);
  if (recipe.tileSide) {
    TIFFSetField(tiff, TIFFTAG_TILEWIDTH, recipe.tileSide);
    TIFFSetField(tiff, TIFFTAG_TILELENGTH, recipe.tileSide);
  } else {
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, recipe.rowsPerStrip);
  }
  if (!recipe.extraSamples.empty()) {
    TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, recipe.extraSamples.size(), recipe.extraSamples.data());
  }
  if (!recipe.palette.empty()) {
    const size_t entries = recipe.palette.size() / 3;
    TIFFSetField(tiff, TIFFTAG_COLORMAP, recipe.palette.data(), recipe.palette.data() + entries,
                 recipe.palette.data() + 2 * entries);
  }
  if (!recipe.profile.empty()) {
    TIFFSetField(tiff, TIFFTAG_ICCPROFILE, static_cast<uint32_t>(recipe.profile.size()),
                 recipe.profile.data());
  }
  if (recipe.dotsPerUnit > 0) {
    TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, recipe.resolutionUnit);
    TIFFSetField(tiff, TIFFTAG_XRESOLUTION, recipe.dotsPerUnit);
    TIFFSetField(tiff, TIFFTAG_YRESOLUTION, 2 * recipe.dotsPerUnit);
  }
  if (recipe.photometric == PHOTOMETRIC_YCBCR && recipe.compression == COMPRESSION_JPEG) {
    TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
  }
}

}  // namespace tiff_maker

inline std::vector<uint8_t> makeTiff(const TiffRecipe &recipe) {
  tiff_maker::Sink sink;
  TIFF *tiff = tiff_maker::open(sink, recipe.mode);
  tiff_maker::require(tiff != nullptr);
  tiff_maker::describe(tiff, recipe);
  if (recipe.tileSide) {
    tiff_maker::writeTiles(tiff, recipe);
  } else {
    tiff_maker::writeRows(tiff, recipe);
  }
  TIFFClose(tiff);
  return sink.bytes;
}
