// Letters.

#include "media/codecs/pict/port.h"
#include "media/codecs/pict/shapes.h"

namespace codecs::pict {
namespace {

// In modes that cannot be done by halves a pixel belongs to a letter from here on.
constexpr uint8_t kHalfCovered = 128;

constexpr uint64_t kMixingWeight = 4;  // of painting a pixel that a letter may touch

Region pixelsOf(const Coverage &letters) {
  Region region;
  if (letters.values.empty()) return region;
  std::vector<int32_t> edges;
  for (int32_t v = letters.box.top; v < letters.box.bottom; ++v) {
    const uint8_t *const row = letters.row(v);
    edges.clear();
    bool isInside = false;
    for (int32_t h = 0; h < letters.box.width(); ++h) {
      if ((row[h] >= kHalfCovered) == isInside) continue;
      edges.push_back(letters.box.left + h);
      isInside = !isInside;
    }
    if (isInside) edges.push_back(letters.box.right);
    region.addRows(v, v + 1, edges);
  }
  return region;
}

Pixel mixed(Pixel there, Pixel colour, unsigned share) noexcept {
  const auto from = bytesOf(there), to = bytesOf(colour);
  std::array<uint8_t, 4> made{255, 0, 0, 0};
  for (size_t k = 1; k < 4; ++k)
    made[k] = static_cast<uint8_t>((from[k] * (255 - share) + to[k] * share + 127) / 255);
  return std::bit_cast<Pixel>(made);
}

}  // namespace

bool Port::cover(const Coverage &letters, Pixel colour) {
  if (letters.values.empty()) return true;
  const int32_t sides[] = {letters.box.left, letters.box.right};
  for (int32_t v = letters.box.top; v < letters.box.bottom; ++v) {
    const Edges clip = clip_.edgesAt(v);
    if (!budget_.work(clip.size())) return false;
    intersectEdges(clip, sides, runs_);
    const uint8_t *const shares = letters.row(v);
    Pixel *const row = canvas_.row(v);
    for (size_t i = 0; i < runs_.size(); i += 2) {
      if (!budget_.paint(static_cast<uint64_t>(runs_[i + 1] - runs_[i]), kMixingWeight)) return false;
      for (int32_t h = runs_[i]; h < runs_[i + 1]; ++h) {
        if (const uint8_t share = shares[h - letters.box.left]) row[h] = mixed(row[h], colour, share);
      }
    }
  }
  return true;
}

// The ground's bits are off, and most modes leave what is there under such.
bool Port::text(const Coverage &letters, const Box &ground, Transfer mode) {
  static const Pattern solid = Pattern::solid(), clear;
  switch (mode) {
    case Transfer::paintOr:
      return cover(letters, ink.fore);
    case Transfer::transparent:
      return ink.fore == ink.back || cover(letters, ink.fore);
    case Transfer::dimmedOr:
      return cover(letters, mixed(ink.fore, ink.back, kHalfCovered));
    case Transfer::bic:
      return cover(letters, ink.back);
    case Transfer::copy:
      return paint(Region(ground), clear, mode) && cover(letters, ink.fore);
    case Transfer::notCopy:
      return paint(Region(ground), clear, mode) && cover(letters, ink.back);
    case Transfer::paintXor:
    case Transfer::hilite:
      return paint(pixelsOf(letters), solid, mode);
    default: {
      const Region inked = pixelsOf(letters), box(ground.intersected(clip_.bounds()));
      return paint(inked, solid, mode) &&
             paint(toggleRegions(box, intersectRegions(box, inked)), clear, mode);
    }
  }
}

}  // namespace codecs::pict
