// Sets of pixels, kept as bands of rows that have the same edges. Within a row the edges are ascending, and
// every one of them flips from outside to inside or back.
#pragma once

#include <span>
#include <vector>

#include "media/codecs/pict/geometry.h"

namespace codecs::pict {

using Edges = std::span<const int32_t>;

class Region {
 public:
  struct Band {
    int32_t top = 0;
    int32_t bottom = 0;
    size_t first = 0;  // of its edges
    size_t count = 0;  // even
  };

  Region() = default;
  explicit Region(const Box &box);

  bool isEmpty() const noexcept { return bands_.empty(); }
  bool isBox() const noexcept { return bands_.size() == 1 && bands_[0].count == 2; }
  const Box &bounds() const noexcept { return bounds_; }  // all zero when empty
  std::span<const Band> bands() const noexcept { return bands_; }
  Edges edgesOf(const Band &band) const noexcept { return Edges(edges_).subspan(band.first, band.count); }
  size_t edgeCount() const noexcept { return edges_.size(); }

  // The first band that ends below row v; one past the last when there is none.
  size_t bandAt(int32_t v) const noexcept;
  // Row v; no edges outside.
  Edges edgesAt(int32_t v) const noexcept;
  bool contains(Point pixel) const noexcept;

  void clear() noexcept;
  void move(Point by) noexcept;

  // Adds rows [top, bottom) below all others. REQUIRES: top is not above the last row; edges ascending,
  // even in number. Pairs of equal edges hold nothing and are left out.
  void addRows(int32_t top, int32_t bottom, Edges edges);

  friend bool operator==(const Region &a, const Region &b) noexcept;

 private:
  std::vector<Band> bands_;
  std::vector<int32_t> edges_;
  Box bounds_;
};

// Pixels of both lists (or of exactly one), as ascending edges. `out` is overwritten.
void intersectEdges(Edges a, Edges b, std::vector<int32_t> &out);
void toggleEdges(Edges a, Edges b, std::vector<int32_t> &out);

}  // namespace codecs::pict
