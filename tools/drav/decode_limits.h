// The decode limits as the command line gives them.
#pragma once

#include <string>

// Sets limits from a list such as "pixels=4M,side=4000"; those not named keep their values. Throws
// UsageError.
void setLimits(const std::string &list);

// The names that a list may use, for --help.
std::string limitNames();
