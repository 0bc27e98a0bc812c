// Colours as the command line gives them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

struct Ink {
  uint8_t red = 0, green = 0, blue = 0;
};

// "#rrggbb", "#rgb", one of a few names, or "none", which gives no colour. Throws UsageError.
std::optional<Ink> parseInk(const std::string &text);

// For --help.
std::string listOfInks();

// "#rrggbb".
std::string hexOf(Ink ink);
