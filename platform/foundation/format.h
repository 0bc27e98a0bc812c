// The text of a format with its arguments.
#pragma once

#include <CoreFoundation/CFDictionary.h>

#include <cstdarg>
#include <span>

#include "foundation/buffer.h"

namespace cf {

// Appends to output what CFStringCreateWithFormat describes; false when memory runs out, with output
// unspecified.
[[nodiscard]] bool formatTo(Buffer<UniChar> &output, std::span<const UniChar> format,
                            CFDictionaryRef formatOptions, std::va_list arguments) noexcept;

// The same for a format without arguments: only "%%" means something.
[[nodiscard]] bool formatWithoutArgumentsTo(Buffer<UniChar> &output,
                                            std::span<const UniChar> format) noexcept;

}  // namespace cf
