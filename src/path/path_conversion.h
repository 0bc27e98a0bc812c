// From subpaths to a path of the platform.
#pragma once

#include "path/path_elements.h"

namespace drav::path {

// Builds the path of a list of subpaths.
//
// path    NULL on entry; receives a path that the caller owns, also when false is returned with a path begun.
// Gives   false if the platform cannot make a path, or has no memory for all of it.
bool ConvertSubpathsToPath(const SubpathList &list, CGMutablePathRef &path, TextOutput &output);

}  // namespace drav::path
