// Drawing an image into a port row by row, as its rows are decoded: clipped, masked, scaled.
#pragma once

#include "media/codecs/pict/port.h"

namespace codecs::pict {

struct Placement {
  Box bounds;       // of the pixels that there are, in their own coordinates
  Box source;       // the part to draw
  Box destination;  // where it goes
  Transfer mode = Transfer::copy;
  const Region *mask = nullptr;  // in canvas coordinates; borrowed
};

// One to one, pixels are copied as they are. Enlarging repeats pixels, so that edges stay edges; reducing
// averages them where the mode is a copy, so that no line is lost, and picks single ones in other modes,
// which look for certain colours.
class ImageDraw {
 public:
  // The port, and its ink as it is now.
  ImageDraw(Port &port, const Placement &placement, const Ink &ink);

  // The source rows that matter are [firstRow, endRow); none when nothing can be seen.
  int32_t firstRow() const noexcept { return firstRow_; }
  int32_t endRow() const noexcept { return endRow_; }

  // Takes source row y, with pixels from bounds.left to bounds.right; each at most once, going down. False
  // when the budget is spent.
  bool row(int32_t y, const Pixel *pixels);

 private:
  // The source pixels behind one place of the destination, along one axis.
  struct Range {
    int32_t first;
    int32_t end;
  };
  struct Axis {
    int32_t from = 0;  // of the destination, the part that can be seen and has a source
    int32_t to = 0;
    bool reduces = false;
    int32_t sourceStart = 0, sourceSize = 0, destinationStart = 0, destinationSize = 0;

    Range range(int32_t place) const noexcept;
  };

  static Axis makeAxis(int32_t sourceStart, int32_t sourceEnd, int32_t destinationStart,
                       int32_t destinationEnd, int32_t boundsStart, int32_t boundsEnd, int32_t visibleStart,
                       int32_t visibleEnd, bool mayAverage) noexcept;

  const Pixel *scaledRow(const Pixel *pixels) noexcept;
  void accumulate(const Pixel *pixels) noexcept;
  const Pixel *averagedRow() noexcept;
  bool emit(int32_t v, const Pixel *row);

  Port &port_;
  const Ink ink_;
  const Region *mask_;
  TransferRow transfer_;
  uint64_t weight_;
  int32_t boundsLeft_;
  Axis across_;
  Axis down_;
  bool averages_ = false;
  int32_t firstRow_ = 0;
  int32_t endRow_ = 0;
  int32_t next_ = 0;  // the next row of the destination
  uint32_t rowsSummed_ = 0;
  std::vector<Range> columns_;
  std::vector<uint64_t> sums_;  // four channels a pixel
  std::vector<Pixel> made_;
  std::vector<int32_t> runs_;
  std::vector<int32_t> visible_;
};

}  // namespace codecs::pict
