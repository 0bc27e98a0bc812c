// What the tracer records: path elements, gathered into subpaths.
#pragma once

#include <CoreGraphics/CoreGraphics.h>

#include <cstdint>
#include <vector>

#include "path/text_output.h"

namespace drav::path {

// One element of a subpath. Only move-to, add-line-to and close occur; a close has the point (0, 0).
struct PathElement {
  std::int32_t type;  // a CGPathElementType
  CGPoint point;
};

// A move-to, any number of add-line-to, and perhaps a close at the end.
using Subpath = std::vector<PathElement>;
// The last subpath of a list is the current one, which the walk extends.
using SubpathList = std::vector<Subpath>;

PathElement MoveTo(CGPoint point) noexcept;
PathElement LineTo(CGPoint point) noexcept;
PathElement Close() noexcept;

void CreateNewSubpath(SubpathList *list, int x, int y);
void AddLineToCurrentSubpath(SubpathList *list, int x, int y);
void CloseCurrentSubpath(SubpathList *list);

// Dumps: one line for each element; a list counts its subpaths from 0.
TextOutput &operator<<(TextOutput &output, const PathElement &element);
TextOutput &operator<<(TextOutput &output, const Subpath &subpath);
TextOutput &operator<<(TextOutput &output, const SubpathList &list);

}  // namespace drav::path
