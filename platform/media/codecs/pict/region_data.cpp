#include "media/codecs/pict/region_data.h"

namespace codecs::pict {
namespace {

constexpr size_t kBoxBytes = 10;
constexpr int16_t kRowEnd = 0x7FFF;

// A record of 32 KiB lists the changes from row to row. In full it can be ten thousand times as long, but
// only when made to be: the busiest mask of a real picture stays under a hundredth of this.
constexpr size_t kMostEdges = size_t{1} << 22;

// One row of scan data. False at the end of the list.
bool readRow(ByteReader &reader, int32_t &v, std::vector<int32_t> &changes) {
  changes.clear();
  v = reader.i16();
  if (v == kRowEnd || reader.failed()) return false;
  for (int16_t h = reader.i16(); h != kRowEnd && !reader.failed(); h = reader.i16()) changes.push_back(h);
  if (changes.size() % 2) changes.pop_back();
  std::ranges::sort(changes);
  return true;
}

}  // namespace

Result<size_t> regionBytes(Bytes bytes) noexcept {
  if (bytes.size() < 2) return Fault::truncated;
  size_t size = readBig16(bytes, 0) & 0x7FFFu;
  if (size < kBoxBytes || size % 2) return Fault::damaged;
  if (size > bytes.size()) return Fault::truncated;
  return size;
}

Fault parseRegion(Bytes record, Budget &budget, Region &region) {
  ByteReader reader(record);
  reader.skip(2);
  const Box bounds = readBox(reader);
  region.clear();
  if (reader.left() == 0) {
    region = Region(bounds);
    return Fault::none;
  }
  std::vector<int32_t> edges, changes, next;
  int32_t v = 0, previous = 0, reached = 0;
  while (readRow(reader, v, changes)) {
    const bool hasStarted = !region.isEmpty() || !edges.empty();
    if (hasStarted && v < previous) return Fault::damaged;
    reached = v;
    if (changes.empty()) continue;
    if (hasStarted) region.addRows(previous, v, edges);
    if (region.edgeCount() > kMostEdges || !budget.work(edges.size() + changes.size()))
      return Fault::tooLarge;
    toggleEdges(edges, changes, next);
    std::swap(edges, next);
    previous = v;
  }
  region.addRows(previous, reached, edges);
  return Fault::none;
}

}  // namespace codecs::pict
