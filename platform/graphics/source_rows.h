// A stretch of columns of the rows of an image, wherever these come from.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "graphics/image_rows.h"

namespace cg {

class SourceRows {
 public:
  SourceRows(RowReader &reader, size_t first, size_t count, size_t components) noexcept
      : reader_(reader), first_(first), count_(count), components_(components) {}

  [[nodiscard]] size_t samples() const noexcept { return count_ * components_; }

  // The row itself where it is in memory as it should be, else read into room, which takes samples() bytes.
  const uint8_t *row(size_t index, uint8_t *room) noexcept {
    if (const uint8_t *row = reader_.rowInPlace(index)) return row + first_ * components_;
    reader_.read(index, first_, count_, room);
    return room;
  }

 private:
  RowReader &reader_;
  size_t first_, count_, components_;
};

// The last rows of something made row by row from the top, as many as a filter takes.
template <class T>
class RowRing {
 public:
  RowRing(size_t rows, size_t samples) : rows_(rows), samples_(samples), room_(rows * samples) {}

  T *slot(size_t index) noexcept { return room_.data() + index % rows_ * samples_; }

 private:
  size_t rows_, samples_;
  std::vector<T> room_;
};

}  // namespace cg
