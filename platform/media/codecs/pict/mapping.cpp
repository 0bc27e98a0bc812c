#include "media/codecs/pict/mapping.h"

namespace codecs::pict {

Region Mapping::operator()(const Region &region) const {
  const Point by = (*this)(Point{});
  Region mapped;
  if (!isScaled()) {
    mapped = region;
    mapped.move(by);
    return mapped;
  }
  std::vector<int32_t> edges;
  for (const Region::Band &band : region.bands()) {
    edges.clear();
    for (const int32_t edge : region.edgesOf(band)) edges.push_back((*this)(Point{edge, 0}).h);
    mapped.addRows((*this)(Point{0, band.top}).v, (*this)(Point{0, band.bottom}).v, edges);
  }
  return mapped;
}

}  // namespace codecs::pict
