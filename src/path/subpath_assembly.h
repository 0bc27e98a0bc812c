// From the walks' subpaths to the closed outlines of the final path.
#pragma once

#include "path/path_elements.h"

namespace drav::path {

// Sorts out the closed subpaths, dumps closed and open ones, joins open subpaths whose ends touch, shuts
// what is still open, and leaves in the list the closed ones followed by those that had to be shut.
//
// Joining goes by passes. Each subpath A in turn is compared with every later one, B, by A's ends as they
// were when its turn came; B is put before or after A where one touches; a subpath that thereby closes is
// moved out at once; passes go on until one joins nothing. Order decides the outcome, so the comparison of
// all pairs is what is computed; but only pairs that an index of end points finds near each other are looked
// at.
//
// Throws std::bad_alloc; then the list is in no useful state.
void ConcatenateSubpaths(SubpathList &list, TextOutput &output);

}  // namespace drav::path
