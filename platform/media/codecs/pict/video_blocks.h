// Images that are made of blocks of four by four pixels, in reading order.
#pragma once

#include <array>

#include "media/codecs/pict/video_codecs.h"

namespace codecs::pict {

using Block = std::array<Pixel, 16>;

class BlockWriter {
 public:
  // Borrows the image. Its last blocks may reach beyond its edges.
  explicit BlockWriter(DecodedImage &image) noexcept
      : image_(image), across_((image.width + 3) / 4), total_(size_t{across_} * ((image.height + 3) / 4)) {}

  bool isFull() const noexcept { return next_ >= total_; }
  size_t written() const noexcept { return next_; }
  void skip(size_t count) noexcept { next_ += count; }

  void put(const Block &block) noexcept {
    if (!isFull()) putAt(next_, block);
    ++next_;
  }
  void fill(Pixel colour, size_t count) noexcept {
    Block block;
    block.fill(colour);
    for (; count > 0 && !isFull(); --count) put(block);
  }

  // One of those written before.
  Block at(size_t index) const noexcept {
    Block block;
    block.fill(kBlack);
    visit(index, [&](size_t i, Pixel &pixel) { block[i] = pixel; });
    return block;
  }

 private:
  void putAt(size_t index, const Block &block) noexcept {
    visit(index, [&](size_t i, Pixel &pixel) { pixel = block[i]; });
  }

  template <class Visit>
  void visit(size_t index, Visit see) const noexcept {
    const auto left = static_cast<uint32_t>(index % across_ * 4),
               top = static_cast<uint32_t>(index / across_ * 4);
    for (uint32_t y = 0; y < 4 && top + y < image_.height; ++y) {
      Pixel *const row = pixelRow(image_, top + y) + left;
      for (uint32_t x = 0; x < 4 && left + x < image_.width; ++x) see(4 * y + x, row[x]);
    }
  }

  DecodedImage &image_;
  uint32_t across_;
  size_t total_;
  size_t next_ = 0;
};

}  // namespace codecs::pict
