// Repeating a rectangle of one image over a rectangle of another.
//
// Each tile is one composite. They all read the same source, so what each would do to it (copy it, promote
// it, and where a tile is cut off crop and scale it) is done once, and only to the pixels that are read.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>

#include "composite/clipping.h"
#include "composite/job.h"
#include "composite/rows.h"
#include "composite/work_image.h"
#include "core/block.h"
#include "core/image.h"
#include "foundation/sizes.h"

namespace {

// How many tiles there are, and where they lie.
struct Grid {
  uint32_t columns, rows;
  CGFloat x, y, stepX, stepY;  // of the first tile, and from one to the next
  CGSize tile;

  [[nodiscard]] CGRect at(uint32_t column, uint32_t row) const {
    return {{x + static_cast<CGFloat>(column) * stepX, y + static_cast<CGFloat>(row) * stepY}, tile};
  }
};

// ceil(area / tile): the quotient in single precision, as the tiles' places are.
uint32_t tilesAcross(uint32_t area, uint32_t tile) {
  const CGFloat quotient = static_cast<CGFloat>(area) / static_cast<CGFloat>(tile);
  return static_cast<uint32_t>(std::ceil(static_cast<double>(quotient)));
}

// False where there is nothing to tile.
bool makeGrid(CGRect sourceRect, CGRect destinationRect, uint32_t startCorner, Grid &grid) {
  const auto tileWidth = cf::sidePixels(CGRectGetWidth(sourceRect));
  const auto tileHeight = cf::sidePixels(CGRectGetHeight(sourceRect));
  const auto areaWidth = cf::sidePixels(CGRectGetWidth(destinationRect));
  const auto areaHeight = cf::sidePixels(CGRectGetHeight(destinationRect));
  if (!tileWidth || !tileHeight || !areaWidth || !areaHeight || startCorner > 3) return false;
  if (*tileWidth == 0 || *tileHeight == 0 || *areaWidth == 0 || *areaHeight == 0) return false;
  const bool fromRight = startCorner == 1 || startCorner == 3;
  const bool fromGreatestY = startCorner == 0 || startCorner == 1;
  const CGFloat width = CGRectGetWidth(sourceRect);
  const CGFloat height = CGRectGetHeight(sourceRect);
  grid.columns = tilesAcross(*areaWidth, *tileWidth);
  grid.rows = tilesAcross(*areaHeight, *tileHeight);
  grid.x = fromRight ? CGRectGetMaxX(destinationRect) - static_cast<CGFloat>(*tileWidth)
                     : CGRectGetMinX(destinationRect);
  grid.y = fromGreatestY ? CGRectGetMaxY(destinationRect) - static_cast<CGFloat>(*tileHeight)
                         : CGRectGetMinY(destinationRect);
  grid.stepX = fromRight ? -width : width;
  grid.stepY = fromGreatestY ? -height : height;
  grid.tile = sourceRect.size;
  return true;
}

// Some of the tiles that lie side by side, or one below the other.
struct Span {
  uint32_t first, end;
};

// Those that begin before the image ends. The others draw nothing, and a rectangle far larger than the image
// has more of them than there is time to look at. Tiles left of or above the image are no such: they move in.
Span tilesInReach(uint32_t count, CGFloat start, CGFloat step, CGFloat tileSize, size_t imageSide) {
  const auto end = static_cast<CGFloat>(imageSide);
  const auto isInReach = [&](uint32_t tile) {
    const CGFloat least = start + static_cast<CGFloat>(tile) * step + std::min(tileSize, CGFloat{0});
    return std::isfinite(least) && least < end;
  };
  const bool reachFirst = step > 0;  // the first ones are in reach, or else the last ones
  uint32_t low = 0, high = count;
  while (low < high) {
    const uint32_t middle = low + (high - low) / 2;
    if (isInReach(middle) == reachFirst)
      low = middle + 1;
    else
      high = middle;
  }
  return reachFirst ? Span{0, low} : Span{low, count};
}

void tilePlainly(DRAVCFImageRef source, DRAVCFImageRef destination, const CGRect &sourceRect,
                 const Grid &grid, DRAVCFBlendMode mode) {
  for (uint32_t row = 0; row < grid.rows; ++row) {
    for (uint32_t column = 0; column < grid.columns; ++column) {
      const CGRect tile = grid.at(column, row);
      DRAVCFImageComposite(source, destination, &sourceRect, &tile, 1, mode);
    }
  }
}

// The source cropped and scaled for tiles that an edge of the destination cuts off. Many tiles are cut to one
// size, so the last few results are kept.
class FittedSources {
 public:
  FittedSources(DRAVCFImageRef work, const drav::CompositeJob &job, const CGRect &sourceRect)
      : work_(work), bytesPerPixel_(job.bytesPerPixel) {
    hasArea_ = drav::pixelArea(drav::clippedToImage(sourceRect, job.sourceWidth, job.sourceHeight), area_);
    // Sides beyond the whole numbers of float clip to more than there is.
    hasArea_ = hasArea_ && area_.y + area_.height <= job.sourceHeight;
    // The rectangle counts rows from the top, and cropping counts them from the bottom.
    if (hasArea_) area_.y = job.sourceHeight - (area_.y + area_.height);
  }

