// Writing files that appear whole or not at all.
#pragma once

#include <cstdint>
#include <span>
#include <string>

// Puts the bytes into the file with that name, or on standard output. A file is written beside its
// place and renamed, and keeps its permissions if it was there already; what is no file (a device, a
// pipe) is written to as it stands. Throws Failure, and has changed nothing then.
void writeOutput(const std::string &name, std::span<const uint8_t> bytes);

// The file that a name leads to once links are followed; the name itself where there is none yet.
std::string resolvedPath(const std::string &name);
