#include "media/codecs/pict/region.h"

namespace codecs::pict {
namespace {

// Appends an edge; the same edge twice flips there and back.
void flipAt(std::vector<int32_t> &edges, size_t from, int32_t edge) {
  if (edges.size() > from && edges.back() == edge) {
    edges.pop_back();
  } else {
    edges.push_back(edge);
  }
}

}  // namespace

Region::Region(const Box &box) {
  const int32_t sides[] = {box.left, box.right};
  if (!box.isEmpty()) addRows(box.top, box.bottom, sides);
}

size_t Region::bandAt(int32_t v) const noexcept {
  const auto found = std::ranges::lower_bound(
      bands_, v, [](int32_t bottom, int32_t row) { return bottom <= row; }, &Band::bottom);
  return static_cast<size_t>(found - bands_.begin());
}

Edges Region::edgesAt(int32_t v) const noexcept {
  const size_t index = bandAt(v);
  return index < bands_.size() && bands_[index].top <= v ? edgesOf(bands_[index]) : Edges{};
}

bool Region::contains(Point pixel) const noexcept {
  const Edges edges = edgesAt(pixel.v);
  return (std::ranges::upper_bound(edges, pixel.h) - edges.begin()) % 2 == 1;
}

void Region::clear() noexcept {
  bands_.clear();
  edges_.clear();
  bounds_ = {};
}

void Region::move(Point by) noexcept {
  for (Band &band : bands_) {
    band.top += by.v;
    band.bottom += by.v;
  }
  for (int32_t &edge : edges_) edge += by.h;
  if (!isEmpty()) bounds_ = bounds_ + by;
}

void Region::addRows(int32_t top, int32_t bottom, Edges edges) {
  if (bottom <= top || edges.empty()) return;
  const size_t first = edges_.size();
  for (const int32_t edge : edges) flipAt(edges_, first, edge);
  const size_t count = edges_.size() - first;
  if (count == 0) return;
  const Box box{edges_[first], top, edges_.back(), bottom};
  bounds_ = isEmpty() ? box
                      : Box{std::min(bounds_.left, box.left), bounds_.top, std::max(bounds_.right, box.right),
                            bottom};
  if (!bands_.empty() && bands_.back().bottom == top && bands_.back().count == count &&
      std::ranges::equal(edgesOf(bands_.back()), Edges(edges_).last(count))) {
    bands_.back().bottom = bottom;
    edges_.resize(first);
    return;
  }
  bands_.push_back({top, bottom, first, count});
}

bool operator==(const Region &a, const Region &b) noexcept {
  return std::ranges::equal(a.bands_, b.bands_, [&](const Region::Band &left, const Region::Band &right) {
    return left.top == right.top && left.bottom == right.bottom &&
           std::ranges::equal(a.edgesOf(left), b.edgesOf(right));
  });
}

void intersectEdges(Edges a, Edges b, std::vector<int32_t> &out) {
  out.clear();
  size_t i = 0, j = 0;
  while (i + 1 < a.size() && j + 1 < b.size()) {
    const int32_t start = std::max(a[i], b[j]), end = std::min(a[i + 1], b[j + 1]);
    if (start < end) {
      out.push_back(start);
      out.push_back(end);
    }
    (a[i + 1] < b[j + 1] ? i : j) += 2;
  }
}

void toggleEdges(Edges a, Edges b, std::vector<int32_t> &out) {
  out.clear();
  size_t i = 0, j = 0;
  while (i < a.size() || j < b.size()) {
    const bool takeA = j == b.size() || (i < a.size() && a[i] <= b[j]);
    flipAt(out, 0, takeA ? a[i++] : b[j++]);
  }
}

}  // namespace codecs::pict