  // Whether cutting pixels out is what cropping does: in the working layouts, and where there is a whole
  // area.
  [[nodiscard]] bool canStandIn() const {
    const bool isWorkingLayout =
        work_->bitsPerComponent == 8 && (work_->bitsPerPixel == 8 || work_->bitsPerPixel == 32);
    return hasArea_ && isWorkingLayout &&
           drav::walkFits(area_, bytesPerPixel_, work_->bytesPerRow, work_->bufferSize);
  }

  // Whether an image of that size is at hand.
  [[nodiscard]] bool has(CGSize size) const {
    return std::ranges::any_of(
        entries_, [&](const Entry &entry) { return entry.image && CGSizeEqualToSize(entry.size, size); });
  }

  // An image of that size; NULL if it cannot be made.
  DRAVCFImageRef at(CGSize size) {
    for (const Entry &entry : entries_) {
      if (entry.image && CGSizeEqualToSize(entry.size, size)) return entry.image.get();
    }
    Entry &oldest = entries_[next_++ % std::size(entries_)];
    oldest = {size, make(size)};
    return oldest.image.get();
  }

 private:
  struct Entry {
    CGSize size{};
    cf::Ref<DRAVCFImageRef> image;
  };

  [[nodiscard]] cf::Ref<DRAVCFImageRef> make(CGSize size) const {
    cf::Ref image = cropped();
    if (!image) return nullptr;
    DRAVCFImageScaleToSize(image.get(), size);
    const bool fits = static_cast<CGFloat>(image->width) == size.width &&
                      static_cast<CGFloat>(image->height) == size.height;
    return fits && image->buffer ? image : nullptr;
  }

  [[nodiscard]] cf::Ref<DRAVCFImageRef> cropped() const {
    CFAllocatorRef allocator = CFGetAllocator(work_);
    const size_t rowBytes = area_.width * bytesPerPixel_;
    const cf::Size size = cf::bitmapBytes(rowBytes, area_.height);
    cf::Ref image = cf::adopt(DRAVCFImageCreate(allocator));
    drav::Block pixels(allocator, size);
    if (!image || !size || !pixels) return nullptr;
    for (size_t row = 0; row < area_.height; ++row) {
      std::memcpy(pixels.get() + row * rowBytes,
                  work_->buffer + (area_.y + row) * work_->bytesPerRow + area_.x * bytesPerPixel_, rowBytes);
    }
    drav::installBuffer(
        image.get(), {pixels.give(), *size, area_.width, area_.height, work_->bitsPerComponent,
                      work_->bitsPerPixel, rowBytes, cf::share(work_->colorSpace).give(), work_->alphaInfo});
    return image;
  }

  DRAVCFImageRef work_;
  size_t bytesPerPixel_;
  drav::PixelArea area_{};
  bool hasArea_ = false;
  Entry entries_[8];
  size_t next_ = 0;
};

// Tiles side by side, drawn row by row through all of them: memory is then walked as it lies, while tile by
// tile would jump to another row every few pixels. They do not overlap, so that the order makes no
// difference.
class Band {
 public:
  explicit Band(const drav::CompositeJob &job) : job_(job), row_(drav::rowForKernel(job.compositor)) {}
  ~Band() { draw(); }
  Band(const Band &) = delete;
  Band &operator=(const Band &) = delete;

