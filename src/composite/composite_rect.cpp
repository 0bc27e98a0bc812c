// The walk over two areas of pixels.
#include "composite/rows.h"

namespace drav {
namespace {

struct Walk {
  const uint8_t *source;
  size_t sourceRowBytes;
  uint8_t *destination;
  size_t destinationRowBytes, width, height;
};

// Whether a row may be done in any order: a step reads no byte that an earlier step of another pixel wrote.
bool rowsAreIndependent(const uint8_t *source, const uint8_t *destination, size_t rowBytes) noexcept {
  const auto s = reinterpret_cast<uintptr_t>(source), d = reinterpret_cast<uintptr_t>(destination);
  return s == d || (s < d ? d - s : s - d) >= rowBytes;
}

void walkPixels(DRAVCFCompositeFunction kernel, const uint8_t *source, uint8_t *destination, size_t width,
                size_t pixelBytes) noexcept {
  for (size_t x = 0; x < width; ++x) kernel(source + x * pixelBytes, destination + x * pixelBytes);
}

// Rows without gaps between them are one long row.
void joinRows(Walk &walk, size_t pixelBytes) noexcept {
  size_t pixels = 0, bytes = 0;
  const bool gapless = walk.sourceRowBytes == walk.destinationRowBytes &&
                       !__builtin_mul_overflow(walk.width, pixelBytes, &bytes) &&
                       bytes == walk.sourceRowBytes &&
                       !__builtin_mul_overflow(walk.width, walk.height, &pixels) &&
                       !__builtin_mul_overflow(pixels, pixelBytes, &bytes);
  if (!gapless || !rowsAreIndependent(walk.source, walk.destination, bytes)) return;
  walk.width = pixels;
  walk.height = 1;
}

RowFunction rowOfStep(DRAVCFCompositeFunction kernel, size_t pixelBytes) noexcept {
  const KernelPlace place = placeOfKernel(kernel);
  if (!place.ours || bytesPerPixel(place.format) != pixelBytes) return nullptr;
  return rowTable().rows[static_cast<size_t>(place.format)][place.mode];
}

}  // namespace

RowFunction rowForKernel(DRAVCFCompositeFunction kernel) noexcept {
  const KernelPlace place = placeOfKernel(kernel);
  return place.ours ? rowTable().rows[static_cast<size_t>(place.format)][place.mode] : nullptr;
}

void compositeRows(DRAVCFCompositeFunction kernel, const uint8_t *source, size_t sourceRowBytes,
                   uint8_t *destination, size_t destinationRowBytes, size_t width, size_t height,
                   size_t pixelBytes) noexcept {
  if (width == 0 || height == 0) return;
  const RowFunction row = rowOfStep(kernel, pixelBytes);
  Walk walk{source, sourceRowBytes, destination, destinationRowBytes, width, height};
  if (row != nullptr) joinRows(walk, pixelBytes);
  for (size_t y = 0; y < walk.height; ++y) {
    const uint8_t *from = source + y * sourceRowBytes;
    uint8_t *to = destination + y * destinationRowBytes;
    if (row != nullptr && rowsAreIndependent(from, to, walk.width * pixelBytes))
      row(from, to, walk.width);
    else
      walkPixels(kernel, from, to, walk.width, pixelBytes);
  }
}

}  // namespace drav
