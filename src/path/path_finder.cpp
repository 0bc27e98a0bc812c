#include "path/path_finder.h"

#include <cstring>

#include "path/assertion.h"
#include "path/boundary.h"
#include "path/subpath_assembly.h"

namespace drav::path {
namespace {

constexpr const char *kNoLastPixel = "(size_t)-1 != lastValidIndex";

// The way back of a step with identifier k is k + 4. The next sweep begins right after it, three eighths of a
// turn anticlockwise of the travel, and ends right before it.
constexpr int kSweepBack = 4;
constexpr int kMostTries = 7;

class Walk {
 public:
  Walk(SubpathList *list, const ImageInfo &info, bool *visited, PixelIndex startIndex,
       PixelIndex segmentStart, ProcessingDirection direction, int identifier, TextOutput &output)
      : list_(list),
        info_(info),
        visited_(visited),
        startIndex_(startIndex),
        segmentStart_(PixelForIndex(info, segmentStart)),
        current_(segmentStart_),
        direction_(direction),
        identifier_(identifier),
        output_(output) {}

  void run() {
    for (int tries = 0; tries <= kMostTries; ++tries, ++identifier_) {
      Pixel neighbour;
      if (!IsValidPixel(info_, current_, identifier_, &neighbour)) continue;
      if (direction_ != ProcessingDirectionNone && neighbour.index == startIndex_) return close();
      if (visited_[neighbour.index]) continue;
      visited_[neighbour.index] = true;
      stepTo(neighbour);
      tries = 0;
      identifier_ -= kSweepBack;
    }
    if (hasStepped()) addVertex();
  }

 private:
  bool hasStepped() const noexcept { return lastValid_.index != kNoPixel; }

  void close() {
    if (!hasStepped()) return;
    output_ << "closing subpath\n";
    CloseCurrentSubpath(list_);
  }

  // A run of steps in one direction ends where the last of them led.
  void addVertex() {
    AddLineToCurrentSubpath(list_, lastValid_.column, info_.height - lastValid_.row - 1);
    output_ << "adding line (" << lastValid_.column << ", " << lastValid_.row << ")\n";
  }

  void stepTo(const Pixel &neighbour) {
    const ProcessingDirection direction = DirectionForIdentifier(identifier_);
    if (direction_ != ProcessingDirectionNone && direction != direction_) {
      DRAV_PATH_ASSERT(hasStepped(), kNoLastPixel);
      addVertex();
      segmentStart_ = lastValid_;
    }
    direction_ = direction;
    lastValid_ = current_ = neighbour;
    DirectionSanityCheck(identifier_, segmentStart_, lastValid_);
  }

  SubpathList *list_;
  const ImageInfo &info_;
  bool *visited_;
  PixelIndex startIndex_;
  Pixel segmentStart_;
  Pixel current_;
  Pixel lastValid_{kNoPixel, 0, 0};
  ProcessingDirection direction_;
  int identifier_;
  TextOutput &output_;
};

}  // namespace

void DirectionSanityCheck(int identifier, const Pixel &segmentStart, const Pixel &lastValid) {
  DRAV_PATH_ASSERT(kNoPixel != lastValid.index, kNoLastPixel);
  const int row = lastValid.row;
  const int column = lastValid.column;
  const int startRow = segmentStart.row;
  const int startColumn = segmentStart.column;
  switch (identifier % kDirections) {
    case 0:
      DRAV_PATH_CHECK(row == startRow && column <= startColumn);
      break;
    case 1:
      DRAV_PATH_CHECK(row <= startRow && column <= startColumn);
      break;
    case 2:
      DRAV_PATH_CHECK(row <= startRow && column == startColumn);
      break;
    case 3:
      DRAV_PATH_CHECK(row <= startRow && column >= startColumn);
      break;
    case 4:
      DRAV_PATH_CHECK(row == startRow && column >= startColumn);
      break;
    case 5:
      DRAV_PATH_CHECK(row >= startRow && column >= startColumn);
      break;
    case 6:
      DRAV_PATH_CHECK(row >= startRow && column == startColumn);
      break;
    case 7:
      DRAV_PATH_CHECK(row >= startRow && column <= startColumn);
      break;
    default:
      break;
  }
}

void FollowSubpath(SubpathList *list, const ImageInfo &info, bool *visited, PixelIndex startIndex,
                   PixelIndex segmentStart, ProcessingDirection direction, int identifier,
                   TextOutput &output) {
  Walk(list, info, visited, startIndex, segmentStart, direction, identifier, output).run();
}

void FindSubpaths(SubpathList *list, const ImageInfo &info, bool *visited, TextOutput &output) {
  const auto width = static_cast<std::size_t>(info.width);
  for (int row = 0; row < info.height; ++row) {
    bool *flags = visited + width * static_cast<std::size_t>(row);
    bool *const end = flags + width;
    while ((flags = static_cast<bool *>(std::memchr(flags, false, static_cast<std::size_t>(end - flags)))) !=
           nullptr) {
      const auto index = static_cast<PixelIndex>(flags - visited);
      const int column = static_cast<int>(flags - (end - width));
      *flags++ = true;
      output << "starting subpath (" << column << ", " << row << ")\n";
      CreateNewSubpath(list, column, info.height - row - 1);
      FollowSubpath(list, info, visited, index, index, ProcessingDirectionNone, 1, output);
    }
  }
}

SubpathList TraceSubpaths(const ImageInfo &info, bool *visited, TextOutput &output) {
  SubpathList list;
  MarkAllButBoundary(info, visited);
  FindSubpaths(&list, info, visited, output);
  output << list;
  ConcatenateSubpaths(list, output);
  output << "\n\n" << list;
  return list;
}

}  // namespace drav::path
