#include "media/codecs/pict/port.h"

namespace codecs::pict {
namespace {

constexpr uint64_t kRunEffort = 4;  // of painting a run's end, its pixels apart

}  // namespace

Port::Port(const Canvas &canvas, Budget &budget)
    : canvas_(canvas), budget_(budget), clip_(canvas.bounds()), scratch_(canvas.width) {}

void Port::setClip(const Region &clip) {
  clip_.clear();
  const Box box = canvas_.bounds();
  const int32_t sides[] = {box.left, box.right};
  for (const Region::Band &band : clip.bands()) {
    intersectEdges(clip.edgesOf(band), sides, runs_);
    clip_.addRows(std::max(band.top, box.top), std::min(band.bottom, box.bottom), runs_);
  }
  budget_.work(clip.edgeCount());
}

bool Port::paint(const Region &shape, const Pattern &pattern, Transfer mode) {
  const Brush brush(pattern, mode, ink, scratch_);
  const auto clips = clip_.bands();
  if (shape.isEmpty() || clips.empty() || brush.paintsNothing()) return true;
  size_t first = clip_.bandAt(shape.bounds().top);
  for (const Region::Band &band : shape.bands()) {
    while (first < clips.size() && clips[first].bottom <= band.top) ++first;
    for (size_t i = first; i < clips.size() && clips[i].top < band.bottom; ++i) {
      const int32_t top = std::max(band.top, clips[i].top), bottom = std::min(band.bottom, clips[i].bottom);
      intersectEdges(shape.edgesOf(band), clip_.edgesOf(clips[i]), runs_);
      const auto rows = static_cast<uint64_t>(bottom - top);
      uint64_t painted = 0;
      for (size_t k = 0; k < runs_.size(); k += 2) painted += static_cast<uint64_t>(runs_[k + 1] - runs_[k]);
      const uint64_t effort = band.count + clips[i].count + kRunEffort * rows * runs_.size();
      if (!budget_.paint(rows * painted, brush.weight()) || !budget_.work(effort)) return false;
      for (int32_t v = top; v < bottom; ++v) {
        for (size_t k = 0; k < runs_.size(); k += 2) {
          brush.paint(canvas_.row(v), runs_[k], v, static_cast<size_t>(runs_[k + 1] - runs_[k]));
        }
      }
    }
  }
  return true;
}

}  // namespace codecs::pict
