// The blend modes by name.
#pragma once

#include <DravKit/DravKit.h>

#include <span>
#include <string>
#include <string_view>

// In the order of their numbers.
std::span<const std::string_view> blendModeNames() noexcept;

// In any case of letters. Throws UsageError that lists the names.
DRAVCFBlendMode parseBlendMode(const std::string &name);

// "Clear, CopySrc, ...", for --help.
std::string listOfBlendModes();