  void add(DRAVCFImageRef source, size_t sourceBytesPerRow, const CGRect &from, const CGRect &to) {
    drav::Walk walk{};
    if (!drav::makeWalk({source->buffer, source->bufferSize, sourceBytesPerRow, job_.destinationBuffer,
                         job_.destinationBytesPerRow, job_.destinationHeight, job_.bytesPerPixel},
                        from, to, walk)) {
      return;
    }
    if (count_ == std::size(walks_) || (count_ > 0 && !standsBeside(walk))) draw();
    walks_[count_++] = walk;
  }

  void draw() {
    const size_t height = count_ > 0 ? walks_[0].written.height : 0;
    for (size_t y = 0; y < height; ++y) {
      for (size_t i = 0; i < count_; ++i) {
        const drav::Walk &walk = walks_[i];
        row_(walk.source + y * walk.sourceBytesPerRow, walk.destination + y * walk.destinationBytesPerRow,
             walk.written.width);
      }
    }
    count_ = 0;
  }

 private:
  // Whether it goes on from the last one, to the right or to the left, in the same rows.
  [[nodiscard]] bool standsBeside(const drav::Walk &walk) const {
    const drav::PixelArea &last = walks_[count_ - 1].written, &next = walk.written;
    if (next.y != last.y || next.height != last.height) return false;
    const bool goesRight = next.x >= last.x + last.width, goesLeft = next.x + next.width <= last.x;
    if (count_ == 1) return goesRight || goesLeft;
    return walks_[1].written.x > walks_[0].written.x ? goesRight : goesLeft;
  }

  const drav::CompositeJob &job_;
  drav::RowFunction row_;
  drav::Walk walks_[256];
  size_t count_ = 0;
};

void tileAtOnce(DRAVCFImageRef work, const drav::CompositeJob &job, const CGRect &sourceRect,
                FittedSources &fittedSources, const Grid &grid) {
  const CGRect from = drav::clippedToImage(sourceRect, job.sourceWidth, job.sourceHeight);
  if (!drav::hasPixels(from)) return;
  const Span columns = tilesInReach(grid.columns, grid.x, grid.stepX, grid.tile.width, job.destinationWidth);
  const Span rows = tilesInReach(grid.rows, grid.y, grid.stepY, grid.tile.height, job.destinationHeight);
  Band band(job);
  for (uint32_t row = rows.first; row < rows.end; ++row) {
    for (uint32_t column = columns.first; column < columns.end; ++column) {
      const CGRect to =
          drav::clippedToImage(grid.at(column, row), job.destinationWidth, job.destinationHeight);
      if (!drav::hasPixels(to)) continue;
      if (CGSizeEqualToSize(from.size, to.size)) {
        band.add(work, job.sourceBytesPerRow, from, to);
        continue;
      }
      // Making another size may drop one that waits to be drawn.
      if (!fittedSources.has(to.size)) band.draw();
      if (DRAVCFImageRef fitted = fittedSources.at(to.size)) {
        band.add(fitted, fitted->bytesPerRow, CGRectMake(0, 0, to.size.width, to.size.height), to);
      }
    }
  }
}

}  // namespace

void DRAVCFImageTile(DRAVCFImageRef sourceImage, DRAVCFImageRef destinationImage, CGRect sourceRect,
                     CGRect destinationRect, DRAVCFBlendMode mode, uint32_t startCorner) {
  Grid grid;
  if (!makeGrid(sourceRect, destinationRect, startCorner, grid)) return;
  if (sourceImage == destinationImage) {
    // Every tile changes what the next one reads.
    tilePlainly(sourceImage, destinationImage, sourceRect, grid, mode);
    return;
  }
  const drav::WorkImage work = drav::WorkImage::forReading(sourceImage, destinationImage);
  if (!work) return;
  const drav::CompositeJob job = drav::prepareJob(work.get(), destinationImage, mode);
  if (!job.compositor) return;
  FittedSources fittedSources(work.get(), job, sourceRect);
  const size_t kernelBytes = drav::bytesPerPixel(drav::placeOfKernel(job.compositor).format);
  if (fittedSources.canStandIn() && kernelBytes == job.bytesPerPixel) {
    tileAtOnce(work.get(), job, sourceRect, fittedSources, grid);
  } else {
    tilePlainly(sourceImage, destinationImage, sourceRect, grid, mode);
  }
}
