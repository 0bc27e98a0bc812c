#include "path/boundary.h"

#include <algorithm>
#include <vector>

namespace drav::path {
namespace {

// Background alphas are those below this value: alpha / 255 grows with alpha.
int alphaLimit(const ImageInfo &info) noexcept {
  int alpha = 0;
  while (alpha < 256 && IsAlphaOpaque(info, static_cast<std::uint8_t>(alpha))) ++alpha;
  return alpha;
}

// Bytes of one row, 1 or 0 for each pixel.
struct RowMasks {
  std::vector<std::uint8_t> region;  // the pixel belongs to the region
  std::vector<std::uint8_t> inside;  // so do it and the pixels to its left and right, which exist
};

void markRegion(const std::uint8_t *pixels, int limit, std::vector<std::uint8_t> &region) noexcept {
  const std::size_t width = region.size();
  std::uint8_t *out = region.data();
  for (std::size_t column = 0; column < width; ++column) out[column] = pixels[4 * column] >= limit;
}

void markInside(const std::vector<std::uint8_t> &region, std::vector<std::uint8_t> &inside) noexcept {
  const std::size_t width = region.size();
  const std::uint8_t *in = region.data();
  std::uint8_t *out = inside.data();
  for (std::size_t column = 1; column + 1 < width; ++column) {
    out[column] = in[column - 1] & in[column] & in[column + 1];
  }
}

void markFlags(const RowMasks &row, const std::vector<std::uint8_t> &insideAbove,
               const std::vector<std::uint8_t> &insideBelow, bool *visited) noexcept {
  const std::size_t width = row.region.size();
  const std::uint8_t *region = row.region.data();
  const std::uint8_t *inside = row.inside.data();
  const std::uint8_t *above = insideAbove.data();
  const std::uint8_t *below = insideBelow.data();
  for (std::size_t column = 0; column < width; ++column) {
    const int floating = above[column] & inside[column] & below[column];
    visited[column] = (region[column] ^ 1) | floating;
  }
}

}  // namespace

void MarkAllButBoundary(const ImageInfo &info, bool *visited) {
  const auto width = static_cast<std::size_t>(std::max(info.width, 0));
  const int limit = alphaLimit(info);
  const std::vector<std::uint8_t> outside(width, 0);
  RowMasks rows[3];
  for (RowMasks &row : rows) row = {outside, outside};
  const auto prepare = [&](int row) {
    RowMasks &masks = rows[row % 3];
    markRegion(info.buffer + std::size_t{4} * width * static_cast<std::size_t>(row), limit, masks.region);
    markInside(masks.region, masks.inside);
  };
  if (info.height > 0) prepare(0);
  for (int row = 0; row < info.height; ++row) {
    const bool isLast = row + 1 == info.height;
    if (!isLast) prepare(row + 1);
    markFlags(rows[row % 3], row == 0 ? outside : rows[(row - 1) % 3].inside,
              isLast ? outside : rows[(row + 1) % 3].inside, visited + width * static_cast<std::size_t>(row));
  }
}

}  // namespace drav::path
