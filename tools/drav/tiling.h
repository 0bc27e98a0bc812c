// Where the tiles come that cover a rectangle.
#pragma once

#include <string>

#include "geometry.h"

// The numbers are those of the library.
enum class Corner : unsigned { bottomLeft = 0, bottomRight = 1, topLeft = 2, topRight = 3 };

// "top-left", "bottom-right", ... Throws UsageError.
Corner parseCorner(const std::string &name);
std::string listOfCorners();

// The area of whole tiles that covers what is visible of a rectangle, when the first tile stands in one of
// the rectangle's corners. `visible` lies within `area`.
Area tiledArea(const Area &area, const Area &visible, long tileWidth, long tileHeight,
               Corner corner) noexcept;
