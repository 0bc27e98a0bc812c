// A pattern in a transfer mode with its colours, ready to paint runs of pixels.
#pragma once

#include <vector>

#include "media/codecs/pict/pattern.h"
#include "media/codecs/pict/transfer.h"

namespace codecs::pict {

class Brush {
 public:
  // Borrows the pattern and the scratch row, which is as long as the longest run.
  Brush(const Pattern &pattern, Transfer mode, const Ink &ink, std::vector<Pixel> &scratch);

  bool paintsNothing() const noexcept { return style_ == Style::nothing; }

  // What a pixel costs, against one that is stored.
  uint64_t weight() const noexcept;

  // Paints pixels [left, left + count) of canvas row v, which starts at `row`. Patterns start in the
  // canvas's corner.
  void paint(Pixel *row, int32_t left, int32_t v, size_t count) const noexcept;

 private:
  enum class Style : uint8_t { nothing, fill, bits, colours };

  void prepareBits(Transfer mode) noexcept;
  void paintBits(Pixel *to, int32_t left, int32_t v, size_t count) const noexcept;
  void paintColours(Pixel *to, int32_t left, int32_t v, size_t count) const noexcept;
  void layPattern(int32_t left, int32_t v, size_t count) const noexcept;

  const Pattern &pattern_;
  Ink ink_;
  std::vector<Pixel> &scratch_;
  Style style_ = Style::nothing;
  Transfer mode_ = Transfer::none;
  TransferRow transfer_ = nullptr;
  BitEffect on_{};
  BitEffect off_{};
};

}  // namespace codecs::pict
