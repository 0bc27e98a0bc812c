// Reading encoded files.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>

#include "foundation/ref.h"

// The name that stands for standard input and output.
inline constexpr char kStandardStream[] = "-";

// The bytes of the file with that name, or of standard input. Throws Failure.
cf::Ref<CFDataRef> readInput(const std::string &name);

// The name as messages show it.
std::string shownName(const std::string &name);
