// Places and sizes as the command line gives them: whole pixels from the top left corner.
#pragma once

#include <CoreGraphics/CoreGraphics.h>

#include <cstddef>
#include <string>

struct Place {
  long x = 0, y = 0;
};

struct Area {
  long x = 0, y = 0, width = 0, height = 0;

  bool empty() const noexcept { return width <= 0 || height <= 0; }
  friend bool operator==(const Area &, const Area &) = default;
};

// "x,y"; negative ones lie left of or above the image. Throws UsageError.
Place parsePlace(const std::string &text);

// "x,y,w,h" with w and h above 0. Throws UsageError.
Area parseArea(const std::string &text);

// The part that two areas share; empty where there is none.
Area intersection(const Area &a, const Area &b) noexcept;

// The same area for the calls of the library that count rows from the top.
CGRect fromTop(const Area &area) noexcept;

// The same area for those that count them from the bottom, in an image that is `height` pixels high.
CGRect fromBottom(const Area &area, size_t height) noexcept;

// "640x480" or "50%": a size, or one that follows from the image's.
class TargetSize {
 public:
  // Throws UsageError.
  explicit TargetSize(const std::string &text);

  // At least one pixel a side.
  CGSize of(size_t width, size_t height) const noexcept;

 private:
  long width_ = 0, height_ = 0;
  double factor_ = 0;  // 0: the size is given
};
