// The way of an image's pixels onto a surface.
#pragma once

#include <memory>
#include <vector>

#include "graphics/surface.h"

namespace cg {

struct Route {
  RowForm form;  // to read in, and to filter in
  bool isFinal;  // rows of that form are what the surface holds afterwards: nothing is left to compose
};

Route routeFor(const Surface &surface, CGImageRef image, bool filtered) noexcept;

// The image's rows in a form, in the surface's space. Throws std::bad_alloc where they cannot be had, as all
// of drawing does before it changes the first pixel.
std::unique_ptr<RowReader> openRows(const Surface &surface, CGImageRef image, RowForm form);

// One row of the surface, from a column on: hands out memory to fill, and composes what was filled in.
class RowStore {
 public:
  RowStore(const Surface &surface, const Route &route, size_t pixels)
      : surface_(surface),
        compose_(composeRowFor(surface.layout, route.form)),
        pixels_(pixels),
        room_(route.isFinal ? 0 : pixels * bytesPerPixel(route.form)) {}

  uint8_t *rowAt(int64_t x, int64_t y) noexcept { return room_.empty() ? surface_.at(x, y) : room_.data(); }
  void finish(int64_t x, int64_t y) noexcept {
    if (!room_.empty()) compose_(room_.data(), surface_.at(x, y), pixels_);
  }

 private:
  const Surface &surface_;
  ComposeRow compose_;
  size_t pixels_;
  std::vector<uint8_t> room_;
};

}  // namespace cg
