// Rules that say which colours are replaced by which, as a person writes them. docs/drav.1 describes the
// text.
#pragma once

#include <DravKit/DravKit.h>

#include <string_view>

#include "foundation/ref.h"

using MatchList = cf::Ref<DRAVCFColorMatchListRef>;

// A list for colours of four components. Throws Failure that names line and column.
MatchList parseRules(std::string_view text);
