#include "tiling.h"

#include <string_view>

#include "failure.h"

namespace {

constexpr std::string_view kNames[] = {"bottom-left", "bottom-right", "top-left", "top-right"};

struct Span {
  long start, length;
};

// In one direction: whole tiles, counted from `origin`, around a visible span at or after it.
Span wholeTiles(long origin, Span visible, long tile) noexcept {
  const long first = (visible.start - origin) / tile;
  const long end = (visible.start + visible.length - origin + tile - 1) / tile;
  return {origin + first * tile, (end - first) * tile};
}

// The same where tiles are counted from the far end: looked at in a mirror.
Span wholeTilesFromEnd(long end, Span visible, long tile) noexcept {
  const Span mirrored = wholeTiles(-end, {-(visible.start + visible.length), visible.length}, tile);
  return {-(mirrored.start + mirrored.length), mirrored.length};
}

}  // namespace

Corner parseCorner(const std::string &name) {
  for (unsigned i = 0; i < std::size(kNames); ++i) {
    if (kNames[i] == name) return Corner{i};
  }
  throw UsageError(name + ": not a corner; one of " + listOfCorners());
}

std::string listOfCorners() {
  std::string list;
  for (const std::string_view name : kNames) list += (list.empty() ? "" : ", ") + std::string(name);
  return list;
}

Area tiledArea(const Area &area, const Area &visible, long tileWidth, long tileHeight,
               Corner corner) noexcept {
  const bool fromRight = corner == Corner::bottomRight || corner == Corner::topRight;
  const bool fromBottomEdge = corner == Corner::bottomLeft || corner == Corner::bottomRight;
  const Span across{visible.x, visible.width}, down{visible.y, visible.height};
  const Span x = fromRight ? wholeTilesFromEnd(area.x + area.width, across, tileWidth)
                           : wholeTiles(area.x, across, tileWidth);
  const Span y = fromBottomEdge ? wholeTilesFromEnd(area.y + area.height, down, tileHeight)
                                : wholeTiles(area.y, down, tileHeight);
  return {x.start, y.start, x.length, y.length};
}
