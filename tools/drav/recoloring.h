// Replacing colours by rules.
#pragma once

#include <functional>

#include "image.h"
#include "rules.h"

// Is told how much is done, 0 to 1, every few rows.
using Watch = std::function<void(double)>;

// Replaces every colour of the image that the rules match; the other pixels keep every bit. A grey image
// becomes a colour image, and one without alpha gets alpha if a rule makes something transparent. Throws
// Failure.
Image recolored(Image image, DRAVCFColorMatchListRef rules, const Watch &watch);
