#include "media/codecs/pict/image_draw.h"

namespace codecs::pict {
namespace {

constexpr size_t kChannels = 4;

// Against visiting a pixel: adding up its channels, and starting a run of pixels.
constexpr uint64_t kSummingEffort = 2;
constexpr uint64_t kRunEffort = 8;

// The first place in [from, to) without a property that all places up to some have; `to` if all have it.
template <class Has>
int32_t firstWithout(int32_t from, int32_t to, Has has) noexcept {
  while (from < to) {
    const int32_t middle = from + (to - from) / 2;
    if (has(middle)) {
      from = middle + 1;
    } else {
      to = middle;
    }
  }
  return to;
}

}  // namespace

// Reducing, neighbouring places share no source pixels and leave none out. Otherwise it is the pixel
// under the middle of the place.
ImageDraw::Range ImageDraw::Axis::range(int32_t place) const noexcept {
  const int64_t at = place - destinationStart;
  if (!reduces) {
    const auto first = static_cast<int32_t>((2 * at + 1) * sourceSize / (2 * int64_t{destinationSize}));
    return {sourceStart + first, sourceStart + first + 1};
  }
  const int64_t first = at * sourceSize / destinationSize, end = (at + 1) * sourceSize / destinationSize;
  return {sourceStart + static_cast<int32_t>(first), sourceStart + static_cast<int32_t>(end)};
}

ImageDraw::Axis ImageDraw::makeAxis(int32_t sourceStart, int32_t sourceEnd, int32_t destinationStart,
                                    int32_t destinationEnd, int32_t boundsStart, int32_t boundsEnd,
                                    int32_t visibleStart, int32_t visibleEnd, bool mayAverage) noexcept {
  Axis axis;
  axis.sourceStart = sourceStart;
  axis.sourceSize = sourceEnd - sourceStart;
  axis.destinationStart = destinationStart;
  axis.destinationSize = destinationEnd - destinationStart;
  axis.from = std::max(destinationStart, visibleStart);
  axis.to = std::min(destinationEnd, visibleEnd);
  axis.reduces = mayAverage && axis.sourceSize > axis.destinationSize;
  const auto isBefore = [&](int32_t place) { return axis.range(place).first < boundsStart; };
  const auto isWithin = [&](int32_t place) { return axis.range(place).end <= boundsEnd; };
  axis.from = firstWithout(axis.from, axis.to, isBefore);
  axis.to = firstWithout(axis.from, axis.to, isWithin);
  return axis;
}

ImageDraw::ImageDraw(Port &port, const Placement &placement, const Ink &ink)
    : port_(port),
      ink_(ink),
      mask_(placement.mask),
      transfer_(transferRow(placement.mode, ink)),
      weight_(paintWeight(placement.mode)),
      boundsLeft_(placement.bounds.left) {
  const Box &source = placement.source, &destination = placement.destination, &bounds = placement.bounds;
  if (!transfer_ || source.isEmpty() || destination.isEmpty() || bounds.isEmpty()) return;
  const Box visible = port.clip().bounds();
  const Box reach = visible.intersected(destination);
  if (reach.isEmpty() ||
      !port.budget().work(static_cast<uint64_t>(reach.width()) + static_cast<uint64_t>(reach.height())))
    return;
  const bool mayAverage = placement.mode == Transfer::copy;
  across_ = makeAxis(source.left, source.right, destination.left, destination.right, bounds.left,
                     bounds.right, visible.left, visible.right, mayAverage);
  down_ = makeAxis(source.top, source.bottom, destination.top, destination.bottom, bounds.top, bounds.bottom,
                   visible.top, visible.bottom, mayAverage);
  if (across_.from >= across_.to || down_.from >= down_.to) return;
  next_ = down_.from;
  firstRow_ = down_.range(down_.from).first;
  endRow_ = down_.range(down_.to - 1).end;
  averages_ = across_.reduces || down_.reduces;
  if (!averages_ && source.width() == destination.width()) return;
  const auto count = static_cast<size_t>(across_.to - across_.from);
  columns_.reserve(count);
  for (int32_t h = across_.from; h < across_.to; ++h) {
    const Range range = across_.range(h);
    columns_.push_back({range.first - boundsLeft_, range.end - boundsLeft_});
  }
  made_.resize(count);
  if (averages_) sums_.resize(kChannels * count);
}

bool ImageDraw::row(int32_t y, const Pixel *pixels) {
  if (next_ >= down_.to || y < down_.range(next_).first || y >= endRow_) return true;
  if (averages_) {
    const auto summed = static_cast<uint64_t>(columns_.back().end - columns_.front().first);
    if (!port_.budget().work(kSummingEffort * summed)) return false;
    accumulate(pixels);
    if (down_.range(next_).end > y + 1) return true;
  }
  const Pixel *const made = averages_ ? averagedRow() : scaledRow(pixels);
  for (; next_ < down_.to && down_.range(next_).end == y + 1; ++next_) {
    if (!emit(next_, made)) return false;
  }
  return true;
}

const Pixel *ImageDraw::scaledRow(const Pixel *pixels) noexcept {
  if (columns_.empty()) return pixels + (across_.range(across_.from).first - boundsLeft_);
  for (size_t i = 0; i < columns_.size(); ++i) made_[i] = pixels[columns_[i].first];
  return made_.data();
}

void ImageDraw::accumulate(const Pixel *pixels) noexcept {
  ++rowsSummed_;
  for (size_t i = 0; i < columns_.size(); ++i) {
    for (int32_t h = columns_[i].first; h < columns_[i].end; ++h) {
      const auto bytes = bytesOf(pixels[h]);
      for (size_t k = 0; k < kChannels; ++k) sums_[kChannels * i + k] += bytes[k];
    }
  }
}

const Pixel *ImageDraw::averagedRow() noexcept {
  for (size_t i = 0; i < columns_.size(); ++i) {
    const uint64_t count = uint64_t{rowsSummed_} * static_cast<uint64_t>(columns_[i].end - columns_[i].first);
    std::array<uint8_t, kChannels> bytes;
    for (size_t k = 0; k < kChannels; ++k)
      bytes[k] = static_cast<uint8_t>((sums_[kChannels * i + k] + count / 2) / count);
    made_[i] = std::bit_cast<Pixel>(bytes);
  }
  std::ranges::fill(sums_, 0);
  rowsSummed_ = 0;
  return made_.data();
}

bool ImageDraw::emit(int32_t v, const Pixel *row) {
  const int32_t sides[] = {across_.from, across_.to};
  const Edges clip = port_.clip().edgesAt(v);
  intersectEdges(clip, sides, runs_);
  if (mask_) {
    const Edges mask = mask_->edgesAt(v);
    std::swap(runs_, visible_);
    intersectEdges(visible_, mask, runs_);
    if (!port_.budget().work(mask.size())) return false;
  }
  if (!port_.budget().work(clip.size() + kRunEffort * runs_.size())) return false;
  for (size_t i = 0; i < runs_.size(); i += 2) {
    const auto count = static_cast<size_t>(runs_[i + 1] - runs_[i]);
    if (!port_.budget().paint(count, weight_)) return false;
    transfer_(port_.canvas().row(v) + runs_[i], row + (runs_[i] - across_.from), count, ink_);
  }
  return true;
}

}  // namespace codecs::pict
