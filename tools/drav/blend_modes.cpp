#include "blend_modes.h"

#include <strings.h>

#include "failure.h"

namespace {

constexpr std::string_view kNames[] = {
    "Clear",   "CopySrc", "CopyDest",   "SrcOver",   "DestOver",  "SrcIn",     "DestIn",     "SrcOut",
    "DestOut", "SrcAtop", "DestAtop",   "XOR",       "Plus",      "Multiply",  "Screen",     "Overlay",
    "Darken",  "Lighten", "ColorDodge", "ColorBurn", "HardLight", "SoftLight", "Difference", "Exclusion",
};
static_assert(std::size(kNames) == kDRAVCFBlendModeExclusion + 1);

}  // namespace

std::span<const std::string_view> blendModeNames() noexcept { return kNames; }

DRAVCFBlendMode parseBlendMode(const std::string &name) {
  for (DRAVCFBlendMode mode = 0; mode < std::size(kNames); ++mode) {
    if (::strcasecmp(kNames[mode].data(), name.c_str()) == 0) return mode;
  }
  throw UsageError(name + ": not a blend mode; one of " + listOfBlendModes());
}

std::string listOfBlendModes() {
  std::string list;
  for (const std::string_view name : kNames) list += (list.empty() ? "" : ", ") + std::string(name);
  return list;
}
