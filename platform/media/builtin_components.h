// The components that are always there: one importer or exporter for each code of each codec.
#pragma once

#include <span>

#include "media/components.h"

namespace media {

std::span<const ComponentTable> builtinComponents() noexcept;

// The functions that all of them share; `context` is the codec's record.
extern const ComponentTable kImporterFunctions;
extern const ComponentTable kExporterFunctions;

}  // namespace media
