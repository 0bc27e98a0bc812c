// The tracer in its plain, quadratic form: what the fast one must equal, element by element and byte by byte.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace plain {

struct Element {
  int type;  // 0 move-to, 1 add-line-to, 4 close
  float x, y;
  bool operator==(const Element &) const = default;
};
using Path = std::vector<Element>;
using Paths = std::vector<Path>;

struct Trace {
  Paths paths;
  std::string text;         // everything printed
  int closedByMerging = 0;  // subpaths that merging moved out
  int merges = 0;
};

// buffer holds width * height pixels of 4 bytes, alpha first.
Trace trace(const std::uint8_t *buffer, int width, int height, float alphaThreshold);

// The assembly alone, for lists that no image gives.
Trace assemble(const Paths &paths);

}  // namespace plain
